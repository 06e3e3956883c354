#include "tests/reports/report_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class InputSummaryTest : public ReportTest {
protected:
    InputSummaryTest() {
        write_tables();
        figures_.initial_runoff = 2.5F;
        figures_.measured_volume = 221.1209F;
        figures_.average_measured = 7.011699F;
        figures_.computed_volume = 207.9234F;
        figures_.average_computed = 6.593207F;
        figures_.volume_difference = 5.968472F;
        figures_.r2 = 0.9301775F;
        // By area: (10 x 0.3 + 20 x 0.6) / 30 = 0.5.
        figures_.ending_stores = {0.3F, 0.6F};
    }

    std::vector<std::string> summary() { return lines(Report::InputSummary); }
    /// The lines from the first one that begins with `head` to the last one of text.
    std::vector<std::string> from(const std::string& head) {
        auto text = summary();
        const auto begin = std::find_if(text.begin(), text.end(),
                                        [&](const std::string& line) { return line.starts_with(head); });
        return {begin, text.end() - 4};
    }
};

TEST_F(InputSummaryTest, OpensWithBasinRunAndUnits) {
    const auto text = summary();
    EXPECT_EQ(text[0], "03/05/2026" + std::string(18, ' ') + "Hollin Flow Model" + std::string(23, ' ') +
                           "Version 1.10");
    EXPECT_EQ(text[1], std::string(29, ' ') + "Input Summary Report" + std::string(21, ' ') + "Run: 4");
    EXPECT_EQ(text[2], "");
    EXPECT_EQ(text[3], "");
    EXPECT_EQ(text[4], "Basin Year     : 2001          Name: Alder");
    EXPECT_EQ(text[5], "Basin Area     : 30 km²           X: 1.05");
    EXPECT_EQ(text[6], "Ref. Elevation : 1500 m           Y: 0.02");
    EXPECT_EQ(text[7], "Begin Runoff   : 2.5 m³/s      Date: 01/30/2001");
    EXPECT_EQ(text[8], "Rain Threshold : 6 cm");
    EXPECT_EQ(text[9], "");
    EXPECT_EQ(text[10], "File: alder.mdb");
    EXPECT_EQ(text[11], "Simulation: wy2001");
    EXPECT_EQ(text[12], "");
    EXPECT_EQ(text[13], "Units: a - cm/°C·d       Lr - °C/100m       Tc - °C    Lag Time - hours");
    EXPECT_EQ(text[14], "");
    EXPECT_EQ(text[15], "-- Program Comments --");
    EXPECT_EQ(text[16], "First line");
    EXPECT_EQ(text[17], "and a second");
    EXPECT_EQ(text[18], "");
    EXPECT_EQ(text[19], "");
    EXPECT_EQ(text[20], " Zone A");
}

TEST_F(InputSummaryTest, WithoutCommentsTheTwoEmptyLinesStay) {
    simulation().comments.reset();
    const auto text = summary();
    EXPECT_EQ(text[14], "");
    EXPECT_EQ(text[15], "");
    EXPECT_EQ(text[16], "");
    EXPECT_EQ(text[17], " Zone A");
}

TEST_F(InputSummaryTest, APeriodOverTheNewYearHasTwoYears) {
    simulation().start = *day_count({2000, 12, 31});
    EXPECT_EQ(summary()[4], "Basin Year     : 2000-2001     Name: Alder");
}

TEST_F(InputSummaryTest, WithoutDatesOfTheSimulationWhatRestsOnThemIsBlank) {
    simulation().start.reset();
    simulation().end.reset();
    const auto text = summary();
    EXPECT_EQ(text[4], "Basin Year     : " + std::string(14, ' ') + "Name: Alder");
    EXPECT_EQ(text[5], "Basin Area     : 30 km²           X: ");
    EXPECT_EQ(text[6], "Ref. Elevation : 1500 m           Y: ");
    EXPECT_EQ(text[7], "Begin Runoff   : 2.5 m³/s      Date: ");
    EXPECT_EQ(text[20], " Zone A");
    EXPECT_EQ(text[22], "Zone Area: 10 km²    Hypsometric Mean: 1600.5 m");
    simulation().start = first_day();
    EXPECT_EQ(summary()[4], "Basin Year     : 2001          Name: Alder");
    EXPECT_EQ(summary()[7], "Begin Runoff   : 2.5 m³/s      Date: 01/30/2001");
}

TEST_F(InputSummaryTest, TheRecessionCoefficientsAreThoseOfTheFirstRowOfThePeriod) {
    const auto coefficients = [this] {
        const auto text = summary();
        return text[5].substr(35) + ", " + text[6].substr(34);
    };
    const auto change = [this](const std::string& statement) { file_.open().execute(statement); };
    const std::string first = std::to_string(first_day());
    // In the results x of a zone z on a day d is z + 0.04 + 0.01 d, y is 0.01 (z + d).
    EXPECT_EQ(coefficients(), "X: 1.05, Y: 0.02");
    // The parameter table may have been edited since the run, or be gone.
    change("DROP TABLE wy2001");
    EXPECT_EQ(coefficients(), "X: 1.05, Y: 0.02");
    // Rows outside the period do not matter.
    change("INSERT INTO SimResults (Zone, Date, Xcoeff, YCoeff) VALUES (1, " + first + " - 1, 7, 7)");
    EXPECT_EQ(coefficients(), "X: 1.05, Y: 0.02");
    // The first zone that the day has, and then the first day.
    change("DELETE FROM SimResults WHERE Zone = 1 AND Date = " + first);
    EXPECT_EQ(coefficients(), "X: 2.05, Y: 0.03");
    change("DELETE FROM SimResults WHERE Date = " + first);
    EXPECT_EQ(coefficients(), "X: 1.06, Y: 0.03");
    // A missing value prints nothing, and is not that of a later row.
    change("UPDATE SimResults SET Xcoeff = NULL WHERE Zone = 1 AND Date = " + first + " + 1");
    EXPECT_EQ(coefficients(), "X: , Y: 0.03");
    change("DELETE FROM SimResults");
    EXPECT_EQ(coefficients(), "X: , Y: ");
}

TEST_F(InputSummaryTest, AtAClimateStepTheFirstRowIsThatOfItsPeriod) {
    run_.ClimateStep = 3;
    run_.RunStart = first_day() + 2;
    // That of the input, not of the changed climate.
    EXPECT_EQ(summary()[5], "Basin Area     : 30 km²           X: 1.07");
    EXPECT_EQ(summary()[6], "Ref. Elevation : 1500 m           Y: 0.04");
}

TEST_F(InputSummaryTest, HasATableAZoneWithTheFirstDayAndEachFirstAndSixteenth) {
    const auto text = summary();
    EXPECT_EQ(text[21], " 1/16 |    a         Cs        Cr       Lr        Tc        RCA        L  ");
    EXPECT_EQ(text[22], "01/30 |  0.11000   2.11000   4.11000   0.11000   2.11000   1.0000    18.00000");
    EXPECT_EQ(text[23], "02/01 |  0.13000   2.13000   4.13000   0.13000   2.13000   1.0000    18.00000");
    EXPECT_EQ(text[24], "Zone Area: 10 km²    Hypsometric Mean: 1600.5 m");
    EXPECT_EQ(text[25], "");
    EXPECT_EQ(text[26], "\x01");
    EXPECT_EQ(text[27], " Zone B");
    EXPECT_THAT(text[29], HasSubstr("0.21000 "));
}

TEST_F(InputSummaryTest, TheSixteenthHasARowAndADayWithoutResultsABlankOne) {
    simulation().end = *day_count({2001, 2, 20});
    EXPECT_EQ(summary()[24], "02/16 |" + std::string(70, ' '));
}

TEST_F(InputSummaryTest, EndsWithTheStatistics) {
    EXPECT_THAT(
        from("Run Type"),
        ElementsAre("Run Type: SIMULATION", "Mode    : Normal", "Ending Snow on Store (cm)        : .5",
                    "Measured Runoff Volume (10^6 m³) : 221.12", "Average Measured Runoff   (m³/s) : 7.01",
                    "", "Computed Runoff Volume (10^6 m³) : 207.92",
                    "Average Computed Runoff   (m³/s) : 6.59", "", "Coefficient of Determination (R²): .9302",
                    "Volume Difference (%)            : 5.9685"));
}

TEST_F(InputSummaryTest, AFigureThatTheRunDidNotProducePrintsNothing) {
    figures_.r2.reset();
    figures_.measured_volume.reset();
    figures_.initial_runoff.reset();
    figures_.ending_stores.clear();
    EXPECT_EQ(from("Coefficient")[0], "Coefficient of Determination (R²): ");
    EXPECT_EQ(from("Measured Runoff")[0], "Measured Runoff Volume (10^6 m³) : ");
    EXPECT_EQ(from("Ending")[0], "Ending Snow on Store (cm)        : ");
    EXPECT_EQ(summary()[7], "Begin Runoff   :               Date: 01/30/2001");
}

TEST_F(InputSummaryTest, AForecastTellsItsInterval) {
    run_.RunKind = k_year_round_forecast;
    run_.RunTitle = "Year round Forecast";
    run_.UpdateInterval = 7;
    run_.NoSnow = true;
    EXPECT_THAT(from("Run Type")[0], "Run Type: Year round Forecast (updated with actual Q every 7 days)");
    EXPECT_THAT(from("Run Type")[1], "Mode    : No Snow");
}

TEST_F(InputSummaryTest, AForecastAtAClimateStepTellsBoth) {
    run_.RunKind = k_melt_season_forecast;
    run_.RunTitle = "Melt Season Forecast";
    run_.UpdateInterval = 1;
    run_.ClimateStep = 2;
    EXPECT_EQ(from("Run Type")[0],
              "Run Type: Melt Season Forecast (updated with actual Q every 1 days) (CHANGED CLIMATE)");
}

TEST_F(InputSummaryTest, AChangedInputLeavesOneLineInPlaceOfTheResults) {
    basin_.Input_Changed = true;
    EXPECT_THAT(from("Run Type"),
                ElementsAre("Run Type: SIMULATION", "Mode    : Normal",
                            "   No compute since data modification,  results not available   "));
}

TEST_F(InputSummaryTest, AnEnglishBasinHasItsUnitsAndSquareMetresForItsAreas) {
    basin_.basin_units = Units::English;
    basin_.Units_Code = Units::English;
    const auto text = summary();
    EXPECT_EQ(text[5], "Basin Area     : 30 m²            X: 1.05");
    EXPECT_EQ(text[6], "Ref. Elevation : 1500 ft          Y: 0.02");
    EXPECT_EQ(text[7], "Begin Runoff   : 2.5 f³/s      Date: 01/30/2001");
    EXPECT_EQ(text[8], "Rain Threshold : 6 in");
    EXPECT_EQ(text[13], "Units: a - in/(°F-32)·d       Lr - °F/1000ft       Tc - °F-32    Lag Time - hours");
    EXPECT_EQ(text[24], "Zone Area: 10 m²    Hypsometric Mean: 1600.5 ft");
    EXPECT_EQ(from("Ending")[0], "Ending Snow on Store (in)        : .5");
    EXPECT_EQ(from("Measured Runoff")[0], "Measured Runoff Volume (10^6 f³) : 221.12");
    EXPECT_EQ(from("Average Computed")[0], "Average Computed Runoff   (f³/s) : 6.59");
}

TEST_F(InputSummaryTest, AreasAndElevationsHaveTheUnitsOfTheBasinAndTheRestThoseOfTheSimulation) {
    basin_.Units_Code = Units::English;
    const auto text = summary();
    EXPECT_EQ(text[5], "Basin Area     : 30 km²           X: 1.05");
    EXPECT_EQ(text[6], "Ref. Elevation : 1500 m           Y: 0.02");
    EXPECT_EQ(text[7], "Begin Runoff   : 2.5 f³/s      Date: 01/30/2001");
    EXPECT_EQ(text[8], "Rain Threshold : 6 in");
    EXPECT_EQ(text[24], "Zone Area: 10 km²    Hypsometric Mean: 1600.5 m");
}

TEST_F(InputSummaryTest, AreasAndElevationsHaveAllTheirDigits) {
    basin_.zones[0].area = 1234.56789;
    basin_.zones[0].elevation = 1650.123456;
    EXPECT_EQ(summary()[24], "Zone Area: 1234.56789 km²    Hypsometric Mean: 1650.123456 m");
}

TEST_F(InputSummaryTest, AMissingNumberHasNoUnit) {
    basin_.reference_elevation_text.clear();
    basin_.zones[0].area.reset();
    basin_.zones[1].elevation.reset();
    simulation().precipitation_threshold.reset();
    const auto text = summary();
    EXPECT_EQ(text[6], "Ref. Elevation :                  Y: 0.02");
    EXPECT_EQ(text[8], "Rain Threshold : ");
    EXPECT_EQ(text[24], "Zone Area:     Hypsometric Mean: 1600.5 m");
    EXPECT_THAT(text, testing::Contains("Zone Area: 20 km²    Hypsometric Mean: "));
}

TEST_F(InputSummaryTest, TheEndingStoreIsTheMeanOfTheZonesThatHaveAnArea) {
    figures_.ending_stores = {0.3F, 0.6F};
    basin_.zones[0].area.reset();
    EXPECT_EQ(from("Ending")[0], "Ending Snow on Store (cm)        : .6");
    figures_.ending_stores[0] = k_missing;
    EXPECT_EQ(from("Ending")[0], "Ending Snow on Store (cm)        : .6");
    figures_.ending_stores[0] = 0.3F;
    basin_.zones[1].area.reset();
    EXPECT_EQ(from("Ending")[0], "Ending Snow on Store (cm)        : ");
    basin_.zones[0].area = 10.0;
    figures_.ending_stores[0] = k_missing;
    EXPECT_EQ(from("Ending")[0], "Ending Snow on Store (cm)        : ");
}

TEST_F(InputSummaryTest, AMissingStoreLeavesItsPlaceEmpty) {
    run_.ClimateStep = 6;
    figures_.present_stores = {k_missing, 0.25F};
    figures_.changed_stores = {0.5F};
    const auto text = from("#    Climate");
    EXPECT_EQ(text[1], "  A              0.50000 ");
    EXPECT_EQ(text[2], "  B     0.25000 ");
}

TEST_F(InputSummaryTest, AClimateStepWarnsAndTellsItsStep) {
    run_.ClimateStep = 1;
    const auto text = summary();
    EXPECT_EQ(text[1],
              std::string(29, ' ') + "Input Summary Report" + std::string(20, ' ') + "Run/Step: 4/1");
    EXPECT_EQ(text[20], "WARNING!  The parameter values displayed in the following table(s) are taken ");
    EXPECT_EQ(text[21], "  from the input data.  Refer to the climate change scenario to determine");
    EXPECT_EQ(text[22], "  how these parameters were shifted/adjusted during climate change processing.");
    EXPECT_EQ(text[23], "");
    EXPECT_EQ(text[24], " Zone A");
    // The parameters are those of the input, not of the changed climate.
    EXPECT_THAT(text[26], HasSubstr("|  0.11000   2.11000"));
    EXPECT_EQ(from("Run Type")[0], "Run Type: SIMULATION (CHANGED CLIMATE)");
    EXPECT_EQ(from("Volume Difference").size(), 1U);
}

TEST_F(InputSummaryTest, AtStepThreeTheStoresOfThePresentSummerAreListed) {
    run_.ClimateStep = 3;
    figures_.present_stores = {1.25F, 0.0F};
    figures_.changed_stores = {9.0F, 9.0F};
    EXPECT_THAT(from("Volume Difference"),
                ElementsAre("Volume Difference (%)            : 5.9685", "", " Zone   Present  Changed",
                            "#    Climate  Climate", "  A     1.25000 ", "  B     0.00000 "));
}

TEST_F(InputSummaryTest, AtStepSixPresentAndChangedClimateAreCompared) {
    run_.ClimateStep = 6;
    figures_.present_stores = {1.25F, 0.0F};
    figures_.changed_stores = {0.5F, 0.75F};
    EXPECT_THAT(from("Ending"), ElementsAre("Ending Snow on Store (cm)        : .5",
                                            "Simulated Runoff Volume, Present Climate (10^6 m³) : 221.12",
                                            "Average Simulated Runoff, Present Climate   (m³/s) : 7.01", "",
                                            "Simulated Runoff Volume, Changed Climate (10^6 m³) : 207.92",
                                            "Average Simulated Runoff, Changed Climate   (m³/s) : 6.59", "",
                                            "Coefficient of Determination (R²): .9302",
                                            "Volume Difference (%)            : 5.9685", "",
                                            " Zone   Present  Changed", "#    Climate  Climate",
                                            "  A     1.25000  0.50000 ", "  B     0.00000  0.75000 "));
}

TEST_F(InputSummaryTest, AtStepSixEnglishLabelsHaveTheirUnitsToo) {
    basin_.Units_Code = Units::English;
    run_.ClimateStep = 6;
    figures_.present_stores = {1.25F, 0.0F};
    figures_.changed_stores = {0.5F, 0.75F};
    EXPECT_THAT(from("Run Type"), ElementsAre("Run Type: SIMULATION (CHANGED CLIMATE)", "Mode    : Normal",
                                              "Ending Snow on Store (in)        : .5",
                                              "Simulated Runoff Volume, Present Climate (10^6 f³) : 221.12",
                                              "Average Simulated Runoff, Present Climate   (f³/s) : 7.01", "",
                                              "Simulated Runoff Volume, Changed Climate (10^6 f³) : 207.92",
                                              "Average Simulated Runoff, Changed Climate   (f³/s) : 6.59", "",
                                              "Coefficient of Determination (R²): .9302",
                                              "Volume Difference (%)            : 5.9685", "",
                                              " Zone   Present  Changed", "#    Climate  Climate",
                                              "  A     1.25000  0.50000 ", "  B     0.00000  0.75000 "));
}

}  // namespace
}  // namespace nivora
