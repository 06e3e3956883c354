// The look through the daily variables of the open basin.
#pragma once

#include "prep/daily_place.h"
#include "prep/data_check.h"
#include "store/basin_store.h"

namespace nivora {

[[nodiscard]] DataCheckSetting data_check_setting(const BasinState& basin);

/// Whether a look at the data of the working file lists the missing value of a cell. It lists none of a field
/// that the zone has on no day and that a usual simulation does not need.
[[nodiscard]] bool missing_value_is_listed(const BasinState& basin, const DailyPlace& place);

}  // namespace nivora
