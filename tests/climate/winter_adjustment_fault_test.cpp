#include "base/fault.h"
#include "climate/winter_adjustment.h"
#include "tests/climate/winter_fixture.h"

namespace nivora {
namespace {

/// Two zones of four days without a change of climate.
class WinterFaults : public WinterTest {
protected:
    void SetUp() override {
        summer(2, 4);
        for (const int zone : {1, 2}) {
            set(table.SCA, zone, {1, 0.75, 0.5, 0.25});
            set(table.MDCexcl, zone, {1, 2, 3, 4});
            set(table.SumAT, zone, {1, 2, 3, 4});
        }
    }
};

TEST_F(WinterFaults, AWinterThatEndsWithTheSimulationIsAFaultBeforeAnyQuestion) {
    climate.WinterEndDate = run.RunEnd;
    const SimResults before = table;
    EXPECT_EQ(fault_of_adjusting(0), 91);
    EXPECT_TRUE(dialogs.inputs().empty());
    EXPECT_EQ(table.SCAclim, before.SCAclim);
}

TEST_F(WinterFaults, AWinterThatEndsWithTheSimulationIsExplained) {
    climate.WinterEndDate = run.RunEnd;
    try {
        adjust_and_report();
        FAIL() << "no fault";
    } catch (const Fault& fault) {
        EXPECT_STREQ(fault.what(),
                     "The winter ends on the last day of the simulation: there is no summer to adjust.");
    }
}

TEST_F(WinterFaults, ATenthZoneHasNoRoomInTheSumsAfterNineWereAdjusted) {
    summer(10, 2);
    for (int zone = 1; zone <= 10; ++zone) {
        fill_zone(table.SCA, zone, 0.5);
        set(table.MDCexcl, zone, {1, 2});
    }
    EXPECT_EQ(fault_of_adjusting(9), k_fault_subscript);
    EXPECT_EQ(dialogs.inputs().size(), 9U);
    EXPECT_EQ(days(table.SCAclim, 9), (Floats{0.5F, 0}));
    EXPECT_EQ(days(table.SCAclim, 10), (Floats{0, 0}));
    // The later passes never start.
    EXPECT_EQ(days(table.SCAclimWA, 1), (Floats{0, 0}));
}

TEST_F(WinterFaults, NineZonesHaveRoom) {
    summer(9, 2);
    for (int zone = 1; zone <= 9; ++zone) {
        fill_zone(table.SCA, zone, 0.5);
        set(table.MDCexcl, zone, {1, 2});
        set(table.SumAT, zone, {1, 2});
    }
    EXPECT_EQ(fault_of_adjusting(9), k_no_fault);
}

TEST_F(WinterFaults, AZoneWithoutASummersRowIsAFault) {
    basin.ZoneCount = 3;
    EXPECT_EQ(fault_of_adjusting(2), k_fault_no_record);
}

TEST_F(WinterFaults, ASummerWithoutRowsIsAFault) {
    run.RunStart = run.RunEnd + 1;
    EXPECT_EQ(fault_of_adjusting(0), k_fault_no_record);
}

TEST_F(WinterFaults, AMissingDepthOnTheWayToTheCutDayIsAFault) {
    winter(2, 10, 8, 0, 0);
    table.MDCexcl[at(2, 2)] = k_missing;
    EXPECT_EQ(fault_of_adjusting(2), k_fault_null);
    // The zone before it is complete.
    EXPECT_EQ(days(table.SCAclim, 1), (Floats{1, 0.75F, 0.5F, 0}));
}

TEST_F(WinterFaults, AMissingCoverOnTheWayToTheCutDayIsAFault) {
    table.SCA[at(1, 1)] = k_missing;
    EXPECT_EQ(fault_of_adjusting(1), k_fault_null);
}

TEST_F(WinterFaults, AMissingCoverAfterTheCutDayIsStretchedAndFaultsWhereTheCoverIsFilled) {
    table.SCA[at(1, 2)] = k_missing;
    EXPECT_EQ(fault_of_adjusting(2), k_fault_null);
    EXPECT_TRUE(is_missing(table.SCAclim[at(1, 2)]));
    EXPECT_TRUE(is_missing(table.SCAclimWA[at(1, 2)]));
    // By then the other zone's curve is placed on its days. The day before is filled, the day itself is not.
    EXPECT_EQ(days(table.SCAclimWA, 2), (Floats{1, 0.75F, 0.5F, 0.25F}));
    EXPECT_EQ(days(table.SCAclimWAMA, 1), (Floats{1, 0, 0, 0}));
}

TEST_F(WinterFaults, AMissingCoverOnTheLastDayThatTheCurveReachesFaultsWhereItIsJoined) {
    table.SCA[at(1, 3)] = k_missing;
    EXPECT_EQ(fault_of_adjusting(2), k_fault_null);
    EXPECT_TRUE(is_missing(table.SCAclimWA[at(1, 3)]));
    EXPECT_EQ(days(table.SCAclimWA, 2), (Floats{0, 0, 0, 0}));
}

TEST_F(WinterFaults, AMissingDepthAfterTheCutDayStaysMissingWhenStretched) {
    table.MDCexcl[at(1, 2)] = k_missing;
    EXPECT_EQ(fault_of_adjusting(2), k_no_fault);
    EXPECT_TRUE(is_missing(table.MDCexclWA[at(1, 2)]));
    EXPECT_TRUE(is_missing(table.MDCexclWAnew[at(1, 2)]));
    // It exceeds no degree days, so it stays on the day of the value before it.
    EXPECT_EQ(days(table.MeltOffset, 1), (Floats{1, 1, 3, 3}));
}

TEST_F(WinterFaults, AMovedCurveCannotTakeAMissingCover) {
    winter(1, 10, 9, 0, 0);  // the deficit is covered on day 1
    table.SCA[at(1, 3)] = k_missing;
    EXPECT_EQ(fault_of_adjusting(1), k_fault_null);
    // The day that takes the cover of day 3 is not written; the day before it is.
    EXPECT_EQ(days(table.SCAclim, 1), (Floats{0.75F, 0, 0, 0}));
    EXPECT_EQ(days(table.MDCexclWA, 1), (Floats{1, 0, 0, 0}));
}

TEST_F(WinterFaults, AMissingNewMeltIsAFaultThatKeepsTheDaysBefore) {
    table.NewMelt[at(1, 3)] = k_missing;
    EXPECT_EQ(fault_of_adjusting(2), k_fault_null);
    EXPECT_EQ(days(table.MDCexclWAnew, 1), (Floats{1, 2, 0, 0}));
    EXPECT_EQ(days(table.SCAclimWA, 1), (Floats{1, 0.75F, 0, 0}));
    EXPECT_EQ(days(table.MDCexclWAnew, 2), (Floats{0, 0, 0, 0}));
}

TEST_F(WinterFaults, MissingDegreeDaysAreBelowNoDepth) {
    table.SumAT[at(1, 2)] = k_missing;
    EXPECT_EQ(fault_of_adjusting(2), k_no_fault);
    // Depths 2 and 3 both stop on day 2.
    EXPECT_EQ(days(table.MeltOffset, 1), (Floats{1, 2, 2, 2}));
}

TEST_F(WinterFaults, AMissingCoverOfTheLastDayJoinsNothing) {
    winter(1, 10, 20, 0, 0);
    set(table.SCA, 1, {0.5, 0.25, 0, k_missing});
    set(table.MDCexcl, 1, {1, 2, 3, 0});  // stretched to 2, 4, 6
    set(table.SumAT, 1, {1, 3, 10, 11});
    EXPECT_EQ(fault_of_adjusting(2), k_no_fault);
    // The 0.25 of day 3 is above its bare ground, but neither the rest of the
    // curve nor the last cover is joined to it.
    EXPECT_EQ(days(table.SCAclimWA, 1), (Floats{0, 0.5F, 0.25F, 0}));
    EXPECT_EQ(days(table.SCAclim, 1), (Floats{0.5F, 0.25F, 0, 0}));
}

TEST_F(WinterFaults, AZoneThatIsNeverCoveredTakesTheNextZonesFirstDepthAndFaultsWhereItIsMissing) {
    winter(1, 10, 0, 0, 0);  // deficit 10, total melt 2.5
    table.MDCexcl[at(2, 1)] = k_missing;
    // Zone 2's question is not reached.
    EXPECT_EQ(fault_of_adjusting(1), k_fault_null);
}

TEST_F(WinterFaults, AnUnwrittenFirstDayWithoutACoverFaultsBeforeTheCoverIsFilled) {
    winter(1, 10, 0, 0, 0);  // never covered, so nothing is written for the zone
    table.SCAclim[at(1, 1)] = k_missing;
    set(table.NewMelt, 1, {5, 5, 0, 0});
    set(table.SumAT, 1, {1, 6, 11, 12});  // depths 5 and 10 are reached on days 2 and 3
    EXPECT_EQ(fault_of_adjusting(2), k_fault_null);
    EXPECT_EQ(days(table.SCAclimWAMA, 1), (Floats{0, 0, 0, 0}));
    EXPECT_EQ(table.SCAclimWA[at(1, 3)], 0.0001F);
}

TEST_F(WinterFaults, AGainBeyondASingleIsAFault) {
    // The present winter stores 1e-38, the changed one 10: the gain would be 1e39.
    winter(1, 1e-38, 10, 0, 0);
    EXPECT_EQ(fault_of_adjusting(1), k_fault_overflow);
}

TEST_F(WinterFaults, ADepthThatIsStretchedBeyondASingleIsAFaultThatKeepsTheDaysBefore) {
    winter(1, 10, 20, 0, 0);
    table.MDCexcl[at(1, 2)] = 3e38F;
    EXPECT_EQ(fault_of_adjusting(1), k_fault_overflow);
    EXPECT_EQ(days(table.SCAclim, 1), (Floats{1, 0, 0, 0}));
}

TEST_F(WinterFaults, TheLastZonesLastDayHasNoNextDayToJoin) {
    // Gain 1.25 stretches the depths 1, 2, 3.2 to 1.25, 2.5, 4. The last one is reached on the
    // last day, and its 0.5 is above that day's cover. The 0.25 would go to the day after, which
    // does not exist: the curve stays as it is.
    winter(2, 10, 12.5, 0, 0);
    table.MDCexcl[at(2, 3)] = 3.2F;
    EXPECT_EQ(fault_of_adjusting(2), k_no_fault);
    EXPECT_EQ(table.SCAclimWA[at(2, 4)], 0.5F);
}

TEST_F(WinterFaults, ARestOfACurveWithoutALastDayIsAFault) {
    // The bare upper zone has no row for the simulation's last day.
    winter(2, 10, 20, 0, 0);  // stretched to 2 and 4; the last row is not written
    set(table.SCA, 2, {0.5, 0, 0, 0});
    set(table.SumAT, 2, {1, 9, 9, 9});
    remove_row(at(2, 4));
    EXPECT_EQ(fault_of_adjusting(2), k_fault_no_record);
    // The value of day 1 is placed on day 2, 0.5 above the bare ground, and the rest reaches the last row.
    EXPECT_EQ(table.SCAclim[at(2, 3)], 0.5F);
}

}  // namespace
}  // namespace nivora
