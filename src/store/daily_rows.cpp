#include "store/daily_rows.h"

#include "store/table_io.h"

#include <SQLiteCpp/Statement.h>

namespace nivora {
namespace {

SQLite::Statement select_rows(BasinDatabase& database, std::string_view table,
                              std::span<const std::string_view> fields) {
    std::string list = "\"Zone\", \"Date\"";
    for (const std::string_view field : fields) list += ", " + quoted_name(field);
    return {database.sql(), "SELECT " + list + " FROM " + quoted_name(database.existing_table(table)) +
                                " WHERE Zone BETWEEN ? AND ? AND Date >= ? AND Date < ?"
                                " ORDER BY Zone, Date, rowid"};
}

}  // namespace

DailyRows read_daily_rows(BasinDatabase& database, std::string_view table,
                          std::span<const std::string_view> fields, int first_zone, int last_zone,
                          const Period& period) {
    return guarded([&] {
        DailyRows rows;
        rows.fields.resize(fields.size());
        SQLite::Statement query = select_rows(database, table, fields);
        query.bind(1, first_zone);
        query.bind(2, last_zone);
        query.bind(3, period.start);
        query.bind(4, period.end + 1);  // a date may carry a time part
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
