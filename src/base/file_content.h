// A digest of a file's content, small enough to be kept and compared later.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

namespace nivora {

/// A file's content at one moment. Different contents compare equal with a chance of 1 in 2^64; the file's
/// name, folder and times do not count.
struct FileContent {
    std::uintmax_t size = 0;
    std::uint64_t digest = 0;

    bool operator==(const FileContent&) const = default;
};

/// Takes the bytes of a file in blocks.
class ContentDigest {
public:
    /// Every block but the last has a multiple of 32 bytes; else equal files may differ.
    void add(std::string_view block);
    [[nodiscard]] FileContent content() const;

private:
    std::uintmax_t size_ = 0;
    /// Four at once, since a processor needs several cycles for each multiplication that waits for the last.
    std::array<std::uint64_t, 4> lanes_{1, 2, 3, 4};
};

/// Reads a regular file to its end. @return nothing if it does not exist or can't be read
[[nodiscard]] std::optional<FileContent> file_content(const std::filesystem::path& path);

}  // namespace nivora
