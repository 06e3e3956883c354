#include "prep/legacy_header.h"

#include "base/number_text.h"
#include "base/text.h"
#include "store/basin_store.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace nivora {
namespace {

constexpr std::size_t k_items = 80;
constexpr std::size_t k_last_plain_item = 26;
constexpr std::size_t k_unused_item = 16;
constexpr std::size_t k_version_prefix = 8;
constexpr int k_pairs = 8;

// Version numbers: files with a greater one have the item, or the form, that the constant names.
constexpr float k_version_threshold = 2.0F;
constexpr float k_version_extra = 3.1F;
constexpr float k_version_plain_name = 3.11F;

/// The text of each header item, and its line.
struct HeaderItems {
    std::array<std::string, k_items + 1> text;
    std::array<int, k_items + 1> line{};
};

[[noreturn]] void refuse(const HeaderItems& items, std::size_t item, const std::string& what) {
    throw LegacyFileError(items.line.at(item), fmt::format("header item {}", item), what);
}

void read_item(LegacyText& text, HeaderItems& items, std::size_t item) {
    items.line.at(item) = text.line();
    if (text.at_end()) refuse(items, item, "the file ends before it");
    items.text.at(item) = text.next_item();
}

std::optional<int> whole_number(const std::string& text) {
    const auto value = exact_number(text);
    if (!value || *value != std::floor(*value) || std::abs(*value) > 1.0e6) return std::nullopt;
    return static_cast<int>(*value);
}

double number(const HeaderItems& items, std::size_t item, const char* meaning) {
    const auto value = exact_number(items.text[item]);
    if (!value)
        refuse(items, item, fmt::format("{} is not a number: '{}'", meaning, shown_text(items.text[item])));
    return *value;
}

bool has_zones_and_year(const HeaderItems& items) {
    const auto zones = whole_number(items.text[18]);
    const auto year = whole_number(items.text[19]);
    return zones && *zones >= 1 && *zones <= k_most_zones && year && *year >= k_first_year &&
           *year <= k_last_year;
}

/// Most files have an item 16, some do not.
void read_plain_items(LegacyText& text, HeaderItems& items) {
    LegacyText without = text;
    for (std::size_t item = 2; item <= k_last_plain_item; ++item) read_item(text, items, item);
    if (has_zones_and_year(items)) return;

    HeaderItems second;
    second.text[1] = items.text[1];
    bool complete = true;
    for (std::size_t item = 2; item <= k_last_plain_item && complete; ++item) {
        complete = !without.at_end();
        if (complete && item != k_unused_item) read_item(without, second, item);
    }
    if (complete && has_zones_and_year(second)) {
        text = without;
        items = second;
        return;
    }
    const auto zones = whole_number(items.text[18]);
    if (!zones || *zones < 1 || *zones > k_most_zones) {
        refuse(items, 18,
               fmt::format("the number of zones is not a whole number from 1 to 16: '{}'",
                           shown_text(items.text[18])));
    }
    refuse(items, 19, fmt::format("the year is not from 1900 to 2300: '{}'", shown_text(items.text[19])));
}

float read_version(LegacyText& text) {
    HeaderItems items;
    read_item(text, items, 1);
    const std::string& version = items.text[1];
    if (version == "/") return 1.0F;
    constexpr std::string_view k_wanted = "the file does not begin with a version such as 'Version 3.2'";
    if (version.size() <= k_version_prefix) refuse(items, 1, std::string{k_wanted});
    const std::string_view number_part = trimmed(std::string_view{version}.substr(k_version_prefix));
    const bool starts =
        !number_part.empty() && (std::isdigit(static_cast<unsigned char>(number_part.front())) != 0);
    const double value = starts ? leading_number(number_part) : 0.0;
    if (!(value > 0.0 && value < 1000.0)) refuse(items, 1, std::string{k_wanted});
    return static_cast<float>(value);
}

/// Month and day of a text MMDD: four digits, and nothing else but blanks around them.
std::optional<CivilDate> month_and_day(const std::string& text, int year) {
    const std::string_view digits = trimmed(text);
    const bool all_digits =
        std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (digits.size() != 4 || !all_digits) return std::nullopt;
    const auto number = [&](std::size_t at) { return (digits[at] - '0') * 10 + (digits[at + 1] - '0'); };
    return CivilDate{year, number(0), number(2)};
}

DayCount date_of_item(const HeaderItems& items, std::size_t item, int year) {
    const auto civil = month_and_day(items.text[item], year);
    const auto date = civil ? day_count(*civil) : std::nullopt;
    if (!date) {
        refuse(items, item,
               fmt::format("'{}' is not a date of {} in the form MMDD", shown_text(items.text[item]), year));
    }
    return *date;
}

/// The day from which the later coefficients apply. A day before the start of the period belongs to the next
/// year; month and day are compared, because the year of the start may have no 29 February.
DayCount change_day(const HeaderItems& items, const CivilDate& start) {
    constexpr std::size_t k_change_item = 25;
    const auto civil = month_and_day(items.text[k_change_item], start.year);
    const bool before = civil && std::pair{civil->month, civil->day} < std::pair{start.month, start.day};
    return date_of_item(items, k_change_item, before ? start.year + 1 : start.year);
}

void read_period(const HeaderItems& items, LegacyFile& file) {
    const int year = *whole_number(items.text[19]);
    file.start = date_of_item(items, 2, year);
    const int start_month = civil_date(file.start).month;
    const auto end = month_and_day(items.text[4], year);
    const bool crosses = end && end->month < start_month;
    file.end = date_of_item(items, 4, crosses ? year + 1 : year);
    if (file.end < file.start) refuse(items, 4, "the period ends before it starts");
}

void read_recession(const HeaderItems& items, LegacyFile& file) {
    file.x = number(items, 21, "the recession coefficient x");
    file.y = number(items, 23, "the recession coefficient y");
    const std::string_view change = trimmed(items.text[25]);
    if (change.empty() || change.find_first_not_of('0') == std::string_view::npos) return;
    file.change_day = change_day(items, civil_date(file.start));
    file.x_later = number(items, 22, "the later recession coefficient x");
    file.y_later = number(items, 24, "the later recession coefficient y");
}

/// In files of the older versions the name may be enclosed in another pair of quotation marks.
std::string basin_name(const HeaderItems& items, float version) {
    std::string name = items.text[17];
    const bool quoted = name.size() >= 2 && name.front() == '"' && name.back() == '"';
    if (version <= k_version_plain_name && quoted) name = name.substr(1, name.size() - 2);
    return to_utf8(name);
}

void read_threshold(LegacyText& text, HeaderItems& items, LegacyFile& file) {
    items.text[27] = file.english ? "2.36" : "6";
    if (file.version > k_version_threshold) read_item(text, items, 27);
    if (!trimmed(items.text[27]).empty()) {
        const double threshold = number(items, 27, "the rain threshold");
        if (!std::isfinite(static_cast<float>(threshold)))
            refuse(items, 27, "the rain threshold is too large");
        file.rain_threshold = threshold;
    }
    if (file.version > k_version_extra) {
        const int line = text.line();
        const bool missing = text.at_end();
        const std::string extra = missing ? std::string{} : text.next_item();
        if (!exact_number(extra)) {
            throw LegacyFileError(
                line, "the number after header item 27",
                missing ? "the file ends before it" : "'" + shown_text(extra) + "' is not a number");
        }
    }
}

void read_zones(LegacyText& text, HeaderItems& items, LegacyFile& file) {
    const int zones = *whole_number(items.text[18]);
    for (int pair = 1; pair <= k_pairs; ++pair) {
        const auto item = static_cast<std::size_t>(26 + 2 * pair);
        read_item(text, items, item);
        read_item(text, items, item + 1);
        // The pairs of zones that the basin does not have may be blank.
        const bool blank = trimmed(items.text[item]).empty() && trimmed(items.text[item + 1]).empty();
        if (pair > zones && blank) continue;
        const LegacyZone zone{number(items, item, "the area of a zone"),
                              number(items, item + 1, "the elevation of a zone")};
        if (pair <= zones) file.zones.push_back(zone);
    }
}

}  // namespace

std::string shown_text(std::string_view text) {
    constexpr std::size_t k_longest = 40;
    std::string safe = to_utf8(text.substr(0, k_longest));
    for (char& character : safe) {
        if (static_cast<unsigned char>(character) < 0x20 || character == 0x7F) character = '?';
    }
    return text.size() > k_longest ? safe + "..." : safe;
}

void LegacyText::skip_line_end() {
    if (at_end()) return;
    const bool pair = text_[at_] == '\r' && at_ + 1 < text_.size() && text_[at_ + 1] == '\n';
    at_ += pair ? 2 : 1;
    ++line_;
}

std::string_view LegacyText::next_line() {
    const std::size_t end = std::min(text_.find_first_of("\r\n", at_), text_.size());
    const std::string_view content = text_.substr(at_, end - at_);
    at_ = end;
    skip_line_end();
    return content;
}

/// A quoted text may contain commas, and quotation marks that no delimiter follows. A text that is never
/// closed ends with its line.
std::size_t LegacyText::closing_quote(std::size_t open) const {
    const std::size_t line_end = std::min(text_.find_first_of("\r\n", open), text_.size());
    for (std::size_t at = open + 1; at < line_end; ++at) {
        if (text_[at] != '"') continue;
        const std::size_t delimiter = text_.find_first_not_of(" \t", at + 1);
        if (delimiter == std::string_view::npos || delimiter >= line_end || text_[delimiter] == ',')
            return at;
    }
    return line_end;
}

std::string LegacyText::next_item() {
    at_ = std::min(text_.find_first_not_of(" \t", at_), text_.size());
    std::string_view item;
    if (!at_end() && text_[at_] == '"') {
        const std::size_t close = closing_quote(at_);
        item = text_.substr(at_ + 1, close - at_ - 1);
        at_ = std::min(text_.find_first_of(",\r\n", close), text_.size());
    } else {
        const std::size_t end = std::min(text_.find_first_of(",\r\n", at_), text_.size());
        item = right_trimmed(text_.substr(at_, end - at_));
        at_ = end;
    }
    if (!at_end() && text_[at_] == ',') {
        ++at_;
    } else {
        skip_line_end();
    }
    return std::string{item};
}

void read_legacy_header(LegacyText& text, LegacyFile& file) {
    file.version = read_version(text);
    HeaderItems items;
    read_plain_items(text, items);
    file.english = trimmed(items.text[3]) != "0";
    if (*whole_number(items.text[18]) > k_most_legacy_zones)
        refuse(items, 18, "a legacy file has at most 8 zones");
    read_period(items, file);
    read_recession(items, file);
    file.basin_name = basin_name(items, file.version);
    if (!trimmed(items.text[26]).empty())
        file.reference_elevation = number(items, 26, "the reference elevation");
    read_threshold(text, items, file);
    read_zones(text, items, file);
}

}  // namespace nivora
