#include "base/entry_refusal.h"

#include "base/calendar.h"
#include "base/number_text.h"
#include "base/text.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <limits>

namespace nivora {
namespace {

bool is_blank(std::string_view text) { return trimmed(text).empty(); }

/// Whether a text is a number once commas, blanks and apostrophes between its digits are left out.
bool has_other_separators(std::string_view text) {
    std::string digits{trimmed(text)};
    const std::size_t before = digits.size();
    std::erase_if(digits, [](char character) {
        return std::string_view{", '"}.find(character) != std::string_view::npos;
    });
    // A number of the form 1.234,5 has two points once its comma is read as one.
    std::string points{trimmed(text)};
    std::erase(points, '.');
    std::replace(points.begin(), points.end(), ',', '.');
    return digits.size() < before && (exact_number(digits) || exact_number(points));
}

/// Whether a text has three groups of digits, as a date has.
bool is_written_as_date(std::string_view text) {
    const std::string_view shown = trimmed(text);
    const char separator = shown.find('/') != std::string_view::npos ? '/' : '-';
    int groups = 1;
    std::size_t digits = 0;
    for (const char character : shown) {
        if (character == separator) {
            if (digits == 0) return false;
            ++groups;
            digits = 0;
        } else if (std::isdigit(static_cast<unsigned char>(character)) != 0) {
            ++digits;
        } else {
            return false;
        }
    }
    const bool year_first = separator == '-';
    return groups == 3 && (year_first ? digits > 0 : digits == 4);
}

int year_of(std::string_view text) {
    const std::string_view shown = trimmed(text);
    const bool american = shown.find('/') != std::string_view::npos;
    return static_cast<int>(
        leading_number(american ? shown.substr(shown.rfind('/') + 1) : shown.substr(0, shown.find('-'))));
}

}  // namespace

std::string number_refusal(std::string_view text) {
    if (is_blank(text) || exact_number(text)) return {};
    if (has_other_separators(text)) return "a number has a point as its decimal sign and no other separators";
    return std::isinf(leading_number(text)) ? k_number_too_large : "this is not a number";
}

std::string single_refusal(std::string_view text) {
    if (auto refusal = number_refusal(text); !refusal.empty() || is_blank(text)) return refusal;
    return std::isinf(static_cast<float>(*exact_number(text))) ? k_number_too_large : std::string{};
}

std::string integer_refusal(std::string_view text) {
    if (auto refusal = number_refusal(text); !refusal.empty() || is_blank(text)) return refusal;
    const double number = *exact_number(text);
    if (number != std::floor(number)) return "a whole number is needed";
    using Integer = std::numeric_limits<std::int16_t>;
    if (number < Integer::min() || number > Integer::max())
        return limits_refusal(Integer::min(), Integer::max());
    return {};
}

std::string date_refusal(std::string_view text) {
    if (is_blank(text) || read_date(text)) return {};
    if (!is_written_as_date(text)) return "a date has the form mm/dd/yyyy";
    const int year = year_of(text);
    if (year < k_first_year || year > k_last_year) {
        return "the year must lie between " + std::to_string(k_first_year) + " and " +
               std::to_string(k_last_year);
    }
    return "the calendar has no such day";
}

std::string item_refusal(std::string_view text, std::span<const std::string> items) {
    if (is_blank(text)) return {};
    std::string names;
    for (const std::string& item : items) {
        if (same_name(item, trimmed(text))) return {};
        names += (names.empty() ? "'" : ", '") + item + "'";
    }
    return "it must be one of " + names;
}

std::string limits_refusal(double low, double high) {
    return "the number must lie between " + double_text(low) + " and " + double_text(high);
}

}  // namespace nivora
