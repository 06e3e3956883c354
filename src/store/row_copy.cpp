#include "store/row_copy.h"

#include "base/calendar.h"
#include "base/text.h"
#include "store/basin_store.h"

#include <SQLiteCpp/Statement.h>
#include <fmt/format.h>
#include <sqlite3.h>

#include <cmath>
#include <limits>

namespace nivora {
namespace {

std::string places(std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += i == 0 ? "?" : ", ?";
    return text;
}

/// A statement of the engine itself, since values are handed on as they are.
class RawStatement {
public:
    RawStatement(SQLite::Database& database, const std::string& text) : database_(database) {
        if (sqlite3_prepare_v2(database.getHandle(), text.c_str(), -1, &statement_, nullptr) != SQLITE_OK)
            throw SQLite::Exception(database.getHandle());
    }
    RawStatement(const RawStatement&) = delete;
    RawStatement& operator=(const RawStatement&) = delete;
    ~RawStatement() { sqlite3_finalize(statement_); }

    [[nodiscard]] sqlite3_stmt* get() const { return statement_; }

    /// True for a row, false at the end. @throws SQLite::Exception
    [[nodiscard]] bool step() {
        const int answer = sqlite3_step(statement_);
        if (answer == SQLITE_ROW) return true;
        if (answer != SQLITE_DONE) throw SQLite::Exception(database_.getHandle(), answer);
        return false;
    }

private:
    SQLite::Database& database_;
    sqlite3_stmt* statement_ = nullptr;
};

/// Whether a value is one that a field can hold.
bool fits(sqlite3_value* value, const Field& field) {
    const int kind = sqlite3_value_type(value);
    if (kind == SQLITE_NULL) return true;
    if (field.type == FieldType::Text) return kind == SQLITE_TEXT;
    if (kind != SQLITE_INTEGER && kind != SQLITE_FLOAT) return false;
    const double number = sqlite3_value_double(value);
    switch (field.type) {
        case FieldType::Integer:
            return number == std::floor(number) && number >= std::numeric_limits<std::int16_t>::min() &&
                   number <= std::numeric_limits<std::int16_t>::max();
        case FieldType::Long:
            return number == std::floor(number) && number >= std::numeric_limits<std::int32_t>::min() &&
                   number <= std::numeric_limits<std::int32_t>::max();
        case FieldType::Single: return std::isfinite(static_cast<float>(number));
        case FieldType::Double: return std::isfinite(number);
        case FieldType::Date: return std::abs(number) <= k_largest_day;
        case FieldType::Text: break;
    }
    return false;
}

bool is_daily(const TableSchema& table) {
    return table.fields.size() > 2 && same_name(table.fields[0].name, "Zone") &&
           same_name(table.fields[1].name, "Date");
}

/// Reads a damaged table row by row and writes what it can.
class RowSalvage {
public:
    RowSalvage(SQLite::Database& from, const std::string& stored, SQLite::Database& to,
               const TableSchema& table)
        : from_(from),
          table_(table),
          name_(quoted_name(stored)),
          daily_(is_daily(table)),
          insert_(to, "INSERT INTO " + quoted_name(table.name) + " VALUES (" + places(table.fields.size()) +
                          ")") {}

    CopiedRows run();

private:
    /// Reads on behind a row until the end (true) or a fault.
    bool read_behind(std::int64_t& row);
    /// The first row that can be read behind a fault; nothing where none is found.
    std::optional<std::int64_t> next_readable(std::int64_t fault);
    bool take(sqlite3_stmt* row);
    void lose(const std::string& what);
    [[nodiscard]] std::optional<std::int64_t> last_row();

    SQLite::Database& from_;
    const TableSchema& table_;
    std::string name_;
    bool daily_;
    RawStatement insert_;
    CopiedRows copied_;
    std::int64_t unlisted_ = 0;
};

void RowSalvage::lose(const std::string& what) {
    constexpr std::size_t k_most_listed = 20;
    if (copied_.losses.size() < k_most_listed) {
        copied_.losses.push_back(what);
    } else {
        ++unlisted_;
    }
}

/// Writes one row; false where it is none of this table.
bool RowSalvage::take(sqlite3_stmt* row) {
    const auto count = static_cast<int>(table_.fields.size());
    const std::int64_t number = sqlite3_column_int64(row, 0);
    if (sqlite3_column_count(row) < count + 1) {
        lose(fmt::format("row {} has too few fields", number));
        return false;
    }
    for (int i = 0; i < count; ++i) {
        sqlite3_value* value = sqlite3_column_value(row, i + 1);
        const Field& field = table_.fields[static_cast<std::size_t>(i)];
        const double key = sqlite3_value_double(value);
        const bool bad_key = daily_ && i < 2 &&
                             (sqlite3_value_type(value) == SQLITE_NULL || key != std::floor(key) ||
                              (i == 0 && (key < 1.0 || key > k_most_zones)));
        if (!bad_key && fits(value, field)) {
            sqlite3_bind_value(insert_.get(), i + 1, value);
            continue;
        }
        lose(fmt::format("row {} holds in '{}' what can't stand there", number, field.name));
        return false;
    }
    static_cast<void>(insert_.step());
    sqlite3_reset(insert_.get());
    ++copied_.rows;
    return true;
}

bool RowSalvage::read_behind(std::int64_t& row) {
    RawStatement query{from_,
                       "SELECT rowid, * FROM " + name_ + " NOT INDEXED WHERE rowid > ? ORDER BY rowid"};
    sqlite3_bind_int64(query.get(), 1, row);
    for (;;) {
        const int answer = sqlite3_step(query.get());
        if (answer == SQLITE_DONE) return true;
        if (answer != SQLITE_ROW) return false;
        const std::int64_t found = sqlite3_column_int64(query.get(), 0);
        if (found <= row) {  // a tree that leads back into itself, or a row under a wrong number
            lose(fmt::format("behind row {} stands row {}, which is out of its order", row, found));
            return false;
        }
        row = found;
        static_cast<void>(take(query.get()));
    }
}

std::optional<std::int64_t> RowSalvage::last_row() {
    try {
        RawStatement query{from_, "SELECT max(rowid) FROM " + name_};
        if (query.step()) return sqlite3_column_int64(query.get(), 0);
    } catch (const SQLite::Exception&) {
        // The end of the tree is what is damaged.
    }
    return std::nullopt;
}

std::optional<std::int64_t> RowSalvage::next_readable(std::int64_t fault) {
    // More rows than stand below a page that the root leads to, and than a file of this size holds behind a
    // fault.
    constexpr std::int64_t k_most_tries = 100'000;
    constexpr std::int64_t k_rows_a_page = 100;
    const std::int64_t pages = from_.execAndGet("PRAGMA page_count").getInt64();
    const std::int64_t tries = std::min(k_most_tries, pages * k_rows_a_page);
    RawStatement query{from_, "SELECT rowid FROM " + name_ + " NOT INDEXED WHERE rowid = ?"};
    const std::int64_t end = std::min(last_row().value_or(fault + tries), fault + tries);
    for (std::int64_t row = fault + 1; row <= end; ++row) {
        sqlite3_reset(query.get());
        sqlite3_bind_int64(query.get(), 1, row);
        if (sqlite3_step(query.get()) == SQLITE_ROW) return row;
    }
    return std::nullopt;
}

CopiedRows RowSalvage::run() {
    std::int64_t row = std::numeric_limits<std::int64_t>::min();
    while (!read_behind(row)) {
        const std::int64_t last = std::max<std::int64_t>(row, 0);
        const auto next = next_readable(last);
        if (!next) {
            lose(last == 0 ? std::string{"no row can be read"}
                           : fmt::format("what stands behind row {} can't be read", last));
            break;
        }
        if (*next > last + 1) lose(fmt::format("the rows {} to {} can't be read", last + 1, *next - 1));
        row = *next - 1;
        if (row == last) {
            // The row can be reached by its number, but not from the one before: it is read alone.
            RawStatement query{from_, "SELECT rowid, * FROM " + name_ + " NOT INDEXED WHERE rowid = ?"};
            sqlite3_bind_int64(query.get(), 1, *next);
            if (sqlite3_step(query.get()) == SQLITE_ROW) static_cast<void>(take(query.get()));
            row = *next;
        }
    }
    if (unlisted_ > 0) copied_.losses.push_back(fmt::format("{} more places", unlisted_));
    return copied_;
}

}  // namespace

void copy_sound_rows(SQLite::Database& from, SQLite::Database& to, const std::string& table) {
    guarded([&] {
        RawStatement query{from, "SELECT * FROM " + quoted_name(table) + " NOT INDEXED ORDER BY rowid"};
        const int count = sqlite3_column_count(query.get());
        RawStatement insert{to, "INSERT INTO " + quoted_name(table) + " VALUES (" +
                                    places(static_cast<std::size_t>(count)) + ")"};
        while (query.step()) {
            for (int i = 0; i < count; ++i)
                sqlite3_bind_value(insert.get(), i + 1, sqlite3_column_value(query.get(), i));
            static_cast<void>(insert.step());
            sqlite3_reset(insert.get());
        }
    });
}

CopiedRows copy_readable_rows(SQLite::Database& from, const std::string& stored, SQLite::Database& to,
                              const TableSchema& table) {
    return guarded([&] { return RowSalvage{from, stored, to, table}.run(); });
}

}  // namespace nivora
