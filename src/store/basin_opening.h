// Basin files as commands open them that work in the user's own file: alone, checked, and with the change of
// a program that was killed undone.
#pragma once

#include "store/basin_check.h"
#include "store/database.h"

#include <chrono>
#include <filesystem>
#include <memory>

namespace nivora {

/// How much of a file is checked before it is used.
enum class Check {
    Nothing,
    Schema,  ///< what the file declares
    All      ///< every page
};

/// A folder that only this user can look into, gone with all that lies in it at the end.
class PrivateFolder {
public:
    /// @throws FileError where none can be made
    PrivateFolder();
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;
    ~PrivateFolder();

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

/// A basin that is open for a command, until the end of this object.
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

/// Opens a basin for reading, as it is at this moment: no other program changes it meanwhile.
///
/// The change of a program that was killed is undone first: in the file where it may be written, otherwise in
/// a private copy.
///
/// @param wait for a program that is writing
/// @throws StoreError with what is wrong with the file
[[nodiscard]] OpenBasin open_to_read(const std::filesystem::path& file, std::chrono::milliseconds wait,
                                     Check check);

/// Opens a basin for this program alone, with every page checked. @throws StoreError
[[nodiscard]] OpenBasin open_to_write(const std::filesystem::path& file, std::chrono::milliseconds wait);

/// The same for a run, which makes the results table anew: one of which only that table is damaged is
/// accepted, and stays as it is until drop_damaged_results.
[[nodiscard]] OpenBasin open_to_run(const std::filesystem::path& file, std::chrono::milliseconds wait);

/// Replaces a basin with damaged results by one of its other tables, once nothing refuses the run any more.
/// Another program may have changed the file before it is open again, so that it has to be read anew.
/// @throws StoreError
void drop_damaged_results(OpenBasin& basin, std::chrono::milliseconds wait);

/// Copies a basin and the journal of its interrupted change to a new place.
/// @throws FileError; StoreError Busy where another program changed the file meanwhile
void copy_with_journal(const std::filesystem::path& file, const std::filesystem::path& copy);

}  // namespace nivora
