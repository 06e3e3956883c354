#include "tests/reports/report_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class ReportGeneratorTest : public ReportTest {
protected:
    ReportGeneratorTest() { write_tables(); }

    ReportRequest request(std::vector<Report> reports) {
        const ReportSources from = sources();
        return make_reports(ReportGenerator{from, figures_, climate_report_}, reports);
    }
    [[nodiscard]] std::string page_of(const std::string& line) const { return line.substr(77); }
};

TEST_F(ReportGeneratorTest, ComputedReportsAreRefusedWhereAnotherSimulationWasRunLast) {
    run_.LastRunSimulation = "another";
    for (const Report report : {Report::DegreeDays, Report::Melt, Report::Runoff, Report::InputSummary}) {
        const auto refusal = report_refusal(report, basin_, run_);
        ASSERT_TRUE(refusal);
        EXPECT_EQ(refusal->title, "Missing data!");
        EXPECT_EQ(refusal->text,
                  "Your current simulation is different from the one most recently executed.\r\n"
                  "Reports that include calculated values cannot be produced until a simulationor climate "
                  "change run is performed!");
    }
    for (const Report report : {Report::DataDescription, Report::Temperatures, Report::DegreeDayFactors,
                                Report::LapseRates, Report::DeficitGain}) {
        EXPECT_FALSE(report_refusal(report, basin_, run_));
    }
}

TEST_F(ReportGeneratorTest, ComputedReportsAreRefusedWithoutAnyRun) {
    run_.LastRunSimulation.clear();
    basin_.Current_Sim_Name.clear();
    EXPECT_TRUE(report_refusal(Report::Runoff, basin_, run_));
}

TEST_F(ReportGeneratorTest, DailyReportsOfASimulationWithoutADateAreRefused) {
    simulation().start.reset();
    for (const Report report : {Report::Temperatures, Report::DegreeDayFactors, Report::LapseRates}) {
        const auto refusal = report_refusal(report, basin_, run_);
        ASSERT_TRUE(refusal);
        EXPECT_EQ(refusal->title, "Missing data!");
        EXPECT_EQ(refusal->text,
                  "The report '" + report_title(report, 0) +
                      "' has no days to show: the simulation 'wy2001' has no start date. Enter "
                      "what is missing in the simulation table, then make the report again.");
    }
    for (const Report report : {Report::DegreeDays, Report::Melt, Report::Runoff}) {
        const auto refusal = report_refusal(report, basin_, run_);
        ASSERT_TRUE(refusal);
        EXPECT_EQ(refusal->title, "Missing data!");
        EXPECT_EQ(refusal->text,
                  "The report '" + report_title(report, 0) +
                      "' has no days to show: the simulation 'wy2001' has no start date. Enter "
                      "what is missing in the simulation table, run the simulation, then make "
                      "the report again.");
    }
    EXPECT_FALSE(report_refusal(Report::DataDescription, basin_, run_));
    EXPECT_FALSE(report_refusal(Report::InputSummary, basin_, run_));
    EXPECT_FALSE(report_refusal(Report::DeficitGain, basin_, run_));
}

TEST_F(ReportGeneratorTest, WithoutASelectedSimulationTheDataDescriptionAloneIsMade) {
    basin_.current_row.reset();
    basin_.Current_Sim_Name = k_no_simulation;
    const ReportRequest made = request({Report::DataDescription, Report::Temperatures});
    EXPECT_EQ(made.made, 1);
    ASSERT_TRUE(made.refusal);
    EXPECT_EQ(made.refusal->text,
              "The report 'Temperature Values' has no days to show: no simulation is selected. Select one in "
              "the simulation table, then make the report again.");
    const auto text = report_text_lines(made.text);
    // "Period: " and the blanks up to column 13, " to ", the run at 73 - 5 = 68.
    EXPECT_EQ(text[2], "Period:      to " + std::string(51, ' ') + "Run: ");
    EXPECT_EQ(text[4], "Simulation: --");
    EXPECT_TRUE(lines_that_begin(text, "Temperature Values:").empty());
    EXPECT_EQ(report_refusal(Report::InputSummary, basin_, run_)->title, "Missing data!");
}

TEST_F(ReportGeneratorTest, TheHeadOfTheDataDescriptionLeavesMissingDatesBlank) {
    simulation().end.reset();
    // The run at 73 - 6 = 67.
    EXPECT_EQ(lines(Report::DataDescription)[2],
              "Period:     01/30/2001 to " + std::string(40, ' ') + "Run: 4");
    simulation().start.reset();
    EXPECT_EQ(lines(Report::DataDescription)[2], "Period:      to " + std::string(50, ' ') + "Run: 4");
}

TEST_F(ReportGeneratorTest, NamesOfSimulationsCompareWithoutRegardToCase) {
    run_.LastRunSimulation = "WY2001";
    EXPECT_FALSE(report_refusal(Report::Runoff, basin_, run_));
    EXPECT_TRUE(may_choose_computed(basin_, run_));
}

TEST_F(ReportGeneratorTest, TheFirstFiveMayAlwaysBeChosenTheOthersWithCurrentResults) {
    const auto choosable = [this] {
        std::vector<int> numbers;
        for (const Report report : k_all_reports) {
            if (may_choose_report(report, basin_, run_)) numbers.push_back(static_cast<int>(report));
        }
        return numbers;
    };
    EXPECT_THAT(choosable(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    run_.ClimateStep = 6;
    EXPECT_THAT(choosable(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8));
    basin_.Input_Changed = true;
    EXPECT_THAT(choosable(), ElementsAre(0, 1, 2, 3, 4));
    basin_.Input_Changed = false;
    basin_.Output_Valid = false;
    EXPECT_THAT(choosable(), ElementsAre(0, 1, 2, 3, 4));
    basin_.Output_Valid = true;
    run_.LastRunSimulation = "another";
    EXPECT_THAT(choosable(), ElementsAre(0, 1, 2, 3, 4));
}

TEST_F(ReportGeneratorTest, ReportsStandInAscendingOrderWithPagesCountedThrough) {
    const ReportRequest made = request({Report::Runoff, Report::DataDescription, Report::Melt});
    EXPECT_FALSE(made.refusal);
    EXPECT_EQ(made.made, 3);
    const auto text = report_text_lines(made.text);
    std::vector<std::string> pages;
    for (const std::string& line : lines_that_begin(text, "3/5/2026")) pages.push_back(page_of(line));
    // One page of report 0, two zones of report 5, one block of report 6.
    EXPECT_THAT(pages, ElementsAre("1", "2", "3", "4"));
    EXPECT_LT(made.text.find("Current data description"), made.text.find("Melt Depth"));
    EXPECT_LT(made.text.find("Melt Depth"), made.text.find("Measured vs Computed"));
}

TEST_F(ReportGeneratorTest, EveryLineEndsWithCarriageReturnAndLineFeed) {
    const std::string text = request({k_all_reports.begin(), k_all_reports.end() - 1}).text;
    EXPECT_THAT(text, testing::StartsWith("Hollin Flow Model  "));
    EXPECT_THAT(text, testing::EndsWith("\r\n\f\r\n"));
    const auto count = [&](const char* what) {
        std::size_t found = 0;
        for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++found;
        return found;
    };
    EXPECT_GT(count("\r\n"), 300U);
    EXPECT_EQ(count("\r"), count("\r\n"));
    EXPECT_EQ(count("\n"), count("\r\n"));
}

TEST_F(ReportGeneratorTest, NoTextOfTheUserEndsALineAPageOrABlock) {
    basin_.basin_name = "Al\fder\r\n\f\r\nFork";
    basin_.basin_description = "\x01";
    basin_.Basin_File = "al\nder.mdb";
    run_.ScenarioName =
        "warm\x01"
        "er";
    run_.ClimateStep = 2;
    simulation().comments = "one\r\n\f\r\n\x01\rtwo\x7F\nt\u0085hree\n";
    const ReportRequest made = request({Report::DataDescription, Report::Melt, Report::InputSummary});
    ASSERT_FALSE(made.refusal);
    const auto text = report_text_lines(made.text);
    EXPECT_EQ(lines_that_begin(text, "Basin: ").front().substr(0, 27), "Basin:      Al der     Fork");
    EXPECT_EQ(lines_that_begin(text, "File: ").front(), "File:       al der.mdb");
    EXPECT_EQ(lines_that_begin(text, "Scenario").front(), "Scenario  : warm er");
    EXPECT_EQ(lines_that_begin(text, "Description:").front(), "Description:" + std::string(30, ' ') + " ");
    for (const char* title : {"Comments:", "-- Program Comments --"}) {
        const auto begin = std::find(text.begin(), text.end(), title);
        ASSERT_GE(text.end() - begin, 6) << title;
        EXPECT_THAT(std::vector(begin + 1, begin + 7), ElementsAre("one", " ", " ", "two ", "t hree", ""));
    }
    EXPECT_EQ(lines_that_begin(text, "Basin Year")[0],
              "Basin Year     : 2001          Name: Al der     Fork");
    // Report 0, two zones of report 5 and report 7 end a page; the zones of 5 and 7 end a block.
    EXPECT_EQ(std::count(made.text.begin(), made.text.end(), '\f'), 4);
    EXPECT_EQ(std::count(made.text.begin(), made.text.end(), '\x01'), 4);
}

TEST_F(ReportGeneratorTest, AnInfiniteNumberInTheTableIsRefusedWithItsField) {
    file_.open().execute("UPDATE SimResults SET DailyQ = 9e999");
    const ReportRequest made = request({Report::Melt, Report::Runoff});
    EXPECT_EQ(made.made, 1);
    ASSERT_TRUE(made.refusal);
    EXPECT_EQ(made.refusal->title, "Measured vs Computed Snowmelt Runoff");
    EXPECT_EQ(made.refusal->text, "The field 'DailyQ' holds an infinite number.");
}

TEST_F(ReportGeneratorTest, ReportsOfARequestAreTheSameAsEachByItself) {
    const std::vector<Report> all{k_all_reports.begin(), k_all_reports.end() - 1};
    for (const int step : {0, 1, 2, 3, 6}) {
        run_.ClimateStep = step;
        std::string one_by_one;
        const ReportSources from = sources();
        ReportGenerator generator{from, figures_, climate_report_};
        for (const Report report : all) EXPECT_FALSE(generator.add(report));
        EXPECT_EQ(request(all).text, generator.text()) << step;
    }
}

TEST_F(ReportGeneratorTest, TheFirstRefusalEndsARequest) {
    run_.LastRunSimulation = "another";
    const ReportRequest made = request({Report::DataDescription, Report::Melt, Report::DeficitGain});
    EXPECT_EQ(made.made, 1);
    ASSERT_TRUE(made.refusal);
    EXPECT_EQ(made.refusal->title, "Missing data!");
    EXPECT_THAT(made.text, HasSubstr("Current data description"));
}

TEST_F(ReportGeneratorTest, AReportWithoutItsTableSaysSoAndLeavesTheTextAlone) {
    file_.open().execute("DROP TABLE \"wy2001\"");
    const ReportRequest made = request({Report::DataDescription, Report::LapseRates});
    EXPECT_EQ(made.made, 1);
    ASSERT_TRUE(made.refusal);
    EXPECT_EQ(made.refusal->title, "Lapse Rate, Critical Temperature, Rain Contributing Area, Lag Time");
    EXPECT_THAT(made.refusal->text, HasSubstr("wy2001"));
    EXPECT_THAT(made.text, testing::EndsWith("\f\r\n"));
}

TEST_F(ReportGeneratorTest, TheClimateReportIsCopiedAsItStandsAndItsPagesAreNotCounted) {
    std::ofstream{climate_report_, std::ios::binary} << "Zone A\r\n\r\n\x1eHW m³\r\nlast line";
    const ReportRequest made = request({Report::DeficitGain});
    EXPECT_EQ(made.text, "Zone A\r\n\r\n\x1eHW m³\r\nlast line\r\n");
    const ReportSources from = sources();
    ReportGenerator generator{from, figures_, climate_report_};
    EXPECT_FALSE(generator.add(Report::DeficitGain));
    EXPECT_EQ(generator.Report_Page(), 0);
}

TEST_F(ReportGeneratorTest, AMissingClimateReportIsNamed) {
    const ReportRequest made = request({Report::DeficitGain});
    ASSERT_TRUE(made.refusal);
    EXPECT_THAT(made.refusal->text, HasSubstr("NVR_DfGN.out"));
    EXPECT_EQ(made.text, "");
}

TEST_F(ReportGeneratorTest, AFolderIsNoClimateReport) {
    std::filesystem::create_directory(climate_report_);
    const ReportRequest made = request({Report::DeficitGain});
    ASSERT_TRUE(made.refusal);
    EXPECT_THAT(made.refusal->text, HasSubstr("NVR_DfGN.out cannot be read."));
}

TEST_F(ReportGeneratorTest, TheDescriptionOfTheDataHasTheHeadOfANarrowDailyTable) {
    auto text = lines(Report::DataDescription);
    EXPECT_EQ(text[0], "Hollin Flow Model" + std::string(43, ' ') + "Version 1.10");  // at 73 - 12
    EXPECT_EQ(text[1], "Basin:      Alder" + std::string(45, ' ') + "03/05/2026");    // at 73 - 10
    EXPECT_EQ(text[2],
              "Period:     01/30/2001 to 02/02/2001" + std::string(30, ' ') + "Run: 4");  // at 73 - 6
    EXPECT_EQ(text[3], "File:       alder.mdb");
    EXPECT_EQ(text[4], "Simulation: wy2001");
    EXPECT_EQ(text[5] + text[6] + text[8], "");
    run_.ClimateStep = 3;
    run_.ScenarioName = "warmer";
    run_.RunStart = first_day() + 2;
    text = lines(Report::DataDescription);
    EXPECT_EQ(text[2], "Period:     02/01/2001 to 02/02/2001" + std::string(23, ' ') + "Run/Step: 4/3");
    EXPECT_EQ(text[5], "Scenario  : warmer");
}

TEST_F(ReportGeneratorTest, TheDescriptionOfTheDataTellsBasinSimulationAndZones) {
    const auto text = lines(Report::DataDescription);
    const auto pair = [](const std::string& label, const std::string& value) {
        return label + std::string(42 - label.size(), ' ') + value;
    };
    EXPECT_EQ(text[7], "Current data description");
    EXPECT_EQ(text[9], pair("Description:", "Upper Alder valley"));
    EXPECT_EQ(text[10], pair("Units of Measurement:", "Metric"));
    EXPECT_EQ(text[11], pair("Number of Zones:", "2"));
    EXPECT_EQ(text[12], pair("Reference Elevation (m):", "1500"));
    EXPECT_EQ(text[13], pair("Latitude (dec):", "46.5"));
    EXPECT_EQ(text[14], "Longitude (dec):");
    EXPECT_EQ(text[15], "Basin Area (km²):" + std::string(25, ' ') + "30");
    EXPECT_EQ(text[16], pair("Period of record:", "01/30/2001 to 02/02/2001"));
    EXPECT_EQ(text[17], "");
    EXPECT_EQ(text[18], pair("Temperature Values:", "Average"));
    EXPECT_EQ(text[19], pair("Temperature Distribution:", "By Zone"));
    EXPECT_EQ(text[20], pair("Precipitation Distribution:", "Basinwide"));
    EXPECT_EQ(text[21], "Lapse Rate Distribution:");
    EXPECT_EQ(text[22], "Runoff Coefficient Distribution:");
    EXPECT_EQ(text[23], "Critical Temp Distribution:");
    EXPECT_EQ(text[24], "X/Y Recession Coefficient Distribution:");
    EXPECT_EQ(text[25], pair("Initial Runoff (CMS):", "2.5"));
    EXPECT_EQ(text[26], pair("Precipitation Threshold:", "6"));
    EXPECT_EQ(text[27], "");
    EXPECT_EQ(text[28], "Comments:");
    EXPECT_EQ(text[29], "First line");
    EXPECT_EQ(text[30], "and a second");
    EXPECT_EQ(text[31], "");
    EXPECT_EQ(text[32], "Zone ID     Zone Area (km²)               Hypsometric Mean Elevation (m)");
    EXPECT_EQ(text[33], "A           10                            1600.5");
    EXPECT_EQ(text[34], "B           20                            2100");
    EXPECT_EQ(text[35], "");
    EXPECT_EQ(text[36], "");
    EXPECT_EQ(text[38], "\f");
    EXPECT_EQ(text.size(), 39U);
}

TEST_F(ReportGeneratorTest, TheDescriptionTellsEachDistributionAndTheLongitudeInItsOwnLine) {
    basin_.longitude_text = "-9.25";
    simulation().lapse_rate = Distribution::ByZone;
    simulation().runoff_coefficients = Distribution::Basinwide;
    simulation().critical_temperature = Distribution::ByZone;
    simulation().recession = Distribution::Basinwide;
    auto text = lines(Report::DataDescription);
    EXPECT_EQ(text[14], "Longitude (dec):" + std::string(26, ' ') + "-9.25");
    EXPECT_EQ(text[21], "Lapse Rate Distribution:" + std::string(18, ' ') + "By Zone");
    EXPECT_EQ(text[22], "Runoff Coefficient Distribution:" + std::string(10, ' ') + "Basinwide");
    EXPECT_EQ(text[23], "Critical Temp Distribution:" + std::string(15, ' ') + "By Zone");
    EXPECT_EQ(text[24], "X/Y Recession Coefficient Distribution:" + std::string(3, ' ') + "Basinwide");
    // The lines that were alike the first time differ the second.
    simulation().critical_temperature = Distribution::Basinwide;
    simulation().recession = Distribution::ByZone;
    text = lines(Report::DataDescription);
    EXPECT_EQ(text[23], "Critical Temp Distribution:" + std::string(15, ' ') + "Basinwide");
    EXPECT_EQ(text[24], "X/Y Recession Coefficient Distribution:" + std::string(3, ' ') + "By Zone");
}

TEST_F(ReportGeneratorTest, TheDescriptionHasALineAZoneAlsoWhereTheBasinKnowsLessOfIt) {
    basin_.ZoneCount = 3;
    const auto text = lines(Report::DataDescription);
    EXPECT_EQ(text[34], "B           20                            2100");
    EXPECT_EQ(text[35], "C");
}

TEST_F(ReportGeneratorTest, TheDescriptionHasAllDigitsThatTheGridOfZonesShows) {
    basin_.zones[0].area = 1234.56789;
    basin_.zones[0].elevation = 1650.123456;
    EXPECT_EQ(lines(Report::DataDescription)[33], "A           1234.56789                    1650.123456");
}

TEST_F(ReportGeneratorTest, TheDescriptionOfABasinWithoutDailyDataHasNoPeriodOfRecord) {
    file_.open().execute("DELETE FROM PhysicalData");
    const auto text = lines(Report::DataDescription);
    EXPECT_EQ(text[16], "Period of record:");
    EXPECT_EQ(text[17], "");
}

TEST_F(ReportGeneratorTest, TheDescriptionOfAnEnglishBasinNamesItsUnits) {
    basin_.basin_units = Units::English;
    basin_.Units_Code = Units::English;
    simulation().comments.reset();
    const auto text = lines(Report::DataDescription);
    EXPECT_THAT(text[10], HasSubstr("English"));
    EXPECT_THAT(text[12], HasSubstr("Reference Elevation (ft):"));
    EXPECT_THAT(text[15], HasSubstr("Basin Area (mi²):"));
    EXPECT_THAT(text[25], HasSubstr("Initial Runoff (CFS):"));
    EXPECT_EQ(text[28], "Zone ID     Zone Area (mi²)               Hypsometric Mean Elevation (ft)");
}

TEST_F(ReportGeneratorTest, ASimulationInOtherUnitsLeavesTheUnitsOfTheBasinInItsDescription) {
    basin_.Units_Code = Units::English;
    simulation().comments.reset();
    const auto text = lines(Report::DataDescription);
    EXPECT_THAT(text[10], HasSubstr("Metric"));
    EXPECT_THAT(text[15], HasSubstr("Basin Area (km²):"));
    EXPECT_THAT(text[25], HasSubstr("Initial Runoff (CFS):"));
    EXPECT_EQ(text[28], "Zone ID     Zone Area (km²)               Hypsometric Mean Elevation (m)");
}

}  // namespace
}  // namespace nivora
