#include "store/rows.h"

#include "base/number_text.h"

namespace nivora {
namespace {

template <typename Number>
std::optional<double> as_value(const std::optional<Number>& number) {
    if (!number) return std::nullopt;
    return static_cast<double>(*number);
}

std::string listed(std::optional<double> value, const char* first, const char* second) {
    if (value == 0.0) return first;
    if (value == 1.0) return second;
    return {};
}

}  // namespace

std::optional<double> Simulation::value(int column) const {
    switch (column) {
        case 2: return as_value(run_number);
        case 3: return as_value(start);
        case 4: return as_value(end);
        case 5: return as_value(units);
        case 6: return as_value(temperature_values);
        case 7: return as_value(temperature);
        case 8: return as_value(precipitation);
        case 9: return as_value(lapse_rate);
        case 10: return as_value(runoff_coefficients);
        case 11: return as_value(critical_temperature);
        case 12: return as_value(recession);
        case 13: return as_value(initial_runoff);
        case 14: return as_value(precipitation_threshold);
        case 15: return initial_x;
        case 16: return initial_y;
        default: return std::nullopt;
    }
}

std::string Simulation::text(int column) const {
    const std::optional<double> number = value(column);
    switch (column) {
        case 1: return name;
        case 3: return start ? long_date_text(*start) : std::string{};
        case 4: return end ? long_date_text(*end) : std::string{};
        case 5: return listed(number, "Metric", "English");
        case 6: return listed(number, "Average", "Max/Min");
        case 7:
        case 8:
        case 9:
        case 10:
        case 11:
        case 12: return listed(number, "Basinwide", "By Zone");
        case 13:
        case 14: return number ? single_text(static_cast<float>(*number)) : std::string{};
        case 17: return comments.value_or("");
        default: return number ? double_text(*number) : std::string{};
    }
}

}  // namespace nivora
