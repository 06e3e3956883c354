#include "climate/winter_adjustment.h"
#include "tests/climate/winter_fixture.h"

namespace nivora {
namespace {

class WinterZones : public WinterTest {};

TEST_F(WinterZones, ADeficitBeyondAllMeltLeavesNothingOfTheZone) {
    // Change (0 - 1) + (1 - 10) = -10; gain (1 - 1) / (10 - 0) = 0.
    summer(2, 4);
    winter(1, 10, 1, 0, 1);
    set(table.SCA, 1, {1, 0.5, 0.5, 0.25});
    set(table.MDCexcl, 1, {1, 2, 3, 4});  // accumulated melt 1, 1.5, 2, 2.25
    set(table.SumAT, 1, {1, 2, 3, 4});
    set(table.NewMelt, 1, {0.5, 0, 0.25, 0});
    adjust();
    EXPECT_EQ(days(table.SCAclim, 1), (Floats{0, 0, 0, 0}));
    EXPECT_EQ(days(table.MDCexclWA, 1), (Floats{0, 0, 0, 0}));
    EXPECT_EQ(days(table.MDCexclWAnew, 1), (Floats{0.5F, 0.5F, 0.75F, 0.75F}));
    EXPECT_EQ(days(table.SCAclimWA, 1), (Floats{0.0001F, 0, 0, 0}));
    // Only the mark on the first day remains: a cover of 0.01 on one day, then none.
    EXPECT_EQ(days(table.SCAclimWAMA, 1), (Floats{0.01F, 0, 0, 0}));
}

TEST_F(WinterZones, TheLastZoneKeepsACoverThoughItsDeficitIsBeyondAllMelt) {
    summer(1, 4);
    winter(1, 10, 1, 0, 1);
    set(table.SCA, 1, {1, 0.5, 0.5, 0.25});
    set(table.MDCexcl, 1, {1, 2, 3, 4});
    set(table.SumAT, 1, {1, 2, 3, 4});
    adjust();
    // The curve starts on the last day, which becomes the first one: cover 0.25, depth 4 - 4.
    EXPECT_EQ(days(table.SCAclim), (Floats{0.25F, 0, 0, 0}));
    EXPECT_EQ(days(table.MDCexclWA), (Floats{0, 0, 0, 0}));
    EXPECT_EQ(days(table.SCAclimWA), (Floats{0.25F, 0, 0, 0}));
    EXPECT_EQ(days(table.SCAclimWAMA), (Floats{0.25F, 0.25F, 0.25F, 0.25F}));
    EXPECT_NE(report.find("will disappear"), std::string::npos);
}

TEST_F(WinterZones, ADeficitCoveredOnTheLastDayOfAnUpperZoneWritesNothing) {
    summer(2, 3);
    winter(1, 10, 7, 0, 0);  // deficit 3
    fill_zone(table.SCA, 1, 1);
    set(table.MDCexcl, 1, {1, 2, 3});
    adjust();
    EXPECT_EQ(days(table.SCAclim, 1), (Floats{0, 0, 0}));
    EXPECT_NE(report.find("a shift of  3  days"), std::string::npos);
}

TEST_F(WinterZones, AZoneWhosePresentWinterStoresNothingKeepsTheGainOfTheZoneBefore) {
    summer(2, 3);
    winter(1, 10, 15, 0, 0);  // gain 1.5
    winter(2, 5, 5, 5, 1);    // P - i is 0
    for (const int zone : {1, 2}) {
        set(table.MDCexcl, zone, {2, 4, 6});
        fill_zone(table.SCA, zone, 1);
        set(table.SumAT, zone, {10, 20, 30});
    }
    adjust();
    EXPECT_EQ(days(table.MDCexclWA, 2), (Floats{3, 6, 0}));
}

TEST_F(WinterZones, AFirstZoneWhosePresentWinterStoresNothingHasAGainOfZero) {
    summer(1, 3);
    winter(1, 5, 5, 5, 1);  // change (5 - 1) + 0 = 4: a surplus that is treated as a deficit
    set(table.MDCexcl, 1, {2, 4, 6});
    set(table.SCA, 1, {1, 0.75, 0.5});
    set(table.SumAT, 1, {10, 20, 30});
    adjust();
    EXPECT_EQ(days(table.SCAclim), (Floats{0.75F, 0.5F, 0}));
    EXPECT_EQ(days(table.MDCexclWA), (Floats{2, 4, 0}));
    EXPECT_NE(report.find("(deficit) of  4  was equaled/exceeded by"), std::string::npos);
}

TEST_F(WinterZones, ACurveWithoutMeltOnTheFirstDayCountsAsNeverCoveredButIsStillWritten) {
    summer(1, 3);  // no change, and the accumulated melt of the first day is 0
    set(table.SCA, 1, {1, 0.5, 0.25});
    set(table.MDCexcl, 1, {0, 2, 4});
    set(table.SumAT, 1, {0, 2, 4});
    adjust();
    EXPECT_EQ(days(table.SCAclim), (Floats{1, 0.5F, 0}));
    EXPECT_EQ(days(table.SCAclimWAMA), (Floats{1, 0.5F, 0.25F}));
    EXPECT_NE(report.find("   Winter change (deficit) of  0  is greater than\r\n"
                          "   accumulated zonal melt of  0 .  Snow coverage for\r\n"),
              std::string::npos);
}

/// A lower zone in the cold, where the last of its 4 depths is never reached.
class ValueOnTheNextZone : public WinterZones {
protected:
    void SetUp() override {
        summer(2, 4);
        winter(1, 10, 20, 0, 0);  // gain 2
        set(table.SCA, 1, {1, 0.75, 0.5, 0});
        set(table.MDCexcl, 1, {1, 2, 3, 0});  // stretched to 2, 4, 6
        set(table.SumAT, 1, {1, 2, 3, 4});    // reaches 2 on day 2, 4 on day 4, never 6
        set(table.SCA, 2, {1, 1, 1, 1});
        set(table.MDCexcl, 2, {3, 4, 5, 6});
        set(table.SumAT, 2, {2, 4, 6, 8});
    }
};

TEST_F(ValueOnTheNextZone, IsPlacedOnItsFirstDay) {
    adjust();
    EXPECT_EQ(days(table.MeltOffset, 1), (Floats{2, 4, 5, 5}));
    EXPECT_EQ(days(table.SCAclimWA, 1), (Floats{0, 1, 0, 0.75F}));
    // The upper zone's own first value, of depth 3, is placed on its second day and leaves the first day
    // alone. Its depths: 3 and 4 on day 2 (4), 5 on day 3 (6). The cover of 1 there is not above the last
    // day's 1, so nothing is joined.
    EXPECT_EQ(days(table.SCAclimWA, 2), (Floats{0.5F, 1, 1, 0}));
    EXPECT_EQ(days(table.SCAclimWAMA, 2), (Floats{0.5F, 1, 1, 1}));
}

TEST_F(ValueOnTheNextZone, IsReplacedByTheZonesOwn) {
    set(table.SumAT, 2, {3, 4, 5, 6});
    adjust();
    EXPECT_EQ(days(table.SCAclimWA, 2), (Floats{1, 1, 1, 0}));
}

TEST_F(ValueOnTheNextZone, CarriesTheRestOfTheCurveIntoThatZone) {
    // The lower zone ends bare, and the 0.5 is 0.375 above the 0.125 of the day where it was placed. The
    // rest, 0 + 0.375, continues to the upper zone's last day and replaces what was written there.
    fill_zone(table.SCA, 2, 0.125);
    adjust();
    EXPECT_EQ(days(table.SCAclim, 2), (Floats{0.125F, 0.375F, 0.375F, 0.375F}));
    // The upper zone's own values: 0.125 of depth 3 on day 2, and 0.375 of depth 5 on day 3. The latter is
    // above the last day's cover, which follows it on day 4.
    EXPECT_EQ(days(table.SCAclimWA, 2), (Floats{0.5F, 0.125F, 0.375F, 0.125F}));
}

TEST_F(ValueOnTheNextZone, TakesTheCoverOfTheLowerZonesLastDay) {
    // The lower zone keeps a cover of 0.25 to the end. Its last day gets 0.75, and the day after, the upper
    // zone's first, gets the 0.25.
    set(table.SCA, 1, {1, 0.75, 0.5, 0.25});
    set(table.MDCexcl, 1, {1, 2, 2, 2});  // stretched to 2, 4, 4
    adjust();
    EXPECT_EQ(days(table.SCAclimWA, 1), (Floats{0, 1, 0, 0.75F}));
    EXPECT_EQ(days(table.SCAclimWA, 2)[0], 0.25F);
}

TEST_F(WinterZones, ADepthBeyondTheLastZonesDegreeDaysGetsNoDayButCountsDaysOn) {
    summer(1, 4);
    winter(1, 10, 20, 0, 0);  // gain 2
    set(table.SCA, 1, {0.5, 0.5, 0, 0});
    set(table.MDCexcl, 1, {1, 3, 4, 0});  // stretched to 2, 6, 8; the last day is left at 0
    set(table.SumAT, 1, {1, 2, 3, 4});
    adjust();
    // Depth 2 is placed on day 2. Depth 6 is not reached; the search passes days 3, 4 and 5 and returns.
    // Depth 8 is not reached either and counts one day more. Neither gets a day. The last depth, 0, is placed
    // on the last day, which by now counts as day 6.
    EXPECT_EQ(days(table.MDCexclWAnew), (Floats{2, 6, 8, 0}));
    EXPECT_EQ(days(table.MeltOffset), (Floats{2, 0, 0, 6}));
    EXPECT_EQ(days(table.SCAclimWA), (Floats{0, 0.5F, 0, 0.0001F}));
    EXPECT_EQ(days(table.SCAclimWAMA), (Floats{0.5F, 0.5F, 0.5F, 0.01F}));
}

TEST_F(WinterZones, AStretchedCurveBeyondTheLastZonesDegreeDaysEndsOnTheLastDayThoughThereIsSnow) {
    summer(1, 4);
    winter(1, 10, 20, 0, 0);  // gain 2
    set(table.SCA, 1, {1, 0.75, 0.5, 0.25});
    set(table.MDCexcl, 1, {1, 2, 3, 4});  // stretched to 2, 4, 6; the last day stays at cover 0, depth 0
    set(table.SumAT, 1, {1, 2, 3, 3.5});
    adjust();
    // Depth 2 is placed on day 2, 4 and 6 on no day. After them the position is the last day, where the depth
    // 0 of the last day is placed, and its mark of a bare day ends the curve.
    EXPECT_EQ(days(table.SCAclimWA), (Floats{0, 1, 0, 0.0001F}));
    EXPECT_EQ(days(table.SCAclimWAMA), (Floats{1, 1, 1, 0.01F}));
}

TEST_F(WinterZones, ABareDayThatSharesItsDayWithAValueBeforeItIsLostAndTheCoverIsHeld) {
    summer(1, 5);
    set(table.SCA, 1, {1, 0.5, 0, 0, 0});
    set(table.MDCexcl, 1, {1, 2, 3, 0, 0});
    set(table.SumAT, 1, {1, 4, 5, 6, 7});  // depths 2 and 3 are both reached on day 2
    adjust();
    EXPECT_EQ(days(table.SCAclimWA), (Floats{1, 0.5F, 0, 0, 0}));
    EXPECT_EQ(days(table.SCAclimWAMA), (Floats{1, 0.5F, 0.5F, 0.5F, 0.5F}));
}

TEST_F(WinterZones, TheRestOfACurveAboveABareZoneGoesToAnotherColumn) {
    summer(1, 5);
    winter(1, 10, 20, 0, 0);  // gain 2
    set(table.SCA, 1, {0.5, 0.25, 0, 0, 0});
    set(table.MDCexcl, 1, {1, 2, 3, 0, 0});  // stretched to 2, 4, 6, 0
    set(table.SumAT, 1, {1, 3, 10, 11, 12});
    adjust();
    // Depth 2 is placed on day 2 with 0.5, depths 4 and 6 on day 3 with 0.25. Day 3 is bare in the present
    // climate, so 0.25 is above its cover.
    EXPECT_EQ(days(table.SCAclimWA), (Floats{0, 0.5F, 0.25F, 0, 0}));
    EXPECT_EQ(days(table.SCAclim), (Floats{0.5F, 0.25F, 0, 0.25F, 0.25F}));
    // The adjusted cover itself only holds its last value.
    EXPECT_EQ(days(table.SCAclimWAMA), (Floats{0.5F, 0.5F, 0.25F, 0.25F, 0.25F}));
}

TEST_F(WinterZones, ACurveThatEndsOnTheSummersLastDayHasNoRest) {
    summer(1, 3);
    winter(1, 10, 20, 0, 0);
    set(table.SCA, 1, {0.5, 0.25, 0});
    set(table.MDCexcl, 1, {1, 2, 0});  // stretched to 2 and 4
    set(table.SumAT, 1, {1, 3, 4});    // reached on day 2 and day 3
    adjust();
    EXPECT_EQ(days(table.SCAclimWA), (Floats{0, 0.5F, 0.25F}));
    EXPECT_EQ(days(table.SCAclim), (Floats{0.5F, 0.25F, 0}));
}

TEST_F(WinterZones, ACurveThatEndsOnALowerZonesLastDayLeavesTheZoneAboveAlone) {
    summer(2, 3);
    winter(1, 10, 20, 0, 0);
    set(table.SCA, 1, {0.5, 0.25, 0});
    set(table.MDCexcl, 1, {1, 2, 0});  // stretched to 2 and 4
    set(table.SumAT, 1, {1, 3, 4});    // reached on day 2 and day 3
    set(table.SCA, 2, {1, 0.75, 0.5});
    set(table.MDCexcl, 2, {1, 2, 3});
    set(table.SumAT, 2, {1, 2, 3});
    adjust();
    // 0.25 is above the bare last day, which is the summer's last day for this zone, too.
    EXPECT_EQ(days(table.SCAclimWA, 1), (Floats{0, 0.5F, 0.25F}));
    EXPECT_EQ(days(table.SCAclim, 1), (Floats{0.5F, 0.25F, 0}));
    EXPECT_EQ(days(table.SCAclim, 2), (Floats{1, 0.75F, 0}));
}

TEST_F(WinterZones, TheMarkOfABareDayIsTheRestOfItsCurve) {
    summer(1, 5);  // no change
    set(table.SCA, 1, {1, 0.5, 0, 0, 0});
    set(table.MDCexcl, 1, {1, 2, 3, 0, 0});
    set(table.SumAT, 1, {1, 2, 3, 4, 5});
    adjust();
    // The curve ends on day 3 with the mark, 0.0001 above that day's 0. The days after it get 0 + 0.0001,
    // including the last day, which the adjustment itself does not write.
    EXPECT_EQ(days(table.SCAclimWA), (Floats{1, 0.5F, 0.0001F, 0, 0}));
    EXPECT_EQ(days(table.SCAclim), (Floats{1, 0.5F, 0, 0.0001F, 0.0001F}));
}

TEST_F(WinterZones, ACoverThatEndsOnTheLastDayIsHeldThere) {
    summer(1, 3);  // no change: the last day is not written, and its depth stays 0
    set(table.SCA, 1, {1, 0.5, 0});
    set(table.MDCexcl, 1, {1, 2, 3});
    set(table.SumAT, 1, {1, 2, 3});
    adjust();
    EXPECT_EQ(days(table.SCAclimWA), (Floats{1, 0.5F, 0}));
    EXPECT_EQ(days(table.SCAclimWAMA), (Floats{1, 0.5F, 0.5F}));
}

TEST_F(WinterZones, DaysThatAreMissingDoNotCountInAShift) {
    summer(1, 5);
    winter(1, 10, 8, 0, 0);  // deficit 2
    fill_zone(table.SCA, 1, 1);
    set(table.MDCexcl, 1, {1, 2, 3, 4, 5});
    set(table.SumAT, 1, {1, 2, 3, 4, 5});
    remove_row(1);  // no 2 May: the melt of 3 on 3 May, the second row, covers the deficit
    adjust();
    EXPECT_NE(report.find("accumulated zonal melt on 5/3/2001, a shift of  2  days"), std::string::npos);
    // 4 - 3 and 5 - 3
    EXPECT_EQ(table.MDCexclWA, (Floats{1, 2, 0, 0}));
}

TEST_F(WinterZones, ASummerOfOneDayIsWrittenInTheLastZoneOnly) {
    summer(2, 1);
    for (const int zone : {1, 2}) {
        set(table.SCA, zone, {0.5});
        set(table.MDCexcl, zone, {2});
        set(table.SumAT, zone, {2});
    }
    adjust();
    EXPECT_EQ(table.SCAclim, (Floats{0, 0.5F}));
    EXPECT_EQ(table.SCAclimWAMA, (Floats{0.01F, 0.5F}));
}

TEST_F(WinterZones, RowsOutsideTheSummerStayAsTheyAre) {
    summer(1, 6);
    set(table.SCA, 1, {1, 1, 0.75, 0.5, 0.25, 0.25});
    set(table.MDCexcl, 1, {1, 2, 1, 2, 3, 4});
    set(table.SumAT, 1, {1, 2, 1, 2, 3, 4});
    run.RunStart += 2;  // the first two days are winter
    climate.WinterEndDate = run.RunStart - 1;
    adjust();
    EXPECT_EQ(days(table.SCAclim), (Floats{0, 0, 0.75F, 0.5F, 0.25F, 0}));
    EXPECT_EQ(days(table.SCAclimWAMA), (Floats{0, 0, 0.75F, 0.5F, 0.25F, 0.25F}));
}

TEST_F(WinterZones, TheOrderOfStorageDoesNotMatter) {
    summer(1, 3);
    set(table.SCA, 1, {1, 0.75, 0.5});
    set(table.MDCexcl, 1, {1, 2, 3});
    set(table.SumAT, 1, {1, 2, 3});
    SimResults::visit(table, [](auto& column) { std::reverse(column.begin(), column.end()); });
    adjust();
    EXPECT_EQ(table.SCAclimWAMA, (Floats{0.5F, 0.75F, 1}));
}

}  // namespace
}  // namespace nivora
