#include "store/table_io.h"

#include "base/single.h"
#include "base/text.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace nivora {
namespace {

[[noreturn]] void refuse_value(SQLite::Statement& row, int position, std::string_view what) {
    throw StoreError(StoreFault::Value,
                     fmt::format("The field '{}' holds {}.", row.getColumnName(position), what));
}

/// The number in a field that is not Null.
double number_at(SQLite::Statement& row, int position) {
    const SQLite::Column column = row.getColumn(position);
    if (!column.isInteger() && !column.isFloat()) refuse_value(row, position, "text instead of a number");
    return column.getDouble();
}

template <typename Whole>
Whole whole_at(SQLite::Statement& row, int position) {
    if (is_null(row, position)) return 0;
    const double value = number_at(row, position);
    const bool fits = value == std::floor(value) &&
                      value >= static_cast<double>(std::numeric_limits<Whole>::min()) &&
                      value <= static_cast<double>(std::numeric_limits<Whole>::max());
    if (!fits) refuse_value(row, position, "a number that is out of range");
    return static_cast<Whole>(value);
}

}  // namespace

void bind_value(SQLite::Statement& statement, int position, double value) {
    if (is_missing(value)) {
        statement.bind(position);
    } else if (std::isinf(value)) {
        throw StoreError(StoreFault::Value, "No field can hold an infinite number.");
    } else {
        statement.bind(position, value + 0.0);  // the file never holds a negative zero
    }
}

void bind_value(SQLite::Statement& statement, int position, float value) {
    bind_value(statement, position, as_double(value));
}

void bind_value(SQLite::Statement& statement, int position, std::int16_t value) {
    statement.bind(position, static_cast<std::int32_t>(value));
}

void bind_value(SQLite::Statement& statement, int position, std::int32_t value) {
    statement.bind(position, value);
}

void bind_value(SQLite::Statement& statement, int position, DayCount value) {
    statement.bind(position, value);
}

void bind_value(SQLite::Statement& statement, int position, const std::string& value) {
    statement.bind(position, value);
}

void bind_value(SQLite::Statement& statement, int position, Distribution value) {
    statement.bind(position, static_cast<std::int32_t>(value));
}

void bind_value(SQLite::Statement& statement, int position, Units value) {
    statement.bind(position, static_cast<std::int32_t>(value));
}

bool is_null(SQLite::Statement& row, int position) { return row.isColumnNull(position); }

void read_value(SQLite::Statement& row, int position, double& value) {
    const SQLite::Column column = row.getColumn(position);
    switch (column.getType()) {
        case SQLITE_NULL: value = static_cast<double>(k_missing); return;
        case SQLITE_INTEGER:
        case SQLITE_FLOAT: value = column.getDouble(); break;
        default: refuse_value(row, position, "text instead of a number");
    }
    if (std::isinf(value)) refuse_value(row, position, "an infinite number");
}

void read_value(SQLite::Statement& row, int position, float& value) {
    double wide = 0.0;
    read_value(row, position, wide);
    value = static_cast<float>(wide);
    if (std::isinf(value)) refuse_value(row, position, "a number that is too large for it");
}

void read_value(SQLite::Statement& row, int position, std::int16_t& value) {
    value = whole_at<std::int16_t>(row, position);
}

void read_value(SQLite::Statement& row, int position, std::int32_t& value) {
    value = whole_at<std::int32_t>(row, position);
}

void read_value(SQLite::Statement& row, int position, DayCount& value) {
    value = 0;
    if (is_null(row, position)) return;
    const double date = number_at(row, position);
    if (!(std::abs(date) <= k_largest_day)) refuse_value(row, position, "a date that is out of range");
    value = whole_day(date);
}

void read_value(SQLite::Statement& row, int position, std::string& value) {
    value = row.getColumn(position).getString();
}

void read_value(SQLite::Statement& row, int position, Distribution& value) {
    const auto code = whole_at<std::int16_t>(row, position);
    if (code != 0 && code != 1) refuse_value(row, position, "a code that is neither 0 nor 1");
    value = static_cast<Distribution>(code);
}

void read_value(SQLite::Statement& row, int position, Units& value) {
    value = static_cast<Units>(whole_at<std::int16_t>(row, position));
}

double read_number(SQLite::Statement& row, int position, FieldType type) {
    if (is_null(row, position)) return static_cast<double>(k_missing);
    if (type == FieldType::Integer) {
        std::int16_t value = 0;
        read_value(row, position, value);
        return value;
    }
    if (type == FieldType::Single) {
        float value = 0.0F;
        read_value(row, position, value);
        return as_double(value);
    }
    double value = 0.0;
    read_value(row, position, value);
    return value;
}

TableReader::TableReader(BasinDatabase& database, const TableSchema& table)
    : query_(guarded([&] {
          return SQLite::Statement{database.sql(), "SELECT " + field_list(table) + ", rowid FROM " +
                                                       quoted_name(database.existing_table(table.name)) +
                                                       " ORDER BY rowid"};
      })),
      fields_(static_cast<int>(table.fields.size())) {}

bool TableReader::next() {
    return guarded([&] { return query_.executeStep(); });
}

bool TableReader::is_null(int position) {
    return guarded([&] { return nivora::is_null(query_, position); });
}

std::int64_t TableReader::row_number() {
    return guarded([&] { return query_.getColumn(fields_).getInt64(); });
}

TableWriter::TableWriter(BasinDatabase& database, const TableSchema& table)
    : insert_(guarded([&] {
          std::string places;
          for (std::size_t i = 0; i < table.fields.size(); ++i) places += i == 0 ? "?" : ", ?";
          return SQLite::Statement{database.sql(),
                                   "INSERT INTO " + quoted_name(database.existing_table(table.name)) + " (" +
                                       field_list(table) + ") VALUES (" + places + ")"};
      })) {}

void TableWriter::add() {
    guarded([&] {
        insert_.exec();
        insert_.reset();
    });
}

SQLite::Statement update_statement(BasinDatabase& database, const TableSchema& table) {
    return guarded([&] {
        std::string fields;
        for (const Field& field : table.fields)
            fields += (fields.empty() ? "" : ", ") + quoted_name(field.name) + " = ?";
        const std::string name = quoted_name(database.existing_table(table.name));
        return SQLite::Statement{database.sql(), "UPDATE " + name + " SET " + fields + " WHERE rowid = ?"};
    });
}

void delete_row(BasinDatabase& database, std::string_view table, std::int64_t number) {
    guarded([&] {
        const std::string name = quoted_name(database.existing_table(table));
        SQLite::Statement statement{database.sql(), "DELETE FROM " + name + " WHERE rowid = ?"};
        statement.bind(1, number);
        statement.exec();
    });
}

void clear_table(BasinDatabase& database, std::string_view table) {
    database.execute("DELETE FROM " + quoted_name(database.existing_table(table)));
}

TableSchema template_table(std::string_view name) {
    for (TableSchema& table : template_tables()) {
        if (table.name == name) return std::move(table);
    }
    throw StoreError(StoreFault::Missing, fmt::format("The template has no table '{}'.", name));
}

bool is_scenario(BasinDatabase& database, std::string_view name) {
    const auto scenarios = read_table<ScenarioIndexRow>(database, template_table(k_scenario_index));
    return std::any_of(scenarios.begin(), scenarios.end(),
                       [&](const ScenarioIndexRow& row) { return same_name(row.scenario, name); });
}

BasinDescription read_basin_description(BasinDatabase& database) {
    auto rows = read_table<BasinDescription>(database, template_table(k_basin_description));
    if (rows.empty()) {
        throw StoreError(StoreFault::Damaged, "The table 'BasinDescription' of the basin file has no row.");
    }
    return std::move(rows.front());
}

void write_basin_description(BasinDatabase& database, const BasinDescription& basin) {
    clear_table(database, k_basin_description);
    add_rows<BasinDescription>(database, template_table(k_basin_description), std::span{&basin, 1});
}

}  // namespace nivora
