// The daily values that one window edits, inside one transaction.
#pragma once

#include "prep/prep_state.h"
#include "store/database.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// How the cells of a column read and show. The decimals are those that a cell shows; its value keeps all it
/// has.
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

enum class MassEdit { Add, Multiply };

/// What an input box asks before a mass edit of a field, which it names as the file does.
[[nodiscard]] InputBox mass_edit_question(MassEdit edit, const std::string& field);

/// Days of one zone at a time out of a daily table. All changes wait in one transaction for commit(); without
/// it they are rolled back. Rows count from 0 in date order, columns from 0, which is the date.
///
/// The view Scenario shows the days that the daily variables and the parameter table of its query have in
/// common, for reading only.
class DailyEditor {
public:
    /// Opens the table and reads zone 1. @throws StoreError where there is no such table or field
    DailyEditor(const std::filesystem::path& work_file, DataView view, DailyQuery query);
    ~DailyEditor();
    DailyEditor(const DailyEditor&) = delete;
    DailyEditor& operator=(const DailyEditor&) = delete;

    [[nodiscard]] const std::vector<DailyColumn>& columns() const;
    [[nodiscard]] std::size_t rows() const;
    [[nodiscard]] DayCount date(std::size_t row) const;
    /// The value of a cell; NaN for a missing one.
    [[nodiscard]] double value(std::size_t row, std::size_t column) const;
    /// Why a column can't take a number, whatever the row: a clause without its full stop; empty where it
    /// can, and for a missing value.
    [[nodiscard]] std::string refusal(std::size_t column, double value) const;
    /// Stores a value in the transaction; NaN for a missing one. A value that the field can't hold, or
    /// outside the column's limits, is refused, and so is any date. @return whether the cell holds it now
    bool set_value(std::size_t row, std::size_t column, double value);

    [[nodiscard]] int zone() const;
    /// Shows another zone; the changes stay.
    void show_zone(int zone);

    /// Adds to, or multiplies, the values of a column over the dates from one row to another of the zone at
    /// hand; missing values stay missing. The factor counts as the decimal text of a Single has it, the
    /// column's limits do not count. @throws StoreError, with all values as they were: for the column of
    /// dates, and where a result is beyond its field
    void mass_edit(MassEdit edit, std::size_t column, std::size_t first_row, std::size_t last_row,
                   float factor);

    /// Whether a value was changed since the editor was opened.
    [[nodiscard]] bool changed() const;
    /// Makes the changes last and ends the editing. @throws StoreError
    void commit();
    /// Takes all changes back and ends the editing.
    void roll_back();

private:
    struct Content;
    std::unique_ptr<Content> content_;
};

}  // namespace nivora
