#include "store/database.h"

#include "base/calendar.h"
#include "base/durable_file.h"
#include "base/text.h"
#include "store/basin_copy.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <fmt/format.h>
#include <sqlite3.h>

#include <array>
#include <cmath>
#include <fstream>
#include <limits>

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t k_header_size = 100;
constexpr std::size_t k_user_version_at = 60;
constexpr std::size_t k_application_id_at = 68;

[[noreturn]] void refuse(StoreFault fault, const fs::path& path, std::string_view what) {
    throw StoreError(fault, fmt::format("The file '{}' {}", path_text(path), what));
}

std::int32_t big_endian_at(const std::array<char, k_header_size>& header, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) value = value << 8U | static_cast<unsigned char>(header[at + i]);
    return static_cast<std::int32_t>(value);
}

/// Reads only the file's first bytes: opening a foreign database, even to read it, could roll
/// back its journal.
void check_identity(const fs::path& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status)) refuse(StoreFault::Missing, path, "does not exist.");
    if (!fs::is_regular_file(status))
        refuse(StoreFault::NotADatabase, path, "is a folder, or not a regular file.");
    std::ifstream file{path, std::ios::binary};
    if (!file) refuse(StoreFault::ReadOnly, path, "can't be opened: you have no permission to read it.");
    std::array<char, k_header_size> header{};
    file.read(header.data(), header.size());
    constexpr std::string_view k_magic{"SQLite format 3\0", 16};
    if (file.gcount() != static_cast<std::streamsize>(k_header_size) ||
        std::string_view{header.data(), k_magic.size()} != k_magic) {
        refuse(StoreFault::NotADatabase, path, "is not a Nivora basin file: it has an unrecognized format.");
    }
    if (big_endian_at(header, k_application_id_at) != k_application_id) {
        refuse(StoreFault::Foreign, path, "is a database of another program, not a Nivora basin file.");
    }
    const std::int32_t version = big_endian_at(header, k_user_version_at);
    if (version > k_schema_version) {
        refuse(StoreFault::Newer, path,
               fmt::format(
                   "was written by a newer version of Nivora (file version {}, this program reads up to {}). "
                   "Please use the newer version.",
                   version, k_schema_version));
    }
    if (version < 1) refuse(StoreFault::Damaged, path, "has no version number; it may be damaged.");
}

void sql_single(sqlite3_context* context, int, sqlite3_value** values) {
    if (sqlite3_value_type(values[0]) == SQLITE_NULL) return sqlite3_result_null(context);
    const auto rounded = static_cast<float>(sqlite3_value_double(values[0]));
    if (std::isinf(rounded)) return sqlite3_result_error(context, "Overflow", -1);
    sqlite3_result_double(context, static_cast<double>(rounded));
}

void sql_month(sqlite3_context* context, int, sqlite3_value** values) {
    if (sqlite3_value_type(values[0]) == SQLITE_NULL) return sqlite3_result_null(context);
    const double date = sqlite3_value_double(values[0]);
    if (!(std::abs(date) <= k_largest_day)) return sqlite3_result_error(context, "Overflow", -1);
    sqlite3_result_int(context, civil_date(whole_day(date)).month);
}

SQLite::Database opened(const fs::path& path, Access access, std::chrono::milliseconds wait) {
    check_identity(path);
    return guarded([&] {
        // One thread of the program uses the engine, so that the engine's own locks would only cost time.
        const int flags = (access == Access::ReadOnly ? SQLite::OPEN_READONLY : SQLite::OPEN_READWRITE) |
                          SQLite::OPEN_NOMUTEX;
        // A relative name that begins with "file:" would be read as an address with options.
        SQLite::Database sql{path_text(fs::absolute(path)), flags, static_cast<int>(wait.count())};
        open_defensively(sql);
        // Freed pages hold the user's own old results; wiping them would double the writing of a run.
        sql.exec("PRAGMA secure_delete = OFF");
        sql.exec("PRAGMA temp_store = MEMORY");
        if (access == Access::ReadWrite) {
            // No second file may ever hold data, whatever another tool has set.
            sql.execAndGet("PRAGMA journal_mode = DELETE");
        }
        return sql;
    });
}

FieldType type_of(std::string_view declared) {
    if (declared == "SMALLINT") return FieldType::Integer;
    if (declared == "INTEGER") return FieldType::Long;
    if (declared == "FLOAT") return FieldType::Single;
    if (declared == "DOUBLE") return FieldType::Double;
    if (declared == "DATE") return FieldType::Date;
    return FieldType::Text;
}

int width_of(std::string_view declared) {
    const std::size_t bracket = declared.find('(');
    return bracket == std::string_view::npos ? 0
                                             : std::atoi(std::string{declared.substr(bracket + 1)}.c_str());
}

void write_template(const fs::path& path) {
    guarded([&] {
        SQLite::Database sql{path_text(path), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE};
        sql.exec("PRAGMA page_size = 4096");
        sql.exec("PRAGMA encoding = 'UTF-8'");
        sql.exec("PRAGMA journal_mode = DELETE");
        SQLite::Transaction transaction{sql};
        for (const TableSchema& table : template_tables()) sql.exec(create_statement(table));
        SQLite::Statement row{sql, "INSERT INTO BasinDescription (BasinName, Units) VALUES (?, -1)"};
        row.bind(1, k_unnamed_basin);
        row.exec();
        sql.exec(fmt::format("PRAGMA application_id = {}", k_application_id));
        sql.exec(fmt::format("PRAGMA user_version = {}", k_schema_version));
        transaction.commit();
    });
    BasinDatabase{path, Access::ReadWrite}.create_daily_index(k_physical_data);
}

StoreFault fault_of(int code) {
    switch (code & 0xFF) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED: return StoreFault::Busy;
        case SQLITE_READONLY:
        case SQLITE_PERM:
        case SQLITE_AUTH:
        case SQLITE_CANTOPEN: return StoreFault::ReadOnly;
        case SQLITE_FULL: return StoreFault::Full;
        case SQLITE_CORRUPT: return StoreFault::Damaged;
        case SQLITE_NOTADB: return StoreFault::NotADatabase;
        case SQLITE_TOOBIG:
        case SQLITE_MISMATCH: return StoreFault::Value;
        default: return StoreFault::Statement;
    }
}

}  // namespace

void open_defensively(SQLite::Database& sql) {
    sqlite3* handle = sql.getHandle();
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    // The name of a field that a file does not have would otherwise be read as a text value.
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    sqlite3_limit(handle, SQLITE_LIMIT_ATTACHED, 0);
    sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, 1 << 24);
    sqlite3_limit(handle, SQLITE_LIMIT_SQL_LENGTH, 1 << 20);
    sqlite3_limit(handle, SQLITE_LIMIT_COLUMN, 255);
    const int deterministic = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    sqlite3_create_function(handle, "single", 1, deterministic, nullptr, sql_single, nullptr, nullptr);
    sqlite3_create_function(handle, "month", 1, deterministic, nullptr, sql_month, nullptr, nullptr);
}

StoreError store_error(const SQLite::Exception& exception) {
    const StoreFault fault = fault_of(exception.getErrorCode());
    std::string text = exception.what();
    if (fault == StoreFault::Busy) text = "The basin file is in use by another program (" + text + ").";
    if (fault == StoreFault::ReadOnly)
        text = "The basin file or its folder cannot be written (" + text + ").";
    if (fault == StoreFault::Full) text = "There is no disk space left for the basin file (" + text + ").";
    if (fault == StoreFault::Damaged) text = "The basin file is damaged (" + text + ").";
    return {fault, text};
}

bool is_basin_file(const fs::path& file) {
    try {
        check_identity(file);
        return true;
    } catch (const StoreError& error) {
        return error.fault() == StoreFault::Newer || error.fault() == StoreFault::Damaged;
    }
}

BasinDatabase::BasinDatabase(const fs::path& path, Access access, std::chrono::milliseconds wait)
    : path_(path), sql_(opened(path, access, wait)) {}

void BasinDatabase::lock_exclusively() {
    guarded([&] {
        sql_.execAndGet("PRAGMA locking_mode = EXCLUSIVE");
        sql_.exec("BEGIN EXCLUSIVE");
        sql_.exec("COMMIT");
    });
}

bool BasinDatabase::has_moved() {
    int moved = 0;
    const int answer = sqlite3_file_control(sql_.getHandle(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    return answer == SQLITE_OK && moved != 0;  // not moved if the file system has no such test
}

void BasinDatabase::create_template(const fs::path& path) {
    std::error_code unknown;  // a name that can't even be looked up is refused when the file is made
    if (fs::exists(fs::symlink_status(path, unknown))) {
        refuse(StoreFault::Exists, path, "already exists and was not changed. Choose another name.");
    }
    const PartFile beside{path};
    write_template(beside.path());
    move_basin_to_new_name(beside.path(), path);
}

std::optional<std::string> BasinDatabase::stored_name(std::string_view table) {
    const std::string wanted = folded_name(table);
    for (std::string& name : table_names()) {
        if (folded_name(name) == wanted) return std::move(name);
    }
    return std::nullopt;
}

bool BasinDatabase::has_table(std::string_view table) { return stored_name(table).has_value(); }

std::string BasinDatabase::existing_table(std::string_view table) {
    auto name = stored_name(table);
    if (!name) throw StoreError(StoreFault::Missing, fmt::format("The basin file has no table '{}'.", table));
    return *std::move(name);
}

std::vector<std::string> BasinDatabase::table_names() {
    return guarded([&] {
        SQLite::Statement query{
            sql_,
            "SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' "
            "ESCAPE '\\' ORDER BY rowid"};
        std::vector<std::string> names;
        while (query.executeStep()) names.push_back(query.getColumn(0).getString());
        return names;
    });
}

std::vector<Field> BasinDatabase::table_fields(std::string_view table) {
    return guarded([&] {
        SQLite::Statement query{sql_, "SELECT name, type FROM pragma_table_info(?) ORDER BY cid"};
        query.bind(1, existing_table(table));
        std::vector<Field> fields;
        while (query.executeStep()) {
            const std::string type = query.getColumn(1).getString();
            fields.push_back({query.getColumn(0).getString(), type_of(type), width_of(type)});
        }
        if (fields.empty()) {
            throw StoreError(StoreFault::Damaged,
                             fmt::format("The table '{}' of the basin file has no field.", table));
        }
        return fields;
    });
}

void BasinDatabase::create_table(const TableSchema& table) {
    if (has_table(table.name)) {
        throw StoreError(StoreFault::Exists,
                         fmt::format("The basin file already has a table '{}'.", table.name));
    }
    execute(create_statement(table));
}

void BasinDatabase::drop_table(std::string_view table) {
    execute("DROP TABLE " + quoted_name(existing_table(table)));
}

void BasinDatabase::rename_table(std::string_view table, std::string_view name) {
    execute("ALTER TABLE " + quoted_name(table) + " RENAME TO " + quoted_name(name));
}

void BasinDatabase::create_daily_index(std::string_view table) {
    const std::string name = existing_table(table);
    // The point keeps the index name distinct from every name that a user may give to a table.
    execute(fmt::format("CREATE INDEX {} ON {} (\"Zone\", \"Date\")", quoted_name(name + ".key"),
                        quoted_name(name)));
}

void BasinDatabase::write_without_flushing() { execute("PRAGMA synchronous = OFF"); }

void BasinDatabase::execute(const std::string& statement) {
    guarded([&] { sql_.exec(statement); });
}

}  // namespace nivora
