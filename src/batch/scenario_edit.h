// One edit of a climate scenario as the command line gives it.
#pragma once

#include "store/rows.h"

#include <string>
#include <string_view>

namespace nivora {

/// An edit that was read, or what is wrong with its text.
struct ReadEdit {
    ScenarioRow row;
    std::string problem;  ///< empty if the row is complete
};

/// Reads VARIABLE:START:END:ACTION:FACTOR:ZONE. Variable, action and zone are codes or the texts of the
/// scenario grid, dates are yyyy-mm-dd in their order. A choice that the grid does not offer is a problem
/// here as well. Normalize needs no factor and stores 0.
[[nodiscard]] ReadEdit read_scenario_edit(std::string_view text);

}  // namespace nivora
