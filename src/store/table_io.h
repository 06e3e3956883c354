// Typed rows in and out of the tables of a basin file.
#pragma once

#include "store/database.h"
#include "store/rows.h"

#include <SQLiteCpp/Statement.h>

#include <concepts>
#include <span>
#include <type_traits>
#include <vector>

namespace nivora {

// Binds one value to a statement; a missing one becomes Null, an infinite one is a StoreError. Positions
// count from 1.
void bind_value(SQLite::Statement& statement, int position, float value);
void bind_value(SQLite::Statement& statement, int position, double value);
void bind_value(SQLite::Statement& statement, int position, std::int16_t value);
void bind_value(SQLite::Statement& statement, int position, std::int32_t value);
void bind_value(SQLite::Statement& statement, int position, DayCount value);
void bind_value(SQLite::Statement& statement, int position, const std::string& value);
void bind_value(SQLite::Statement& statement, int position, Distribution value);
void bind_value(SQLite::Statement& statement, int position, Units value);

template <typename Value>
void bind_value(SQLite::Statement& statement, int position, const std::optional<Value>& value) {
    if (value) {
        bind_value(statement, position, *value);
    } else {
        statement.bind(position);
    }
}

// Reads one value from a row; Null reads as missing. Text instead of a number, or a number that its field
// can't hold, is a StoreError. Positions count from 0. Null in a column without a missing form reads as 0 or
// an empty text.
void read_value(SQLite::Statement& row, int position, float& value);
void read_value(SQLite::Statement& row, int position, double& value);
void read_value(SQLite::Statement& row, int position, std::int16_t& value);
void read_value(SQLite::Statement& row, int position, std::int32_t& value);
void read_value(SQLite::Statement& row, int position, DayCount& value);
void read_value(SQLite::Statement& row, int position, std::string& value);
void read_value(SQLite::Statement& row, int position, Distribution& value);
void read_value(SQLite::Statement& row, int position, Units& value);

[[nodiscard]] bool is_null(SQLite::Statement& row, int position);

template <typename Value>
void read_value(SQLite::Statement& row, int position, std::optional<Value>& value) {
    if (is_null(row, position)) {
        value.reset();
    } else {
        read_value(row, position, value.emplace());
    }
}

/// Reads the rows of a query that selects a table's fields in their order.
template <typename Row>
[[nodiscard]] std::vector<Row> read_rows(SQLite::Statement& query) {
    return guarded([&] {
        std::vector<Row> rows;
        while (query.executeStep()) {
            int position = 0;
            Row::visit(rows.emplace_back(), [&](auto& member) { read_value(query, position++, member); });
        }
        return rows;
    });
}

/// Reads all rows of a table in stored order.
template <typename Row>
[[nodiscard]] std::vector<Row> read_table(BasinDatabase& database, const TableSchema& table) {
    return guarded([&] {
        const std::string name = database.existing_table(table.name);
        SQLite::Statement query{
            database.sql(), "SELECT " + field_list(table) + " FROM " + quoted_name(name) + " ORDER BY rowid"};
        return read_rows<Row>(query);
    });
}

/// Appends rows to a table.
template <typename Row>
void add_rows(BasinDatabase& database, const TableSchema& table, std::span<const Row> rows) {
    guarded([&] {
        const std::string name = database.existing_table(table.name);
        std::string places;
        for (std::size_t i = 0; i < table.fields.size(); ++i) places += i == 0 ? "?" : ", ?";
        SQLite::Statement insert{database.sql(), "INSERT INTO " + quoted_name(name) + " (" +
                                                     field_list(table) + ") VALUES (" + places + ")"};
        for (const Row& row : rows) {
            int position = 1;
            Row::visit(row, [&](const auto& member) { bind_value(insert, position++, member); });
            insert.exec();
            insert.reset();
        }
    });
}

/// Removes all rows of a table.
void clear_table(BasinDatabase& database, std::string_view table);

/// The schema of one of the five tables that every basin file has.
[[nodiscard]] TableSchema template_table(std::string_view name);

/// Whether a climate scenario of that name is in the index, whichever simulation it belongs to.
[[nodiscard]] bool is_scenario(BasinDatabase& database, std::string_view name);

/// The basin header. @throws StoreError if the table has no row
[[nodiscard]] BasinDescription read_basin_description(BasinDatabase& database);
void write_basin_description(BasinDatabase& database, const BasinDescription& basin);

}  // namespace nivora
