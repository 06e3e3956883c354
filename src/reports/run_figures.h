// The figures of report 7 that the last run left in memory.
#pragma once

#include "engine/run_state.h"
#include "reports/input_summary.h"

namespace nivora {

/// What the last run left for the input summary, at the climate step that was taken last. Statistics that it
/// did not work out are missing; steps 4 and 5 have none, because they compute no discharge.
[[nodiscard]] RunFigures run_figures(const RunState& run);

}  // namespace nivora
