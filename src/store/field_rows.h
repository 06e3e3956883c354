// Some fields of single rows of a daily or monthly table: compared, changed, and rows added with them.
#pragma once

#include "base/calendar.h"
#include "store/database.h"

#include <SQLiteCpp/Statement.h>

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace nivora {

/// Every call throws StoreError: if the table or a field is missing, if a field holds what its type can't
/// hold, or for an infinite value. Values are those of the fields in their order, NaN for a missing one.
class FieldRows {
public:
    /// @param fields at least one, of numbers, besides the fields of the key
    FieldRows(BasinDatabase& database, std::string_view table, std::vector<Field> fields);

    /// Whether a row has these values already, to the bit. False if there is no such row.
    [[nodiscard]] bool has(std::int64_t row, std::span<const double> values);
    /// Writes the values over those of a row; does nothing if there is no such row.
    void change(std::int64_t row, std::span<const double> values);

private:
    std::vector<Field> fields_;
    SQLite::Statement select_;
    SQLite::Statement update_;
};

/// Adds rows to a daily table. Every call throws StoreError, as those of FieldRows.
class DayRows {
public:
    /// @param fields besides `Zone` and `Date`; those not named are Null in the added rows
    DayRows(BasinDatabase& database, std::string_view table, std::span<const Field> fields);

    void add(int zone, DayCount day, std::span<const double> values);

private:
    SQLite::Statement insert_;
};

}  // namespace nivora
