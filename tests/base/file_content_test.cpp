#include "base/file_content.h"

#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

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

// The FNV-1a digest of "a" as published by its authors.
TEST(FileContent, HasThePublishedDigestOfALetter) {
    const TemporaryFolder folder;
    EXPECT_EQ(file_content(folder.write("file", "a"))->digest, 0xAF63DC4C8601EC8CU);
}

}  // namespace
}  // namespace nivora
