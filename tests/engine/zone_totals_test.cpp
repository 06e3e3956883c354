#include "engine/zone_totals.h"

#include "tests/engine/engine_fixture.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

/// Two zones over the last two days of March and the first two of April.
class ZoneTotalsOfRun : public EngineTest {
protected:
    void SetUp() override {
        start(2, date_of(2001, 3, 30), 4);
        run.MeltSeasonStart = date_of(2001, 3, 31);
        run.RunKind = k_year_round_simulation;
        set(table.Precip, 1, {1, 2, 4, 8});
        set(table.Cpr, 1, {0.5, 1, 2, 4});
        set(table.ZonalMelt, 1, {16, 32, 64, 128});
        set(table.M1S, 1, {0.25, 0.5, 0.75, 1});
        set(table.Precip, 2, {10, 20, 40, 80});
        fill_zone(table.Cpr, 2, 0.0);
        fill_zone(table.ZonalMelt, 2, 1.0);
        fill_zone(table.M1S, 2, 2.0);
    }

    void go() { Prepare_Zone_Totals(table, basin.ZoneCount, run); }
};

TEST_F(ZoneTotalsOfRun, CoverTheWholeRunInYearRoundRuns) {
    for (const int kind : {k_year_round_simulation, k_year_round_forecast}) {
        run.RunKind = kind;
        run.zone_totals = {};

        go();

        const ZoneTotals& first = run.zone_totals[0];
        EXPECT_EQ(first.first_day, date_of(2001, 3, 30));
        EXPECT_EQ(first.last_day, date_of(2001, 4, 2));
        EXPECT_EQ(first.precipitation, 15.0F);
        EXPECT_EQ(first.rain, 7.5F);
        EXPECT_EQ(first.zonal_melt, 240.0F);
        EXPECT_EQ(first.new_snow_melt, 2.5F);
        const ZoneTotals& second = run.zone_totals[1];
        EXPECT_EQ(second.precipitation, 150.0F);
        EXPECT_EQ(second.rain, 0.0F);
        EXPECT_EQ(second.zonal_melt, 4.0F);
        EXPECT_EQ(second.new_snow_melt, 8.0F);
    }
}

TEST_F(ZoneTotalsOfRun, EndWithTheWinterInMeltSeasonRuns) {
    for (const int kind : {k_melt_season_simulation, k_melt_season_forecast}) {
        run.RunKind = kind;
        run.zone_totals = {};

        go();

        const ZoneTotals& first = run.zone_totals[0];
        EXPECT_EQ(first.first_day, date_of(2001, 3, 30));
        EXPECT_EQ(first.last_day, date_of(2001, 3, 31));
        EXPECT_EQ(first.precipitation, 3.0F);
        EXPECT_EQ(first.rain, 1.5F);
        EXPECT_EQ(first.zonal_melt, 48.0F);
        EXPECT_EQ(first.new_snow_melt, 0.75F);
        EXPECT_EQ(run.zone_totals[1].precipitation, 30.0F);
    }
}

TEST_F(ZoneTotalsOfRun, OfAMeltSeasonRunWithoutAWinterAreMissing) {
    run.RunKind = k_melt_season_simulation;
    run.MeltSeasonStart = 0;
    run.zone_totals[0].precipitation = 5.0F;
    run.zone_totals[0].first_day = 1;

    go();

    EXPECT_FALSE(run.zone_totals[0].first_day.has_value());
    EXPECT_FALSE(run.zone_totals[0].last_day.has_value());
    EXPECT_TRUE(is_missing(run.zone_totals[0].precipitation));
    EXPECT_TRUE(is_missing(run.zone_totals[0].zonal_melt));
}

TEST_F(ZoneTotalsOfRun, SkipMissingValues) {
    set(table.Precip, 1, {1, k_missing, 4, k_missing});
    fill_zone(table.Cpr, 1, k_missing);

    go();

    EXPECT_EQ(run.zone_totals[0].precipitation, 5.0F);
    EXPECT_TRUE(is_missing(run.zone_totals[0].rain));
}

TEST_F(ZoneTotalsOfRun, TakeThePeriodOfTheRunAndNoMore) {
    run.RunStart += 1;
    run.RunEnd -= 1;

    go();

    EXPECT_EQ(run.zone_totals[0].first_day, date_of(2001, 3, 31));
    EXPECT_EQ(run.zone_totals[0].last_day, date_of(2001, 4, 1));
    EXPECT_EQ(run.zone_totals[0].precipitation, 6.0F);
}

TEST_F(ZoneTotalsOfRun, AreSummedInDoubles) {
    set(table.Precip, 1, {16777216, 1, 1, 0});  // Singles would lose both 1s

    go();

    EXPECT_EQ(run.zone_totals[0].precipitation, 16777218.0F);
}

TEST_F(ZoneTotalsOfRun, HaveRoomForSixteenZones) {
    start(16, date_of(2001, 6, 1), 1);
    for (int z = 1; z <= 16; ++z) table.Precip[at(z, 1)] = static_cast<float>(z);

    go();

    for (std::size_t z = 1; z <= 16; ++z) {
        EXPECT_EQ(run.zone_totals[z - 1].precipitation, static_cast<float>(z));
    }
}

TEST_F(ZoneTotalsOfRun, OfAZoneWithoutRowsAreMissing) {
    fill(table.Zone, 1);

    go();

    EXPECT_EQ(run.zone_totals[0].precipitation, 165.0F);
    EXPECT_FALSE(run.zone_totals[1].first_day.has_value());
    EXPECT_TRUE(is_missing(run.zone_totals[1].precipitation));
}

}  // namespace
}  // namespace nivora
