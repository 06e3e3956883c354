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

/// Takes the steps of a fresh evaluation, up to and with the last one, until one fails.
///
/// @return whether all of them were done
[[nodiscard]] bool run_climate_steps(BasinDatabase& database, const ClimateContext& context,
                                     const std::string& scenario, int last_step);

}  // namespace nivora
