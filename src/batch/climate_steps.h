// What the commands that evaluate a climate scenario share.
#pragma once

#include "batch/batch_dialogs.h"
#include "climate/climate_run.h"
#include "store/rows.h"

#include <optional>
#include <string>

namespace nivora {

/// The current simulation's scenario of that name, in any case, as it is stored; reported if there is none.
[[nodiscard]] std::optional<ScenarioIndexRow> stored_scenario(BasinDatabase& database,
                                                              const BasinState& basin,
                                                              const std::string& scenario,
                                                              BatchDialogs& dialogs);

}  // namespace nivora
