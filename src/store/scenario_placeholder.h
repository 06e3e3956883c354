// The row in the index of climate scenarios for a simulation that has no scenario.
#pragma once

#include "store/database.h"
#include "store/rows.h"

#include <string>

namespace nivora {

/// The index row that says that a simulation has no scenario.
[[nodiscard]] ScenarioIndexRow scenario_placeholder(const std::string& simulation);

/// Gives a simulation without scenarios its placeholder, and the file the placeholder's table. A simulation
/// that already has a row is not changed. @throws StoreError
void ensure_scenario_placeholder(BasinDatabase& database, const std::string& simulation);

}  // namespace nivora
