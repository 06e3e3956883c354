// The daily values that one window edits, inside one transaction.
#pragma once

#include "prep/daily_edits.h"
#include "prep/prep_state.h"
#include "store/daily_fields.h"
#include "store/database.h"

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// How the cells of a column are read and shown. The decimals are those that a cell shows; its value keeps
/// its full precision.
struct DailyColumn {
    std::string field;   ///< in the file
    std::string header;  ///< as shown
    FieldType type = FieldType::Single;
    int decimals = 2;
    std::optional<double> low;  ///< nothing: no limit
    std::optional<double> high;
};

/// The fields that a view shows, `Date` first.
[[nodiscard]] std::vector<std::string> daily_fields(DataView view);

/// The columns of a view, one for each field, `Date` first.
[[nodiscard]] std::vector<DailyColumn> daily_columns(DataView view, const std::vector<std::string>& fields);

/// A number as the cells of a column keep it; nothing if they can't hold it. A missing value stays missing.
[[nodiscard]] std::optional<double> kept_daily_value(const DailyColumn& column, double value);

/// Why the cells of a column can't hold a number: a clause without a full stop; empty if they can.
[[nodiscard]] std::string daily_refusal(const DailyColumn& column, double value);

/// The end of the name that is proposed for a print of a view: "_variables", "_parameters", "_Results", or
/// nothing for a scenario's values.
[[nodiscard]] std::string daily_print_suffix(DataView view);

/// The input box before a mass edit of a field, with the field's name from the file.
[[nodiscard]] InputBox mass_edit_question(MassEdit edit, const std::string& field);

/// Cells of one zone, counted from 0, both ends included.
struct DailyBlock {
    int zone = 1;
    std::size_t first_row = 0;
    std::size_t first_column = 0;
    std::size_t last_row = 0;
    std::size_t last_column = 0;
};

/// The days of a daily table, one zone at a time. All changes wait in one transaction for commit(); without
/// it they are rolled back. Rows count from 0 in date order, columns from 0; column 0 is the date.
///
/// The view Scenario shows the days that the daily variables and the parameter table
/// of its query have in common, read-only.
class DailyEditor {
public:
    /// Opens the table and reads zone 1. @throws StoreError if there is no such table or field
    ///
    /// @param unsaved notes each change until commit() or roll_back(); it outlives the editor
    DailyEditor(const std::filesystem::path& work_file, DataView view, const DailyQuery& query,
                DailyEdits* unsaved = nullptr);
    ~DailyEditor();
    DailyEditor(const DailyEditor&) = delete;
    DailyEditor& operator=(const DailyEditor&) = delete;

    [[nodiscard]] const std::vector<DailyColumn>& columns() const;
    [[nodiscard]] std::size_t rows() const;
    [[nodiscard]] DayCount date(std::size_t row) const;
    /// The value of a cell; NaN for a missing one.
    [[nodiscard]] double value(std::size_t row, std::size_t column) const;
    /// Why a column can't hold a number, in any row: a clause without a full stop; empty if it can, and for
    /// a missing value.
    [[nodiscard]] std::string refusal(std::size_t column, double value) const;
    /// Stores a value in the transaction; NaN for a missing one. A value that the field can't hold,
    /// or outside the column's limits, is refused, and so is any date. @return whether the cell now
    /// holds the value
    bool set_value(std::size_t row, std::size_t column, double value);

    /// Notes the value that is being typed in a cell, for a crash, without storing it; nothing: none is.
    void note_typed(std::size_t row, std::size_t column, const std::optional<double>& value);

    /// Until end_step() all changes are one, which undo() takes back as a whole; outside each is one of its
    /// own.
    void begin_step();
    void end_step();
    [[nodiscard]] bool can_undo() const;
    [[nodiscard]] bool can_redo() const;
    /// Takes the newest change back, or makes the last undone one again, and shows its zone. The values need
    /// not be within the limits of their columns.
    ///
    /// @return the cells; nothing if there is no such change. @throws StoreError, with all values unchanged
    std::optional<DailyBlock> undo();
    std::optional<DailyBlock> redo();

    [[nodiscard]] int zone() const;
    /// Shows another zone; the changes stay.
    void show_zone(int zone);

    /// Adds to, or multiplies, the values of a column over the dates from one row to another of the current
    /// zone; missing values stay missing. The factor is the number that the decimal text of a Single gives;
    /// the column's limits do not apply. @throws StoreError, with all values unchanged: for the column of
    /// dates, and if a result does not fit its field
    void mass_edit(MassEdit edit, std::size_t column, std::size_t first_row, std::size_t last_row,
                   float factor);

    /// Whether a cell of the shown zone holds another value than when the editor was opened.
    [[nodiscard]] bool differs(std::size_t row, std::size_t column) const;
    /// The zones that hold such cells.
    [[nodiscard]] std::vector<int> changed_zones() const;
    /// The discharge that the last run computed, by day; empty if the file has no results.
    /// @throws StoreError
    [[nodiscard]] std::map<DayCount, double> computed_flow();

    /// Whether a change since the editor was opened is not undone.
    [[nodiscard]] bool changed() const;
    /// Commits the changes and ends the editing. @throws StoreError
    void commit();
    /// Rolls back all changes and ends the editing.
    void roll_back();

private:
    struct Content;
    struct Step;
    std::optional<DailyBlock> reverse(Step* step, bool redo);

    std::unique_ptr<Content> content_;
};

}  // namespace nivora
