// Copies of whole basin files: of a user's file into the working file, and of the working file over a user's
// file.
#pragma once

#include "store/store_error.h"

#include <filesystem>

namespace nivora {

/// A basin that is made beside its name: removed at the end, with its journal, unless it was given the name.
/// What killed programs left beside the target is removed.
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

/// Gives a finished basin a name that no file has yet. A journal that was left under that name by a basin
/// which is gone is removed.
/// @throws FileError, with the finished file removed
void give_new_name(const std::filesystem::path& finished, const std::filesystem::path& target);

/// Brings a user's basin file into the working file.
///
/// Goes through the database engine, so that a journal which another program left beside the file counts. The
/// user's file is opened for reading alone and every page of it is checked first; the working file is
/// replaced in one step, so that a refused file leaves it as it was. Leftovers of killed copies beside either
/// file are removed.
///
/// @return whether the results were left out, because they are damaged and nothing else is
/// @throws StoreError with what is wrong with the user's file, FileError where the working file can't be
/// written
bool copy_into_work_file(const std::filesystem::path& user_file, const std::filesystem::path& work_file);

/// Brings the working file over a user's file, which is afterwards whole: as it was, or new.
///
/// The copy is written beside the user's file, flushed, checked for its size and renamed; the folder is
/// flushed. The mode of a file that is replaced is kept, and a link stays a link. Leftovers of copies that
/// were killed are removed. No other program can write into a basin while it is replaced.
///
/// @throws FileError, with the user's file unchanged: another program is writing into it, the file may not be
/// written, the disk is full ...
void copy_over_user_file(const std::filesystem::path& work_file, const std::filesystem::path& user_file);

/// Brings the blank template over the working file. @throws FileError, StoreError
void copy_template(const std::filesystem::path& template_file, const std::filesystem::path& work_file);

/// Removes what killed copies left beside a file.
void clear_leftovers(const std::filesystem::path& target);

}  // namespace nivora
