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
        EXPECT_EQ(
            refusal->text,
            "Your current simulation is different from the one most recently executed.\r\nReports that "
            "include "
            "calculated values cannot be produced until a simulationor climate change run is performed!");
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
