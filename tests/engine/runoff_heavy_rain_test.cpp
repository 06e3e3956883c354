#include "engine/runoff_simulation.h"
#include "tests/engine/engine_fixture.h"

#include <gmock/gmock.h>

#include <cmath>

namespace nivora {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

/// Two zones of equal area without input. Each day starts from a measured discharge of 4, with x = 1 and
/// y = 0.5: an ordinary day has 4 x 4^-0.5 = 2, a high-flow day 4 x (4 x 4)^-0.5 = 1.
class HeavyRain : public EngineTest {
protected:
    void SetUp() override { begin(8); }

    void begin(int days_in_run) {
        start(2, date_of(2001, 6, 1), days_in_run);
        for (auto* column : {&table.Cpr, &table.M1S, &table.ZoneDD, &table.ZoneDDCC}) fill(*column, 0.0);
        for (auto* column : {&table.Xcoeff, &table.XcoeffCC}) fill(*column, 1.0);
        for (auto* column : {&table.YCoeff, &table.YCoeffCC}) fill(*column, 0.5);
        fill(table.ActualQ, 4.0);
        run.InitialRunoff = 4.0F;
        run.UpdateInterval = 1;
    }

    std::vector<double> discharge() {
        EXPECT_TRUE(runoff_simulation());
        return days(table.DailyQ, 1);
    }

    /// Whether rain on day 1 alone starts high flow.
    bool starts_high_flow(float rain1, float rain2) {
        table.Precip[at(1, 1)] = rain1;
        table.Precip[at(2, 1)] = rain2;
        const double q = discharge()[0];
        EXPECT_TRUE(q == 1.0 || q == 2.0);
        return q == 1.0;
    }
};

TEST_F(HeavyRain, LastsFiveDaysOfWhichTheDayItselfIsTheFirst) {
    set(table.Precip, 1, {0, 6, 0, 0, 0, 0, 0, 0});
    set(table.Precip, 2, {0, 6, 0, 0, 0, 0, 0, 0});

    EXPECT_THAT(discharge(), ElementsAre(2, 1, 1, 1, 1, 1, 2, 2));
}

TEST_F(HeavyRain, StartsFiveNewDaysWhenItComesAgain) {
    for (const int z : {1, 2}) set(table.Precip, z, {6, 0, 6, 0, 0, 0, 0, 0});

    EXPECT_THAT(discharge(), ElementsAre(1, 1, 1, 1, 1, 1, 1, 2));
}

TEST_F(HeavyRain, InOneZoneButNotOnTheAverageStartsNothing) {
    EXPECT_FALSE(starts_high_flow(11.0F, 0.0F));  // average 5.5
}

TEST_F(HeavyRain, InAnyZoneMayStartIt) {
    EXPECT_TRUE(starts_high_flow(0.0F, 12.0F));
    EXPECT_TRUE(starts_high_flow(12.0F, 0.0F));
}

TEST_F(HeavyRain, OfExactlyTheThresholdOnTheAverageCounts) {
    EXPECT_TRUE(starts_high_flow(12.0F, 0.0F));
    EXPECT_FALSE(starts_high_flow(std::nextafter(12.0F, 0.0F), 0.0F));
}

TEST_F(HeavyRain, OnTheAverageNeedsAZoneThatReachesTheThresholdToo) {
    const float below = std::nextafter(6.0F, 0.0F);

    EXPECT_FALSE(starts_high_flow(below, below));
}

TEST_F(HeavyRain, IsComparedAsASingleSoThatBarelyBelowTheThresholdCounts) {
    // 6 and its neighbour 5.99999952 have the mean 5.99999976: a tie between these
    // two Singles, which rounds to the even 6.
    EXPECT_TRUE(starts_high_flow(6.0F, std::nextafter(6.0F, 0.0F)));
}

TEST_F(HeavyRain, AveragesByArea) {
    basin.zones[1].area = 432.0;
    basin.basin_area_text = basin_area_text(basin.zones);  // 1296

    EXPECT_TRUE(starts_high_flow(9.0F, 0.0F));    // 9 x 864 / 1296 = 6
    EXPECT_FALSE(starts_high_flow(0.0F, 17.5F));  // 17.5 x 432 / 1296 = 5.83
}

TEST_F(HeavyRain, DividesByTheAreaThatTheMainWindowShows) {
    basin.basin_area_text = "3456";

    EXPECT_FALSE(starts_high_flow(23.5F, 0.0F));  // 23.5 x 864 / 3456 = 5.875
    EXPECT_TRUE(starts_high_flow(24.0F, 0.0F));
}

TEST_F(HeavyRain, DoesNotCountWhereItFallsAsSnow) {
    fill_zone(table.Tcrit, 2, 1.0);

    EXPECT_FALSE(starts_high_flow(11.0F, 100.0F));
    EXPECT_TRUE(starts_high_flow(12.0F, 100.0F));
    fill_zone(table.ZoneDD, 2, 1.0);  // exactly critical counts as rain
    EXPECT_TRUE(starts_high_flow(0.0F, 12.0F));
}

TEST_F(HeavyRain, CountsOnTheSnowFreePartWhereTheSwitchIs0) {
    fill(table.SCA, 0.5);
    fill(table.RCA, 0.0);

    EXPECT_FALSE(starts_high_flow(11.0F, 11.0F));
    EXPECT_TRUE(starts_high_flow(12.0F, 12.0F));
    fill(table.RCA, 1.0);
    EXPECT_TRUE(starts_high_flow(6.0F, 6.0F));
    fill(table.RCA, k_missing);
    EXPECT_TRUE(starts_high_flow(6.0F, 6.0F));
}

TEST_F(HeavyRain, AMissingCoverLeavesTheShareOfTheZoneBefore) {
    table.SCA[at(1, 1)] = 0.5F;
    table.RCA[at(1, 1)] = 0.0F;  // zone 1's share is 1 - 0.5
    table.SCA[at(2, 1)] = k_missing;
    table.RCA[at(2, 1)] = 0.0F;

    EXPECT_FALSE(starts_high_flow(11.0F, 11.0F));
    EXPECT_TRUE(starts_high_flow(12.0F, 12.0F));
}

TEST_F(HeavyRain, AMissingCoverBeforeAnyShareCountsForNothing) {
    table.SCA[at(1, 1)] = k_missing;
    table.RCA[at(1, 1)] = 0.0F;

    EXPECT_FALSE(starts_high_flow(100.0F, 11.0F));  // 11 / 2, from zone 2 alone
    EXPECT_TRUE(starts_high_flow(100.0F, 12.0F));
}

TEST_F(HeavyRain, AnAverageThatExceedsASingleStartsNothing) {
    basin.basin_area_text = "1";  // (864 + 864) x 3 x 10^38 / 1

    EXPECT_FALSE(starts_high_flow(3e38F, 3e38F));
}

TEST_F(HeavyRain, ABasinAreaOf0LeavesTheSumUndivided) {
    basin.basin_area_text = "0";

    EXPECT_TRUE(starts_high_flow(6.0F, 0.0F));  // 864 x 6 exceeds the threshold of 6
}

TEST_F(HeavyRain, DoesNotCountWhereDegreeDaysOrCriticalTemperatureAreMissing) {
    table.ZoneDD[at(2, 1)] = k_missing;
    EXPECT_FALSE(starts_high_flow(11.0F, 100.0F));
    table.ZoneDD[at(2, 1)] = 0.0F;
    table.Tcrit[at(2, 1)] = k_missing;
    EXPECT_FALSE(starts_high_flow(11.0F, 100.0F));
}

TEST_F(HeavyRain, AMissingPrecipitationAddsNothing) {
    EXPECT_TRUE(starts_high_flow(12.0F, k_missing));
    EXPECT_FALSE(starts_high_flow(k_missing, 11.0F));
}

TEST_F(HeavyRain, AThresholdOf0MakesEveryDayOneOfHighFlow) {
    simulation().precipitation_threshold = 0.0F;

    EXPECT_THAT(discharge(), Each(1.0));
}

TEST_F(HeavyRain, OfTheChangedClimateCountsInItsSteps) {
    run.ClimateStep = 4;
    fill_zone(table.PrecipCC, 1, 6.0);
    fill_zone(table.PrecipCC, 2, 6.0);

    EXPECT_THAT(discharge(), Each(1.0));
}

TEST_F(HeavyRain, HasAThresholdOfItsOwnForEachSimulation) {
    simulation().precipitation_threshold = 2.0F;

    EXPECT_FALSE(starts_high_flow(1.75F, 2.0F));
    EXPECT_TRUE(starts_high_flow(2.0F, 2.0F));
    EXPECT_FALSE(basin.Basin_Changed);
    EXPECT_FALSE(basin.Input_Changed);
}

TEST_F(HeavyRain, AnEmptyThresholdBecomes6CentimetresInTheSimulationAsAChangeToSave) {
    simulation().precipitation_threshold.reset();

    EXPECT_FALSE(starts_high_flow(6.0F, 5.75F));
    EXPECT_EQ(simulation().precipitation_threshold, 6.0F);
    EXPECT_TRUE(basin.Basin_Changed);
    EXPECT_TRUE(basin.Input_Changed);
    EXPECT_TRUE(starts_high_flow(6.0F, 6.0F));
}

TEST_F(HeavyRain, AnEmptyThresholdBecomes2Point36InchesInAnEnglishBasin) {
    simulation().precipitation_threshold.reset();
    simulation().units = Units::English;
    basin.Units_Code = Units::English;

    EXPECT_TRUE(starts_high_flow(2.36F, 2.36F));
    EXPECT_EQ(simulation().precipitation_threshold, 2.36F);
}

TEST_F(HeavyRain, TheDefaultThresholdFollowsTheBasinsUnitsAndNotTheSimulations) {
    simulation().precipitation_threshold.reset();
    simulation().units = Units::English;
    (void)discharge();
    EXPECT_EQ(simulation().precipitation_threshold, 6.0F);

    simulation().precipitation_threshold.reset();
    simulation().units = Units::Metric;
    basin.Units_Code = Units::English;
    (void)discharge();
    EXPECT_EQ(simulation().precipitation_threshold, 2.36F);
}

}  // namespace
}  // namespace nivora
