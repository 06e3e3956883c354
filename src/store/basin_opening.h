// Opens basin files for commands that work in the user's own file: exclusively, checked, and with the change
// of a killed program rolled back.
#pragma once

#include "store/basin_check.h"
#include "store/database.h"
#include "store/store_error.h"

#include <chrono>
#include <filesystem>
#include <memory>

namespace nivora {

/// The refusal of a file that another program held all the time that the caller waited.
[[nodiscard]] StoreError busy_basin(const std::filesystem::path& file, std::chrono::milliseconds waited);

/// How much of a file is checked before it is used.
enum class Check {
    Nothing,
    Schema,  ///< what the file declares
    All      ///< every page
};

/// A temporary folder that only this user can read; removed with its content at the end.
class PrivateFolder {
public:
    /// @throws FileError if it can't be created
    PrivateFolder();
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;
    ~PrivateFolder();

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

/// A basin that is open for a command, for the life of this object.
class OpenBasin {
public:
    [[nodiscard]] BasinDatabase& database() const { return *database_; }
    /// Whether the results can't be read. Only for a basin that is open to run.
    [[nodiscard]] bool has_damaged_results() const { return damaged_results_; }

private:
    friend OpenBasin open_to_read(const std::filesystem::path&, std::chrono::milliseconds, Check);
    friend OpenBasin open_to_write(const std::filesystem::path&, std::chrono::milliseconds);
    friend OpenBasin open_to_run(const std::filesystem::path&, std::chrono::milliseconds);
    friend void drop_damaged_results(OpenBasin&, std::chrono::milliseconds);

    std::unique_ptr<PrivateFolder> folder_;  ///< of a copy; it outlives the database
    std::unique_ptr<BasinDatabase> database_;
    bool damaged_results_ = false;
};

/// Opens a basin for reading in its present state: no other program changes it meanwhile.
///
/// The change of a killed program is rolled back first: in the file if it is writable, otherwise in
/// a private copy.
///
/// @param wait how long to wait for a program that is writing
/// @throws StoreError with what is wrong with the file
[[nodiscard]] OpenBasin open_to_read(const std::filesystem::path& file, std::chrono::milliseconds wait,
                                     Check check);

/// Opens a basin exclusively, with every page checked. @throws StoreError
[[nodiscard]] OpenBasin open_to_write(const std::filesystem::path& file, std::chrono::milliseconds wait);

/// The same for a run, which rebuilds the results table: a basin in which only that table is damaged is
/// accepted, and is not changed until drop_damaged_results.
[[nodiscard]] OpenBasin open_to_run(const std::filesystem::path& file, std::chrono::milliseconds wait);

/// Replaces a basin with damaged results by a copy of its other tables; for a run that has passed all its
/// checks. Another program may change the file before it is open again, so the caller has to read it again.
/// @throws StoreError
void drop_damaged_results(OpenBasin& basin, std::chrono::milliseconds wait);

/// Copies a basin that is open, in the state that this program reads, to a new place. A lasting copy is not
/// asked for: it is not flushed to the disk. @throws StoreError
void copy_open_basin(BasinDatabase& source, const std::filesystem::path& copy);

/// Copies a basin and the journal of its interrupted change to a new place.
/// @throws FileError; StoreError Busy if another program changed the file meanwhile
void copy_with_journal(const std::filesystem::path& file, const std::filesystem::path& copy);

}  // namespace nivora
