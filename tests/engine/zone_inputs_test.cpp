#include "engine/zone_inputs.h"

#include "tests/engine/engine_fixture.h"

#include <gmock/gmock.h>

#include <cmath>

namespace nivora {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

class ZoneInputs : public EngineTest {
protected:
    void SetUp() override { start(2, k_first_input, 2); }

    bool go() { return zone_inputs(); }
};

TEST_F(ZoneInputs, TheStationTemperatureIsCarriedToTheElevationOfEachZone) {
    set(table.TAvg, 1, {10.0, 4.0});
    fill(table.LR, 0.65);

    EXPECT_TRUE(go());

    // Zone 1 is at the station. Zone 2: (1000 - 1500) / 100 = -5; 10 - 5 x 0.65 = 6.75; 4 - 3.25 = 0.75.
    EXPECT_THAT(days(table.ZoneDD, 1), ElementsAre(10.0F, 4.0F));
    EXPECT_THAT(days(table.ZoneDD, 2), ElementsAre(6.75F, 0.75F));
    EXPECT_THAT(days(table.TAvg, 2), ElementsAre(10.0F, 4.0F));
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(ZoneInputs, AZoneBelowTheStationIsWarmerByTheLapseRate) {
    basin.zones[0].elevation = 0.0;
    fill(table.TAvg, -5.0);
    fill(table.LR, 0.65);

    EXPECT_TRUE(go());

    // (1000 - 0) / 100 = 10; -5 + 10 x 0.65 = 1.5.
    EXPECT_THAT(days(table.ZoneDD, 1), Each(1.5F));
}

TEST_F(ZoneInputs, AMissingTemperatureOfAnotherZoneIsReplacedByTheStations) {
    set(table.TAvg, 1, {10.0, 4.0});
    fill_zone(table.TAvg, 2, k_missing);

    EXPECT_TRUE(go());

    EXPECT_THAT(days(table.TAvg, 2), ElementsAre(10.0F, 4.0F));
    EXPECT_THAT(days(table.ZoneDD, 2), ElementsAre(10.0F, 4.0F));
}

TEST_F(ZoneInputs, ByZoneKeepsEachZonesTemperatureAndUsesNoLapseRate) {
    simulation().temperature = Distribution::ByZone;
    set(table.TAvg, 1, {10.0, 4.0});
    set(table.TAvg, 2, {3.0, 2.0});
    fill(table.LR, 0.65);

    EXPECT_TRUE(go());

    EXPECT_THAT(days(table.TAvg, 2), ElementsAre(3.0F, 2.0F));
    EXPECT_THAT(days(table.ZoneDD, 1), ElementsAre(10.0F, 4.0F));
    EXPECT_THAT(days(table.ZoneDD, 2), ElementsAre(3.0F, 2.0F));
}

TEST_F(ZoneInputs, ByZoneTemperatureMissingInAZoneLeavesItsDegreeDaysMissing) {
    simulation().temperature = Distribution::ByZone;
    fill(table.TAvg, 5.0);
    table.TAvg[at(2, 1)] = k_missing;

    EXPECT_TRUE(go());

    EXPECT_TRUE(is_missing(table.ZoneDD[at(2, 1)]));
    EXPECT_EQ(table.ZoneDD[at(2, 2)], 5.0F);
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(ZoneInputs, MaximumAndMinimumGiveTheMeanOfZone1) {
    simulation().temperature_values = std::int16_t{1};
    set(table.TMax, 1, {12.5, 0.1F});
    set(table.Tmin, 1, {3.0, 0.2F});
    set(table.TAvg, 1, {99.0, 99.0});

    EXPECT_TRUE(go());

    // (12.5 + 3) / 2 = 7.75. For the Singles (0.1 + 0.2) / 2 is 0.150000002..., whose nearest Single is 0.15.
    EXPECT_THAT(days(table.TAvg, 1), ElementsAre(7.75F, 0.15F));
    EXPECT_THAT(days(table.TMax, 1), ElementsAre(12.5F, 0.1F));
}

TEST_F(ZoneInputs, MaximumAndMinimumSpreadZone1ToEveryZoneEvenWithTemperaturesByZone) {
    simulation().temperature_values = std::int16_t{1};
    simulation().temperature = Distribution::ByZone;
    fill_zone(table.TMax, 1, 12.5);
    fill_zone(table.Tmin, 1, 3.0);
    fill_zone(table.TMax, 2, 40.0);
    fill_zone(table.Tmin, 2, 20.0);
    fill_zone(table.TAvg, 2, 30.0);
    fill(table.LR, 0.65);

    EXPECT_TRUE(go());

    // By zone there is no lapse: zone 2 has zone 1's mean, 7.75, too.
    EXPECT_THAT(days(table.TAvg, 2), Each(7.75F));
    EXPECT_THAT(days(table.ZoneDD, 2), Each(7.75F));
}

TEST_F(ZoneInputs, AnotherTemperatureKindThan1MeansAverages) {
    simulation().temperature_values = std::int16_t{2};
    fill(table.TAvg, 4.0);
    fill(table.TMax, 100.0);

    EXPECT_TRUE(go());

    EXPECT_THAT(table.TAvg, Each(4.0F));
}

TEST_F(ZoneInputs, ALapseRateByZoneActsOnItsOwnZone) {
    simulation().lapse_rate = Distribution::ByZone;
    fill(table.TAvg, 10.0);
    fill_zone(table.LR, 1, 0.5);
    fill_zone(table.LR, 2, 1.0);

    EXPECT_TRUE(go());

    EXPECT_THAT(days(table.LR, 2), Each(1.0F));
    EXPECT_THAT(days(table.ZoneDD, 2), Each(5.0F));  // 10 - 5 x 1
}

TEST_F(ZoneInputs, ABasinwideLapseRateOverwritesTheOtherZones) {
    fill(table.TAvg, 10.0);
    set(table.LR, 1, {0.5, 0.25});
    fill_zone(table.LR, 2, 1.0);

    EXPECT_TRUE(go());

    EXPECT_THAT(days(table.LR, 2), ElementsAre(0.5F, 0.25F));
    EXPECT_THAT(days(table.ZoneDD, 2), ElementsAre(7.5F, 8.75F));  // 10 - 5 x 0.5, 10 - 5 x 0.25
}

TEST_F(ZoneInputs, ABasinwideLapseRateIsSpreadEvenWhereTemperaturesAreByZone) {
    simulation().temperature = Distribution::ByZone;
    fill_zone(table.LR, 1, 0.5);
    fill_zone(table.LR, 2, k_missing);

    EXPECT_TRUE(go());

    EXPECT_THAT(days(table.LR, 2), Each(0.5F));
}

TEST_F(ZoneInputs, RecessionCoefficientsAreNeverSpreadAlthoughTheOptionSaysBasinwide) {
    fill_zone(table.Xcoeff, 1, 0.9);
    fill_zone(table.YCoeff, 1, 0.02);
    fill_zone(table.Xcoeff, 2, 0.8);
    fill_zone(table.YCoeff, 2, 0.01);

    EXPECT_TRUE(go());

    EXPECT_THAT(days(table.Xcoeff, 2), Each(0.8));
    EXPECT_THAT(days(table.YCoeff, 2), Each(0.01));
}

TEST_F(ZoneInputs, LagFactorSwitchAndCoverStayEachZonesOwn) {
    fill_zone(table.LagTime, 2, 12.0);
    fill_zone(table.AN, 2, 0.25);
    fill_zone(table.RCA, 2, 0.0);
    fill_zone(table.SCA, 2, 0.75);

    EXPECT_TRUE(go());

    EXPECT_THAT(days(table.LagTime, 2), Each(12.0F));
    EXPECT_THAT(days(table.AN, 2), Each(0.25F));
    EXPECT_THAT(days(table.RCA, 2), Each(0.0F));
    EXPECT_THAT(days(table.SCA, 2), Each(0.75F));
}

TEST_F(ZoneInputs, AOneZoneBasinKeepsAllItsValues) {
    start(1, k_first_input, 2);
    set(table.TAvg, 1, {10.0, -1.0});
    set(table.Precip, 1, {0.5, 0.25});
    fill(table.LR, 0.65);

    EXPECT_TRUE(go());

    EXPECT_THAT(table.ZoneDD, ElementsAre(10.0F, 0.0F));
    EXPECT_THAT(table.Precip, ElementsAre(0.5F, 0.25F));
    EXPECT_THAT(table.LR, Each(0.65F));
}

TEST_F(ZoneInputs, EveryCombinationOfOptionsSpreadsWhatItSays) {
    for (int options = 0; options < 128; ++options) {
        SCOPED_TRACE("options " + std::to_string(options));
        const auto by_zone = [&](int bit) { return (options >> bit & 1) == 1; };
        const auto choice = [&](int bit) {
            return by_zone(bit) ? Distribution::ByZone : Distribution::Basinwide;
        };
        start(2, k_first_input, 2);
        const bool max_min = by_zone(0);
        simulation().temperature_values = std::int16_t{max_min};
        simulation().temperature = choice(1);
        simulation().precipitation = choice(2);
        simulation().lapse_rate = choice(3);
        simulation().runoff_coefficients = choice(4);
        simulation().critical_temperature = choice(5);
        simulation().recession = choice(6);
        // The values of zone 1 and zone 2 for each quantity; the means of maximum and minimum are 22 and 28.
        const auto put = [&](auto& column, double first, double second) {
            fill_zone(column, 1, first);
            fill_zone(column, 2, second);
        };
        put(table.TAvg, 20.0, 16.0), put(table.TMax, 24.0, 30.0), put(table.Tmin, 20.0, 26.0);
        put(table.LR, 0.5, 1.0), put(table.Precip, 0.75, 0.5), put(table.Tcrit, 1.5, 2.5);
        put(table.CS, 0.5, 0.25), put(table.CR, 0.75, 0.125);
        put(table.Xcoeff, 0.9, 0.8), put(table.YCoeff, 0.02, 0.01);

        ASSERT_TRUE(go());

        const float mean1 = max_min ? 22.0F : 20.0F;
        const float mean2 = max_min ? 22.0F : by_zone(1) ? 16.0F : 20.0F;
        const float lapse2 = by_zone(3) ? 1.0F : 0.5F;
        EXPECT_THAT(days(table.TAvg, 1), Each(mean1));
        EXPECT_THAT(days(table.TAvg, 2), Each(mean2));
        EXPECT_THAT(days(table.LR, 2), Each(lapse2));
        EXPECT_THAT(days(table.ZoneDD, 1), Each(mean1));
        EXPECT_THAT(days(table.ZoneDD, 2), Each(by_zone(1) ? mean2 : mean2 - 5.0F * lapse2));
        EXPECT_THAT(days(table.Precip, 2), Each(by_zone(2) ? 0.5F : 0.75F));
        EXPECT_THAT(days(table.CS, 2), Each(by_zone(4) ? 0.25F : 0.5F));
        EXPECT_THAT(days(table.CR, 2), Each(by_zone(4) ? 0.125F : 0.75F));
        EXPECT_THAT(days(table.Tcrit, 2), Each(by_zone(5) ? 2.5F : 1.5F));
        EXPECT_THAT(days(table.Xcoeff, 2), Each(0.8));
        EXPECT_THAT(days(table.YCoeff, 2), Each(0.01));
        EXPECT_THAT(days(table.Precip, 1), Each(0.75F));
        EXPECT_THAT(days(table.LR, 1), Each(0.5F));
    }
}

TEST_F(ZoneInputs, StoredOrderOfTheRowsDoesNotMatter) {
    set(table.TAvg, 1, {10.0, 4.0});
    // Zone 2 is stored before zone 1, and each last day before the first.
    SimResults::visit(table, [](auto& column) { std::reverse(column.begin(), column.end()); });

    EXPECT_TRUE(go());

    EXPECT_THAT(table.Zone, ElementsAre(2, 2, 1, 1));
    EXPECT_THAT(table.TAvg, ElementsAre(4.0F, 10.0F, 4.0F, 10.0F));
}

TEST_F(ZoneInputs, ADayWithoutZone1GetsTheLastValuesOfZone1) {
    start(2, k_first_input, 3);
    set(table.TAvg, 1, {10.0, 20.0, 30.0});
    set(table.Precip, 1, {1.0, 2.0, 3.0});
    set(table.Tcrit, 1, {0.5, 0.6, 0.7});
    remove_row(at(1, 2));

    EXPECT_TRUE(go());

    // The rows are now days 1 and 3 of zone 1, then days 1, 2 and 3 of zone 2.
    EXPECT_THAT(table.TAvg, ElementsAre(10.0F, 30.0F, 10.0F, 10.0F, 30.0F));
    EXPECT_THAT(table.Precip, ElementsAre(1.0F, 3.0F, 1.0F, 1.0F, 3.0F));
    EXPECT_THAT(table.Tcrit, ElementsAre(0.5F, 0.7F, 0.5F, 0.5F, 0.7F));
}

TEST_F(ZoneInputs, DaysOutsideTheWorkingPeriodStayAsTheyAre) {
    start(2, k_first_input, 4);
    fill(table.TAvg, 5.0);
    fill_zone(table.Precip, 1, 1.0);
    run.RunStart = k_first_input + 1;
    run.RunEnd = k_first_input + 2;

    EXPECT_TRUE(go());

    EXPECT_TRUE(is_missing(table.ZoneDD[at(1, 1)]));
    EXPECT_EQ(table.ZoneDD[at(1, 2)], 5.0F);
    EXPECT_TRUE(is_missing(table.ZoneDD[at(1, 4)]));
    EXPECT_THAT(days(table.Precip, 2), ElementsAre(0.0F, 1.0F, 1.0F, 0.0F));
}

class ZoneInputsByStep : public ZoneInputs, public ::testing::WithParamInterface<int> {};

TEST_P(ZoneInputsByStep, Step2AndStepsAbove3WorkOnTheChangedClimateAlone) {
    run.ClimateStep = GetParam();
    const bool changed = GetParam() == 2 || GetParam() > 3;
    simulation().temperature_values = std::int16_t{1};
    const auto put = [&](auto& column, double first, double second) {
        fill_zone(column, 1, first);
        fill_zone(column, 2, second);
    };
    for (auto* maximum : {&table.TMax, &table.TMaxCC}) put(*maximum, 12.0, 50.0);
    for (auto* minimum : {&table.Tmin, &table.TminCC}) put(*minimum, 8.0, 40.0);
    for (auto* average : {&table.TAvg, &table.TAvgCC}) put(*average, 1.0, 2.0);
    for (auto* precipitation : {&table.Precip, &table.PrecipCC}) put(*precipitation, 3.0, 4.0);
    for (auto* critical : {&table.Tcrit, &table.TcritCC}) put(*critical, 0.5, 0.75);
    for (auto* lapse : {&table.LR, &table.LRCC}) put(*lapse, 1.0, 0.5);
    for (auto* snow : {&table.CS, &table.CSCC}) put(*snow, 0.5, 0.25);
    for (auto* rain : {&table.CR, &table.CRCC}) put(*rain, 0.75, 0.125);

    EXPECT_TRUE(go());

    const auto worked_on = [&](bool this_one, const std::vector<float>& column, float first, float second,
                               float spread) {
        EXPECT_THAT(days(column, 1), Each(first));
        EXPECT_THAT(days(column, 2), Each(this_one ? spread : second));
    };
    for (const bool cc : {false, true}) {
        SCOPED_TRACE(cc ? "changed columns" : "present columns");
        const bool mine = cc == changed;
        worked_on(mine, cc ? table.TAvgCC : table.TAvg, mine ? 10.0F : 1.0F, 2.0F, 10.0F);
        worked_on(mine, cc ? table.PrecipCC : table.Precip, 3.0F, 4.0F, 3.0F);
        worked_on(mine, cc ? table.TcritCC : table.Tcrit, 0.5F, 0.75F, 0.5F);
        worked_on(mine, cc ? table.LRCC : table.LR, 1.0F, 0.5F, 1.0F);
        worked_on(mine, cc ? table.CSCC : table.CS, 0.5F, 0.25F, 0.5F);
        worked_on(mine, cc ? table.CRCC : table.CR, 0.75F, 0.125F, 0.75F);
        const auto& degree_days = cc ? table.ZoneDDCC : table.ZoneDD;
        if (mine) {
            EXPECT_THAT(days(degree_days, 1), Each(10.0F));
            EXPECT_THAT(days(degree_days, 2), Each(5.0F));  // 10 - 5 x 1
        } else {
            EXPECT_THAT(degree_days, Each(::testing::IsNan()));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(AllSteps, ZoneInputsByStep, ::testing::Range(0, 7));

}  // namespace
}  // namespace nivora
