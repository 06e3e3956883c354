#include "store/field_rows.h"

#include "base/single.h"
#include "store/table_io.h"

#include <bit>
#include <string>
#include <utility>

namespace nivora {
namespace {

std::string select_statement(const std::string& table, std::span<const Field> fields) {
    return "SELECT " + field_list({table, {fields.begin(), fields.end()}}) + " FROM " + quoted_name(table) +
           " WHERE rowid = ?";
}

std::string fields_statement(const std::string& table, std::span<const Field> fields) {
    std::string list;
    for (const Field& field : fields) list += (list.empty() ? "" : ", ") + quoted_name(field.name) + " = ?";
    return "UPDATE " + quoted_name(table) + " SET " + list + " WHERE rowid = ?";
}

std::string add_statement(const std::string& table, std::span<const Field> fields) {
    std::string list = "Zone, Date";
    std::string places = "?, ?";
    for (const Field& field : fields) {
        list += ", " + quoted_name(field.name);
        places += ", ?";
    }
    return "INSERT INTO " + quoted_name(table) + " (" + list + ") VALUES (" + places + ")";
}

bool same_bits(double a, double b) {
    if (is_missing(a) || is_missing(b)) return is_missing(a) && is_missing(b);
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

}  // namespace

FieldRows::FieldRows(BasinDatabase& database, std::string_view table, std::vector<Field> fields)
    : fields_(std::move(fields)),
      select_(guarded([&] {
          return SQLite::Statement{database.sql(), select_statement(database.existing_table(table), fields_)};
      })),
      update_(guarded([&] {
          return SQLite::Statement{database.sql(), fields_statement(database.existing_table(table), fields_)};
      })) {}

bool FieldRows::has(std::int64_t row, std::span<const double> values) {
    return guarded([&] {
        select_.reset();
        select_.bind(1, row);
        bool same = select_.executeStep();
        for (std::size_t i = 0; same && i < fields_.size(); ++i)
            same = same_bits(read_number(select_, static_cast<int>(i), fields_[i].type), values[i]);
        select_.reset();
        return same;
    });
}

void FieldRows::change(std::int64_t row, std::span<const double> values) {
    guarded([&] {
        update_.reset();
        int position = 1;
        for (const double value : values) bind_value(update_, position++, value);
        update_.bind(position, row);
        update_.exec();
    });
}

DayRows::DayRows(BasinDatabase& database, std::string_view table, std::span<const Field> fields)
    : insert_(guarded([&] {
          return SQLite::Statement{database.sql(), add_statement(database.existing_table(table), fields)};
      })) {}

void DayRows::add(int zone, DayCount day, std::span<const double> values) {
    guarded([&] {
        insert_.reset();
        insert_.bind(1, zone);
        insert_.bind(2, day);
        int position = 3;
        for (const double value : values) bind_value(insert_, position++, value);
        insert_.exec();
    });
}

}  // namespace nivora
