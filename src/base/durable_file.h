// Files that are written whole or not at all.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// What the file system refused, in words for the user.
class FileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Brings a file's content, or a folder's entries, to the disk.
/// @throws FileError
void flush_to_disk(const std::filesystem::path& path);

/// A path as UTF-8 text for a message.
[[nodiscard]] std::string path_text(const std::filesystem::path& path);
/// The path that a UTF-8 text names.
[[nodiscard]] std::filesystem::path path_from_utf8(std::string_view text);

/// A name of its own beside a target, for a file that will take the target's place.
[[nodiscard]] std::filesystem::path name_beside(const std::filesystem::path& target);

/// Gives a finished file its name, flushed, in one step: afterwards the target is whole, as it was or new.
/// @throws FileError, with the finished file removed
void move_into_place(const std::filesystem::path& finished, const std::filesystem::path& target);

/// The same for a target that must not exist yet: fails where another program made it in the meantime.
/// @throws FileError, with the finished file removed
void move_to_new_name(const std::filesystem::path& finished, const std::filesystem::path& target);

/// Writes a file whole: beside its target first, then in its place. A link stays a link, and a file that is
/// replaced leaves its mode; what is no ordinary file or marked read-only is refused.
///
/// @param never files that must not be replaced, by whatever name or link the target leads to them
/// @throws FileError
void write_whole_file(const std::filesystem::path& target, std::string_view content,
                      const std::vector<std::filesystem::path>& never = {});

/// Copies a file block by block to a new place, checks every written length and the size, and flushes it.
///
/// @param told the file that a message names where the copy can't be written: the one whose place the copy
///             will take
/// @throws FileError, with the copy removed
void copy_file_checked(const std::filesystem::path& source, const std::filesystem::path& copy,
                       const std::filesystem::path& told);

/// Removes what writers that were killed left beside a file under the names of name_beside. What a program
/// that still runs is writing stays.
void remove_leftovers(const std::filesystem::path& target);

/// Reads a regular file of at most `limit` bytes.
/// @throws FileError where there is none, it is no file, it is larger, or it can't be read
[[nodiscard]] std::string read_whole_file(const std::filesystem::path& path, std::uintmax_t limit);

}  // namespace nivora
