// Named fields of a daily table: read zone by zone, and changed in place.
#pragma once

#include "base/calendar.h"
#include "store/daily_table.h"
#include "store/database.h"

#include <SQLiteCpp/Statement.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// Which rows and fields of a daily table are read.
struct DailySelection {
    std::string table;
    std::vector<Field> fields;     ///< of numbers, besides `Zone` and `Date`
    std::optional<Period> period;  ///< the days to read; all if not set
    /// Reads only days that `PhysicalData` has too; the fields are then those of both tables.
    bool with_variables = false;
};

/// The rows of a zone in date order, those of one day in stored order.
struct ZoneDays {
    std::vector<std::int64_t> rows;  ///< where each row is stored
    std::vector<DayCount> dates;     ///< of each row; 0 for a row without a date
    std::vector<double> values;      ///< row by row, its fields as selected; NaN for a missing value
};

/// A change of many values by one number.
enum class MassEdit { Add, Multiply };

/// Fields of a daily table, read one zone at a time and changed in place. Every call throws StoreError: if
/// the table or a field is missing, or if a field holds what its type can't hold.
class DailyFields {
public:
    DailyFields(BasinDatabase& database, DailySelection selection);

    [[nodiscard]] ZoneDays read(int zone);

    /// Stores the value of a field, by its index in the selection; Null if it is NaN.
    ///
    /// @param row where the row is stored; nothing is changed if there is none
    void store(std::int64_t row, std::size_t field, double value);

    /// Adds a number to the values of a field on the days of a zone, or multiplies them by it. A Single is
    /// rounded, an Integer too, ties to even; Null stays Null. A result may be larger than an Integer or a
    /// Double can hold: read it afterwards, and roll it back if that throws.
    void change(int zone, const Period& days, std::size_t field, MassEdit edit, double number);

private:
    BasinDatabase& database_;
    DailySelection selection_;
    std::vector<std::unique_ptr<SQLite::Statement>> updates_;  ///< by field, created at its first use
};

/// Is called with the fields of a row, NaN for a missing value.
using DailyVisitor = std::function<void(int zone, DayCount day, std::span<const double> values)>;

/// Visits the rows of a daily table from zone 1 to a last zone, zone by zone and day by day; leaves out rows
/// without a date. @throws StoreError, also if the table or a field is missing
void visit_days(BasinDatabase& database, std::string_view table, std::span<const Field> fields, int last_zone,
                const DailyVisitor& visit);

}  // namespace nivora
