#include "engine/runoff_simulation.h"
#include "tests/engine/engine_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace nivora {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsNan;

/// With a lag of 18 hours and x = y = 0 the discharge of day 2 is exactly the input of day 1, as a Double.
class RunoffInput : public EngineTest {
protected:
    void SetUp() override { begin(2, 2); }

    void begin(int zones, int days) {
        start(zones, date_of(2001, 6, 1), days);
        fill(table.LagTime, 18.0);
        fill(table.LagTimeCC, 18.0);
        for (auto* column : {&table.Cpr, &table.M1S, &table.ZoneDD, &table.ZoneDDCC}) fill(*column, 0.0);
    }

    bool go() { return runoff_simulation(); }

    double input_of_day1() {
        EXPECT_TRUE(go());
        return table.DailyQ[at(1, 2)];
    }
};

TEST_F(RunoffInput, SumsRainNewMeltAndZonalMeltOfTheZonesByArea) {
    basin.zones[1].area = 432.0;  // 1 cm is 50 m³/s
    set(table.CR, 1, {0.5, 1.0}), set(table.CS, 1, {0.75, 1.0});
    set(table.M1S, 1, {1.0, 0.0}), set(table.Cpr, 1, {3.0, 0.0});
    set(table.SCA, 1, {0.5, 0.0}), set(table.ZoneDD, 1, {4.0, 0.0}), set(table.AN, 1, {0.5, 0.0});
    set(table.CR, 2, {0.25, 1.0}), set(table.CS, 2, {0.5, 1.0});
    set(table.M1S, 2, {0.0, 0.0}), set(table.Cpr, 2, {4.0, 0.0});
    set(table.SCA, 2, {0.25, 0.0}), set(table.ZoneDD, 2, {8.0, 0.0}), set(table.AN, 2, {0.5, 0.0});

    // Zone 1: zonal melt 0.5 x 4 x 0.5 = 1; 100 x (0.5 x (1 + 3) + 0.75 x 1) = 275.
    // Zone 2: zonal melt 0.25 x 8 x 0.5 = 1; 50 x (0.25 x 4 + 0.5 x 1) = 75.
    EXPECT_EQ(input_of_day1(), 350.0);
    EXPECT_THAT(days(table.ZonalMelt, 1), ElementsAre(1.0F, 0.0F));
    EXPECT_THAT(days(table.ZonalMelt, 2), ElementsAre(1.0F, 0.0F));
    EXPECT_EQ(table.DailyQ[at(1, 1)], 350.0);
    EXPECT_THAT(days(table.TotalMelt, 1), Each(350.0F));
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(RunoffInput, DischargeAndTotalMeltAreOnTheFirstZonesRowOnly) {
    EXPECT_TRUE(go());

    EXPECT_THAT(days(table.DailyQ, 2), Each(IsNan()));
    EXPECT_THAT(days(table.TotalMelt, 2), Each(IsNan()));
}

TEST_F(RunoffInput, EnglishUnitsOfTheSimulationConvertInchesToFeet) {
    begin(1, 2);
    simulation().units = Units::English;
    basin.zones[0].area = 11250.0;
    fill(table.Cpr, 1.0);

    // 11,250 mi² x 27,878,400 ft²/mi² x 0.0833 ft / 86,400 s = 302,379 ft³/s.
    EXPECT_EQ(input_of_day1(), 302379.0);
}

TEST_F(RunoffInput, UnitsOfTheBasinDoNotChangeTheInput) {
    begin(1, 2);
    basin.Units_Code = Units::English;
    fill(table.Cpr, 1.0);

    EXPECT_EQ(input_of_day1(), 100.0);
}

TEST_F(RunoffInput, AZonesAreaIsASingle) {
    begin(1, 2);
    basin.zones[0].area = 0.1;
    fill(table.Cpr, 1.0);

    EXPECT_EQ(input_of_day1(), static_cast<double>(0.1F) * 1000000.0 * (0.01 / 86400.0));
}

TEST_F(RunoffInput, ZonalMeltIsASingleBeforeItIsSummed) {
    begin(1, 2);
    fill(table.SCA, 0.1F);
    fill(table.ZoneDD, 0.1F);
    const double product = static_cast<double>(0.1F) * static_cast<double>(0.1F);
    const auto melt = static_cast<float>(product);
    ASSERT_NE(static_cast<double>(melt), product);

    EXPECT_EQ(input_of_day1(), 100.0 * static_cast<double>(melt));
    EXPECT_EQ(table.ZonalMelt[0], melt);
}

TEST_F(RunoffInput, AZoneWithAMissingCoefficientAddsNothing) {
    fill_zone(table.Cpr, 1, 1.0);
    fill_zone(table.Cpr, 2, 2.0);
    for (auto* column : {&table.CR, &table.CS}) {
        fill_zone(*column, 1, k_missing);
        EXPECT_EQ(input_of_day1(), 200.0);
        fill_zone(*column, 1, 1.0);
    }
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(RunoffInput, AZoneWithAMissingCoverAddsNothingAndHasNoZonalMelt) {
    fill_zone(table.Cpr, 1, 1.0);
    fill_zone(table.Cpr, 2, 2.0);
    fill_zone(table.SCA, 2, k_missing);
    fill(table.ZonalMelt, 5.0);

    EXPECT_EQ(input_of_day1(), 100.0);
    EXPECT_THAT(days(table.ZonalMelt, 2), Each(IsNan()));
}

TEST_F(RunoffInput, AZoneThatSnowMeltLeftEmptyAddsNothing) {
    fill_zone(table.Cpr, 1, 1.0);
    fill_zone(table.Cpr, 2, k_missing);
    fill_zone(table.M1S, 2, k_missing);

    EXPECT_EQ(input_of_day1(), 100.0);
}

TEST_F(RunoffInput, NegativeFieldsDoNotStopTheStage) {
    fill_zone(table.Cpr, 1, 3.0);
    fill_zone(table.Cpr, 2, -1.0);

    EXPECT_EQ(input_of_day1(), 200.0);
}

TEST_F(RunoffInput, ZonalMeltTooLargeForASingleKeepsItsFormerValue) {
    begin(1, 2);
    fill(table.SCA, 1.0);
    fill(table.ZoneDD, 3e38);
    fill(table.AN, 10.0);
    fill(table.ZonalMelt, 2.0);

    EXPECT_EQ(input_of_day1(), 200.0);
    EXPECT_THAT(table.ZonalMelt, Each(2.0F));
    EXPECT_TRUE(dialogs.messages().empty());
}

class RunoffColumnsByStep : public RunoffInput, public ::testing::WithParamInterface<int> {};

TEST_P(RunoffColumnsByStep, FollowTheStep) {
    begin(1, 2);
    run.ClimateStep = GetParam();
    const bool changed = GetParam() == 2 || GetParam() > 3;
    fill(table.ZoneDD, 1.0), fill(table.ZoneDDCC, 2.0);
    fill(table.AN, 1.0), fill(table.ANCC, 2.0);
    fill(table.CS, 1.0), fill(table.CSCC, 0.5);
    fill(table.CR, 1.0), fill(table.CRCC, 0.25);
    fill(table.Cpr, 4.0);
    fill(table.SCA, 0.125), fill(table.SCACC, 0.25), fill(table.SCAclimWAMA, 0.5);
    fill(table.LagTime, 18.0), fill(table.LagTimeCC, 0.0);
    fill(table.Xcoeff, 0.5), fill(table.XcoeffCC, 0.25);
    fill(table.DailyQ, 77.0), fill(table.DailyQPresent, 88.0);
    table.Cpr[1] = 0.0F;
    table.ZoneDD[1] = table.ZoneDDCC[1] = 0.0F;

    EXPECT_TRUE(go());

    // Present: 100 x (4 + 0.125) = 412.5. Changed: 100 x (0.25 x 4 + 0.5 x cover x 4) = 100 + 200 x cover.
    const double cover = GetParam() == 2 ? 0.25 : GetParam() == 6 ? 0.5 : 0.125;
    const double input = changed ? 100.0 + 200.0 * cover : 412.5;
    const double k = changed ? 0.25 : 0.5;
    // Day 1 receives the whole input; day 2 receives all of it at 18 hours, a quarter at 0 hours.
    const double day1 = input * (1.0 - k) + 10.0 * k;
    const double day2 = (changed ? input / 4.0 : input) * (1.0 - k) + day1 * k;
    const auto& computed = GetParam() == 3 ? table.DailyQPresent : table.DailyQ;
    EXPECT_THAT(computed, ElementsAre(day1, day2));
    EXPECT_THAT(GetParam() == 3 ? table.DailyQ : table.DailyQPresent, Each(GetParam() == 3 ? 77.0 : 88.0));
    for (int step = 0; step <= 6; ++step) {
        EXPECT_EQ(run.FinalQ[static_cast<std::size_t>(step)],
                  step == GetParam() ? static_cast<float>(day2) : 0.0F);
    }
}

INSTANTIATE_TEST_SUITE_P(AllSteps, RunoffColumnsByStep, ::testing::Range(0, 7));

class ClimateSums : public RunoffInput, public ::testing::WithParamInterface<int> {};

TEST_P(ClimateSums, AreKeptInSteps1To3Alone) {
    begin(2, 2);
    run.ClimateStep = GetParam();
    for (auto* column : {&table.SCA, &table.SCACC, &table.SCAclimWAMA}) fill(*column, 1.0);
    set(table.M1S, 1, {1.0, 2.0}), set(table.Cpr, 1, {4.0, 8.0});
    set(table.M1S, 2, {32.0, 0.0}), set(table.Cpr, 2, {64.0, 0.0});
    for (auto* column : {&table.ZoneDD, &table.ZoneDDCC}) {
        set(*column, 1, {16.0, 32.0});
        set(*column, 2, {128.0, 0.0});
    }

    EXPECT_TRUE(go());

    for (int step = 1; step <= 4; ++step) {
        const auto& zone1 = run.ClimateSums[1][static_cast<std::size_t>(step)];
        const auto& zone2 = run.ClimateSums[2][static_cast<std::size_t>(step)];
        if (step == GetParam() && step <= 3) {
            // Item 1 is the sum of items 2 (zonal melt), 3 (rain) and 4 (new melt).
            EXPECT_THAT(zone1, ElementsAre(0.0F, 63.0F, 48.0F, 12.0F, 3.0F));
            EXPECT_THAT(zone2, ElementsAre(0.0F, 224.0F, 128.0F, 64.0F, 32.0F));
        } else {
            EXPECT_THAT(zone1, Each(0.0F));
            EXPECT_THAT(zone2, Each(0.0F));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(AllSteps, ClimateSums, ::testing::Range(0, 7));

TEST_F(RunoffInput, ClimateSumsAddToWhatTheyHold) {
    begin(1, 1);
    run.ClimateStep = 1;
    run.ClimateSums[1][1] = {0.0F, 100.0F, 200.0F, 300.0F, 400.0F};
    fill(table.Cpr, 4.0);
    fill(table.M1S, 1.0);

    EXPECT_TRUE(go());

    EXPECT_THAT(run.ClimateSums[1][1], ElementsAre(0.0F, 105.0F, 200.0F, 304.0F, 401.0F));
}

TEST_F(RunoffInput, AClimateSumWithAMissingPartKeepsWhatItHas) {
    begin(1, 1);
    run.ClimateStep = 1;
    fill(table.Cpr, k_missing);
    fill(table.M1S, 1.0);

    EXPECT_TRUE(go());

    EXPECT_THAT(run.ClimateSums[1][1], ElementsAre(0.0F, 0.0F, 0.0F, 0.0F, 1.0F));
}

TEST_F(RunoffInput, ClimateSumsHaveNoRoomForATenthZoneAndSkipIt) {
    begin(10, 2);
    run.ClimateStep = 1;
    fill(table.Cpr, 1.0);

    EXPECT_EQ(input_of_day1(), 1000.0);
    EXPECT_EQ(run.ClimateSums[9][1][3], 2.0F);
    EXPECT_TRUE(dialogs.messages().empty());
}

}  // namespace
}  // namespace nivora
