#include "prep/dated_block.h"

#include "base/text.h"

#include <algorithm>
#include <unordered_map>

namespace nivora {
namespace {

bool is_empty_line(const std::vector<std::string>& cells) {
    return std::all_of(cells.begin(), cells.end(), [](const auto& cell) { return trimmed(cell).empty(); });
}

/// "Precip (cm)" as "Precip".
std::string_view without_unit(std::string_view heading) {
    return trimmed(heading.substr(0, heading.find_first_of("([")));
}

/// The column that a heading names; the column of dates is not one.
std::optional<std::size_t> column_of(std::string_view heading, const std::vector<DailyColumn>& columns) {
    const std::string_view name = without_unit(heading);
    for (std::size_t column = 1; column < columns.size(); ++column) {
        if (same_name(name, columns[column].header) || same_name(name, columns[column].field)) return column;
    }
    return std::nullopt;
}

/// The column of the table for each column of the block; nothing if there is none.
using ColumnMap = std::vector<std::optional<std::size_t>>;

ColumnMap map_columns(const DatedBlock& block, const std::vector<DailyColumn>& columns,
                      std::span<const std::size_t> from_active) {
    std::size_t widest = block.headings.size();
    for (const auto& line : block.values) widest = std::max(widest, line.size());
    ColumnMap map(widest);
    for (std::size_t i = 0; i < block.headings.size(); ++i) map[i] = column_of(block.headings[i], columns);
    const bool named =
        std::any_of(map.begin(), map.end(), [](const auto& column) { return column.has_value(); });
    if (named) return map;
    for (std::size_t i = 0; i < std::min(widest, from_active.size()); ++i) map[i] = from_active[i];
    return map;
}

/// Two headings that name one column; empty if each names its own.
std::string duplicate_column(const DatedBlock& block, const ColumnMap& map,
                             const std::vector<DailyColumn>& columns) {
    for (std::size_t i = 0; i < block.headings.size(); ++i) {
        if (!map[i]) continue;
        const auto first = static_cast<std::size_t>(std::find(map.begin(), map.end(), map[i]) - map.begin());
        if (first == i) continue;
        return "The headings '" + std::string{trimmed(block.headings[first])} + "' and '" +
               std::string{trimmed(block.headings[i])} + "' of the clipboard name the same column, " +
               columns[*map[i]].header + ".";
    }
    return {};
}

std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
    return text;
}

std::string counted(std::size_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace

std::optional<DatedBlock> read_dated_block(const CellBlock& block) {
    DatedBlock read;
    bool heading = true;
    std::size_t number = 0;
    for (const auto& line : block) {
        ++number;
        if (is_empty_line(line)) continue;
        const auto date = read_date(line.front());
        if (date.has_value() == heading || line.size() < 2) return std::nullopt;
        if (heading) {
            read.headings.assign(line.begin() + 1, line.end());
            heading = false;
            continue;
        }
        read.dates.push_back(*date);
        read.lines.push_back(number);
        read.values.emplace_back(line.begin() + 1, line.end());
    }
    if (read.dates.empty()) return std::nullopt;
    return read;
}

DatedPlaces place_by_date(const DatedBlock& block, const DailyEditor& table, std::size_t active_column) {
    std::vector<std::size_t> seen;
    seen.reserve(table.columns().size());
    for (std::size_t column = 1; column < table.columns().size(); ++column) seen.push_back(column);
    const std::size_t before = std::min(std::max<std::size_t>(1, active_column) - 1, seen.size());
    return place_by_date(block, table, seen, std::span{seen}.subspan(before));
}

DatedPlaces place_by_date(const DatedBlock& block, const DailyEditor& table,
                          std::span<const std::size_t> seen, std::span<const std::size_t> from_active) {
    std::unordered_map<DayCount, std::size_t> row_of;
    for (std::size_t row = 0; row < table.rows(); ++row) row_of.emplace(table.date(row), row);
    const auto& columns = table.columns();
    ColumnMap map = map_columns(block, columns, from_active);
    DatedPlaces places;
    places.duplicate = duplicate_column(block, map, columns);
    std::vector<bool> is_hidden(map.size());
    for (std::size_t i = 0; i < map.size(); ++i) {
        if (!map[i] || std::find(seen.begin(), seen.end(), *map[i]) != seen.end()) continue;
        places.hidden.push_back(columns[*map[i]].header);
        is_hidden[i] = true;
        map[i].reset();
    }
    std::unordered_map<DayCount, std::size_t> line_of;
    for (std::size_t i = 0; i < map.size(); ++i) {
        if (map[i]) {
            places.headers.push_back(columns[*map[i]].header);
        } else if (!is_hidden[i]) {
            places.unknown.push_back(i < block.headings.size() ? block.headings[i] : std::string{});
        }
    }
    for (std::size_t line = 0; line < block.dates.size(); ++line) {
        const auto found = row_of.find(block.dates[line]);
        if (found == row_of.end()) {
            ++places.other_days;
            continue;
        }
        const DayCount day = block.dates[line];
        const auto [known, is_new] = line_of.emplace(day, block.lines[line]);
        if (!is_new && places.duplicate.empty()) {
            places.duplicate = "The date " + long_date_text(day) + " is in lines " +
                               std::to_string(known->second) + " and " + std::to_string(block.lines[line]) +
                               " of the clipboard.";
        }
        places.first = places.days == 0 ? day : std::min(places.first, day);
        places.last = places.days == 0 ? day : std::max(places.last, day);
        ++places.days;
        for (std::size_t i = 0; i < block.values[line].size(); ++i) {
            if (map[i]) places.values.push_back({found->second, *map[i], block.values[line][i]});
        }
    }
    return places;
}

Message dated_paste_question(const DatedPlaces& places) {
    if (!places.duplicate.empty()) {
        return {
            .text = places.duplicate +
                    " Its values can't be placed by date: remove one of the two and copy again.\nOK pastes "
                    "cell by cell from the active cell, Cancel pastes nothing.",
            .title = "Paste by date",
            .icon = Icon::Warning,
            .buttons = Buttons::OkCancel,
            .default_answer = Answer::Cancel};
    }
    std::string text = "The clipboard holds dates with values of " + joined(places.headers) + ": " +
                       counted(places.days, "day") + " of this table, " + long_date_text(places.first) +
                       " to " + long_date_text(places.last) + ".";
    if (places.other_days > 0)
        text += "\n" + counted(places.other_days, "date") + " of the clipboard " +
                (places.other_days == 1 ? "is" : "are") + " not in this table.";
    if (!places.unknown.empty())
        text += "\nThese headings name no column of this table: " + joined(places.unknown) + ".";
    if (!places.hidden.empty())
        text += "\nThese columns are hidden and get no values: " + joined(places.hidden) + ".";
    text += "\nPaste each value at its date? No pastes them cell by cell from the active cell.";
    return {.text = text,
            .title = "Paste by date",
            .icon = Icon::Question,
            .buttons = Buttons::YesNoCancel,
            .default_answer = Answer::Yes};
}

}  // namespace nivora
