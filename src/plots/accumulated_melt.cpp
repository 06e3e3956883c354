#include "plots/accumulated_melt.h"

#include <algorithm>

namespace nivora {
namespace {

constexpr int k_changed_summer = 6;

/// The days up to the first one without melt after melt was seen, which is among them.
///
/// Intended: on the first such day, though a cold day in spring can end a season early.
std::size_t days_to_first_dry_day(std::span<const MeltDay> days) {
    bool seen = false;
    for (std::size_t day = 0; day < days.size(); ++day) {
        if (days[day].zonal_melt > 0.0F) seen = true;
        if (seen && days[day].zonal_melt == 0.0F) return day + 1;
    }
    return days.size();
}

/// The days up to the day after the last one with melt; all if there is no melt.
std::size_t days_of_season(std::span<const MeltDay> days) {
    const auto last =
        std::find_if(days.rbegin(), days.rend(), [](const MeltDay& day) { return day.zonal_melt > 0.0F; });
    if (last == days.rend()) return days.size();
    const auto days_to_last_melt = static_cast<std::size_t>(days.rend() - last);
    return std::min(days_to_last_melt + 1, days.size());
}

}  // namespace

MeltCurves Accumulate_Melt(std::span<const MeltDay> days, int climate_step, MeltStop stop) {
    const std::size_t count = stop == MeltStop::Season ? days_of_season(days) : days_to_first_dry_day(days);
    MeltCurves curves;
    float melt = 0.0F;
    float new_melt = 0.0F;
    for (const MeltDay& day : days.first(count)) {
        melt = to_single(as_double(melt) + as_double(day.zonal_melt));
        new_melt = to_single(as_double(new_melt) + as_double(day.new_melt) * as_double(day.cover));
        float excluding = to_single(as_double(melt) - as_double(new_melt));
        if (climate_step == k_changed_summer) excluding = required(day.changed_melt);
        const float x = to_single(static_cast<double>(day.date));
        curves.including.push_back({x, melt});
        curves.excluding.push_back({x, std::max(excluding, 0.0F)});
    }
    return curves;
}

}  // namespace nivora
