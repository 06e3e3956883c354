#include "session/data_check_setting.h"

#include "engine/snow_melt.h"

namespace nivora {

DataCheckSetting data_check_setting(const BasinState& basin) {
    DataCheckSetting setting{
        .zones = basin.ZoneCount, .melt_months = {}, .english = basin.Units_Code == Units::English};
    const int start = melt_season_start_month(basin.latitude_text);
    for (int month = 1; month <= 12; ++month)
        setting.melt_months.at(static_cast<std::size_t>(month)) = in_melt_season(month, start);
    return setting;
}

}  // namespace nivora
