#include "store/daily_table.h"

#include "store/table_io.h"

#include <SQLiteCpp/Statement.h>

namespace nivora {
namespace {

/// The days of a period as the condition of a statement. A date may carry a time part.
constexpr const char* k_in_period = " WHERE Date >= ? AND Date < ?";

void bind_period(SQLite::Statement& query, const Period& period) {
    query.bind(1, period.start);
    query.bind(2, period.end + 1);
}

/// The rows of some zones on the days of a period. A date of the last day that has a time part is not found.
constexpr const char* k_of_zones = " WHERE Date >= ? AND Date <= ? AND Zone <= ?";

void bind_period_and_zone(SQLite::Statement& query, const Period& period, int last_zone) {
    query.bind(1, period.start);
    query.bind(2, period.end);
    query.bind(3, last_zone);
}

/// Reads the rows of a query for zone, date and row number.
std::vector<StoredDay> read_days(SQLite::Statement& query) {
    std::vector<StoredDay> rows;
    while (query.executeStep()) {
        std::int16_t zone = 0;
        StoredDay& day = rows.emplace_back();
        read_value(query, 0, zone);
        day.zone = zone;
        read_value(query, 1, day.date);
        day.row = query.getColumn(2).getInt64();
    }
    return rows;
}

}  // namespace

std::vector<StoredDay> stored_days(BasinDatabase& database, std::string_view table,
                                   const std::optional<Period>& period) {
    return guarded([&] {
        const std::string name = quoted_name(database.existing_table(table));
        const std::string days = period ? k_in_period : "";
        SQLite::Statement query{database.sql(),
                                "SELECT Zone, Date, rowid FROM " + name + days + " ORDER BY Zone, Date"};
        if (period) bind_period(query, *period);
        return read_days(query);
    });
}

std::vector<StoredDay> days_of_zones(BasinDatabase& database, std::string_view table, const Period& period,
                                     int last_zone) {
    return guarded([&] {
        const std::string name = quoted_name(database.existing_table(table));
        SQLite::Statement query{database.sql(), "SELECT Zone, Date, rowid FROM " + name + k_of_zones};
        bind_period_and_zone(query, period, last_zone);
        return read_days(query);
    });
}

void delete_days_of_zones(BasinDatabase& database, std::string_view table, const Period& period,
                          int last_zone) {
    guarded([&] {
        const std::string name = quoted_name(database.existing_table(table));
        SQLite::Statement statement{database.sql(), "DELETE FROM " + name + k_of_zones};
        bind_period_and_zone(statement, period, last_zone);
        statement.exec();
    });
}

std::int64_t count_days(BasinDatabase& database, std::string_view table, const Period& period) {
    return guarded([&] {
        SQLite::Statement query{
            database.sql(),
            "SELECT count(*) FROM " + quoted_name(database.existing_table(table)) + k_in_period};
        bind_period(query, period);
        query.executeStep();
        return query.getColumn(0).getInt64();
    });
}

RecordExtent scan_daily_table(BasinDatabase& database, std::string_view table) {
    return guarded([&] {
        SQLite::Statement query{database.sql(), "SELECT count(Date), max(Zone), min(Date), max(Date) FROM " +
                                                    quoted_name(database.existing_table(table))};
        RecordExtent record;
        if (!query.executeStep()) return record;
        record.count = query.getColumn(0).getInt64();
        std::int16_t zones = 0;
        read_value(query, 1, zones);
        record.zones = zones;
        read_value(query, 2, record.first);
        read_value(query, 3, record.last);
        return record;
    });
}

bool has_days(BasinDatabase& database, std::string_view table) {
    return guarded([&] {
        const std::string name = quoted_name(database.existing_table(table));
        return database.sql().execAndGet("SELECT EXISTS (SELECT 1 FROM " + name + ")").getInt() != 0;
    });
}

}  // namespace nivora
