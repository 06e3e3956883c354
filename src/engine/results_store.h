// The results table between memory and the basin file.
#pragma once

#include "engine/sim_results.h"
#include "store/transactions.h"

namespace nivora {

/// Replaces the table `SimResults` of a basin file in one transaction, from dropping the old table to the
/// last row of the new one. Without a commit the old table remains.
class ResultsReplacement {
public:
    /// Drops the table, if there is one, and creates it.
    /// @throws StoreError, Busy where another program holds it
    explicit ResultsReplacement(BasinDatabase& database);

    /// Writes the rows and commits. @throws StoreError
    void commit(const SimResults& results);

private:
    BasinDatabase& database_;
    HeldTransaction transaction_;
};

/// Reads the whole table in stored order. @throws StoreError
[[nodiscard]] SimResults load_results(BasinDatabase& database);

}  // namespace nivora
