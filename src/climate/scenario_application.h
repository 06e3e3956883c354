// A scenario's rows turned into changed daily values.
#pragma once

#include "base/dialogs.h"
#include "engine/sim_results.h"
#include "store/basin_store.h"
#include "store/database.h"

#include <string>

namespace nivora {

/// Applies the rows of a scenario, in their stored order, to the columns of the changed climate of a table
/// that was just built. What is wrong is shown; the rows before it stay applied.
///
/// @param scenario_name as chosen by the user; its table bears it
/// @return 0 where all rows were applied, 1 after a fault or a refusal
[[nodiscard]] int Apply_Scenario(BasinDatabase& database, SimResults& results, const BasinState& basin,
                                 const std::string& scenario_name, Dialogs& dialogs);

}  // namespace nivora
