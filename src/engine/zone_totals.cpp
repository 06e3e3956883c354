#include "engine/zone_totals.h"

#include <algorithm>

namespace nivora {
namespace {

/// Sums values in Double, without missing ones.
class Sum {
public:
    void add(float value) {
        if (is_missing(value)) return;
        sum_ += as_double(value);
        any_ = true;
    }
    [[nodiscard]] float result() const {
        const auto rounded = static_cast<float>(sum_);
        return any_ && std::isfinite(rounded) ? rounded : k_missing;
    }

private:
    double sum_ = 0.0;
    bool any_ = false;
};

ZoneTotals totals_of(const SimResults& t, int zone, DayCount first, DayCount last) {
    ZoneTotals totals;
    Sum precipitation;
    Sum rain;
    Sum melt;
    Sum fresh;
    for (std::size_t row = 0; row < t.size(); ++row) {
        if (t.Zone[row] != zone || t.Date[row] < first || t.Date[row] > last) continue;
        totals.first_day = std::min(totals.first_day.value_or(t.Date[row]), t.Date[row]);
        totals.last_day = std::max(totals.last_day.value_or(t.Date[row]), t.Date[row]);
        precipitation.add(t.Precip[row]);
        rain.add(t.Cpr[row]);
        melt.add(t.ZonalMelt[row]);
        fresh.add(t.M1S[row]);
    }
    totals.precipitation = precipitation.result();
    totals.rain = rain.result();
    totals.zonal_melt = melt.result();
    totals.new_snow_melt = fresh.result();
    return totals;
}

}  // namespace

void Prepare_Zone_Totals(const SimResults& results, int zone_count, RunState& run) {
    const bool melt_season = run.RunKind % 2 == 0;
    const DayCount last = melt_season ? run.MeltSeasonStart : run.RunEnd;
    const int zones = std::min(zone_count, k_most_zones);
    for (int zone = 1; zone <= zones; ++zone) {
        run.zone_totals[static_cast<std::size_t>(zone - 1)] = totals_of(results, zone, run.RunStart, last);
    }
}

}  // namespace nivora
