#include "engine/runoff_simulation.h"
#include "tests/engine/engine_fixture.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

TEST(LateShare, IsAQuarterOfADayAndTheLag) {
    EXPECT_EQ(LagSpread::late_share(0.0), 0.25);
    EXPECT_EQ(LagSpread::late_share(6.0), 0.5);
    EXPECT_EQ(LagSpread::late_share(12.0), 0.75);
    EXPECT_EQ(LagSpread::late_share(18.0), 1.0);
    EXPECT_EQ(LagSpread::late_share(24.0), 1.25);
    EXPECT_EQ(LagSpread::late_share(30.0), 1.5);
    EXPECT_GT(LagSpread::late_share(18.0001), 1.0);
}

/// Discharge is the lagged input here (x = y = 0), and 1 cm of rain a day is an input of 100 m³/s.
class RunoffLag : public EngineTest {
protected:
    void begin(std::initializer_list<double> rain, std::initializer_list<double> lags) {
        start(1, date_of(2001, 6, 1), static_cast<int>(rain.size()));
        set(table.Cpr, 1, rain);
        set(table.LagTime, 1, lags);
        for (auto* column : {&table.M1S, &table.ZoneDD}) fill(*column, 0.0);
    }

    /// The lagged input of each day.
    std::vector<double> inputs(std::initializer_list<double> rain, std::initializer_list<double> lags) {
        begin(rain, lags);
        EXPECT_TRUE(runoff_simulation());
        return table.DailyQ;
    }
};

TEST_F(RunoffLag, Of0HoursGivesThreeQuartersOnTheDayAndOneQuarterOnTheNext) {
    // 100; 0.75 x 200 + 0.25 x 100; 0.75 x 400 + 0.25 x 200; 0.75 x 800 + 0.25 x 400.
    EXPECT_THAT(inputs({1, 2, 4, 8}, {0, 0, 0, 0}), ElementsAre(100.0, 175.0, 350.0, 700.0));
}

TEST_F(RunoffLag, Of6HoursGivesHalfAndHalf) {
    EXPECT_THAT(inputs({1, 2, 4, 8}, {6, 6, 6, 6}), ElementsAre(100.0, 150.0, 300.0, 600.0));
}

TEST_F(RunoffLag, Of12HoursGivesOneQuarterOnTheDay) {
    // 100; 0.25 x 200 + 0.75 x 100; 0.25 x 400 + 0.75 x 200; 0.25 x 800 + 0.75 x 400.
    EXPECT_THAT(inputs({1, 2, 4, 8}, {12, 12, 12, 12}), ElementsAre(100.0, 125.0, 250.0, 500.0));
}

TEST_F(RunoffLag, Of18HoursGivesAllOnTheNextDay) {
    EXPECT_THAT(inputs({1, 2, 4, 8}, {18, 18, 18, 18}), ElementsAre(100.0, 100.0, 200.0, 400.0));
}

TEST_F(RunoffLag, Of24HoursReachesIntoTheSecondDay) {
    // 100; 100, of which 0.25 stands for the day before the run; 0.75 x 200 + 0.25 x 100;
    // 0.75 x 400 + 0.25 x 200.
    EXPECT_THAT(inputs({1, 2, 4, 8}, {24, 24, 24, 24}), ElementsAre(100.0, 100.0, 175.0, 350.0));
}

TEST_F(RunoffLag, Of30HoursGivesHalfOnEachOfTheTwoNextDays) {
    EXPECT_THAT(inputs({1, 2, 4, 8}, {30, 30, 30, 30}), ElementsAre(100.0, 100.0, 150.0, 300.0));
}

TEST_F(RunoffLag, JustAbove18HoursIsTheLongRule) {
    // Day 1, at 24 h, leaves 25 of its stand-in for the day before. Day 2 at 18.0001 h has a late share f
    // just above 0: it takes what is pending from two days before, 25, and (1 - f) x 100.
    const double f = 0.25 + static_cast<double>(18.0001F) * (0.25 / 6.0) - 1.0;

    EXPECT_THAT(inputs({1, 2}, {24, 18.0001F}), ElementsAre(100.0, 25.0 + (1.0 - f) * 100.0));
    EXPECT_GT(f, 0.0);
    EXPECT_LT(f, 0.00001);
}

TEST_F(RunoffLag, OnDay1TheWholeInputIsReleasedForEveryLag) {
    for (const double lag : {0.0, 6.0, 12.0, 18.0, 24.0, 30.0}) {
        EXPECT_THAT(inputs({1}, {lag}), ElementsAre(100.0)) << lag;
    }
}

TEST_F(RunoffLag, Above42HoursTakesBackFromTheDayBefore) {
    // Late share 2.25, f = 1.25. Day 1: 1.25 x 100 is held to the pending 100; (1 - 1.25) x 100 = -25.
    // Day 2: 125 are pending by now; 125 - 25.
    EXPECT_THAT(inputs({1, 1}, {48, 48}), ElementsAre(75.0, 100.0));
}

TEST_F(RunoffLag, ThatRisesAcross18HoldsBackWaterForTheSecondDay) {
    // Pending 1, 2, 3 stands for the oldest, yesterday's and today's rest of input.
    // Day 1, 6 h: half of 100 and the stand-in's half; 50 pend.
    // Day 2, 6 h: 50 + 0.5 x 200 = 150; 100 pend.
    // Day 3, 24 h: 0.25 x 100 of day 1 finds nothing pending: 0. 0.75 x 200 of day 2 is more than the 100:
    // 100. Day 4: 0.25 x 200 finds nothing: 0. 0.75 x 400 = 300, 100 pend. Day 5: 0.25 x 400 = 100. 0.75 x
    // 800 = 600. Day 6: 0.25 x 800 + 0.75 x 1600 = 1400.
    EXPECT_THAT(inputs({1, 2, 4, 8, 16, 32}, {6, 6, 24, 24, 24, 24}),
                ElementsAre(100.0, 150.0, 100.0, 300.0, 700.0, 1400.0));
}

TEST_F(RunoffLag, ThatFallsBelow18ForGoodReleasesAllThatIsPending) {
    // Days 1 to 3 as with 24 h: 100, 100, 175, with 50 and 400 pending of days 2 and 3.
    // Day 4, 6 h; the lag of day 5 is remembered, 6 h: all 400 of day 3, half of 800, and the 50: 850.
    // Day 5: the 400 left of day 4 and half of 1600. Day 6: 800 and half of 3200.
    EXPECT_THAT(inputs({1, 2, 4, 8, 16, 32}, {24, 24, 24, 6, 6, 6}),
                ElementsAre(100.0, 100.0, 175.0, 850.0, 1200.0, 2400.0));
}

TEST_F(RunoffLag, ThatFallsBelow18ForADayRemembersTheLagOfTheDayAfterIt) {
    // Day 4 at 6 h stands between days of 24 h, and what it remembers is the lag of day 5, 24 h. So only half
    // of day 3's 400 goes, 200 keep pending; half of 800; the 50 of day 2: 650.
    // Day 5, 24 h: 0.25 x 400 of day 3 differs from the pending 200, which is taken; 0.75 x 800 of day 4 is
    // more than the pending 400: 400; together 600.
    // Day 6: 0.25 x 800 finds nothing pending; 0.75 x 1600 = 1200.
    EXPECT_THAT(inputs({1, 2, 4, 8, 16, 32}, {24, 24, 24, 6, 24, 24}),
                ElementsAre(100.0, 100.0, 175.0, 650.0, 600.0, 1200.0));
}

TEST_F(RunoffLag, Of0HoursIsNotRememberedSoThatTheFormerLongOneCounts) {
    // The last lag above 0 that was remembered is the 24 h of day 3.
    // Day 4, 0 h: a quarter of 400, with 300 kept pending; three quarters of 800; the 50 of day 2: 750.
    // Day 5: a quarter of 800, all that is pending of day 4; three quarters of 1600; the 300: 1700.
    // Day 6: 400 + 0.75 x 3200.
    EXPECT_THAT(inputs({1, 2, 4, 8, 16, 32}, {24, 24, 24, 0, 0, 0}),
                ElementsAre(100.0, 100.0, 175.0, 750.0, 1700.0, 2800.0));
}

TEST_F(RunoffLag, OfTheLastDayIsRememberedOnTheLastDayItself) {
    // Day 3, 6 h: it remembers its own 6 h, so all 200 of day 2, half of 400, and the 25 of day 1.
    EXPECT_THAT(inputs({1, 2, 4}, {24, 24, 6}), ElementsAre(100.0, 100.0, 425.0));
}

TEST_F(RunoffLag, ThatFallsOnDay2IsAlreadyForgotten) {
    // Day 2 remembers day 3's 6 h: all 100, half of 200, and the 25 of the stand-in. Day 3: 100 + half of
    // 400.
    EXPECT_THAT(inputs({1, 2, 4}, {24, 6, 6}), ElementsAre(100.0, 225.0, 300.0));
}

TEST_F(RunoffLag, OnDay1RemembersNothing) {
    // Day 1 at 6 h with longer ones to come: 50 + 50, and what pends of the stand-in is dropped.
    // Day 2, 24 h: nothing pends of two days before; 0.75 x 100 is more than the pending 50: 50.
    EXPECT_THAT(inputs({1, 2}, {6, 24}), ElementsAre(100.0, 50.0));
}

TEST_F(RunoffLag, ADifferenceUpTo0Point01FromWhatIsPendingIsLost) {
    // Rain of 1/512 cm: 0.1953125. Day 2 leaves a quarter pending, 0.048828125; day 3 at 23 h asks for f x
    // 0.1953125 = 0.04069, and takes no more.
    const double f = 0.25 + 23.0 * (0.25 / 6.0) - 1.0;
    const auto q = inputs({1.0 / 512, 1.0 / 64, 0}, {24, 24, 23});

    EXPECT_EQ(q[2], f * 0.1953125 + (1.0 - f) * 1.5625);
    EXPECT_LT(0.048828125 - f * 0.1953125, 0.01);
}

TEST_F(RunoffLag, AGreaterDifferenceTakesAllThatIsPending) {
    // Ten times the former input: 0.48828125 pends, f x 1.953125 = 0.4069 is asked for, 0.48828125 taken.
    const double f = 0.25 + 23.0 * (0.25 / 6.0) - 1.0;
    const auto q = inputs({10.0 / 512, 10.0 / 64, 0}, {24, 24, 23});

    EXPECT_EQ(q[2], 0.48828125 + (1.0 - f) * 15.625);
}

TEST_F(RunoffLag, ARestOfAThousandthOrLessIsDropped) {
    // A quarter of 100 / 2^15 pends, 0.00076; of 100 / 2^14, 0.0015. Day 3 takes 1.5 times the input, and the
    // rest where it is above 0.001.
    const double small = 100.0 / 32768;
    const double greater = 100.0 / 16384;
    const auto rain = [](double input) { return input / 100.0; };

    EXPECT_EQ(inputs({rain(small), rain(small), rain(small)}, {24, 24, 6})[2], 1.5 * small);
    EXPECT_EQ(inputs({rain(greater), rain(greater), rain(greater)}, {24, 24, 6})[2], 1.75 * greater);
}

TEST_F(RunoffLag, InputOfFormerDaysPassesThroughASingle) {
    // Rain of the Single 0.1 is an input of 10.000000149; as a Single it is 10.
    const double input = 100.0 * static_cast<double>(0.1F);
    ASSERT_NE(input, 10.0);

    EXPECT_THAT(inputs({0.1F, 0.1F, 0.1F, 0.1F}, {24, 24, 24, 24}), Each(10.0));
    EXPECT_THAT(table.TotalMelt, Each(10.0F));
    // At 18 hours the pending input, which is a Double, takes over after day 1.
    EXPECT_THAT(inputs({0.1F, 0.1F, 0.1F}, {18, 18, 18}), ElementsAre(10.0, input, input));
}

TEST_F(RunoffLag, ASingleAboveTheInputIsHeldToTheInput) {
    // Rain of the Single 0.3: 30.0000012, next to the Single 30.0000019.
    const double input = 100.0 * static_cast<double>(0.3F);
    ASSERT_GT(static_cast<double>(static_cast<float>(input)), input);

    EXPECT_THAT(inputs({0.3F, 0.3F}, {18, 18}), Each(input));
}

TEST_F(RunoffLag, ThatIsMissingLeavesTheFormerDaysInput) {
    // Day 2 has day 1's 100 again, and lets all that pends grow older. Day 3, 6 h: all 200 of day 2, half of
    // 400, and the 50 left of day 1.
    EXPECT_THAT(inputs({1, 2, 4}, {6, k_missing, 6}), ElementsAre(100.0, 100.0, 450.0));
}

TEST_F(RunoffLag, ThatIsMissingOnDay1LeavesNoInput) { EXPECT_THAT(inputs({1, 2}, {k_missing, 18})[0], 0.0); }

TEST_F(RunoffLag, IsTakenFromTheFirstZoneAlone) {
    start(2, date_of(2001, 6, 1), 2);
    set(table.Cpr, 1, {1.0, 2.0});
    fill_zone(table.Cpr, 2, 0.0);
    for (auto* column : {&table.M1S, &table.ZoneDD}) fill(*column, 0.0);
    fill_zone(table.LagTime, 1, 0.0);
    fill_zone(table.LagTime, 2, 18.0);

    EXPECT_TRUE(runoff_simulation());

    EXPECT_EQ(table.DailyQ[at(1, 2)], 175.0);
}

TEST_F(RunoffLag, TotalMeltHoldsTheInputOfTheDayBefore) {
    (void)inputs({1, 2, 4, 8}, {6, 6, 6, 6});

    EXPECT_THAT(table.TotalMelt, ElementsAre(100.0F, 100.0F, 200.0F, 400.0F));
}

}  // namespace
}  // namespace nivora
