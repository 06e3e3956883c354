#include "prep/monthly_averages.h"

#include "store/daily_table.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <fmt/format.h>

namespace nivora {
namespace {

constexpr std::size_t k_months = 12;
constexpr std::size_t k_items = 4;
constexpr std::size_t k_precipitation = 3;

/// The sum and the count of the values of a zone and month, item by item.
struct MonthSums {
    std::array<double, k_items> sum{};
    std::array<std::int64_t, k_items> count{};

    void add(const std::array<float, k_items>& values) {
        for (std::size_t item = 0; item < k_items; ++item) {
            if (is_missing(static_cast<double>(values[item]))) continue;
            sum[item] += static_cast<double>(values[item]);
            ++count[item];
        }
    }

    [[nodiscard]] MonthValues averages() const {
        MonthValues values{};
        for (std::size_t item = 0; item < k_items; ++item) {
            values[item] = count[item] == 0
                               ? k_missing
                               : static_cast<float>(sum[item] / static_cast<double>(count[item]));
        }
        return values;
    }
};

using YearSums = std::array<MonthSums, k_months>;

/// Sums up the daily variables zone by zone, in date order.
std::vector<YearSums> sums_of_record(BasinDatabase& database, int zones) {
    return guarded([&] {
        std::vector<YearSums> sums(static_cast<std::size_t>(zones));
        SQLite::Statement query{
            database.sql(),
            "SELECT Zone, Date, Tmax, Tmin, Tavg, Precip FROM PhysicalData WHERE Zone >= 1 "
            "AND Zone <= ? AND Date IS NOT NULL ORDER BY Zone, Date, rowid"};
        query.bind(1, zones);
        while (query.executeStep()) {
            std::int16_t zone = 0;
            DayCount date = 0;
            std::array<float, k_items> values{};
            read_value(query, 0, zone);
            read_value(query, 1, date);
            for (std::size_t item = 0; item < k_items; ++item)
                read_value(query, static_cast<int>(item) + 2, values[item]);
            const auto month = static_cast<std::size_t>(civil_date(date).month);
            sums[static_cast<std::size_t>(zone) - 1][month - 1].add(values);
        }
        return sums;
    });
}

}  // namespace

MonthlyAverages::MonthlyAverages(const std::filesystem::path& work_file, int zones)
    : database_(work_file, Access::ReadWrite), transaction_(database_), zones_(zones) {
    for (int zone = 1; zone <= zones_; ++zone) years_.push_back(read_year(zone));
}

MonthlyAverages::StoredYear MonthlyAverages::read_year(int zone) {
    return guarded([&] {
        SQLite::Statement query{
            database_.sql(),
            "SELECT rowid, TMaxN, TMinN, TAvgN, PrecipN FROM BasinAverages WHERE Zone = ? "
            "ORDER BY rowid LIMIT 12"};
        query.bind(1, zone);
        StoredYear year{};
        for (StoredMonth& month : year) {
            if (!query.executeStep()) {
                throw StoreError(StoreFault::Damaged,
                                 fmt::format("The monthly averages of zone {} are not complete.", zone));
            }
            month.row = query.getColumn(0).getInt64();
            for (std::size_t item = 0; item < k_items; ++item)
                read_value(query, static_cast<int>(item) + 1, month.values[item]);
        }
        return year;
    });
}

const MonthValues& MonthlyAverages::values(int zone, int month) const {
    return years_.at(static_cast<std::size_t>(zone) - 1).at(static_cast<std::size_t>(month) - 1).values;
}

void MonthlyAverages::set_value(int zone, int month, std::size_t item, float value) {
    StoredMonth& held = years_.at(static_cast<std::size_t>(zone) - 1).at(static_cast<std::size_t>(month) - 1);
    StoredMonth changed = held;
    changed.values.at(item) = value;
    store(changed);
    held = changed;
}

void MonthlyAverages::store(const StoredMonth& month) {
    guarded([&] {
        SQLite::Statement update{
            database_.sql(),
            "UPDATE BasinAverages SET TMaxN = ?, TMinN = ?, TAvgN = ?, PrecipN = ? WHERE "
            "rowid = ?"};
        int position = 1;
        for (const float value : month.values) bind_value(update, position++, value);
        update.bind(position, month.row);
        update.exec();
    });
}

bool MonthlyAverages::has_physical_data() { return has_days(database_, k_physical_data); }

bool MonthlyAverages::recalculate() {
    if (!has_physical_data()) return false;
    const std::vector<YearSums> sums = sums_of_record(database_, zones_);
    std::vector<StoredYear> years = years_;
    atomically(database_, [&] {
        for (std::size_t zone = 0; zone < years.size(); ++zone) {
            for (std::size_t month = 0; month < k_months; ++month) {
                // Intended: precipitation alone decides whether a month has data.
                if (sums[zone][month].count[k_precipitation] == 0) continue;
                years[zone][month].values = sums[zone][month].averages();
                store(years[zone][month]);
            }
        }
    });
    years_ = std::move(years);
    return true;
}

void MonthlyAverages::commit() { transaction_.commit(); }

}  // namespace nivora
