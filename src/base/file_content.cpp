#include "base/file_content.h"

#include <bit>
#include <cstring>
#include <fstream>
#include <vector>

namespace nivora {
namespace {

namespace fs = std::filesystem;

/// Each step can be undone, so that one changed word always changes the result. A product carries a
/// difference only to the bits above it, and the rotation brings it down again; the two products keep a
/// change of a few bits of one word from being taken back by a change of a few bits of the next.
std::uint64_t mixed(std::uint64_t state, std::uint64_t word) {
    constexpr std::uint64_t k_of_word = 0x9E3779B97F4A7C15U;
    constexpr std::uint64_t k_of_state = 0xD6E8FEB86659FD93U;
    return std::rotl(state + word * k_of_word, 29) * k_of_state;
}

}  // namespace

void ContentDigest::add(std::string_view block) {
    size_ += block.size();
    // Four names in the place of an array, and not the member: the compiler keeps them in registers.
    std::uint64_t first = lanes_[0];
    std::uint64_t second = lanes_[1];
    std::uint64_t third = lanes_[2];
    std::uint64_t fourth = lanes_[3];
    std::array<std::uint64_t, 4> words{};
    const auto mix = [&] {
        first = mixed(first, words[0]);
        second = mixed(second, words[1]);
        third = mixed(third, words[2]);
        fourth = mixed(fourth, words[3]);
    };
    for (; block.size() >= sizeof words; block.remove_prefix(sizeof words)) {
        std::memcpy(words.data(), block.data(), sizeof words);
        mix();
    }
    if (!block.empty()) {
        words.fill(0);  // the size tells an end that is filled up from zeros of the file
        std::memcpy(words.data(), block.data(), block.size());
        mix();
    }
    lanes_ = {first, second, third, fourth};
}

FileContent ContentDigest::content() const {
    std::uint64_t digest = size_;
    for (const std::uint64_t lane : lanes_) digest = mixed(digest, lane);
    return {.size = size_, .digest = digest};
}

std::optional<FileContent> file_content(const fs::path& path) {
    constexpr std::size_t k_block = 1U << 18U;  // stays in the cache of a core
    std::error_code unreadable;
    if (!fs::is_regular_file(path, unreadable)) return std::nullopt;
    std::ifstream file{path, std::ios::binary};
    if (!file) return std::nullopt;
    ContentDigest digest;
    std::vector<char> block(k_block);
    while (file) {
        file.read(block.data(), static_cast<std::streamsize>(block.size()));
        digest.add({block.data(), static_cast<std::size_t>(file.gcount())});
    }
    if (file.bad()) return std::nullopt;
    return digest.content();
}

}  // namespace nivora
