#include "store/basin_copy.h"

#include "base/durable_file.h"
#include "base/output_file.h"
#include "store/database.h"

#include <SQLiteCpp/Backup.h>
#include <fmt/format.h>

namespace nivora {
namespace {

namespace fs = std::filesystem;

fs::path journal_of(const fs::path& database) {
    fs::path journal = database;
    journal += "-journal";
    return journal;
}

void remove_quietly(const fs::path& path) {
    std::error_code ignored;  // the fault that led here is what the caller has to hear of
    fs::remove(path, ignored);
}

void check_structure(BasinDatabase& database) {
    const std::string verdict =
        guarded([&] { return database.sql().execAndGet("PRAGMA quick_check(1)").getString(); });
    if (verdict == "ok") return;
    throw StoreError(StoreFault::Damaged,
                     fmt::format("The file '{}' is damaged: {}.", path_text(database.path()), verdict));
}

/// A journal that belongs to an interrupted change would be played back into whatever bears the file's name
/// next: the change is undone now, while the file is still the one it belongs to.
void settle_journal(const fs::path& target) {
    const fs::path journal = journal_of(target);
    if (!fs::exists(journal)) return;
    try {
        BasinDatabase database{target, Access::ReadWrite};
        static_cast<void>(database.table_names());
    } catch (const StoreError&) {
        // The file is no basin, so that the journal holds nothing of ours.
    }
    remove_quietly(journal);
}

[[noreturn]] void refuse_target(const fs::path& target, const char* reason) {
    throw FileError(fmt::format("The file '{}' can't be written: {}.", path_text(target), reason));
}

/// Copies a source whose structure was checked: what fails now, unless somebody works in the source, is the
/// writing.
void copy_pages(BasinDatabase& source, const fs::path& part, const fs::path& work_file) {
    try {
        guarded([&] {
            SQLite::Database copy{path_text(part), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE};
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

/// Reads the user's file through the database engine; false where an interrupted change would have to be
/// undone in it.
bool back_up(const fs::path& user_file, const fs::path& part, const fs::path& work_file) {
    BasinDatabase source{user_file, Access::ReadOnly};
    const bool interrupted = fs::exists(journal_of(user_file));
    try {
        check_structure(source);
        copy_pages(source, part, work_file);
    } catch (const StoreError&) {
        if (!interrupted) throw;
        return false;
    }
    return true;
}

/// Copies a file together with the journal of its interrupted change, and undoes the change in the copy.
void copy_interrupted(const fs::path& user_file, const fs::path& part, const fs::path& work_file) {
    remove_quietly(part);
    copy_file_checked(user_file, part, work_file);
    copy_file_checked(journal_of(user_file), journal_of(part), work_file);
    BasinDatabase copy{part, Access::ReadWrite};
    check_structure(copy);
}

/// Runs a piece of file work; a path that can't be reached, such as one whose name is too long or whose
/// folder is closed, ends in a reason for the user.
template <typename Work>
void reaching_files(Work&& work) {
    try {
        work();
    } catch (const fs::filesystem_error& error) {
        throw FileError(fmt::format("The file '{}' can't be reached: {}.", path_text(error.path1()),
                                    error.code().message()));
    }
}

/// Gives a part the mode of the file whose place it takes.
void keep_mode(const fs::path& target, const fs::path& part) {
    if (!fs::exists(target)) return;
    std::error_code error;
    fs::permissions(part, fs::status(target).permissions(), error);
    if (error) {
        throw FileError(fmt::format("The permissions of the file '{}' can't be kept: {}.", path_text(target),
                                    error.message()));
    }
}

/// Where a link leads to, so that the link stays.
fs::path real_file(const fs::path& file) {
    return fs::is_symlink(fs::symlink_status(file)) ? fs::weakly_canonical(file) : file;
}

}  // namespace

PartFile::PartFile(const fs::path& target) : path_(name_beside(target)) { remove_leftovers(target); }

PartFile::~PartFile() {
    remove_quietly(journal_of(path_));
    remove_quietly(path_);
}

void give_new_name(const fs::path& finished, const fs::path& target) {
    // Without its basin a journal belongs to nothing, and would be played back into the new one.
    std::error_code unknown;  // a name that can't even be looked up is refused by the move
    if (!fs::exists(fs::symlink_status(target, unknown))) remove_quietly(journal_of(target));
    move_to_new_name(finished, target);
}

void copy_into_work_file(const fs::path& user_file, const fs::path& work_file) {
    reaching_files([&] {
        remove_leftovers(work_file);
        // A save that was killed may have left its part beside the user's file, as large as the file itself.
        remove_leftovers(real_file(user_file));
        const PartFile part{work_file};
        if (!back_up(user_file, part.path(), work_file)) copy_interrupted(user_file, part.path(), work_file);
        settle_journal(work_file);
        move_into_place(part.path(), work_file);
    });
}

void copy_over_user_file(const fs::path& work_file, const fs::path& user_file) {
    reaching_files([&] {
        const fs::path target = real_file(user_file);
        remove_leftovers(target);
        refuse_unwritable(target);
        settle_journal(work_file);
        const PartFile part{target};
        copy_file_checked(work_file, part.path(), target);
        keep_mode(target, part.path());
        settle_journal(target);
        move_into_place(part.path(), target);
    });
}

void copy_template(const fs::path& template_file, const fs::path& work_file) {
    copy_into_work_file(template_file, work_file);
}

void clear_leftovers(const fs::path& target) {
    reaching_files([&] { remove_leftovers(real_file(target)); });
}

}  // namespace nivora
