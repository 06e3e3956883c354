#include "engine/zone_inputs.h"
#include "tests/engine/engine_fixture.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace nivora {
namespace {

using ::testing::Each;

constexpr UnitSystem k_si{100.0F, 0.0F};
constexpr UnitSystem k_us{1000.0F, 32.0F};

TEST(UnitSystems, TheValue1IsEnglishAndAnythingElseMetric) {
    for (const std::optional<Units> value : {std::optional{Units::Metric}, std::optional{Units{2}},
                                             std::optional{Units::NotFixed}, std::optional<Units>{}}) {
        EXPECT_EQ(unit_system(value).lapse_unit, 100.0F);
        EXPECT_EQ(unit_system(value).degree_base, 0.0F);
    }
    EXPECT_EQ(unit_system(Units::English).lapse_unit, 1000.0F);
    EXPECT_EQ(unit_system(Units::English).degree_base, 32.0F);
}

TEST(ZoneDegreeDays, APositiveLapseRateCoolsAZoneAboveTheStation) {
    EXPECT_EQ(zone_degree_days(k_si, 10.0F, -500.0F, 0.5F), 7.5F);  // 10 - 5 x 0.5
    EXPECT_EQ(zone_degree_days(k_si, 10.0F, 500.0F, 0.5F), 12.5F);  // 10 + 5 x 0.5
}

TEST(ZoneDegreeDays, EnglishUnitsCountAbove32AndLapsePer1000Feet) {
    EXPECT_EQ(zone_degree_days(k_us, 50.0F, -500.0F, 3.0F), 16.5F);  // 50 - 0.5 x 3 - 32
    EXPECT_EQ(zone_degree_days(k_us, 32.0F, 0.0F, 3.0F), 0.0F);
}

TEST(ZoneDegreeDays, TheBaseItselfGivesNoDegreeDays) {
    EXPECT_EQ(zone_degree_days(k_si, 0.0F, 0.0F, 0.65F), 0.0F);
    EXPECT_EQ(zone_degree_days(k_si, 2.5F, -500.0F, 0.5F), 0.0F);  // 2.5 - 5 x 0.5
}

TEST(ZoneDegreeDays, BelowTheBaseThereAreNoDegreeDays) {
    EXPECT_EQ(zone_degree_days(k_si, -0.5F, 0.0F, 0.0F), 0.0F);
    EXPECT_EQ(zone_degree_days(k_us, 31.0F, 0.0F, 0.0F), 0.0F);
}

TEST(ZoneDegreeDays, AZeroIsNeverNegative) {
    // -0.000001 rounds to zero at 5 decimals.
    for (const float temperature : {-0.000001F, -0.0F, -3.0F}) {
        EXPECT_FALSE(std::signbit(zone_degree_days(k_si, temperature, 0.0F, 0.0F).value()));
    }
}

TEST(ZoneDegreeDays, RoundToFiveDecimals) {
    // -5 + 10 x 0.65 is 1.4999998 in Singles and rounds to 1.5.
    EXPECT_EQ(zone_degree_days(k_si, -5.0F, 1000.0F, 0.65F), 1.5F);
    EXPECT_EQ(zone_degree_days(k_si, 1.234567F, 0.0F, 0.0F), 1.23457F);
    EXPECT_EQ(zone_degree_days(k_si, 0.000004F, 0.0F, 0.0F), 0.0F);
    EXPECT_EQ(zone_degree_days(k_si, 0.000006F, 0.0F, 0.0F), 0.00001F);
}

TEST(ZoneDegreeDays, ATieGoesToTheEvenDecimal) {
    EXPECT_EQ(zone_degree_days(k_si, 0.015625F, 0.0F, 0.0F), 0.01562F);  // 1/64 x 10^5 = 1562.5
    EXPECT_EQ(zone_degree_days(k_si, 0.046875F, 0.0F, 0.0F), 0.04688F);  // 3/64 x 10^5 = 4687.5
}

TEST(ZoneDegreeDays, TheValueIsASingleBeforeItIsRounded) {
    // 3/64 - 1 x 10^-10 first becomes the Single 3/64: a tie, which rounds up to the even decimal.
    EXPECT_EQ(zone_degree_days(k_si, 0.046875F, -100.0F, 1e-10F), 0.04688F);
}

TEST(ZoneDegreeDays, TheQuotientOfElevationAndLapseUnitIsASingle) {
    // 0.1 / 100 as a Single is 0.00100000004749745; times 10^6 that is 1000.0000475, whose nearest Single is
    // 1000.00006. The unrounded quotient of the Single 0.1 would give 1000.0000149 and thus 1000.
    EXPECT_EQ(zone_degree_days(k_si, 0.0F, 0.1F, 1e6F), 1000.00006F);
    EXPECT_NE(1000.00006F, 1000.0F);
}

TEST(ZoneDegreeDays, AMissingInputGivesNone) {
    EXPECT_EQ(zone_degree_days(k_si, k_missing, 0.0F, 0.0F), std::nullopt);
    EXPECT_EQ(zone_degree_days(k_si, 1.0F, 0.0F, k_missing), std::nullopt);
}

TEST(ZoneDegreeDays, AResultThatExceedsASingleIsAnOverflow) {
    try {
        (void)zone_degree_days(k_si, 3e38F, 100.0F, 3e38F);  // 6 x 10^38
        FAIL() << "no fault";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number(), k_fault_overflow);
        EXPECT_STREQ(fault.what(), "Overflow");
    }
}

class DegreeDaysOfZones : public EngineTest {
protected:
    void SetUp() override { start(2, date_of(2000, 10, 12), 1); }

    bool go() { return zone_inputs(); }
};

TEST_F(DegreeDaysOfZones, EnglishUnitsComeFromTheUnitsOfTheSimulation) {
    simulation().units = Units::English;
    fill(table.TAvg, 50.0);
    fill(table.LR, 3.0);

    EXPECT_TRUE(go());

    EXPECT_EQ(table.ZoneDD[at(1, 1)], 18.0F);  // 50 - 32
    EXPECT_EQ(table.ZoneDD[at(2, 1)], 16.5F);  // 50 - 0.5 x 3 - 32
    EXPECT_EQ(run.LapseUnit, 1000.0F);
}

TEST_F(DegreeDaysOfZones, MetricLeavesTheLapseUnitOf100) {
    run.LapseUnit = 1000.0F;

    EXPECT_TRUE(go());

    EXPECT_EQ(run.LapseUnit, 100.0F);
}

TEST_F(DegreeDaysOfZones, ByZoneCountsAbove32InEnglishUnitsToo) {
    simulation().units = Units::English;
    simulation().temperature = Distribution::ByZone;
    table.TAvg[at(1, 1)] = 40.0F;
    table.TAvg[at(2, 1)] = 30.0F;

    EXPECT_TRUE(go());

    EXPECT_EQ(table.ZoneDD[at(1, 1)], 8.0F);
    EXPECT_EQ(table.ZoneDD[at(2, 1)], 0.0F);
}

TEST_F(DegreeDaysOfZones, ByZoneIsNotRoundedToFiveDecimals) {
    simulation().temperature = Distribution::ByZone;
    fill(table.TAvg, 0.015625);

    EXPECT_TRUE(go());

    EXPECT_THAT(table.ZoneDD, Each(0.015625F));
}

TEST_F(DegreeDaysOfZones, BasinwideIsRoundedAlsoAtTheStationsElevation) {
    fill(table.TAvg, 0.015625);

    EXPECT_TRUE(go());

    EXPECT_THAT(table.ZoneDD, Each(0.01562F));
}

TEST_F(DegreeDaysOfZones, AZoneAtTheStationDiffersByTheRoundingOfTheReferenceElevation) {
    // The reference is a Single, 1000.0999755859375, the zone's elevation a Double: the difference is
    // -0.0000244140625. Times 10^5 / 100 it is -0.0244140625; 10 - 0.0244140625 = 9.9755859375.
    basin.reference_elevation_text = "1000.1";
    basin.zones[0].elevation = 1000.1;
    fill(table.TAvg, 10.0);
    fill(table.LR, 1e5);

    EXPECT_TRUE(go());

    EXPECT_EQ(table.ZoneDD[at(1, 1)], 9.97559F);
}

}  // namespace
}  // namespace nivora
