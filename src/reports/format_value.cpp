#include "reports/format_value.h"

#include "base/number_text.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdint>
#include <optional>

namespace nivora {
namespace {

constexpr const char* k_pattern = "####0.00000";
constexpr const char* k_whole_suffix = ".0000";

std::string in_width(std::string text, std::size_t width) {
    text.resize(width, ' ');
    return text;
}

/// Seven significant digits and an exponent without plus sign or leading zeros: "1.234568E8".
std::string exponent_form(double value, std::size_t width) {
    const std::string text = fmt::format("{:.6E}", value);
    const std::size_t mark = text.find('E');
    const bool negative = text[mark + 1] == '-';
    const std::size_t digits = std::min(text.find_first_not_of("+-0", mark + 1), text.size());
    const std::string exponent = (negative ? "E-" : "E") + text.substr(digits);
    const std::size_t room = width > exponent.size() ? width - exponent.size() : 0;
    return in_width(text.substr(0, std::min(mark, room)) + exponent, width);
}

/// The same text as format_number with the pattern, but faster. Nothing for a large number, and for one so
/// near to the middle of two results that only its decimal digits tell how to round it.
std::optional<std::string> quick_decimals(double value) {
    constexpr double k_scale = 1.0e5;
    constexpr std::uint64_t k_whole_scale = 100000;
    constexpr double k_largest = 1.0e6;
    // Far more than the error of the scaling and of fifteen significant digits.
    constexpr double k_doubtful = 1.0e-3;
    const double size = std::abs(value);
    if (!(size < k_largest)) return std::nullopt;
    const double whole = std::floor(size * k_scale);
    const double rest = size * k_scale - whole;
    if (std::abs(rest - 0.5) < k_doubtful) return std::nullopt;
    const std::uint64_t digits = static_cast<std::uint64_t>(whole) + (rest > 0.5 ? 1 : 0);
    return fmt::format("{}{}.{:05}", value < 0.0 && digits > 0 ? "-" : "", digits / k_whole_scale,
                       digits % k_whole_scale);
}

std::string fitted(const std::string& text, double value, std::size_t width) {
    if (text.find('.') > width) return exponent_form(value, width);
    std::string cut = in_width(text, width);
    // The cut may leave only zeros of a small negative number.
    if (cut.starts_with('-') && cut.find_first_of("123456789") == std::string::npos)
        cut = in_width(cut.substr(1), width);
    return cut;
}

}  // namespace

std::string Format_Value(double value, std::size_t width) {
    if (!std::isfinite(value)) return std::string(width, ' ');
    const auto quick = quick_decimals(value);
    return fitted(quick ? *quick : format_number(value, k_pattern), value, width);
}

std::string format_whole_value(double value, std::size_t width) {
    if (!std::isfinite(value)) return std::string(width, ' ');
    return fitted(format_number(value, "0") + k_whole_suffix, value, width);
}

std::string right_aligned_whole(double value, std::size_t width) {
    if (!std::isfinite(value)) return std::string(width, ' ');
    const std::string digits = format_number(value, "0");
    return digits.size() > width ? exponent_form(value, width) : fmt::format("{:>{}}", digits, width);
}

}  // namespace nivora
