#include "tests/windows/climate/control_window_fixture.h"

#include <SQLiteCpp/Database.h>

namespace nivora {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

/// The state of the window while a message is shown, and after a step that failed.
class ControlBoxesTest : public ControlWindowTest {
protected:
    void end_winter_before_the_simulation() {
        change("UPDATE ClimateScenarioIndex SET WinterEndDate = " + std::to_string(SixDays::first_day() - 1));
    }
    static bool is_busy() {
        const QCursor* pointer = QApplication::overrideCursor();
        return pointer != nullptr && pointer->shape() == Qt::WaitCursor;
    }
    /// The numbers of the buttons that are enabled.
    std::vector<int> usable() {
        std::vector<int> numbers;
        for (int number = 0; number < 4; ++number) {
            if (button(number)->isEnabled()) numbers.push_back(number);
        }
        return numbers;
    }
    void expect_as_before_a_click() {
        EXPECT_THAT(ticked(), IsEmpty());
        EXPECT_THAT(enabled(), ElementsAre(1));
        EXPECT_TRUE(scenario()->isEnabled());
        EXPECT_TRUE(reuse()->isEnabled());
        EXPECT_THAT(usable(), ElementsAre(0, 2));  // Done and Help
        EXPECT_EQ(session_.shell.run_caption, "&Run");
        EXPECT_FALSE(is_busy());
    }
};

TEST_F(ControlBoxesTest, InvalidDatesLeaveAllAsBeforeTheClick) {
    open_six_days();
    end_winter_before_the_simulation();
    choose(k_scenario);
    dialogs_.while_shown = [&] {
        EXPECT_FALSE(is_busy());
        EXPECT_EQ(session_.shell.run_caption, "&Run");
    };
    tick(1);
    EXPECT_EQ(last_message().title, "Invalid dates");
    expect_as_before_a_click();
}

TEST_F(ControlBoxesTest, ARefusedReuseAfterAnAbandonedRunChangesNothingEither) {
    open_six_days();
    run_to(1);
    press(1);
    open();
    choose(k_scenario);
    reuse()->setChecked(true);
    dialogs_.while_shown = [&] {
        EXPECT_TRUE(is_busy());
        EXPECT_EQ(session_.shell.run_caption, "&Run");
    };
    dialogs_.then(Answer::No);
    tick(1);
    expect_as_before_a_click();
    EXPECT_TRUE(reuse()->isChecked());
}

TEST_F(ControlBoxesTest, MissingDataLeaveAllAsBeforeTheClick) {
    open_six_days();
    change("DELETE FROM Test");
    run_to(1);
    EXPECT_EQ(last_message().title, "Run aborting, possible invalid simulation definition");
    expect_as_before_a_click();
}

TEST_F(ControlBoxesTest, AfterAFailedScenarioOnlyAbortClosesTheWindowEvenIfDatesAreInvalid) {
    write(SixDays{});
    add_scenario("Empty", {});
    open();
    choose("Empty");
    tick(1);
    EXPECT_THAT(usable(), ElementsAre(1, 2));  // Abort and Help
    EXPECT_FALSE(reuse()->isEnabled());
    end_winter_before_the_simulation();
    tick(1);
    EXPECT_EQ(last_message().title, "Invalid dates");
    EXPECT_THAT(usable(), ElementsAre(1, 2));
    EXPECT_FALSE(reuse()->isEnabled());
    EXPECT_TRUE(scenario()->isEnabled());
}

TEST_F(ControlBoxesTest, AnEvaluationThatHasBegunIsLeftByAbortAlsoAfterARefusal) {
    for (const bool reuses : {false, true}) {
        SCOPED_TRACE(reuses);
        std::filesystem::remove(file_);
        open_six_days();
        choose(k_scenario);
        if (reuses) {
            tick(1);
            press(1);
            open();
            choose(k_scenario);
            reuse()->setChecked(true);
            dialogs_.then(Answer::Yes);
        }
        change(reuses ? "UPDATE SimResults SET TAvg = NULL" : "UPDATE PhysicalData SET TAvg = NULL");
        tick(1);
        EXPECT_EQ(last_message().title, "CC run suspended");
        EXPECT_THAT(usable(), ElementsAre(1, 2));
        end_winter_before_the_simulation();
        tick(1);
        EXPECT_EQ(last_message().title, "Invalid dates");
        EXPECT_THAT(usable(), ElementsAre(1, 2));
        EXPECT_EQ(reuse()->isEnabled(), reuses);
        press(1);
        EXPECT_EQ(session_.run.ClimateStep, 0);
    }
}

TEST_F(ControlBoxesTest, AStepThatFailsWhenItIsRepeatedLosesItsFigures) {
    open_six_days();
    choose(k_scenario);
    {
        // Another program that is reading prevents the storing of the results, after the model has run.
        SQLite::Database other{path_text(file_), SQLite::OPEN_READONLY};
        other.exec("BEGIN");
        static_cast<void>(other.execAndGet("SELECT count(*) FROM SimulationIndex"));
        tick(1);
    }
    EXPECT_EQ(last_message().title, "CC run suspended");
    EXPECT_EQ(cell(statistics(), 1, 2), "1.728");
    EXPECT_EQ(cell(summary(), 1, 1), "1.73");
    change("UPDATE PhysicalData SET TAvg = NULL");
    tick(1);
    EXPECT_EQ(last_message().title, "CC run suspended");
    for (int row = 1; row <= 8; ++row) EXPECT_EQ(cell(statistics(), row, 2), "") << row;
    EXPECT_EQ(cell(summary(), 1, 1), "");
}

TEST_F(ControlBoxesTest, TheStepIsNamedOnceTheModelStarts) {
    SixDays small;
    small.simulation.initial_runoff = 20.0F;  // but the measured value is 9
    open_six_days(small);
    std::vector<std::string> captions;
    dialogs_.while_shown = [&] { captions.push_back(session_.shell.run_caption); };
    dialogs_.then(Answer::Ok);
    run_to(1);
    EXPECT_THAT(captions, ElementsAre("&Run"));
    EXPECT_EQ(session_.shell.run_caption, "Running Step1");
}

TEST_F(ControlBoxesTest, ReportsAndPlotsAreDisabledBeforeStepFourRuns) {
    open_six_days();
    session_.shell.reports = true;
    session_.shell.graphics = true;
    run_to(3);
    std::vector<std::string> told;
    desktop_.refresh_main_window = [&] {
        if (session_.shell.run_caption == "Running Step4")
            told.push_back(session_.shell.reports || session_.shell.graphics ? "open" : "shut");
    };
    tick(4);
    ASSERT_GE(told.size(), 2U);  // at the start of the step and at its end
    EXPECT_THAT(told, Each(std::string{"shut"}));
}

TEST_F(ControlBoxesTest, NoStepBeforeTheLastIsLeftByDoneOrPrinted) {
    open_six_days();
    choose(k_scenario);
    EXPECT_THAT(usable(), ElementsAre(0, 2));
    for (int step = 1; step <= 5; ++step) {
        tick(step);
        EXPECT_THAT(usable(), ElementsAre(1, 2)) << step;
    }
    tick(6);
    EXPECT_THAT(usable(), ElementsAre(0, 2, 3));
}

TEST_F(ControlBoxesTest, ASuspendedStepSixCanBeRepeatedOrLeft) {
    open_six_days();
    run_to(5);
    change("UPDATE SimResults SET TAvg = NULL, TAvgCC = NULL WHERE Zone = 1");
    tick(6);
    EXPECT_EQ(last_message().text, "Climate change, step 6 was 'cancelled' by the user");
    EXPECT_EQ(last_message().title, "CC run suspended");
    EXPECT_THAT(ticked(), ElementsAre(1, 2, 3, 4, 5));
    EXPECT_THAT(enabled(), ElementsAre(6));
    EXPECT_THAT(usable(), ElementsAre(0, 2, 3));
    EXPECT_EQ(session_.shell.run_caption, "Run completed");
    EXPECT_TRUE(session_.shell.reports && session_.shell.graphics);
    EXPECT_FALSE(session_.run.results_enabled);
    EXPECT_EQ(session_.run.LastRunSimulation, "");
    EXPECT_EQ(cell(summary(), 4, 1), "(click a cell to see corresponding value(s) in the Statistics grid)");
    EXPECT_EQ(shown_columns(), (std::vector{1, 2, 3, 4, 5}));
    EXPECT_EQ(cell(statistics(), 4, 5), "");
    change("UPDATE SimResults SET TAvg = 2, TAvgCC = 3 WHERE Zone = 1");
    tick(6);
    EXPECT_THAT(ticked(), ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_EQ(cell(statistics(), 5, 5), "72.65625");
}

TEST_F(ControlBoxesTest, ASuspendedStepOneShowsItsEmptyStatistics) {
    SixDays small;
    small.physical[0].tavg = k_missing;
    open_six_days(small);
    run_to(1);
    EXPECT_EQ(last_message().title, "CC run suspended");
    EXPECT_TRUE(statistics()->isVisible());
    EXPECT_EQ(shown_columns(), (std::vector{1, 2}));
    EXPECT_EQ(cell(statistics(), 1, 2), "");
}

TEST_F(ControlBoxesTest, VolumesAndComparisonsAreInTheirRows) {
    open_six_days();
    run_to(6);
    // 20 and 40 m³/s for one day, times 0.0864; 7.5, 132.5, 397.65625 and 290.625 computed.
    EXPECT_THAT(row_of(statistics(), 1),
                ElementsAre("Measured Runoff Volume (10^6 m³)", "1.728", "1.728", "3.456", "34.3575"));
    EXPECT_THAT(row_of(statistics(), 4),
                ElementsAre("Computed Runoff Volume (10^6 m³)", "0.648", "11.448", "34.3575", "25.11"));
    EXPECT_THAT(row_of(statistics(), 7),
                ElementsAre("Volume Difference (%): ", "62.5", "-562.5", "-894.1406", ""));
    // Step 3: (4 - (79.75² + 108.375² + 100.6875² + 68.84375²)) / 4 = -8244.6592...
    EXPECT_THAT(row_of(statistics(), 8),
                ElementsAre("Coefficient of Determination (R²):", "-43.125", "-3268.125", "-8244.659", ""));
}

TEST_F(ControlBoxesTest, ReuseWithoutResultsSaysSoAndIsLeftByAbort) {
    open_six_days();
    choose(k_scenario);
    reuse()->setChecked(true);
    dialogs_.then(Answer::Yes);
    tick(1);
    ASSERT_EQ(messages(), 3U);  // the question, the missing data, and that the step was suspended
    EXPECT_EQ(dialogs_.messages()[1].message.text, "The basin file has no table 'SimResults'.");
    EXPECT_EQ(last_message().title, "CC run suspended");
    EXPECT_THAT(enabled(), ElementsAre(1));
    EXPECT_THAT(usable(), ElementsAre(1, 2));
    EXPECT_FALSE(is_busy());
}

/// QuickHelp on the rows of the two grids.
class ControlHelpTest : public ControlWindowTest {
protected:
    std::string explained(const GridView* grid, int row) {
        const QRect place = grid->visualRect(grid->model()->index(row - 1, 0));
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, place.center());
        return from_qt(find<QTextEdit>("lblHelp")->toPlainText());
    }
};

TEST_F(ControlHelpTest, EachRowOfTheGridsExplainsItself) {
    open_six_days();
    run_to(1);
    QTest::mouseClick(find<QToolButton>("btnHelp"), Qt::LeftButton);
    using testing::StartsWith;
    EXPECT_THAT(explained(statistics(), 1), StartsWith("Measured Runoff Volume"));
    EXPECT_THAT(explained(statistics(), 2), StartsWith("Average Measured Runoff"));
    EXPECT_THAT(explained(statistics(), 3), StartsWith("Statistics of each step"));
    EXPECT_THAT(explained(statistics(), 4), StartsWith("Computed Runoff Volume"));
    EXPECT_THAT(explained(statistics(), 5), StartsWith("Average Computed Runoff"));
    EXPECT_THAT(explained(statistics(), 6), StartsWith("Statistics of each step"));
    EXPECT_THAT(explained(statistics(), 7), StartsWith("Volume Difference"));
    EXPECT_THAT(explained(statistics(), 8), StartsWith("Coefficient of Determination"));
    EXPECT_THAT(explained(summary(), 1), StartsWith("Measured: "));
    EXPECT_THAT(explained(summary(), 2), StartsWith("Computed: "));
    EXPECT_THAT(explained(summary(), 3), StartsWith("Climate affected: "));
    EXPECT_THAT(explained(summary(), 4), StartsWith("What the grid shows."));
}

TEST_F(ControlHelpTest, EachControlExplainsItself) {
    open_six_days();
    QTest::mouseClick(find<QToolButton>("btnHelp"), Qt::LeftButton);
    const auto explained_control = [&](QWidget* control) {
        QTest::mouseClick(control, Qt::LeftButton, {}, {8, control->height() / 2});
        return from_qt(find<QTextEdit>("lblHelp")->toPlainText());
    };
    using testing::StartsWith;
    for (int step = 1; step <= 6; ++step)
        EXPECT_THAT(explained_control(box(step)), StartsWith("Step " + std::to_string(step)));
    EXPECT_THAT(explained_control(reuse()), StartsWith("Use the climate changes"));
    EXPECT_THAT(explained_control(scenario()), StartsWith("The scenario to evaluate"));
    EXPECT_THAT(explained_control(button(0)), StartsWith("Done:"));
    EXPECT_THAT(explained_control(button(1)), StartsWith("Abort:"));
    EXPECT_THAT(explained_control(button(2)), StartsWith("Help:"));
    EXPECT_THAT(explained_control(button(3)), StartsWith("Print:"));
    EXPECT_THAT(explained_control(find<QGroupBox>("Frame1")), StartsWith("The scenarios that are defined"));
}

}  // namespace
}  // namespace nivora
