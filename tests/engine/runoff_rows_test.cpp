#include "engine/runoff_simulation.h"
#include "tests/engine/engine_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace nivora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsNan;

/// Discharge is the lagged input here (x = y = 0). 1 cm is 100 m³/s in zone 1 and 50 m³/s in zone 2.
class RunoffRows : public EngineTest {
protected:
    void begin(int zones, int days_in_run, double lag) {
        start(zones, date_of(2001, 6, 1), days_in_run);
        if (zones > 1) basin.zones[1].area = 432.0;
        for (auto* column : {&table.Cpr, &table.M1S, &table.ZoneDD}) fill(*column, 0.0);
        fill(table.LagTime, lag);
    }

    bool go() { return runoff_simulation(); }
};

TEST_F(RunoffRows, ARunOfOneDayWorksAndKeepsItsRow) {
    begin(1, 1, 6.0);
    set(table.Cpr, 1, {2.0});

    EXPECT_TRUE(go());

    EXPECT_THAT(table.DailyQ, ElementsAre(200.0));
    EXPECT_THAT(table.TotalMelt, ElementsAre(200.0F));
    EXPECT_EQ(run.FinalQ[0], 200.0F);
}

TEST_F(RunoffRows, ARunOfOneDayWithTwoZonesWorks) {
    begin(2, 1, 24.0);
    table.Cpr[at(1, 1)] = 2.0F;
    table.Cpr[at(2, 1)] = 1.0F;

    EXPECT_TRUE(go());

    EXPECT_THAT(table.DailyQ, ElementsAre(250.0, IsNan()));
    EXPECT_EQ(run.FinalQ[0], 250.0F);
    EXPECT_EQ(table.size(), 2U);
}

TEST_F(RunoffRows, NoRowIsAddedOrLost) {
    begin(2, 5, 6.0);

    EXPECT_TRUE(go());

    EXPECT_EQ(table.size(), 10U);
    EXPECT_EQ(*std::max_element(table.Date.begin(), table.Date.end()), run.RunEnd);
}

TEST_F(RunoffRows, StoredOrderOfTheRowsDoesNotMatter) {
    begin(2, 3, 0.0);
    set(table.Cpr, 1, {1.0, 2.0, 4.0});
    set(table.Cpr, 2, {2.0, 4.0, 8.0});
    SimResults::visit(table, [](auto& column) { std::reverse(column.begin(), column.end()); });

    EXPECT_TRUE(go());

    // Inputs 200, 400, 800: 200; 300 + 50; 600 + 100. The rows are stored in reverse.
    EXPECT_THAT(table.DailyQ, ElementsAre(IsNan(), IsNan(), IsNan(), 700.0, 350.0, 200.0));
}

TEST_F(RunoffRows, DaysOutsideTheWorkingPeriodDoNotCount) {
    begin(1, 4, 0.0);
    set(table.Cpr, 1, {64.0, 1.0, 2.0, 64.0});
    run.RunStart += 1;
    run.RunEnd -= 1;

    EXPECT_TRUE(go());

    EXPECT_THAT(table.DailyQ, ElementsAre(IsNan(), 100.0, 175.0, IsNan()));
}

TEST_F(RunoffRows, AreTakenByPositionWhereAZoneMissesADay) {
    begin(2, 3, 0.0);
    set(table.Cpr, 1, {1.0, 4.0, 8.0});
    set(table.Cpr, 2, {2.0, 0.0, 16.0});
    remove_row(at(2, 2));  // left: zone 1 days 1, 2, 3, then zone 2 days 1, 3

    EXPECT_TRUE(go());

    // Rows in pairs: zones 1 and 2 of day 1; zone 1 of day 2 with zone 1 of day 3; zone 2 of day 3 alone,
    // with the area of zone 1. Inputs: 100 + 50 x 2 = 200; 400 + 50 x 8 = 800; 1600.
    // Discharge: 200; 0.75 x 800 + 0.25 x 200 = 650; 0.75 x 1600 + 0.25 x 800 = 1400.
    EXPECT_THAT(table.DailyQ, ElementsAre(200.0, 650.0, IsNan(), IsNan(), 1400.0));
    EXPECT_EQ(run.FinalQ[0], 1400.0F);
}

TEST_F(RunoffRows, AreTakenByPositionWhereTheBasinHasMoreZonesThanTheData) {
    begin(1, 4, 0.0);
    set(table.Cpr, 1, {1.0, 2.0, 4.0, 8.0});
    basin.ZoneCount = 2;
    basin.zones.push_back(make_zone(2, 432.0, 1500.0));
    basin.basin_area_text = basin_area_text(basin.zones);

    EXPECT_TRUE(go());

    // Days 1 and 2 count as one day, days 3 and 4 as the next: 100 + 50 x 2 = 200; 400 + 50 x 8 = 800.
    EXPECT_THAT(table.DailyQ, ElementsAre(200.0, IsNan(), 650.0, IsNan()));
}

TEST_F(RunoffRows, ADayMissingInAllZonesIsSkipped) {
    begin(1, 4, 0.0);
    set(table.Cpr, 1, {1.0, 64.0, 2.0, 4.0});
    remove_row(at(1, 2));

    EXPECT_TRUE(go());

    EXPECT_THAT(table.DailyQ, ElementsAre(100.0, 175.0, 350.0));
}

TEST_F(RunoffRows, WithoutTheFirstDateTheFirstRowsInputCountsTwoAndAHalfTimes) {
    begin(1, 3, 6.0);
    set(table.Cpr, 1, {64.0, 1.0, 2.0});
    remove_row(at(1, 1));

    EXPECT_TRUE(go());

    // The first row is not on the run's start date, so both stand-ins for the days before the run are
    // released in full: 100 + 0.5 x 100 + 100. Then 50 + 0.5 x 200.
    EXPECT_THAT(table.DailyQ, ElementsAre(250.0, 150.0));
}

TEST_F(RunoffRows, WithoutTheFirstDateALongLagTakesTheWholeStandIn) {
    begin(1, 2, 24.0);
    set(table.Cpr, 1, {64.0, 1.0});
    remove_row(at(1, 1));

    EXPECT_TRUE(go());

    EXPECT_THAT(table.DailyQ, ElementsAre(175.0));  // 100 + 0.75 x 100
}

}  // namespace
}  // namespace nivora
