#include "climate/winter_adjustment.h"

#include "tests/climate/winter_fixture.h"

namespace nivora {
namespace {

/// Two zones over the ten days from 1 to 10 May. Zone 1 has a surplus and melts as in the present climate.
/// Zone 2 has a deficit and melts twice as fast, with one unit of new snow on 2 May.
///
/// Zone 1: P 10, P' 15, i 2, i' 3. Change (2 - 3) + (15 - 10) = 4, gain (15 - 3) / (10 - 2) = 1.5.
/// Zone 2: P 10, P' 8, i 2, i' 3. Change (2 - 3) + (8 - 10) = -3, gain (8 - 3) / (10 - 2) = 0.625.
class SurplusAboveDeficit : public WinterTest {
protected:
    void SetUp() override {
        summer(2, 10);
        winter(1, 10, 15, 2, 3);
        winter(2, 10, 8, 2, 3);
        set(table.SCA, 1, {1, 1, 0.75, 0.75, 0.5, 0.5, 0.25, 0.25, 0, 0});
        set(table.MDCexcl, 1, {2, 4, 6, 8, 10, 12, 14, 16, 18, 0});
        set(table.SumAT, 1, {2, 4, 6, 8, 10, 12, 14, 16, 18, 20});
        set(table.SCA, 2, {1, 1, 1, 0.75, 0.75, 0.5, 0.5, 0.25, 0.25, 0.125});
        set(table.MDCexcl, 2, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
        set(table.SumAT, 2, {2, 4, 6, 8, 10, 12, 14, 16, 18, 20});
        set(table.NewMelt, 2, {0, 1, 0, 0, 0, 0, 0, 0, 0, 0});
        adjust();
    }
};

TEST_F(SurplusAboveDeficit, ASurplusKeepsTheCoverOnItsDatesUpToTheDayBeforeTheLast) {
    EXPECT_EQ(days(table.SCAclim, 1), (Floats{1, 1, 0.75F, 0.75F, 0.5F, 0.5F, 0.25F, 0.25F, 0, 0}));
}

TEST_F(SurplusAboveDeficit, ASurplusStretchesTheDepthsByTheGain) {
    // 1.5 times 2, 4 ... 18; the last day is not written.
    EXPECT_EQ(days(table.MDCexclWA, 1), (Floats{3, 6, 9, 12, 15, 18, 21, 24, 27, 0}));
}

TEST_F(SurplusAboveDeficit, WithoutNewSnowTheDepthsStayAsTheyAre) {
    EXPECT_EQ(days(table.MDCexclWAnew, 1), (Floats{3, 6, 9, 12, 15, 18, 21, 24, 27, 0}));
}

TEST_F(SurplusAboveDeficit, StretchedDepthsAreReachedLater) {
    // Degree days reach 3 on day 2 (4), 6 on day 3 (6), 9 on day 5 (10), 12 on day 6 (12), 15 on day 8 (16)
    // and 18 on day 9 (18). 21 exceeds the 20 of day 10 and goes to day 11, which is the next zone's first
    // day. All later depths stay there.
    EXPECT_EQ(days(table.MeltOffset, 1), (Floats{2, 3, 5, 6, 8, 9, 11, 11, 11, 11}));
}

TEST_F(SurplusAboveDeficit, TheStretchedCurveIsPlacedOnTheDaysThatReachItsDepths) {
    EXPECT_EQ(days(table.SCAclimWA, 1), (Floats{0, 1, 1, 0, 0.75F, 0.75F, 0, 0.5F, 0.5F, 0}));
}

TEST_F(SurplusAboveDeficit, DaysWithoutAValueHoldTheOneBefore) {
    // The first day has no value before it and takes the first day's SCAclim, 1.
    EXPECT_EQ(days(table.SCAclimWAMA, 1), (Floats{1, 1, 1, 1, 0.75F, 0.75F, 0.75F, 0.5F, 0.5F, 0.5F}));
}

TEST_F(SurplusAboveDeficit, ADeficitStartsTheSummerWithTheCoverAfterTheCutDay) {
    // Accumulated melt under full cover is 1, 2, 3: day 3 covers the deficit of 3. Day 4 becomes the first
    // day, and the last three days are not written.
    EXPECT_EQ(days(table.SCAclim, 2), (Floats{0.75F, 0.75F, 0.5F, 0.5F, 0.25F, 0.25F, 0.125F, 0, 0, 0}));
}

TEST_F(SurplusAboveDeficit, ADeficitCountsTheDepthsFromTheCutDay) {
    // 4 - 3, 5 - 3, ..., 10 - 3
    EXPECT_EQ(days(table.MDCexclWA, 2), (Floats{1, 2, 3, 4, 5, 6, 7, 0, 0, 0}));
}

TEST_F(SurplusAboveDeficit, NewSnowMeltedSoFarIsAddedToTheDepths) {
    EXPECT_EQ(days(table.MDCexclWAnew, 2), (Floats{1, 3, 4, 5, 6, 7, 8, 1, 1, 1}));
}

TEST_F(SurplusAboveDeficit, DepthsThatAreReachedOnTheSameDayShareIt) {
    // Degree days are 2, 4, 6, 8, ...: depth 1 is reached on day 1, 3 and 4 on day 2, 5 and 6 on day 3, 7 and
    // 8 on day 4. The days that were not written stay on day 4.
    EXPECT_EQ(days(table.MeltOffset, 2), (Floats{1, 2, 2, 3, 3, 4, 4, 4, 4, 4}));
}

TEST_F(SurplusAboveDeficit, OfSeveralValuesOnADayTheFirstWins) {
    // Day 2 gets the 0.75 of the curve's second day, not the 0.5 of its third; day 4 gets the 0.25 of its
    // sixth, not the 0.125 of its seventh. Day 5 gets the cover of the last day, 0.125, which is below 0.25.
    // Day 1 replaces the value that zone 1 wrote there.
    EXPECT_EQ(days(table.SCAclimWA, 2), (Floats{0.75F, 0.75F, 0.5F, 0.25F, 0.125F, 0, 0, 0, 0, 0}));
}

TEST_F(SurplusAboveDeficit, TheCoverOfTheLastDayIsHeldToTheEnd) {
    EXPECT_EQ(days(table.SCAclimWAMA, 2),
              (Floats{0.75F, 0.75F, 0.5F, 0.25F, 0.125F, 0.125F, 0.125F, 0.125F, 0.125F, 0.125F}));
}

TEST_F(SurplusAboveDeficit, EachZoneIsAskedForWithItsChange) {
    ASSERT_EQ(dialogs.inputs().size(), 2U);
    EXPECT_EQ(dialogs.inputs()[0].title, "Winter Change for Zone: 1");
    EXPECT_EQ(dialogs.inputs()[0].prompt, "Click OK to accept the computed 'Change', or type a new value");
    EXPECT_EQ(dialogs.inputs()[0].proposed, "4");
    EXPECT_EQ(dialogs.inputs()[1].title, "Winter Change for Zone: 2");
    EXPECT_EQ(dialogs.inputs()[1].proposed, "-3");
}

/// One zone with five days of melt.
class OneZone : public WinterTest {
protected:
    void SetUp() override {
        summer(1, 5);
        set(table.SCA, 1, {1, 0.75, 0.5, 0.25, 0.125});
        set(table.MDCexcl, 1, {1, 2, 3, 4, 5});
        set(table.SumAT, 1, {1, 2, 3, 4, 5});
    }
};

TEST_F(OneZone, NoChangeLeavesTheCoverAsItWas) {
    adjust();
    EXPECT_EQ(days(table.SCAclimWAMA), days(table.SCA));
}

TEST_F(OneZone, NoChangeWritesTheLastDayFromItsOwnCoverOnly) {
    adjust();
    EXPECT_EQ(days(table.SCAclim), (Floats{1, 0.75F, 0.5F, 0.25F, 0}));
    EXPECT_EQ(days(table.MDCexclWA), (Floats{1, 2, 3, 4, 0}));
    EXPECT_EQ(days(table.MeltOffset), (Floats{1, 2, 3, 4, 4}));
    EXPECT_EQ(days(table.SCAclimWA), (Floats{1, 0.75F, 0.5F, 0.25F, 0.125F}));
}

TEST_F(OneZone, WhatIsTypedIntoTheBoxChangesNothing) {
    winter(1, 10, 9, 0, 0.5);  // change (0 - 0.5) + (9 - 10) = -1.5
    for (const std::optional<std::string>& answer :
         {std::optional<std::string>{"-1.5"}, std::optional<std::string>{"99"},
          std::optional<std::string>{""}, std::optional<std::string>{}}) {
        SimResults with_answer = table;
        dialogs.then_text(answer);
        WinterReport written{basin, run, climate, report_time()};
        Winter_Adjustment(with_answer, context(), written);
        EXPECT_EQ(dialogs.inputs().back().proposed, "-1.5");
        // Accumulated melt is 1 on day 1 and 1.75 on day 2, which
        // covers 1.5: the third day's 0.5 comes first.
        EXPECT_EQ(days(with_answer.SCAclim), (Floats{0.5F, 0.25F, 0.125F, 0, 0}));
    }
}

TEST_F(OneZone, ADeficitCoveredOnTheFirstDayStillMovesTheCurveByOneDay) {
    winter(1, 10, 9, 0, 0);  // deficit 1, which the melt of day 1 exactly covers
    adjust();
    EXPECT_EQ(days(table.SCAclim), (Floats{0.75F, 0.5F, 0.25F, 0.125F, 0}));
    EXPECT_EQ(days(table.MDCexclWA), (Floats{1, 2, 3, 4, 0}));
    EXPECT_NE(report.find("a shift of  0  days"), std::string::npos);
}

TEST_F(OneZone, ADeficitJustBeyondTheFirstDayShiftsByTwoDays) {
    winter(1, 10, 8.875, 0, 0);  // deficit 1.125
    adjust();
    EXPECT_EQ(days(table.SCAclim), (Floats{0.5F, 0.25F, 0.125F, 0, 0}));
    EXPECT_EQ(days(table.MDCexclWA), (Floats{1, 2, 3, 0, 0}));
    EXPECT_NE(report.find("a shift of  2  days"), std::string::npos);
}

TEST_F(OneZone, ADeficitCoveredOnTheLastDayMovesThatDaysCoverToTheFirst) {
    // Accumulated melt: 1, 1.75, 2.25, 2.5, 2.625. The curve starts on the last day, whose depth becomes 0.
    winter(1, 10, 7.375, 0, 0);  // deficit 2.625
    adjust();
    EXPECT_EQ(days(table.SCAclim), (Floats{0.125F, 0, 0, 0, 0}));
    EXPECT_EQ(days(table.MDCexclWA), (Floats{0, 0, 0, 0, 0}));
    EXPECT_NE(report.find("a shift of  5  days"), std::string::npos);
}

TEST_F(OneZone, DepthsBelowZeroRepeatTheDayBefore) {
    // The curve ended on day 3, and its depth is 0 from then on.
    set(table.SCA, 1, {1, 0.75, 0, 0, 0});
    set(table.MDCexcl, 1, {1, 2, 3, 0, 0});
    winter(1, 10, 9, 0, 0);  // day 1 covers the deficit of 1
    adjust();
    // 2 - 1 and 3 - 1; then 0 - 1 is below 0 and repeats the day before, twice.
    EXPECT_EQ(days(table.SCAclim), (Floats{0.75F, 0, 0, 0, 0}));
    EXPECT_EQ(days(table.MDCexclWA), (Floats{1, 2, 2, 2, 0}));
}

TEST_F(OneZone, ADepthBelowZeroOnTheFirstDayBecomesZero) {
    set(table.SCA, 1, {1, 0.5, 0.5, 0, 0});
    set(table.MDCexcl, 1, {4, 1, 5, 6, 0});
    winter(1, 10, 7, 0, 0);  // day 1 covers the deficit of 3: its melt is 4
    adjust();
    // 1 - 4 is below 0 and becomes 0; then 5 - 4, 6 - 4; then 0 - 4, which repeats the day before.
    EXPECT_EQ(days(table.SCAclim), (Floats{0, 0.5F, 0, 0, 0}));
    EXPECT_EQ(days(table.MDCexclWA), (Floats{0, 1, 2, 2, 0}));
}

TEST_F(OneZone, ACoverAtOneHundredthEndsTheCurve) {
    set(table.SCA, 1, {1, 0.5, 0.01, 0.005, 0});
    adjust();
    EXPECT_EQ(days(table.SCAclimWAMA), (Floats{1, 0.5F, 0.01F, 0, 0}));
}

TEST_F(OneZone, ACoverBelowOneHundredthEndsTheCurveWithOneHundredth) {
    set(table.SCA, 1, {1, 0.5, 0.25, 0.004, 0});
    adjust();
    EXPECT_EQ(days(table.SCAclimWAMA), (Floats{1, 0.5F, 0.25F, 0.01F, 0}));
}

TEST_F(OneZone, ACoverJustAboveOneHundredthDoesNotEndTheCurve) {
    set(table.SCA, 1, {1, 0.5, 0.0101, 0.0101, 0.0101});
    adjust();
    EXPECT_EQ(days(table.SCAclimWAMA), (Floats{1, 0.5F, 0.0101F, 0.0101F, 0.0101F}));
}

TEST_F(OneZone, ACoverOfZeroIsMarkedAndEndsTheCurveWithOneHundredth) {
    set(table.SCA, 1, {1, 0.5, 0, 0, 0});
    set(table.MDCexcl, 1, {1, 2, 3, 0, 0});
    adjust();
    EXPECT_EQ(days(table.SCAclimWA), (Floats{1, 0.5F, 0.0001F, 0, 0}));
    EXPECT_EQ(days(table.SCAclimWAMA), (Floats{1, 0.5F, 0.01F, 0, 0}));
}

TEST_F(OneZone, ARepeatKeepsWhatItDoesNotReach) {
    fill_zone(table.SCAclim, 1, 0.875);
    fill_zone(table.MDCexclWA, 1, 7);
    fill_zone(table.SCAclimWAMA, 1, 0.625);
    set(table.SCA, 1, {1, 0.5, 0, 0, 0});
    set(table.MDCexcl, 1, {1, 2, 3, 0, 0});
    adjust();
    EXPECT_EQ(days(table.SCAclim), (Floats{1, 0.5F, 0, 0, 0.875F}));
    EXPECT_EQ(days(table.MDCexclWA), (Floats{1, 2, 3, 0, 7}));
    EXPECT_EQ(days(table.SCAclimWAMA)[4], 0.625F);
}

}  // namespace
}  // namespace nivora
