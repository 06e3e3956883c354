// The command that writes reports: the state that its options stand for, its file, its exit status.

#include "tests/batch/report_call.h"

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST_F(ReportCommandTest, WithoutOptionsAllThatMayBeChosenGoesBesideTheBasin) {
    ASSERT_EQ(basin.run().status, 0);
    const std::string before = basin.bytes();
    const BatchResult result = report();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out + result.err, "");
    EXPECT_THAT(basin.names(), ElementsAre("NVRrpts.out", "alder.NVR", "basin.mdb"));
    EXPECT_THAT(numbers_in(out()), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    EXPECT_THAT(line("03/05/2026"), HasSubstr("Hollin Flow Model"));
    EXPECT_THAT(line("3/5/2026 1:30:15 PM"), HasSubstr("NVR, Version"));
    EXPECT_THAT(line("File: "), HasSubstr(basin.basin()));
    EXPECT_TRUE(basin.bytes() == before);
}

TEST_F(ReportCommandTest, TheSummaryHasWhatTheRunLeft) {
    ASSERT_EQ(basin.run().status, 0);
    ASSERT_EQ(report({"--reports", "7"}).status, 0);
    EXPECT_THAT(line("Begin Runoff"), HasSubstr("Begin Runoff   : 10 m³/s"));
    EXPECT_EQ(line("Run Type"), "Run Type: SIMULATION");
    EXPECT_EQ(line("Ending Snow"), "Ending Snow on Store (cm)        : .");
    // 24 m³/s x 0.0864 and 24.39 m³/s x 0.0864
    EXPECT_EQ(line("Measured Runoff Volume"), "Measured Runoff Volume (10^6 m³) : 2.07");
    EXPECT_EQ(line("Average Measured"), "Average Measured Runoff   (m³/s) : 8.");
    EXPECT_EQ(line("Computed Runoff Volume"), "Computed Runoff Volume (10^6 m³) : 2.11");
    EXPECT_EQ(line("Average Computed"), "Average Computed Runoff   (m³/s) : 8.13");
    // 1 - (1 + 0.01 + 1.6641) / 8 and (24 - 24.39) / 24
    EXPECT_EQ(line("Coefficient"), "Coefficient of Determination (R²): .6657");
    EXPECT_EQ(line("Volume"), "Volume Difference (%)            : -1.625");
}

TEST_F(ReportCommandTest, NewSnowThatWaitsIsInTheSummary) {
    basin.execute("UPDATE PhysicalData SET Precip = 2, Tavg = -5");
    ASSERT_EQ(basin.run().status, 0);
    ASSERT_EQ(report({"--reports", "7"}).status, 0);
    // 2 cm on each of three days in April, none of which melts.
    EXPECT_EQ(line("Ending Snow"), "Ending Snow on Store (cm)        : 6.");
}

TEST_F(ReportCommandTest, ResultsAreTakenAsTheyStandInTheTable) {
    ASSERT_EQ(basin.run().status, 0);
    basin.execute("UPDATE SimResults SET DailyQ = 5");
    ASSERT_EQ(report({"--reports", "6,7"}).status, 0);
    EXPECT_THAT(line("   1  "), HasSubstr("10.00000  5.00000 "));
    EXPECT_EQ(line("Average Computed"), "Average Computed Runoff   (m³/s) : 5.");
}

TEST_F(ReportCommandTest, WithoutARunTheFirstFiveAreMade) {
    ASSERT_EQ(report().status, 1);  // report 4 needs the run
    EXPECT_THAT(numbers_in(out()), ElementsAre(0, 1, 2, 3));
}

TEST_F(ReportCommandTest, ARefusedReportHasItsTitleAndTextOnStandardError) {
    const BatchResult result = report({"--reports", "0,6,8"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "Missing data!: Your current simulation is different from the one most recently executed.  "
              "Reports that include calculated values cannot be produced until a simulationor climate change "
              "run is performed! [OK]\n");
    EXPECT_THAT(numbers_in(out()), ElementsAre(0));
}

TEST_F(ReportCommandTest, WhereTheFirstIsRefusedNoFileIsMade) {
    EXPECT_EQ(report({"--reports", "6"}).status, 1);
    EXPECT_THAT(basin.names(), ElementsAre("alder.NVR", "basin.mdb"));
}

TEST_F(ReportCommandTest, ResultsOfOtherDatesAreNoRun) {
    ASSERT_EQ(basin.run().status, 0);
    basin.execute("UPDATE SimResults SET Date = Date + 1000");
    EXPECT_THAT(report({"--reports", "5"}).err, HasSubstr("Missing data!"));
}

TEST_F(ReportCommandTest, ATableThatWasCutShortLeavesBlanks) {
    ASSERT_EQ(basin.run().status, 0);
    basin.execute("DELETE FROM SimResults WHERE Date > (SELECT min(Date) FROM SimResults)");
    ASSERT_EQ(report({"--reports", "6"}).status, 0);
    EXPECT_EQ(line("   1  "), "   1  10.00000  9.00000 ");
    EXPECT_EQ(line("   2  "), "   2" + std::string(20, ' '));
    EXPECT_EQ(line("Total "), "Total 10.00000  9.00000 ");
}

TEST_F(ReportCommandTest, ChangedInputsLeaveFiveToChooseAndTheToldLineInTheSummary) {
    ASSERT_EQ(basin.run().status, 0);
    ASSERT_EQ(report({"--input-changed"}).status, 0);
    EXPECT_THAT(numbers_in(out()), ElementsAre(0, 1, 2, 3, 4));
    EXPECT_THAT(out(), HasSubstr("** - Variables and/or parameters have changed."));
    ASSERT_EQ(report({"--reports", "7", "--input-changed"}).status, 0);
    EXPECT_THAT(out(), HasSubstr("Mode    : Normal\r\n   No compute since data modification,  results not "
                                 "available   \r\n"));
}

TEST_F(ReportCommandTest, TheRunIsAsTheOptionsSay) {
    ASSERT_EQ(basin.run({"--kind", "year-round", "--forecast", "2"}).status, 0);
    ASSERT_EQ(report({"--reports", "7", "--kind", "year-round", "--forecast", "2"}).status, 0);
    EXPECT_EQ(line("Run Type"), "Run Type: Year round Forecast (updated with actual Q every 2 days)");
    ASSERT_EQ(report({"--reports", "6,7", "--kind", "year-round", "--no-snow"}).status, 0);
    EXPECT_EQ(line("Mode    "), "Mode    : No Snow");
    EXPECT_THAT(out(), HasSubstr("Mode: 'No Snow'"));
}

TEST_F(ReportCommandTest, AnIntervalThatCannotBeIsRefusedAsByARun) {
    const BatchResult result = report({"--forecast", "12"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("Invalid forecast frequency!"));
}

TEST_F(ReportCommandTest, ReportsComeInAscendingOrderAndOnce) {
    ASSERT_EQ(basin.run().status, 0);
    ASSERT_EQ(report({"--reports", "6,0,6"}).status, 0);
    EXPECT_LT(out().find("Current data description"), out().find("Measured vs Computed"));
    EXPECT_EQ(lines_that_begin(report_text_lines(out()), "3/5/2026").size(), 2U);
}

TEST_F(ReportCommandTest, ARunThatCannotBeRepeatedLeavesItsFiguresBlankAndSaysSo) {
    ASSERT_EQ(basin.run().status, 0);
    basin.execute("DELETE FROM PhysicalData");
    const BatchResult result = report({"--reports", "7"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.err, HasSubstr("Note: The run can't be repeated, so that report 7 lacks"));
    EXPECT_EQ(line("Begin Runoff").find("m³/s"), std::string::npos);
    EXPECT_EQ(line("Ending Snow"), "Ending Snow on Store (cm)        : ");
    EXPECT_EQ(line("Average Computed"), "Average Computed Runoff   (m³/s) : 8.13");
}

TEST_F(ReportCommandTest, ABlankLatitudeAndADoubtfulRunoffAreAskedAboutByTheRunAlone) {
    basin.execute("UPDATE BasinDescription SET Latitude = NULL");
    basin.execute("UPDATE SimulationIndex SET SimPrecipThreshold = 30");  // the field of the initial runoff
    ASSERT_EQ(basin.run().status, 0);
    const BatchResult result = report({"--reports", "7", "--refuse"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(line("Begin Runoff"), HasSubstr("30 m³/s"));
}

TEST_F(ReportCommandTest, NamesOfFiftyLettersOutsideLatinKeepTheColumns) {
    std::string name;
    for (int letter = 0; letter < 50; ++letter) name += "水";
    basin.execute("UPDATE BasinDescription SET BasinName = '" + name + "'");
    ASSERT_EQ(basin.run().status, 0);
    ASSERT_EQ(report({"--reports", "2,6"}).status, 0);
    const auto lines = report_text_lines(out());
    // Characters count: the name ends at column 62, and the date at the right edge begins at 73 - 10 = 63.
    EXPECT_THAT(lines, testing::Contains("Basin:      " + name + "03/05/2026"));
    // By zone 12 + 50 + 12 characters are past column 63, so that the date has a line of its own.
    EXPECT_EQ(lines[1], "Basin:      " + name + "  --  Zone A");
    EXPECT_EQ(lines[2], std::string(62, ' ') + "03/05/2026");
}

TEST_F(ReportCommandTest, SingleExtremesStayInTheirCells) {
    ASSERT_EQ(basin.run().status, 0);
    basin.execute(
        "UPDATE SimResults SET ActualQ = 3.402823466385289e38, DailyQ = -3.402823466385289e38, "
        "ZonalMelt = 3.402823466385289e38, M1S = -3.402823466385289e38, Cpr = 1.401298464324817e-45");
    ASSERT_EQ(report({"--reports", "5,6"}).status, 0);
    const auto days = lines_that_begin(report_text_lines(out()), "   1  ");
    ASSERT_EQ(days.size(), 2U);
    EXPECT_EQ(days[0], "   1  3.E38 -3E38 0.000 ");
    EXPECT_EQ(days[1], "   1  3.402E38  -3.40E38");
}

TEST_F(ReportCommandTest, SingleExtremesStayInTheNarrowCellsOfTheLapseRates) {
    basin.execute(
        "UPDATE alder SET LapseRate = 3.402823466385289e38, Tcrit = -3.402823466385289e38, RCA = 32767, "
        "LagTime = 1.401298464324817e-45");
    ASSERT_EQ(report({"--reports", "3"}).status, 0);
    EXPECT_EQ(line("   1  "), "   1  3E38 -E38 3E4 0.00");
    // Three days: 1.0208E39, -1.0208E39 and 98301.
    EXPECT_EQ(line("Total "), "Total 1E39 -E39 9E4 0.00");
}

TEST_F(ReportCommandTest, AZoneWithoutResultsIsBlank) {
    basin.execute("UPDATE BasinDescription SET Zones = 2");
    basin.execute(
        "INSERT INTO ZoneDescription (ZoneId, ZoneArea, HypsometricElevation) VALUES ('B', 50, 1600)");
    basin.execute(
        "INSERT INTO PhysicalData SELECT 2, Date, Runoff, Tmax, Tmin, Tavg, Precip, SCA, NetRadiation FROM "
        "PhysicalData");
    basin.execute(
        "INSERT INTO alder SELECT 2, Date, Tcrit, LagTime, LapseRate, An, Cs, Cr, RCA, Xcoeff, Ycoeff FROM "
        "alder");
    ASSERT_EQ(basin.run().status, 0);
    basin.execute("DELETE FROM SimResults WHERE Zone = 2");
    ASSERT_EQ(report({"--reports", "5"}).status, 0);
    const auto days = lines_that_begin(report_text_lines(out()), "   1  ");
    ASSERT_EQ(days.size(), 2U);
    EXPECT_EQ(days[1], "   1" + std::string(20, ' '));
}

TEST_F(ReportCommandTest, WritesPagesUnderTheNameOfAPdf) {
    ASSERT_EQ(basin.run().status, 0);
    const std::string before = basin.bytes();
    const BatchResult result = report({"--reports", "0,6", "--out", basin.path("reports.PDF")});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out + result.err, "");
    const std::string pages = file_bytes(basin.path("reports.PDF"));
    EXPECT_THAT(pages, testing::StartsWith("%PDF-"));
    EXPECT_THAT(basin.names(), ElementsAre("alder.NVR", "basin.mdb", "reports.PDF"));
    EXPECT_TRUE(basin.bytes() == before);
}

TEST_F(ReportCommandTest, APdfThatCannotBeWrittenLeavesWhatWasThere) {
    ASSERT_EQ(basin.run().status, 0);
    const std::string before = basin.bytes();
    std::filesystem::create_symlink(basin.basin(), basin.path("link.pdf"));
    std::filesystem::create_directory(basin.path("folder.pdf"));
    basin.folder().write("kept.pdf", "kept");
    std::filesystem::permissions(basin.path("kept.pdf"), std::filesystem::perms::owner_read);
    for (const char* name : {"link.pdf", "folder.pdf", "kept.pdf", "none/reports.pdf"}) {
        const BatchResult result = report({"--out", basin.path(name)});
        EXPECT_EQ(result.status, 1) << name;
        EXPECT_THAT(result.err, HasSubstr("The reports can't be written: ")) << name;
    }
    EXPECT_TRUE(basin.bytes() == before);
    EXPECT_EQ(file_bytes(basin.path("kept.pdf")), "kept");
    EXPECT_THAT(basin.names(), ElementsAre("alder.NVR", "basin.mdb", "folder.pdf", "kept.pdf", "link.pdf"));
}

TEST_F(ReportCommandTest, WritesTextUnderTheNamesOfTextFiles) {
    ASSERT_EQ(basin.run().status, 0);
    ASSERT_EQ(report({"--reports", "0", "--out", basin.path("a b.TXT")}).status, 0);
    EXPECT_THAT(file_bytes(basin.path("a b.TXT")), HasSubstr("Current data description\r\n"));
    EXPECT_EQ(report({"--out", basin.path("reports.csv")}).status, 2);
    EXPECT_EQ(report({"--out", basin.path("reports")}).status, 2);
}

TEST_F(ReportCommandTest, NeverWritesOverABasinOrAReadOnlyFile) {
    ASSERT_EQ(basin.run().status, 0);
    const std::string before = basin.bytes();
    std::filesystem::create_symlink(basin.basin(), basin.path("link.txt"));
    std::filesystem::copy_file(basin.basin(), basin.path("another.out"));
    for (const char* name : {"link.txt", "another.out"}) {
        const BatchResult result = report({"--out", basin.path(name)});
        EXPECT_EQ(result.status, 1) << name;
        EXPECT_THAT(result.err, HasSubstr("can't be written"));
    }
    EXPECT_TRUE(file_bytes(basin.path("another.out")) == before);
    basin.folder().write("kept.txt", "kept");
    std::filesystem::permissions(basin.path("kept.txt"), std::filesystem::perms::owner_read);
    EXPECT_EQ(report({"--out", basin.path("kept.txt")}).status, 1);
    EXPECT_EQ(file_bytes(basin.path("kept.txt")), "kept");
    EXPECT_TRUE(basin.bytes() == before);
}

TEST_F(ReportCommandTest, AFolderThatIsNotThereIsRefusedWithNothingLeft) {
    ASSERT_EQ(basin.run().status, 0);
    const BatchResult result = report({"--out", basin.path("none/reports.txt")});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("The reports can't be written: "));
    EXPECT_THAT(basin.names(), ElementsAre("alder.NVR", "basin.mdb"));
}

TEST_F(ReportCommandTest, WrongUsageChangesNothing) {
    const std::string mdb = basin.basin();
    const std::vector<std::vector<std::string>> calls{
        {"report"},
        {"report", mdb},
        {"report", "--simulation", "alder"},
        {"report", mdb, "--simulation", "alder", "--reports", "9"},
        {"report", mdb, "--simulation", "alder", "--reports", "0,all"},
        {"report", mdb, "--simulation", "alder", "--reports", ""},
        {"report", mdb, "--simulation", "alder", "--kind", "daily"},
        {"report", mdb, "--simulation", "alder", "--now", "yesterday"},
        {"report", mdb, "--simulation", "alder", "--step", "1"},
        {"report", mdb, "--simulation", "alder", "--scenario", "warmer"},
        {"report", mdb, "--simulation", "alder", "--step", "0", "--scenario", "warmer"},
        {"report", mdb, "--simulation", "alder", "--step", "4", "--scenario", "warmer"},
        {"report", mdb, "--simulation", "alder", "--step", "5", "--scenario", "warmer"},
        {"report", mdb, "--simulation", "alder", "--step", "7", "--scenario", "warmer"},
        {"report", mdb, "--simulation", "alder", "--climate-report", "x.out"},
    };
    for (const auto& call : calls) {
        std::string shown;
        for (const std::string& argument : call) shown += " " + argument;
        SCOPED_TRACE(shown);
        const BatchResult result = batch(call);
        EXPECT_EQ(result.status, 2);
        EXPECT_NE(result.err, "");
        EXPECT_EQ(result.out, "");
    }
    EXPECT_THAT(basin.names(), ElementsAre("alder.NVR", "basin.mdb"));
}

TEST_F(ReportCommandTest, AnUnknownSimulationOrFileIsRefused) {
    EXPECT_THAT(report_on(basin.basin(), "another").err,
                HasSubstr("The basin has no simulation 'another'. It has: 'alder'."));
    const BatchResult missing = report_on(basin.path("none.mdb"), "alder");
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.err, HasSubstr("The basin can't be read: "));
    const BatchResult foreign = report_on(basin.file(), "alder");
    EXPECT_EQ(foreign.status, 1);
    EXPECT_THAT(foreign.err, HasSubstr("is not a Nivora basin file"));
}

TEST_F(ReportCommandTest, AReadOnlyBasinIsReported) {
    ASSERT_EQ(basin.run().status, 0);
    std::filesystem::permissions(basin.basin(), std::filesystem::perms::owner_read);
    const BatchResult result = report();
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(numbers_in(out()), testing::Contains(7));
}

}  // namespace
}  // namespace nivora
