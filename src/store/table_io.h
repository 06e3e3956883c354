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

/// Reads a number as a field of its type holds it: whole in an Integer, rounded to 32 bits in a Single, any
/// other as it is. NaN for Null.
[[nodiscard]] double read_number(SQLite::Statement& row, int position, FieldType type);

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

/// The rows of a table in stored order, one at a time. A value is read when it is asked for: the size of the
/// table does not matter, and a value that can't be read does not affect those before it.
///
/// Every call throws StoreError, the constructor also if the table or a field is missing.
class TableReader {
public:
    TableReader(BasinDatabase& database, const TableSchema& table);

    /// Goes to the next row, at first to the first one; false after the last.
    bool next();
    /// Whether a field of the row is Null. Positions count from 0, in the order of the schema.
    [[nodiscard]] bool is_null(int position);
    /// Reads a field of the row, as read_value does.
    template <typename Value>
    void read(int position, Value& value) {
        guarded([&] { read_value(query_, position, value); });
    }
    /// Where the row is stored, for delete_row and replace_row.
    [[nodiscard]] std::int64_t row_number();

private:
    SQLite::Statement query_;
    int fields_;
};

/// Appends rows to a table. Every call throws StoreError, the constructor also if the table or a field is
/// missing.
class TableWriter {
public:
    TableWriter(BasinDatabase& database, const TableSchema& table);

    /// Sets a field of the next row, as bind_value does; positions count from 0, in the order of the schema.
    /// A field that is not set has the value of the row before.
    template <typename Value>
    void set(int position, const Value& value) {
        guarded([&] { bind_value(insert_, position + 1, value); });
    }
    /// Appends the row.
    void add();

private:
    SQLite::Statement insert_;
};

/// Reads all rows of a table in stored order.
template <typename Row>
[[nodiscard]] std::vector<Row> read_table(BasinDatabase& database, const TableSchema& table) {
    std::vector<Row> rows;
    TableReader reader{database, table};
    while (reader.next()) {
        int position = 0;
        Row::visit(rows.emplace_back(), [&](auto& member) { reader.read(position++, member); });
    }
    return rows;
}

/// A row and its place in the table.
template <typename Row>
struct Stored {
    std::int64_t number = 0;
    Row row;
};

/// Reads all rows of a table in stored order, with their places.
template <typename Row>
[[nodiscard]] std::vector<Stored<Row>> read_stored_rows(BasinDatabase& database, const TableSchema& table) {
    std::vector<Stored<Row>> rows;
    TableReader reader{database, table};
    while (reader.next()) {
        Stored<Row>& stored = rows.emplace_back();
        int position = 0;
        Row::visit(stored.row, [&](auto& member) { reader.read(position++, member); });
        stored.number = reader.row_number();
    }
    return rows;
}

/// Appends rows to a table.
template <typename Row>
void add_rows(BasinDatabase& database, const TableSchema& table, std::span<const Row> rows) {
    TableWriter writer{database, table};
    for (const Row& row : rows) {
        int position = 0;
        Row::visit(row, [&](const auto& member) { writer.set(position++, member); });
        writer.add();
    }
}

/// A statement that sets every field of a row, whose number is its last parameter. @throws StoreError
[[nodiscard]] SQLite::Statement update_statement(BasinDatabase& database, const TableSchema& table);

/// Writes a row over the one at its place; does nothing if there is none. @throws StoreError
template <typename Row>
void replace_row(BasinDatabase& database, const TableSchema& table, const Stored<Row>& stored) {
    guarded([&] {
        SQLite::Statement update = update_statement(database, table);
        int position = 1;
        Row::visit(stored.row, [&](const auto& member) { bind_value(update, position++, member); });
        update.bind(position, stored.number);
        update.exec();
    });
}

/// Removes the row of a number; does nothing if there is none. @throws StoreError
void delete_row(BasinDatabase& database, std::string_view table, std::int64_t number);

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
