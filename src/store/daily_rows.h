// Named fields of a daily table row by row, as they are stored.
#pragma once

#include "store/daily_table.h"
#include "store/database.h"

#include <span>
#include <string_view>
#include <vector>

namespace nivora {

/// Rows by zone and then by date; rows of the same zone and date in stored order. A day without a row is not
/// among them.
struct DailyRows {
    std::vector<int> zone;
    std::vector<DayCount> date;
    std::vector<std::vector<double>> fields;  ///< by field and row; NaN for Null

    [[nodiscard]] std::size_t size() const { return zone.size(); }
};

/// Reads the rows of some zones in a period. Dates compare as whole days.
/// @throws StoreError, also if the table or a field is missing
[[nodiscard]] DailyRows read_daily_rows(BasinDatabase& database, std::string_view table,
                                        std::span<const std::string_view> fields, int first_zone,
                                        int last_zone, const Period& period);

}  // namespace nivora
