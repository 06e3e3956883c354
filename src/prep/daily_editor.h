// The daily values that one window edits, inside one transaction.
#pragma once

#include "prep/prep_state.h"
#include "store/database.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// How the cells of a column read and show.
struct DailyColumn {
    std::string field;   ///< in the file
    std::string header;  ///< as shown
    FieldType type = FieldType::Single;
    int decimals = 2;
    std::optional<double> low;  ///< nothing: no limit
    std::optional<double> high;
};

/// The columns of a view, `Date` first.
[[nodiscard]] std::vector<DailyColumn> daily_columns(DataView view, const std::vector<std::string>& fields);

enum class MassEdit { Add, Multiply };

/// What an input box asks before a mass edit of a field.
[[nodiscard]] InputBox mass_edit_question(MassEdit edit, const std::string& header);

/// Days of one zone at a time out of a daily table. All changes wait in one transaction for commit(); without
/// it they are rolled back. Rows count from 0 in date order, columns from 0, which is the date.
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
    /// Stores a value in the transaction; NaN for a missing one. A value that the field can't hold, or
    /// outside the column's limits, is refused. @return whether it was stored
    bool set_value(std::size_t row, std::size_t column, double value);

    [[nodiscard]] int zone() const;
    /// Shows another zone; the changes stay.
    void show_zone(int zone);

    /// Adds to, or multiplies, the values of a column over rows of the zone at hand. @throws StoreError
    void mass_edit(MassEdit edit, std::size_t column, std::size_t first_row, std::size_t last_row,
                   float factor);

    /// Whether anything was changed since the editor was opened.
    [[nodiscard]] bool changed() const;
    void commit();
    void roll_back();

private:
    struct Content;
    std::unique_ptr<Content> content_;
};

}  // namespace nivora
