#include "engine/zone_inputs.h"
#include "tests/engine/engine_fixture.h"

#include <gmock/gmock.h>

#include <array>
#include <functional>

namespace nivora {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsNan;

constexpr const char* k_variables_title = "Missing data in basin variable table.";
constexpr const char* k_variables_text = "Null value(s) in basin variable table on ";
constexpr const char* k_parameters_title = "Missing data in simulation parameter Table.";
constexpr const char* k_parameters_text = "Null value(s) in simulation parameter table on ";
constexpr const char* k_other_title = "Error during temperature lapse processing phase";

class ZoneInputFaults : public EngineTest {
protected:
    void SetUp() override { start(2, k_first_input, 2); }

    bool go() { return zone_inputs(); }

    void expect_one_stop(const std::string& text, const std::string& title) {
        ASSERT_EQ(dialogs.messages().size(), 1U);
        expect_stop(dialogs.messages()[0], text, title);
    }
    static std::string missing(const char* text, const char* place, const std::string& field) {
        return std::string{text} + place + "\nThe missing value is that of " + field + ".";
    }
};

TEST_F(ZoneInputFaults, AMissingStationTemperatureIsMissingInTheVariables) {
    table.TAvg[at(1, 2)] = k_missing;

    EXPECT_FALSE(go());

    expect_one_stop(missing(k_variables_text, "10/13/2000, in Zone 1", "Tavg"), k_variables_title);
}

TEST_F(ZoneInputFaults, TheStationIsNeededEvenWhereTemperaturesAreByZone) {
    simulation().temperature = Distribution::ByZone;
    table.TAvg[at(1, 1)] = k_missing;

    EXPECT_FALSE(go());

    expect_one_stop(missing(k_variables_text, "10/12/2000, in Zone 1", "Tavg"), k_variables_title);
}

TEST_F(ZoneInputFaults, AMissingMaximumOrMinimumOfZone1IsMissingInTheVariables) {
    for (auto* column : {&table.TMax, &table.Tmin}) {
        SetUp();
        simulation().temperature_values = std::int16_t{1};
        (*column)[at(1, 1)] = k_missing;
        const std::size_t before = dialogs.messages().size();

        EXPECT_FALSE(go());

        ASSERT_EQ(dialogs.messages().size(), before + 1);
        const std::string field = column == &table.TMax ? "Tmax" : "Tmin";
        expect_stop(dialogs.messages().back(), missing(k_variables_text, "10/12/2000, in Zone 1", field),
                    k_variables_title);
    }
}

TEST_F(ZoneInputFaults, MaximaOfOtherZonesMayBeMissing) {
    simulation().temperature_values = std::int16_t{1};
    fill_zone(table.TMax, 2, k_missing);
    fill_zone(table.Tmin, 2, k_missing);

    EXPECT_TRUE(go());
}

TEST_F(ZoneInputFaults, TheDateHasTwoDigitsForMonthAndDay) {
    start(1, date_of(2001, 3, 5), 1);
    fill(table.TAvg, k_missing);

    EXPECT_FALSE(go());

    expect_one_stop(missing(k_variables_text, "03/05/2001, in Zone 1", "Tavg"), k_variables_title);
}

TEST_F(ZoneInputFaults, EachParameterOfZone1IsNeededWhateverTheOptions) {
    for (const bool by_zone : {false, true}) {
        for (int which = 0; which < 6; ++which) {
            SCOPED_TRACE(which);
            SetUp();
            if (by_zone) {
                simulation().temperature = simulation().lapse_rate = Distribution::ByZone;
                simulation().precipitation = simulation().critical_temperature = Distribution::ByZone;
                simulation().runoff_coefficients = simulation().recession = Distribution::ByZone;
            }
            if (which == 0) table.LR[at(1, 2)] = k_missing;
            if (which == 1) table.Tcrit[at(1, 2)] = k_missing;
            if (which == 2) table.CS[at(1, 2)] = k_missing;
            if (which == 3) table.CR[at(1, 2)] = k_missing;
            if (which == 4) table.Xcoeff[at(1, 2)] = static_cast<double>(k_missing);
            if (which == 5) table.YCoeff[at(1, 2)] = static_cast<double>(k_missing);
            const std::size_t before = dialogs.messages().size();

            EXPECT_FALSE(go());

            ASSERT_EQ(dialogs.messages().size(), before + 1);
            const std::array<const char*, 6> fields{"LapseRate", "Tcrit", "CS", "Cr", "Xcoeff", "Ycoeff"};
            expect_stop(dialogs.messages().back(),
                        missing(k_parameters_text, "10/13/2000, in Zone 1",
                                fields.at(static_cast<std::size_t>(which))),
                        k_parameters_title);
        }
    }
}

TEST_F(ZoneInputFaults, AMissingPrecipitationIsCalledAMissingParameter) {
    table.Precip[at(1, 1)] = k_missing;

    EXPECT_FALSE(go());

    expect_one_stop(missing(k_parameters_text, "10/12/2000, in Zone 1", "Precip"), k_parameters_title);
}

TEST_F(ZoneInputFaults, AMissingLapseRateOfAnotherZoneNamesThatZone) {
    simulation().lapse_rate = Distribution::ByZone;
    table.LR[at(2, 1)] = k_missing;

    EXPECT_FALSE(go());

    expect_one_stop(missing(k_parameters_text, "10/12/2000, in Zone 2", "LapseRate"), k_parameters_title);
}

TEST_F(ZoneInputFaults, ALapseRateIsNotMissedWhereTemperaturesAreByZone) {
    simulation().temperature = simulation().lapse_rate = Distribution::ByZone;
    table.LR[at(2, 1)] = k_missing;

    EXPECT_TRUE(go());

    EXPECT_TRUE(is_missing(table.LR[at(2, 1)]));
}

TEST_F(ZoneInputFaults, MissingValuesOfOtherZonesStayMissingByZone) {
    simulation().precipitation = simulation().critical_temperature = Distribution::ByZone;
    simulation().runoff_coefficients = Distribution::ByZone;
    for (auto* column : {&table.Precip, &table.Tcrit, &table.CS, &table.CR}) {
        fill_zone(*column, 2, k_missing);
    }
    for (auto* column : {&table.Xcoeff, &table.YCoeff}) fill_zone(*column, 2, k_missing);

    EXPECT_TRUE(go());

    for (auto* column : {&table.Precip, &table.Tcrit, &table.CS, &table.CR}) {
        EXPECT_THAT(days(*column, 2), Each(IsNan()));
    }
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(ZoneInputFaults, AFaultyRowKeepsItsOldValuesAndTheRowsBeforeItTheNew) {
    simulation().temperature_values = std::int16_t{1};
    fill(table.TMax, 12.0);
    fill(table.Tmin, 8.0);
    fill(table.TAvg, 99.0);
    fill(table.LR, 1.0);
    table.Tcrit[at(1, 2)] = k_missing;

    EXPECT_FALSE(go());

    // Day 1 is complete: mean 10, degree days 10 and 10 - 5. Day 2
    // fails in zone 1 after its mean was computed.
    EXPECT_THAT(days(table.TAvg, 1), ElementsAre(10.0F, 99.0F));
    EXPECT_THAT(days(table.TAvg, 2), ElementsAre(10.0F, 99.0F));
    EXPECT_THAT(days(table.ZoneDD, 1), ElementsAre(10.0F, IsNan()));
    EXPECT_THAT(days(table.ZoneDD, 2), ElementsAre(5.0F, IsNan()));
    expect_one_stop(missing(k_parameters_text, "10/13/2000, in Zone 1", "Tcrit"), k_parameters_title);
}

TEST_F(ZoneInputFaults, AnOverflowShowsTheFaultsOwnText) {
    fill(table.TAvg, 3e38);
    fill(table.LR, -3e38F);  // 3 x 10^38 + 5 x 3 x 10^38 in zone 2

    EXPECT_FALSE(go());

    expect_one_stop("Overflow", k_other_title);
    EXPECT_EQ(table.ZoneDD[at(1, 1)], 3e38F);
    EXPECT_TRUE(is_missing(table.ZoneDD[at(2, 1)]));
}

TEST_F(ZoneInputFaults, TheMeanOfTwoLargeTemperaturesDoesNotOverflow) {
    simulation().temperature_values = std::int16_t{1};
    fill(table.TMax, 3e38);
    fill(table.Tmin, 3e38);

    EXPECT_TRUE(go());

    EXPECT_THAT(table.TAvg, Each(3e38F));
}

TEST_F(ZoneInputFaults, AnEmptyPeriodLacksTemperatures) {
    run.RunStart = k_first_input + 10;
    run.RunEnd = k_first_input + 20;

    EXPECT_FALSE(go());

    expect_one_stop("Temperature data is missing for the date range specified.", k_other_title);
}

TEST_F(ZoneInputFaults, AZoneBeyondTheBasinIsOutOfRange) {
    start(3, k_first_input, 2);
    basin.ZoneCount = 2;
    basin.zones.pop_back();
    fill(table.TAvg, 5.0);

    EXPECT_FALSE(go());

    expect_one_stop("Subscript out of range", k_other_title);
    EXPECT_EQ(table.ZoneDD[at(2, 1)], 5.0F);
    EXPECT_TRUE(is_missing(table.ZoneDD[at(3, 1)]));
    EXPECT_TRUE(is_missing(table.ZoneDD[at(1, 2)]));
}

TEST_F(ZoneInputFaults, AZoneBeyondTheBasinIsAcceptedWhereTemperaturesAreByZone) {
    start(3, k_first_input, 2);
    basin.ZoneCount = 2;
    basin.zones.pop_back();
    simulation().temperature = Distribution::ByZone;
    fill(table.TAvg, 5.0);

    EXPECT_TRUE(go());

    EXPECT_THAT(table.ZoneDD, Each(5.0F));
}

TEST_F(ZoneInputFaults, AMissingValueOfTheChangedClimateStopsOnlyItsSteps) {
    table.TAvgCC[at(1, 1)] = k_missing;

    EXPECT_TRUE(go());
    run.ClimateStep = 2;
    EXPECT_FALSE(go());

    expect_one_stop(missing(k_variables_text, "10/12/2000, in Zone 1", "Tavg"), k_variables_title);
}

}  // namespace
}  // namespace nivora
