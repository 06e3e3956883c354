// The figures of report 7 from the last run in memory.
#pragma once

#include "engine/run_state.h"
#include "reports/input_summary.h"

namespace nivora {

/// The figures of the last run, or of the climate step that was taken last, for the input summary. Statistics
/// that were not computed are missing; steps 4 and 5 have none, because they compute no discharge.
[[nodiscard]] RunFigures run_figures(const RunState& run);

}  // namespace nivora
