#include "store/daily_columns.h"

#include "base/single.h"
#include "store/table_io.h"

#include <algorithm>

namespace nivora {

DailyColumns::DailyColumns(int zones, std::size_t fields, DayCount first, DayCount last)
    : zones_(std::max(zones, 0)),
      fields_(fields),
      first_(first),
      last_(last),
      days_(last < first ? 0 : static_cast<std::size_t>(last - first + 1)),
      values_(static_cast<std::size_t>(zones_) * fields_ * days_, as_double(k_missing)) {}

std::size_t DailyColumns::index(int zone, std::size_t field) const {
    return (static_cast<std::size_t>(zone - 1) * fields_ + field) * days_;
}

std::span<const double> DailyColumns::column(int zone, std::size_t field) const {
    return std::span{values_}.subspan(index(zone, field), days_);
}

double DailyColumns::at(int zone, std::size_t field, DayCount day) const {
    if (zone < 1 || zone > zones_ || day < first_ || day > last_) return as_double(k_missing);
    return column(zone, field)[static_cast<std::size_t>(day - first_)];
}

void DailyColumns::store(int zone, DayCount day, std::span<const double> values) {
    if (zone < 1 || zone > zones_ || day < first_ || day > last_) return;
    has_rows_ = true;
    for (std::size_t field = 0; field < fields_; ++field) {
        values_[index(zone, field) + static_cast<std::size_t>(day - first_)] = values[field];
    }
}

DailyColumns read_daily_columns(BasinDatabase& database, std::string_view table,
                                std::span<const std::string_view> fields, int zones, DayCount first,
                                DayCount last) {
    DailyColumns columns{zones, fields.size(), first, last};
    guarded([&] {
        std::string list = "\"Zone\", \"Date\"";
        for (const std::string_view field : fields) list += ", " + quoted_name(field);
        SQLite::Statement query{database.sql(), "SELECT " + list + " FROM " +
                                                    quoted_name(database.existing_table(table)) +
                                                    " WHERE Zone BETWEEN 1 AND ? AND Date >= ? AND Date < ?"
                                                    " ORDER BY rowid"};
        bind_value(query, 1, static_cast<std::int32_t>(zones));
        bind_value(query, 2, first);
        bind_value(query, 3, last + 1);  // a date may carry a time part
        std::vector<double> values(fields.size());
        while (query.executeStep()) {
            std::int16_t zone = 0;
            DayCount day = 0;
            read_value(query, 0, zone);
            read_value(query, 1, day);
            for (std::size_t field = 0; field < values.size(); ++field) {
                read_value(query, static_cast<int>(field) + 2, values[field]);
            }
            columns.store(zone, day, values);
        }
    });
    return columns;
}

}  // namespace nivora
