// The days of a daily table: which zones and days it has, whatever its fields.
#pragma once

#include "base/calendar.h"
#include "store/database.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace nivora {

/// From a day to a day, both in it.
struct Period {
    DayCount start = 0;
    DayCount end = 0;

    [[nodiscard]] std::int64_t days() const { return end - start + 1; }
    bool operator==(const Period&) const = default;
};

/// The key of a daily row, and where it is stored.
struct StoredDay {
    int zone = 0;
    DayCount date = 0;
    std::int64_t row = 0;  ///< rowid
};

/// The rows of a daily table zone by zone and day by day; those of a period, or all of them. @throws
/// StoreError
[[nodiscard]] std::vector<StoredDay> stored_days(BasinDatabase& database, std::string_view table,
                                                 const std::optional<Period>& period);

/// The rows of the zones up to a last one, in no order. A row of the last day whose date has a time part is
/// not in the period. @throws StoreError
[[nodiscard]] std::vector<StoredDay> days_of_zones(BasinDatabase& database, std::string_view table,
                                                   const Period& period, int last_zone);

/// Deletes the rows that days_of_zones finds. @throws StoreError
void delete_days_of_zones(BasinDatabase& database, std::string_view table, const Period& period,
                          int last_zone);

/// The number of rows that a daily table has in a period. @throws StoreError
[[nodiscard]] std::int64_t count_days(BasinDatabase& database, std::string_view table, const Period& period);

/// The extent of a daily table; all 0 without rows.
struct RecordExtent {
    DayCount first = 0;      ///< first day
    DayCount last = 0;       ///< last day
    int zones = 0;           ///< last zone
    std::int64_t count = 0;  ///< rows
};

/// @throws StoreError
[[nodiscard]] RecordExtent scan_daily_table(BasinDatabase& database, std::string_view table);

/// The rows with a date that a daily table has of one zone.
struct ZoneExtent {
    int zone = 0;  ///< also one that the basin does not have
    DayCount first = 0;
    DayCount last = 0;
    std::int64_t rows = 0;
};

/// Zone by zone. @throws StoreError
[[nodiscard]] std::vector<ZoneExtent> zone_extents(BasinDatabase& database, std::string_view table);

/// Whether a daily table has any row. @throws StoreError
[[nodiscard]] bool has_days(BasinDatabase& database, std::string_view table);

}  // namespace nivora
