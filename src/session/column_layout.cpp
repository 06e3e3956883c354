#include "session/column_layout.h"

#include "base/text.h"

#include <algorithm>
#include <utility>

namespace nivora {
namespace {

constexpr char k_hidden = '-';
/// A kept text comes from a file that anybody can edit: more words than this name no columns.
constexpr std::size_t k_most_words = 200;

std::vector<std::string_view> words_of(std::string_view text) {
    std::vector<std::string_view> words;
    while (words.size() < k_most_words) {
        const std::size_t first = text.find_first_not_of(' ');
        if (first == std::string_view::npos) break;
        text.remove_prefix(first);
        const std::size_t length = std::min(text.find(' '), text.size());
        words.push_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return words;
}

}  // namespace

ColumnLayout::ColumnLayout(const std::vector<OfferedColumn>& offered, std::string_view kept) {
    for (std::string_view word : words_of(kept)) {
        const bool shown = word.front() != k_hidden;
        if (!shown) word.remove_prefix(1);
        const auto known = std::any_of(entries_.begin(), entries_.end(),
                                       [&](const Entry& entry) { return same_name(entry.name, word); });
        if (!word.empty() && !known) entries_.push_back({.name = std::string{word}, .shown = shown});
    }
    for (std::size_t column = 0; column < offered.size(); ++column) {
        const OfferedColumn& wanted = offered[column];
        auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&](const Entry& entry) { return same_name(entry.name, wanted.name); });
        if (found == entries_.end()) {
            const auto before = column == 0 ? std::optional<std::size_t>{} : place_of(column - 1);
            const std::size_t place = before ? *before + 1 : 0;
            found = entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(place),
                                    {.name = wanted.name, .shown = wanted.shown_at_first});
        }
        found->offered = column;
        found->shown_at_first = wanted.shown_at_first;
        if (column == 0) {
            found->shown = true;
            std::rotate(entries_.begin(), found, found + 1);
        }
    }
    if (!offered.empty() && shown().size() < 2) show_all();
}

std::optional<std::size_t> ColumnLayout::place_of(std::size_t column) const {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [column](const Entry& entry) { return entry.offered == column; });
    if (found == entries_.end()) return std::nullopt;
    return static_cast<std::size_t>(found - entries_.begin());
}

std::vector<std::size_t> ColumnLayout::shown() const {
    std::vector<std::size_t> columns;
    columns.reserve(entries_.size());
    for (const Entry& entry : entries_) {
        if (entry.offered && entry.shown) columns.push_back(*entry.offered);
    }
    return columns;
}

std::vector<std::size_t> ColumnLayout::all() const {
    std::vector<std::size_t> columns;
    columns.reserve(entries_.size());
    for (const Entry& entry : entries_) {
        if (entry.offered) columns.push_back(*entry.offered);
    }
    return columns;
}

bool ColumnLayout::is_shown(std::size_t column) const {
    const auto place = place_of(column);
    return place && entries_[*place].shown;
}

bool ColumnLayout::can_hide(std::size_t column) const {
    return column > 0 && is_shown(column) && shown().size() > 2;
}

void ColumnLayout::show(std::size_t column, bool shown) {
    const auto place = place_of(column);
    if (place && (shown || can_hide(column))) entries_[*place].shown = shown;
}

/// The next seen column, past those that are hidden or not offered; nothing beyond the first and the last.
std::optional<std::size_t> ColumnLayout::neighbour(std::size_t place, bool right) const {
    for (std::size_t at = place; right ? at + 1 < entries_.size() : at > 1;) {
        at = right ? at + 1 : at - 1;
        if (entries_[at].offered && entries_[at].shown) return at;
    }
    return std::nullopt;
}

bool ColumnLayout::can_move(std::size_t column, bool right) const {
    const auto place = place_of(column);
    return column > 0 && place && entries_[*place].shown && neighbour(*place, right).has_value();
}

void ColumnLayout::move(std::size_t column, bool right) {
    if (!can_move(column, right)) return;
    const std::size_t from = *place_of(column);
    const std::size_t to = *neighbour(from, right);
    Entry moved = std::move(entries_[from]);
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(from));
    entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(to), std::move(moved));
}

void ColumnLayout::show_all() {
    for (Entry& entry : entries_) {
        if (entry.offered) entry.shown = true;
    }
}

bool ColumnLayout::is_original() const {
    std::size_t next = 0;
    for (const Entry& entry : entries_) {
        if (!entry.offered) continue;
        if (*entry.offered != next++ || entry.shown != entry.shown_at_first) return false;
    }
    return true;
}

void ColumnLayout::restore() {
    std::erase_if(entries_, [](const Entry& entry) { return !entry.offered; });
    std::sort(entries_.begin(), entries_.end(),
              [](const Entry& one, const Entry& other) { return *one.offered < *other.offered; });
    for (Entry& entry : entries_) entry.shown = entry.shown_at_first;
}

std::string ColumnLayout::text() const {
    const bool all_offered =
        std::all_of(entries_.begin(), entries_.end(), [](const Entry& entry) { return entry.offered; });
    if (all_offered && is_original()) return {};
    std::string text;
    for (const Entry& entry : entries_) {
        if (!text.empty()) text += ' ';
        if (!entry.shown) text += k_hidden;
        text += entry.name;
    }
    return text;
}

}  // namespace nivora
