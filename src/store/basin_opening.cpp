#include "store/basin_opening.h"

#include "base/durable_file.h"
#include "base/output_file.h"
#include "store/basin_copy.h"
#include "store/basin_salvage.h"

#include <SQLiteCpp/Backup.h>
#include <fmt/format.h>
#include <sqlite3.h>

#include <random>

namespace nivora {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;

constexpr int k_attempts = 5;

fs::path journal_of(const fs::path& database) {
    fs::path journal = database;
    journal += "-journal";
    return journal;
}

/// An error with the leftovers beside a basin does not prevent its opening.
void clear_leftovers_quietly(const fs::path& file) {
    try {
        clear_leftovers(file);
    } catch (const FileError&) {
        // A folder that can't be listed is reported when the basin itself is opened.
    }
}

/// Runs the opening of a file; an error of the file system becomes a StoreError.
template <typename Work>
auto as_store_error(Work&& work) {
    try {
        return work();
    } catch (const FileError& error) {
        throw StoreError(StoreFault::ReadOnly, error.what());
    } catch (const fs::filesystem_error& error) {
        throw StoreError(StoreFault::ReadOnly, fmt::format("The file '{}' can't be reached: {}.",
                                                           path_text(error.path1()), error.code().message()));
    }
}

[[noreturn]] void refuse_busy(const fs::path& file, milliseconds wait) { throw busy_basin(file, wait); }

/// Begins to read; false if the change of a killed program has to be rolled back first.
bool begin_reading(BasinDatabase& database) {
    try {
        database.sql().exec("BEGIN");
        database.sql().execAndGet("SELECT count(*) FROM sqlite_schema");
        return true;
    } catch (const SQLite::Exception& error) {
        if (error.getExtendedErrorCode() == SQLITE_READONLY_ROLLBACK) return false;
        // A journal that can't be opened may be one that has to be played back.
        if (error.getErrorCode() == SQLITE_CANTOPEN) return false;
        throw store_error(error);
    }
}

/// Plays the journal back in the file itself; false if that is not possible.
bool undo_in_place(const fs::path& file, milliseconds wait) {
    if (!may_be_written(file)) return false;
    try {
        BasinDatabase database{file, Access::ReadWrite, wait};
        static_cast<void>(database.table_names());
        return true;
    } catch (const StoreError& error) {
        if (error.fault() == StoreFault::ReadOnly) return false;
        throw;
    }
}

fs::path copy_to_read(const fs::path& file, const PrivateFolder& folder) {
    const fs::path copy = folder.path() / "basin.mdb";
    copy_with_journal(file, copy);
    BasinDatabase database{copy, Access::ReadWrite};
    static_cast<void>(database.table_names());
    return copy;
}

/// The state of a file that another program may be writing.
std::tuple<std::uintmax_t, fs::file_time_type> state_of(const fs::path& file) {
    std::error_code error;
    const auto size = fs::file_size(file, error);
    return {size, fs::last_write_time(file, error)};
}

void check(BasinDatabase& database, Check what) {
    if (what == Check::Nothing) return;
    refuse_damage(database.path(), what == Check::All ? structure_damage(database) : schema_damage(database));
}

std::unique_ptr<BasinDatabase> open_alone(const fs::path& file, milliseconds wait) {
    clear_leftovers_quietly(file);
    for (int attempt = 0; attempt < k_attempts; ++attempt) {
        auto database = std::make_unique<BasinDatabase>(file, Access::ReadWrite, wait);
        database->lock_exclusively();
        // While this program waited, the other one may have put a new file in the place of this one.
        if (!database->has_moved()) return database;
    }
    refuse_busy(file, wait);
}

/// Refuses the file at the start, before the database engine does so in the middle of the work.
void refuse_unwritable_basin(const fs::path& file) {
    std::error_code unknown;  // a missing file or a folder is refused when it is opened
    if (!fs::is_regular_file(file, unknown) || may_be_written(file)) return;
    throw StoreError(
        StoreFault::ReadOnly,
        fmt::format("The basin file '{}' cannot be written: it is marked read-only, or you have no "
                    "permission to write to it.",
                    path_text(file)));
}

template <typename Open>
auto waiting(const fs::path& file, milliseconds wait, Open&& open) {
    try {
        return as_store_error(open);
    } catch (const StoreError& error) {
        if (error.fault() == StoreFault::Busy) refuse_busy(file, wait);
        throw;
    }
}

}  // namespace

StoreError busy_basin(const fs::path& file, milliseconds waited) {
    return {StoreFault::Busy,
            fmt::format("The file '{}' is in use by another program, which did not finish within {} "
                        "seconds. Nothing was changed. Try again when it has finished.",
                        path_text(file), std::chrono::duration_cast<std::chrono::seconds>(waited).count())};
}

PrivateFolder::PrivateFolder() {
    std::random_device random;
    for (int attempt = 0; attempt < k_attempts; ++attempt) {
        path_ = fs::temp_directory_path() / fmt::format("nivora-{:08x}{:08x}", random(), random());
        std::error_code error;
        if (!fs::create_directory(path_, error)) continue;
        fs::permissions(path_, fs::perms::owner_all, error);
        if (!error) return;
        fs::remove(path_, error);
    }
    throw FileError(fmt::format("A folder for a temporary copy can't be created in '{}'.",
                                path_text(fs::temp_directory_path())));
}

PrivateFolder::~PrivateFolder() {
    std::error_code ignored;  // a leftover folder does no harm
    fs::remove_all(path_, ignored);
}

void copy_with_journal(const fs::path& file, const fs::path& copy) {
    const fs::path real = fs::canonical(file);
    const fs::path journal = journal_of(real);
    for (int attempt = 0; attempt < k_attempts; ++attempt) {
        const auto before = std::tuple_cat(state_of(real), state_of(journal));
        std::error_code error;
        fs::remove(copy, error);
        fs::remove(journal_of(copy), error);
        copy_file_checked(real, copy, copy);
        if (fs::exists(journal, error)) copy_file_checked(journal, journal_of(copy), copy);
        if (std::tuple_cat(state_of(real), state_of(journal)) == before) return;
    }
    throw StoreError(StoreFault::Busy,
                     fmt::format("The file '{}' is in use by another program.", path_text(file)));
}

void copy_open_basin(BasinDatabase& source, const fs::path& copy) {
    guarded([&] {
        SQLite::Database target{path_text(copy), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE};
        target.exec("PRAGMA synchronous = OFF");
        SQLite::Backup backup{target, source.sql()};
        backup.executeStep(-1);
    });
}

OpenBasin open_to_read(const fs::path& file, milliseconds wait, Check what) {
    return waiting(file, wait, [&] {
        OpenBasin basin;
        basin.database_ = std::make_unique<BasinDatabase>(file, Access::ReadOnly, wait);
        clear_leftovers_quietly(file);
        if (!begin_reading(*basin.database_)) {
            basin.database_.reset();
            fs::path sound = file;
            if (!undo_in_place(file, wait)) {
                basin.folder_ = std::make_unique<PrivateFolder>();
                sound = copy_to_read(file, *basin.folder_);
            }
            basin.database_ = std::make_unique<BasinDatabase>(sound, Access::ReadOnly, wait);
            if (!begin_reading(*basin.database_)) refuse_busy(file, wait);
        }
        check(*basin.database_, what);
        return basin;
    });
}

OpenBasin open_to_write(const fs::path& file, milliseconds wait) {
    return waiting(file, wait, [&] {
        refuse_unwritable_basin(file);
        OpenBasin basin;
        basin.database_ = open_alone(file, wait);
        check(*basin.database_, Check::All);
        return basin;
    });
}

OpenBasin open_to_run(const fs::path& file, milliseconds wait) {
    return waiting(file, wait, [&] {
        refuse_unwritable_basin(file);
        OpenBasin basin;
        basin.database_ = open_alone(file, wait);
        basin.damaged_results_ = has_only_damaged_results(*basin.database_, file);
        return basin;
    });
}

void drop_damaged_results(OpenBasin& basin, milliseconds wait) {
    if (!basin.damaged_results_) return;
    const fs::path file = basin.database_->path();
    waiting(file, wait, [&] {
        replace_without_results(*basin.database_);
        basin.database_.reset();
        basin.database_ = open_alone(file, wait);
        check(*basin.database_, Check::All);
        basin.damaged_results_ = false;
    });
}

}  // namespace nivora
