// The command that writes reports of a climate evaluation.

#include "tests/batch/report_call.h"

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::UnorderedElementsAre;

TEST_F(ClimateReportTest, EachStepHasItsPeriodItsScenarioAndItsFirstRunoff) {
    struct Expected {
        const char* step;
        const char* period;
        const char* runoff;
        const char* average;
    };
    // The figures are those of the steps.
    for (const auto& [step, period, runoff, average] :
         {Expected{"1", "03/30/2001 to 03/31/2001", "10 m³/s", "Average Computed Runoff   (m³/s) : 3.75"},
          Expected{"2", "03/30/2001 to 03/31/2001", "10 m³/s", "Average Computed Runoff   (m³/s) : 66.25"},
          Expected{"3", "04/01/2001 to 04/04/2001", "2.5 m³/s", "Average Computed Runoff   (m³/s) : 99.41"},
          Expected{"6", "04/01/2001 to 04/04/2001", "77.5 m³/s",
                   "Average Simulated Runoff, Changed Climate   (m³/s) : 72.66"}}) {
        SCOPED_TRACE(step);
        ASSERT_EQ(evaluate(step).status, 0);
        const std::string before = file_bytes(file);
        const BatchResult result = report(step);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.err, "");
        EXPECT_TRUE(file_bytes(file) == before);
        EXPECT_THAT(line("Period: "), HasSubstr(period));
        EXPECT_EQ(line("Scenario  : "), "Scenario  : Warmer");
        EXPECT_THAT(out(), HasSubstr(std::string{"Run/Step: 1/"} + step));
        EXPECT_THAT(line("Begin Runoff"), HasSubstr(runoff));
        EXPECT_EQ(line("Run Type"), "Run Type: SIMULATION (CHANGED CLIMATE)");
        EXPECT_EQ(line("Average Computed") + line("Average Simulated Runoff, Changed"),
                  std::string{step} == "6" ? "(no line)" + std::string{average}
                                           : average + std::string{"(no line)"});
    }
}

TEST_F(ClimateReportTest, TheStoresOfBothSummersAreInTheTableOfTheLastStep) {
    BasinDatabase{file, Access::ReadWrite}.execute(
        "UPDATE PhysicalData SET Precip = 5 WHERE Date = (SELECT max(Date) FROM PhysicalData)");
    BasinDatabase{file, Access::ReadWrite}.execute("UPDATE Test SET Tcrit = 4");
    ASSERT_EQ(evaluate("6").status, 0);
    ASSERT_EQ(report("6", {"--reports", "7"}).status, 0);
    // The last day's 5 cm less the melt of that day: 2 x 0.5 in the present climate, 3 x 0.5 in the changed.
    EXPECT_EQ(line("  A     "), "  A     4.00000  3.50000 ");
    EXPECT_EQ(line("  B     "), "  B     4.00000  3.50000 ");
    EXPECT_EQ(line("Ending Snow"), "Ending Snow on Store (cm)        : 3.5");
}

TEST_F(ClimateReportTest, TheReportOfStepFiveIsTheOneBesideTheBasinOrTheOneThatIsNamed) {
    ASSERT_EQ(evaluate("6").status, 0);
    const std::string beside = file_bytes(folder / "NVR_DfGN.out");
    ASSERT_EQ(report("6", {"--reports", "8"}).status, 0);
    EXPECT_EQ(out(), beside);
    folder.write("other.out", "one line");
    ASSERT_EQ(report("6", {"--reports", "8", "--climate-report", path_text(folder / "other.out")}).status, 0);
    EXPECT_EQ(out(), "one line\r\n");
    const BatchResult missing =
        report("6", {"--reports", "6,8", "--climate-report", path_text(folder / "none.out")});
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.err, HasSubstr("none.out"));
    EXPECT_THAT(numbers_in(out()), testing::IsEmpty());
    EXPECT_THAT(out(), HasSubstr("Simulated Runoff - Present vs. Changed Climate"));
}

TEST_F(ClimateReportTest, AHugeClimateReportIsCopiedWhole) {
    std::string lines;
    for (int number = 0; number < 100000; ++number) lines += "line " + std::to_string(number) + "\r\n";
    folder.write("huge.out", lines);
    ASSERT_EQ(evaluate("6").status, 0);
    ASSERT_EQ(report("6", {"--reports", "8", "--climate-report", path_text(folder / "huge.out")}).status, 0);
    EXPECT_TRUE(out() == lines);
}

TEST_F(ClimateReportTest, TheReportOfStepFiveIsNotWrittenOver) {
    ASSERT_EQ(evaluate("6").status, 0);
    const std::string beside = file_bytes(folder / "NVR_DfGN.out");
    const BatchResult result = report("6", {"--out", path_text(folder / "NVR_DfGN.out")});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(file_bytes(folder / "NVR_DfGN.out"), beside);
}

TEST_F(ClimateReportTest, AForecastAtAStepTellsItsIntervalAndTheClimate) {
    ASSERT_EQ(evaluate("1").status, 0);
    ASSERT_EQ(report("1", {"--reports", "7", "--kind", "year-round", "--forecast", "7"}).status, 0);
    EXPECT_EQ(line("Run Type"),
              "Run Type: Year round Forecast (updated with actual Q every 7 days) (CHANGED CLIMATE)");
}

TEST_F(ClimateReportTest, AnUnknownScenarioIsRefused) {
    ASSERT_EQ(evaluate("1").status, 0);
    EXPECT_THAT(report("1", {}, "Colder").err,
                HasSubstr("The simulation 'Test' has no scenario 'Colder'. It has: 'Warmer'."));
    EXPECT_EQ(report("1", {}, "WARMER").status, 0);
    EXPECT_EQ(line("Scenario  : "), "Scenario  : Warmer");
}

TEST_F(ClimateReportTest, AScenarioWithoutWinterEndHasNoStep) {
    ASSERT_EQ(evaluate("1").status, 0);
    BasinDatabase{file, Access::ReadWrite}.execute("UPDATE ClimateScenarioIndex SET WinterEndDate = NULL");
    const BatchResult result = report("1");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("No such climate step: The scenario 'Warmer' has no winter end date"));
}

TEST_F(ClimateReportTest, AllOfStepSixHasTheDeficitReport) {
    ASSERT_EQ(evaluate("6").status, 0);
    ASSERT_EQ(report("6", {"--reports", "all"}).status, 0);
    EXPECT_THAT(out(), HasSubstr("Climate Scenario: Warmer\r\n"));
    ASSERT_EQ(report("3", {"--reports", "all"}).status, 0);
    EXPECT_THAT(out(), Not(HasSubstr("Climate Scenario: Warmer\r\n")));
    EXPECT_THAT(folder.entries(), UnorderedElementsAre("basin.mdb", "NVR_DfGN.out", "NVRrpts.out"));
}

}  // namespace
}  // namespace nivora
