#include "store/monthly_table.h"

#include "base/text.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <fmt/format.h>

namespace nivora {
namespace {

constexpr int k_months = 12;

std::vector<MonthlyRow> zero_rows(int zones) {
    std::vector<MonthlyRow> rows;
    for (int zone = 1; zone <= zones; ++zone) {
        for (int month = 1; month <= k_months; ++month) {
            rows.push_back({static_cast<std::int16_t>(zone), month_name(month), 0.0F, 0.0F, 0.0F, 0.0F});
        }
    }
    return rows;
}

std::int64_t row_count(BasinDatabase& database, const std::string& table) {
    return guarded(
        [&] { return database.sql().execAndGet("SELECT count(*) FROM " + quoted_name(table)).getInt64(); });
}

}  // namespace

const char* month_name(int month) {
    constexpr std::array k_names{" ",   "Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                 "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    return k_names.at(static_cast<std::size_t>(month));
}

void Ensure_Monthly_Table(BasinDatabase& database) {
    const int zones = read_basin_description(database).zones.value_or(0);
    const TableSchema table = basin_averages_table();
    const auto stored = database.stored_name(table.name);
    const bool outdated = stored && !same_name(database.table_fields(*stored).front().name, "Zone");
    atomically(database, [&] {
        // A table without zones held nothing that could be kept.
        if (outdated) database.drop_table(*stored);
        if (!stored || outdated) database.create_table(table);
        if (row_count(database, table.name) < std::int64_t{zones} * k_months) {
            clear_table(database, table.name);
            add_rows<MonthlyRow>(database, table, zero_rows(zones));
        }
    });
}

StoredYear read_stored_year(BasinDatabase& database, int zone) {
    return guarded([&] {
        SQLite::Statement query{
            database.sql(),
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
            int position = 1;
            for (float& value : month.values) read_value(query, position++, value);
        }
        return year;
    });
}

void store_month(BasinDatabase& database, const StoredMonth& month) {
    guarded([&] {
        SQLite::Statement update{
            database.sql(),
            "UPDATE BasinAverages SET TMaxN = ?, TMinN = ?, TAvgN = ?, PrecipN = ? WHERE rowid = ?"};
        int position = 1;
        for (const float value : month.values) bind_value(update, position++, value);
        update.bind(position, month.row);
        update.exec();
    });
}

}  // namespace nivora
