// Saving a plot: six kinds of file, each whole or not at all.
#include "session/plot_file.h"

#include "base/scripted_dialogs.h"
#include "plots/plot_view.h"
#include "tests/support/full_disk.h"
#include "tests/support/plot_basin.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

constexpr double k_saved = 46086.5625;  // 2026-03-05, half past one

// The filters of the two discharge plots, by position.
constexpr std::size_t k_ascii_filter = 1;
constexpr std::size_t k_slurp_filter = 2;

/// Four days of discharge of a basin whose files are asked for in a folder.
class PlotFileTest : public testing::Test {
protected:
    PlotFileTest() {
        write_discharge(1.0);
        session_.basin = small_.basin;
        session_.run = small_.run;
        session_.file_names.begin_in(folder_.path());
    }
    void TearDown() override {
        EXPECT_TRUE(dialogs_.complaints().empty()) << dialogs_.complaints().front();
        EXPECT_EQ(dialogs_.answers_left(), 0U);
    }

    /// Day 1 has the discharge `first`, each further day 1 more.
    void write_discharge(double first) {
        small_.write_results([&](SimResults& results, std::size_t row, int, int day) {
            results.ActualQ[row] = 2.0;
            results.DailyQ[row] = first + day - 1;
            results.DailyQPresent[row] = first + day;
        });
    }
    [[nodiscard]] Plot runoff() { return small_.plot(PlotNumber::Runoff); }
    bool save(const Plot& plot) {
        const auto form = save_plot_file(session_, plot, k_saved, [&](PlotForm wanted) {
            painted_.push_back(wanted);
            return picture_;
        });
        return form.has_value();
    }
    [[nodiscard]] const Message& told() const { return dialogs_.messages().back().message; }

    TemporaryFolder folder_;
    PlotBasin small_;
    ScriptedDialogs dialogs_;
    Desktop desktop_;
    Session session_{dialogs_, desktop_};
    std::string picture_ = "a picture";
    std::vector<PlotForm> painted_;
};

TEST_F(PlotFileTest, PicturesArePaintedInTheFormOfTheFilter) {
    struct Case {
        std::size_t filter;
        PlotForm form;
        const char* name;
    };
    for (const Case& c : {Case{0, PlotForm::Bitmap, "a.bmp"}, Case{3, PlotForm::Png, "a.png"},
                          Case{4, PlotForm::Svg, "a.svg"}, Case{5, PlotForm::Pdf, "a.pdf"}}) {
        dialogs_.then_file(folder_ / "a", c.filter);
        EXPECT_TRUE(save(runoff()));
        EXPECT_EQ(painted_.back(), c.form);
        EXPECT_EQ(file_bytes(folder_ / c.name), "a picture");
    }
    EXPECT_EQ(painted_.size(), 4U);
}

TEST_F(PlotFileTest, ATextHasTheMomentOfTheSaveAndTheCurves) {
    dialogs_.then_file(folder_ / "a", k_ascii_filter);
    EXPECT_TRUE(save(runoff()));
    const std::string text = file_bytes(folder_ / "a.txt");
    EXPECT_THAT(text, StartsWith("Program    : Hollin Flow Model for Windows (Nivora)\r\n"));
    EXPECT_THAT(text, HasSubstr("Run Date   : 3/5/2026 1:30:00 PM\r\n"));
    EXPECT_THAT(text, HasSubstr("\r\n10/4/2001   4\r\n"));
    EXPECT_THAT(text, testing::EndsWith("\r\n"));
    EXPECT_TRUE(painted_.empty());
}

TEST_F(PlotFileTest, AZoomCutsATextAndAFlowFileHasTheWholePeriod) {
    const auto zoomed = std::get<Plot>(
        zoom(runoff(), {.x1 = as_double(small_.x(2)), .x2 = as_double(small_.x(3)), .y1 = 0.0, .y2 = 9.0}));
    dialogs_.then_file(folder_ / "a", k_ascii_filter).then_file(folder_ / "a", k_slurp_filter);
    EXPECT_TRUE(save(zoomed));
    const std::string text = file_bytes(folder_ / "a.txt");
    EXPECT_THAT(text, HasSubstr("10/2/2001   2\r\n10/3/2001   3\r\n"));
    EXPECT_THAT(text, testing::Not(HasSubstr("10/4/2001")));
    EXPECT_TRUE(save(zoomed));
    EXPECT_EQ(file_bytes(folder_ / "a.flx"),
              "2001 10 01 1\r\n2001 10 02 2\r\n2001 10 03 3\r\n2001 10 04 4\r\n");
}

TEST_F(PlotFileTest, AFlowFileIsReadFromTheWorkingFile) {
    dialogs_.then_file(folder_ / "a");
    EXPECT_TRUE(save(runoff()));
    EXPECT_EQ(dialogs_.files().front().pattern, k_slurp_filter);
    EXPECT_THAT(file_bytes(folder_ / "a.flx"), StartsWith("2001 10 01 1\r\n"));
}

TEST_F(PlotFileTest, OnlyTheDischargePlotsOfferAFlowFile) {
    small_.write_variables([](PhysicalRow& row, int, int) { row.sca = 1.0F; });
    dialogs_.then_file(std::nullopt).then_file(std::nullopt);
    EXPECT_FALSE(save(small_.plot(PlotNumber::SnowCover)));
    EXPECT_FALSE(save(runoff()));
    EXPECT_EQ(dialogs_.files()[0].patterns.size(), 5U);
    EXPECT_EQ(dialogs_.files()[1].patterns.size(), 6U);
}

TEST_F(PlotFileTest, CancelWritesAndPaintsNothing) {
    dialogs_.then_file(std::nullopt);
    EXPECT_FALSE(save(runoff()));
    EXPECT_TRUE(painted_.empty());
    EXPECT_TRUE(dialogs_.messages().empty());
    EXPECT_THAT(folder_.entries(), testing::IsEmpty());
}

TEST_F(PlotFileTest, AnOlderFileIsReplacedAfterTheQuestionAlone) {
    folder_.write("a.bmp", "older");
    dialogs_.then_file(folder_ / "a", 0).then(Answer::No).then_file(std::nullopt);
    EXPECT_FALSE(save(runoff()));
    EXPECT_EQ(file_bytes(folder_ / "a.bmp"), "older");
    dialogs_.then_file(folder_ / "a", 0).then(Answer::Yes);
    EXPECT_TRUE(save(runoff()));
    EXPECT_EQ(file_bytes(folder_ / "a.bmp"), "a picture");
}

TEST_F(PlotFileTest, TheOpenBasinIsNeverReplaced) {
    const std::string before = file_bytes(session_.basin.Work_File);
    dialogs_.then_file(session_.basin.Work_File, 0).then(Answer::Yes).then_file(std::nullopt);
    EXPECT_FALSE(save(runoff()));
    EXPECT_THAT(told().text, HasSubstr("is the basin that is open"));
    EXPECT_EQ(file_bytes(session_.basin.Work_File), before);
}

// The plot was made when the table held other values.
TEST_F(PlotFileTest, AFlowFileOfResultsThatThePlotDoesNotShowIsRefused) {
    const Plot older = runoff();
    write_discharge(5.0);
    dialogs_.then_file(folder_ / "a", k_slurp_filter);
    EXPECT_FALSE(save(older));
    EXPECT_THAT(told().text, StartsWith("The file '" + (folder_ / "a.flx").string() +
                                        "' was not written. The results are no longer those of this plot"));
    EXPECT_EQ(told().icon, Icon::Stop);
    EXPECT_FALSE(fs::exists(folder_ / "a.flx"));
    // What does not need the table is saved.
    dialogs_.then_file(folder_ / "a", k_ascii_filter);
    EXPECT_TRUE(save(older));
}

TEST_F(PlotFileTest, AFlowFileOfAnotherSimulationIsRefused) {
    const Plot plot = runoff();
    session_.basin.Current_Sim_Name = "wy2003";
    dialogs_.then_file(folder_ / "a", k_slurp_filter);
    EXPECT_FALSE(save(plot));
    EXPECT_THAT(told().text, HasSubstr("no longer those of this plot"));
}

TEST_F(PlotFileTest, AFlowFileOfAnEarlierClimateStepIsRefused) {
    const Plot plot = runoff();
    session_.run.ClimateStep = 6;
    dialogs_.then_file(folder_ / "a", k_slurp_filter);
    EXPECT_FALSE(save(plot));
    EXPECT_THAT(told().text, HasSubstr("no longer those of this plot"));
}

// At step 3 the plot shows the discharge of the present climate under its own name in the table.
TEST_F(PlotFileTest, AFlowFileOfTheSummerOfThePresentClimateIsWritten) {
    small_.take_step(3, 1);
    session_.run = small_.run;
    const Plot plot = runoff();
    ASSERT_EQ(plot.head.step, 3);
    dialogs_.then_file(folder_ / "a", k_slurp_filter);
    EXPECT_TRUE(save(plot));
    EXPECT_EQ(file_bytes(folder_ / "a.flx"), "2001 10 02 2\r\n2001 10 03 3\r\n2001 10 04 4\r\n");
}

TEST_F(PlotFileTest, TheComparisonOfClimatesHasAFlowFileOfTheChangedOne) {
    small_.take_step(6, 1);
    session_.run = small_.run;
    const Plot plot = small_.plot(PlotNumber::RunoffComparison);
    dialogs_.then_file(folder_ / "a");
    EXPECT_TRUE(save(plot));
    EXPECT_EQ(file_bytes(folder_ / "a.flx"), "2001 10 02 2\r\n2001 10 03 3\r\n2001 10 04 4\r\n");
}

TEST_F(PlotFileTest, AFlowFileOfAnEnglishBasinIsInCubicMetres) {
    session_.basin.Units_Code = small_.basin.Units_Code = Units::English;
    write_discharge(1000.0);
    dialogs_.then_file(folder_ / "a");
    EXPECT_TRUE(save(runoff()));
    // 1000 x 0.02832
    EXPECT_THAT(file_bytes(folder_ / "a.flx"), StartsWith("2001 10 01 28.32\r\n"));
}

// The factor would be that of other units than those of the plot.
TEST_F(PlotFileTest, AFlowFileInOtherUnitsThanThoseOfThePlotIsRefused) {
    const Plot plot = runoff();
    session_.basin.Units_Code = Units::English;
    dialogs_.then_file(folder_ / "a", k_slurp_filter);
    EXPECT_FALSE(save(plot));
    EXPECT_THAT(told().text, HasSubstr("no longer those of this plot"));
}

// A missing discharge is drawn as 0 and has no line in the file.
TEST_F(PlotFileTest, ADayWithoutADischargeDoesNotRefuseAFlowFile) {
    small_.write_results([](SimResults& results, std::size_t row, int, int day) {
        results.ActualQ[row] = 2.0;
        if (day != 2) results.DailyQ[row] = day;
    });
    dialogs_.then_file(folder_ / "a");
    EXPECT_TRUE(save(runoff()));
    EXPECT_EQ(file_bytes(folder_ / "a.flx"), "2001 10 01 1\r\n2001 10 03 3\r\n2001 10 04 4\r\n");
}

TEST_F(PlotFileTest, ABasinThatCannotBeOpenedIsToldWithTheFile) {
    const Plot plot = runoff();
    session_.basin.Work_File = folder_ / "gone.mdb";
    dialogs_.then_file(folder_ / "a", k_slurp_filter);
    EXPECT_FALSE(save(plot));
    EXPECT_THAT(told().text, testing::AllOf(HasSubstr("a.flx' was not written. "), HasSubstr("gone.mdb")));
    EXPECT_THAT(folder_.entries(), testing::IsEmpty());
}

TEST_F(PlotFileTest, APictureWithoutRoomInMemoryIsTold) {
    picture_.clear();
    dialogs_.then_file(folder_ / "a", 0);
    EXPECT_FALSE(save(runoff()));
    EXPECT_THAT(told().text, HasSubstr("no room for a picture of this size in memory"));
    EXPECT_THAT(folder_.entries(), testing::IsEmpty());
}

TEST_F(PlotFileTest, AFullDiskLeavesTheOlderFileWhole) {
    picture_.assign(5000, 'x');
    const Plot plot = runoff();
    const fs::path older = folder_.write("a.bmp", "older");
    dialogs_.then_file(older, 0).then(Answer::Yes);
    {
        const FullDisk disk{100};
        EXPECT_FALSE(save(plot));
    }
    EXPECT_THAT(told().text, testing::AllOf(HasSubstr("a.bmp"), HasSubstr("the disk may be full")));
    EXPECT_EQ(told().title, "Save As");
    EXPECT_EQ(file_bytes(older), "older");
    EXPECT_THAT(folder_.entries(), testing::ElementsAre("a.bmp"));
}

TEST_F(PlotFileTest, AFolderThatIsMissingIsTold) {
    dialogs_.then_file(folder_ / "missing" / "a", 0);
    EXPECT_FALSE(save(runoff()));
    EXPECT_THAT(told().text, HasSubstr("missing"));
    EXPECT_FALSE(fs::exists(folder_ / "missing"));
}

TEST_F(PlotFileTest, AFileThatMayNotBeChangedStays) {
    const fs::path older = folder_.write("a.bmp", "older");
    fs::permissions(older, fs::perms::owner_read);
    dialogs_.then_file(older, 0).then(Answer::Yes);
    EXPECT_FALSE(save(runoff()));
    EXPECT_EQ(file_bytes(older), "older");
}

}  // namespace
}  // namespace nivora
