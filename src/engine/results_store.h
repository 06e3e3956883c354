// The results table between memory and the basin file.
#pragma once

#include "engine/sim_results.h"
#include "store/transactions.h"

namespace nivora {

/// Replaces the table `SimResults` of a basin file, in one transaction from the removal of the old table to
/// the last row of the new one. What is not committed leaves the old table.
class ResultsReplacement {
public:
    /// Removes the table, if there is one, and makes it anew. @throws StoreError, Busy where another program
    /// holds it
    explicit ResultsReplacement(BasinDatabase& database);

    /// Writes the rows and makes all of it last. @throws StoreError
    void commit(const SimResults& results);

private:
    BasinDatabase& database_;
    HeldTransaction transaction_;
};

/// Reads the whole table in stored order. @throws StoreError
[[nodiscard]] SimResults load_results(BasinDatabase& database);

}  // namespace nivora
