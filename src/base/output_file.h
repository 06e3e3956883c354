// A file that a command writes for its user: first beside its target, then in its place once it is complete.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <vector>

namespace nivora {

/// Whether two paths refer to the same file, through any names and links. If one of them does not exist, its
/// name is compared.
[[nodiscard]] bool same_file(const std::filesystem::path& a, const std::filesystem::path& b);

/// Whether a file may be changed: false if it is marked read-only, for the superuser as well, or is not
/// a regular file.
[[nodiscard]] bool may_be_written(const std::filesystem::path& file);

/// Refuses a file that exists and may not be changed, which a rename would ignore. @throws FileError
void refuse_unwritable(const std::filesystem::path& file);

/// The path to write to for this name: the target of a link, so that the link stays.
///
/// @param never files that must not be replaced, such as those that the command reads
/// @throws FileError if the name leads to one of these, to a folder or a device, or to a read-only file
[[nodiscard]] std::filesystem::path output_target(const std::filesystem::path& named,
                                                  const std::vector<std::filesystem::path>& never);

/// Writes a file piece by piece. Until it is finished the target is unchanged; the mode of a replaced file is
/// kept. Files that killed writers left beside the target are removed.
class OutputFile {
public:
    /// @throws FileError like output_target, and if the folder can't be written to
    explicit OutputFile(const std::filesystem::path& named,
                        const std::vector<std::filesystem::path>& never = {});
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    /// Removes an unfinished file.
    ~OutputFile();

    /// @throws FileError if the disk is full
    void write(std::string_view piece);
    /// Checks that all of it is in the file, which still stands beside its target. @throws FileError
    void complete();
    /// Completes the file, flushes it to the disk and renames it to the target. @throws FileError
    void finish();

private:
    [[noreturn]] void refuse_full() const;

    std::vector<std::filesystem::path> never_;
    std::filesystem::path target_;
    std::filesystem::path beside_;
    std::ofstream file_;
    std::uintmax_t written_ = 0;
};

}  // namespace nivora
