#include "plots/accumulated_melt.h"

#include "base/fault.h"
#include "tests/support/plot_basin.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::Each;
using testing::ElementsAre;

constexpr DayCount k_first = 100;
constexpr int k_plain_run = 0;
constexpr int k_changed_summer = 6;

/// Days with zonal melt alone, under full cover.
std::vector<MeltDay> melting(const std::vector<float>& melt) {
    std::vector<MeltDay> days;
    for (const float depth : melt) {
        days.push_back({.date = k_first + static_cast<DayCount>(days.size()),
                        .zonal_melt = depth,
                        .new_melt = 0.0F,
                        .cover = 1.0F});
    }
    return days;
}

MeltCurves curves_of(const std::vector<MeltDay>& days, int step = k_plain_run,
                     MeltStop stop = MeltStop::FirstDryDay) {
    return Accumulate_Melt(days, step, stop);
}

std::vector<float> ys(const std::vector<PlotPoint>& points) {
    std::vector<float> values;
    for (const PlotPoint& point : points) values.push_back(point.y);
    return values;
}

std::vector<float> xs(const std::vector<PlotPoint>& points) {
    std::vector<float> values;
    for (const PlotPoint& point : points) values.push_back(point.x);
    return values;
}

TEST(AccumulatedMelt, IsTheSumWithAndWithoutTheMeltOfNewSnowUnderTheCover) {
    std::vector<MeltDay> days = melting({2, 3, 1});
    days[0].new_melt = 1.0F;
    days[1].new_melt = 2.0F;
    days[1].cover = 0.5F;
    const MeltCurves curves = curves_of(days);
    EXPECT_THAT(xs(curves.including), ElementsAre(100, 101, 102));
    EXPECT_THAT(xs(curves.excluding), ElementsAre(100, 101, 102));
    EXPECT_THAT(ys(curves.including), ElementsAre(2, 5, 6));
    // 2 - 1 * 1; 5 - (1 + 2 * 0.5); 6 - 2
    EXPECT_THAT(ys(curves.excluding), ElementsAre(1, 3, 4));
}

TEST(AccumulatedMelt, EndsAtTheFirstDayWithoutMeltWhichIsCounted) {
    const MeltCurves curves = curves_of(melting({2, 1, 0, 5}));
    EXPECT_THAT(ys(curves.including), ElementsAre(2, 3, 3));
    EXPECT_THAT(ys(curves.excluding), ElementsAre(2, 3, 3));
}

TEST(AccumulatedMelt, DoesNotEndBeforeMeltWasSeen) {
    EXPECT_THAT(ys(curves_of(melting({0, 0, 4, 0, 9})).including), ElementsAre(0, 0, 4, 4));
}

TEST(AccumulatedMelt, TakesAllDaysIfItNeverStops) {
    EXPECT_THAT(ys(curves_of(melting({1, 1, 1})).including), ElementsAre(1, 2, 3));
}

TEST(AccumulatedMelt, OfASeasonEndsAtTheDayAfterTheLastMelt) {
    const std::vector<MeltDay> days = melting({0, 2, 0, 3, 0, 0, 0});
    EXPECT_THAT(ys(curves_of(days).including), ElementsAre(0, 2, 2));
    EXPECT_THAT(ys(curves_of(days, k_plain_run, MeltStop::Season).including), ElementsAre(0, 2, 2, 5, 5));
}

TEST(AccumulatedMelt, OfASeasonThatMeltsToTheLastDayTakesAllDays) {
    const MeltCurves curves = curves_of(melting({1, 0, 1}), k_plain_run, MeltStop::Season);
    EXPECT_THAT(ys(curves.including), ElementsAre(1, 1, 2));
}

TEST(AccumulatedMelt, WithoutMeltRunsAlongTheAxis) {
    for (const MeltStop stop : {MeltStop::FirstDryDay, MeltStop::Season}) {
        const MeltCurves curves = curves_of(melting({0, 0, 0, 0}), k_plain_run, stop);
        EXPECT_EQ(curves.including.size(), 4U);
        EXPECT_THAT(ys(curves.including), Each(0.0F));
        EXPECT_THAT(ys(curves.excluding), Each(0.0F));
    }
}

TEST(AccumulatedMelt, WithoutNewSnowIsNeverBelowZeroAndKeepsItsSums) {
    std::vector<MeltDay> days = melting({1, 3});
    days[0].new_melt = 4.0F;
    days[0].cover = 0.5F;
    // 1 - 2 is cut; 4 - 2
    EXPECT_THAT(ys(curves_of(days).excluding), ElementsAre(0, 2));
}

TEST(AccumulatedMelt, OfTheChangedSummerTakesItsColumn) {
    std::vector<MeltDay> days = melting({2, 3, 1});
    days[0].changed_melt = 7.0F;
    days[1].changed_melt = -1.0F;
    days[2].changed_melt = 8.5F;
    const MeltCurves curves = curves_of(days, k_changed_summer);
    EXPECT_THAT(ys(curves.including), ElementsAre(2, 5, 6));
    EXPECT_THAT(ys(curves.excluding), ElementsAre(7, 0, 8.5F));
    EXPECT_THAT(ys(curves_of(days, 3).excluding), ElementsAre(2, 5, 6));
}

TEST(AccumulatedMelt, RoundsItsSumsOnEachDay) {
    std::vector<MeltDay> days = melting({16777216, 1, 1});
    // From 2^24 on Singles are 2 apart: each 1 is a tie that goes back to the even 16,777,216.
    EXPECT_THAT(ys(curves_of(days).including), ElementsAre(16777216, 16777216, 16777216));
    days[0].new_melt = 16777216.0F;
    days[1].new_melt = 3.0F;
    days[1].cover = 0.5F;
    // New melt: 16,777,216, then + 1.5 goes up to 16,777,218, which is above the melt and cut.
    EXPECT_THAT(ys(curves_of(days).excluding), ElementsAre(0, 0, 0));
}

TEST(AccumulatedMelt, FailsForAMissingValue) {
    for (float MeltDay::*value : {&MeltDay::zonal_melt, &MeltDay::new_melt, &MeltDay::cover}) {
        std::vector<MeltDay> days = melting({1, 1, 1});
        days[1].*value = k_missing;
        EXPECT_THROW((void)curves_of(days), Fault);
        EXPECT_THROW((void)curves_of(days, k_plain_run, MeltStop::Season), Fault);
    }
}

TEST(AccumulatedMelt, NeedsTheChangedMeltInTheChangedSummerAlone) {
    const std::vector<MeltDay> days = melting({1, 1});
    EXPECT_THROW((void)curves_of(days, k_changed_summer), Fault);
    EXPECT_EQ(curves_of(days).excluding.size(), 2U);
}

TEST(AccumulatedMelt, DoesNotReadTheDaysAfterItsEnd) {
    std::vector<MeltDay> days = melting({1, 0, 1, 1});
    days[2].new_melt = k_missing;
    EXPECT_EQ(curves_of(days).including.size(), 2U);
    EXPECT_THROW((void)curves_of(days, k_plain_run, MeltStop::Season), Fault);
}

TEST(AccumulatedMelt, BeyondTheLargestSingleIsAFault) {
    EXPECT_THROW((void)curves_of(melting({3.0e38F, 3.0e38F})), Fault);
}

}  // namespace
}  // namespace nivora
