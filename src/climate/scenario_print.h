// A scenario as it is printed.
#pragma once

#include "climate/scenario_definitions.h"
#include "reports/grid_pages.h"

namespace nivora {

/// A scenario of the current simulation with its dates, comments and rows, and what each column means.
///
/// @param now date and time of the print
[[nodiscard]] PrintedSheet printed_scenario(const Scenario& scenario, const BasinState& basin, double now);

/// A scenario as the basin file holds it; nothing if it is not there. @throws StoreError
[[nodiscard]] std::optional<Scenario> stored_scenario(BasinDatabase& database, const std::string& simulation,
                                                      const std::string& name);

}  // namespace nivora
