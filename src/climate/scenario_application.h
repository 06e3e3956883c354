// Applies the rows of a scenario to the daily values.
#pragma once

#include "base/dialogs.h"
#include "engine/sim_results.h"
#include "store/basin_store.h"
#include "store/database.h"
#include "store/rows.h"

#include <span>
#include <string>

namespace nivora {

/// Applies the rows of a scenario, in their stored order, to the columns of the changed climate of a table
/// that was just built. Errors are shown; the rows before an error stay applied.
///
/// @param scenario_name as chosen by the user; also the name of its table
/// @return 0 if all rows were applied, 1 after a fault or an error
[[nodiscard]] int Apply_Scenario(BasinDatabase& database, SimResults& results, const BasinState& basin,
                                 const std::string& scenario_name, Dialogs& dialogs);

/// Applies rows that are in no file, in their order. They add, multiply or shift.
///
/// @throws Fault where Apply_Scenario shows an error, and for Normalize, which needs the averages of a file;
///         the rows before it stay applied
void apply_scenario_rows(SimResults& results, std::span<const ScenarioRow> rows, int zone_count);

}  // namespace nivora
