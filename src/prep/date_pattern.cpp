#include "prep/date_pattern.h"

#include "base/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace nivora {
namespace {

constexpr std::size_t k_year_digits = 4;
constexpr std::size_t k_longest_shown = 40;

bool is_digit(char character) { return character >= '0' && character <= '9'; }

bool is_word(char character) {
    return is_digit(character) || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z');
}

std::string shown(std::string_view text) {
    return one_line(first_characters(to_utf8(text), k_longest_shown));
}

}  // namespace

DatePattern::DatePattern() : DatePattern(*read("YYYY-MM-DD")) {}

std::optional<DatePattern> DatePattern::read(std::string_view text) {
    std::vector<Piece> pieces;
    for (std::size_t at = 0; at < text.size();) {
        const char kind = text[at];
        if (kind != 'Y' && kind != 'M' && kind != 'D') {
            if (is_word(kind)) return std::nullopt;
            pieces.push_back({.kind = 0, .character = kind, .least = 0, .most = 0});
            ++at;
            continue;
        }
        const std::size_t letters = std::min(text.find_first_not_of(kind, at), text.size()) - at;
        if (kind == 'Y' ? letters != k_year_digits : letters > 2) return std::nullopt;
        pieces.push_back(
            {.kind = kind, .character = 0, .least = letters, .most = std::max<std::size_t>(letters, 2)});
        at += letters;
    }
    for (const char kind : {'Y', 'M', 'D'}) {
        const auto is_kind = [&](const Piece& piece) { return piece.kind == kind; };
        if (std::count_if(pieces.begin(), pieces.end(), is_kind) != 1) return std::nullopt;
    }
    for (std::size_t i = 0; i + 1 < pieces.size(); ++i) {
        if (pieces[i].least != pieces[i].most && pieces[i + 1].kind != 0) return std::nullopt;
    }
    return DatePattern{std::string{text}, std::move(pieces)};
}

std::optional<CivilDate> DatePattern::parts(std::string_view text) const {
    CivilDate date;
    for (const Piece& piece : pieces_) {
        if (piece.kind == 0) {
            if (text.empty() || text.front() != piece.character) return std::nullopt;
            text.remove_prefix(1);
            continue;
        }
        int value = 0;
        std::size_t digits = 0;
        for (; digits < piece.most && digits < text.size() && is_digit(text[digits]); ++digits)
            value = value * 10 + (text[digits] - '0');
        if (digits < piece.least) return std::nullopt;
        text.remove_prefix(digits);
        (piece.kind == 'Y' ? date.year : piece.kind == 'M' ? date.month : date.day) = value;
    }
    return text.empty() ? std::optional{date} : std::nullopt;
}

std::optional<DayCount> DatePattern::day(std::string_view text, std::string& reason) const {
    const std::string_view date_text = trimmed(text);
    if (date_text.empty()) {
        reason = "the date is missing";
        return std::nullopt;
    }
    const auto date = parts(date_text);
    if (!date) {
        reason = fmt::format("'{}' is not a date of the form {}", shown(date_text), text_);
        return std::nullopt;
    }
    if (date->year < k_first_year || date->year > k_last_year) {
        reason =
            fmt::format("the year of '{}' is not from {} to {}", shown(date_text), k_first_year, k_last_year);
        return std::nullopt;
    }
    const auto day = day_count(*date);
    if (!day) reason = fmt::format("there is no day '{}' in the calendar", shown(date_text));
    return day;
}

}  // namespace nivora
