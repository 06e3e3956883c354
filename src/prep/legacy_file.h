// The text file of an older form of the model: one year or season of one basin.
#pragma once

#include "base/calendar.h"

#include <array>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// The most zones that a legacy file can hold.
inline constexpr int k_most_legacy_zones = 8;
/// The number of values that a legacy file holds for each zone and variable, in a year of any length.
inline constexpr int k_legacy_days = 366;

/// The daily sections, in the order of the file.
enum class LegacySection {
    Runoff,
    Tmax,
    Tmin,
    Tavg,
    Precip,
    SCA,
    Tcrit,
    LagTime,
    LapseRate,
    An,
    Cs,
    Cr,
    RCA
};
inline constexpr int k_legacy_sections = 13;

/// What is wrong with a legacy file and where, in one line for the user.
class LegacyFileError : public std::runtime_error {
public:
    LegacyFileError(int line, const std::string& place, const std::string& what)
        : std::runtime_error("Line " + std::to_string(line) + ", " + place + ": " + what), line_(line) {}

    [[nodiscard]] int line() const { return line_; }

private:
    int line_;
};

struct LegacyZone {
    double area = 0.0;       ///< km² or mi²
    double elevation = 0.0;  ///< hypsometric mean, m or ft
};

/// A legacy file as read. Depths are cm or inches, temperatures °C or °F, discharge m³/s or ft³/s.
struct LegacyFile {
    float version = 0.0F;
    bool english = false;
    DayCount start = 0;
    DayCount end = 0;
    std::string basin_name;  ///< UTF-8
    std::vector<LegacyZone> zones;
    std::optional<double> reference_elevation;  ///< m or ft
    double x = 0.0;                             ///< recession coefficient x
    double y = 0.0;                             ///< recession coefficient y
    std::optional<DayCount> change_day;         ///< from this day on the next two apply
    double x_later = 0.0;
    double y_later = 0.0;
    std::optional<double> rain_threshold;  ///< cm or inches

    /// By section, then zone (0 for zone 1), then day of the year (1 to 366). Runoff has one series, at zone
    /// 0. A slot that the file leaves out is 0.
    std::array<std::vector<std::array<float, k_legacy_days + 1>>, k_legacy_sections> values;

    /// The value of a date, by the number of the day in its own year: the days after a new year come from the
    /// beginning of the zone's values.
    [[nodiscard]] float value(LegacySection section, std::size_t zone, DayCount date) const;
};

/// Reads the text of a legacy file, with any line ends and with or without a byte-order mark.
/// @throws LegacyFileError
[[nodiscard]] LegacyFile read_legacy_file(std::string_view text);

}  // namespace nivora
