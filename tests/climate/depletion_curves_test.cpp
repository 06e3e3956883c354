#include "climate/depletion_curves.h"

#include "base/fault.h"
#include "tests/engine/engine_fixture.h"

#include <numeric>

namespace nivora {
namespace {

using Floats = std::vector<float>;

class DepletionCurves : public EngineTest {
protected:
    /// The rows of a zone in the order of its days.
    [[nodiscard]] RowOrder rows_of(int zone) const {
        RowOrder rows(static_cast<std::size_t>(days_of_table));
        std::iota(rows.begin(), rows.end(), static_cast<std::uint32_t>(at(zone, 1)));
        return rows;
    }

    void summer(int zones, int days_of_summer) { start(zones, date_of(2001, 5, 1), days_of_summer); }
};

TEST_F(DepletionCurves, MeltIsTheRiseOfTheCurveUnderTheCoverOfItsDay) {
    summer(1, 4);
    set(table.SCA, 1, {1, 0.5, 0.25, 0});
    set(table.MDCincl, 1, {2, 6, 10, 14});
    set(table.MDCexcl, 1, {1, 3, 7, 9});
    accumulate_zonal_melt(table, rows_of(1));
    // 1 * 2; + 0.5 * 4; + 0.25 * 4; + 0
    EXPECT_EQ(days(table.AZMincl), (Floats{2, 4, 5, 5}));
    // 1 * 1; + 0.5 * 2; + 0.25 * 4; + 0
    EXPECT_EQ(days(table.AZMexcl), (Floats{1, 2, 3, 3}));
}

TEST_F(DepletionCurves, AFallOfTheCurveTakesMeltBack) {
    summer(1, 3);
    set(table.SCA, 1, {1, 0.5, 0.5});
    set(table.MDCincl, 1, {4, 0, 2});
    accumulate_zonal_melt(table, rows_of(1));
    // 4; + 0.5 * -4; + 0.5 * 2
    EXPECT_EQ(days(table.AZMincl), (Floats{4, 2, 3}));
}

TEST_F(DepletionCurves, MeltIsRoundedOnEachDay) {
    summer(1, 3);
    set(table.SCA, 1, {1, 0.5, 0.5});
    set(table.MDCincl, 1, {16777216, 16777218, 16777220});
    accumulate_zonal_melt(table, rows_of(1));
    // From 2^24 on Singles are 2 apart: 16,777,216 + 0.5 * 2 is a tie and
    // rounds back to the even 16,777,216, twice.
    EXPECT_EQ(days(table.AZMincl), (Floats{16777216, 16777216, 16777216}));
}

TEST_F(DepletionCurves, TheRiseIsRoundedBeforeItIsWeighted) {
    summer(1, 2);
    set(table.SCA, 1, {0, 0.75});
    set(table.MDCincl, 1, {0.5, 16777215});
    set(table.SCAclim, 1, {0, 0.75});
    set(table.MDCexclWA, 1, {0.5, 16777215});
    accumulate_zonal_melt(table, rows_of(1));
    Climate_Depletion_Curves(table, rows_of(1));
    // Below 2^24 Singles are 1 apart. The rise of 16,777,214.5 rounds to the even 16,777,214, and
    // 0.75 of it, 12,582,910.5, to the even 12,582,910. 0.75 of the unrounded rise,
    // 12,582,910.875, would round to 12,582,911.
    EXPECT_EQ(days(table.AZMincl), (Floats{0, 12582910}));
    EXPECT_EQ(days(table.AZMwork), (Floats{0, 12582910}));
}

TEST_F(DepletionCurves, EachZoneStartsAtZero) {
    summer(2, 2);
    for (const int zone : {1, 2}) {
        fill_zone(table.SCA, zone, 1);
        set(table.MDCincl, zone, {3, 5});
    }
    accumulate_zonal_melt(table, rows_of(1));
    accumulate_zonal_melt(table, rows_of(2));
    EXPECT_EQ(days(table.AZMincl, 2), (Floats{3, 5}));
}

TEST_F(DepletionCurves, AMissingCurveIsAFaultThatKeepsTheDaysBefore) {
    summer(1, 3);
    fill_zone(table.SCA, 1, 1);
    set(table.MDCincl, 1, {3, 5, 6});
    table.MDCincl[at(1, 2)] = k_missing;
    EXPECT_THROW(accumulate_zonal_melt(table, rows_of(1)), Fault);
    EXPECT_EQ(table.AZMincl[at(1, 1)], 3.0F);
    EXPECT_TRUE(is_missing(table.AZMincl[at(1, 2)]));
    EXPECT_TRUE(is_missing(table.AZMincl[at(1, 3)]));
}

TEST_F(DepletionCurves, ACurveThatMovedEarlierIsPlacedOnThePresentDates) {
    summer(1, 6);
    set(table.SCAclim, 1, {1, 0.5, 0.5, 0.25, 0, 0});
    set(table.MDCexclWA, 1, {2, 4, 6, 10, 0, 0});
    set(table.MDCexcl, 1, {1, 2, 3, 5, 7, 12});
    Climate_Depletion_Curves(table, rows_of(1));
    // 1 * 2; + 0.5 * 2; + 0.5 * 2; + 0.25 * 4; then 0 times the falls
    EXPECT_EQ(days(table.AZMwork), (Floats{2, 3, 4, 5, 5, 5}));
    // The present depths reach 2 on day 2, 4 on day 4 (5), 6 on day 5 (7) and 10 on day 6 (12); day 3 holds
    // the value of day 2. The depth 0 on day 5 of the adjusted curve ends the work.
    EXPECT_EQ(days(table.AZMexclWA), (Floats{0, 2, 2, 3, 4, 5}));
}

TEST_F(DepletionCurves, OfSeveralDepthsThatReachTheSameDayTheLastWins) {
    summer(1, 3);
    fill_zone(table.SCAclim, 1, 1);
    set(table.MDCexclWA, 1, {1, 2, 3});
    set(table.MDCexcl, 1, {2.5, 3, 3});
    Climate_Depletion_Curves(table, rows_of(1));
    // 1 and 2 are placed on day 1, 3 on day 2.
    EXPECT_EQ(days(table.AZMexclWA), (Floats{2, 3, 3}));
}

TEST_F(DepletionCurves, ADepthThatIsJustReachedCounts) {
    summer(1, 2);
    fill_zone(table.SCAclim, 1, 1);
    set(table.MDCexclWA, 1, {2, 4});
    set(table.MDCexcl, 1, {2, 4});
    Climate_Depletion_Curves(table, rows_of(1));
    EXPECT_EQ(days(table.AZMexclWA), (Floats{2, 4}));
}

TEST_F(DepletionCurves, DepthsBeyondThePresentCurveAllLandOnTheLastDay) {
    summer(1, 4);
    fill_zone(table.SCAclim, 1, 1);
    set(table.MDCexclWA, 1, {2, 6, 8, 9});
    set(table.MDCexcl, 1, {1, 2, 3, 4});
    Climate_Depletion_Curves(table, rows_of(1));
    // No present depth reaches 6: it, 8 and 9 are all placed on day 4, and the last of them stays.
    EXPECT_EQ(days(table.AZMexclWA), (Floats{0, 2, 2, 9}));
}

TEST_F(DepletionCurves, AZeroAfterADepthBeyondThePresentCurveEndsTheWork) {
    summer(1, 4);
    set(table.SCAclim, 1, {1, 1, 0.5, 0.5});
    set(table.MDCexclWA, 1, {2, 6, 0, 0});
    set(table.MDCexcl, 1, {1, 2, 3, 4});
    Climate_Depletion_Curves(table, rows_of(1));
    EXPECT_EQ(days(table.AZMwork), (Floats{2, 6, 3, 3}));
    EXPECT_EQ(days(table.AZMexclWA), (Floats{0, 2, 2, 6}));
}

TEST_F(DepletionCurves, ADepthBelowZeroThatFindsItsDayEndsTheWork) {
    summer(1, 3);
    fill_zone(table.SCAclim, 1, 1);
    set(table.MDCexclWA, 1, {2, -1, 4});
    set(table.MDCexcl, 1, {2, 3, 5});
    Climate_Depletion_Curves(table, rows_of(1));
    EXPECT_EQ(days(table.AZMwork), (Floats{2, -1, 4}));
    // 2 is placed on day 1. -1 would be placed there too, and 4 on day 3, but -1 ends the work.
    EXPECT_EQ(days(table.AZMexclWA), (Floats{2, 2, 2}));
}

TEST_F(DepletionCurves, AMeltBelowZeroIsNotHeld) {
    summer(1, 4);
    set(table.SCAclim, 1, {0, 1, 1, 0});
    set(table.MDCexclWA, 1, {2, 1, 4, 0});
    set(table.MDCexcl, 1, {2, 3, 5, 6});
    Climate_Depletion_Curves(table, rows_of(1));
    // 0 * 2; + 1 * -1; + 1 * 3; + 0 * -4
    EXPECT_EQ(days(table.AZMwork), (Floats{0, -1, 2, 2}));
    // 2 and then 1 are placed on day 1, 4 on day 3. Day 2 keeps its 0 after the -1; day 4 holds the 2.
    EXPECT_EQ(days(table.AZMexclWA), (Floats{-1, 0, 2, 2}));
}

TEST_F(DepletionCurves, ACurveThatStartsAtZeroGivesNothing) {
    summer(1, 4);
    fill_zone(table.SCAclim, 1, 1);
    set(table.MDCexclWA, 1, {0, 2, 4, 6});
    set(table.MDCexcl, 1, {1, 2, 3, 4});
    Climate_Depletion_Curves(table, rows_of(1));
    EXPECT_EQ(days(table.AZMwork), (Floats{0, 2, 4, 6}));
    EXPECT_EQ(days(table.AZMexclWA), (Floats{0, 0, 0, 0}));
}

TEST_F(DepletionCurves, AZoneWithoutSnowGivesNothing) {
    summer(1, 3);
    set(table.MDCexcl, 1, {1, 2, 3});
    Climate_Depletion_Curves(table, rows_of(1));
    EXPECT_EQ(days(table.AZMwork), (Floats{0, 0, 0}));
    EXPECT_EQ(days(table.AZMexclWA), (Floats{0, 0, 0}));
}

TEST_F(DepletionCurves, WhatAnEarlierCallLeftIsCleared) {
    summer(1, 3);
    fill_zone(table.AZMexclWA, 1, 99);
    set(table.MDCexcl, 1, {1, 2, 3});
    Climate_Depletion_Curves(table, rows_of(1));
    EXPECT_EQ(days(table.AZMexclWA), (Floats{0, 0, 0}));
}

TEST_F(DepletionCurves, AMissingDepthOfThePresentCurveIsSkipped) {
    summer(1, 3);
    fill_zone(table.SCAclim, 1, 1);
    set(table.MDCexclWA, 1, {2, 4, 0});
    set(table.MDCexcl, 1, {2, 4, 5});
    table.MDCexcl[at(1, 1)] = k_missing;
    Climate_Depletion_Curves(table, rows_of(1));
    // 2 and 4 are both placed on day 2.
    EXPECT_EQ(days(table.AZMexclWA), (Floats{0, 4, 4}));
}

TEST_F(DepletionCurves, AMissingCoverIsAFault) {
    summer(1, 2);
    set(table.MDCexclWA, 1, {1, 2});
    table.SCAclim[at(1, 2)] = k_missing;
    EXPECT_THROW(Climate_Depletion_Curves(table, rows_of(1)), Fault);
    EXPECT_EQ(table.AZMwork[at(1, 1)], 0.0F);
}

TEST_F(DepletionCurves, AFaultLeavesTheRowsBeforeItClearedAndTheOthersAsTheyWere) {
    summer(1, 4);
    fill_zone(table.SCAclim, 1, 1);
    table.SCAclim[at(1, 3)] = k_missing;
    set(table.MDCexclWA, 1, {1, 2, 3, 4});
    set(table.MDCexcl, 1, {1, 2, 3, 4});
    fill_zone(table.AZMwork, 1, 77);
    fill_zone(table.AZMexclWA, 1, 99);
    EXPECT_THROW(Climate_Depletion_Curves(table, rows_of(1)), Fault);
    EXPECT_EQ(days(table.AZMwork), (Floats{1, 2, 77, 77}));
    EXPECT_EQ(days(table.AZMexclWA), (Floats{0, 0, 99, 99}));
}

TEST_F(DepletionCurves, OtherZonesStayAsTheyAre) {
    summer(2, 2);
    for (const int zone : {1, 2}) {
        fill_zone(table.SCAclim, zone, 1);
        set(table.MDCexclWA, zone, {1, 2});
        set(table.MDCexcl, zone, {1, 2});
    }
    fill_zone(table.AZMexclWA, 1, 7);
    Climate_Depletion_Curves(table, rows_of(2));
    EXPECT_EQ(days(table.AZMexclWA, 1), (Floats{7, 7}));
    EXPECT_EQ(days(table.AZMexclWA, 2), (Floats{1, 2}));
}

}  // namespace
}  // namespace nivora
