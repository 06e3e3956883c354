#include "store/daily_table.h"

#include "store/table_io.h"

#include <SQLiteCpp/Statement.h>
#include <fmt/format.h>

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

/// Reads the extent from the first four values of a row. The columns bear the same names in every query,
/// since a refusal tells the name.
RecordExtent read_extent(SQLite::Statement& query) {
    RecordExtent record;
    record.count = query.getColumn(0).getInt64();
    std::int16_t zones = 0;
    read_value(query, 1, zones);
    record.zones = zones;
    read_value(query, 2, record.first);
    read_value(query, 3, record.last);
    return record;
}

/// Whether an index of all rows leads from the zone to the date.
bool has_key(BasinDatabase& database, const std::string& table) {
    SQLite::Statement query{
        database.sql(),
        "SELECT EXISTS (SELECT 1 FROM pragma_index_list(?) AS list WHERE NOT list.partial AND "
        "(SELECT lower(group_concat(name)) FROM pragma_index_info(list.name)) = 'zone,date')"};
    query.bind(1, table);
    return query.executeStep() && query.getColumn(0).getInt() != 0;
}

/// The extent from the ends of each zone's days in the key, whatever their number. The walk from zone to zone
/// ends with Null, which stands for the rows without a zone.
///
/// @return nothing for a table with so many zones that reading all rows is faster, or with a zone that is not
///         a number, which the engine may compare in another way than it orders the key
std::optional<RecordExtent> extent_along_key(BasinDatabase& database, const std::string& table) {
    constexpr int k_most_steps = 64;  // a basin has 16 zones at most
    SQLite::Statement query{
        database.sql(),
        fmt::format("WITH RECURSIVE steps(n) AS (SELECT min(Zone) FROM {0} UNION ALL "
                    "SELECT (SELECT min(Zone) FROM {0} WHERE Zone > steps.n) FROM steps WHERE n IS NOT NULL "
                    "LIMIT {1}) "
                    "SELECT (SELECT count(*) FROM {0}) - "
                    "sum((SELECT count(*) FROM {0} WHERE Zone IS steps.n AND Date IS NULL)), "
                    "(SELECT max(Zone) FROM {0}) AS \"max(Zone)\", "
                    "min((SELECT min(Date) FROM {0} WHERE Zone IS steps.n)) AS \"min(Date)\", "
                    "max((SELECT max(Date) FROM {0} WHERE Zone IS steps.n)) AS \"max(Date)\", "
                    "count(*), total(typeof(n) NOT IN ('integer', 'real', 'null')) FROM steps",
                    "main." + quoted_name(table), k_most_steps)};
    if (!query.executeStep()) return std::nullopt;
    if (query.getColumn(4).getInt() >= k_most_steps || query.getColumn(5).getInt() > 0) return std::nullopt;
    return read_extent(query);
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
        const std::string name = database.existing_table(table);
        if (has_key(database, name)) {
            if (const auto record = extent_along_key(database, name)) return *record;
        }
        SQLite::Statement query{
            database.sql(),
            "SELECT count(Date), max(Zone), min(Date), max(Date) FROM main." + quoted_name(name)};
        return query.executeStep() ? read_extent(query) : RecordExtent{};
    });
}

std::vector<ZoneExtent> zone_extents(BasinDatabase& database, std::string_view table) {
    return guarded([&] {
        SQLite::Statement query{database.sql(), "SELECT Zone, min(Date), max(Date), count(*) FROM " +
                                                    quoted_name(database.existing_table(table)) +
                                                    " WHERE Date IS NOT NULL GROUP BY Zone ORDER BY Zone"};
        std::vector<ZoneExtent> extents;
        while (query.executeStep()) {
            ZoneExtent& extent = extents.emplace_back();
            std::int16_t zone = 0;
            read_value(query, 0, zone);
            read_value(query, 1, extent.first);
            read_value(query, 2, extent.last);
            extent.zone = zone;
            extent.rows = query.getColumn(3).getInt64();
        }
        return extents;
    });
}

bool has_days(BasinDatabase& database, std::string_view table) {
    return guarded([&] {
        const std::string name = quoted_name(database.existing_table(table));
        return database.sql().execAndGet("SELECT EXISTS (SELECT 1 FROM " + name + ")").getInt() != 0;
    });
}

}  // namespace nivora
