// Files that are written whole or not at all.
#pragma once

#include "base/file_content.h"

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// An error of the file system, in words for the user.
class FileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A path as UTF-8 text for a message.
[[nodiscard]] std::string path_text(const std::filesystem::path& path);
/// The path that a UTF-8 text names.
[[nodiscard]] std::filesystem::path path_from_utf8(std::string_view text);

/// A unique name beside a target, for a file that will replace it.
[[nodiscard]] std::filesystem::path name_beside(const std::filesystem::path& target);

/// Flushes a finished file and renames it to the target in one step: the target is always complete,
/// old or new.
/// @throws FileError, with the finished file removed
void move_into_place(const std::filesystem::path& finished, const std::filesystem::path& target);

/// The same for a target that must not exist yet: fails if another program has created it meanwhile.
/// @throws FileError, with the finished file removed
void move_to_new_name(const std::filesystem::path& finished, const std::filesystem::path& target);

/// Writes a complete file: first beside its target, then in its place. A link stays a link, and the mode of a
/// replaced file is kept. A target that is not a regular file or is marked read-only is refused.
///
/// @param never files that must not be replaced, whatever name or link leads to them
/// @throws FileError
void write_whole_file(const std::filesystem::path& target, std::string_view content,
                      const std::vector<std::filesystem::path>& never = {});

/// Copies a file block by block to a new place, and checks every written length and the size. The copy is not
/// flushed: its move to the place of the user's file does that.
///
/// @param reported the file that an error names if the copy can't be written: the one that the
///                 copy will replace
/// @return the content that was written
/// @throws FileError, with the copy removed
FileContent copy_file_checked(const std::filesystem::path& source, const std::filesystem::path& copy,
                              const std::filesystem::path& reported);

/// Removes files that killed writers left beside a target under names made by name_beside. Files that a
/// running program is writing are kept.
void remove_leftovers(const std::filesystem::path& target);

/// Reads a regular file of at most `limit` bytes.
/// @throws FileError if it does not exist, is not a regular file, is larger, or can't be read
[[nodiscard]] std::string read_whole_file(const std::filesystem::path& path, std::uintmax_t limit);

}  // namespace nivora
