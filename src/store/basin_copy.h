// Copies of whole basin files: of a user's file into the working file, and of the working file over
// a user's file.
#pragma once

#include "base/file_content.h"
#include "store/store_error.h"

#include <filesystem>

namespace nivora {

/// A basin that is written beside its target; removed at the end, with its journal, unless it was renamed to
/// the target. Files that killed programs left beside the target are removed.
class PartFile {
public:
    explicit PartFile(const std::filesystem::path& target);
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;
    ~PartFile();

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

/// Renames a finished basin to a name that no file has yet. A journal that a deleted basin left under that
/// name is removed.
/// @throws FileError, with the finished file removed
void move_basin_to_new_name(const std::filesystem::path& finished, const std::filesystem::path& target);

/// Copies a user's basin file into the working file.
///
/// Reads through the database engine, so that a journal that another program left beside the file is
/// applied. The user's file is opened read-only and every page is checked first; the working file is
/// replaced in one step, so that a refused file leaves it unchanged. Leftovers of killed copies beside
/// either file are removed.
///
/// @return whether the results were left out, because they are damaged and nothing else is
/// @throws StoreError with what is wrong with the user's file, FileError if the working file can't be written
bool copy_into_work_file(const std::filesystem::path& user_file, const std::filesystem::path& work_file);

/// Replaces a user's file by the working file; the user's file is always complete, old or new.
///
/// The copy is written beside the user's file, checked for its size, flushed and renamed; the folder is
/// flushed. The mode of a file that is replaced is kept, and a link stays a link. Leftovers of copies that
/// were killed are removed. No other program can write into a basin while it is replaced.
///
/// @return what the user's file now holds
/// @throws FileError, with the user's file unchanged, for example if another program is writing into it, it
/// is not writable, or the disk is full
FileContent copy_over_user_file(const std::filesystem::path& work_file,
                                const std::filesystem::path& user_file);

/// Replaces the working file by the blank template, with the table of monthly averages, which the template
/// need not have. @throws FileError, StoreError
void copy_template(const std::filesystem::path& template_file, const std::filesystem::path& work_file);

/// Removes the files that killed copies left beside a file.
void clear_leftovers(const std::filesystem::path& target);

}  // namespace nivora
