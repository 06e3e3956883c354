#include "engine/run_notes.h"

#include "engine/run_driver.h"
#include "tests/engine/engine_fixture.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

TEST(ZonesText, NamesOneZoneASpanOrAList) {
    EXPECT_EQ(zones_text({2}), "zone 2");
    EXPECT_EQ(zones_text({1, 2}), "zones 1 and 2");
    EXPECT_EQ(zones_text({1, 2, 3, 4, 5}), "zones 1 to 5");
    EXPECT_EQ(zones_text({1, 3, 5}), "zones 1, 3 and 5");
}

/// Notes over a results table of three zones and ten days.
class RunNotes : public EngineTest {
protected:
    void SetUp() override {
        start(3, k_first, 10);
        fill(table.DailyQ, static_cast<double>(k_missing));
        for (int day = 1; day <= 10; ++day) table.DailyQ[at(1, day)] = 5.0;
    }

    /// Removes days of a zone, counted from 1, from the table.
    void lose(int zone, std::initializer_list<int> days) {
        for (const int day : days) {
            for (std::size_t row = 0; row < table.size(); ++row) {
                if (table.Zone[row] != zone || table.Date[row] != k_first + day - 1) continue;
                remove_row(row);
                break;
            }
        }
    }
    [[nodiscard]] std::vector<RunNote> missing() const {
        return days_without_rows(table, basin.ZoneCount, k_first, k_first + 9);
    }
    [[nodiscard]] std::optional<RunNote> below_zero() const {
        return runoff_below_zero(table, run_rows(table, run.RunStart, run.RunEnd), run);
    }
};

TEST_F(RunNotes, AFullTableHasNoNotes) {
    EXPECT_THAT(missing(), IsEmpty());
    EXPECT_FALSE(below_zero());
}

TEST_F(RunNotes, DaysThatAllZonesLackAreOneNote) {
    for (const int zone : {1, 2, 3}) lose(zone, {4, 5, 6});
    const auto notes = missing();
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_EQ(notes[0].days, 3);
    EXPECT_EQ(
        note_text(notes[0], Units::Metric),
        "3 of 10 days from 06/01/2001 to 06/10/2001 have no rows in zones 1 to 3: 06/04/2001 to 06/06/2001. "
        "The run skips these days and continues with the next one. To add the missing days, choose Data, "
        "Variables, Current simulation and Data, Parameters, and fill them in.");
    EXPECT_EQ(note_summary(notes[0]), "3 of 10 days without rows in zones 1 to 3");
}

TEST_F(RunNotes, ZonesThatLackOtherDaysHaveNotesOfTheirOwn) {
    lose(1, {10});
    lose(3, {10});
    lose(2, {1, 9});
    const auto notes = missing();
    ASSERT_EQ(notes.size(), 2U);
    EXPECT_THAT(notes[0].zones, ElementsAre(1, 3));
    EXPECT_THAT(
        note_text(notes[0], Units::Metric),
        HasSubstr(" has no rows in zones 1 and 3: 06/10/2001. Where only some zones have a day, zones and "
                  "days no longer match from then on: do not use the results. To add"));
    EXPECT_THAT(notes[1].zones, ElementsAre(2));
    EXPECT_EQ(notes[1].days, 2);
    EXPECT_THAT(note_text(notes[1], Units::Metric),
                HasSubstr("in zone 2: the first 06/01/2001, the last 06/09/2001. "));
}

TEST_F(RunNotes, AZoneWithoutAnyRowLacksAllDays) {
    lose(3, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    const auto notes = missing();
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_EQ(notes[0].days, 10);
    EXPECT_THAT(notes[0].zones, ElementsAre(3));
}

TEST_F(RunNotes, DaysOutsideThePeriodDoNotCount) {
    EXPECT_EQ(days_without_rows(table, 3, k_first - 1, k_first + 9).size(), 1U);
    EXPECT_THAT(days_without_rows(table, 3, k_first + 2, k_first + 4), IsEmpty());
    EXPECT_THAT(days_without_rows(table, 3, k_first + 4, k_first + 2), IsEmpty());
}

TEST_F(RunNotes, ADischargeBelowZeroIsCountedWithItsLowestDay) {
    table.DailyQ[at(1, 3)] = -1.5;
    table.DailyQ[at(1, 4)] = -2.25;
    table.DailyQ[at(1, 8)] = -0.5;
    const auto note = below_zero();
    ASSERT_TRUE(note);
    EXPECT_EQ(note->days, 3);
    EXPECT_EQ(note_text(*note, Units::Metric),
              "The computed discharge is below 0 on 3 of 10 days (the first 06/03/2001, the last "
              "06/08/2001); the lowest value is -2.25 m³/s on 06/04/2001. A discharge cannot be negative: "
              "check the time lag, the runoff coefficients and the precipitation of these days.");
    EXPECT_THAT(note_text(*note, Units::English), HasSubstr("-2.25 ft³/s"));
    EXPECT_EQ(note_summary(*note), "discharge below 0 on 3 of 10 days");
}

TEST_F(RunNotes, ADischargeOfZeroOrNoneIsNotBelowIt) {
    table.DailyQ[at(1, 3)] = 0.0;
    table.DailyQ[at(1, 4)] = static_cast<double>(k_missing);
    EXPECT_FALSE(below_zero());
}

TEST_F(RunNotes, StepThreeLooksAtTheDischargeOfThePresentClimate) {
    run.ClimateStep = 3;
    table.DailyQ[at(1, 3)] = -1.0;
    EXPECT_FALSE(below_zero());
    table.DailyQPresent[at(1, 5)] = -1.0;
    const auto note = below_zero();
    ASSERT_TRUE(note);
    EXPECT_EQ(note->step, 3);
    EXPECT_EQ(note->first, k_first + 4);
    EXPECT_THAT(note_text(*note, Units::Metric), testing::StartsWith("Step 3: The computed discharge"));
}

TEST_F(RunNotes, OfOneStepAreForgottenWithoutTheOthers) {
    for (const int step : {1, 3, 5, 3}) run.notes.push_back({.step = step, .zones = {}});
    forget_notes(run, 3);
    ASSERT_EQ(run.notes.size(), 2U);
    EXPECT_EQ(run.notes[0].step, 1);
    EXPECT_EQ(run.notes[1].step, 5);
}

/// Complete runs on a basin file.
class NotedRun : public ::testing::Test {
protected:
    void open(const SmallBasin& content) {
        content.write(path);
        basin = opened_basin(path);
        basin.Output_Valid = true;
        run.LastRunSimulation = "Former";
    }
    RunOutcome simulate() {
        choose_simulation(run);
        return start_run({basin, run, dialogs}, 1);
    }

    TemporaryFolder folder;
    std::filesystem::path path = folder / "basin.mdb";
    BasinState basin;
    RunState run;
    ScriptedDialogs dialogs;
};

TEST_F(NotedRun, DaysWithoutRowsAreNotedAndChangeNoNumber) {
    SmallBasin content{1, k_first, 4};
    content.parameters.erase(content.parameters.begin() + 1);
    open(content);
    EXPECT_TRUE(simulate().completed);
    EXPECT_TRUE(dialogs.messages().empty());
    EXPECT_EQ(run.FinalQ[0], 1.25F);  // 10 is halved on three days
    ASSERT_EQ(run.notes.size(), 1U);
    EXPECT_EQ(run.notes[0].kind, NoteKind::DaysWithoutRows);
    EXPECT_EQ(run.notes[0].first, k_first + 1);
    EXPECT_EQ(run.notes[0].days, 1);
}

TEST_F(NotedRun, TheNextRunForgetsTheNotes) {
    open(SmallBasin{1, k_first, 3});
    run.notes.emplace_back();
    EXPECT_TRUE(simulate().completed);
    EXPECT_THAT(run.notes, IsEmpty());
}

TEST_F(NotedRun, ANegativeCoefficientGivesANote) {
    SmallBasin content{1, k_first, 2};
    for (auto& row : content.physical) row.precip = 1.0F;
    for (auto& row : content.parameters) row.cr = -1.0F;
    open(content);
    run.LagDistribution = {1.0F, 1.0F};  // a day's input runs off on the same day
    EXPECT_TRUE(simulate().completed);
    // -100 x 0.5 + 10 x 0.5 = -45; -100 x 0.5 - 45 x 0.5 = -72.5.
    ASSERT_EQ(run.notes.size(), 1U);
    EXPECT_EQ(run.notes[0].kind, NoteKind::RunoffBelowZero);
    EXPECT_EQ(run.notes[0].days, 2);
    EXPECT_EQ(run.notes[0].value, -72.5F);
    EXPECT_EQ(run.notes[0].value_day, k_first + 1);
}

TEST_F(NotedRun, ANegativeInitialRunoffIsRefusedAndLeavesTheResultsBefore) {
    SmallBasin content{1, k_first, 3};
    open(content);
    ASSERT_TRUE(simulate().completed);
    basin.current_simulation()->initial_runoff = -3.0F;
    const RunOutcome outcome = simulate();
    EXPECT_FALSE(outcome.results_rebuilt);
    EXPECT_FALSE(outcome.completed);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_stop(dialogs.messages()[0],
                "The initial runoff of the simulation 'Test' is -3. A runoff cannot be below 0: enter the "
                "discharge of the day before the simulation starts.",
                "Invalid initial runoff");
    EXPECT_TRUE(basin.Output_Valid);
    EXPECT_EQ(run.LastRunSimulation, "Test");
    BasinDatabase database{path, Access::ReadOnly};
    EXPECT_EQ(load_results(database).size(), 3U);
}

TEST_F(NotedRun, AnInitialRunoffOfZeroOrNoneMayRun) {
    Simulation simulation;
    EXPECT_FALSE(initial_runoff_problem(simulation));
    simulation.initial_runoff = 0.0F;
    EXPECT_FALSE(initial_runoff_problem(simulation));
    simulation.initial_runoff = -0.001F;
    EXPECT_TRUE(initial_runoff_problem(simulation));
}

TEST_F(NotedRun, ARunThatFailsLeavesNoValidResults) {
    SmallBasin content{1, k_first, 3};
    content.parameters[1].tcrit = k_missing;
    open(content);
    const double before = local_now();
    EXPECT_FALSE(simulate().completed);
    EXPECT_FALSE(basin.Output_Valid);
    EXPECT_EQ(run.LastRunSimulation, "");
    ASSERT_TRUE(basin.results_time);
    EXPECT_GE(*basin.results_time, before);
}

TEST_F(NotedRun, ARunThatTheUserCancelsLeavesNoValidResults) {
    SmallBasin content{1, k_first, 3};
    content.parameters[1].xcoeff = 1.0;
    open(content);
    dialogs.then(Answer::Cancel);
    EXPECT_FALSE(simulate().completed);
    EXPECT_FALSE(basin.Output_Valid);
}

TEST_F(NotedRun, ARunThatIsRefusedByItsQuestionLeavesAnEmptyTableThatIsNotValid) {
    SmallBasin content{1, k_first, 3};
    content.simulation.initial_runoff = 50.0F;  // compared with the measured 10
    open(content);
    dialogs.then(Answer::Cancel);
    const RunOutcome outcome = simulate();
    EXPECT_TRUE(outcome.results_rebuilt);
    EXPECT_FALSE(basin.Output_Valid);
    EXPECT_EQ(run.LastRunSimulation, "");
}

TEST_F(NotedRun, ACompletedRunReportsItsTimeAndIsUpToDate) {
    open(SmallBasin{1, k_first, 3});
    basin.results_outdated = true;
    const double before = local_now();
    EXPECT_TRUE(simulate().completed);
    EXPECT_FALSE(basin.results_outdated);
    ASSERT_TRUE(basin.results_time);
    EXPECT_GE(*basin.results_time, before);
    EXPECT_LE(*basin.results_time, local_now());
}

}  // namespace
}  // namespace nivora
