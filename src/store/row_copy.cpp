#include "store/row_copy.h"

#include "base/calendar.h"
#include "base/text.h"
#include "store/basin_store.h"

#include <SQLiteCpp/Statement.h>
#include <fmt/format.h>
#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <unordered_set>

namespace nivora {
namespace {

std::string places(std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += i == 0 ? "?" : ", ?";
    return text;
}

/// A statement of the engine's C interface, which passes on values unchanged.
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

/// Tracks the row numbers of a table in stored order: which of them are out of order, and which are missing
/// between those in order.
class RowOrder {
public:
    /// Numbers that are missing between two rows; only `rows` of them,
    /// since some rows may exist under wrong numbers.
    struct Gap {
        std::int64_t first = 0;
        std::int64_t last = 0;
        std::int64_t rows = 0;
        bool fault = false;  ///< the reading had to restart here
    };
    struct Misplaced {
        std::int64_t previous = 0;  ///< the row before
        std::int64_t number = 0;
    };

    /// Adds the next number. Whether a number is in order shows only with the one after it:
    /// of 299, 4396, 301 the second is wrong.
    void add(std::int64_t number) {
        if (!held_) {
            if (number > base_) {
                held_ = number;
            } else {
                misplace(number);
            }
        } else if (number > *held_) {
            settle();
            held_ = number;
        } else if (number > base_) {
            misplace(*held_);
            held_ = number;
        } else {
            release();
            misplace(number);
        }
    }

    void restart() {
        release();
        fault_ = true;
    }
    /// The last number that is sure to be in order.
    [[nodiscard]] std::int64_t last() const { return held_ && *held_ - base_ == 1 ? *held_ : base_; }

    void end() {
        if (held_) settle();
        held_.reset();
    }
    [[nodiscard]] const std::vector<Gap>& gaps() const { return gaps_; }
    [[nodiscard]] const std::vector<Misplaced>& misplaced() const { return misplaced_; }

private:
    void misplace(std::int64_t number) {
        ++misplaced_after_base_;
        misplaced_.push_back({base_ + misplaced_after_base_ - 1, number});
    }
    /// Decides about the held number without the next one:
    /// it is in order only if it follows its predecessor directly.
    void release() {
        if (!held_) return;
        if (*held_ - base_ - misplaced_after_base_ == 1) {
            settle();
        } else {
            misplace(*held_);
        }
        held_.reset();
    }
    void settle() {
        const std::int64_t missing = *held_ - base_ - 1 - misplaced_after_base_;
        if (missing > 0) gaps_.push_back({base_ + 1, *held_ - 1, missing, fault_});
        base_ = *held_;
        misplaced_after_base_ = 0;
        fault_ = false;
    }

    std::int64_t base_ = 0;
    std::optional<std::int64_t> held_;
    std::int64_t misplaced_after_base_ = 0;
    bool fault_ = false;
    std::vector<Gap> gaps_;
    std::vector<Misplaced> misplaced_;
};

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
    /// Reads the rows of a statement in stored order until the end (true) or a fault.
    bool read(const std::string& condition, std::int64_t number = 0);
    /// The first row after a fault that can be read; nothing if none is found.
    std::optional<std::int64_t> next_readable(std::int64_t fault);
    /// Writes a row unless it was visited before.
    void visit(sqlite3_stmt* row);
    bool write_row(sqlite3_stmt* row);
    void report_order();
    void lose(const std::string& what);

    SQLite::Database& from_;
    const TableSchema& table_;
    std::string name_;
    bool daily_;
    RawStatement insert_;
    CopiedRows copied_;
    RowOrder order_;
    std::unordered_set<std::size_t> seen_;  ///< digests of the rows with their numbers
    std::size_t again_ = 0;                 ///< consecutive rows that were seen before
    std::int64_t twice_ = 0;
    bool faulty_ = false;
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

/// Writes one row; false if it is not a row of this table.
bool RowSalvage::write_row(sqlite3_stmt* row) {
    const auto count = static_cast<int>(table_.fields.size());
    const std::int64_t number = sqlite3_column_int64(row, 0);
    if (sqlite3_column_count(row) < count + 1) {
        lose(fmt::format("row {}, which has too few fields", number));
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
        lose(fmt::format("row {}, whose field '{}' has an invalid value", number, field.name));
        return false;
    }
    static_cast<void>(insert_.step());
    sqlite3_reset(insert_.get());
    ++copied_.rows;
    return true;
}

/// Number and values of a row as bytes, to recognize it later.
std::string row_bytes(sqlite3_stmt* row) {
    std::string bytes;
    for (int i = 0; i < sqlite3_column_count(row); ++i) {
        const int type = sqlite3_column_type(row, i);
        bytes += static_cast<char>(type);
        if (type == SQLITE_NULL) continue;
        if (type == SQLITE_TEXT || type == SQLITE_BLOB) {
            const void* data = sqlite3_column_blob(row, i);
            const auto size = static_cast<std::size_t>(sqlite3_column_bytes(row, i));
            bytes += std::to_string(size) + ":";
            if (size > 0) bytes.append(static_cast<const char*>(data), size);
            continue;
        }
        const double number = sqlite3_column_double(row, i);
        const std::int64_t whole = sqlite3_column_int64(row, i);
        bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
        bytes.append(reinterpret_cast<const char*>(&whole), sizeof whole);
    }
    return bytes;
}

void RowSalvage::visit(sqlite3_stmt* row) {
    // A tree with a cycle, or a second reading after a fault, reaches the same rows again. A row that merely
    // has the number of another one has different values.
    if (!seen_.insert(std::hash<std::string>{}(row_bytes(row))).second) {
        ++twice_;
        ++again_;
        return;
    }
    again_ = 0;
    order_.add(sqlite3_column_int64(row, 0));
    static_cast<void>(write_row(row));
}

bool RowSalvage::read(const std::string& condition, std::int64_t number) {
    // A walk that meets more known rows than there are is in a cycle.
    again_ = 0;
    RawStatement query{from_, "SELECT rowid, * FROM " + name_ + " NOT INDEXED" + condition};
    if (!condition.empty()) sqlite3_bind_int64(query.get(), 1, number);
    while (again_ <= seen_.size()) {
        const int answer = sqlite3_step(query.get());
        if (answer == SQLITE_DONE) return true;
        if (answer != SQLITE_ROW) return false;
        visit(query.get());
    }
    return false;
}

std::optional<std::int64_t> RowSalvage::next_readable(std::int64_t fault) {
    // An upper bound of the rows below one child page of the root, and of those that a file of this
    // size can hold.
    constexpr std::int64_t k_most_tries = 100'000;
    constexpr std::int64_t k_rows_a_page = 100;
    const std::int64_t pages = from_.execAndGet("PRAGMA page_count").getInt64();
    const std::int64_t room = std::numeric_limits<std::int64_t>::max() - fault;
    const std::int64_t tries = std::min({k_most_tries, pages * k_rows_a_page, room});
    RawStatement query{from_, "SELECT rowid FROM " + name_ + " NOT INDEXED WHERE rowid = ?"};
    for (std::int64_t i = 1; i <= tries; ++i) {
        sqlite3_reset(query.get());
        sqlite3_bind_int64(query.get(), 1, fault + i);
        if (sqlite3_step(query.get()) == SQLITE_ROW) return fault + i;
    }
    return std::nullopt;
}

/// Reports which numbers are wrong and, if anything is wrong, which rows are missing. In a sound table
/// missing numbers are those of rows that were deleted.
void RowSalvage::report_order() {
    order_.end();
    for (const RowOrder::Misplaced& row : order_.misplaced())
        lose(fmt::format("the number of the row after row {}, which was {}", row.previous, row.number));
    if (twice_ > 0 && !faulty_) lose(fmt::format("{} rows that the table refers to twice", twice_));
    if (!faulty_ && twice_ == 0 && order_.misplaced().empty()) return;
    for (const RowOrder::Gap& gap : order_.gaps()) {
        const bool all = gap.rows == gap.last - gap.first + 1;
        lose(fmt::format("{}rows {} to {}, which {}", all ? "" : fmt::format("{} of ", gap.rows), gap.first,
                         gap.last, gap.fault ? "can't be read" : "are missing"));
    }
}

CopiedRows RowSalvage::run() {
    std::int64_t searched = 0;
    bool at_end = read("");
    while (!at_end) {
        faulty_ = true;
        searched = std::max(searched, order_.last());
        order_.restart();
        const auto next = next_readable(searched);
        if (!next) {
            lose(searched == 0 ? std::string{"all rows, which can't be read"}
                               : fmt::format("the rows after row {}, which can't be read", searched));
            break;
        }
        // A row may be reached by its number alone, and not from the one before.
        static_cast<void>(read(" WHERE rowid = ?", *next));
        searched = *next;
        at_end = read(" WHERE rowid > ? ORDER BY rowid", *next);
    }
    report_order();
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
