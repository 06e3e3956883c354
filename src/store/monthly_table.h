// The table of long-term monthly averages in its present layout.
#pragma once

#include "store/database.h"

#include <array>
#include <cstdint>

namespace nivora {

/// The three-letter name of a month, 1 to 12.
[[nodiscard]] const char* month_name(int month);

/// Brings `BasinAverages` to its present layout: creates it if it is missing, puts its fields in order if the
/// first one is not `Zone`, and, if there are fewer than twelve rows for each zone, writes them again with 0
/// in every average.
void Ensure_Monthly_Table(BasinDatabase& database);

/// Normal values of a month: maximum, minimum and average temperature, precipitation. NaN if missing.
using MonthValues = std::array<float, 4>;

/// The values of a month, and where its row is stored.
struct StoredMonth {
    std::int64_t row = 0;
    MonthValues values{};
};

/// The months of a zone: its first twelve rows in stored order, whatever months they name.
using StoredYear = std::array<StoredMonth, 12>;

/// @param zone from 1. @throws StoreError, Damaged if the zone has fewer than twelve rows
[[nodiscard]] StoredYear read_stored_year(BasinDatabase& database, int zone);

/// Stores the values of a month in its row; Null for NaN. @throws StoreError for an infinite value, too
void store_month(BasinDatabase& database, const StoredMonth& month);

}  // namespace nivora
