#include "engine/snow_melt.h"
#include "tests/engine/engine_fixture.h"

#include <gmock/gmock.h>

#include <cmath>

namespace nivora {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

/// In the melt season there is no winter: all new snow counts, and of its melt the snow-free share.
class SnowStoreInSummer : public EngineTest {
protected:
    void SetUp() override { begin(3); }

    void begin(int days, int zones = 1) {
        start(zones, date_of(2001, 6, 1), days);
        fill(table.ZoneDD, 0.0);
        fill(table.Tcrit, 1.0);
        fill(table.AN, 0.5);
    }

    void go() { snow_melt(); }
};

TEST_F(SnowStoreInSummer, NewSnowWaitsAndMeltsByDegreeDays) {
    set(table.Precip, 1, {3.0, 0.0, 0.0});
    set(table.ZoneDD, 1, {0.0, 2.0, 6.0});
    set(table.SCA, 1, {0.0, 0.25, 0.5});

    go();

    // Day 1: 3 cm of snow at 0 degree days. Day 2: 2 x 0.5 = 1 cm
    // melts, 1 x (1 - 0.25) runs off, 2 cm remain.
    // Day 3: 6 x 0.5 = 3 cm could melt, the store's 2 cm do, 2 x (1 - 0.5) run off.
    EXPECT_THAT(table.aT, ElementsAre(0.0F, 1.0F, 3.0F));
    EXPECT_THAT(table.SumAT, ElementsAre(0.0F, 1.0F, 4.0F));
    EXPECT_THAT(table.SnowOnStore, ElementsAre(3.0F, 3.0F, 2.0F));
    EXPECT_THAT(table.NewMelt, ElementsAre(0.0F, 1.0F, 2.0F));
    EXPECT_THAT(table.M1S, ElementsAre(0.0F, 0.75F, 1.0F));
    EXPECT_THAT(table.Cpr, Each(0.0F));
    EXPECT_EQ(run.SnowStore, 0.0F);
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(SnowStoreInSummer, TheStoredValueIsTheOneBeforeTheDaysMelt) {
    fill(table.Precip, 3.0);
    fill(table.ZoneDD, 0.5);  // below the critical 1: snow, of which 0.5 x 0.5 = 0.25 melt on the same day

    go();

    EXPECT_THAT(table.SnowOnStore, ElementsAre(3.0F, 5.75F, 8.5F));
    EXPECT_THAT(table.NewMelt, Each(0.25F));
    EXPECT_EQ(run.SnowStore, 8.25F);
}

TEST_F(SnowStoreInSummer, RainAtExactlyTheCriticalTemperatureCountsAsRain) {
    fill(table.Precip, 3.0);
    set(table.ZoneDD, 1, {1.0, std::nextafter(1.0F, 0.0F), std::nextafter(1.0F, 2.0F)});

    go();

    EXPECT_THAT(table.Cpr, ElementsAre(3.0F, 0.0F, 3.0F));
    EXPECT_EQ(table.SnowOnStore[0], 0.0F);
    EXPECT_EQ(table.SnowOnStore[1], 3.0F);
}

TEST_F(SnowStoreInSummer, AlmostNoPrecipitationIsNeitherRainNorSnow) {
    fill(table.Precip, 0.000005);
    set(table.ZoneDD, 1, {0.0, 2.0, 0.0});

    go();

    EXPECT_THAT(table.Cpr, Each(0.0F));
    EXPECT_THAT(table.SnowOnStore, Each(0.0F));
}

TEST_F(SnowStoreInSummer, PrecipitationOf0Point00001CountsForNothingSinceItsSingleLiesBelow) {
    // The Single 0.00001 is 0.00000999999975; the next one is 0.00001000000066.
    const float next = std::nextafter(0.00001F, 1.0F);
    set(table.Precip, 1, {0.00001F, next, next});
    set(table.ZoneDD, 1, {2.0, 2.0, 0.0});

    go();

    EXPECT_THAT(table.Cpr, ElementsAre(0.0F, next, 0.0F));
    EXPECT_EQ(table.SnowOnStore[2], next);
}

TEST_F(SnowStoreInSummer, DegreeDaysOf0LeaveTheStoreUntouched) {
    set(table.Precip, 1, {3.0, 0.0, 0.0});
    fill(table.AN, 100.0);

    go();

    EXPECT_THAT(table.SnowOnStore, Each(3.0F));
    EXPECT_THAT(table.NewMelt, Each(0.0F));
    EXPECT_THAT(table.M1S, Each(0.0F));
    EXPECT_EQ(run.SnowStore, 3.0F);
}

TEST_F(SnowStoreInSummer, AStoreSmallerThanTheMeltEndsAtExactly0) {
    set(table.Precip, 1, {0.1F, 0.0, 0.0});
    set(table.ZoneDD, 1, {0.0, 50.0, 50.0});

    go();

    EXPECT_THAT(table.NewMelt, ElementsAre(0.0F, 0.1F, 0.0F));
    EXPECT_THAT(table.SnowOnStore, ElementsAre(0.1F, 0.1F, 0.0F));
    EXPECT_THAT(table.M1S, ElementsAre(0.0F, 0.1F, 0.0F));
    EXPECT_EQ(run.SnowStore, 0.0F);
}

TEST_F(SnowStoreInSummer, TheStoreAfterTheLastDaysMeltIsKeptByZone) {
    begin(3, 2);
    fill(table.Precip, 3.0);
    fill_zone(table.ZoneDD, 2, 0.5);
    run.EndingStores[0] = {7.0F, 7.0F, 7.0F};
    run.EndingStores[3] = {1.0F, 2.0F};

    go();

    // Zone 1: three times 3 cm at 0 degrees. Zone 2: 0.5 x 0.5 = 0.25 cm of them melt each day.
    EXPECT_THAT(run.EndingStores[0], ElementsAre(9.0F, 8.25F));
    EXPECT_THAT(run.EndingStores[3], ElementsAre(1.0F, 2.0F));
}

TEST_F(SnowStoreInSummer, AZoneThatTheStageDoesNotFinishHasNoStoreAtItsEnd) {
    begin(3, 3);
    fill(table.Precip, 3.0);
    table.ZoneDD[at(2, 3)] = k_missing;

    go();

    EXPECT_EQ(dialogs.messages().size(), 1U);
    EXPECT_THAT(run.EndingStores[0], ElementsAre(9.0F, ::testing::IsNan(), ::testing::IsNan()));
}

TEST_F(SnowStoreInSummer, WithoutStoreThereIsNoMelt) {
    fill(table.ZoneDD, 10.0);

    go();

    EXPECT_THAT(table.NewMelt, Each(0.0F));
    EXPECT_THAT(table.M1S, Each(0.0F));
    EXPECT_THAT(table.aT, Each(5.0F));
    EXPECT_THAT(table.SumAT, ElementsAre(5.0F, 10.0F, 15.0F));
}

TEST_F(SnowStoreInSummer, AllNewSnowCountsHoweverMuchOfTheZoneIsCovered) {
    fill(table.SCA, 1.0);
    set(table.Precip, 1, {3.0, 0.0, 0.0});
    set(table.ZoneDD, 1, {0.0, 2.0, 0.0});

    go();

    // Under full cover the store is kept, but none of its melt of 1 cm runs off.
    EXPECT_THAT(table.SnowOnStore, ElementsAre(3.0F, 3.0F, 2.0F));
    EXPECT_THAT(table.NewMelt, ElementsAre(0.0F, 1.0F, 0.0F));
    EXPECT_THAT(table.M1S, Each(0.0F));
}

TEST_F(SnowStoreInSummer, RunoffMeltDoesNotCarryOverToADayWithoutMelt) {
    set(table.Precip, 1, {3.0, 0.0, 0.0});
    set(table.ZoneDD, 1, {0.5, 0.0, 0.0});

    go();

    EXPECT_THAT(table.M1S, ElementsAre(0.25F, 0.0F, 0.0F));
    EXPECT_THAT(table.NewMelt, ElementsAre(0.25F, 0.0F, 0.0F));
}

TEST_F(SnowStoreInSummer, RainCountsOnTheSnowFreePartWhereTheSwitchIs0) {
    begin(4);
    fill(table.ZoneDD, 2.0);
    fill(table.Precip, 4.0);
    set(table.SCA, 1, {0.25, 1.0, 0.25, 0.25});
    set(table.RCA, 1, {0.0, 0.0, 1.0, 2.0});

    go();

    EXPECT_THAT(table.Cpr, ElementsAre(3.0F, 0.0F, 4.0F, 4.0F));  // 4 x (1 - 0.25), 4 x (1 - 1)
}

TEST_F(SnowStoreInSummer, AMissingSwitchLetsRainCountInFull) {
    fill(table.ZoneDD, 2.0);
    fill(table.Precip, 4.0);
    fill(table.SCA, 0.25);
    fill(table.RCA, k_missing);

    go();

    EXPECT_THAT(table.Cpr, Each(4.0F));
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(SnowStoreInSummer, TheMeltDepthIsASingleBeforeItIsSummed) {
    // Between 2^24 and 2^25 Singles are 2 apart: 16,777,216 + 1 is a tie
    // that rounds back to the even 16,777,216.
    fill(table.AN, 1.0);
    set(table.ZoneDD, 1, {16777216.0, 1.0, 3.0});

    go();

    EXPECT_THAT(table.SumAT, ElementsAre(16777216.0F, 16777216.0F, 16777220.0F));
}

TEST_F(SnowStoreInSummer, ZonesStartWithAnEmptyStoreAndSumsOf0) {
    begin(2, 2);
    fill_zone(table.Precip, 1, 3.0);
    fill_zone(table.ZoneDD, 1, 0.5);
    fill_zone(table.ZoneDD, 2, 4.0);

    go();

    EXPECT_EQ(table.SnowOnStore[at(1, 2)], 5.75F);
    EXPECT_THAT(days(table.SnowOnStore, 2), Each(0.0F));
    EXPECT_THAT(days(table.SumAT, 2), ElementsAre(2.0F, 4.0F));
    EXPECT_EQ(run.SnowStore, 0.0F);
}

TEST_F(SnowStoreInSummer, StoredOrderOfTheRowsDoesNotMatter) {
    begin(2, 2);
    set(table.Precip, 1, {3.0, 0.0});
    set(table.Precip, 2, {5.0, 0.0});
    fill(table.ZoneDD, 0.5);
    SimResults::visit(table, [](auto& column) { std::reverse(column.begin(), column.end()); });

    go();

    // Reversed: zone 2 day 2, zone 2 day 1, zone 1 day 2, zone 1 day 1. 0.25 cm melt each day.
    EXPECT_THAT(table.SnowOnStore, ElementsAre(4.75F, 5.0F, 2.75F, 3.0F));
}

TEST_F(SnowStoreInSummer, DaysOutsideTheWorkingPeriodStayAsTheyAre) {
    fill(table.ZoneDD, 2.0);
    run.RunStart += 1;
    run.RunEnd -= 1;

    go();

    EXPECT_TRUE(is_missing(table.SumAT[0]));
    EXPECT_EQ(table.SumAT[1], 1.0F);
    EXPECT_TRUE(is_missing(table.SumAT[2]));
}

TEST_F(SnowStoreInSummer, NetRadiationHasNoEffect) {
    set(table.Precip, 1, {3.0, 0.0, 0.0});
    fill(table.ZoneDD, 0.5);
    fill(table.NetRad, 1000.0);

    go();

    EXPECT_THAT(table.NewMelt, Each(0.25F));
}

}  // namespace
}  // namespace nivora
