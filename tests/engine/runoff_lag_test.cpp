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
    // 100; 0.75 x 100 + 0.25 x 100 for the day before the run; 0.75 x 200 + 0.25 x 100;
    // 0.75 x 400 + 0.25 x 200.
    EXPECT_THAT(inputs({1, 2, 4, 8}, {24, 24, 24, 24}), ElementsAre(100.0, 100.0, 175.0, 350.0));
}

TEST_F(RunoffLag, Of30HoursGivesHalfOnEachOfTheTwoNextDays) {
    EXPECT_THAT(inputs({1, 2, 4, 8}, {30, 30, 30, 30}), ElementsAre(100.0, 100.0, 150.0, 300.0));
}

TEST_F(RunoffLag, JustAbove18HoursFollowsTheLongRule) {
    // Day 1, at 24 h, leaves 25 of the 100 that stand in for the day before. Day 2, at 18.0001 h, has a late
    // share f just above 0: it takes those 25 in full, and (1 - f) x 100 of day 1.
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

TEST_F(RunoffLag, Above42HoursSubtractsFromTheDayBefore) {
    // Late share 2.25, f = 1.25. Day 1: 1.25 x 100 is limited to the
    // pending 100; plus (1 - 1.25) x 100 = -25.
    // Day 2: now 125 are pending; 125 - 25.
    EXPECT_THAT(inputs({1, 1}, {48, 48}), ElementsAre(75.0, 100.0));
}

TEST_F(RunoffLag, ThatRisesAcross18HoldsBackWaterForTheSecondDay) {
    // Day 1, 6 h: half of 100, and half of the 100 that stand in for the day before; 50 stay pending.
    // Day 2, 6 h: those 50 + 0.5 x 200 = 150; 100 stay pending.
    // Day 3, 24 h: 0.25 x 100 of day 1 finds nothing pending: 0.
    // 0.75 x 200 of day 2 exceeds the pending 100: 100.
    // Day 4, 24 h: 0.25 x 200 of day 2 finds nothing pending: 0. 0.75 x 400 of day 3 = 300; 100 stay pending.
    // Day 5, 24 h: 0.25 x 400 + 0.75 x 800 = 700.
    // Day 6, 24 h: 0.25 x 800 + 0.75 x 1600 = 1400.
    EXPECT_THAT(inputs({1, 2, 4, 8, 16, 32}, {6, 6, 24, 24, 24, 24}),
                ElementsAre(100.0, 150.0, 100.0, 300.0, 700.0, 1400.0));
}

TEST_F(RunoffLag, ThatFallsBelow18ForGoodReleasesAllThatIsPending) {
    // Days 1 to 3 as with 24 h: 100, 100, 175; 50 of day 2 and 400 of day 3 stay pending.
    // Day 4, 6 h, remembers the lag of day 5, 6 h: all 400 of day 3, half of 800, and the 50: 850.
    // Day 5, 6 h: the 400 left of day 4 and half of 1600. Day 6, 6 h: 800 and half of 3200.
    EXPECT_THAT(inputs({1, 2, 4, 8, 16, 32}, {24, 24, 24, 6, 6, 6}),
                ElementsAre(100.0, 100.0, 175.0, 850.0, 1200.0, 2400.0));
}

TEST_F(RunoffLag, ThatFallsBelow18ForADayRemembersTheLagOfTheDayAfterIt) {
    // Days 1 to 3 as with 24 h: 100, 100, 175; 50 of day 2 and 400 of day 3 stay pending.
    // Day 4, 6 h, remembers the lag of day 5, 24 h: half of day 3's 400, so 200 stay
    // pending; half of 800; the 50 of day 2: 650.
    // Day 5, 24 h: 0.25 x 400 of day 3 differs from the pending 200, which is taken; 0.75 x 800 of day 4
    // exceeds the pending 400, which is taken: 600.
    // Day 6, 24 h: 0.25 x 800 finds nothing pending; 0.75 x 1600 = 1200.
    EXPECT_THAT(inputs({1, 2, 4, 8, 16, 32}, {24, 24, 24, 6, 24, 24}),
                ElementsAre(100.0, 100.0, 175.0, 650.0, 600.0, 1200.0));
}

TEST_F(RunoffLag, Of0HoursIsNotRememberedSoTheFormerLongOneCounts) {
    // The last remembered lag above 0 is the 24 h of day 3.
    // Day 4, 0 h: a quarter of 400, so 300 stay pending; three quarters of 800; the 50 of day 2: 750.
    // Day 5, 0 h: a quarter of 800, all that is left of day 4; three quarters of 1600; the 300: 1700.
    // Day 6, 0 h: 400 + 0.75 x 3200.
    EXPECT_THAT(inputs({1, 2, 4, 8, 16, 32}, {24, 24, 24, 0, 0, 0}),
                ElementsAre(100.0, 100.0, 175.0, 750.0, 1700.0, 2800.0));
}

TEST_F(RunoffLag, OfTheLastDayIsRememberedOnTheLastDayItself) {
    // Day 3, 6 h, remembers its own lag: all 200 of day 2, half of 400, and the 25 left of day 1.
    EXPECT_THAT(inputs({1, 2, 4}, {24, 24, 6}), ElementsAre(100.0, 100.0, 425.0));
}

TEST_F(RunoffLag, ThatFallsOnDay2IsAlreadyForgotten) {
    // Day 2, 6 h, remembers day 3's 6 h: all 100 of day 1, half of 200, and the 25 left of the stand-in for
    // the day before. Day 3: 100 + half of 400.
    EXPECT_THAT(inputs({1, 2, 4}, {24, 6, 6}), ElementsAre(100.0, 225.0, 300.0));
}

TEST_F(RunoffLag, OnDay1RemembersNothing) {
    // Day 1, 6 h, before a longer lag: 50 + 50; the rest of the stand-in for the day before is dropped.
    // Day 2, 24 h: nothing is left of two days before; 0.75 x 100 exceeds the pending 50, which is taken.
    EXPECT_THAT(inputs({1, 2}, {6, 24}), ElementsAre(100.0, 50.0));
}

TEST_F(RunoffLag, ADifferenceUpTo0Point01FromWhatIsPendingIsLost) {
    // Rain of 1/512 cm is 0.1953125 m³/s. After day 2 a quarter of it is pending, 0.048828125. Day 3,
    // at 23 h, asks for f x 0.1953125 = 0.04069 and takes no more.
    const double f = 0.25 + 23.0 * (0.25 / 6.0) - 1.0;
    const auto q = inputs({1.0 / 512, 1.0 / 64, 0}, {24, 24, 23});

    EXPECT_EQ(q[2], f * 0.1953125 + (1.0 - f) * 1.5625);
    EXPECT_LT(0.048828125 - f * 0.1953125, 0.01);
}

TEST_F(RunoffLag, AGreaterDifferenceTakesAllThatIsPending) {
    // Ten times that input: 0.48828125 is pending, f x 1.953125 = 0.4069 is asked for, 0.48828125 is taken.
    const double f = 0.25 + 23.0 * (0.25 / 6.0) - 1.0;
    const auto q = inputs({10.0 / 512, 10.0 / 64, 0}, {24, 24, 23});

    EXPECT_EQ(q[2], 0.48828125 + (1.0 - f) * 15.625);
}

TEST_F(RunoffLag, ARestOfAThousandthOrLessIsDropped) {
    // A quarter of the input is pending: of 100 / 2^15 0.00076, of 100 / 2^14 0.0015. Day 3 takes 1.5 times
    // the input, and the rest only if it exceeds 0.001.
    const double small = 100.0 / 32768;
    const double greater = 100.0 / 16384;
    const auto rain = [](double input) { return input / 100.0; };

    EXPECT_EQ(inputs({rain(small), rain(small), rain(small)}, {24, 24, 6})[2], 1.5 * small);
    EXPECT_EQ(inputs({rain(greater), rain(greater), rain(greater)}, {24, 24, 6})[2], 1.75 * greater);
}

TEST_F(RunoffLag, InputOfFormerDaysPassesThroughASingle) {
    // Rain of the Single 0.1 gives an input of 10.000000149, which is 10 as a Single.
    const double input = 100.0 * static_cast<double>(0.1F);
    ASSERT_NE(input, 10.0);

    EXPECT_THAT(inputs({0.1F, 0.1F, 0.1F, 0.1F}, {24, 24, 24, 24}), Each(10.0));
    EXPECT_THAT(table.TotalMelt, Each(10.0F));
    // At 18 hours, from day 2 on, the pending input is taken, which is a Double.
    EXPECT_THAT(inputs({0.1F, 0.1F, 0.1F}, {18, 18, 18}), ElementsAre(10.0, input, input));
}

TEST_F(RunoffLag, ASingleAboveTheInputIsHeldToTheInput) {
    // Rain of the Single 0.3 gives 30.0000012; its nearest Single is 30.0000019.
    const double input = 100.0 * static_cast<double>(0.3F);
    ASSERT_GT(static_cast<double>(static_cast<float>(input)), input);

    EXPECT_THAT(inputs({0.3F, 0.3F}, {18, 18}), Each(input));
}

TEST_F(RunoffLag, ThatIsMissingLeavesTheFormerDaysInput) {
    // Day 2 repeats day 1's 100 and ages all that is pending by a day. Day 3, 6 h: all 200 of day 2, half of
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
