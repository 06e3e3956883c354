#include "session/data_check_setting.h"

#include "engine/snow_melt.h"
#include "store/database.h"

#include <algorithm>

namespace nivora {

DataCheckSetting data_check_setting(const BasinState& basin) {
    DataCheckSetting setting{
        .zones = basin.ZoneCount, .melt_months = {}, .english = basin.Units_Code == Units::English};
    const int start = melt_season_start_month(basin.latitude_text);
    for (int month = 1; month <= 12; ++month)
        setting.melt_months.at(static_cast<std::size_t>(month)) = in_melt_season(month, start);
    return setting;
}

bool missing_value_is_listed(const BasinState& basin, const DailyPlace& place) {
    try {
        BasinDatabase database{basin.Work_File, Access::ReadOnly};
        const DataCheck check = check_daily_data(database, data_check_setting(basin));
        return std::any_of(check.findings.begin(), check.findings.end(), [&](const DataFinding& finding) {
            return finding.fault == DataFault::Missing && covers(finding, place);
        });
    } catch (const StoreError&) {
        return false;  // the list can't be read either
    }
}

}  // namespace nivora
