// Files that a command writes for its user: which files they never replace, and what a replaced file keeps.
#include "base/output_file.h"

#include "base/durable_file.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

std::string refusal(const fs::path& target, const std::vector<fs::path>& never = {}) {
    try {
        write_whole_file(target, "new", never);
    } catch (const FileError& error) {
        return error.what();
    }
    return {};
}

TEST(OutputFile, NeverReplacesAProtectedFileByWhateverNameOrLink) {
    const TemporaryFolder folder;
    const fs::path basin = folder.write("basin.mdb", "data");
    fs::create_symlink(basin, folder / "soft.csv");
    fs::create_hard_link(basin, folder / "hard.csv");
    fs::create_directory(folder / "sub");
    for (const fs::path& target :
         {basin, folder / "soft.csv", folder / "hard.csv", folder / "sub/../basin.mdb"}) {
        EXPECT_THAT(refusal(target, {basin}), HasSubstr("which the command works on")) << target;
        EXPECT_EQ(file_bytes(basin), "data");
    }
    EXPECT_TRUE(fs::is_symlink(folder / "soft.csv"));
}

TEST(OutputFile, ANameThatIsProtectedBeforeItExistsIsRefused) {
    const TemporaryFolder folder;
    const fs::path journal = folder / "basin.mdb-journal";
    fs::create_directory(folder / "sub");
    EXPECT_NE(refusal(folder / "sub/../basin.mdb-journal", {journal}), "");
    EXPECT_FALSE(fs::exists(journal));
}

TEST(OutputFile, AFileThatBecameProtectedWhileItWasWrittenIsKept) {
    const TemporaryFolder folder;
    const fs::path basin = folder.write("basin.mdb", "data");
    OutputFile file{folder / "table.csv", {basin}};
    file.write("new");
    fs::create_hard_link(basin, folder / "table.csv");
    EXPECT_THROW(file.finish(), FileError);
    EXPECT_EQ(file_bytes(folder / "table.csv"), "data");
}

TEST(OutputFile, KeepsTheModeOfTheFileThatItReplaces) {
    const TemporaryFolder folder;
    const fs::path target = folder.write("table.csv", "old");
    const auto mode = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    fs::permissions(target, mode);
    EXPECT_EQ(refusal(target), "");
    EXPECT_EQ(file_bytes(target), "new");
    EXPECT_EQ(fs::status(target).permissions(), mode);
}

TEST(OutputFile, DoesNotReplaceAFileThatIsMarkedReadOnly) {
    const TemporaryFolder folder;
    const fs::path target = folder.write("table.csv", "old");
    fs::permissions(target, fs::perms::owner_read | fs::perms::group_read);
    EXPECT_THAT(refusal(target), HasSubstr("marked read-only"));
    EXPECT_EQ(file_bytes(target), "old");
}

TEST(OutputFile, UnfinishedLeavesTheTargetAndNoOtherFile) {
    const TemporaryFolder folder;
    const fs::path target = folder.write("table.csv", "old");
    {
        OutputFile file{target};
        file.write("half");
    }
    EXPECT_EQ(file_bytes(target), "old");
    EXPECT_THAT(folder.entries(), ElementsAre("table.csv"));
}

TEST(OutputFile, RemovesFilesThatKilledWritersLeftBesideItsTarget) {
    const TemporaryFolder folder;
    folder.write("table.csv.999999999-1.part", "half");
    folder.write("other.csv.999999999-1.part", "of another file");
    EXPECT_EQ(refusal(folder / "table.csv"), "");
    EXPECT_THAT(folder.entries(), UnorderedElementsAre("table.csv", "other.csv.999999999-1.part"));
}

}  // namespace
}  // namespace nivora
