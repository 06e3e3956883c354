#include "base/scripted_dialogs.h"
#include "session/file_names.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

namespace fs = std::filesystem;
using Patterns = std::vector<std::string>;

class FileKindsTest : public testing::Test {
protected:
    void TearDown() override {
        EXPECT_TRUE(dialogs_.complaints().empty()) << dialogs_.complaints().front();
        EXPECT_EQ(dialogs_.answers_left(), 0U);
    }

    /// The question that is asked for a kind of file while the basin's file is `basin_file`.
    FileQuestion question(FileKind kind, const fs::path& basin_file, const std::string& suffix = {}) {
        dialogs_.then_file(std::nullopt);
        EXPECT_EQ(names_.GetFileName(kind, basin_file, suffix), std::nullopt);
        return dialogs_.files().back();
    }

    ScriptedDialogs dialogs_;
    TemporaryFolder program_;
    FileNames names_{dialogs_, program_.path()};
};

TEST_F(FileKindsTest, EachPurposeHasItsTitlePatternsAndDialog) {
    struct Kind {
        FileKind kind;
        const char* title;
        Patterns patterns;
        bool saving;
    };
    const Patterns basins{"Windows NVR Data (*.mdb)", "All Files (*.*)"};
    for (const Kind& kind :
         std::vector<Kind>{{FileKind::OpenBasin, "Open a NVR database", basins, false},
                           {FileKind::Import,
                            "Import a DOS NVR data file",
                            {"DOS NVR Data (*.NVR)", "All Files (*.*)"},
                            false},
                           {FileKind::SaveQuestion, "Save a Nivora data base", basins, true},
                           {FileKind::SaveAs, "Save a Nivora data base as ...", basins, true},
                           {FileKind::SaveBasin, "Save a Nivora data base", basins, true},
                           {FileKind::SaveText,
                            "Save as a text(.txt) file",
                            {"Text Files (*.txt)", "All Files (*.*)"},
                            true},
                           {FileKind::SavePdf,
                            "Save as a PDF(.pdf) file",
                            {"PDF Files (*.pdf)", "All Files (*.*)"},
                            true}}) {
        const FileQuestion asked = question(kind.kind, "/data/alder.mdb");
        EXPECT_EQ(asked.title, kind.title);
        EXPECT_EQ(asked.patterns, kind.patterns) << kind.title;
        EXPECT_EQ(asked.saving, kind.saving) << kind.title;
        EXPECT_EQ(asked.folder, program_.path()) << kind.title;
        EXPECT_EQ(asked.pattern, 0U) << kind.title;
        EXPECT_FALSE(asked.pattern_decides) << kind.title;
    }
}

TEST_F(FileKindsTest, OpeningProposesNoName) {
    EXPECT_EQ(question(FileKind::OpenBasin, "/data/alder.mdb").proposed_name, "");
    EXPECT_EQ(question(FileKind::Import, "/data/alder.mdb").proposed_name, "");
}

TEST_F(FileKindsTest, ANameInAFolderCalledLikeTheTemplateOrTheWorkingFileIsNotProposed) {
    for (const char* file : {"/null.d/alder.mdb", "/a/new.basins/alder.mdb", "/a/null.mdb", "/a/new.mdb"}) {
        EXPECT_EQ(question(FileKind::SaveAs, file).proposed_name, "") << file;
    }
    for (const char* file : {"/a/annull.mdb", "/renew.d/alder.mdb", "/nullable/alder.mdb"}) {
        EXPECT_EQ(question(FileKind::SaveAs, file).proposed_name, file);
    }
}

TEST_F(FileKindsTest, ATextGetsTheNameWithItsExtension) {
    EXPECT_EQ(question(FileKind::SaveText, "/data/alder.fork.mdb").proposed_name, "alder.fork.txt");
    EXPECT_EQ(question(FileKind::SaveText, program_.path() / "null.mdb").proposed_name, "newfile");
}

TEST_F(FileKindsTest, APrintGetsTheNameWithItsSuffix) {
    const auto proposed = [&](FileKind kind, const fs::path& file) {
        return question(kind, file, "_Results").proposed_name;
    };
    EXPECT_EQ(proposed(FileKind::SaveText, "/data/alder.fork.mdb"), "alder.fork_Results.txt");
    EXPECT_EQ(proposed(FileKind::SavePdf, "/data/alder.fork.mdb"), "alder.fork_Results.pdf");
    EXPECT_EQ(proposed(FileKind::SaveText, "/data/alder.dat"), "alder_Results.dat") << "another ending stays";
    EXPECT_EQ(proposed(FileKind::SaveText, "/data/alder"), "alder_Results");
    EXPECT_EQ(proposed(FileKind::SavePdf, program_.path() / "null.mdb"), "newfile_Results");
    EXPECT_EQ(proposed(FileKind::SavePdf, "<new file> "), "newfile_Results");
}

TEST_F(FileKindsTest, TheFolderOfAnAnswerIsKeptOnlyForItsPurpose) {
    dialogs_.then_file(program_.path() / "one" / "a.mdb");
    static_cast<void>(names_.GetFileName(FileKind::SaveAs, "/data/alder.mdb"));
    EXPECT_EQ(question(FileKind::SaveAs, "/data/alder.mdb").folder, program_.path() / "one");
    for (const FileKind other : {FileKind::OpenBasin, FileKind::Import, FileKind::SaveText,
                                 FileKind::SaveQuestion, FileKind::SaveBasin}) {
        EXPECT_EQ(question(other, "/data/alder.mdb").folder, program_.path());
    }
    // A cancel keeps the folder.
    EXPECT_EQ(question(FileKind::SaveAs, "/data/alder.mdb").folder, program_.path() / "one");
}

TEST_F(FileKindsTest, OnlySavedNamesGetAnExtension) {
    struct Case {
        FileKind kind;
        const char* answer;
        const char* name;
    };
    for (const Case& c :
         {Case{FileKind::OpenBasin, "alder", "alder"}, Case{FileKind::Import, "alder", "alder"},
          Case{FileKind::SaveAs, "alder", "alder.mdb"}, Case{FileKind::SaveQuestion, "alder", "alder.mdb"},
          Case{FileKind::SaveText, "alder", "alder.txt"}, Case{FileKind::SavePdf, "alder", "alder.pdf"},
          Case{FileKind::SaveAs, "alder.old", "alder.old"},
          Case{FileKind::SaveText, "alder.csv", "alder.csv"}}) {
        dialogs_.then_file(program_.path() / c.answer);
        EXPECT_EQ(names_.GetFileName(c.kind, "/data/basin.mdb"), program_.path() / c.name);
    }
}

TEST_F(FileKindsTest, TheExtensionIsAddedBeforeTheExistingFileIsLookedFor) {
    program_.write("alder.txt", "x");
    dialogs_.then_file(program_.path() / "alder").then(Answer::No).then_file(std::nullopt);
    EXPECT_EQ(names_.GetFileName(FileKind::SaveText, "/data/basin.mdb"), std::nullopt);
    EXPECT_EQ(dialogs_.messages().back().message.text,
              (program_.path() / "alder.txt").string() + " already exists!\n  Do you want to replace it?");
}

TEST_F(FileKindsTest, AReservedNameIsRefusedOnlyForBasins) {
    const fs::path reserved = program_.path() / "null.mdb";
    dialogs_.then_file(reserved);
    EXPECT_EQ(names_.GetFileName(FileKind::SaveText, "/data/basin.mdb"), reserved);
    EXPECT_TRUE(dialogs_.messages().empty());
    for (const FileKind kind : {FileKind::SaveAs, FileKind::SaveQuestion, FileKind::SaveBasin}) {
        const std::size_t before = dialogs_.messages().size();
        dialogs_.then_file(reserved).then_file(std::nullopt);
        EXPECT_EQ(names_.GetFileName(kind, "/data/basin.mdb"), std::nullopt);
        EXPECT_EQ(dialogs_.messages().size(), before + 1);
    }
}

TEST_F(FileKindsTest, AnExistingReservedNameIsAskedAboutBeforeItIsRefused) {
    const fs::path reserved = program_.write("new.mdb", "x");
    dialogs_.then_file(reserved).then(Answer::Yes).then_file(std::nullopt);
    EXPECT_EQ(names_.GetFileName(FileKind::SaveAs, "/data/basin.mdb"), std::nullopt);
    ASSERT_EQ(dialogs_.messages().size(), 2U);
    EXPECT_EQ(dialogs_.messages()[0].message.buttons, Buttons::YesNo);
    EXPECT_EQ(dialogs_.messages()[1].message.title, "Invalid file name");
}

}  // namespace
}  // namespace nivora
