#include "engine/snow_melt.h"
#include "tests/engine/engine_fixture.h"

#include <gmock/gmock.h>

#include <cmath>
#include <tuple>

namespace nivora {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

TEST(MeltSeason, LiesInTheHalfYearOfTheHemisphere) {
    EXPECT_EQ(melt_season_start_month("46.5"), 4);
    EXPECT_EQ(melt_season_start_month("0"), 4);
    EXPECT_EQ(melt_season_start_month("-0.01"), 10);
    EXPECT_EQ(melt_season_start_month("-33"), 10);
}

TEST(MeltSeason, ABlankLatitudeIsNorthern) {
    EXPECT_EQ(melt_season_start_month(""), 4);
    EXPECT_EQ(melt_season_start_month("unknown"), 4);
}

TEST(MeltSeason, LastsSixMonths) {
    for (int month = 1; month <= 12; ++month) {
        EXPECT_EQ(in_melt_season(month, 4), month >= 4 && month <= 9) << month;
        EXPECT_EQ(in_melt_season(month, 10), month >= 10 || month <= 3) << month;
    }
}

TEST(WinterEnd, IsTheDayBeforeTheNextMeltSeason) {
    EXPECT_EQ(winter_end(date_of(2001, 10, 1), 4), date_of(2002, 3, 31));
    EXPECT_EQ(winter_end(date_of(2001, 12, 31), 4), date_of(2002, 3, 31));
    EXPECT_EQ(winter_end(date_of(2002, 1, 1), 4), date_of(2002, 3, 31));
    EXPECT_EQ(winter_end(date_of(2002, 3, 31), 4), date_of(2002, 3, 31));
    EXPECT_EQ(winter_end(date_of(2002, 4, 1), 10), date_of(2002, 9, 30));
    EXPECT_EQ(winter_end(date_of(2002, 9, 30), 10), date_of(2002, 9, 30));
}

TEST(WinterEnd, IsNothingForARunThatStartsInTheMeltSeason) {
    EXPECT_FALSE(winter_end(date_of(2002, 4, 1), 4));
    EXPECT_FALSE(winter_end(date_of(2002, 9, 30), 4));
    EXPECT_FALSE(winter_end(date_of(2001, 10, 1), 10));
    EXPECT_FALSE(winter_end(date_of(2002, 3, 31), 10));
}

TEST(WinterEnd, IsTheDayBeforeTheSeasonThatTheStageFinds) {
    const DayCount first = date_of(2001, 11, 5);
    for (const int start_month : {4, 10}) {
        for (DayCount start = first; start < first + 366; ++start) {
            if (in_melt_season(civil_date(start).month, start_month)) continue;
            DayCount day = start;
            while (civil_date(day).month != start_month) ++day;
            EXPECT_EQ(winter_end(start, start_month), day - 1) << iso_date_text(start);
        }
    }
}

/// The last two days of a northern winter and the first two of its melt season.
class SnowStoreInWinter : public EngineTest {
protected:
    void SetUp() override { begin(date_of(2001, 3, 30)); }

    void begin(DayCount first, int days = 4, int zones = 1) {
        start(zones, first, days);
        fill(table.ZoneDD, 0.0);
        fill(table.Tcrit, 1.0);
        fill(table.AN, 0.5);
    }

    void go() { snow_melt(); }
};

TEST_F(SnowStoreInWinter, TakesOnlyWhatFallsOnTheSnowFreePart) {
    set(table.Precip, 1, {4.0, 4.0, 0.0, 0.0});
    set(table.SCA, 1, {0.25, 0.75, 0.0, 0.0});

    go();

    EXPECT_EQ(table.SnowOnStore[0], 3.0F);  // 4 x (1 - 0.25)
    EXPECT_EQ(table.SnowOnStore[1], 4.0F);  // 3 + 4 x (1 - 0.75)
}

TEST_F(SnowStoreInWinter, MeltsToRunoffInFullWhateverTheCover) {
    set(table.Precip, 1, {4.0, 0.0, 0.0, 0.0});
    set(table.ZoneDD, 1, {0.0, 2.0, 0.0, 0.0});
    set(table.SCA, 1, {0.0, 0.75, 0.0, 0.0});

    go();

    EXPECT_EQ(table.NewMelt[1], 1.0F);  // 2 x 0.5
    EXPECT_EQ(table.M1S[1], 1.0F);
}

TEST_F(SnowStoreInWinter, IsEmptiedAtTheFirstDayOfTheMeltSeason) {
    set(table.Precip, 1, {4.0, 0.0, 0.0, 0.0});

    go();

    EXPECT_THAT(table.SnowOnStore, ElementsAre(4.0F, 4.0F, 0.0F, 0.0F));
    EXPECT_EQ(run.MeltSeasonStart, date_of(2001, 3, 31));
}

TEST_F(SnowStoreInWinter, SnowOfTheFirstMeltSeasonDayCountsInFull) {
    set(table.Precip, 1, {4.0, 0.0, 2.0, 0.0});
    fill(table.SCA, 0.75);

    go();

    EXPECT_THAT(table.SnowOnStore, ElementsAre(1.0F, 1.0F, 2.0F, 2.0F));
}

TEST_F(SnowStoreInWinter, IsCarriedIntoTheMeltSeasonWithNoSnow) {
    run.NoSnow = true;
    set(table.Precip, 1, {4.0, 0.0, 0.0, 0.0});
    set(table.ZoneDD, 1, {0.0, 0.0, 2.0, 0.0});

    go();

    EXPECT_THAT(table.SnowOnStore, ElementsAre(4.0F, 4.0F, 4.0F, 3.0F));
    EXPECT_THAT(table.M1S, ElementsAre(0.0F, 0.0F, 1.0F, 0.0F));
    EXPECT_EQ(run.MeltSeasonStart, date_of(2001, 3, 31));
}

TEST_F(SnowStoreInWinter, IsEmptiedInEveryClimateStepEvenWithNoSnow) {
    for (int step = 1; step <= 6; ++step) {
        SetUp();
        run.NoSnow = true;
        run.ClimateStep = step;
        for (auto* column : {&table.Precip, &table.PrecipCC}) set(*column, 1, {4.0, 0.0, 0.0, 0.0});
        fill(table.ZoneDDCC, 0.0);
        for (auto* column : {&table.Tcrit, &table.TcritCC}) fill(*column, 1.0);

        go();

        EXPECT_THAT(table.SnowOnStore, ElementsAre(4.0F, 4.0F, 0.0F, 0.0F)) << step;
    }
}

TEST_F(SnowStoreInWinter, IsEmptiedUnderFullCoverAfterItsValueWasStored) {
    begin(date_of(2001, 1, 10));
    set(table.Precip, 1, {4.0, 0.0, 0.0, 0.0});
    set(table.SCA, 1, {0.0, 1.0, 0.0, 0.0});
    fill(table.ZoneDD, 0.0);

    go();

    EXPECT_THAT(table.SnowOnStore, ElementsAre(4.0F, 4.0F, 0.0F, 0.0F));
    EXPECT_EQ(run.SnowStore, 0.0F);
}

TEST_F(SnowStoreInWinter, DoesNotMeltOnADayOfFullCover) {
    begin(date_of(2001, 1, 10));
    set(table.Precip, 1, {4.0, 0.0, 0.0, 0.0});
    set(table.SCA, 1, {0.0, 1.0, 0.0, 0.0});
    set(table.ZoneDD, 1, {0.0, 2.0, 2.0, 2.0});

    go();

    EXPECT_THAT(table.NewMelt, Each(0.0F));
    EXPECT_THAT(table.M1S, Each(0.0F));
}

TEST_F(SnowStoreInWinter, SurvivesFullCoverWithNoSnow) {
    begin(date_of(2001, 1, 10));
    run.NoSnow = true;
    set(table.Precip, 1, {4.0, 0.0, 0.0, 0.0});
    set(table.SCA, 1, {0.0, 1.0, 0.0, 0.0});

    go();

    EXPECT_THAT(table.SnowOnStore, Each(4.0F));
}

TEST_F(SnowStoreInWinter, IsEmptiedUnderFullCoverInAClimateStepEvenWithNoSnow) {
    begin(date_of(2001, 1, 10));
    run.NoSnow = true;
    run.ClimateStep = 1;
    set(table.Precip, 1, {4.0, 0.0, 0.0, 0.0});
    set(table.SCA, 1, {0.0, 1.0, 0.0, 0.0});

    go();

    EXPECT_THAT(table.SnowOnStore, ElementsAre(4.0F, 4.0F, 0.0F, 0.0F));
}

TEST_F(SnowStoreInWinter, CoverOf0Point999IsFullSinceItsSingleLiesAbove) {
    // The Single 0.999 is 0.99900001287; the next smaller one is 0.99899995327.
    const auto store_after = [&](float cover) {
        begin(date_of(2001, 1, 10), 3);
        set(table.Precip, 1, {4.0, 0.0, 0.0});
        table.SCA[1] = cover;
        go();
        return table.SnowOnStore[2];
    };

    EXPECT_EQ(store_after(0.99F), 4.0F);
    EXPECT_EQ(store_after(std::nextafter(0.999F, 0.0F)), 4.0F);
    EXPECT_EQ(store_after(0.999F), 0.0F);
    EXPECT_EQ(store_after(1.0F), 0.0F);
}

TEST_F(SnowStoreInWinter, NeverComesInARunThatStartsInTheMeltSeason) {
    begin(date_of(2001, 9, 29));
    run.MeltSeasonStart = 4711;
    set(table.Precip, 1, {4.0, 0.0, 4.0, 0.0});
    set(table.SCA, 1, {0.0, 1.0, 0.5, 1.0});

    go();

    // October 1st is the third day: its snow counts in full, and full cover does not empty the store.
    EXPECT_THAT(table.SnowOnStore, ElementsAre(4.0F, 4.0F, 8.0F, 8.0F));
    EXPECT_EQ(run.MeltSeasonStart, 4711);
}

TEST_F(SnowStoreInWinter, EndsForGoodSoTheNextAprilEmptiesNothing) {
    begin(date_of(2001, 3, 31), 367);  // to 2002-04-01
    table.Precip[at(1, 366)] = 4.0F;   // on 2002-03-31
    table.SCA[at(1, 366)] = 0.5F;

    go();

    EXPECT_EQ(table.SnowOnStore[at(1, 366)], 4.0F);
    EXPECT_EQ(table.SnowOnStore[at(1, 367)], 4.0F);
    EXPECT_EQ(run.MeltSeasonStart, date_of(2001, 3, 31));
}

TEST_F(SnowStoreInWinter, EndsAtTheFirstDayThatTheDataHaveInTheFirstMonth) {
    set(table.Precip, 1, {4.0, 0.0, 0.0, 0.0});
    table.Date[2] = date_of(2001, 4, 5);
    table.Date[3] = date_of(2001, 4, 6);
    run.RunEnd = date_of(2001, 4, 6);

    go();

    EXPECT_THAT(table.SnowOnStore, ElementsAre(4.0F, 4.0F, 0.0F, 0.0F));
    EXPECT_EQ(run.MeltSeasonStart, date_of(2001, 4, 4));
}

TEST_F(SnowStoreInWinter, ContinuesIfTheFirstMonthOfTheSeasonHasNoDays) {
    set(table.Precip, 1, {4.0, 0.0, 0.0, 0.0});
    set(table.SCA, 1, {0.0, 0.0, 1.0, 0.0});
    table.Date[2] = date_of(2001, 5, 1);
    table.Date[3] = date_of(2001, 5, 2);
    run.RunEnd = date_of(2001, 5, 2);

    go();

    EXPECT_THAT(table.SnowOnStore, ElementsAre(4.0F, 4.0F, 4.0F, 0.0F));
    EXPECT_EQ(run.MeltSeasonStart, 0);
}

TEST_F(SnowStoreInWinter, DependsOnTheMonthOfTheRunStartNotOfTheFirstRow) {
    // The run starts in September, but its data begin in October.
    begin(date_of(2001, 10, 1));
    run.RunStart = date_of(2001, 9, 30);
    fill(table.Precip, 4.0);
    fill(table.SCA, 0.5);

    go();

    EXPECT_EQ(table.SnowOnStore[0], 4.0F);
}

TEST_F(SnowStoreInWinter, ARunFromMarchWhoseDataBeginInAprilStillEndsAWinter) {
    begin(date_of(2001, 4, 1));
    run.RunStart = date_of(2001, 3, 31);

    go();

    EXPECT_EQ(run.MeltSeasonStart, date_of(2001, 3, 31));
}

TEST_F(SnowStoreInWinter, EachZoneHasItsOwn) {
    begin(date_of(2001, 3, 30), 4, 2);
    set(table.Precip, 1, {4.0, 0.0, 0.0, 0.0});
    set(table.Precip, 2, {2.0, 0.0, 0.0, 0.0});
    fill(table.SCA, 0.5);

    go();

    EXPECT_THAT(days(table.SnowOnStore, 1), ElementsAre(2.0F, 2.0F, 0.0F, 0.0F));
    EXPECT_THAT(days(table.SnowOnStore, 2), ElementsAre(1.0F, 1.0F, 0.0F, 0.0F));
}

TEST_F(SnowStoreInWinter, EndsInOctoberInTheSouth) {
    begin(date_of(2001, 9, 29));
    basin.latitude_text = "-33.5";
    set(table.Precip, 1, {4.0, 0.0, 0.0, 0.0});
    set(table.SCA, 1, {0.5, 0.0, 0.0, 0.0});

    go();

    EXPECT_THAT(table.SnowOnStore, ElementsAre(2.0F, 2.0F, 0.0F, 0.0F));
    EXPECT_EQ(run.MeltSeasonStart, date_of(2001, 9, 30));
}

/// Latitude, and month of the run's start.
class WinterByStartMonth : public EngineTest,
                           public ::testing::WithParamInterface<std::tuple<const char*, int>> {};

TEST_P(WinterByStartMonth, IsThereWhereTheRunStartsOutsideTheSeason) {
    const auto [latitude, month] = GetParam();
    start(1, date_of(2001, month, 5), 3);
    basin.latitude_text = latitude;
    fill(table.ZoneDD, 0.0);
    fill(table.Tcrit, 1.0);
    set(table.Precip, 1, {4.0, 0.0, 0.0});
    set(table.SCA, 1, {0.25, 1.0, 0.0});

    snow_melt();

    const bool north = std::string{latitude} != "-33.5";
    const bool summer = month >= 4 && month <= 9;
    if (north != summer) {
        EXPECT_THAT(table.SnowOnStore, ElementsAre(3.0F, 3.0F, 0.0F));
    } else {
        EXPECT_THAT(table.SnowOnStore, ElementsAre(4.0F, 4.0F, 4.0F));
    }
}

INSTANTIATE_TEST_SUITE_P(Hemispheres, WinterByStartMonth,
                         ::testing::Combine(::testing::Values("46.5", "", "-33.5"), ::testing::Range(1, 13)));

}  // namespace
}  // namespace nivora
