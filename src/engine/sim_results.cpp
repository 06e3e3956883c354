#include "engine/sim_results.h"

#include <algorithm>
#include <tuple>
#include <type_traits>

namespace nivora {
namespace {

RowOrder rows_of_period(const SimResults& results, DayCount first, DayCount last) {
    RowOrder rows;
    rows.reserve(results.size());
    for (std::size_t row = 0; row < results.size(); ++row) {
        if (results.Date[row] >= first && results.Date[row] <= last)
            rows.push_back(static_cast<std::uint32_t>(row));
    }
    return rows;
}

template <typename Before>
void sort_rows(RowOrder& rows, Before before) {
    if (!std::is_sorted(rows.begin(), rows.end(), before)) std::stable_sort(rows.begin(), rows.end(), before);
}

/// Puts rows that stand zone by zone into day order by dealing them out to their days.
RowOrder dealt_by_day(const SimResults& results, const RowOrder& by_zone, DayCount first, DayCount last) {
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

RowOrder rows_by_zone(const SimResults& results, DayCount first, DayCount last) {
    RowOrder rows = rows_of_period(results, first, last);
    sort_rows(rows, [&](std::uint32_t a, std::uint32_t b) {
        return std::tie(results.Zone[a], results.Date[a]) < std::tie(results.Zone[b], results.Date[b]);
    });
    return rows;
}

RowOrder rows_by_day(const SimResults& results, DayCount first, DayCount last) {
    const RowOrder by_zone = rows_by_zone(results, first, last);
    if (by_zone.empty()) return by_zone;
    const auto earlier = [&](std::uint32_t a, std::uint32_t b) { return results.Date[a] < results.Date[b]; };
    const auto [low, high] = std::minmax_element(by_zone.begin(), by_zone.end(), earlier);
    return dealt_by_day(results, by_zone, results.Date[*low], results.Date[*high]);
}

}  // namespace nivora
