// Printing the statistics of a run.

#include "tests/shell/main_window_fixture.h"
#include "widgets/grid_view.h"
#include "windows/engine/Results.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::Not;

class ResultsPrintTest : public MainWindowTest {
protected:
    void SetUp() override {
        session_.run.RunTitle = "Year round Simulation";
        session_.run.RunKind = 3;
        session_.run.MeasuredVolume = 123.5F;
        session_.run.CoefficientR2 = -0.125F;
        session_.run.statistics = StatisticsReach::All;
        session_.basin.basin_name = "Upper/North Fork";
        session_.basin.Current_Sim_Name = "wet/cold";
        session_.basin.results_time = 40000.5;
        session_.basin.Units_Code = Units::Metric;
    }
    std::string printed_page() {
        results_.fill();
        results_.show();
        results_.findChild<QPushButton*>(QStringLiteral("Command1(0)"))->click();
        return printers_.jobs().empty() ? "" : printers_.jobs().back().page(0);
    }

    Results results_{WindowContext{session_, quick_help_, program_.path(), printing_}};
};

TEST_F(ResultsPrintTest, PrintsItsLabelsAndThenItsGrid) {
    const std::string page = printed_page();
    EXPECT_EQ(printers_.jobs().back().pages.size(), 1U);
    for (const char* text : {"Hollin Flow Model (Nivora)\n", "Statistics, Year round Simulation\n",
                             "Basin name:   Upper/North Fork\n", "Simulation:   wet/cold\n",
                             "Run Date:   7/6/2009 12:00:00 PM\n", "Measured Runoff Volume (10^6 m³)",
                             "123.5\n", "Coefficient of Determination (R²):", "-0.125\n", "Page 1\n"})
        EXPECT_THAT(page, HasSubstr(text));
    EXPECT_LT(page.find("Run Date:"), page.find("Measured Runoff Volume"));
    EXPECT_THAT(page, Not(HasSubstr("Comments")));
    EXPECT_TRUE(results_.isVisible());
}

TEST_F(ResultsPrintTest, PrintsCommentsBelowTheGrid) {
    open_sample();
    session_.basin.simulations[0].comments = "first line\nsecond 1/2 line";
    select_simulation(session_.basin, 0);
    const std::string page = printed_page();
    EXPECT_THAT(page, HasSubstr("Comments\nfirst line\nsecond 1/2 line\n"));
    EXPECT_LT(page.find("Coefficient of Determination"), page.find("Comments"));
}

TEST_F(ResultsPrintTest, PrintsNotesBelowTheGrid) {
    RunNote note;
    note.zones = {1};
    note.start = *day_count({2001, 6, 1});
    note.end = note.start + 9;
    note.first = note.last = note.start + 3;
    note.days = 1;
    session_.run.notes = {note};
    EXPECT_THAT(printed_page(), HasSubstr("Note: "));
}

TEST_F(ResultsPrintTest, SaysThatInputsHaveChangedSinceTheRun) {
    session_.basin.Input_Changed = true;
    EXPECT_THAT(printed_page(), HasSubstr("Out of date: inputs have changed since the run of"));
}

TEST_F(ResultsPrintTest, PrintsTheWholeGridWhateverIsSelected) {
    auto* grid = results_.findChild<GridView*>(QStringLiteral("SpdStat"));
    results_.fill();
    grid->selectAll();
    EXPECT_THAT(printed_page(), HasSubstr("Coefficient of Determination"));
    grid->selectionModel()->select(QItemSelection(grid->model()->index(0, 0), grid->model()->index(0, 1)),
                                   QItemSelectionModel::ClearAndSelect);
    EXPECT_THAT(printed_page(), HasSubstr("Coefficient of Determination"));
}

}  // namespace
}  // namespace nivora
