#include "store/daily_writer.h"

#include "store/table_io.h"

#include <string>

namespace nivora {
namespace {

std::string insert_statement(const std::string& table, std::span<const FieldValue> values) {
    std::string fields;
    std::string places;
    for (const FieldValue& value : values) {
        fields += quoted_name(value.field) + ", ";
        places += "?, ";
    }
    return "INSERT INTO " + quoted_name(table) + " (" + fields + "Zone, Date) VALUES (" + places + "?, ?)";
}

std::string change_statement(const std::string& table, std::span<const FieldValue> values) {
    std::string fields;
    for (const FieldValue& value : values)
        fields += (fields.empty() ? "" : ", ") + quoted_name(value.field) + " = ?";
    return "UPDATE " + quoted_name(table) + " SET " + fields + " WHERE rowid = ?";
}

/// Binds the values to the positions from 1 on; they stay bound for all rows.
void bind_values(SQLite::Statement& statement, std::span<const FieldValue> values) {
    int position = 1;
    for (const FieldValue& value : values) bind_value(statement, position++, value.value);
}

void run(SQLite::Statement& statement) {
    statement.exec();
    statement.reset();
}

}  // namespace

DailyWriter::DailyWriter(BasinDatabase& database, std::string_view table, std::span<const FieldValue> values)
    : insert_(guarded([&] {
          return SQLite::Statement{database.sql(), insert_statement(database.existing_table(table), values)};
      })),
      values_(static_cast<int>(values.size())) {
    guarded([&] {
        bind_values(insert_, values);
        if (values.empty()) return;
        update_.emplace(database.sql(), change_statement(database.existing_table(table), values));
        bind_values(*update_, values);
    });
}

void DailyWriter::add(int zone, DayCount day) {
    guarded([&] {
        insert_.bind(values_ + 1, zone);
        insert_.bind(values_ + 2, day);
        run(insert_);
    });
}

void DailyWriter::overwrite(std::int64_t row) {
    if (!update_) return;
    guarded([&] {
        update_->bind(values_ + 1, row);
        run(*update_);
    });
}

}  // namespace nivora
