#include "engine/run_driver.h"
#include "tests/engine/engine_fixture.h"
#include "tests/support/temporary_folder.h"

#include <SQLiteCpp/Database.h>
#include <gmock/gmock.h>

namespace nivora {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsNan;
using ::testing::StartsWith;

constexpr const char* k_latitude_text =
    "A positive or blank latitude indicates a basin located in the northern hemisphere, a negative latitude "
    "indicates a basin located in the southern hemisphere.  Continue processing?";

/// Runs that are questioned, refused or blocked, in a program with valid results of an earlier run.
class RunRefusals : public ::testing::Test {
protected:
    TemporaryFolder folder;
    std::filesystem::path path = folder / "basin.mdb";
    BasinState basin;
    RunState run;
    ScriptedDialogs dialogs;

    void open(const SmallBasin& content) {
        content.write(path);
        basin = opened_basin(path);
        basin.Output_Valid = true;
        run.results_enabled = true;
        run.LastRunSimulation = "Former";
    }

    RunOutcome simulate() {
        choose_simulation(run);
        return start_run({basin, run, dialogs}, 1);
    }

    SimResults stored() {
        BasinDatabase database{path, Access::ReadOnly};
        return load_results(database);
    }

    void expect_former_results() const {
        EXPECT_TRUE(run.results_enabled);
        EXPECT_EQ(run.LastRunSimulation, "Former");
        EXPECT_TRUE(basin.Output_Valid);
    }

    void expect_no_results() const {
        EXPECT_FALSE(run.results_enabled);
        EXPECT_EQ(run.LastRunSimulation, "");
        EXPECT_FALSE(basin.Output_Valid);
    }

    void TearDown() override {
        EXPECT_EQ(dialogs.complaints(), std::vector<std::string>{});
        EXPECT_EQ(dialogs.answers_left(), 0U);
    }
};

TEST_F(RunRefusals, APeriodOfMoreThan366DaysIsRefusedAndKeepsTheFormerResults) {
    open(SmallBasin{1, k_first, 400});
    Simulation& simulation = *basin.current_simulation();
    simulation.end = *simulation.start + 366;  // 367 days, since both ends belong to the period

    EXPECT_FALSE(simulate().results_rebuilt);

    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(dialogs.messages()[0].message.text, "Date range error!  366 ");
    EXPECT_EQ(dialogs.messages()[0].message.icon, Icon::Stop);
    expect_former_results();
    simulation.end = *simulation.start + 365;
    EXPECT_TRUE(simulate().completed);
    EXPECT_EQ(stored().size(), 366U);
}

TEST_F(RunRefusals, AForecastOverTooManyDaysIsRefusedToo) {
    open(SmallBasin{1, k_first, 400});
    dialogs.then_text("3");
    ASSERT_TRUE(choose_forecast(run, dialogs, 1));

    EXPECT_FALSE(start_run({basin, run, dialogs}, 1).completed);

    EXPECT_EQ(dialogs.messages().back().message.text, "Date range error!  366 ");
}

TEST_F(RunRefusals, APeriodOfOneDayOrWithItsEndBeforeItsStartIsRefused) {
    open(SmallBasin{1, k_first, 5});
    for (const DayCount end : {k_first, k_first - 1}) {
        basin.current_simulation()->end = end;
        EXPECT_FALSE(simulate().results_rebuilt);
        EXPECT_EQ(dialogs.messages().back().message.text, "Date range error!  366 ");
    }
}

TEST_F(RunRefusals, ABlankLatitudeIsAskedAboutAndTakenForTheNorth) {
    SmallBasin content{1, k_first, 2};
    content.header.latitude.reset();
    open(content);
    dialogs.then(Answer::Yes);

    EXPECT_TRUE(simulate().completed);

    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_message(dialogs.messages()[0], k_latitude_text, "Missing latitude");
    EXPECT_EQ(dialogs.messages()[0].message.buttons, Buttons::YesNo);
    EXPECT_THAT(stored().DailyQ, ElementsAre(5.0, 2.5));
}

TEST_F(RunRefusals, ARefusedLatitudeLeavesTheTableBuiltButNotProcessed) {
    SmallBasin content{1, k_first, 2};
    content.header.latitude.reset();
    open(content);
    dialogs.then(Answer::No);

    const RunOutcome outcome = simulate();

    EXPECT_TRUE(outcome.results_rebuilt);
    EXPECT_FALSE(outcome.completed);
    EXPECT_EQ(stored().size(), 2U);
    EXPECT_THAT(stored().ZoneDD, Each(IsNan()));
    EXPECT_THAT(stored().TAvg, Each(1.0F));
}

TEST_F(RunRefusals, ARefusalAfterTheTableWasBuiltClearsTheMarksOfTheFormerRun) {
    SmallBasin content{1, k_first, 2};
    content.header.latitude.reset();
    open(content);
    dialogs.then(Answer::No);

    EXPECT_FALSE(simulate().completed);

    expect_no_results();
}

TEST_F(RunRefusals, AZeroLatitudeIsNotBlank) {
    SmallBasin content{1, k_first, 2};
    content.header.latitude = 0.0;
    open(content);

    EXPECT_TRUE(simulate().completed);
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(RunRefusals, TheQuestionAboutTheInitialRunoffComesBeforeTheLatitude) {
    SmallBasin content{1, k_first, 2};
    content.header.latitude.reset();
    content.simulation.initial_runoff = 100.0F;
    open(content);
    dialogs.then(Answer::Ok).then(Answer::No);

    EXPECT_FALSE(simulate().completed);

    ASSERT_EQ(dialogs.messages().size(), 2U);
    EXPECT_EQ(dialogs.messages()[0].message.title, "Warning, possible data problem");
    EXPECT_EQ(dialogs.messages()[1].message.title, "Missing latitude");
}

TEST_F(RunRefusals, ARefusedInitialRunoffHasEmptiedTheTable) {
    SmallBasin content{1, k_first, 2};
    open(content);
    ASSERT_TRUE(simulate().completed);
    ASSERT_EQ(stored().size(), 2U);
    basin.current_simulation()->initial_runoff = 100.0F;
    run.LastRunSimulation = "Former";
    dialogs.then(Answer::Cancel);

    const RunOutcome outcome = simulate();

    EXPECT_TRUE(outcome.results_rebuilt);
    EXPECT_FALSE(outcome.completed);
    EXPECT_EQ(stored().size(), 0U);
    expect_no_results();
}

TEST_F(RunRefusals, ASimulationWithoutDaysKeepsTheOldTable) {
    SmallBasin content{1, k_first, 2};
    open(content);
    ASSERT_TRUE(simulate().completed);
    basin.current_simulation()->start = k_first + 100;
    basin.current_simulation()->end = k_first + 101;
    select_simulation(basin, 0);
    run.LastRunSimulation = "Former";

    const RunOutcome outcome = simulate();

    EXPECT_FALSE(outcome.results_rebuilt);
    EXPECT_FALSE(outcome.completed);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_stop(dialogs.messages()[0],
                "The current database is missing variables and/or parameters needed to run 'Test'!",
                "Run aborting, possible invalid simulation definition");
    EXPECT_EQ(stored().size(), 2U);
    expect_former_results();
}

TEST_F(RunRefusals, AFatalNumberOfZonesDoesNotStopTheRun) {
    SmallBasin content{1, k_first, 4};
    content.header.zones = std::int16_t{2};
    content.zones.push_back(make_zone(2, k_area_of_100, 1500.0));
    open(content);

    const RunOutcome outcome = simulate();

    // The rows of zone 1 are taken in pairs, so every second row has no discharge for the statistics.
    EXPECT_TRUE(outcome.completed);
    ASSERT_EQ(dialogs.messages().size(), 2U);
    EXPECT_EQ(dialogs.messages()[0].message.title, "Fatal error");
    EXPECT_EQ(dialogs.messages()[1].message.title,
              "Run statistics failed, probably caused by missing/invalid data");
    EXPECT_THAT(stored().DailyQ, ElementsAre(5.0, IsNan(), 2.5, IsNan()));
    EXPECT_EQ(run.LastRunSimulation, "Test");
}

TEST_F(RunRefusals, DataWithMoreZonesThanTheBasinStopAtTheFirstZoneTooMany) {
    SmallBasin content{2, k_first, 2};
    content.header.zones = std::int16_t{1};
    content.zones.pop_back();
    open(content);

    EXPECT_FALSE(simulate().completed);

    ASSERT_EQ(dialogs.messages().size(), 2U);
    EXPECT_EQ(dialogs.messages()[0].message.title, "Fatal error");
    expect_stop(dialogs.messages()[1], "Subscript out of range",
                "Error during temperature lapse processing phase");
}

TEST_F(RunRefusals, ZoneTotalsArePreparedAfterAFailedRunToo) {
    SmallBasin content{1, k_first, 2};
    content.parameters[0].tcrit = k_missing;
    for (auto& row : content.physical) row.precip = 1.5F;
    open(content);

    EXPECT_FALSE(simulate().completed);

    EXPECT_EQ(run.zone_totals[0].first_day, k_first);
    EXPECT_EQ(run.zone_totals[0].last_day, k_first + 1);
    EXPECT_EQ(run.zone_totals[0].precipitation, 3.0F);
    EXPECT_TRUE(is_missing(run.zone_totals[0].zonal_melt));
}

TEST_F(RunRefusals, AMissingFileCannotBeOpened) {
    open(SmallBasin{1, k_first, 2});
    std::filesystem::remove(path);

    const RunOutcome outcome = simulate();

    EXPECT_FALSE(outcome.results_rebuilt);
    EXPECT_FALSE(outcome.completed);
    ASSERT_FALSE(dialogs.messages().empty());
    EXPECT_EQ(dialogs.messages()[0].message.text, "Can't open database.");
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(RunRefusals, ASimulationWithoutParameterTableNamesTheDataThatCannotBeOpened) {
    open(SmallBasin{1, k_first, 2});
    BasinDatabase{path, Access::ReadWrite}.drop_table("Test");

    const RunOutcome outcome = simulate();

    EXPECT_FALSE(outcome.completed);
    ASSERT_FALSE(dialogs.messages().empty());
    EXPECT_THAT(dialogs.messages()[0].message.text, StartsWith("Can't open PhysicalData table. "));
    EXPECT_GT(dialogs.messages()[0].message.text.size(),
              std::string{"Can't open PhysicalData table. "}.size());
}

TEST_F(RunRefusals, ATableInUseIsAConflictThatLeavesTheOldTable) {
    open(SmallBasin{1, k_first, 3});
    ASSERT_TRUE(simulate().completed);
    const SimResults former = stored();
    basin.current_simulation()->end = k_first + 1;
    select_simulation(basin, 0);

    RunOutcome outcome;
    {
        // Another program is about to write; reading is still possible.
        SQLite::Database other{path.string(), SQLite::OPEN_READWRITE};
        other.exec("BEGIN IMMEDIATE");
        outcome = simulate();
        other.exec("ROLLBACK");
    }

    EXPECT_FALSE(outcome.results_rebuilt);
    ASSERT_FALSE(dialogs.messages().empty());
    EXPECT_EQ(
        dialogs.messages()[0].message.text,
        "Conflict while accessing the 'SimResults' table.  Make sure you close the 'Simulation Results' "
        "window before proceeding");
    EXPECT_EQ(stored().size(), former.size());
    // The run continues on the existing rows, so no other message follows.
    EXPECT_EQ(dialogs.messages().size(), 1U);
    EXPECT_FALSE(outcome.completed);
    EXPECT_EQ(stored().DailyQ, former.DailyQ);
}

}  // namespace
}  // namespace nivora
