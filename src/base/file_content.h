// A digest of a file's content, small enough to be kept and compared later.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace nivora {

/// A file's content at one moment. Different contents compare equal with a chance of 1 in 2^64; the file's
/// name, folder and times do not count.
struct FileContent {
    std::uintmax_t size = 0;
    std::uint64_t digest = 0;

    bool operator==(const FileContent&) const = default;
};

/// Reads a regular file to its end. @return nothing if it does not exist or can't be read
[[nodiscard]] std::optional<FileContent> file_content(const std::filesystem::path& path);

}  // namespace nivora
