// The command that evaluates a climate scenario: its forms, its options, and how it ends.
#include "tests/batch/batch_call.h"
#include "tests/climate/climate_run_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// The six days that the tests of the climate steps work out by hand.
class ClimateCommandTest : public testing::Test {
protected:
    void write(const SixDays& small = SixDays{},
               double winter_end = static_cast<double>(SixDays::winter_end())) {
        small.write(file);
        write_scenario(file, k_scenario, winter_end, {small.plus_one});
    }
    [[nodiscard]] BatchResult climate(const std::vector<std::string>& more = {},
                                      const std::string& scenario = k_scenario,
                                      const std::string& simulation = "Test") const {
        std::vector<std::string> arguments{"climate",  path_text(file), "--simulation",
                                           simulation, "--scenario",    scenario};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return batch(arguments);
    }
    [[nodiscard]] SimResults results() const {
        BasinDatabase database{file, Access::ReadOnly};
        return load_results(database);
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder / "basin.mdb";
};

TEST_F(ClimateCommandTest, PrintsStatisticsAndSummaryAsText) {
    write();
    const BatchResult result = climate();
    EXPECT_EQ(result.status, 0) << result.err;
    // The figures are those of the steps; a volume is the sum of the daily m³/s x 0.0864.
    const std::vector<std::string> expected{
        "Climate Change Statistics",
        "Basin Name:  Small basin",
        "Simulation:  Test",
        "Scenario:    Warmer",
        "",
        "Statistics                                    Step 1        Step 2        Step 3        Step 6",
        "Measured Runoff Volume (10^6 m³)               1.728         1.728         3.456       34.3575",
        "Average Measured Runoff (m³/s)                    10            10            10      99.41406",
        "Computed Runoff Volume (10^6 m³)               0.648        11.448       34.3575         25.11",
        "Average Computed Runoff (m³/s)                  3.75         66.25      99.41406      72.65625",
        "Volume Difference (%)                           62.5        -562.5     -894.1406",
        "Coefficient of Determination (R²)            -43.125     -3268.125     -8244.659",
        "",
        "Seasonal Summary of Runoff (10^6 m³)          Winter        Summer          Year",
        "Measured                                       1.728         3.456         5.184",
        "Computed                                       0.648       34.3575       35.0055",
        "Climate affected                              11.448         25.11        36.558"};
    std::vector<std::string> lines = lines_of(result.out);
    for (std::string& line : lines) line.erase(line.find_last_not_of(' ') + 1);
    EXPECT_EQ(lines, expected);
}

TEST_F(ClimateCommandTest, AHeldCoverIsNotedAndChangesNoNumber) {
    SixDays small;
    for (PhysicalRow& row : small.physical) {
        const auto day = static_cast<std::size_t>(row.date - SixDays::first_day());
        row.sca = std::array{1.0F, 1.0F, 0.5F, 0.0F, 0.0F, 0.0F}.at(day);
    }
    // A summer so warm that its first day reaches both depths 1 and 2: (2 + 5) x 0.5 = 3.5.
    small.plus_one.start = SixDays::winter_end() + 1;
    small.plus_one.factor = 5.0F;
    write(small);
    const BatchResult result = climate({"--json"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.err, HasSubstr("Note: Step 5: In zone 2, the last day with snow and the first day "
                                      "without snow move to the same day"));
    const auto notes = nlohmann::json::parse(result.out)["notes"];
    ASSERT_EQ(notes.size(), 2U);
    for (const int zone : {1, 2}) {
        const auto& note = notes[static_cast<std::size_t>(zone - 1)];
        EXPECT_EQ(note["kind"], "CoverHeld");
        EXPECT_EQ(note["step"], 5);
        EXPECT_EQ(note["zones"], nlohmann::json::array({zone}));
        EXPECT_EQ(note["first"], "2001-04-01");
        EXPECT_EQ(note["last"], "2001-04-04");
        EXPECT_EQ(note["value"].get<double>(), 0.5);
    }
    EXPECT_THAT(results().SCAclimWAMA,
                ElementsAre(0, 0, 0.5F, 0.5F, 0.5F, 0.5F, 0, 0, 0.5F, 0.5F, 0.5F, 0.5F));
}

TEST_F(ClimateCommandTest, AWinterThatStoresNothingIsNotedByZone) {
    SixDays small;
    for (PhysicalRow& row : small.physical) row.precip = 0.0F;
    write(small);
    const BatchResult result = climate();
    EXPECT_EQ(result.status, 0) << result.err;
    for (const char* zone : {"1", "2"}) {
        EXPECT_THAT(result.err,
                    HasSubstr("Note: Step 5: In zone " + std::string{zone} +
                              ", nothing of the winter from 03/30/2001 to 03/31/2001 is left in the snow"));
    }
}

TEST_F(ClimateCommandTest, DaysWithoutRowsOfTheWholeSimulationAreNotedOnce) {
    SixDays small;
    std::erase_if(small.physical,
                  [](const PhysicalRow& row) { return row.date == SixDays::first_day() + 4; });
    write(small);
    const auto notes = nlohmann::json::parse(climate({"--json"}).out)["notes"];
    ASSERT_GE(notes.size(), 1U);
    EXPECT_EQ(notes[0]["kind"], "DaysWithoutRows");
    EXPECT_EQ(notes[0]["step"], 1);
    EXPECT_EQ(notes[0]["days"], 1);
    EXPECT_EQ(notes[0]["periodDays"], 6);
    EXPECT_EQ(notes[0]["first"], "2001-04-03");
    for (std::size_t i = 1; i < notes.size(); ++i) EXPECT_NE(notes[i]["kind"], "DaysWithoutRows");
}

TEST_F(ClimateCommandTest, ThePlaceholderIsNotAScenario) {
    write();
    BasinDatabase{file, Access::ReadWrite}.execute(
        "INSERT INTO ClimateScenarioIndex (SimulationFile, ScenarioFile) VALUES ('Test', 'None')");
    const BatchResult result = climate({}, "None");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("The simulation 'Test' has no scenario 'None'. It has: 'Warmer'."));
}

TEST_F(ClimateCommandTest, PrintsStatisticsAndSummaryAsJson) {
    write();
    const BatchResult result = climate({"--json"});
    EXPECT_EQ(result.status, 0) << result.err;
    const auto json = nlohmann::ordered_json::parse(result.out);
    const auto keys = [](const nlohmann::ordered_json& of) {
        std::vector<std::string> names;
        for (const auto& [key, value] : of.items()) names.push_back(key);
        return names;
    };
    EXPECT_THAT(keys(json), ElementsAre("steps", "summary", "notes", "messages"));
    EXPECT_THAT(keys(json["steps"]), ElementsAre("1", "2", "3", "6"));
    EXPECT_THAT(keys(json["steps"]["1"]), ElementsAre("MeasuredVolume", "AvgMeasuredQ", "ComputedVolume",
                                                      "AvgComputedQ", "VolumeDifference", "CoefficientR2"));
    EXPECT_THAT(keys(json["steps"]["6"]),
                ElementsAre("MeasuredVolume", "AvgMeasuredQ", "ComputedVolume", "AvgComputedQ"));
    EXPECT_EQ(json["steps"]["1"]["AvgComputedQ"].get<double>(), 3.75);
    EXPECT_EQ(json["steps"]["2"]["CoefficientR2"].get<double>(), -3268.125);
    EXPECT_EQ(json["steps"]["6"]["AvgComputedQ"].get<double>(), 72.65625);
    EXPECT_THAT(keys(json["summary"]), ElementsAre("Measured", "Computed", "ClimateAffected"));
    EXPECT_THAT(keys(json["summary"]["Computed"]), ElementsAre("Winter", "Summer", "Year"));
    EXPECT_NEAR(json["summary"]["ClimateAffected"]["Winter"].get<double>(), 11.448, 1e-5);
    EXPECT_NEAR(json["summary"]["ClimateAffected"]["Summer"].get<double>(), 25.11, 1e-5);
    EXPECT_NEAR(json["summary"]["ClimateAffected"]["Year"].get<double>(), 36.558, 1e-5);
    // The questions of the steps about each zone's winter change are reported with their answers.
    ASSERT_EQ(json["messages"].size(), 2U);
    EXPECT_EQ(json["messages"][1]["title"], "Winter Change for Zone: 2");
}

TEST_F(ClimateCommandTest, AnEnglishBasinHasCubicFeet) {
    SixDays small;
    small.header.units = small.simulation.units = Units::English;
    for (PhysicalRow& row : small.physical) row.tavg += 32.0F;
    write(small);
    const BatchResult result = climate();
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("Measured Runoff Volume (10^6 f³) "));
    EXPECT_THAT(result.out, HasSubstr("Average Computed Runoff (f³/s) "));
    EXPECT_THAT(result.out, Not(HasSubstr("m³")));
}

TEST_F(ClimateCommandTest, LeavesTheResultsInTheBasinAndTheReportBesideIt) {
    write();
    ASSERT_EQ(climate().status, 0);
    const SimResults table = results();
    ASSERT_EQ(table.size(), 12U);
    EXPECT_EQ(table.DailyQ[5], 49.375);
    EXPECT_EQ(table.DailyQPresent[5], 79.84375);
    EXPECT_THAT(folder.entries(), testing::UnorderedElementsAre("basin.mdb", "NVR_DfGN.out"));
    const std::string report = file_bytes(folder / "NVR_DfGN.out");
    EXPECT_THAT(report, HasSubstr("Climate Scenario: Warmer\r\n"));
    EXPECT_THAT(report, HasSubstr("File:             " + path_text(file) + "\r\n"));
}

TEST_F(ClimateCommandTest, EndsAfterTheRequestedStep) {
    write();
    const BatchResult result = climate({"--last-step", "3", "--json"});
    EXPECT_EQ(result.status, 0) << result.err;
    const auto json = nlohmann::json::parse(result.out);
    EXPECT_EQ(json["steps"].size(), 3U);
    EXPECT_TRUE(json["summary"]["ClimateAffected"]["Summer"].is_null());
    EXPECT_TRUE(json["messages"].empty());
    const SimResults table = results();
    EXPECT_EQ(table.DailyQPresent[5], 79.84375);
    EXPECT_THAT(table.DailyQ[5], testing::IsNan());  // step 6 would write it
    EXPECT_THAT(folder.entries(), ElementsAre("basin.mdb"));
    EXPECT_EQ(climate({"--last-step", "1"}).status, 0);
    for (const char* step : {"0", "7", "two"}) EXPECT_EQ(climate({"--last-step", step}).status, 2) << step;
}

TEST_F(ClimateCommandTest, AReportIsWrittenToTheNamedFile) {
    write();
    ASSERT_EQ(climate({"--report", path_text(folder / "winter change.txt")}).status, 0);
    EXPECT_THAT(folder.entries(), testing::UnorderedElementsAre("basin.mdb", "winter change.txt"));
}

TEST_F(ClimateCommandTest, AReportThatCannotBeWrittenEndsAtStepFive) {
    write();
    const BatchResult result = climate({"--json", "--report", path_text(folder / "no such folder/x.out")});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("x.out"));
    EXPECT_THAT(result.err,
                HasSubstr("CC run suspended: Climate change, step 5 was 'cancelled' by the user"));
    const auto json = nlohmann::json::parse(result.out);
    EXPECT_EQ(json["steps"].size(), 3U);
    EXPECT_TRUE(json["summary"]["ClimateAffected"]["Summer"].is_null());
}

TEST_F(ClimateCommandTest, RefusedQuestionsAboutTheWinterChangeAlterNothing) {
    write();
    ASSERT_EQ(climate().status, 0);
    const SimResults accepted = results();
    const BatchResult refused = climate({"--refuse"});
    EXPECT_EQ(refused.status, 0) << refused.err;
    EXPECT_THAT(refused.err, HasSubstr("Winter Change for Zone: 1: Click OK to accept the computed 'Change', "
                                       "or type a new value [Cancel]\n"));
    EXPECT_EQ(differing_columns(accepted, results()), std::vector<std::string>{});
}

TEST_F(ClimateCommandTest, ARefusedInitialRunoffEndsTheEvaluation) {
    SixDays small;
    small.simulation.initial_runoff = 20.0F;  // compared with the measured 9
    write(small);
    const BatchResult refused = climate({"--refuse"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, "");
    EXPECT_THAT(refused.err, HasSubstr("Warning, possible data problem: "));
    EXPECT_THAT(refused.err, Not(HasSubstr("CC run suspended")));
    EXPECT_EQ(climate().status, 0);  // without --refuse the question is answered with OK
}

TEST_F(ClimateCommandTest, AScenarioIsFoundInAnyCase) {
    write();
    const BatchResult result = climate({}, "WARMER");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("Scenario:    Warmer\n"));
}

TEST_F(ClimateCommandTest, AnUnknownScenarioIsRefusedWithTheNamesOfTheOthers) {
    write();
    const std::string before = file_bytes(file);
    const BatchResult result = climate({}, "Colder");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "No such scenario: The simulation 'Test' has no scenario 'Colder'. It has: 'Warmer'. [OK]\n");
    EXPECT_TRUE(file_bytes(file) == before);
    EXPECT_THAT(folder.entries(), ElementsAre("basin.mdb"));
}

TEST_F(ClimateCommandTest, AnUnknownSimulationIsRefused) {
    write();
    const std::string before = file_bytes(file);
    const BatchResult result = climate({}, k_scenario, "another");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("The basin has no simulation 'another'. It has: 'Test'."));
    EXPECT_TRUE(file_bytes(file) == before);
}

TEST_F(ClimateCommandTest, AMissingFileIsRefused) {
    const BatchResult result = climate();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err, "");
    EXPECT_THAT(folder.entries(), testing::IsEmpty());
}

TEST_F(ClimateCommandTest, AnOptionThatIsMissingIsWrongUsage) {
    write();
    EXPECT_EQ(batch({"climate", path_text(file), "--simulation", "Test"}).status, 2);
    EXPECT_EQ(batch({"climate", path_text(file), "--scenario", k_scenario}).status, 2);
    EXPECT_EQ(climate({"--colder"}).status, 2);
}

TEST_F(ClimateCommandTest, AWinterBeforeTheSimulationIsRefused) {
    write(SixDays{}, static_cast<double>(SixDays::first_day() - 1));
    const BatchResult result = climate({"--json"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("Invalid dates: Invalid date range.  Check the starting and ending"));
    EXPECT_TRUE(nlohmann::json::parse(result.out)["steps"].empty());
}

TEST_F(ClimateCommandTest, AnEmptySummerEndsAtStepThree) {
    write(SixDays{}, static_cast<double>(SixDays::first_day() + 5));
    const BatchResult result = climate({"--json"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("Temperature data is missing for the date range specified."));
    const auto json = nlohmann::json::parse(result.out);
    EXPECT_EQ(json["steps"].size(), 2U);
    EXPECT_TRUE(json["summary"]["Measured"]["Summer"].is_null());
    EXPECT_EQ(json["summary"]["Measured"]["Year"], json["summary"]["Measured"]["Winter"]);
}

}  // namespace
}  // namespace nivora
