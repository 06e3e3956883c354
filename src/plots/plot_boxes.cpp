#include "plots/plot_boxes.h"

#include "base/calendar.h"
#include "base/number_text.h"
#include "base/text.h"
#include "plots/axes.h"

#include <fmt/format.h>

#include <cmath>
#include <limits>

namespace nivora {
namespace {

constexpr const char* k_depth_format = "######.##";
constexpr const char* k_y_format = "#####.##";

/// A maximum, or why there is none.
using Reading = std::variant<float, std::string>;

/// Whether a number has a Single; the day of a date is always one of the calendar's years.
bool fits(double value) { return std::abs(value) <= as_double(std::numeric_limits<float>::max()); }

/// The value of a typed x: a date is its day count.
std::optional<double> read_x(std::string_view text, bool days) {
    if (const auto day = read_date(text)) return static_cast<double>(*day);
    const auto number = exact_number(text);
    const auto last_day = day_count({k_last_year, 12, 31});
    if (!number || !fits(*number) || (days && last_day && *number > static_cast<double>(*last_day)))
        return std::nullopt;
    return number;
}

Reading read_x_box(const Plot& plot, const std::string& text) {
    const bool days = !has_number_axis(plot.number);
    const auto value = read_x(text, days);
    if (!value && days)
        return fmt::format(
            "The maximum X '{}' is not a date between {} and {}. Type a date, such as 9/30/2002.",
            one_line(text), k_first_year, k_last_year);
    if (!value)
        return fmt::format("The maximum X '{}' is not a number. Type a number, such as 12.5.",
                           one_line(text));
    const auto maximum = static_cast<float>(*value);
    if (maximum > plot.frame.x_min) return maximum;
    const std::string least = x_text(plot, as_double(plot.frame.x_min));
    return days ? fmt::format("The maximum X '{}' is not after {}, where the plot begins. Type a later date.",
                              one_line(text), least)
                : fmt::format(
                      "The maximum X '{}' is not above {}, where the axis begins. Type a larger number.",
                      one_line(text), single_text(plot.frame.x_min));
}

Reading read_y_box(const Plot& plot, const std::string& text) {
    const auto value = exact_number(text);
    if (!value || !fits(*value))
        return fmt::format("The maximum Y '{}' is not a number. Type a number, such as 12.5.",
                           one_line(text));
    const auto maximum = static_cast<float>(*value);
    if (maximum > plot.frame.y_min) return maximum;
    return fmt::format("The maximum Y '{}' is not above {}, where the axis begins. Type a larger number.",
                       one_line(text), single_text(plot.frame.y_min));
}

bool was_typed(const std::string& typed, const std::string& given) {
    return !trimmed(typed).empty() && typed != given;
}

}  // namespace

BoxTexts box_texts(const Plot& plot) {
    const double x = as_double(plot.frame.x_max);
    return {
        .x = has_number_axis(plot.number) ? format_number(x, k_depth_format) : long_date_text(whole_day(x)),
        .y = single_text(plot.frame.y_max)};
}

std::variant<TypedMaxima, BoxRefusal> read_boxes(const Plot& plot, const BoxTexts& given,
                                                 const BoxTexts& typed) {
    TypedMaxima maxima;
    if (was_typed(typed.x, given.x)) {
        const Reading reading = read_x_box(plot, typed.x);
        if (const auto* problem = std::get_if<std::string>(&reading))
            return BoxRefusal{BoxRefusal::Box::X, *problem};
        maxima.x = std::get<float>(reading);
    }
    if (was_typed(typed.y, given.y)) {
        const Reading reading = read_y_box(plot, typed.y);
        if (const auto* problem = std::get_if<std::string>(&reading))
            return BoxRefusal{BoxRefusal::Box::Y, *problem};
        maxima.y = std::get<float>(reading);
    }
    return maxima;
}

std::string x_text(const Plot& plot, double x) {
    if (has_number_axis(plot.number)) return format_number(x, k_depth_format);
    const CivilDate date = civil_date(whole_day(x));
    return fmt::format("{} {}, {}", month_text(x), date.day, date.year);
}

BoxTexts position_texts(const Plot& plot, double x, double y) {
    return {.x = " X: " + x_text(plot, x), .y = " Y: " + format_number(y, k_y_format)};
}

}  // namespace nivora
