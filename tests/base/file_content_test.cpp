#include "base/file_content.h"

#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <string_view>

namespace nivora {
namespace {

namespace fs = std::filesystem;

TEST(FileContent, IsTheSameForEqualBytesWhateverTheNameAndTime) {
    const TemporaryFolder folder;
    const auto one = file_content(folder.write("one", "snow"));
    const fs::path other = folder.write("other", "snow");
    fs::last_write_time(other, fs::file_time_type{});
    ASSERT_TRUE(one.has_value());
    EXPECT_EQ(one, file_content(other));
    EXPECT_EQ(one->size, 4U);
}

TEST(FileContent, DiffersForASingleChangedByteOfTheSameLength) {
    const TemporaryFolder folder;
    std::string large(3U << 20U, 'a');
    const auto before = file_content(folder.write("file", large));
    large.back() = 'b';
    EXPECT_NE(before, file_content(folder.write("file", large)));
    large.back() = 'a';
    EXPECT_EQ(before, file_content(folder.write("file", large)));
}

TEST(FileContent, ExistsForAnEmptyFileButNotForWhatIsNotAFile) {
    const TemporaryFolder folder;
    EXPECT_TRUE(file_content(folder.write("empty", "")).has_value());
    EXPECT_FALSE(file_content(folder / "none").has_value());
    EXPECT_FALSE(file_content(folder.path()).has_value());
}

TEST(FileContent, DiffersForOneChangedBitAnywhere) {
    const TemporaryFolder folder;
    std::string bytes(67, 'a');  // two steps of the digest, and an end
    std::set<std::uint64_t> digests{file_content(folder.write("file", bytes))->digest};
    for (std::size_t bit = 0; bit < bytes.size() * 8; ++bit) {
        bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << (bit % 8)));
        digests.insert(file_content(folder.write("file", bytes))->digest);
        bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << (bit % 8)));
    }
    EXPECT_EQ(digests.size(), 67 * 8 + 1);
}

/// The same change of two numbers, such as of their signs, must not cancel out.
TEST(FileContent, DiffersForTheSameBitChangedTwice) {
    const TemporaryFolder folder;
    std::string bytes(256, '\0');
    std::set<std::uint64_t> digests{file_content(folder.write("file", bytes))->digest};
    std::size_t pairs = 0;
    for (std::size_t bit = 0; bit < 64; ++bit) {
        for (std::size_t first = bit / 8; first < bytes.size(); first += 8) {
            for (std::size_t second = first + 8; second < bytes.size(); second += 8, ++pairs) {
                bytes[first] = bytes[second] = static_cast<char>(1 << (bit % 8));
                ContentDigest digest;
                digest.add(bytes);
                digests.insert(digest.content().digest);
                bytes[first] = bytes[second] = '\0';
            }
        }
    }
    EXPECT_EQ(digests.size(), pairs + 1);
}

TEST(FileContent, DiffersForBytesInAnotherOrderAndForZerosAtTheEnd) {
    const TemporaryFolder folder;
    EXPECT_NE(file_content(folder.write("file", "snow....rain....")),
              file_content(folder.write("file", "rain....snow....")));
    EXPECT_NE(file_content(folder.write("file", "snow")),
              file_content(folder.write("file", std::string{"snow\0", 5})));
}

TEST(FileContent, IsThatOfTheBlocksInWhichItWasRead) {
    const TemporaryFolder folder;
    std::string bytes;
    for (int i = 0; i < 1000; ++i) bytes += std::to_string(i * i);
    ContentDigest digest;
    digest.add(std::string_view{bytes}.substr(0, 64));
    digest.add(std::string_view{bytes}.substr(64, 320));
    digest.add(std::string_view{bytes}.substr(384));
    EXPECT_EQ(digest.content(), file_content(folder.write("file", bytes)));
}

}  // namespace
}  // namespace nivora
