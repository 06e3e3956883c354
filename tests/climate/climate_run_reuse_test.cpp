#include "tests/climate/climate_run_fixture.h"

#include <set>

namespace nivora {
namespace {

using testing::Each;
using testing::ElementsAre;

TEST(ClearedColumns, AreThoseOfThreeRangesOfPositions) {
    // Positions from 0: 13 to 17, 39 to 45, 47 to 54. DailyQ at 46 and the last two,
    // AZMexclWA and AZMwork, are not among them.
    const std::set<std::string> cleared{
        "SCAclim",   "SCAclimWA",    "SCAclimWAMA", "ZoneDD",        "ZoneDDCC",  "SumAT",   "NewMelt",
        "M1S",       "aT",           "SnowOnStore", "ZonalMelt",     "TotalMelt", "MDCincl", "MDCexcl",
        "MDCexclWA", "MDCexclWAnew", "MeltOffset",  "DailyQPresent", "AZMincl",   "AZMexcl"};
    SimResults table;
    table.resize(3);
    SimResults::visit(table, [](auto& column) { fill(column, 7.0); });
    Clear_CC_Work_Columns(table);
    std::size_t position = 0;
    SimResults::visit(table, [&](const auto& column) {
        const std::string name = sim_results_table().fields[position++].name;
        for (const auto value : column)
            EXPECT_EQ(static_cast<double>(value), cleared.contains(name) ? 0.0 : 7.0) << name;
    });
    EXPECT_EQ(position, 57U);
    EXPECT_EQ(cleared.size(), 20U);
}

/// Step 1 on existing results whose daily values were edited by hand.
class ReusedResultsTest : public ClimateRunTest {
protected:
    void SetUp() override {
        open_six_days();
        run_to(6);
        end_climate(context(), false);
        begin_climate(context());
        climate.scenario = k_scenario;
        climate.reuse_results = true;
    }
    void warm_by_hand() { change("UPDATE SimResults SET TAvgCC = TAvgCC + 1 WHERE Date <= 36980"); }
};

TEST_F(ReusedResultsTest, TheQuestionNamesTheDateAndTheScenarioThatItIsTakenFrom) {
    dialogs.then(Answer::Yes);
    run_to(1);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    const Message& question = last_message().message;
    EXPECT_EQ(question.text,
              "You are about to use the results of your most recent climate change scenario.\r\nThe winter "
              "end date, 3/31/2001, is taken from Warmer.  Continue?");
    EXPECT_EQ(question.title, "Climate change validation");
    EXPECT_EQ(question.buttons, Buttons::YesNo);
}

TEST_F(ReusedResultsTest, YesRunsOnTheResultsAsTheyStandUnderAnotherName) {
    ASSERT_EQ(SixDays::winter_end(), 36981);  // 31 March 2001
    warm_by_hand();                           // 30 March only: 2 degrees instead of 1
    const SimResults before = results();
    dialogs.then(Answer::Yes);
    run_to(1);
    EXPECT_EQ(run.ScenarioName, "Auxiliary");
    EXPECT_EQ(climate.WinterEndDate, SixDays::winter_end());
    EXPECT_EQ(run.RunEnd, SixDays::winter_end());
    const SimResults after = results();
    EXPECT_EQ(after.TAvgCC, before.TAvgCC);
    EXPECT_THAT(days_of(after, after.TAvgCC, 1, 1, 3), ElementsAre(2, 1, 3));
    // Columns that the winter's run does not write itself are cleared, on winter and on summer days.
    EXPECT_THAT(after.SCAclimWAMA, Each(0.0F));
    EXPECT_THAT(after.MDCexcl, Each(0.0F));
    EXPECT_THAT(after.DailyQPresent, Each(0.0));
    EXPECT_THAT(days_of(after, after.ZoneDDCC, 1, 1, 6), Each(0.0F));
    EXPECT_THAT(days_of(after, after.AZMwork, 1, 3, 6), ElementsAre(0.375F, 0.5F, 0.5F, 0.5F));
    EXPECT_THAT(days_of(after, after.DailyQ, 1, 3, 6), ElementsAre(95.0, 85.0, 61.25, 49.375));
    dialogs.then_text("0").then_text("0");
    for (int number = 2; number <= 6; ++number) EXPECT_EQ(take(number), StepOutcome::Done) << number;
    // Day 1 has an input of 200 m³/s and day 2 of 100, lagged 200 and 150: 100 + 5 = 105; 75 + 52.5.
    EXPECT_EQ(run.FinalQ[2], 127.5F);
    EXPECT_NE(read_whole_file(report, 1U << 20U).find("Climate Scenario: Auxiliary"), std::string::npos);
}

TEST_F(ReusedResultsTest, NoLeavesTheResultsAndTheFlagsAsTheyWere) {
    warm_by_hand();
    const SimResults before = results();
    basin.Basin_Changed = false;
    basin.Input_Changed = false;
    dialogs.then(Answer::No);
    EXPECT_EQ(step(1), StepOutcome::Refused);
    EXPECT_EQ(differing_columns(before, results()), std::vector<std::string>{});
    EXPECT_FALSE(basin.Basin_Changed);
    EXPECT_FALSE(basin.Input_Changed);
    EXPECT_TRUE(basin.Output_Valid);
    EXPECT_EQ(run.LastRunSimulation, "Test");
    EXPECT_EQ(climate.steps_done, 0);
    EXPECT_EQ(dialogs.messages().size(), 1U);  // and no message that it was cancelled
    // The results are still those of the previous evaluation, with its summer and its name.
    EXPECT_EQ(run.ClimateStep, 6);
    EXPECT_EQ(run.RunStart, date_of(2001, 4, 1));
    EXPECT_EQ(run.RunEnd, date_of(2001, 4, 4));
    EXPECT_EQ(run.ScenarioName, "Warmer");
    EXPECT_EQ(run.ClimateSums[1][2][1], 1.0F);
    end_climate(context(), false);
    EXPECT_TRUE(basin.Output_Valid);
}

TEST_F(ReusedResultsTest, AScenarioOfItsOwnRebuildsTheResults) {
    warm_by_hand();
    climate.reuse_results = false;
    run_to(1);
    EXPECT_EQ(run.ScenarioName, "Warmer");
    const SimResults table = results();
    EXPECT_THAT(days_of(table, table.TAvgCC, 1, 1, 3), ElementsAre(1, 1, 3));
    EXPECT_THAT(table.AZMwork, Each(testing::IsNan()));
}

TEST_F(ReusedResultsTest, NoScenarioRowIsAppliedSoAnEmptyScenarioDoes) {
    change("DELETE FROM Warmer");
    dialogs.then(Answer::Yes);
    run_to(1);
    const SimResults table = results();
    EXPECT_THAT(days_of(table, table.TAvgCC, 2, 1, 3), ElementsAre(1, 1, 3));
}

TEST_F(ReusedResultsTest, WithoutResultsThereIsNothingToUse) {
    change("DROP TABLE SimResults");
    dialogs.then(Answer::Yes);
    suspended(1);
    ASSERT_EQ(dialogs.messages().size(), 3U);  // the question, the reason, and that the step was cancelled
    const Message& reason = dialogs.messages()[1].message;
    EXPECT_EQ(reason.icon, Icon::Stop);
    EXPECT_THAT(reason.text, testing::HasSubstr("SimResults"));
    EXPECT_EQ(climate.steps_done, 0);
    EXPECT_FALSE(climate.statistics[1]);
    EXPECT_FALSE(run.results_enabled);
    EXPECT_EQ(run.LastRunSimulation, "");
    EXPECT_FALSE((BasinDatabase{file, Access::ReadOnly}.has_table("SimResults")));
    end_climate(context(), false);
    EXPECT_FALSE(basin.Output_Valid);
}

/// Results that are edited between two steps.
class EditedBetweenStepsTest : public ClimateRunTest {};

TEST_F(EditedBetweenStepsTest, CountsInTheNextStep) {
    open_six_days();
    run_to(1);
    change("UPDATE SimResults SET TAvgCC = 2 WHERE Date = " + std::to_string(SixDays::first_day()));
    run_to(2, 2);
    EXPECT_EQ(run.FinalQ[2], 127.5F);  // day 1: 200 / 2 + 5 = 105; day 2: 150 / 2 + 52.5
    // Zone 2 takes the basin's temperature, which is in zone 1's row.
    change("UPDATE SimResults SET TAvg = 4 WHERE Zone = 1 AND Date = " +
           std::to_string(SixDays::first_day() + 2));
    run_to(3, 3);
    const SimResults table = results();
    // 2 cm x 0.875 in both zones: 350 m³/s on the first day, so 175 + 1.25.
    EXPECT_THAT(days_of(table, table.DailyQPresent, 1, 3, 3), ElementsAre(176.25));
    EXPECT_THAT(days_of(table, table.TAvg, 2, 3, 3), ElementsAre(4.0F));
}

/// Scenarios that cannot be applied.
class FailingScenarioTest : public ClimateRunTest {
protected:
    void expect_refused(const std::string& title) {
        basin.Output_Valid = false;
        EXPECT_EQ(step(1), StepOutcome::NotRun);
        ASSERT_EQ(dialogs.messages().size(), 1U);
        EXPECT_EQ(last_message().message.title, title);
        EXPECT_EQ(last_message().message.icon, Icon::Stop);
        EXPECT_FALSE(basin.Output_Valid);
        EXPECT_EQ(climate.steps_done, 0);
        EXPECT_FALSE(climate.statistics[1]);
        EXPECT_EQ(run.ClimateStep, 1);  // the results were built again, and the file has no others
    }
};

TEST_F(FailingScenarioTest, AnEmptyOneIsRefusedAndAnotherCanBeChosen) {
    open(SixDays{}, static_cast<double>(SixDays::winter_end()), {});
    expect_refused("The current scenario is empty");
    write_scenario(file, "Second", static_cast<double>(SixDays::winter_end()), {SixDays{}.plus_one});
    climate.scenario = "Second";
    run_to(1);
    EXPECT_EQ(run.ScenarioName, "Second");
}

TEST_F(FailingScenarioTest, AMissingValueIsRefusedAndLeavesTheRowsBefore) {
    SixDays small;
    ScenarioRow blank = small.plus_one;
    blank.factor = k_missing;
    open(small, static_cast<double>(SixDays::winter_end()), {small.plus_one, blank});
    expect_refused("Missing/invalid data in climate change scenario");
    const SimResults table = results();
    EXPECT_THAT(days_of(table, table.TAvgCC, 1, 1, 3), ElementsAre(1, 1, 3));
    EXPECT_TRUE(basin.Basin_Changed);  // the results in the file are new
}

TEST_F(FailingScenarioTest, AMissingTableIsRefused) {
    open_six_days();
    change("DROP TABLE Warmer");
    expect_refused("Error in climate change definition");
}

TEST_F(FailingScenarioTest, ARefusedInitialRunoffRefusesTheStep) {
    SixDays small;
    small.simulation.initial_runoff = 20.0F;  // against 9 measured
    open(small, static_cast<double>(SixDays::winter_end()));
    dialogs.then(Answer::Cancel);
    EXPECT_EQ(step(1), StepOutcome::NotRun);
    EXPECT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(results().size(), 0U);
    dialogs.then(Answer::Ok);
    run_to(1);
    EXPECT_EQ(run.FinalQ[1], 5.0F);  // 20 / 2 / 2
}

TEST_F(FailingScenarioTest, MissingDataLeaveTheEvaluationBefore) {
    open_six_days();
    run_to(6);
    const SimResults before = results();
    change("DELETE FROM Test");
    begin_climate(context());
    climate.scenario = k_scenario;
    EXPECT_EQ(step(1), StepOutcome::Refused);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(last_message().message.text,
              "The current database is missing variables and/or parameters needed to run 'Test'!");
    EXPECT_EQ(last_message().message.title, "Run aborting, possible invalid simulation definition");
    // The results and the run's values are still those of that evaluation.
    EXPECT_EQ(differing_columns(before, results()), std::vector<std::string>{});
    EXPECT_EQ(run.ClimateStep, 6);
    EXPECT_EQ(run.RunEnd, SixDays::first_day() + SixDays::k_days - 1);
    end_climate(context(), false);
    EXPECT_TRUE(basin.Output_Valid);
}

TEST_F(FailingScenarioTest, ABuildingThatEndsInAFatalErrorGoesOnWithoutTheScenario) {
    open_six_days();
    basin.zones_text = "3";
    run_to(1);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(last_message().message.title, "Fatal error");
    const SimResults table = results();
    EXPECT_EQ(table.TAvgCC, table.TAvg);
}

}  // namespace
}  // namespace nivora
