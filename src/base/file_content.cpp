#include "base/file_content.h"

#include <fstream>
#include <vector>

namespace nivora {

namespace fs = std::filesystem;

std::optional<FileContent> file_content(const fs::path& path) {
    constexpr std::size_t k_block = 1U << 20U;
    constexpr std::uint64_t k_start = 0xCBF29CE484222325U;  // FNV-1a
    constexpr std::uint64_t k_factor = 0x00000100000001B3U;
    std::error_code unreadable;
    if (!fs::is_regular_file(path, unreadable)) return std::nullopt;
    std::ifstream file{path, std::ios::binary};
    if (!file) return std::nullopt;
    FileContent content{.size = 0, .digest = k_start};
    std::vector<char> block(k_block);
    while (file) {
        file.read(block.data(), static_cast<std::streamsize>(block.size()));
        const auto read = static_cast<std::size_t>(file.gcount());
        for (std::size_t i = 0; i < read; ++i) {
            content.digest = (content.digest ^ static_cast<unsigned char>(block[i])) * k_factor;
        }
        content.size += read;
    }
    if (file.bad()) return std::nullopt;
    return content;
}

}  // namespace nivora
