// The results table of a run, built from the basin's daily data and a simulation's parameter table.
// Equations and rules: docs/model.md, section 1.
#pragma once

#include "base/dialogs.h"
#include "engine/results_store.h"
#include "engine/run_state.h"

#include <functional>
#include <memory>
#include <optional>

namespace nivora {

/// Days of February for a simulation's period. The year is that of the end date, or that of the
/// start date if the simulation starts in an earlier year before March.
[[nodiscard]] int february_days(DayCount start, DayCount end);

/// The message for a simulation that has no day with both variables and parameters.
[[nodiscard]] Message missing_data_message(const BasinState& basin);

/// The message for a results table that cannot be created or written.
[[nodiscard]] Message results_fault_message(const StoreError& error);

/// Applies the climate scenario to a table that was just built.
/// @return the status of the build: 0 to continue the run, 1 to stop it
using ApplyScenario = std::function<int(BasinDatabase&, SimResults&)>;

/// The outcome of building the results table.
struct BuiltResults {
    int Status = 0;  ///< 0 to continue the run, 1 to stop it
    SimResults results;
    /// The replacement of the table in the file, open until it is committed;
    /// empty if the old table was kept.
    std::unique_ptr<ResultsReplacement> replacement;
};

/// Joins `PhysicalData` with the parameter table of the current simulation over its period, compares the
/// initial runoff with the data, and fills one row per zone and day.
///
/// Shows what it finds wrong. If the user stops the run at the question about the initial runoff, the table
/// is already empty.
/// Intended: if the last row belongs to another zone than the basin's last one, the message calls it fatal
/// and the build ends, but the status stays 0 and the run continues.
[[nodiscard]] BuiltResults Build_SimResults(BasinDatabase& database, const BasinState& basin, RunState& run,
                                            Dialogs& dialogs, const ApplyScenario& apply_scenario);

/// The same rows of a plain run, with the same messages, without a table in the file, which is only read.
[[nodiscard]] BuiltResults build_results_in_memory(BasinDatabase& database, const BasinState& basin,
                                                   RunState& run, Dialogs& dialogs);

}  // namespace nivora
