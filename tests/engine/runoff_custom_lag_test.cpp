#include "engine/runoff_custom_lag.h"

#include "engine/runoff_simulation.h"
#include "tests/engine/engine_fixture.h"

#include <gmock/gmock.h>

#include <cmath>

namespace nivora {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsNan;

/// Inputs of 100, 200, 400 and 800 m³/s on four days, and x = y = 0, so that discharge is the lagged input.
class CustomLag : public EngineTest {
protected:
    void SetUp() override {
        begin(1, 4);
        set(table.Cpr, 1, {1.0, 2.0, 4.0, 8.0});
    }

    void begin(int zones, int days_in_run) {
        start(zones, date_of(2001, 6, 1), days_in_run);
        for (auto* column : {&table.Cpr, &table.M1S, &table.ZoneDD, &table.ZoneDDCC}) fill(*column, 0.0);
    }

    void shares(std::initializer_list<float> values) {
        run.LagDistribution = {};
        run.LagDistribution[0] = static_cast<float>(values.size());
        std::size_t i = 1;
        for (const float value : values) run.LagDistribution[i++] = value;
    }

    bool go() { return runoff_custom_lag(); }

    std::vector<double> discharge() {
        EXPECT_TRUE(go());
        return days(table.DailyQ, 1);
    }
};

TEST_F(CustomLag, OfOneDayReleasesEachInputOnItsDay) {
    shares({1.0F});

    EXPECT_THAT(discharge(), ElementsAre(100.0, 200.0, 400.0, 800.0));
}

TEST_F(CustomLag, OfThreeDaysTakesTheFirstDayForTheDaysBeforeTheRun) {
    shares({0.5F, 0.25F, 0.25F});

    // 100; 0.5 x 200 + 0.5 x 100; 0.5 x 400 + 0.25 x 200 + 0.25 x 100; 0.5 x 800 + 0.25 x 400 + 0.25 x 200.
    EXPECT_THAT(discharge(), ElementsAre(100.0, 150.0, 275.0, 550.0));
}

TEST_F(CustomLag, GivesTheFirstShareToTheDayItself) {
    shares({0.5F, 0.3F, 0.2F});

    // The shares are decimal numbers (not Singles), summed from the oldest day on.
    EXPECT_THAT(discharge(), ElementsAre(0.2 * 100 + 0.3 * 100 + 0.5 * 100,    //
                                         0.2 * 100 + 0.3 * 100 + 0.5 * 200,    //
                                         0.2 * 100 + 0.3 * 200 + 0.5 * 400,    //
                                         0.2 * 200 + 0.3 * 400 + 0.5 * 800));  //
}

TEST_F(CustomLag, RoundsItsSharesToFiveDecimals) {
    shares({1.0F / 3.0F, 0.000004F});

    // 0.33333 of the same day's input; the share of the day before rounds to 0.
    EXPECT_THAT(discharge(), ElementsAre(0.33333 * 100, 0.33333 * 200, 0.33333 * 400, 0.33333 * 800));
}

TEST_F(CustomLag, AcceptsSharesThatDoNotMake1) {
    shares({0.25F, 0.25F});

    EXPECT_THAT(discharge(), ElementsAre(50.0, 75.0, 150.0, 300.0));
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(CustomLag, MayBeLongerThanTheRun) {
    begin(1, 2);
    set(table.Cpr, 1, {1.0, 2.0});
    shares({0.5F, 0.0F, 0.0F, 0.0F, 0.25F, 0.25F});

    EXPECT_THAT(discharge(), ElementsAre(100.0, 150.0));  // 0.5 x 200 + 0.5 x 100
}

TEST_F(CustomLag, IgnoresTheTimeLag) {
    fill(table.LagTime, 30.0);
    shares({1.0F});

    EXPECT_THAT(discharge(), ElementsAre(100.0, 200.0, 400.0, 800.0));
}

TEST_F(CustomLag, TotalMeltHoldsTheInputOfTheDayItself) {
    shares({0.5F, 0.5F});

    (void)discharge();

    EXPECT_THAT(table.TotalMelt, ElementsAre(100.0F, 200.0F, 400.0F, 800.0F));
}

TEST_F(CustomLag, InputsStayDoublesFromDayToDay) {
    begin(1, 3);
    fill(table.Cpr, 0.1F);
    shares({0.0F, 1.0F});

    EXPECT_THAT(discharge(), Each(100.0 * static_cast<double>(0.1F)));
    EXPECT_THAT(table.TotalMelt, Each(10.0F));
}

TEST_F(CustomLag, SumsTheZonesAndKeepsTheirZonalMelt) {
    begin(2, 2);
    basin.zones[1].area = 432.0;
    set(table.Cpr, 1, {1.0, 2.0});
    fill_zone(table.SCA, 2, 0.5);
    fill_zone(table.ZoneDD, 2, 4.0);
    fill_zone(table.AN, 2, 0.5);
    shares({1.0F});

    // Zone 2: zonal melt 0.5 x 4 x 0.5 = 1 cm on 432 km², which is 50 m³/s.
    EXPECT_THAT(discharge(), ElementsAre(150.0, 250.0));
    EXPECT_THAT(days(table.ZonalMelt, 2), Each(1.0F));
    EXPECT_THAT(days(table.DailyQ, 2), Each(IsNan()));
    EXPECT_THAT(days(table.TotalMelt, 2), Each(IsNan()));
}

TEST_F(CustomLag, MixesTheInputWithTheDischargeOfTheDayBefore) {
    fill(table.Xcoeff, 0.5);
    shares({1.0F});

    // 100 x 0.5 + 10 x 0.5 = 50 + 5; 100 + 27.5; 200 + 63.75; 400 + 131.875.
    EXPECT_THAT(discharge(), ElementsAre(55.0, 127.5, 263.75, 531.875));
    EXPECT_EQ(run.FinalQ[0], 531.875F);
}

TEST_F(CustomLag, AForecastIsNeverUpdated) {
    fill(table.Xcoeff, 0.5);
    fill(table.ActualQ, 1000.0);
    shares({0.5F, 0.5F});
    run.UpdateInterval = 0;
    const std::vector<double> simulation = discharge();

    for (int interval = 1; interval <= 9; ++interval) {
        run.UpdateInterval = interval;
        EXPECT_EQ(discharge(), simulation) << interval;
    }
}

TEST_F(CustomLag, ALimitOfTheRecessionIsReportedOnce) {
    fill(table.Xcoeff, 1.0);
    shares({1.0F});
    dialogs.then(Answer::Ok);

    const auto q = discharge();

    EXPECT_EQ(q[0], 100.0 * 0.01 + (1.0 - 0.01) * 10.0);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(dialogs.messages()[0].message.text, k_limit_text);
    EXPECT_EQ(dialogs.messages()[0].message.buttons, Buttons::OkCancel);
}

TEST_F(CustomLag, CancelEndsTheStageAtOnceWithTheZonalMeltOfAllDaysWritten) {
    set(table.Xcoeff, 1, {0.5, 1.0, 0.5, 0.5});
    shares({1.0F});
    dialogs.then(Answer::Cancel);

    EXPECT_FALSE(go());

    EXPECT_THAT(table.DailyQ, ElementsAre(55.0, IsNan(), IsNan(), IsNan()));
    EXPECT_THAT(table.ZonalMelt, Each(0.0F));
    EXPECT_THAT(table.TotalMelt, ElementsAre(100.0F, 200.0F, IsNan(), IsNan()));
    EXPECT_EQ(run.FinalQ[0], 0.0F);
}

TEST_F(CustomLag, ADischargeOf0KeepsTheFormerShare) {
    set(table.Cpr, 1, {0.0, 0.0, 1.0, 1.0});
    set(table.YCoeff, 1, {0.0, 0.0, 0.5, 0.0});
    shares({1.0F});
    run.InitialRunoff = 0.0F;
    fill(table.Xcoeff, 0.5);

    EXPECT_THAT(discharge(), ElementsAre(0.0, 0.0, 50.0, 75.0));
}

TEST_F(CustomLag, FinalQBelongsToTheStep) {
    run.ClimateStep = 3;
    shares({1.0F});

    EXPECT_TRUE(go());

    EXPECT_THAT(table.DailyQPresent, ElementsAre(100.0, 200.0, 400.0, 800.0));
    EXPECT_THAT(table.DailyQ, Each(IsNan()));
    EXPECT_EQ(run.FinalQ[3], 800.0F);
    EXPECT_EQ(run.FinalQ[0], 0.0F);
}

TEST_F(CustomLag, ClimateSumsAreKeptAsWithATimeLag) {
    run.ClimateStep = 1;
    shares({1.0F});

    EXPECT_TRUE(go());

    EXPECT_THAT(run.ClimateSums[1][1], ElementsAre(0.0F, 15.0F, 0.0F, 15.0F, 0.0F));
}

TEST_F(CustomLag, RowsAreTakenByPositionWhereAZoneMissesADay) {
    begin(2, 3);
    basin.zones[1].area = 432.0;
    set(table.Cpr, 1, {1.0, 4.0, 8.0});
    set(table.Cpr, 2, {2.0, 0.0, 16.0});
    remove_row(at(2, 2));
    shares({1.0F});

    EXPECT_TRUE(go());

    // Pairs by position: 100 + 50 x 2; 400 + 50 x 8; zone 2 of day 3 alone with the area of zone 1: 1600.
    EXPECT_THAT(table.DailyQ, ElementsAre(200.0, 800.0, IsNan(), IsNan(), 1600.0));
}

TEST_F(CustomLag, HasRoomForTwoDaysMoreThanThePeriodAndKeepsTheNewestInputBeyond) {
    // Four zones of data in a basin of one zone: their four rows of one date count as four days; three fit.
    begin(4, 1);
    for (int z = 1; z <= 4; ++z) table.Cpr[at(z, 1)] = static_cast<float>(z);
    basin.ZoneCount = 1;
    basin.zones.resize(1);
    shares({1.0F});

    EXPECT_TRUE(go());

    EXPECT_THAT(table.DailyQ, ElementsAre(100.0, 200.0, 300.0, 300.0));
    EXPECT_THAT(table.TotalMelt, ElementsAre(100.0F, 200.0F, 300.0F, IsNan()));
}

TEST_F(CustomLag, ARunOfOneDayWorks) {
    begin(2, 1);
    table.Cpr[at(1, 1)] = 1.0F;
    table.Cpr[at(2, 1)] = 2.0F;
    shares({0.5F, 0.25F, 0.25F});

    EXPECT_THAT(discharge(), ElementsAre(300.0));
    EXPECT_EQ(run.FinalQ[0], 300.0F);
    EXPECT_EQ(table.size(), 2U);
}

/// Two zones without input. Starting from 4 m³/s with x = 1 and y = 0.5,
/// an ordinary day has 2, a high-flow day 1.
class HeavyRainWithCustomLag : public CustomLag {
protected:
    void SetUp() override {
        begin(2, 1);
        shares({1.0F});
        fill(table.Xcoeff, 1.0);
        fill(table.YCoeff, 0.5);
        run.InitialRunoff = 4.0F;
    }

    bool starts_high_flow(float rain1, float rain2) {
        table.Precip[at(1, 1)] = rain1;
        table.Precip[at(2, 1)] = rain2;
        const double q = discharge()[0];
        EXPECT_TRUE(q == 1.0 || q == 2.0);
        return q == 1.0;
    }
};

TEST_F(HeavyRainWithCustomLag, OnlyTheFirstZonesPrecipitationCanStartHighFlow) {
    EXPECT_FALSE(starts_high_flow(0.0F, 100.0F));
    EXPECT_FALSE(starts_high_flow(std::nextafter(6.0F, 0.0F), 100.0F));
    EXPECT_TRUE(starts_high_flow(6.0F, 6.0F));
}

TEST_F(HeavyRainWithCustomLag, TheAverageOfAllZonesHasToReachTheThreshold) {
    EXPECT_FALSE(starts_high_flow(11.0F, 0.0F));
    EXPECT_TRUE(starts_high_flow(12.0F, 0.0F));
    EXPECT_TRUE(starts_high_flow(6.0F, 6.0F));
}

TEST_F(HeavyRainWithCustomLag, ARainyDayOfAnotherZoneDoesNotCarryItsFlagToTheNext) {
    // Zone 2 and the average reach the threshold on both days; zone 1 stays dry.
    begin(2, 2);
    fill(table.Xcoeff, 1.0);
    fill(table.YCoeff, 0.5);
    run.InitialRunoff = 4.0F;
    set(table.Precip, 2, {100.0, 100.0});

    const auto q = discharge();

    EXPECT_EQ(q[0], 2.0);
    EXPECT_EQ(q[1], (1.0 - (1.0 - std::pow(2.0, -0.5))) * 2.0);
}

TEST_F(HeavyRainWithCustomLag, LastsFiveDays) {
    begin(1, 7);
    fill(table.Xcoeff, 0.25);
    fill(table.YCoeff, -0.5);
    set(table.Precip, 1, {0, 6, 0, 0, 0, 0, 0});
    run.InitialRunoff = 4.0F;

    const auto q = discharge();

    // k = 0.25 x B^0.5, where B is 4 Q on days 2 to 6 and Q on the others.
    double expected = 4.0;
    for (int day = 1; day <= 7; ++day) {
        const double base = day >= 2 && day <= 6 ? expected * 4.0 : expected;
        const double share = 1.0 - 0.25 * std::pow(base, 0.5);
        expected = (1.0 - share) * expected;
        EXPECT_EQ(q[static_cast<std::size_t>(day - 1)], expected) << day;
    }
}

TEST_F(HeavyRainWithCustomLag, AnEmptyThresholdBecomesTheDefaultInTheSimulation) {
    simulation().precipitation_threshold.reset();

    EXPECT_TRUE(starts_high_flow(6.0F, 6.0F));
    EXPECT_EQ(simulation().precipitation_threshold, 6.0F);
    EXPECT_TRUE(basin.Basin_Changed);
    EXPECT_TRUE(basin.Input_Changed);
}

}  // namespace
}  // namespace nivora
