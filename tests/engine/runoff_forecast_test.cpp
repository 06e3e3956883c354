#include "engine/runoff_simulation.h"
#include "tests/engine/engine_fixture.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using ::testing::ElementsAre;

/// Seven days without input, k = 0.5, 16 m³/s before the run and a measured discharge of 100 m³/s.
class RunoffForecast : public EngineTest {
protected:
    void SetUp() override { begin(1); }

    void begin(int zones) {
        start(zones, date_of(2001, 6, 1), 7);
        for (auto* column : {&table.Cpr, &table.M1S, &table.ZoneDD, &table.ZoneDDCC}) fill(*column, 0.0);
        for (auto* column : {&table.Xcoeff, &table.XcoeffCC}) fill(*column, 0.5);
        fill(table.ActualQ, 100.0);
        run.InitialRunoff = 16.0F;
        run.UpdateInterval = 3;
    }

    std::vector<double> discharge() {
        EXPECT_TRUE(runoff_simulation());
        return days(table.DailyQ, 1);
    }
};

TEST_F(RunoffForecast, StartsTheDayAfterAnUpdateFromTheMeasuredDischarge) {
    // 16 is halved until day 3, whose computed 2 stays. Day 4 starts
    // from the measured 100, and so does day 7.
    EXPECT_THAT(discharge(), ElementsAre(8, 4, 2, 50, 25, 12.5, 50));
}

TEST_F(RunoffForecast, EveryDayStartsFromTheMeasuredDischargeWithAnIntervalOf1) {
    run.UpdateInterval = 1;
    set(table.ActualQ, 1, {10, 20, 30, 40, 50, 60, 70});

    EXPECT_THAT(discharge(), ElementsAre(8, 5, 10, 15, 20, 25, 30));
}

TEST_F(RunoffForecast, AnIntervalLongerThanTheRunChangesNothing) {
    run.UpdateInterval = 9;

    EXPECT_THAT(discharge(), ElementsAre(8, 4, 2, 1, 0.5, 0.25, 0.125));
}

TEST_F(RunoffForecast, ASimulationIsNeverUpdated) {
    run.UpdateInterval = 0;

    EXPECT_THAT(discharge(), ElementsAre(8, 4, 2, 1, 0.5, 0.25, 0.125));
}

TEST_F(RunoffForecast, RunKindAloneUpdatesNothing) {
    run.UpdateInterval = 0;
    run.RunKind = k_year_round_forecast;

    EXPECT_THAT(discharge(), ElementsAre(8, 4, 2, 1, 0.5, 0.25, 0.125));
}

TEST_F(RunoffForecast, AnUpdateDayWithoutMeasuredDischargeGoesBackToTheDayBefore) {
    table.ActualQ[2] = k_missing;

    // Day 4 still builds on day 2's 4, not on day 3's 2. The update of day 6 takes place.
    EXPECT_THAT(discharge(), ElementsAre(8, 4, 2, 2, 1, 0.5, 50));
}

TEST_F(RunoffForecast, TakesTheMeasuredDischargeOfTheFirstZonesRow) {
    begin(2);
    fill_zone(table.ActualQ, 2, 1000.0);

    EXPECT_THAT(discharge(), ElementsAre(8, 4, 2, 50, 25, 12.5, 50));
}

TEST_F(RunoffForecast, CountsDaysByRowsEvenIfADayIsMissing) {
    remove_row(at(1, 2));

    EXPECT_TRUE(runoff_simulation());

    // The third day in the table is June 4th.
    EXPECT_THAT(table.DailyQ, ElementsAre(8, 4, 2, 50, 25, 12.5));
}

TEST_F(RunoffForecast, InStep6TheComputedDischargeOfThePresentIsTheMeasuredOne) {
    run.ClimateStep = 6;
    fill(table.DailyQPresent, 40.0);

    EXPECT_THAT(discharge(), ElementsAre(8, 4, 2, 20, 10, 5, 20));
}

TEST_F(RunoffForecast, FinalQIsTheComputedDischargeEvenOnAnUpdateDay) {
    run.UpdateInterval = 7;

    (void)discharge();

    EXPECT_EQ(run.FinalQ[0], 0.125F);
}

}  // namespace
}  // namespace nivora
