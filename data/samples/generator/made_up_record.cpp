#include "made_up_record.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace sample {
namespace {

using namespace std::chrono_literals;

// ---- Dates and seasons ----

[[nodiscard]] int month_of(Day day) { return static_cast<int>(static_cast<unsigned>(Date{day}.month())); }
[[nodiscard]] int day_of_month(Day day) { return static_cast<int>(static_cast<unsigned>(Date{day}.day())); }

/// One value for the middle of each month.
using MonthlyCurve = std::array<double, 12>;

/// The value of a curve on a day, along straight lines from the middle of a month to the middle of the next.
[[nodiscard]] double on_curve(const MonthlyCurve& curve, Day day) {
    const Date date{day};
    const Day next_month = Day{(date.year() / date.month() / 1) + std::chrono::months{1}};
    const auto days = static_cast<double>((next_month - Day{date.year() / date.month() / 1}).count());
    const double place = 11.5 + month_of(day) - 1 + (day_of_month(day) - 0.5) / days;  // never negative
    const auto before = static_cast<std::size_t>(place);
    const double share = place - static_cast<double>(before);
    return curve[before % 12] * (1 - share) + curve[(before + 1) % 12] * share;
}

// ---- Random numbers ----

/// Picked by eye for plausible hydrographs and for snow that is gone from all zones by late summer.
constexpr std::uint64_t k_seed = 13;

/// The splitmix64 sequence.
class RandomNumbers {
public:
    explicit RandomNumbers(std::uint64_t seed) : state_{seed} {}

    /// Evenly spread, 0 to below 1.
    double even() { return static_cast<double>(next() >> 11U) / 9007199254740992.0; }

    /// Bell-shaped, mean 0, standard deviation 1, never beyond 3.5.
    double bell() {
        double sum = -2;
        for (int draw = 0; draw < 4; ++draw) sum += even();
        return sum * 1.7320508;
    }

private:
    std::uint64_t next() {
        state_ += 0x9E3779B97F4A7C15U;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31U);
    }

    std::uint64_t state_;
};

// ---- Weather ----

/// A storm that is placed by hand, so that the record holds it whatever the random numbers say.
struct PlacedStorm {
    Date date;
    double precipitation;
    double mean_temperature;
};

constexpr std::array<PlacedStorm, 13> k_placed_storms{{
    {1996y / 4 / 14, 0.9, 2.1},  // melt and rain while the lag falls below 18 hours
    {1996y / 4 / 15, 1.6, 3.4},
    {1996y / 7 / 8, 1.9, 10.6},
    {1996y / 7 / 9, 7.4, 9.4},    // heavy rain on the whole basin
    {1996y / 10 / 18, 6.5, 0.9},  // above the threshold too, but snow in the upper zones
    {1996y / 10 / 31, 1.7, 3.9},  // rain while the lag rises above 18 hours
    {1997y / 10 / 31, 2.1, 4.6},
    {1997y / 11 / 1, 0.7, 3.1},
    {1998y / 4 / 14, 0.8, 1.9},
    {1998y / 4 / 15, 1.2, 2.9},
    {1998y / 8 / 20, 2.3, 10.1},
    {1998y / 8 / 21, 6.9, 8.7},  // heavy rain on the whole basin
    {1998y / 8 / 22, 0.8, 6.9},
}};

constexpr MonthlyCurve k_mean_temperature{-7.4, -7.0, -4.9, -1.8, 3.4, 7.6, 10.4, 10.1, 6.6, 2.3, -3.6, -6.6};
constexpr MonthlyCurve k_daily_range{6.2, 7.0, 8.0, 8.6, 9.0, 9.4, 9.8, 9.4, 8.6, 7.6, 6.4, 5.8};
constexpr MonthlyCurve k_wet_day_depth{3.1, 3.0, 3.0, 2.8, 2.5, 2.1, 1.9, 2.0, 2.1, 2.5, 3.0, 3.2};

void place_storms(Day day, StationDay& weather) {
    for (const PlacedStorm& storm : k_placed_storms) {
        if (Day{storm.date} != day) continue;
        const double shift = storm.mean_temperature - weather.mean;
        weather.maximum += shift;
        weather.minimum += shift;
        weather.mean = storm.mean_temperature;
        weather.precipitation = storm.precipitation;
    }
}

/// Warm and cold spells about the season's mean, and wet days that come in groups.
[[nodiscard]] std::vector<StationDay> draw_weather(RandomNumbers& random) {
    std::vector<StationDay> record;
    double spell = 0;
    bool wet = false;
    for (Day day = k_record_start; day <= k_record_end; day += std::chrono::days{1}) {
        spell = 0.74 * spell + 1.9 * random.bell();
        wet = random.even() < (wet ? 0.64 : 0.21);
        const double draw = random.even();
        const double depth = on_curve(k_wet_day_depth, day) * draw * draw * draw + 0.04;
        // Clouds cool a summer day and keep a winter day mild.
        const double cloud = month_of(day) >= 4 && month_of(day) <= 10 ? -1.4 : 1.6;

        StationDay weather;
        weather.mean = on_curve(k_mean_temperature, day) + spell + (wet ? cloud : 0.0);
        const double range = on_curve(k_daily_range, day) * (wet ? 0.62 : 1.0) * (0.8 + 0.4 * random.even());
        // The mean of the day is not quite the middle of its extremes.
        const double skew = 0.3 * random.bell();
        weather.maximum = weather.mean + range / 2 + skew;
        weather.minimum = weather.mean - range / 2 + skew;
        weather.precipitation = wet ? depth : 0.0;
        place_storms(day, weather);
        record.push_back(weather);
    }
    return record;
}

// ---- Snow and snow cover ----

constexpr MonthlyCurve k_true_lapse{0.53, 0.56, 0.63, 0.67, 0.68, 0.68, 0.66, 0.65, 0.62, 0.58, 0.55, 0.52};
constexpr MonthlyCurve k_melt_factor{0.30, 0.32, 0.35, 0.40, 0.46, 0.53, 0.58, 0.58, 0.52, 0.42, 0.33, 0.30};

[[nodiscard]] bool snow_year_starts(Day day) { return month_and_day(day) == 901; }

/// Share of precipitation that falls as snow: mixed between 0 and 2.6 °C.
[[nodiscard]] double snowfall_share(double temperature) {
    return std::clamp(1 - temperature / 2.6, 0.0, 1.0);
}

/// Cover that goes with the remaining share of a snowpack's greatest depth: the ground shows late, then fast.
[[nodiscard]] double cover_of_remainder(double remaining_share) {
    return std::min(1.0, 1.2 * std::sqrt(std::max(0.0, remaining_share)));
}

/// A zone's own temperature and precipitation; its snow is still to come.
[[nodiscard]] ZoneDay draw_local_weather(const Zone& zone, const StationDay& station, Day day,
                                         RandomNumbers& random) {
    const double hundreds_of_metres = (k_reference_elevation_m - zone.elevation_m) / 100;
    ZoneDay today;
    today.temperature_shift = hundreds_of_metres * on_curve(k_true_lapse, day) + zone.temperature_offset;
    today.temperature_shift += 0.4 * random.bell();
    today.precipitation = station.precipitation * zone.precipitation_factor * (0.95 + 0.1 * random.even());
    return today;
}

/// The snow water balance of a zone over the whole record.
[[nodiscard]] ZoneRecord balance_snow(const Zone& zone, const std::vector<StationDay>& weather,
                                      RandomNumbers& random) {
    ZoneRecord record;
    double snow = 0;
    double deepest = 0;
    Day day = k_record_start;
    for (const StationDay& station : weather) {
        if (snow_year_starts(day)) snow = deepest = 0;  // what is left then is firn
        ZoneDay today = draw_local_weather(zone, station, day, random);
        const double temperature = station.mean + today.temperature_shift;
        const double snowfall = today.precipitation * snowfall_share(temperature);
        snow += snowfall;
        deepest = std::max(deepest, snow);
        const double cover = deepest > 0 ? cover_of_remainder(snow / deepest) : 0.0;
        const double warmth = std::max(0.0, temperature - 0.1);
        const double melt = std::min(snow, on_curve(k_melt_factor, day) * warmth * cover);
        snow -= melt;
        today.snow = snow;
        today.water = melt + today.precipitation - snowfall;
        record.push_back(today);
        day += std::chrono::days{1};
    }
    return record;
}

/// Snow cover of one snow year, `first` to before `end`, as a map of the seasonal snow would show it: it
/// grows from the onset of the lasting snow to the deepest day and shrinks from there, short snow left out.
void map_cover(ZoneRecord& record, std::size_t first, std::size_t end) {
    std::size_t peak = first;
    for (std::size_t at = first; at < end; ++at) {
        if (record[at].snow > record[peak].snow) peak = at;
    }
    std::size_t onset = peak;
    while (onset > first && record[onset - 1].snow > 0.4) --onset;
    double cover = 0;
    for (std::size_t at = onset; at <= peak; ++at) {
        cover = std::max(cover, std::min(1.0, record[at].snow / 7));
        record[at].cover = cover;
    }
    for (std::size_t at = peak + 1; at < end; ++at) {
        cover = std::min(cover, cover_of_remainder(record[at].snow / record[peak].snow));
        record[at].cover = cover;
    }
}

void map_cover_of_all_years(ZoneRecord& record) {
    std::size_t first = 0;
    for (std::size_t at = 1; at <= record.size(); ++at) {
        const Day day = k_record_start + std::chrono::days{at};
        if (at < record.size() && !snow_year_starts(day)) continue;
        map_cover(record, first, at);
        first = at;
    }
}

// ---- Discharge ----

constexpr double k_flow_of_cm_km2 = 0.01 * 1000000 / 86400;  // m³/s that carry 1 cm on 1 km² away in a day
constexpr MonthlyCurve k_evaporated{0.06, 0.06, 0.08, 0.10, 0.11, 0.15, 0.26, 0.32, 0.28, 0.20, 0.12, 0.08};

/// Water of one day on the whole basin, in cm km².
struct BasinWater {
    double ground = 0;  ///< what reaches the stores
    double burst = 0;   ///< what a cloudburst sends to the gauge at once
};

[[nodiscard]] BasinWater basin_water(const std::array<ZoneRecord, k_zone_count>& zones, std::size_t at) {
    const double left_over = 1 - on_curve(k_evaporated, k_record_start + std::chrono::days{at});
    BasinWater sum;
    for (std::size_t zone = 0; zone < k_zone_count; ++zone) {
        const double water = zones[zone][at].water;
        const double direct = std::max(0.0, water - 4) * 0.12;
        sum.burst += direct * k_zones[zone].area_km2;
        sum.ground += (water - direct) * left_over * k_zones[zone].area_km2;
    }
    return sum;
}

/// Discharge of the basin in m³/s from a quick store, which empties faster the fuller it is, and a slow one.
[[nodiscard]] std::vector<double> route_water(const std::array<ZoneRecord, k_zone_count>& zones,
                                              RandomNumbers& random) {
    std::vector<double> discharge;
    double quick = 40;  // stores in cm km²
    double slow = 3000;
    for (std::size_t at = 0; at < zones.front().size(); ++at) {
        const BasinWater water = basin_water(zones, at);
        const double kept_by_dry_ground = 0.3 * (1 - quick / (quick + 250));
        const double input = water.ground * (1 - kept_by_dry_ground);
        slow += 0.34 * input;
        quick += 0.66 * input;
        const double from_slow = 0.006 * slow;
        const double from_quick = quick * (0.035 + 0.11 * quick / (quick + 1200));
        slow -= from_slow;
        quick -= from_quick;
        const double reading = 1 + 0.045 * random.bell();
        discharge.push_back((from_slow + from_quick + water.burst) * k_flow_of_cm_km2 * reading);
    }
    return discharge;
}

}  // namespace

int month_and_day(Day day) { return month_of(day) * 100 + day_of_month(day); }

Record make_record() {
    RandomNumbers random{k_seed};
    Record record;
    record.weather = draw_weather(random);
    for (std::size_t zone = 0; zone < k_zone_count; ++zone) {
        record.zones[zone] = balance_snow(k_zones[zone], record.weather, random);
        map_cover_of_all_years(record.zones[zone]);
    }
    record.discharge = route_water(record.zones, random);
    return record;
}

}  // namespace sample
