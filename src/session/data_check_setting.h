// What the look through the daily variables needs of the open basin.
#pragma once

#include "prep/data_check.h"
#include "store/basin_store.h"

namespace nivora {

[[nodiscard]] DataCheckSetting data_check_setting(const BasinState& basin);

}  // namespace nivora
