#include "base/units.h"

namespace nivora {
namespace {

constexpr UnitWords k_metric_words{.name = "Metric",
                                   .area = "km²",
                                   .elevation = "m",
                                   .depth = "cm",
                                   .depth_word = "cm",
                                   .discharge = "m³/s",
                                   .discharge_letters = "CMS",
                                   .temperature = "°C",
                                   .temperature_above_base = "°C above 0 °C",
                                   .degree_days = "degree days, °C",
                                   .lapse_rate = "°C per 100 m",
                                   .degree_day_factor = "cm/(°C·day)",
                                   .length_letter = "m"};

constexpr UnitWords k_english_words{.name = "English",
                                    .area = "mi²",
                                    .elevation = "ft",
                                    .depth = "in",
                                    .depth_word = "inches",
                                    .discharge = "ft³/s",
                                    .discharge_letters = "CFS",
                                    .temperature = "°F",
                                    .temperature_above_base = "°F above 32 °F",
                                    .degree_days = "degree days, °F",
                                    .lapse_rate = "°F per 1000 ft",
                                    .degree_day_factor = "inches/(°F·day)",
                                    .length_letter = "f"};

}  // namespace

const UnitWords& unit_words(Units units) {
    return units == Units::English ? k_english_words : k_metric_words;
}

}  // namespace nivora
