#include "session/file_names.h"

#include "base/scripted_dialogs.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

namespace fs = std::filesystem;

class FileNamesTest : public testing::Test {
protected:
    void TearDown() override {
        EXPECT_TRUE(dialogs_.complaints().empty()) << dialogs_.complaints().front();
        EXPECT_EQ(dialogs_.answers_left(), 0U);
    }

    ScriptedDialogs dialogs_;
    TemporaryFolder folder_;
    FileNames names_{dialogs_, folder_.path()};
    fs::path unnamed_ = folder_.path() / "null.mdb";
};

TEST_F(FileNamesTest, OpeningOffersBasinsAndProposesNoName) {
    dialogs_.then_file("/data/a.mdb");
    EXPECT_EQ(names_.GetFileName(FileKind::OpenBasin, "/data/b.mdb"), fs::path{"/data/a.mdb"});
    const FileQuestion& question = dialogs_.files().front();
    EXPECT_EQ(question.title, "Open a NVR database");
    EXPECT_EQ(question.patterns, (std::vector<std::string>{"Windows NVR Data (*.mdb)", "All Files (*.*)"}));
    EXPECT_EQ(question.proposed_name, "");
    EXPECT_EQ(question.folder, folder_.path());
    EXPECT_FALSE(question.saving);
}

TEST_F(FileNamesTest, ImportingOffersLegacyFiles) {
    dialogs_.then_file(std::nullopt);
    EXPECT_EQ(names_.GetFileName(FileKind::Import, unnamed_), std::nullopt);
    EXPECT_EQ(dialogs_.files().front().title, "Import a DOS NVR data file");
    EXPECT_EQ(dialogs_.files().front().patterns,
              (std::vector<std::string>{"DOS NVR Data (*.NVR)", "All Files (*.*)"}));
}

TEST_F(FileNamesTest, SaveAsSaysSoInItsTitleAndTheSaveQuestionDoesNot) {
    dialogs_.then_file(std::nullopt).then_file(std::nullopt);
    static_cast<void>(names_.GetFileName(FileKind::SaveAs, unnamed_));
    static_cast<void>(names_.GetFileName(FileKind::SaveQuestion, unnamed_));
    EXPECT_EQ(dialogs_.files()[0].title, "Save a Nivora data base as ...");
    EXPECT_EQ(dialogs_.files()[1].title, "Save a Nivora data base");
}

TEST_F(FileNamesTest, ANeverSavedBasinHasNoNameToPropose) {
    dialogs_.then_file(std::nullopt).then_file(std::nullopt).then_file(std::nullopt);
    static_cast<void>(names_.GetFileName(FileKind::SaveAs, unnamed_));
    static_cast<void>(names_.GetFileName(FileKind::SaveAs, folder_.path() / "new.mdb"));
    static_cast<void>(names_.GetFileName(FileKind::SaveAs, "<new file> "));
    for (const FileQuestion& question : dialogs_.files()) EXPECT_EQ(question.proposed_name, "");
}

TEST_F(FileNamesTest, ANamedBasinProposesItsName) {
    dialogs_.then_file(std::nullopt);
    static_cast<void>(names_.GetFileName(FileKind::SaveAs, "/data/alder.mdb"));
    EXPECT_EQ(dialogs_.files().front().proposed_name, "/data/alder.mdb");
}

TEST_F(FileNamesTest, ATextTakesTheBasinsNameOrNewfile) {
    dialogs_.then_file(std::nullopt).then_file(std::nullopt);
    static_cast<void>(names_.GetFileName(FileKind::SaveText, "/data/alder.mdb"));
    static_cast<void>(names_.GetFileName(FileKind::SaveText, unnamed_));
    EXPECT_EQ(dialogs_.files()[0].proposed_name, "alder.txt");
    EXPECT_EQ(dialogs_.files()[1].proposed_name, "newfile");
    EXPECT_EQ(dialogs_.files()[0].title, "Save as a text(.txt) file");
}

// No file system takes a name of 300 letters.
TEST_F(FileNamesTest, ANameThatCannotBeLookedUpIsToldAndNothingIsChosen) {
    const fs::path name = folder_ / (std::string(300, 'a') + ".txt");
    dialogs_.then_file(name);
    EXPECT_EQ(names_.GetFileName(FileKind::SaveText, unnamed_), std::nullopt);
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(dialogs_.messages()[0].message.title, "Error in GetFileName");
    EXPECT_EQ(dialogs_.messages()[0].message.text.find(name.string()), 0U);
}

TEST_F(FileNamesTest, TheEndingOfABasinIsReplacedForAPrintInUpperCase) {
    dialogs_.then_file(std::nullopt).then_file(std::nullopt);
    static_cast<void>(names_.GetFileName(FileKind::SaveText, "/data/ALDER.MDB"));
    static_cast<void>(names_.GetFileName(FileKind::SavePdf, "/data/alder.Mdb", "_Results"));
    EXPECT_EQ(dialogs_.files()[0].proposed_name, "ALDER.txt");
    EXPECT_EQ(dialogs_.files()[1].proposed_name, "alder_Results.pdf");
}

TEST_F(FileNamesTest, EachPurposeKeepsItsOwnFolder) {
    dialogs_.then_file("/one/a.mdb").then_file(std::nullopt).then_file(std::nullopt);
    static_cast<void>(names_.GetFileName(FileKind::OpenBasin, unnamed_));
    static_cast<void>(names_.GetFileName(FileKind::OpenBasin, unnamed_));
    static_cast<void>(names_.GetFileName(FileKind::Import, unnamed_));
    EXPECT_EQ(dialogs_.files()[1].folder, fs::path{"/one"});
    EXPECT_EQ(dialogs_.files()[2].folder, folder_.path());
}

TEST_F(FileNamesTest, ASavedNameWithoutAnExtensionGetsOneAndAnotherExtensionStays) {
    dialogs_.then_file("/nowhere/alder").then_file("/nowhere/alder.basin");
    EXPECT_EQ(names_.GetFileName(FileKind::SaveAs, unnamed_), fs::path{"/nowhere/alder.mdb"});
    EXPECT_EQ(names_.GetFileName(FileKind::SaveAs, unnamed_), fs::path{"/nowhere/alder.basin"});
}

TEST_F(FileNamesTest, AnExistingNameIsAskedAboutWithNoAsTheDefault) {
    const fs::path taken = folder_.path() / "alder.mdb";
    std::ofstream{taken} << "x";
    dialogs_.then_file(taken).then(Answer::No).then_file(taken).then(Answer::Yes);
    EXPECT_EQ(names_.GetFileName(FileKind::SaveAs, unnamed_), taken);
    const Message& question = dialogs_.messages().front().message;
    EXPECT_EQ(question.text, taken.string() + " already exists!\n  Do you want to replace it?");
    EXPECT_EQ(question.icon, Icon::Warning);
    EXPECT_EQ(question.buttons, Buttons::YesNo);
    EXPECT_EQ(question.default_answer, Answer::No);
    EXPECT_EQ(dialogs_.files()[1].folder, folder_.path());
}

TEST_F(FileNamesTest, AReservedNameIsRefusedWhenSavingAndAskedAgain) {
    dialogs_.then_file("/data/NEW.mdb").then_file("/data/new.MDB.old/x.mdb").then_file("/data/fine.mdb");
    EXPECT_EQ(names_.GetFileName(FileKind::SaveQuestion, unnamed_), fs::path{"/data/fine.mdb"});
    ASSERT_EQ(dialogs_.messages().size(), 2U);
    const Message& refusal = dialogs_.messages().front().message;
    EXPECT_EQ(refusal.text,
              "This database file name, /data/NEW.mdb, is reserved for system use.  Please choose another.");
    EXPECT_EQ(refusal.title, "Invalid file name");
    EXPECT_EQ(refusal.icon, Icon::Stop);
}

TEST_F(FileNamesTest, AReservedNameIsNotTestedWhenOpening) {
    dialogs_.then_file("/data/null.mdb");
    EXPECT_EQ(names_.GetFileName(FileKind::OpenBasin, unnamed_), fs::path{"/data/null.mdb"});
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST(ReservedNames, CountAnywhereInThePathAndInAnyCase) {
    EXPECT_TRUE(is_reserved_name("/data/NeW.mDb"));
    EXPECT_TRUE(is_reserved_name("/new.mdb.old/basin.mdb"));
    EXPECT_TRUE(is_reserved_name("C:\\null.mdb"));
    EXPECT_FALSE(is_reserved_name("/data/newer.mdb"));
}

}  // namespace
}  // namespace nivora
