#include "tests/windows/climate/control_window_fixture.h"

#include <QTextBrowser>
#include <set>

namespace nivora {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

/// Runs the steps one after the other by clicks. The figures are those of the six days computed by hand.
class ControlStepsTest : public ControlWindowTest {
protected:
    void lose_temperature() { change("UPDATE SimResults SET TAvg = NULL, TAvgCC = NULL WHERE Zone = 1"); }
};

TEST_F(ControlStepsTest, EachStepDisablesItsBoxAndEnablesTheNext) {
    open_six_days();
    choose(k_scenario);
    for (int step = 1; step <= 6; ++step) {
        tick(step);
        std::vector<int> taken;
        for (int done = 1; done <= step; ++done) taken.push_back(done);
        EXPECT_EQ(ticked(), taken);
        EXPECT_EQ(enabled(), step < 6 ? std::vector{step + 1} : std::vector<int>{});
    }
    EXPECT_EQ(messages(), 0U);
}

TEST_F(ControlStepsTest, StepOneFixesTheChoiceAndOffersAbort) {
    open_six_days();
    run_to(1);
    EXPECT_FALSE(scenario()->isEnabled());
    EXPECT_FALSE(reuse()->isEnabled());
    EXPECT_TRUE(button(1)->isEnabled());
    EXPECT_FALSE(button(3)->isEnabled());
}

TEST_F(ControlStepsTest, TheRunMenuSaysWhichStepRuns) {
    open_six_days();
    std::vector<std::string> captions;
    desktop_.refresh_main_window = [&] {
        if (captions.empty() || captions.back() != session_.shell.run_caption)
            captions.push_back(session_.shell.run_caption);
    };
    run_to(6);
    EXPECT_THAT(captions, ElementsAre("Running Step1", "Running Step2", "Running Step3", "Running Step4",
                                      "Running Step5", "Running Step6", "Run completed"));
}

TEST_F(ControlStepsTest, ReportsAndPlotsAreDisabledFromStepFourUntilTheRunCompletes) {
    open_six_days();
    session_.shell.reports = true;
    session_.shell.graphics = true;
    run_to(3);
    EXPECT_TRUE(session_.shell.reports && session_.shell.graphics);
    tick(4);
    EXPECT_FALSE(session_.shell.reports || session_.shell.graphics);
    tick(5);
    EXPECT_FALSE(session_.shell.reports || session_.shell.graphics);
    tick(6);
    EXPECT_TRUE(session_.shell.reports && session_.shell.graphics);
}

TEST_F(ControlStepsTest, StatisticsAppearColumnByColumn) {
    open_six_days();
    choose(k_scenario);
    const std::vector<std::vector<int>> shown{{1, 2},       {1, 2, 3},    {1, 2, 3, 4},
                                              {1, 2, 3, 4}, {1, 2, 3, 4}, {1, 2, 3, 4, 5}};
    for (int step = 1; step <= 6; ++step) {
        tick(step);
        EXPECT_TRUE(statistics()->isVisible());
        EXPECT_EQ(shown_columns(), shown.at(static_cast<std::size_t>(step - 1))) << step;
    }
    EXPECT_THAT(row_of(statistics(), 2),
                ElementsAre("Average Measured Runoff (m³/s): ", "10", "10", "10", "99.41406"));
    EXPECT_THAT(row_of(statistics(), 5),
                ElementsAre("Average Computed Runoff  (m³/s): ", "3.75", "66.25", "99.41406", "72.65625"));
    EXPECT_THAT(row_of(statistics(), 3), Each(std::string{}));
    EXPECT_THAT(row_of(statistics(), 6), Each(std::string{}));
    EXPECT_EQ(cell(statistics(), 7, 2), "62.5");
    EXPECT_EQ(cell(statistics(), 8, 2), "-43.125");
    EXPECT_EQ(cell(statistics(), 8, 3), "-3268.125");
    EXPECT_EQ(cell(statistics(), 7, 5), "");
    EXPECT_EQ(cell(statistics(), 8, 5), "");
}

TEST_F(ControlStepsTest, TheSummaryFillsWithTheSteps) {
    open_six_days();
    run_to(1);
    // 20 and 7.5 m³/s for one day, in 10^6 m³.
    EXPECT_THAT(row_of(summary(), 1), ElementsAre("1.73", "", "1.73"));
    EXPECT_THAT(row_of(summary(), 2), ElementsAre("0.65", "", "0.65"));
    EXPECT_THAT(row_of(summary(), 3), ElementsAre("", "", ""));
    tick(2);
    EXPECT_THAT(row_of(summary(), 3), ElementsAre("11.45", "", "11.45"));
    tick(3);
    // 40 and 397.65625 m³/s for one day.
    EXPECT_THAT(row_of(summary(), 1), ElementsAre("1.73", "3.46", "5.18"));
    EXPECT_THAT(row_of(summary(), 2), ElementsAre("0.65", "34.36", "35.01"));
    tick(4);
    tick(5);
    EXPECT_THAT(row_of(summary(), 3), ElementsAre("11.45", "", "11.45"));
    EXPECT_EQ(cell(summary(), 4, 1), "Seasonal Summary of Runoff");
    tick(6);
    EXPECT_THAT(row_of(summary(), 3), ElementsAre("11.45", "25.11", "36.56"));
    EXPECT_EQ(cell(summary(), 4, 1), "(click a cell to see corresponding value(s) in the Statistics grid)");
}

TEST_F(ControlStepsTest, AFinishedRunIsLeftByDoneAndCanBePrinted) {
    open_six_days();
    run_to(6);
    EXPECT_TRUE(button(0)->isEnabled());
    EXPECT_FALSE(button(1)->isEnabled());
    EXPECT_TRUE(button(3)->isEnabled());
    EXPECT_TRUE(session_.run.results_enabled);
    EXPECT_TRUE(session_.basin.Output_Valid);
    EXPECT_TRUE(std::filesystem::exists(program_ / "NVR_DfGN.out"));
}

TEST_F(ControlStepsTest, ASuspendedStepCanBeRepeated) {
    open_six_days();
    run_to(1);
    lose_temperature();
    tick(2);
    EXPECT_EQ(last_message().text, "Climate change, step 2 was 'cancelled' by the user");
    EXPECT_EQ(last_message().title, "CC run suspended");
    EXPECT_THAT(ticked(), ElementsAre(1));
    EXPECT_THAT(enabled(), ElementsAre(2));
    EXPECT_FALSE(session_.run.results_enabled);
    change("UPDATE SimResults SET TAvg = 0, TAvgCC = 1 WHERE Zone = 1");
    const std::size_t told = messages();
    tick(2);
    EXPECT_EQ(messages(), told);
    EXPECT_THAT(ticked(), ElementsAre(1, 2));
    EXPECT_THAT(enabled(), ElementsAre(3));
}

TEST_F(ControlStepsTest, TheBoxOfASuspendedStepIsEnabledAgainWhenTheMessageSaysSo) {
    open_six_days();
    run_to(1);
    lose_temperature();
    std::vector<std::string> told;
    dialogs_.while_shown = [&] {
        told.push_back(dialogs_.title());
        if (dialogs_.title() != "CC run suspended") return;
        EXPECT_THAT(ticked(), ElementsAre(1));
        EXPECT_THAT(enabled(), ElementsAre(2));
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        // The results of the step before stay until the user has closed the message.
        EXPECT_TRUE(session_.run.results_enabled);
        EXPECT_EQ(session_.run.LastRunSimulation, "Test");
    };
    tick(2);
    ASSERT_FALSE(told.empty());
    EXPECT_EQ(told.back(), "CC run suspended");
    EXPECT_EQ(session_.run.LastRunSimulation, "");
}

TEST_F(ControlStepsTest, TheBusyPointerIsUpInStepsOneFourAndFive) {
    for (int step = 1; step <= 6; ++step) {
        SCOPED_TRACE(step);
        std::filesystem::remove(file_);
        dialogs_.while_shown = nullptr;
        SixDays small;
        if (step == 1) small.physical[0].tavg = k_missing;
        open_six_days(small);
        choose(k_scenario);
        for (int before = 1; before < step; ++before) tick(before);
        if (step != 1 && step != 5) lose_temperature();
        std::vector<bool> busy;
        dialogs_.while_shown = [&] {
            const QCursor* pointer = QApplication::overrideCursor();
            if (dialogs_.title() != "CC run suspended")
                busy.push_back(pointer != nullptr && pointer->shape() == Qt::WaitCursor);
        };
        tick(step);
        EXPECT_THAT(busy, testing::AllOf(testing::SizeIs(testing::Ge(1U)),
                                         Each(step == 1 || step == 4 || step == 5)));
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    }
}

TEST_F(ControlStepsTest, TheStatisticsGrowByNinthsOfTheirHeight) {
    open_six_days();
    choose(k_scenario);
    const int before = statistics()->height();
    const int part = before / 9;
    const std::vector<int> parts{3, 4, 5, 5, 5, 6};
    for (int step = 1; step <= 6; ++step) {
        tick(step);
        EXPECT_EQ(statistics()->height(), before + part * parts.at(static_cast<std::size_t>(step - 1)));
        int width = 2 * statistics()->frameWidth();
        for (const int column : shown_columns()) width += statistics()->columnWidth(column - 1);
        EXPECT_EQ(statistics()->width(), width) << step;
        QApplication::processEvents();
        EXPECT_FALSE(statistics()->verticalScrollBar()->isVisible()) << step;
        EXPECT_FALSE(statistics()->horizontalScrollBar()->isVisible()) << step;
    }
}

TEST_F(ControlStepsTest, ARepeatedStepDoesNotMakeTheStatisticsGrowAgain) {
    open_six_days();
    run_to(1);
    lose_temperature();
    tick(2);
    const QSize grown = statistics()->size();
    tick(2);
    EXPECT_EQ(statistics()->size(), grown);
}

TEST_F(ControlStepsTest, AMissingDischargeLeavesTheVolumesAndNoComparison) {
    SixDays small;
    small.physical[1].runoff = k_missing;
    open_six_days(small);
    run_to(1);
    EXPECT_EQ(last_message().title, "Run statistics failed, probably caused by missing/invalid data");
    EXPECT_THAT(ticked(), ElementsAre(1));
    // 9 m³/s on the one measured day, and 7.5 on both.
    EXPECT_EQ(cell(statistics(), 2, 2), "9");
    EXPECT_EQ(cell(statistics(), 5, 2), "3.75");
    EXPECT_EQ(cell(statistics(), 7, 2), "");
    EXPECT_EQ(cell(statistics(), 8, 2), "");
    EXPECT_THAT(row_of(summary(), 1), ElementsAre("0.78", "", "0.78"));
    EXPECT_THAT(row_of(summary(), 2), ElementsAre("0.65", "", "0.65"));
}

TEST_F(ControlStepsTest, NotesShowALinkToTheirHelp) {
    SixDays small;
    for (PhysicalRow& row : small.physical) row.precip = 0.0F;  // a winter that leaves no snow on the ground
    open_six_days(small);
    auto* notes = find<QTextBrowser>("txtNotes");
    run_to(4);
    EXPECT_FALSE(notes->isVisible());
    tick(5);
    EXPECT_TRUE(notes->isVisible());
    EXPECT_THAT(
        from_qt(notes->toPlainText()),
        testing::StartsWith("2 notes: what to do\nStep 5: In zone 1, nothing of the winter from 03/30/2001"));
    EXPECT_THAT(from_qt(notes->toPlainText()),
                testing::HasSubstr("\nStep 5: In zone 2, nothing of the winter"));
    emit notes->anchorClicked(QUrl(QStringLiteral("help")));
    EXPECT_THAT(desktop_.topics, ElementsAre(51));
    tick(6);
    EXPECT_TRUE(notes->isVisible());
}

TEST_F(ControlStepsTest, ARepeatedStepDoesNotAddItsNotesTwice) {
    SixDays small;
    for (PhysicalRow& row : small.physical) row.precip = 0.0F;
    open_six_days(small);
    run_to(4);
    std::filesystem::create_directory(program_ / "NVR_DfGN.out");
    const QRect indicator{0, 0, 16, box(5)->height()};
    QTest::mouseClick(box(5), Qt::LeftButton, {}, indicator.center());
    EXPECT_EQ(last_message().title, "CC run suspended");
    EXPECT_FALSE(session_.basin.Output_Valid);
    std::filesystem::remove(program_ / "NVR_DfGN.out");
    tick(5);
    EXPECT_EQ(session_.run.notes.size(), 2U);
}

TEST_F(ControlStepsTest, ThePlaceholderNoneOpensNoStep) {
    open_six_days();
    change("INSERT INTO ClimateScenarioIndex (SimulationFile, ScenarioFile) VALUES ('Test', 'None')");
    open();
    choose("None");
    EXPECT_THAT(enabled(), IsEmpty());
    choose(k_scenario);
    EXPECT_THAT(enabled(), ElementsAre(1));
}

TEST_F(ControlStepsTest, ASuspendedStepOneKeepsTheChoiceFixed) {
    SixDays small;
    small.physical[0].tavg = k_missing;
    open_six_days(small);
    run_to(1);
    EXPECT_EQ(last_message().title, "CC run suspended");
    EXPECT_THAT(ticked(), IsEmpty());
    EXPECT_THAT(enabled(), ElementsAre(1));
    EXPECT_FALSE(scenario()->isEnabled());
    EXPECT_FALSE(reuse()->isEnabled());
    EXPECT_TRUE(button(1)->isEnabled());
}

TEST_F(ControlStepsTest, ASuspendedStepFourKeepsReportsAndPlotsDisabled) {
    open_six_days();
    run_to(3);
    lose_temperature();
    tick(4);
    EXPECT_THAT(enabled(), ElementsAre(4));
    EXPECT_FALSE(session_.shell.reports || session_.shell.graphics);
    EXPECT_EQ(shown_columns(), (std::vector{1, 2, 3, 4}));
}

TEST_F(ControlStepsTest, AFailedScenarioLetsAnotherOneBeChosen) {
    write(SixDays{});
    add_scenario("Empty", {});
    add_scenario(k_scenario, {SixDays{}.plus_one});
    open();
    choose("Empty");
    tick(1);
    EXPECT_EQ(last_message().title, "The current scenario is empty");
    EXPECT_EQ(messages(), 1U);
    EXPECT_THAT(ticked(), IsEmpty());
    EXPECT_THAT(enabled(), ElementsAre(1));
    EXPECT_TRUE(scenario()->isEnabled());
    // The results were rebuilt, so they contain nothing to reuse.
    EXPECT_FALSE(reuse()->isEnabled());
    EXPECT_TRUE(button(1)->isEnabled());
    EXPECT_FALSE(statistics()->isVisible());
    EXPECT_EQ(session_.shell.run_caption, "&Run");
    run_to(1);
    EXPECT_THAT(ticked(), ElementsAre(1));
}

TEST_F(ControlStepsTest, InvalidDatesUntickTheBox) {
    write(SixDays{});
    add_scenario(k_scenario, {SixDays{}.plus_one}, static_cast<double>(SixDays::first_day() - 1));
    open();
    run_to(1);
    EXPECT_EQ(last_message().title, "Invalid dates");
    EXPECT_EQ(messages(), 1U);
    EXPECT_THAT(ticked(), IsEmpty());
    EXPECT_THAT(enabled(), ElementsAre(1));
    EXPECT_EQ(session_.run.ClimateStep, 0);
}

TEST_F(ControlStepsTest, RefusedReuseGoesBackToTheStateBeforeTheClick) {
    open_six_days();
    run_to(6);
    press(0);
    open();
    choose(k_scenario);
    reuse()->setChecked(true);
    dialogs_.then(Answer::No);
    tick(1);
    EXPECT_THAT(ticked(), IsEmpty());
    EXPECT_THAT(enabled(), ElementsAre(1));
    EXPECT_TRUE(scenario()->isEnabled());
    EXPECT_TRUE(reuse()->isEnabled());
    EXPECT_TRUE(reuse()->isChecked());
    EXPECT_TRUE(button(0)->isEnabled());
    EXPECT_FALSE(button(1)->isEnabled());
    EXPECT_EQ(session_.shell.run_caption, "&Run");
    EXPECT_EQ(session_.run.ClimateStep, 6);
}

TEST_F(ControlStepsTest, ReuseRunsUnderTheNameAuxiliary) {
    open_six_days();
    run_to(6);
    press(0);
    open();
    reuse()->setChecked(true);
    scenario()->setCurrentIndex(-1);
    EXPECT_THAT(enabled(), IsEmpty());  // even so, the winter end date comes from a scenario
    dialogs_.then(Answer::Yes);
    run_to(6);
    EXPECT_EQ(session_.run.ScenarioName, "Auxiliary");
    EXPECT_THAT(row_of(summary(), 3), ElementsAre("11.45", "25.11", "36.56"));
}

/// A click on a cell of the summary shows where its figure comes from.
class ControlLightsTest : public ControlWindowTest {
protected:
    using Cells = std::set<std::pair<int, int>>;

    void click(int row, int column) {
        const auto* grid = summary();
        const QRect place = grid->visualRect(grid->model()->index(row - 1, column - 1));
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, place.center());
    }
    /// Row and column, from 1, of the light cyan cells.
    static Cells lit(const GridView* grid) {
        Cells cells;
        for (int row = 0; row < grid->model()->rowCount(); ++row) {
            for (int column = 0; column < grid->model()->columnCount(); ++column) {
                const QVariant colour = grid->model()->index(row, column).data(Qt::BackgroundRole);
                if (colour.isValid() && colour.value<QBrush>().color() == QColor(0, 255, 255))
                    cells.emplace(row + 1, column + 1);
            }
        }
        return cells;
    }
};

TEST_F(ControlLightsTest, NothingIsHighlightedBeforeStepSix) {
    open_six_days();
    run_to(5);
    click(1, 1);
    EXPECT_THAT(lit(summary()), IsEmpty());
    EXPECT_THAT(lit(statistics()), IsEmpty());
}

TEST_F(ControlLightsTest, EachCellHighlightsItsSources) {
    open_six_days();
    run_to(6);
    struct Case {
        int row;
        int column;
        Cells sources;
    };
    for (const Case& of : {Case{1, 1, {{1, 2}}}, Case{1, 2, {{1, 4}}}, Case{1, 3, {{1, 2}, {1, 4}}},
                           Case{2, 1, {{4, 2}}}, Case{2, 2, {{4, 4}}}, Case{2, 3, {{4, 2}, {4, 4}}},
                           Case{3, 1, {{4, 3}}}, Case{3, 2, {{4, 5}}}, Case{3, 3, {{4, 5}, {4, 3}}}}) {
        click(of.row, of.column);
        EXPECT_EQ(lit(summary()), (Cells{{of.row, of.column}}));
        EXPECT_EQ(lit(statistics()), of.sources) << of.row << ' ' << of.column;
    }
}

TEST_F(ControlLightsTest, TheLineBelowTheCellsHighlightsNothing) {
    open_six_days();
    run_to(6);
    click(2, 2);
    click(4, 1);
    EXPECT_EQ(lit(summary()), (Cells{{2, 2}}));
    EXPECT_EQ(lit(statistics()), (Cells{{4, 4}}));
}

}  // namespace
}  // namespace nivora
