// The daily variable whose missing value stopped a run or its snow and melt stage.
#pragma once

#include "base/calendar.h"
#include "engine/basin_inputs.h"
#include "engine/run_state.h"
#include "engine/sim_results.h"

#include <optional>
#include <string>

namespace nivora {

struct MissingInput {
    int zone = 1;
    DayCount day = 0;
    std::string field = {};  ///< of `PhysicalData`, the first one if several are missing
};

/// Finds what stopped a plain run from what its stages left in the table and in the notes.
///
/// @param reached_end whether the run went on to its last stage
/// @return nothing if no stage stopped, or if it stopped on something else, such as a missing parameter
[[nodiscard]] std::optional<MissingInput> missing_input(const SimResults& results, const BasinInputs& inputs,
                                                        const RunState& run, bool reached_end);

}  // namespace nivora
