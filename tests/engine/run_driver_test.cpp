#include "engine/run_driver.h"

#include "engine/results_summary.h"
#include "tests/engine/engine_fixture.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>

#include <bit>

namespace nivora {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::FloatEq;
using ::testing::IsNan;
using ::testing::Optional;

/// Expects two tables to have the same bits, column by column.
void expect_same_table(const SimResults& one, const SimResults& other) {
    ASSERT_EQ(one.size(), other.size());
    std::vector<std::vector<double>> values;
    for (const SimResults* table : {&one, &other}) {
        std::size_t column_number = 0;
        SimResults::visit(*table, [&](const auto& column) {
            std::vector<double> numbers(column.begin(), column.end());
            if (table == &one) {
                values.push_back(std::move(numbers));
                return;
            }
            const std::vector<double>& expected = values[column_number++];
            for (std::size_t row = 0; row < expected.size(); ++row) {
                EXPECT_EQ(std::bit_cast<std::uint64_t>(numbers[row]),
                          std::bit_cast<std::uint64_t>(expected[row]))
                    << "column " << column_number << ", row " << row;
            }
        });
    }
}

class RunDriver : public ::testing::Test {
protected:
    TemporaryFolder folder;
    std::filesystem::path path = folder / "basin.mdb";
    BasinState basin;
    RunState run;
    ScriptedDialogs dialogs;

    void open(const SmallBasin& content) {
        std::filesystem::remove(path);
        content.write(path);
        basin = opened_basin(path);
        basin.Input_Changed = true;
        run.results_enabled = true;
        run.LastRunSimulation = "Former";
    }

    RunContext context() { return {basin, run, dialogs}; }

    RunOutcome simulate(int index = 1) {
        choose_simulation(run);
        return start_run(context(), index);
    }

    SimResults stored() {
        BasinDatabase database{path, Access::ReadOnly};
        return load_results(database);
    }

    void expect_unfinished() const {
        EXPECT_FALSE(run.results_enabled);
        EXPECT_EQ(run.LastRunSimulation, "");
        EXPECT_TRUE(basin.Input_Changed);
        EXPECT_FALSE(basin.Output_Valid);
    }

    void TearDown() override {
        EXPECT_EQ(dialogs.complaints(), std::vector<std::string>{});
        EXPECT_EQ(dialogs.answers_left(), 0U);
    }
};

TEST_F(RunDriver, ACompletedRunMarksItsResultsValid) {
    open(SmallBasin{1, k_first, 3});

    const RunOutcome outcome = simulate();

    EXPECT_TRUE(outcome.results_rebuilt);
    EXPECT_TRUE(outcome.completed);
    EXPECT_EQ(outcome.statistics, StatisticsReach::All);
    EXPECT_TRUE(run.results_enabled);
    EXPECT_TRUE(basin.Output_Valid);
    EXPECT_FALSE(basin.Input_Changed);
    EXPECT_EQ(run.LastRunSimulation, "Test");
    EXPECT_TRUE(dialogs.messages().empty());
    EXPECT_THAT(stored().DailyQ, ElementsAre(5.0, 2.5, 1.25));  // 10 is halved each day
    EXPECT_EQ(run.FinalQ[0], 1.25F);
}

TEST_F(RunDriver, ARunThatWritesTablesIsAChangeToSave) {
    open(SmallBasin{1, k_first, 2});
    basin.Basin_Changed = false;

    EXPECT_TRUE(simulate().completed);

    EXPECT_TRUE(basin.Basin_Changed);
}

TEST_F(RunDriver, SimulationsTakeKindAndTitleFromTheirItem) {
    open(SmallBasin{1, k_first, 2});
    run.UpdateInterval = 7;

    EXPECT_TRUE(simulate(0).completed);
    EXPECT_EQ(run.RunKind, k_melt_season_simulation);
    EXPECT_EQ(run.RunTitle, "Melt Season Simulation");

    EXPECT_TRUE(simulate(1).completed);
    EXPECT_EQ(run.RunKind, k_year_round_simulation);
    EXPECT_EQ(run.RunTitle, "Year round Simulation");
    EXPECT_EQ(run.UpdateInterval, 0);
}

TEST_F(RunDriver, ForecastsKeepTheirKindAndUpdateFromTheMeasuredDischarge) {
    open(SmallBasin{1, k_first, 4});
    dialogs.then_text("2").then_text("9");

    ASSERT_TRUE(choose_forecast(run, dialogs, 0));
    EXPECT_TRUE(start_run(context(), 0).completed);
    EXPECT_EQ(run.RunKind, k_melt_season_forecast);
    EXPECT_EQ(run.RunTitle, "Melt Season Forecast");
    EXPECT_THAT(stored().DailyQ, ElementsAre(5.0, 2.5, 5.0, 2.5));  // day 3 starts from the measured 10

    ASSERT_TRUE(choose_forecast(run, dialogs, 1));
    EXPECT_TRUE(start_run(context(), 1).completed);
    EXPECT_EQ(run.RunKind, k_year_round_forecast);
    EXPECT_EQ(run.RunTitle, "Year round Forecast");
    EXPECT_THAT(stored().DailyQ, ElementsAre(5.0, 2.5, 1.25, 0.625));
}

TEST_F(RunDriver, APlainRunTakesPeriodAndInitialRunoffFromTheSimulation) {
    SmallBasin content{1, k_first, 5};
    content.simulation.start = k_first + 1;
    content.simulation.end = k_first + 3;
    content.simulation.initial_runoff = 8.0F;
    open(content);
    run.ClimateStep = 5;
    run.RunStart = run.RunEnd = 1;

    EXPECT_TRUE(simulate().completed);

    EXPECT_EQ(run.RunStart, k_first + 1);
    EXPECT_EQ(run.RunEnd, k_first + 3);
    EXPECT_EQ(run.ClimateStep, 0);
    EXPECT_EQ(run.InitialRunoff, 8.0F);
    EXPECT_THAT(stored().DailyQ, ElementsAre(4.0, 2.0, 1.0));
}

TEST_F(RunDriver, StatisticsOfTheRunAreWorkedOut) {
    SmallBasin content{1, k_first, 2};
    content.physical[0].runoff = 9.0F;
    content.physical[1].runoff = 5.0F;
    open(content);

    EXPECT_EQ(simulate().statistics, StatisticsReach::All);

    // Computed 5 and 2.5; measured mean 7. Squares about the mean
    // 4 + 4, differences 16 + 6.25: (8 - 22.25) / 8.
    EXPECT_EQ(run.AvgMeasuredQ, 7.0F);
    EXPECT_EQ(run.AvgComputedQ, 3.75F);
    EXPECT_EQ(run.CoefficientR2, -1.78125F);
}

TEST_F(RunDriver, TheTableInTheFileIsTheOneInMemory) {
    SmallBasin content{3, date_of(2001, 3, 25), 20};
    float wave = 0.0F;
    for (std::size_t i = 0; i < content.physical.size(); ++i) {
        wave += 0.37F;
        content.physical[i].tavg = 3.0F * (wave - 2.0F * static_cast<float>(static_cast<int>(wave / 2.0F)));
        content.physical[i].precip = i % 3 == 0 ? 0.7F * wave : 0.0F;
        content.physical[i].sca = 0.9F - 0.04F * static_cast<float>(i % 20);
        content.parameters[i].lapse_rate = 0.65F;
        content.parameters[i].lag_hours = i % 2 == 0 ? 7.3F : 21.0F;
        content.parameters[i].ycoeff = 0.013;
    }
    open(content);

    ASSERT_TRUE(simulate().completed);
    const SimResults in_file = stored();

    BasinDatabase database{path, Access::ReadWrite};
    BuiltResults built = Build_SimResults(database, basin, run, dialogs, nullptr);
    StatisticsReach statistics = StatisticsReach::Nothing;
    ASSERT_TRUE(Run_Model(built.results, context(), statistics));
    EXPECT_EQ(statistics, StatisticsReach::All);
    expect_same_table(built.results, in_file);
}

TEST_F(RunDriver, ASecondRunGivesTheSameTable) {
    open(SmallBasin{2, k_first, 3});
    ASSERT_TRUE(simulate().completed);
    const SimResults former = stored();

    ASSERT_TRUE(simulate().completed);

    expect_same_table(stored(), former);
}

TEST_F(RunDriver, AFaultOfTheZoneInputsStopsTheRunAndStoresWhatWasWritten) {
    SmallBasin content{1, k_first, 3};
    content.parameters[1].tcrit = k_missing;
    open(content);

    const RunOutcome outcome = simulate();

    EXPECT_TRUE(outcome.results_rebuilt);
    EXPECT_FALSE(outcome.completed);
    expect_unfinished();
    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(dialogs.messages()[0].message.title, "Missing data in simulation parameter Table.");
    const SimResults table = stored();
    EXPECT_THAT(table.ZoneDD, ElementsAre(1.0F, IsNan(), IsNan()));
    EXPECT_THAT(table.SumAT, Each(IsNan()));
    EXPECT_THAT(table.DailyQ, Each(IsNan()));
}

TEST_F(RunDriver, AFaultOfSnowAndMeltIsShownAndTheRunContinues) {
    SmallBasin content{1, k_first, 3};
    content.parameters[1].an = k_missing;
    open(content);

    const RunOutcome outcome = simulate();

    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(dialogs.messages()[0].message.title, "Missing value(s)");
    EXPECT_TRUE(outcome.completed);
    EXPECT_TRUE(basin.Output_Valid);
    const SimResults table = stored();
    EXPECT_THAT(table.SumAT, ElementsAre(0.5F, IsNan(), IsNan()));
    EXPECT_THAT(table.DailyQ, ElementsAre(5.0, 2.5, 1.25));  // the days without melt add no input
}

TEST_F(RunDriver, AFaultOfTheStatisticsLeavesTheRunCompleted) {
    SmallBasin content{1, k_first, 3};
    content.physical[1].runoff = k_missing;
    open(content);

    const RunOutcome outcome = simulate();

    EXPECT_TRUE(outcome.completed);
    EXPECT_EQ(outcome.statistics, StatisticsReach::Volumes);
    // Measured 10 on two of three days; computed 5, 2.5 and 1.25.
    EXPECT_THAT(statistics_values(run),
                ElementsAre(Optional(FloatEq(1.728F)), Optional(10.0F), Optional(FloatEq(0.756F)),
                            Optional(FloatEq(2.9166667F)), std::nullopt, std::nullopt));
    EXPECT_TRUE(basin.Output_Valid);
    EXPECT_EQ(run.LastRunSimulation, "Test");
    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(dialogs.messages()[0].message.title,
              "Run statistics failed, probably caused by missing/invalid data");
}

TEST_F(RunDriver, ACancelledRunoffStopsTheRunBeforeTheStatistics) {
    SmallBasin content{1, k_first, 3};
    content.parameters[1].xcoeff = 1.0;
    open(content);
    run.AvgMeasuredQ = 77.0F;
    dialogs.then(Answer::Cancel);

    const RunOutcome outcome = simulate();

    EXPECT_FALSE(outcome.completed);
    expect_unfinished();
    EXPECT_EQ(run.AvgMeasuredQ, 77.0F);
    EXPECT_THAT(stored().DailyQ, ElementsAre(5.0, IsNan(), IsNan()));
}

TEST_F(RunDriver, ACustomDistributionTakesThePlaceOfTheTimeLag) {
    SmallBasin content{1, k_first, 2};
    for (auto& row : content.physical) row.precip = 1.0F;  // rain: 100 m³/s
    for (auto& row : content.parameters) row.xcoeff = 0.0;
    open(content);
    run.LagDistribution = {1.0F, 0.5F};

    EXPECT_TRUE(simulate().completed);
    EXPECT_THAT(stored().DailyQ, ElementsAre(50.0, 50.0));
    EXPECT_THAT(stored().TotalMelt, ElementsAre(100.0F, 100.0F));

    run.LagDistribution = {};
    EXPECT_TRUE(simulate().completed);
    EXPECT_THAT(stored().DailyQ, ElementsAre(100.0, 100.0));
}

TEST_F(RunDriver, NoSnowKeepsTheCoverOfTheChangedClimateInTheFile) {
    SmallBasin content{1, k_first, 2};
    for (auto& row : content.physical) row.sca = 0.5F;
    open(content);
    run.NoSnow = true;

    EXPECT_TRUE(simulate().completed);

    EXPECT_THAT(stored().SCA, Each(0.0F));
    EXPECT_THAT(stored().SCACC, Each(0.5F));
    EXPECT_THAT(stored().ZonalMelt, Each(0.0F));
}

TEST_F(RunDriver, ZoneTotalsEndWithTheWinterInAMeltSeasonRunAlone) {
    SmallBasin content{1, date_of(2001, 3, 30), 4};
    for (auto& row : content.physical) row.precip = 1.0F;
    open(content);

    EXPECT_TRUE(simulate(0).completed);
    EXPECT_EQ(run.zone_totals[0].last_day, date_of(2001, 3, 31));
    EXPECT_EQ(run.zone_totals[0].rain, 2.0F);

    EXPECT_TRUE(simulate(1).completed);
    EXPECT_EQ(run.zone_totals[0].last_day, date_of(2001, 4, 2));
    EXPECT_EQ(run.zone_totals[0].rain, 4.0F);
}

TEST_F(RunDriver, ADefaultThresholdIsAChangeOfTheBasin) {
    SmallBasin content{1, k_first, 2};
    content.simulation.precipitation_threshold.reset();
    open(content);

    EXPECT_TRUE(simulate().completed);

    EXPECT_EQ(basin.current_simulation()->precipitation_threshold, 6.0F);
    EXPECT_TRUE(basin.Basin_Changed);
    EXPECT_FALSE(basin.Input_Changed);  // a completed run clears it
}

}  // namespace
}  // namespace nivora
