// Days and sums of each zone for the melt and input bar plots.
#pragma once

#include "engine/run_state.h"
#include "engine/sim_results.h"

namespace nivora {

/// Fills `run.zone_totals` for the zones of the basin from the start of the run to its end, or in a melt
/// season run to `MeltSeasonStart`. A sum is missing if none of its days has a value.
void Prepare_Zone_Totals(const SimResults& results, int zone_count, RunState& run);

}  // namespace nivora
