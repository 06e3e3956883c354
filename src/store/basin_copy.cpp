#include "store/basin_copy.h"

#include "base/durable_file.h"
#include "base/output_file.h"
#include "store/basin_check.h"
#include "store/basin_salvage.h"
#include "store/database.h"
#include "store/monthly_table.h"

#include <SQLiteCpp/Backup.h>
#include <fmt/format.h>

#include <memory>

namespace nivora {
namespace {

namespace fs = std::filesystem;

fs::path journal_of(const fs::path& database) {
    fs::path journal = database;
    journal += "-journal";
    return journal;
}

void remove_quietly(const fs::path& path) {
    std::error_code ignored;  // the caller has to see the original error
    fs::remove(path, ignored);
}

[[noreturn]] void refuse_target(const fs::path& target, const char* reason) {
    throw FileError(fmt::format("The file '{}' can't be written: {}.", path_text(target), reason));
}

[[noreturn]] void refuse_busy(const fs::path& file, const char* advice) {
    throw FileError(
        fmt::format("The file '{}' is in use by another program. Wait until that program has "
                    "finished and {}.",
                    path_text(file), advice));
}

/// What to do about a working file that another program holds.
constexpr const char* k_try_again = "try again";

/// Rolls back an interrupted change of a file that is about to be read without the database engine.
void roll_back_journal(const fs::path& file) {
    const fs::path journal = journal_of(file);
    if (!fs::exists(journal)) return;
    try {
        BasinDatabase database{file, Access::ReadWrite};
        static_cast<void>(database.table_names());
    } catch (const StoreError& error) {
        if (error.fault() == StoreFault::Busy) refuse_busy(file, k_try_again);
        // The file is not a basin, so the journal is not ours.
    }
    remove_quietly(journal);
}

/// Keeps every other program from writing into a basin that is about to be replaced; readers continue with
/// the old file. Rolls back the change of a killed program: its journal would otherwise be played back into
/// the next file of that name.
///
/// @return null for a file that is not a basin, or a damaged one, which no program can use
std::unique_ptr<BasinDatabase> keep_writers_out(const fs::path& target, std::chrono::milliseconds wait,
                                                const char* advice) {
    constexpr int k_attempts = 5;
    if (!fs::exists(target)) return nullptr;
    try {
        for (int attempt = 0; attempt < k_attempts; ++attempt) {
            auto held = std::make_unique<BasinDatabase>(target, Access::ReadWrite, wait);
            held->execute("BEGIN IMMEDIATE");
            // While this program waited, the other one may have put a new file in the place of this one.
            if (!held->has_moved()) return held;
        }
    } catch (const StoreError& error) {
        if (error.fault() != StoreFault::Busy) return nullptr;
    }
    refuse_busy(target, advice);
}

/// Renames a finished part to a file that other programs are kept out of.
void replace_target(const fs::path& part, const fs::path& target, std::unique_ptr<BasinDatabase> held) {
    remove_quietly(journal_of(target));
#ifdef _WIN32
    held.reset();  // the system does not replace an open file
#endif
    move_into_place(part, target);
    held.reset();  // now others may write; they detect that the file was replaced
}

/// Copies a checked source: an error here is a write error, unless another program is using the source.
void copy_checked(BasinDatabase& source, bool without_results, const fs::path& part,
                  const fs::path& work_file) {
    try {
        if (without_results) return copy_without_results(source, part);
        guarded([&] {
            SQLite::Database copy{path_text(part), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE};
            // Nobody reads a part, and nothing takes a change of it back: it is flushed when it is complete,
            // and else removed.
            copy.exec("PRAGMA synchronous = OFF");
            copy.exec("PRAGMA journal_mode = OFF");
            SQLite::Backup backup{copy, source.sql()};
            backup.executeStep(-1);
        });
    } catch (const StoreError& error) {
        switch (error.fault()) {
            case StoreFault::Full:
            case StoreFault::Statement: refuse_target(work_file, "the disk may be full");
            case StoreFault::ReadOnly: refuse_target(work_file, "its folder can't be written to");
            default: throw;
        }
    }
}

/// How much of a user's file was copied.
enum class Copied {
    Whole,
    WithoutResults,  ///< which are damaged
    Nothing          ///< an interrupted change has to be rolled back first
};

/// Copies the user's file through the database engine, in one consistent state.
Copied back_up(const fs::path& user_file, const fs::path& part, const fs::path& work_file) {
    BasinDatabase source{user_file, Access::ReadOnly};
    const bool interrupted = fs::exists(journal_of(user_file));
    try {
        source.execute("BEGIN");
        const bool damaged_results = has_only_damaged_results(source, user_file);
        copy_checked(source, damaged_results, part, work_file);
        return damaged_results ? Copied::WithoutResults : Copied::Whole;
    } catch (const StoreError& error) {
        // The journal of a program that is still writing belongs to it.
        if (!interrupted || error.fault() == StoreFault::Busy) throw;
        return Copied::Nothing;
    }
}

/// Copies a file together with the journal of its interrupted change, and rolls back the change in the copy.
Copied copy_interrupted(const fs::path& user_file, const fs::path& part, const fs::path& work_file) {
    remove_quietly(part);
    copy_file_checked(user_file, part, work_file);
    copy_file_checked(journal_of(user_file), journal_of(part), work_file);
    BasinDatabase copy{part, Access::ReadWrite};
    if (!has_only_damaged_results(copy, user_file)) return Copied::Whole;
    replace_without_results(copy);
    return Copied::WithoutResults;
}

/// Runs a file operation; a path that can't be reached, for example because its name is too long or its
/// folder is not accessible, becomes a FileError with the reason.
template <typename Work>
void reaching_files(Work&& work) {
    try {
        work();
    } catch (const fs::filesystem_error& error) {
        throw FileError(fmt::format("The file '{}' can't be reached: {}.", path_text(error.path1()),
                                    error.code().message()));
    }
}

/// Gives a part the mode of the file that it replaces.
void keep_mode(const fs::path& target, const fs::path& part) {
    if (!fs::exists(target)) return;
    std::error_code error;
    fs::permissions(part, fs::status(target).permissions(), error);
    if (error) {
        throw FileError(fmt::format("The permissions of the file '{}' can't be kept: {}.", path_text(target),
                                    error.message()));
    }
}

/// The target of a link, so that the link stays.
fs::path real_file(const fs::path& file) {
    return fs::is_symlink(fs::symlink_status(file)) ? fs::weakly_canonical(file) : file;
}

/// Copies a user's file into the working file, and completes the copy before it is flushed.
template <typename Complete>
bool copy_through_part(const fs::path& user_file, const fs::path& work_file, Complete&& complete) {
    Copied copied = Copied::Nothing;
    reaching_files([&] {
        remove_leftovers(work_file);
        // A save that was killed may have left its part beside the user's file, as large as the file itself.
        remove_leftovers(real_file(user_file));
        const PartFile part{work_file};
        copied = back_up(user_file, part.path(), work_file);
        if (copied == Copied::Nothing) copied = copy_interrupted(user_file, part.path(), work_file);
        complete(part.path());
        replace_target(part.path(), work_file, keep_writers_out(work_file, k_busy_wait, k_try_again));
    });
    return copied == Copied::WithoutResults;
}

/// Makes the table that a template lacks and that its opening would make with flushes of its own.
void add_monthly_table(const fs::path& part) {
    try {
        BasinDatabase database{part, Access::ReadWrite};
        database.write_without_flushing();
        database.execute("PRAGMA journal_mode = MEMORY");
        Ensure_Monthly_Table(database);
    } catch (const StoreError&) {
        // The part is as it was. Its opening tries again, and tells what is wrong.
    }
}

}  // namespace

PartFile::PartFile(const fs::path& target) : path_(name_beside(target)) { remove_leftovers(target); }

PartFile::~PartFile() {
    remove_quietly(journal_of(path_));
    remove_quietly(path_);
}

void move_basin_to_new_name(const fs::path& finished, const fs::path& target) {
    // A journal without its basin would be played back into the new basin.
    std::error_code unknown;  // a name that can't even be looked up is refused by the move
    if (!fs::exists(fs::symlink_status(target, unknown))) remove_quietly(journal_of(target));
    move_to_new_name(finished, target);
}

bool copy_into_work_file(const fs::path& user_file, const fs::path& work_file) {
    return copy_through_part(user_file, work_file, [](const fs::path&) {});
}

FileContent copy_over_user_file(const fs::path& work_file, const fs::path& user_file) {
    FileContent written;
    reaching_files([&] {
        const fs::path target = real_file(user_file);
        remove_leftovers(target);
        refuse_unwritable(target);
        roll_back_journal(work_file);
        // No wait: a change that another program completes meanwhile would be overwritten unseen.
        auto held =
            keep_writers_out(target, std::chrono::milliseconds{0}, "save again, or save under another name");
        const PartFile part{target};
        written = copy_file_checked(work_file, part.path(), target);
        keep_mode(target, part.path());
        replace_target(part.path(), target, std::move(held));
    });
    return written;
}

void copy_template(const fs::path& template_file, const fs::path& work_file) {
    copy_through_part(template_file, work_file, add_monthly_table);
}

void clear_leftovers(const fs::path& target) {
    reaching_files([&] { remove_leftovers(real_file(target)); });
}

}  // namespace nivora
