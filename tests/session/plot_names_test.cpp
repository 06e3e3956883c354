// The names and forms under which plots are saved.
#include "base/scripted_dialogs.h"
#include "session/file_names.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

// The filters of the two discharge plots, by position.
constexpr std::size_t k_bitmap = 0;
constexpr std::size_t k_slurp = 2;
constexpr std::size_t k_png = 3;

class PlotNamesTest : public testing::Test {
protected:
    PlotNamesTest() { basin_.Basin_File = folder_ / "alder.fork.mdb"; }
    void TearDown() override {
        EXPECT_TRUE(dialogs_.complaints().empty()) << dialogs_.complaints().front();
        EXPECT_EQ(dialogs_.answers_left(), 0U);
    }

    /// The question for a plot, which is cancelled.
    FileQuestion question(bool has_flow) {
        dialogs_.then_file(std::nullopt);
        EXPECT_FALSE(names_.GetPlotFileName(basin_, has_flow));
        return dialogs_.files().back();
    }
    /// The answer to a name that the user types while a filter of the discharge plots is selected.
    PlotFileName named(const char* name, std::size_t filter) {
        dialogs_.then_file(folder_ / name, filter);
        return names_.GetPlotFileName(basin_, true).value_or(PlotFileName{});
    }

    ScriptedDialogs dialogs_;
    TemporaryFolder folder_;
    BasinState basin_;
    FileNames names_{dialogs_, folder_.path()};
};

TEST_F(PlotNamesTest, TheTwoDischargePlotsHaveSixFiltersAndTheSlurpFileIsSelected) {
    const FileQuestion asked = question(true);
    EXPECT_EQ(asked.title, "Save a Nivora plot as ...");
    EXPECT_THAT(asked.patterns,
                ElementsAre("Bitmap Files (*.bmp)", "Ascii Files (*.txt)", "Slurp Files (*.flx)",
                            "PNG Files (*.png)", "SVG Files (*.svg)", "PDF Files (*.pdf)"));
    EXPECT_EQ(asked.pattern, k_slurp);
    EXPECT_EQ(asked.proposed_name, "alder.fork.flx");
    EXPECT_EQ(asked.folder, folder_.path());
    EXPECT_TRUE(asked.saving);
    EXPECT_TRUE(asked.pattern_decides);
}

TEST_F(PlotNamesTest, TheOtherPlotsHaveNoSlurpFileAndTheBitmapIsSelected) {
    const FileQuestion asked = question(false);
    EXPECT_THAT(asked.patterns, ElementsAre("Bitmap Files (*.bmp)", "Ascii Files (*.txt)",
                                            "PNG Files (*.png)", "SVG Files (*.svg)", "PDF Files (*.pdf)"));
    EXPECT_EQ(asked.pattern, k_bitmap);
    EXPECT_EQ(asked.proposed_name, "alder.fork.bmp");
}

TEST_F(PlotNamesTest, ABasinWithoutANameProposesNewfile) {
    basin_.Basin_File = folder_ / "null.mdb";
    EXPECT_EQ(question(false).proposed_name, "newfile.bmp");
    basin_.Basin_File = "<new file> ";
    EXPECT_EQ(question(true).proposed_name, "newfile.flx");
}

TEST_F(PlotNamesTest, TheFilterThatIsLeftSelectedDecidesTheFormAndTheEnding) {
    struct Case {
        bool has_flow;
        std::size_t filter;
        PlotForm form;
        const char* name;
    };
    for (const Case& c : {Case{true, 0, PlotForm::Bitmap, "a.bmp"}, Case{true, 1, PlotForm::Text, "a.txt"},
                          Case{true, 2, PlotForm::Flow, "a.flx"}, Case{true, 3, PlotForm::Png, "a.png"},
                          Case{true, 4, PlotForm::Svg, "a.svg"}, Case{true, 5, PlotForm::Pdf, "a.pdf"},
                          Case{false, 0, PlotForm::Bitmap, "a.bmp"}, Case{false, 1, PlotForm::Text, "a.txt"},
                          Case{false, 2, PlotForm::Png, "a.png"}, Case{false, 3, PlotForm::Svg, "a.svg"},
                          Case{false, 4, PlotForm::Pdf, "a.pdf"}}) {
        dialogs_.then_file(folder_ / "a", c.filter);
        const auto name = names_.GetPlotFileName(basin_, c.has_flow);
        ASSERT_TRUE(name);
        EXPECT_EQ(name->form, c.form) << c.name;
        EXPECT_EQ(name->file, folder_ / c.name);
    }
}

// The dialog of the desktop moves the filter to an ending that is typed, so that this takes two steps.
TEST_F(PlotNamesTest, ANameKeepsAnEndingOfAnotherFormAndTheFilterStillDecides) {
    const PlotFileName name = named("picture.png", k_bitmap);
    EXPECT_EQ(name.file, folder_ / "picture.png");
    EXPECT_EQ(name.form, PlotForm::Bitmap);
    EXPECT_EQ(named("run.2002", k_png).file, folder_ / "run.2002");
}

TEST_F(PlotNamesTest, AfterNoTheDialogHasTheFilterThatWasSelectedAndItsEnding) {
    folder_.write("taken.png", "older");
    dialogs_.then_file(folder_ / "taken", k_png).then(Answer::No).then_file(std::nullopt);
    EXPECT_FALSE(names_.GetPlotFileName(basin_, true));
    EXPECT_EQ(dialogs_.messages().front().message.text,
              (folder_ / "taken.png").string() + " already exists!\n  Do you want to replace it?");
    ASSERT_EQ(dialogs_.files().size(), 2U);
    EXPECT_EQ(dialogs_.files()[1].pattern, k_png);
    EXPECT_EQ(dialogs_.files()[1].proposed_name, "alder.fork.png");
    EXPECT_EQ(dialogs_.files()[1].folder, folder_.path());
}

TEST_F(PlotNamesTest, TheNextQuestionBeginsWithTheFilterOfItsPlot) {
    static_cast<void>(named("a", k_png));
    EXPECT_EQ(question(true).pattern, k_slurp);
    EXPECT_EQ(question(false).pattern, k_bitmap);
}

TEST_F(PlotNamesTest, TheOpenBasinAndItsWorkingFileAreRefusedAndAskedAgain) {
    basin_.Work_File = folder_ / "new.mdb";
    for (const fs::path& used : {basin_.Basin_File, basin_.Work_File}) {
        folder_.write(used.filename(), "a basin");
        const std::size_t before = dialogs_.messages().size();
        dialogs_.then_file(used).then(Answer::Yes).then_file(folder_ / "fine.bmp", k_bitmap);
        const auto name = names_.GetPlotFileName(basin_, true);
        ASSERT_TRUE(name);
        EXPECT_EQ(name->file, folder_ / "fine.bmp");
        ASSERT_EQ(dialogs_.messages().size(), before + 2);
        const Message& told = dialogs_.messages().back().message;
        EXPECT_EQ(told.text, "The file '" + used.string() +
                                 "' is the basin that is open.  Choose another name for the plot.");
        EXPECT_EQ(told.title, "Invalid file name");
        EXPECT_EQ(told.icon, Icon::Stop);
    }
}

TEST_F(PlotNamesTest, ALinkToTheOpenBasinIsRefused) {
    folder_.write("alder.fork.mdb", "a basin");
    fs::create_symlink(basin_.Basin_File, folder_ / "link.bmp");
    dialogs_.then_file(folder_ / "link.bmp", k_bitmap).then(Answer::Yes).then_file(std::nullopt);
    EXPECT_FALSE(names_.GetPlotFileName(basin_, true));
    EXPECT_EQ(dialogs_.messages().back().message.title, "Invalid file name");
}

TEST_F(PlotNamesTest, PlotsHaveAFolderOfTheirOwn) {
    const fs::path plots = folder_ / "plots";
    fs::create_directory(plots);
    dialogs_.then_file(plots / "a", k_bitmap);
    static_cast<void>(names_.GetPlotFileName(basin_, true));
    EXPECT_EQ(question(true).folder, plots);
    dialogs_.then_file(std::nullopt);
    static_cast<void>(names_.GetFileName(FileKind::SavePdf, basin_.Basin_File));
    EXPECT_EQ(dialogs_.files().back().folder, folder_.path());
}

}  // namespace
}  // namespace nivora
