#include "tests/climate/climate_run_fixture.h"

namespace nivora {
namespace {

using testing::Each;
using testing::ElementsAre;

/// What a step changes besides its results: flags, names, input boxes; and how
/// a refused or suspended step is repeated.
class ClimateControlTest : public ClimateRunTest {
protected:
    void expect_valid() {
        EXPECT_FALSE(basin.Input_Changed);
        EXPECT_TRUE(basin.Output_Valid);
        EXPECT_TRUE(run.results_enabled);
        EXPECT_EQ(run.LastRunSimulation, "Test");
    }
    /// Removes the temperature of zone 1 on a day from the results; the next zone inputs need it.
    void lose_temperature(int day) {
        change("UPDATE SimResults SET TAvg = NULL, TAvgCC = NULL WHERE Zone = 1 AND Date = " +
               std::to_string(SixDays::first_day() + day - 1));
    }
    void give_temperature(int day, const char* values) {
        change("UPDATE SimResults SET " + std::string{values} +
               " WHERE Zone = 1 AND Date = " + std::to_string(SixDays::first_day() + day - 1));
    }
};

TEST_F(ClimateControlTest, EveryStepLeavesAValidState) {
    open_six_days();
    basin.Basin_Changed = false;
    for (int number = 1; number <= 6; ++number) {
        basin.Input_Changed = true;
        basin.Output_Valid = false;
        run.results_enabled = false;
        run.LastRunSimulation = "another";
        run_to(number, number);
        expect_valid();
        EXPECT_EQ(climate.steps_done, number);
        EXPECT_EQ(run.ClimateStep, number);
        EXPECT_TRUE(basin.Basin_Changed);
    }
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(ClimateControlTest, AClimateRunIsAYearRoundSimulation) {
    open_six_days();
    run.RunKind = k_melt_season_forecast;
    run.UpdateInterval = 1;
    run_to(3);
    EXPECT_EQ(run.RunKind, 3);
    EXPECT_EQ(run.UpdateInterval, 0);
    const SimResults table = results();
    // A forecast updated every day would start from the measured 9, 11, 9 instead: 75 + 9 / 2 = 79.5 ...
    EXPECT_THAT(days_of(table, table.DailyQPresent, 1, 3, 6),
                ElementsAre(88.75, 119.375, 109.6875, 79.84375));
}

TEST_F(ClimateControlTest, AClimateRunDoesNotAskAboutABlankLatitude) {
    open_six_days();
    basin.latitude_text.clear();
    run_to(6);
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(ClimateControlTest, NamesAndCommentsOfTheScenarioAreKept) {
    open_six_days();
    run_to(1);
    EXPECT_EQ(run.ScenarioName, "Warmer");
    EXPECT_EQ(climate.ScenarioComments, "one degree more");
    EXPECT_EQ(climate.WinterEndDate, SixDays::winter_end());
}

TEST_F(ClimateControlTest, StepOneForgetsTheSumsOfAnEarlierEvaluation) {
    open_six_days();
    for (auto& zone : run.ClimateSums) {
        for (auto& of_step : zone) of_step.fill(7.0F);
    }
    for (auto& zone : run.WinterPrecip) zone.fill(7.0F);
    run_to(1);
    for (std::size_t zone = 1; zone <= 9; ++zone) {
        for (std::size_t step_number = 1; step_number <= 4; ++step_number) {
            for (std::size_t term = 1; term <= 4; ++term)
                EXPECT_EQ(run.ClimateSums[zone][step_number][term], 0.0F) << zone << step_number << term;
        }
        EXPECT_EQ(run.WinterPrecip[zone][1], zone <= 2 ? 4.0F : 0.0F) << zone;
        for (std::size_t term = 2; term <= 4; ++term) EXPECT_EQ(run.WinterPrecip[zone][term], 0.0F) << zone;
    }
}

TEST_F(ClimateControlTest, WinterPrecipitationOfStepFiveStaysZero) {
    open_six_days();
    run_to(6);
    EXPECT_EQ(run.WinterPrecip[1][4], 0.0F);
    EXPECT_EQ(run.WinterPrecip[2][4], 0.0F);
}

TEST_F(ClimateControlTest, AWinterThatEndsBeforeTheSimulationIsRefused) {
    open(SixDays{}, static_cast<double>(SixDays::first_day() - 1));
    basin.Output_Valid = false;
    EXPECT_EQ(step(1), StepOutcome::Refused);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_stop(last_message(),
                "Invalid date range.  Check the starting and ending dates in your current simulation and the "
                "'winter end date' in the selected climate scenario.",
                "Invalid dates");
    EXPECT_FALSE(basin.Output_Valid);
    EXPECT_FALSE(basin.Basin_Changed);
    EXPECT_EQ(climate.steps_done, 0);
    EXPECT_EQ(run.ClimateStep, 0);  // no climate run is in progress
    BasinDatabase database{file, Access::ReadOnly};
    EXPECT_FALSE(database.has_table("SimResults"));
}

TEST_F(ClimateControlTest, TheDatesAreCheckedBeforeTheReuseIsAsked) {
    open_six_days();
    run_to(1);
    change("UPDATE ClimateScenarioIndex SET WinterEndDate = " + std::to_string(SixDays::first_day() - 1));
    climate.reuse_results = true;
    EXPECT_EQ(step(1), StepOutcome::Refused);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(last_message().message.title, "Invalid dates");
}

TEST_F(ClimateControlTest, AScenarioWithoutAWinterEndDateIsRefused) {
    open_six_days();
    change("UPDATE ClimateScenarioIndex SET WinterEndDate = NULL");
    EXPECT_EQ(step(1), StepOutcome::Refused);
    EXPECT_EQ(last_message().message.title, "Invalid dates");
}

TEST_F(ClimateControlTest, AWinterOfOneDayPasses) {
    open(SixDays{}, static_cast<double>(SixDays::first_day()));
    run_to(1);
    EXPECT_EQ(run.RunStart, SixDays::first_day());
    EXPECT_EQ(run.RunEnd, SixDays::first_day());
    EXPECT_EQ(run.FinalQ[1], 5.0F);  // 10 / 2
    run_to(3, 2);
    EXPECT_EQ(run.RunStart, SixDays::first_day() + 1);
    EXPECT_EQ(run.InitialRunoff, 5.0F);
    const SimResults table = results();
    // 31 March has no degree days: 5 / 2 = 2.5. From there as in the six days.
    EXPECT_THAT(days_of(table, table.DailyQPresent, 1, 2, 3), ElementsAre(2.5, 45.0));
}

TEST_F(ClimateControlTest, ADefaultWinterEndTakesItsCalendarDay) {
    open(SixDays{}, static_cast<double>(SixDays::winter_end()) + 0.5);
    run_to(3);
    EXPECT_EQ(climate.WinterEndDate, SixDays::winter_end());
    EXPECT_EQ(run.RunStart, SixDays::winter_end() + 1);
}

TEST_F(ClimateControlTest, AWinterThatEndsOnTheLastDayLeavesAnEmptySummer) {
    open(SixDays{}, static_cast<double>(SixDays::first_day() + 5));
    run_to(2);
    suspended(3);
    ASSERT_EQ(dialogs.messages().size(), 2U);
    EXPECT_EQ(dialogs.messages()[0].message.text,
              "Temperature data is missing for the date range specified.");
    EXPECT_EQ(run.RunStart, SixDays::first_day() + 6);
    EXPECT_EQ(run.RunEnd, SixDays::first_day() + 5);
    EXPECT_EQ(climate.steps_done, 2);
}

TEST_F(ClimateControlTest, ASummerOfOneDayRuns) {
    open(SixDays{}, static_cast<double>(SixDays::first_day() + 4));
    run_to(6);
    EXPECT_EQ(run.RunStart, SixDays::first_day() + 5);
    EXPECT_EQ(run.RunEnd, SixDays::first_day() + 5);
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(ClimateControlTest, ASuspendedStepOneKeepsWhatStartedIt) {
    SixDays small;
    small.physical[0].tavg = k_missing;
    open(small, static_cast<double>(SixDays::winter_end()));
    suspended(1);
    ASSERT_EQ(dialogs.messages().size(), 2U);
    EXPECT_EQ(dialogs.messages()[0].message.title, "Missing data in basin variable table.");
    // The results were built and the stages began, but the table is only half filled.
    EXPECT_TRUE(basin.Input_Changed);
    EXPECT_TRUE(basin.Basin_Changed);
    EXPECT_FALSE(basin.Output_Valid);
    EXPECT_FALSE(run.results_enabled);
    EXPECT_EQ(run.LastRunSimulation, "");
    EXPECT_EQ(run.ClimateStep, 1);
    EXPECT_EQ(climate.steps_done, 0);
}

TEST_F(ClimateControlTest, ASuspendedLaterStepClosesTheResultsAndKeepsTheStepsBefore) {
    open_six_days();
    run_to(1);
    lose_temperature(1);
    suspended(2);
    EXPECT_EQ(climate.steps_done, 1);
    EXPECT_FALSE(run.results_enabled);
    EXPECT_EQ(run.LastRunSimulation, "");
    EXPECT_FALSE(basin.Output_Valid);
    give_temperature(1, "TAvgCC = 1");
    run_to(2, 2);
    expect_valid();
    EXPECT_EQ(run.FinalQ[2], 77.5F);
}

TEST_F(ClimateControlTest, ASuspendedStepTwoStillEndsTheWinterAndPreparesTheTotals) {
    open_six_days();
    run_to(1);
    lose_temperature(1);
    run.MeltSeasonStart = date_of(1999, 1, 1);
    run.zone_totals[0].precipitation = 99.0F;
    suspended(2);
    EXPECT_EQ(run.MeltSeasonStart, SixDays::winter_end());
    for (const std::size_t zone : {0U, 1U}) {
        EXPECT_EQ(run.zone_totals[zone].first_day, SixDays::first_day());
        EXPECT_EQ(run.zone_totals[zone].last_day, SixDays::winter_end());
        EXPECT_EQ(run.zone_totals[zone].precipitation, 4.0F);
        EXPECT_EQ(run.zone_totals[zone].zonal_melt, 0.0F);  // as step 1 left it: no degrees
    }
}

TEST_F(ClimateControlTest, ASuspendedStepThreeIsRepeatedFromTheSameDay) {
    open_six_days();
    run_to(2);
    lose_temperature(4);
    for (int attempt = 1; attempt <= 3; ++attempt) {
        suspended(3);
        EXPECT_EQ(run.RunStart, SixDays::winter_end() + 1) << attempt;
        EXPECT_EQ(run.RunEnd, SixDays::first_day() + 5) << attempt;
        EXPECT_EQ(run.InitialRunoff, 2.5F) << attempt;
    }
    give_temperature(4, "TAvg = 2, TAvgCC = 3");
    run_to(6, 3);
    EXPECT_EQ(run.FinalQ[6], 49.375F);
}

TEST_F(ClimateControlTest, ARunThatTheUserCancelsIsSuspended) {
    SixDays small;
    for (ParameterRow& row : small.parameters) row.xcoeff = 1.0;  // k = 1, which the stage asks about
    open(small, static_cast<double>(SixDays::winter_end()));
    dialogs.then(Answer::Cancel);
    suspended(1);
    // The question, and the message that the step was cancelled.
    EXPECT_EQ(dialogs.messages().size(), 2U);
    dialogs.then(Answer::Ok);
    run_to(1);
    EXPECT_EQ(climate.steps_done, 1);
}

TEST_F(ClimateControlTest, StepFourIsSuspendedByAMissingTemperature) {
    open_six_days();
    run_to(3);
    lose_temperature(5);
    suspended(4);
    give_temperature(5, "TAvg = 2, TAvgCC = 3");
    run_to(6, 4);
    EXPECT_EQ(run.FinalQ[6], 49.375F);
}

TEST_F(ClimateControlTest, AReportThatCannotBeWrittenSuspendsStepFive) {
    open_six_days();
    run_to(4);
    std::filesystem::create_directory(report);
    EXPECT_EQ(take(5), StepOutcome::Suspended);  // before it asks for anything
    ASSERT_EQ(dialogs.messages().size(), 2U);
    expect_stop(dialogs.messages()[0],
                "The file '" + path_text(report) +
                    "' can't be written: it is a folder. Step 5 can be repeated once it can be written.",
                k_program_title);
    EXPECT_EQ(climate.steps_done, 4);
    std::filesystem::remove(report);
    run_to(6, 5);
    EXPECT_EQ(run.FinalQ[6], 49.375F);
    EXPECT_TRUE(std::filesystem::is_regular_file(report));
}

TEST_F(ClimateControlTest, AReportThatIsTheBasinUnderAnyNameSuspendsStepFiveAndLeavesTheBasin) {
    open_six_days();
    basin.Basin_File = folder.write("user.mdb", "the file of the user");
    std::filesystem::create_hard_link(file, folder / "link.out");
    std::filesystem::create_symlink(basin.Basin_File, folder / "soft.out");
    run_to(4);
    const std::string before = file_bytes(file);
    for (const auto& named : {file, basin.Basin_File, folder / "link.out", folder / "soft.out"}) {
        report = named;
        EXPECT_EQ(take(5), StepOutcome::Suspended) << named;
        EXPECT_THAT(dialogs.messages().at(dialogs.messages().size() - 2).message.text,
                    testing::StartsWith("The file '" + path_text(named) + "' can't be written: "));
    }
    EXPECT_TRUE(file_bytes(file) == before);
    EXPECT_EQ(file_bytes(basin.Basin_File), "the file of the user");
    EXPECT_EQ(climate.steps_done, 4);
}

TEST_F(ClimateControlTest, AFaultOfStepFiveShowsItsText) {
    open_six_days();
    run_to(4);
    change("UPDATE SimResults SET MDCexcl = NULL WHERE Zone = 2");
    suspended(5);
    ASSERT_EQ(dialogs.messages().size(), 2U);
    expect_stop(dialogs.messages()[0], "Invalid use of Null", k_program_title);
    EXPECT_EQ(climate.steps_done, 4);
}

TEST_F(ClimateControlTest, AFaultOfStepFiveLeavesTheReportOfTheZonesThatWereDone) {
    open_six_days();
    run_to(4);
    write_whole_file(report, "the report of an earlier evaluation");
    change("UPDATE SimResults SET MDCexcl = NULL WHERE Zone = 2");
    suspended(5);
    const std::string written = read_whole_file(report, 10000);
    EXPECT_THAT(written, testing::HasSubstr("Climate Scenario: Warmer\r\n"));
    EXPECT_THAT(written, testing::HasSubstr("= Zone 1  ="));
    EXPECT_THAT(written, testing::Not(testing::HasSubstr("Zone 2")));
    EXPECT_THAT(written, testing::Not(testing::HasSubstr("earlier evaluation")));
}

TEST_F(ClimateControlTest, AStepFiveWhoseBasinFileIsMissingLeavesAReportWithoutZones) {
    open_six_days();
    run_to(4);
    write_whole_file(report, "the report of an earlier evaluation");
    std::filesystem::remove(file);
    EXPECT_EQ(take(5), StepOutcome::Suspended);
    const std::string written = read_whole_file(report, 10000);
    EXPECT_THAT(written, testing::HasSubstr("Climate Scenario: Warmer\r\n"));
    EXPECT_THAT(written, testing::Not(testing::HasSubstr("Zone")));
}

TEST_F(ClimateControlTest, ANegativeInitialRunoffIsRefusedBeforeTheResultsAreTouched) {
    SixDays small;
    small.simulation.initial_runoff = -0.5F;
    open(small, static_cast<double>(SixDays::winter_end()));
    EXPECT_EQ(take(1), StepOutcome::Refused);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_stop(dialogs.messages()[0],
                "The initial runoff of the simulation 'Test' is -0.5. A runoff cannot be below 0: enter the "
                "discharge of the day before the simulation starts.",
                "Invalid initial runoff");
    EXPECT_FALSE((BasinDatabase{file, Access::ReadOnly}.has_table("SimResults")));
}

TEST_F(ClimateControlTest, ASuspendedStepSixStillAccumulatesTheMelt) {
    open_six_days();
    run_to(5);
    climate.SummerStartDate = 0;
    lose_temperature(4);
    suspended(6);
    ASSERT_EQ(dialogs.messages().size(), 2U);
    EXPECT_EQ(dialogs.messages()[0].message.title, "Missing data in basin variable table.");
    EXPECT_EQ(climate.steps_done, 5);
    EXPECT_EQ(run.ClimateStep, 6);
    EXPECT_EQ(run.InitialRunoff, 77.5F);
    EXPECT_EQ(climate.SummerStartDate, date_of(2001, 4, 1));
    EXPECT_FALSE(climate.statistics[6]);
    EXPECT_FALSE(run.results_enabled);
    EXPECT_EQ(run.LastRunSimulation, "");
    const SimResults table = results();
    EXPECT_THAT(days_of(table, table.DailyQ, 1, 3, 6), Each(testing::IsNan()));
    for (const int zone : {1, 2}) {
        // Their inputs have been in the table since steps 3 and 5, so the sums are those of a completed step.
        EXPECT_THAT(days_of(table, table.AZMincl, zone, 3, 6), ElementsAre(0.875F, 1.5F, 1.875F, 2.0F));
        EXPECT_THAT(days_of(table, table.AZMexcl, zone, 3, 6), ElementsAre(0.875F, 1.5F, 1.875F, 2.0F));
        EXPECT_THAT(days_of(table, table.AZMwork, zone, 3, 6), ElementsAre(0.375F, 0.5F, 0.5F, 0.5F));
        EXPECT_THAT(days_of(table, table.AZMexclWA, zone, 3, 6), ElementsAre(0.375F, 0.5F, 0.5F, 0.5F));
    }
    give_temperature(4, "TAvg = 2, TAvgCC = 3");
    run_to(6, 6);
    expect_valid();
}

TEST_F(ClimateControlTest, AFaultInTheAccumulatedMeltSuspendsStepSixAfterItsRun) {
    open_six_days();
    run_to(5);
    change("UPDATE SimResults SET MDCincl = NULL WHERE Zone = 2 AND Date = " +
           std::to_string(SixDays::first_day() + 3));
    suspended(6);
    ASSERT_EQ(dialogs.messages().size(), 2U);
    expect_stop(dialogs.messages()[0], "Invalid use of Null", k_program_title);
    EXPECT_EQ(climate.steps_done, 5);
    EXPECT_FALSE(run.results_enabled);
    EXPECT_EQ(run.LastRunSimulation, "");
    const SimResults table = results();
    EXPECT_THAT(days_of(table, table.DailyQ, 1, 3, 6), ElementsAre(95.0, 85.0, 61.25, 49.375));
    EXPECT_EQ(climate.SummerStartDate, date_of(2001, 4, 1));
    EXPECT_THAT(days_of(table, table.AZMincl, 1, 3, 6), ElementsAre(0.875F, 1.5F, 1.875F, 2.0F));
    EXPECT_THAT(days_of(table, table.AZMexcl, 1, 3, 6), ElementsAre(0.875F, 1.5F, 1.875F, 2.0F));
    EXPECT_THAT(days_of(table, table.AZMexclWA, 1, 3, 6), ElementsAre(0.375F, 0.5F, 0.5F, 0.5F));
    // Zone 2 stops at the day with the missing value.
    EXPECT_THAT(days_of(table, table.AZMincl, 2, 3, 3), ElementsAre(0.875F));
    EXPECT_THAT(days_of(table, table.AZMincl, 2, 4, 6), Each(testing::IsNan()));
    EXPECT_THAT(days_of(table, table.AZMexcl, 2, 3, 6), Each(testing::IsNan()));
    EXPECT_THAT(days_of(table, table.AZMexclWA, 2, 3, 6), Each(testing::IsNan()));
}

TEST_F(ClimateControlTest, MoreThanNineZonesEndInStepFive) {
    open(SixDays{10}, static_cast<double>(SixDays::winter_end()));
    for (int number = 1; number <= 3; ++number) {
        EXPECT_EQ(step(number), StepOutcome::Done) << number;
        // The melt stage reports that its sums have no room for zone 10, and the run continues.
        ASSERT_EQ(dialogs.messages().size(), static_cast<std::size_t>(number));
        EXPECT_EQ(last_message().message.icon, Icon::Stop);
    }
    EXPECT_EQ(run.WinterPrecip[9][1], 4.0F);
    EXPECT_EQ(step(4), StepOutcome::Done);
    for (int zone = 1; zone <= 9; ++zone) dialogs.then_text("0");
    EXPECT_EQ(take(5), StepOutcome::Suspended);
    expect_message(last_message(), "Climate change, step 5 was 'cancelled' by the user", "CC run suspended");
    EXPECT_EQ(climate.steps_done, 4);
}

TEST_F(ClimateControlTest, AMissingBasinFileSuspendsTheStep) {
    open_six_days();
    run_to(1);
    std::filesystem::remove(file);
    suspended(2);
    ASSERT_EQ(dialogs.messages().size(), 2U);
    EXPECT_EQ(dialogs.messages()[0].message.icon, Icon::Stop);
}

TEST_F(ClimateControlTest, AnUnfinishedEvaluationLeavesNoValidResults) {
    for (int last = 0; last <= 5; ++last) {
        std::filesystem::remove(file);
        run = RunState{};
        open_six_days();
        run_to(last);
        basin.Output_Valid = true;
        end_climate(context(), false);
        EXPECT_FALSE(basin.Output_Valid) << last;
        EXPECT_EQ(run.ClimateStep, last);
    }
}

TEST_F(ClimateControlTest, AFinishedEvaluationStaysOneUntilTheNextRun) {
    open_six_days();
    run_to(6);
    end_climate(context(), false);
    EXPECT_TRUE(basin.Output_Valid);
    EXPECT_EQ(run.ClimateStep, 6);
    // The window can be opened and closed again: the plots and the printed scenario still have their data.
    begin_climate(context());
    end_climate(context(), false);
    EXPECT_TRUE(basin.Output_Valid);
    EXPECT_EQ(run.ClimateStep, 6);
    EXPECT_EQ(climate.SummerStartDate, date_of(2001, 4, 1));
    EXPECT_EQ(climate.ScenarioComments, "one degree more");
    EXPECT_EQ(climate.steps_done, 0);
}

TEST_F(ClimateControlTest, AnAbortedEvaluationDoesNotCount) {
    open_six_days();
    run_to(6);
    end_climate(context(), true);
    EXPECT_FALSE(basin.Output_Valid);
    EXPECT_EQ(run.ClimateStep, 0);
}

TEST_F(ClimateControlTest, CaptionsOfTheRunMenu) {
    EXPECT_EQ(climate_step_caption(0), "&Run");
    for (int number = 1; number <= 6; ++number)
        EXPECT_EQ(climate_step_caption(number), "Running Step" + std::to_string(number));
    EXPECT_EQ(climate_step_caption(7), "Run completed");
}

}  // namespace
}  // namespace nivora
