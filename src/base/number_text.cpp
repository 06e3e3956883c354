#include "base/number_text.h"

#include "base/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace nivora {
namespace {

constexpr int k_double_digits = 15;
constexpr int k_single_digits = 7;

bool is_digit(char character) { return character >= '0' && character <= '9'; }

/// A finite number as decimal digits d1 d2 ... and the place of the point: value = 0.d1d2... x 10^point.
struct Decimal {
    std::string digits;
    int point = 0;
};

Decimal to_decimal(double magnitude) {
    const std::string text = fmt::format("{:.{}e}", magnitude, k_double_digits - 1);
    const std::size_t mark = text.find('e');
    Decimal decimal;
    for (const char character : text.substr(0, mark)) {
        if (is_digit(character)) decimal.digits.push_back(character);
    }
    int exponent = 0;
    const bool plus = text[mark + 1] == '+';
    std::from_chars(text.data() + mark + (plus ? 2 : 1), text.data() + text.size(), exponent);
    decimal.point = exponent + 1;
    return decimal;
}

/// Removes the digits after the given decimal, rounding half up.
void round_at(Decimal& decimal, int decimals) {
    const int kept = decimal.point + decimals;
    if (kept >= static_cast<int>(decimal.digits.size())) return;
    if (kept < 0) {
        decimal.digits.clear();
        return;
    }
    const bool up = decimal.digits[static_cast<std::size_t>(kept)] >= '5';
    decimal.digits.resize(static_cast<std::size_t>(kept));
    if (!up) return;
    for (auto digit = decimal.digits.rbegin(); digit != decimal.digits.rend(); ++digit) {
        if (*digit != '9') {
            ++*digit;
            return;
        }
        *digit = '0';
    }
    decimal.digits.insert(decimal.digits.begin(), '1');
    ++decimal.point;
}

std::string integer_digits(const Decimal& decimal) {
    std::string digits;
    for (int place = 0; place < decimal.point; ++place) {
        const auto index = static_cast<std::size_t>(place);
        digits.push_back(index < decimal.digits.size() ? decimal.digits[index] : '0');
    }
    digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

std::string fraction_digits(const Decimal& decimal, int decimals) {
    std::string digits;
    for (int place = decimal.point; place < decimal.point + decimals; ++place) {
        const bool known = place >= 0 && place < static_cast<int>(decimal.digits.size());
        digits.push_back(known ? decimal.digits[static_cast<std::size_t>(place)] : '0');
    }
    return digits;
}

/// What a pattern specifies.
struct PatternShape {
    std::size_t least_integer_digits = 0;
    std::size_t least_decimals = 0;
    std::size_t most_decimals = 0;
    bool point = false;
};

PatternShape read_pattern(std::string_view pattern) {
    PatternShape shape;
    const std::size_t point = pattern.find('.');
    const std::string_view front = pattern.substr(0, point);
    const std::size_t first_zero = front.find('0');
    if (first_zero != std::string_view::npos) shape.least_integer_digits = front.size() - first_zero;
    if (point == std::string_view::npos) return shape;
    shape.point = true;
    const std::string_view back = pattern.substr(point + 1);
    shape.most_decimals = back.size();
    const std::size_t last_zero = back.rfind('0');
    if (last_zero != std::string_view::npos) shape.least_decimals = last_zero + 1;
    return shape;
}

std::string significant_text(double value, int digits) {
    if (std::isnan(value)) return {};
    return fmt::format("{:.{}G}", value == 0.0 ? 0.0 : value, digits);
}

template <typename Number>
std::string shortest(Number value) {
    if (std::isnan(value)) return {};
    std::array<char, 64> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return {buffer.data(), result.ptr};
}

/// The length of the numeric part at the head of a text.
std::size_t numeric_length(std::string_view text) {
    std::size_t at = 0;
    const auto skip_digits = [&] {
        const std::size_t start = at;
        while (at < text.size() && is_digit(text[at])) ++at;
        return at - start;
    };
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
    std::size_t digits = skip_digits();
    if (at < text.size() && text[at] == '.') {
        ++at;
        digits += skip_digits();
    }
    if (digits == 0) return 0;
    if (at < text.size() && std::string_view{"eEdD"}.find(text[at]) != std::string_view::npos) {
        const std::size_t mark = at++;
        if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
        if (skip_digits() == 0) at = mark;
    }
    return at;
}

/// Whether the first nonzero digit of a number comes after the point, including its power of ten.
///
/// @param plain an optional minus sign, digits with or without a point, and perhaps an 'e' with
///              a whole number
bool is_below_one(const std::string& plain) {
    const std::size_t mark = std::min(plain.find_first_of("eE"), plain.size());
    const std::size_t point = std::min(plain.find('.'), mark);
    const std::size_t first = plain.find_first_of("123456789");
    const auto place = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first) - (first < point);
    if (mark == plain.size()) return place < 0;
    const bool plus = plain[mark + 1] == '+';
    std::int64_t power = 0;
    const auto result =
        std::from_chars(plain.data() + mark + (plus ? 2 : 1), plain.data() + plain.size(), power);
    if (result.ec == std::errc::result_out_of_range) return plain[mark + 1] == '-';
    return power < -place;
}

/// The value of a text of the form that numeric_length measures.
double numeric_value(std::string_view text) {
    std::string plain{text.front() == '+' ? text.substr(1) : text};
    std::replace_if(
        plain.begin(), plain.end(), [](char c) { return c == 'd' || c == 'D'; }, 'e');
    double value = 0.0;
    const auto [end, error] = std::from_chars(plain.data(), plain.data() + plain.size(), value);
    if (error == std::errc::result_out_of_range) {
        // The library does not set the value here, and reports a number that is too small in the same way.
        if (is_below_one(plain)) return 0.0;
        return plain.front() == '-' ? -std::numeric_limits<double>::infinity()
                                    : std::numeric_limits<double>::infinity();
    }
    return value;
}

}  // namespace

std::string single_text(float value) { return seven_digit_text(static_cast<double>(value)); }

std::string seven_digit_text(double value) { return significant_text(value, k_single_digits); }

std::string double_text(double value) { return significant_text(value, k_double_digits); }

std::string spaced_single_text(float value) {
    const std::string text = single_text(value);
    return text.empty() || text.front() == '-' ? text : " " + text;
}

std::string shortest_text(float value) { return shortest(value); }

std::string shortest_text(double value) { return shortest(value); }

std::string format_number(double value, std::string_view pattern) {
    if (std::isnan(value)) return {};
    if (std::isinf(value)) return significant_text(value, k_double_digits);
    const PatternShape shape = read_pattern(pattern);
    Decimal decimal = to_decimal(std::abs(value));
    round_at(decimal, static_cast<int>(shape.most_decimals));
    std::string front = integer_digits(decimal);
    std::string back = fraction_digits(decimal, static_cast<int>(shape.most_decimals));
    const bool zero = front.empty() && back.find_first_not_of('0') == std::string::npos;
    if (front.size() < shape.least_integer_digits)
        front.insert(0, shape.least_integer_digits - front.size(), '0');
    while (back.size() > shape.least_decimals && back.back() == '0') back.pop_back();
    std::string text = value < 0.0 && !zero ? "-" : "";
    text += front;
    if (shape.point) text += "." + back;
    return text;
}

double leading_number(std::string_view text) {
    const std::string_view head = trimmed(text);
    const std::size_t length = numeric_length(head);
    return length == 0 ? 0.0 : numeric_value(head.substr(0, length));
}

std::optional<double> exact_number(std::string_view text) {
    const std::string_view shown = trimmed(text);
    if (shown.empty() || numeric_length(shown) != shown.size()) return std::nullopt;
    const double value = numeric_value(shown);
    if (std::isinf(value)) return std::nullopt;
    return value;
}

}  // namespace nivora
