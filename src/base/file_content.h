// What a file holds, in so few bytes that it can be kept and compared later.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace nivora {

/// A file's content at one moment. Two contents that differ compare unequal but for a chance of 1 in 2^64;
/// the file's name, place and times are no part of it.
struct FileContent {
    std::uintmax_t size = 0;
    std::uint64_t digest = 0;

    bool operator==(const FileContent&) const = default;
};

/// Reads a regular file through. @return nothing where there is none, or it can't be read
[[nodiscard]] std::optional<FileContent> file_content(const std::filesystem::path& path);

}  // namespace nivora
