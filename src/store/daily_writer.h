// The same values for many rows of a daily table.
#pragma once

#include "base/calendar.h"
#include "store/database.h"

#include <SQLiteCpp/Statement.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace nivora {

/// A field of a daily table and the value that it gets; NaN becomes Null.
struct FieldValue {
    std::string_view field;
    double value = 0.0;
};

/// Writes the same values into rows of a daily table, new ones and those that it has. Every call throws
/// StoreError, the constructor also if the table or a field is missing or a value is infinite.
class DailyWriter {
public:
    /// @param values of the fields besides `Zone` and `Date`; may be empty
    DailyWriter(BasinDatabase& database, std::string_view table, std::span<const FieldValue> values);

    /// Adds the row of a zone and a day; the other fields are Null.
    void add(int zone, DayCount day);
    /// Writes the values over those of a row, by its row number; the other fields stay. Does nothing if there
    /// is no such row, or no value.
    void overwrite(std::int64_t row);

private:
    SQLite::Statement insert_;
    std::optional<SQLite::Statement> update_;  ///< none without values
    int values_;
};

}  // namespace nivora
