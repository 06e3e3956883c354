// Reports that are refused: the message, the exit status, and what becomes of the file.

#include "tests/batch/report_call.h"

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class ReportRefusalTest : public ReportCommandTest {
protected:
    /// A text without its line ends and repeated blanks, which depend on where help texts are wrapped.
    static std::string one_blank_each(const std::string& text) {
        std::istringstream words{text};
        std::string joined;
        for (std::string word; words >> word;) joined += (joined.empty() ? "" : " ") + word;
        return joined;
    }
};

TEST_F(ReportRefusalTest, ASimulationWithoutDatesHasReportZeroAlone) {
    ASSERT_EQ(basin.run().status, 0);
    basin.execute("UPDATE SimulationIndex SET SimStartDate = NULL, SimEndDate = NULL");
    const BatchResult result = report({"--reports", "0,1,2"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(
        result.err,
        "Missing data!: The report 'Temperature Values' has no days to show: the simulation 'alder' has "
        "no start date and no end date. Enter what is missing in the simulation table, then make the "
        "report again. [OK]\n");
    EXPECT_THAT(numbers_in(out()), ElementsAre(0));
    EXPECT_THAT(line("Period: "), StartsWith("Period:      to    "));
}

TEST_F(ReportRefusalTest, EachDailyReportOfASimulationWithoutADateIsRefused) {
    ASSERT_EQ(basin.run().status, 0);
    basin.execute("UPDATE SimulationIndex SET SimEndDate = NULL");
    for (const char* number : {"1", "2", "3", "4", "5", "6"}) {
        SCOPED_TRACE(number);
        const BatchResult result = report({"--reports", number});
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.err, StartsWith("Missing data!: The report '"));
        EXPECT_THAT(result.err, HasSubstr("the simulation 'alder' has no end date."));
    }
    EXPECT_THAT(report({"--reports", "7"}).err, StartsWith("Missing data!: Your current simulation is"));
    EXPECT_THAT(basin.names(), ElementsAre("alder.NVR", "basin.mdb"));
}

TEST_F(ReportRefusalTest, NoSnowOfAMeltSeasonRunIsWrongUsageAsInARun) {
    ASSERT_EQ(basin.run().status, 0);
    for (const std::vector<std::string>& kind :
         {std::vector<std::string>{}, std::vector<std::string>{"--kind", "melt-season"}}) {
        std::vector<std::string> options{"--no-snow"};
        options.insert(options.end(), kind.begin(), kind.end());
        const BatchResult result = report(options);
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.err, HasSubstr("--no-snow: is only allowed with --kind year-round"));
        EXPECT_EQ(result.err.substr(0, result.err.find('\n')),
                  basin.run(options).err.substr(0, result.err.find('\n')));
    }
    EXPECT_THAT(basin.names(), ElementsAre("alder.NVR", "basin.mdb"));
}

TEST_F(ReportRefusalTest, ARefusedFirstReportLeavesAnOlderFileAsItIs) {
    basin.folder().write("NVRrpts.out", "an older request");
    basin.folder().write("older.pdf", "older pages");
    EXPECT_EQ(report({"--reports", "6,7"}).status, 1);
    EXPECT_EQ(out(), "an older request");
    EXPECT_EQ(report({"--reports", "6", "--out", basin.path("older.pdf")}).status, 1);
    EXPECT_EQ(file_bytes(basin.path("older.pdf")), "older pages");
    // The report before a refused one replaces the file.
    EXPECT_EQ(report({"--reports", "0,6"}).status, 1);
    EXPECT_THAT(numbers_in(out()), ElementsAre(0));
    EXPECT_THAT(
        one_blank_each(batch({"report", "--help"}).out),
        HasSubstr("If a report is refused, the file holds those before it; if the first one is refused, no "
                  "file is written and an older one stays as it is"));
}

TEST_F(ReportRefusalTest, TheClimateReportNeedsNoStepIfItIsAskedForByItsNumber) {
    const BatchResult missing = report({"--reports", "8"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.err, HasSubstr("NVR_DfGN.out cannot be read."));
    EXPECT_THAT(basin.names(), ElementsAre("alder.NVR", "basin.mdb"));
    basin.folder().write("NVR_DfGN.out", "Zone 1\r\nlast line");
    EXPECT_EQ(report({"--reports", "8"}).status, 0);
    EXPECT_EQ(out(), "Zone 1\r\nlast line\r\n");
}

using ClimateRefusalTest = ClimateReportTest;

TEST_F(ClimateRefusalTest, AStepOfABasinWithoutResultsIsRefused) {
    folder.write("NVRrpts.out", "an older request");
    const BatchResult result = report("3", {"--reports", "0"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "No results: The basin has no results of the simulation 'Test' from 04/01/2001 to 04/04/2001, "
              "the period of step 3. Evaluate the scenario up to this step, then report it: nivora-batch "
              "climate '" +
                  path_text(file) + "' --simulation 'Test' --scenario 'Warmer' --last-step 3 [OK]\n");
    EXPECT_EQ(out(), "an older request");
}

TEST_F(ClimateRefusalTest, AStepWithoutARowInItsDatesIsRefused) {
    ASSERT_EQ(evaluate("6").status, 0);
    // The winter is left, the summer is not.
    BasinDatabase{file, Access::ReadWrite}.execute("DELETE FROM SimResults WHERE Date > " +
                                                   std::to_string(SixDays::winter_end()));
    EXPECT_EQ(report("6").status, 1);
    EXPECT_THAT(report("6").err, StartsWith("No results: "));
    EXPECT_EQ(report("2").status, 0);
    BasinDatabase{file, Access::ReadWrite}.execute("UPDATE SimResults SET Date = Date + 1000");
    EXPECT_THAT(report("2").err, HasSubstr("from 03/30/2001 to 03/31/2001, the period of step 2."));
    EXPECT_THAT(folder.entries(), testing::UnorderedElementsAre("basin.mdb", "NVR_DfGN.out", "NVRrpts.out"));
}

TEST_F(ClimateRefusalTest, AStepOfASimulationWithoutDatesIsRefused) {
    ASSERT_EQ(evaluate("1").status, 0);
    BasinDatabase{file, Access::ReadWrite}.execute("UPDATE SimulationIndex SET SimStartDate = NULL");
    const BatchResult result = report("1");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err,
              "No such climate step: The steps of an evaluation have no period: the simulation 'Test' has no "
              "start date. Enter what is missing in the simulation table. [OK]\n");
}

}  // namespace
}  // namespace nivora
