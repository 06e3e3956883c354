// A separate folder for one test, removed when the test ends.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace nivora {

/// Creates an empty folder with a name that no other test uses, and removes it with its whole content.
class TemporaryFolder {
public:
    TemporaryFolder() {
        constexpr int k_attempts = 100;
        std::random_device random;
        for (int attempt = 0; attempt < k_attempts; ++attempt) {
            const std::uint64_t number = std::uint64_t{random()} << 32U | random();
            path_ = std::filesystem::temp_directory_path() / ("nivora-test-" + std::to_string(number));
            if (std::filesystem::create_directory(path_)) return;
        }
        throw std::runtime_error("no name is free for a temporary folder");
    }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    ~TemporaryFolder() {
        std::error_code ignored;  // a folder that can't be removed must not end the test program
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    /// A path in the folder.
    [[nodiscard]] std::filesystem::path operator/(const std::filesystem::path& name) const {
        return path_ / name;
    }

    /// Writes a file in the folder, byte for byte, and returns its path.
    std::filesystem::path write(const std::filesystem::path& name, std::string_view content) const {
        const std::filesystem::path file_path = path_ / name;
        std::ofstream file{file_path, std::ios::binary | std::ios::trunc};
        file.write(content.data(), static_cast<std::streamsize>(content.size()));
        file.close();
        if (!file) throw std::runtime_error("can't write " + file_path.string());
        return file_path;
    }

    /// The names of the files and folders directly in the folder.
    [[nodiscard]] std::vector<std::string> entries() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator{path_}) {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }

private:
    std::filesystem::path path_;
};

/// All bytes of a file.
[[nodiscard]] inline std::string file_bytes(const std::filesystem::path& path) {
    std::ifstream file{path, std::ios::binary};
    if (!file) throw std::runtime_error("can't read " + path.string());
    return {std::istreambuf_iterator<char>{file}, std::istreambuf_iterator<char>{}};
}

/// Writes a file anew.
inline void write_bytes(const std::filesystem::path& path, std::string_view bytes) {
    std::ofstream file{path, std::ios::binary | std::ios::trunc};
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file) throw std::runtime_error("can't write " + path.string());
}

}  // namespace nivora
