#include "engine/sim_results.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <tuple>
#include <type_traits>

namespace nivora {
namespace {

/// The number of days of a table that holds every zone, one after the other, on every day of the period
/// without gaps; 0 for any other table.
std::size_t days_of_full_table(const SimResults& results, DayCount first, DayCount last) {
    const std::size_t rows = results.size();
    if (rows == 0) return 0;
    const auto zone_end = std::find_if(results.Zone.begin(), results.Zone.end(),
                                       [&](std::int16_t zone) { return zone != results.Zone.front(); });
    const auto days = static_cast<std::size_t>(zone_end - results.Zone.begin());
    const DayCount start = results.Date.front();
    if (rows % days != 0 || start < first || start + static_cast<DayCount>(days) - 1 > last) return 0;
    for (std::size_t begin = 0; begin < rows; begin += days) {
        const std::int16_t zone = results.Zone[begin];
        if (begin > 0 && zone <= results.Zone[begin - 1]) return 0;
        bool full = true;
        for (std::size_t day = 0; day < days; ++day) {
            full &= results.Zone[begin + day] == zone;
            full &= results.Date[begin + day] == start + static_cast<DayCount>(day);
        }
        if (!full) return 0;
    }
    return days;
}

/// The two orders of a full table follow from its shape.
RunRows rows_of_full_table(const SimResults& results, std::size_t days) {
    const std::size_t rows = results.size();
    RunRows orders{RowOrder(rows), RowOrder(rows)};
    const bool counts_from_one =
        results.Zone.front() == 1 && static_cast<std::size_t>(results.Zone.back()) == rows / days;
    if (counts_from_one) orders.days_of_full_table = days;
    std::iota(orders.by_zone.begin(), orders.by_zone.end(), 0U);
    std::size_t next = 0;
    for (std::size_t day = 0; day < days; ++day) {
        for (std::size_t row = day; row < rows; row += days)
            orders.by_day[next++] = static_cast<std::uint32_t>(row);
    }
    return orders;
}

/// The rows of a period in stored order, and whether that is the order zone by zone already.
struct StoredRows {
    RowOrder rows;
    bool zone_by_zone = true;
};

StoredRows rows_of_period(const SimResults& results, DayCount first, DayCount last) {
    StoredRows stored;
    stored.rows.resize(results.size());
    std::size_t count = 0;
    std::int16_t zone = std::numeric_limits<std::int16_t>::min();
    DayCount date = std::numeric_limits<DayCount>::min();
    for (std::size_t row = 0; row < results.size(); ++row) {
        const std::int16_t row_zone = results.Zone[row];
        const DayCount row_date = results.Date[row];
        if (row_date < first || row_date > last) continue;
        if (row_zone < zone || (row_zone == zone && row_date < date)) stored.zone_by_zone = false;
        zone = row_zone;
        date = row_date;
        stored.rows[count++] = static_cast<std::uint32_t>(row);
    }
    stored.rows.resize(count);
    return stored;
}

/// Puts rows that stand zone by zone into day order by dealing them out to their days.
RowOrder dealt_by_day(const SimResults& results, const RowOrder& by_zone) {
    if (by_zone.empty()) return {};
    DayCount first = results.Date[by_zone.front()];
    DayCount last = first;
    for (const auto row : by_zone) {
        first = std::min(first, results.Date[row]);
        last = std::max(last, results.Date[row]);
    }
    std::vector<std::uint32_t> next(static_cast<std::size_t>(last - first) + 2, 0);
    for (const auto row : by_zone) ++next[static_cast<std::size_t>(results.Date[row] - first) + 1];
    for (std::size_t day = 1; day < next.size(); ++day) next[day] += next[day - 1];
    RowOrder by_day(by_zone.size());
    for (const auto row : by_zone) by_day[next[static_cast<std::size_t>(results.Date[row] - first)]++] = row;
    return by_day;
}

}  // namespace

void SimResults::resize(std::size_t rows) {
    visit(*this, [rows](auto& column) {
        using Value = typename std::remove_reference_t<decltype(column)>::value_type;
        if constexpr (std::is_floating_point_v<Value>) {
            column.resize(rows, static_cast<Value>(k_missing));
        } else {
            column.resize(rows);
        }
    });
}

RunRows run_rows(const SimResults& results, DayCount first, DayCount last) {
    const std::size_t days = days_of_full_table(results, first, last);
    if (days > 0) return rows_of_full_table(results, days);
    StoredRows stored = rows_of_period(results, first, last);
    if (!stored.zone_by_zone) {
        std::stable_sort(stored.rows.begin(), stored.rows.end(), [&](std::uint32_t a, std::uint32_t b) {
            return std::tie(results.Zone[a], results.Date[a]) < std::tie(results.Zone[b], results.Date[b]);
        });
    }
    RowOrder by_day = dealt_by_day(results, stored.rows);
    return {.by_zone = std::move(stored.rows), .by_day = std::move(by_day)};
}

}  // namespace nivora
