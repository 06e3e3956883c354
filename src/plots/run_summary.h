// The run summary of plots 1 and 18: six captions with their values.
#pragma once

#include "engine/run_state.h"
#include "plots/plot.h"

#include <vector>

namespace nivora {

/// @param plot 1 or 18
/// @param run  the statistics and the climate step; a statistic that was not computed has an empty value
[[nodiscard]] std::vector<RunSummaryRow> run_summary(PlotNumber plot, Units units, const RunState& run);

}  // namespace nivora
