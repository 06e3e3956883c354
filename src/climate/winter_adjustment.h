// Step 5 of a climate evaluation: the snow cover of the summer under the changed climate.
#pragma once

#include "base/dialogs.h"
#include "climate/climate_state.h"
#include "climate/winter_report.h"
#include "engine/run_state.h"
#include "engine/sim_results.h"

namespace nivora {

/// The data and services of step 5.
struct WinterContext {
    const BasinState& basin;
    RunState& run;
    const ClimateState& climate;
    Dialogs& dialogs;
};

/// Moves and stretches the depletion curve of each zone: writes `SCAclim`, `SCAclimWA`,
/// `SCAclimWAMA`, `MDCexclWA`, `MDCexclWAnew` and `MeltOffset` of the summer's rows.
///
/// Intended: asks for each zone's winter change and ignores the answer.
///
/// Adds a note to the run for each zone in which its rules may give misleading results.
///
/// @param report gets the block of each zone once the zone's curve is adjusted
/// @throws Fault if a value is missing, or there is no summer; the report holds the blocks written so far
void Winter_Adjustment(SimResults& results, const WinterContext& context, WinterReport& report);

}  // namespace nivora
