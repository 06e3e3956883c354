#include "store/daily_rows.h"

#include "store/table_io.h"

#include <SQLiteCpp/Statement.h>

namespace nivora {
namespace {

/// Zones as a list, so that the index finds the days of each; a range of zones would walk whole records.
std::string zone_numbers(int first_zone, int last_zone) {
    std::string list;
    for (int zone = first_zone; zone <= last_zone; ++zone)
        list += (list.empty() ? "" : ", ") + std::to_string(zone);
    return list;
}

SQLite::Statement select_rows(BasinDatabase& database, std::string_view table,
                              std::span<const std::string_view> fields, const std::string& zones) {
    std::string list = "\"Zone\", \"Date\"";
    for (const std::string_view field : fields) list += ", " + quoted_name(field);
    return {database.sql(), "SELECT " + list + " FROM " + quoted_name(database.existing_table(table)) +
                                " WHERE Zone IN (" + zones +
                                ") AND Date >= ? AND Date < ? ORDER BY Zone, Date, rowid"};
}

}  // namespace

DailyRows read_daily_rows(BasinDatabase& database, std::string_view table,
                          std::span<const std::string_view> fields, int first_zone, int last_zone,
                          const Period& period) {
    return guarded([&] {
        DailyRows rows;
        rows.fields.resize(fields.size());
        SQLite::Statement query = select_rows(database, table, fields, zone_numbers(first_zone, last_zone));
        query.bind(1, period.start);
        query.bind(2, period.end + 1);  // a date may carry a time part
        while (query.executeStep()) {
            std::int16_t zone = 0;
            read_value(query, 0, zone);
            rows.zone.push_back(zone);
            read_value(query, 1, rows.date.emplace_back());
            int position = 2;
            for (auto& values : rows.fields) read_value(query, position++, values.emplace_back());
        }
        return rows;
    });
}

}  // namespace nivora
