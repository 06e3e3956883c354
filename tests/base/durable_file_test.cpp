#include "base/durable_file.h"

#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace fs = std::filesystem;

/// The message of the FileError that `work` throws; empty if it throws none.
template <typename Work>
std::string file_error(Work&& work) {
    try {
        work();
    } catch (const FileError& error) {
        return error.what();
    }
    return {};
}

TEST(WriteWholeFile, WritesEveryByte) {
    const TemporaryFolder folder;
    std::string content;
    for (int i = 0; i < 256; ++i) content.push_back(static_cast<char>(i));
    write_whole_file(folder / "bytes", content);
    EXPECT_EQ(file_bytes(folder / "bytes"), content);
    write_whole_file(folder / "empty", "");
    EXPECT_EQ(file_bytes(folder / "empty"), "");
}

TEST(WriteWholeFile, WritesALongFile) {
    const TemporaryFolder folder;
    const std::string content(5'000'001, 'x');
    write_whole_file(folder / "long", content);
    EXPECT_EQ(file_bytes(folder / "long"), content);
}

TEST(WriteWholeFile, ReplacesALongerFileAndLeavesNoOther) {
    const TemporaryFolder folder;
    folder.write("report.csv", "an old and longer text");
    write_whole_file(folder / "report.csv", "new");
    EXPECT_EQ(file_bytes(folder / "report.csv"), "new");
    EXPECT_THAT(folder.entries(), ElementsAre("report.csv"));
}

TEST(WriteWholeFile, TakesNamesOfOtherScripts) {
    const TemporaryFolder folder;
    const fs::path target = folder / path_from_utf8("\u00D6tztal \u0420\u0435\u043A\u0430 100%.csv");
    write_whole_file(target, "x");
    EXPECT_EQ(file_bytes(target), "x");
}

TEST(WriteWholeFile, IntoAMissingFolderIsRefused) {
    const TemporaryFolder folder;
    EXPECT_THAT(file_error([&] { write_whole_file(folder / "no such" / "report.csv", "x"); }),
                HasSubstr("report.csv"));
    EXPECT_THAT(folder.entries(), IsEmpty());
}

TEST(WriteWholeFile, UnderAFileIsRefused) {
    const TemporaryFolder folder;
    folder.write("file", "kept");
    EXPECT_NE(file_error([&] { write_whole_file(folder / "file" / "report.csv", "x"); }), "");
    EXPECT_EQ(file_bytes(folder / "file"), "kept");
    EXPECT_THAT(folder.entries(), ElementsAre("file"));
}

TEST(WriteWholeFile, OverAFolderIsRefused) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "target");
    EXPECT_THAT(file_error([&] { write_whole_file(folder / "target", "x"); }), HasSubstr("it is a folder"));
    EXPECT_TRUE(fs::is_directory(folder / "target"));
    EXPECT_THAT(folder.entries(), ElementsAre("target"));
}

TEST(WriteWholeFile, UnderANameThatIsTooLongIsRefused) {
    const TemporaryFolder folder;
    EXPECT_NE(file_error([&] { write_whole_file(folder / std::string(300, 'n'), "x"); }), "");
    EXPECT_THAT(folder.entries(), IsEmpty());
}

TEST(NameBeside, IsInTheSameFolderAndContainsTheTargetsName) {
    const fs::path beside = name_beside(fs::path{"folder"} / "basin.mdb");
    EXPECT_EQ(beside.parent_path(), fs::path{"folder"});
    const std::string name = beside.filename().string();
    EXPECT_EQ(name.rfind("basin.mdb.", 0), 0U) << name;
    EXPECT_EQ(beside.extension(), ".part");
}

TEST(MoveIntoPlace, GivesAFinishedFileItsName) {
    const TemporaryFolder folder;
    move_into_place(folder.write("finished", "new"), folder / "target");
    EXPECT_EQ(file_bytes(folder / "target"), "new");
    EXPECT_THAT(folder.entries(), ElementsAre("target"));
}

TEST(MoveIntoPlace, ReplacesATarget) {
    const TemporaryFolder folder;
    folder.write("target", "old");
    move_into_place(folder.write("finished", "new"), folder / "target");
    EXPECT_EQ(file_bytes(folder / "target"), "new");
    EXPECT_THAT(folder.entries(), ElementsAre("target"));
}

TEST(MoveIntoPlace, RefusesAFolderAndRemovesTheFinishedFile) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "target");
    const fs::path finished = folder.write("finished", "new");
    EXPECT_THAT(file_error([&] { move_into_place(finished, folder / "target"); }), HasSubstr("target"));
    EXPECT_THAT(folder.entries(), ElementsAre("target"));
    EXPECT_TRUE(fs::is_empty(folder / "target"));
}

TEST(MoveIntoPlace, RefusesAMissingFolderAndRemovesTheFinishedFile) {
    const TemporaryFolder folder;
    const fs::path finished = folder.write("finished", "new");
    EXPECT_NE(file_error([&] { move_into_place(finished, folder / "no such" / "target"); }), "");
    EXPECT_THAT(folder.entries(), IsEmpty());
}

TEST(MoveIntoPlace, RefusesAMissingFileAndKeepsTheTarget) {
    const TemporaryFolder folder;
    folder.write("target", "old");
    EXPECT_NE(file_error([&] { move_into_place(folder / "no such", folder / "target"); }), "");
    EXPECT_EQ(file_bytes(folder / "target"), "old");
}

TEST(MoveToNewName, GivesAFinishedFileItsName) {
    const TemporaryFolder folder;
    move_to_new_name(folder.write("finished", "new"), folder / "target");
    EXPECT_EQ(file_bytes(folder / "target"), "new");
    EXPECT_THAT(folder.entries(), ElementsAre("target"));
    EXPECT_EQ(fs::hard_link_count(folder / "target"), 1U);
}

TEST(MoveToNewName, RefusesANameInUseAndRemovesTheFinishedFile) {
    const TemporaryFolder folder;
    folder.write("target", "old");
    const fs::path finished = folder.write("finished", "new");
    EXPECT_THAT(file_error([&] { move_to_new_name(finished, folder / "target"); }),
                HasSubstr("a file of that name exists"));
    EXPECT_EQ(file_bytes(folder / "target"), "old");
    EXPECT_THAT(folder.entries(), ElementsAre("target"));
}

TEST(MoveToNewName, RefusesTheNameOfAFolder) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "target");
    const fs::path finished = folder.write("finished", "new");
    EXPECT_NE(file_error([&] { move_to_new_name(finished, folder / "target"); }), "");
    EXPECT_TRUE(fs::is_directory(folder / "target"));
    EXPECT_THAT(folder.entries(), ElementsAre("target"));
}

TEST(MoveToNewName, RefusesAMissingFolderAndANameThatIsTooLong) {
    const TemporaryFolder folder;
    const fs::path finished = folder.write("finished", "new");
    EXPECT_NE(file_error([&] { move_to_new_name(finished, folder / "no such" / "target"); }), "");
    EXPECT_THAT(folder.entries(), IsEmpty());
    const fs::path second = folder.write("finished", "new");
    EXPECT_NE(file_error([&] { move_to_new_name(second, folder / std::string(300, 'n')); }), "");
    EXPECT_THAT(folder.entries(), IsEmpty());
}

TEST(ReadWholeFile, GivesEveryByteBack) {
    const TemporaryFolder folder;
    const std::string content{"a\0\r\n\x1A\xFF", 6};
    EXPECT_EQ(read_whole_file(folder.write("file", content), 100), content);
    EXPECT_EQ(read_whole_file(folder.write("empty", ""), 100), "");
}

TEST(ReadWholeFile, TakesAFileOfExactlyItsLimitAndNoLargerOne) {
    const TemporaryFolder folder;
    const fs::path file = folder.write("file", "12345");
    EXPECT_EQ(read_whole_file(file, 5), "12345");
    EXPECT_THAT(file_error([&] { static_cast<void>(read_whole_file(file, 4)); }),
                HasSubstr("larger than 4 bytes"));
    EXPECT_EQ(read_whole_file(folder.write("empty", ""), 0), "");
}

TEST(ReadWholeFile, RefusesWhatIsNotAFile) {
    const TemporaryFolder folder;
    folder.write("file", "x");
    const auto read = [](const fs::path& path) {
        return file_error([&] { static_cast<void>(read_whole_file(path, 100)); });
    };
    EXPECT_THAT(read(folder / "no such"), HasSubstr("there is no such file"));
    EXPECT_THAT(read(folder.path()), HasSubstr("it is a folder"));
    EXPECT_NE(read(folder / "file" / "below"), "");
    EXPECT_NE(read(folder / std::string(300, 'n')), "");
    EXPECT_NE(read(""), "");
#ifndef _WIN32
    EXPECT_THAT(read("/dev/null"), HasSubstr("it is not a regular file"));
#endif
}

TEST(PathText, IsUtf8InBothDirections) {
    const std::string name = "\u00D6tztal/\u0420\u0435\u043A\u0430.mdb";
    EXPECT_EQ(path_text(path_from_utf8(name)), name);
}

TEST(FileError, NamesTheFile) {
    const TemporaryFolder folder;
    const fs::path missing = folder / path_from_utf8("\u00D6tztal.NVR");
    EXPECT_EQ(file_error([&] { static_cast<void>(read_whole_file(missing, 1)); }),
              "The file '" + path_text(missing) + "' can't be read: there is no such file.");
}

TEST(WriteWholeFile, ThroughALinkKeepsTheLink) {
    const TemporaryFolder folder;
    folder.write("real.csv", "old");
    std::filesystem::create_symlink(folder / "real.csv", folder / "link.csv");
    write_whole_file(folder / "link.csv", "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.csv"));
    EXPECT_EQ(file_bytes(folder / "real.csv"), "new");
}

}  // namespace
}  // namespace nivora
