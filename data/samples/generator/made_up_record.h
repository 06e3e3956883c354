// The made-up basin "Ellervane at Corben Bridge" and its record of weather, snow and discharge.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <string_view>
#include <vector>

namespace sample {

using Day = std::chrono::sys_days;
using Date = std::chrono::year_month_day;

/// Month and day as MMDD.
[[nodiscard]] int month_and_day(Day day);

struct Zone {
    double area_km2;
    double elevation_m;
    double precipitation_factor;  ///< share of the basin's precipitation that falls here, about 1
    double temperature_offset;    ///< °C, exposure of the zone beside the lapse rate
};

inline constexpr std::string_view k_basin_name = "Ellervane at Corben Bridge";
inline constexpr std::size_t k_zone_count = 5;
inline constexpr std::array<Zone, k_zone_count> k_zones{{{38.6, 1450, 0.93, -0.3},
                                                         {71.3, 1880, 0.97, 0.2},
                                                         {84.9, 2290, 1.01, 0.0},
                                                         {62.7, 2710, 1.06, 0.1},
                                                         {24.1, 3150, 1.05, 0.3}}};
inline constexpr double k_reference_elevation_m = 2250;

/// The record covers whole snow years, each from 1 September on.
inline constexpr Day k_record_start = std::chrono::year{1995} / 9 / 1;
inline constexpr Day k_record_end = std::chrono::year{1999} / 8 / 31;

/// A day at the reference station; temperatures in °C, precipitation in cm.
struct StationDay {
    double maximum = 0;
    double minimum = 0;
    double mean = 0;
    double precipitation = 0;
};

struct ZoneDay {
    double temperature_shift = 0;  ///< °C, zone minus station
    double precipitation = 0;      ///< cm
    double snow = 0;               ///< cm of water at the end of the day
    double water = 0;              ///< cm of rain and melt that leave the snow
    double cover = 0;              ///< fraction of the zone under seasonal snow, 0 to 1
};

using ZoneRecord = std::vector<ZoneDay>;

/// Every vector has one element a day from `k_record_start` on.
struct Record {
    std::vector<StationDay> weather;
    std::array<ZoneRecord, k_zone_count> zones;
    std::vector<double> discharge;  ///< m³/s
};

/// The same record at every call.
[[nodiscard]] Record make_record();

}  // namespace sample
