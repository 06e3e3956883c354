// Named fields of a daily table as columns, by zone and day.
#pragma once

#include "base/calendar.h"
#include "store/database.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// Fields of a daily table over a period, for zone 1 to a last zone. A value that is Null, or of a day
/// without a row, is NaN. If a zone has two rows on a day, the later one in the file counts.
class DailyColumns {
public:
    DailyColumns(int zones, std::size_t fields, DayCount first, DayCount last);

    [[nodiscard]] int zones() const { return zones_; }
    [[nodiscard]] DayCount first() const { return first_; }
    [[nodiscard]] DayCount last() const { return last_; }
    /// The days of the period; 0 if it ends before it begins.
    [[nodiscard]] std::size_t days() const { return days_; }
    /// Whether the table has any row of the period.
    [[nodiscard]] bool has_rows() const { return has_rows_; }

    /// A field of a zone (from 1), one value a day.
    [[nodiscard]] std::span<const double> column(int zone, std::size_t field) const;
    [[nodiscard]] double at(int zone, std::size_t field, DayCount day) const;

    /// Stores the fields of a zone's row; ignores a zone or day that was not requested.
    void store(int zone, DayCount day, std::span<const double> values);

private:
    [[nodiscard]] std::size_t index(int zone, std::size_t field) const;

    int zones_;
    std::size_t fields_;
    DayCount first_;
    DayCount last_;
    std::size_t days_;
    bool has_rows_ = false;
    std::vector<double> values_;  ///< by zone, field, day
};

/// Reads named fields of a daily table. Dates compare as whole days.
/// @throws StoreError, also if the table or a field is missing
[[nodiscard]] DailyColumns read_daily_columns(BasinDatabase& database, std::string_view table,
                                              std::span<const std::string_view> fields, int zones,
                                              DayCount first, DayCount last);

}  // namespace nivora
