// The two systems of units, and what quantities are called in them.
#pragma once

#include <cstdint>

namespace nivora {

/// A system of units, by its number in basin files. A file may hold other numbers, which count as Metric
/// wherever the code tests for English.
enum class Units : std::int16_t { NotFixed = -1, Metric = 0, English = 1 };

[[nodiscard]] constexpr bool is_known(Units units) {
    return units == Units::NotFixed || units == Units::Metric || units == Units::English;
}

/// The names of the quantities of the model in one system.
struct UnitWords {
    const char* name;                    ///< "Metric", "English"
    const char* area;                    ///< "km²", "mi²"
    const char* elevation;               ///< "m", "ft"
    const char* depth;                   ///< of water: "cm", "in"
    const char* depth_word;              ///< "cm", "inches"
    const char* discharge;               ///< "m³/s", "ft³/s"
    const char* discharge_letters;       ///< "CMS", "CFS"
    const char* temperature;             ///< "°C", "°F"
    const char* temperature_above_base;  ///< "°C above 0 °C", "°F above 32 °F"
    const char* degree_days;             ///< "degree days, °C", "degree days, °F"
    const char* lapse_rate;              ///< "°C per 100 m", "°F per 1000 ft"
    const char* degree_day_factor;       ///< "cm/(°C·day)", "inches/(°F·day)"
    const char* length_letter;  ///< of volumes and discharges in statistics: "m". Intended: "f", not "ft".
};

/// The words for English units, or for any other value those for Metric.
[[nodiscard]] const UnitWords& unit_words(Units units);

}  // namespace nivora
