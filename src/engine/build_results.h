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

/// Days of February for a simulation's period. The year that counts is that of the end date, or that of the
/// start date where it is an earlier one and the start lies before March.
[[nodiscard]] int february_days(DayCount start, DayCount end);

/// The message for a simulation that has no day with both variables and parameters.
[[nodiscard]] Message missing_data_message(const BasinState& basin);

/// The message for a results table that can't be made or written.
[[nodiscard]] Message results_fault_message(const StoreError& error);

/// Applies the climate scenario at hand to a table that was just built.
/// @return the status of the building: 0 the run may go on, 1 stop it
using ApplyScenario = std::function<int(BasinDatabase&, SimResults&)>;

/// What the building of the results table leaves.
struct BuiltResults {
    int Status = 0;  ///< 0 the run may go on, 1 stop it
    SimResults results;
    /// The replacement of the table in the file, open until it is committed; none where the old table was
    /// kept.
    std::unique_ptr<ResultsReplacement> replacement;
};

/// Joins `PhysicalData` with the parameter table of the current simulation over its period, compares the
/// initial runoff with the data, and fills one row per zone and day.
///
/// Shows what it finds wrong. A run that is refused by the question about the initial runoff has emptied the
/// table already.
/// Intended: a last row whose zone is not the basin's last one is called fatal and ends the building, but the
/// status stays 0 and the run goes on.
[[nodiscard]] BuiltResults Build_SimResults(BasinDatabase& database, const BasinState& basin, RunState& run,
                                            Dialogs& dialogs, const ApplyScenario& apply_scenario);

}  // namespace nivora
