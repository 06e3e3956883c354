// One open basin file.
#pragma once

#include "store/schema.h"
#include "store/store_error.h"

#include <SQLiteCpp/Database.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// Marks of a basin file in the header of the database.
inline constexpr std::int32_t k_application_id = 0x4E565242;  // "NVRB"
inline constexpr std::int32_t k_schema_version = 1;

enum class Access { ReadOnly, ReadWrite };

/// How long a program waits for another one that writes into the basin.
inline constexpr std::chrono::milliseconds k_busy_wait{2000};

/// An open basin file. Table names are compared without regard to case, in every script.
///
/// Every call throws StoreError if the store refuses it. SQL text may use two functions besides the engine's
/// own: `single(x)`, x rounded to 32 bits (an error beyond the largest Single), and `month(date)`, 1 to 12.
class BasinDatabase {
public:
    /// Opens a basin file. A file that is missing, foreign, newer or not a database is refused before the
    /// database engine sees it, so that not a byte of it changes.
    BasinDatabase(const std::filesystem::path& path, Access access,
                  std::chrono::milliseconds wait = k_busy_wait);

    /// Keeps every other program out of the file until the basin is closed, so that all reads and writes in
    /// between form one unit. Rolls back the change of a killed program. Only for ReadWrite; meanwhile no
    /// other BasinDatabase can open the file, and nothing else of this process may open and close it, since
    /// the system drops the locks of a file with the first of its handles.
    ///
    /// @throws StoreError, Busy if another program did not release the file in time
    void lock_exclusively();

    /// Whether the file's name now belongs to another file, such as one that was saved over it.
    [[nodiscard]] bool has_moved();

    /// Writes the blank template: the five tables of a new basin, with one basin row that has the placeholder
    /// name and units not yet fixed (-1). Refuses a name that is taken.
    static void create_template(const std::filesystem::path& path);

    [[nodiscard]] SQLite::Database& sql() { return sql_; }
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    /// The name under which a table is stored; nothing if there is none.
    [[nodiscard]] std::optional<std::string> stored_name(std::string_view table);
    [[nodiscard]] bool has_table(std::string_view table);
    /// The name under which a table is stored. @throws StoreError if there is none
    [[nodiscard]] std::string existing_table(std::string_view table);
    /// The names of all tables, in the order of their creation.
    [[nodiscard]] std::vector<std::string> table_names();
    /// The fields of a table, by position.
    [[nodiscard]] std::vector<Field> table_fields(std::string_view table);

    void create_table(const TableSchema& table);
    void drop_table(std::string_view table);
    /// Gives a table another name; its indexes keep theirs.
    void rename_table(std::string_view table, std::string_view name);
    /// Creates the index of a daily table, so that a year of a long record is read as fast as a short record.
    void create_daily_index(std::string_view table);
    void execute(const std::string& statement);
    /// From now on the system decides when writes reach the disk: for a copy that is not needed after a
    /// crash, or that is flushed when it is complete.
    void write_without_flushing();

private:
    std::filesystem::path path_;
    SQLite::Database sql_;
};

/// Whether a file has the marks of a basin, of this version or a later one. Only for a file that this process
/// does not have open.
[[nodiscard]] bool is_basin_file(const std::filesystem::path& file);

/// Runs a piece of work and turns what the database engine throws into a StoreError.
template <typename Work>
auto guarded(Work&& work);

/// A file may come from anywhere: nothing in its schema may run, no other file is reached through it, and
/// nothing may grow without bounds. Adds the two functions of SQL text.
void open_defensively(SQLite::Database& sql);

/// The StoreError for an exception of the database engine.
[[nodiscard]] StoreError store_error(const SQLite::Exception& exception);

template <typename Work>
auto guarded(Work&& work) {
    try {
        return work();
    } catch (const SQLite::Exception& exception) {
        throw store_error(exception);
    }
}

}  // namespace nivora
