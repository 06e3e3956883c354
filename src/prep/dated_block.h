// Copied cells whose dates and headings say where they belong in a daily table.
#pragma once

#include "base/calendar.h"
#include "base/clipboard_text.h"
#include "prep/daily_editor.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace nivora {

/// A block whose first line is a heading and whose other lines begin with a date.
struct DatedBlock {
    std::vector<std::string> headings;  ///< of the columns other than the dates
    std::vector<DayCount> dates;
    std::vector<std::size_t> lines;                ///< of the dates in the clipboard, from 1
    std::vector<std::vector<std::string>> values;  ///< by line, without its date
};

/// @return nothing if the block has another form. Lines without text are ignored.
[[nodiscard]] std::optional<DatedBlock> read_dated_block(const CellBlock& block);

/// A value of such a block and its cell in the daily table, rows and columns from 0.
struct DatedValue {
    std::size_t row = 0;
    std::size_t column = 0;
    std::string text;
};

/// Where the values of a dated block go.
struct DatedPlaces {
    std::vector<DatedValue> values;
    std::vector<std::string> headers;  ///< of the columns that get values
    std::vector<std::string> unknown;  ///< headings that name no column of the table
    std::vector<std::string> hidden;   ///< headers of named columns that are not seen, which get no values
    std::size_t days = 0;              ///< dates that are days of the table
    std::size_t other_days = 0;        ///< dates that are not
    DayCount first = 0;                ///< the earliest and the latest of its days
    DayCount last = 0;
    /// Why the block does not say which values to use: a day of the table is in two lines, or a column in two
    /// headings. Empty if neither is so.
    std::string duplicate;
};

/// Matches lines to days and headings to columns, by the header or the field's name, without a unit in
/// brackets. If no heading names a column, the columns are placed side by side from the active one on.
[[nodiscard]] DatedPlaces place_by_date(const DatedBlock& block, const DailyEditor& table,
                                        std::size_t active_column);

/// The same in a table of which the user sees only some columns, in some order. No other gets values.
///
/// @param seen the seen columns other than the date, from the left to the right
/// @param from_active those of them from the active one on
[[nodiscard]] DatedPlaces place_by_date(const DatedBlock& block, const DailyEditor& table,
                                        std::span<const std::size_t> seen,
                                        std::span<const std::size_t> from_active);

/// The offer to paste by date: Yes does so, No pastes cell by cell, Cancel nothing. A block with two values
/// for one cell is refused: OK pastes it cell by cell, Cancel nothing.
[[nodiscard]] Message dated_paste_question(const DatedPlaces& places);

}  // namespace nivora
