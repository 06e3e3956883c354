// A file that a command writes for its user: beside its target first, in its place once it is whole.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <vector>

namespace nivora {

/// Whether two paths lead to one file, by whatever names and links. Where one of them does not exist, its
/// name counts.
[[nodiscard]] bool same_file(const std::filesystem::path& a, const std::filesystem::path& b);

/// Whether a file may be changed: false for one that is marked read-only, which binds the superuser as well,
/// and for what is no ordinary file.
[[nodiscard]] bool may_be_written(const std::filesystem::path& file);

/// Refuses a file that exists and may not be changed, which a rename would pass over. @throws FileError
void refuse_unwritable(const std::filesystem::path& file);

/// Where a file is written that bears this name: what a link leads to, so that the link stays.
///
/// @param never files that must not be replaced, such as those that the command reads
/// @throws FileError where the name leads to one of these, to a folder or a device, or to a read-only file
[[nodiscard]] std::filesystem::path output_target(const std::filesystem::path& named,
                                                  const std::vector<std::filesystem::path>& never);

/// Writes a file piece by piece. Until it is finished the target is as it was; a file that is replaced leaves
/// its mode to the new one. What killed writers left beside the target is removed.
class OutputFile {
public:
    /// @throws FileError as output_target, and where the folder can't be written to
    explicit OutputFile(const std::filesystem::path& named,
                        const std::vector<std::filesystem::path>& never = {});
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    /// Removes what was not finished.
    ~OutputFile();

    /// @throws FileError where the disk has no room
    void write(std::string_view piece);
    /// Checks the size, brings the file to the disk and gives it its name. @throws FileError
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
