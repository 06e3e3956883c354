#include "prep/table_cells.h"

#include "base/single.h"
#include "base/text.h"
#include "store/field_ranges.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace nivora {
namespace {

constexpr std::size_t k_longest_shown = 40;
constexpr std::size_t k_longest_number = 63;

/// Reads a text that is a number in the language of the library from end to end.
template <typename Number>
std::errc read_whole(std::string_view text, Number& value) {
    if (text.starts_with('+') && text.size() > 1 && text[1] != '-') text.remove_prefix(1);
    // The library also reads words such as "nan" and "infinity".
    const bool word = text.find_first_not_of("0123456789.+-eE") != std::string_view::npos;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (word || error == std::errc::invalid_argument || end != text.data() + text.size())
        return std::errc::invalid_argument;
    return error;
}

/// A number nearer to 0 than the type can hold is reported like one that is too large.
bool is_tiny(std::string_view text) {
    const std::size_t exponent = text.find_first_of("eE");
    return exponent != std::string_view::npos && exponent + 1 < text.size() && text[exponent + 1] == '-';
}

bool has_digits_around(std::string_view text, char sign) {
    const std::size_t at = text.find(sign);
    return at != std::string_view::npos && text.find(sign, at + 1) == std::string_view::npos &&
           text.find_first_not_of("0123456789+-eE.,") == std::string_view::npos &&
           text.find_first_of("0123456789") != std::string_view::npos;
}

/// Why a value is outside the range of its field. A unit that was not stated, and a mark of missing values
/// that was not, are the usual causes.
std::string range_refusal(std::string_view text, double value, const FieldRange& range) {
    const std::string limits = value < range.least && range.most == k_no_range_end
                                   ? fmt::format("below {}", range.least)
                                   : fmt::format("not within {} and {}", range.least, range.most);
    return fmt::format("{}: '{}' is {}; state its unit, or that it stands for a missing value", range.field,
                       shown_cell(text), limits);
}

}  // namespace

std::string shown_cell(std::string_view text) {
    const std::string readable = one_line(to_utf8(text));
    const std::string_view head = first_characters(readable, k_longest_shown);
    return std::string{head} + (head.size() < readable.size() ? "..." : "");
}

NumberCells::NumberCells(const CellForm& form) : decimal_(form.decimal) {
    for (const std::string& mark : form.missing) {
        const std::string_view text = trimmed(mark);
        marks_.emplace_back(text);
        if (const auto value = number(text)) mark_values_.push_back(*value);
    }
}

bool NumberCells::is_missing_mark(std::string_view text) const {
    return std::find(marks_.begin(), marks_.end(), text) != marks_.end();
}

/// A text with the decimal sign of the file as a number; infinite if it is too large for a Double.
std::optional<double> NumberCells::number(std::string_view text) const {
    std::array<char, k_longest_number + 1> pointed{};
    if (decimal_ == DecimalSign::Comma) {
        if (text.size() > k_longest_number || text.find('.') != std::string_view::npos) return std::nullopt;
        std::replace_copy(text.begin(), text.end(), pointed.begin(), ',', '.');
        text = {pointed.data(), text.size()};
    }
    double value = 0.0;
    const std::errc error = read_whole(text, value);
    if (error == std::errc::invalid_argument) return std::nullopt;
    if (error == std::errc::result_out_of_range)
        return is_tiny(text) ? 0.0 : std::numeric_limits<double>::infinity();
    return value;
}

std::string NumberCells::refusal(std::string_view text, const Field& field) const {
    const bool point = decimal_ == DecimalSign::Point;
    if (point && has_digits_around(text, ',')) {
        return fmt::format(
            "{}: '{}' has a comma, and the decimal sign is a point; state that it is a comma if "
            "it is one",
            field.name, shown_cell(text));
    }
    if (!point && has_digits_around(text, '.')) {
        return fmt::format("{}: '{}' has a point, and the decimal sign is stated to be a comma", field.name,
                           shown_cell(text));
    }
    return fmt::format("{}: '{}' is not a number; state it if it stands for a missing value", field.name,
                       shown_cell(text));
}

std::optional<double> NumberCells::read(std::string_view cell, const Field& field,
                                        const UnitConversion& conversion, std::string& reason) const {
    const std::string_view text = trimmed(cell);
    if (text.empty() || is_missing_mark(text)) return static_cast<double>(k_missing);
    const auto given = number(text);
    if (!given) {
        reason = refusal(text, field);
        return std::nullopt;
    }
    if (std::find(mark_values_.begin(), mark_values_.end(), *given) != mark_values_.end())
        return static_cast<double>(k_missing);
    const bool as_given = conversion.is_identity();
    // The sum turns a negative zero, which no field holds, into 0.
    const double value = (as_given ? *given : conversion.of(*given)) + 0.0;
    const auto refuse = [&](const char* why) {
        reason = fmt::format("{}: '{}' is {}", field.name, shown_cell(text), why);
        return std::nullopt;
    };
    constexpr const char* k_too_large = "beyond the numbers that the field can hold";
    if (!std::isfinite(value)) return refuse(k_too_large);
    double kept = value;
    if (field.type == FieldType::Integer) {
        if (value != std::nearbyint(value)) return refuse("not a whole number");
        if (!to_integer16(value)) return refuse(k_too_large);
    } else if (field.type == FieldType::Single) {
        float single = 0.0F;
        // Digits are rounded once: by way of a Double a text between two Singles could reach the wrong one.
        const bool direct =
            as_given && decimal_ == DecimalSign::Point && read_whole(text, single) == std::errc{};
        if (!direct) single = static_cast<float>(value);
        if (!std::isfinite(single)) return refuse(k_too_large);
        kept = as_double(single + 0.0F);
    }
    const FieldRange* const range = usable_range(field.name);
    if (range != nullptr && !range->holds(kept)) {
        reason = range_refusal(text, kept, *range);
        return std::nullopt;
    }
    return kept;
}

}  // namespace nivora
