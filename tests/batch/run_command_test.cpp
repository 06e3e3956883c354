// The run command: its kinds and options, what it prints and what it stores in the file.
#include "tests/batch/run_basin.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pointwise;
using testing::StartsWith;

// k = 0.9: 10 x 0.9 = 9, 9 x 0.9 = 8.1, 8.1 x 0.9 = 7.29.
TEST(Run, LeavesItsResultsInTheFile) {
    const RunBasin basin;
    ASSERT_EQ(basin.run().status, 0);
    EXPECT_THAT(basin.computed(), Pointwise(testing::DoubleNear(1e-9), {9.0, 8.1, 7.29}));
    const std::vector<std::string> lines = lines_of(basin.exported("SimResults"));
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_THAT(lines[0], StartsWith("Zone,Date,ActualQ,TMax,TMaxCC,"));
    EXPECT_THAT(lines[1], StartsWith("1,1996-04-01,10,"));
    EXPECT_THAT(lines[3], StartsWith("1,1996-04-03,6,"));
}

// Measured: 10 + 8 + 6 = 24, mean 8, volume 24 x 86400 / 10^6 = 2.0736.
// Computed: 9 + 8.1 + 7.29 = 24.39, mean 8.13, volume 24.39 x 86400 / 10^6 = 2.107296.
// Dv = (2.0736 - 2.107296) / 2.0736 x 100 = -1.625.
// Squares about the mean: 4 + 0 + 4 = 8; of the differences: 1 + 0.01 + 1.6641 = 2.6741.
// R2 = 1 - 2.6741 / 8 = 0.6657375.
TEST(Run, JsonHoldsTheStatisticsByName) {
    const RunBasin basin;
    const BatchResult result = basin.run({"--json"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    const auto json = nlohmann::ordered_json::parse(result.out);
    std::vector<std::string> keys;
    for (const auto& [key, value] : json.items()) keys.push_back(key);
    EXPECT_THAT(keys,
                ElementsAre("MeasuredVolume", "AvgMeasuredQ", "ComputedVolume", "AvgComputedQ",
                            "VolumeDifference", "CoefficientR2", "FinalQ", "RunTitle", "notes", "messages"));
    EXPECT_THAT(json["MeasuredVolume"].get<double>(), DoubleNear(2.0736, 1e-6));
    EXPECT_EQ(json["AvgMeasuredQ"].get<double>(), 8.0);
    EXPECT_THAT(json["ComputedVolume"].get<double>(), DoubleNear(2.107296, 1e-6));
    EXPECT_THAT(json["AvgComputedQ"].get<double>(), DoubleNear(8.13, 1e-6));
    EXPECT_THAT(json["VolumeDifference"].get<double>(), DoubleNear(-1.625, 1e-4));
    EXPECT_THAT(json["CoefficientR2"].get<double>(), DoubleNear(0.6657375, 1e-6));
    EXPECT_THAT(json["FinalQ"].get<double>(), DoubleNear(7.29, 1e-6));
    EXPECT_EQ(json["RunTitle"], "Melt Season Simulation");
    EXPECT_TRUE(json["messages"].is_array());
    EXPECT_TRUE(json["messages"].empty());
}

TEST(Run, JsonNumbersAreTheShortestTextsOfTheirSingles) {
    const RunBasin basin;
    // 8.13 as a Single is 8.1300001144...; the JSON has the shortest text that reads back to it.
    EXPECT_THAT(basin.run({"--json"}).out, HasSubstr("\"AvgComputedQ\": 8.13,"));
    EXPECT_THAT(basin.run({"--json"}).out, HasSubstr("\"FinalQ\": 7.29,"));
}

TEST(Run, TheTextNamesBasinSimulationAndFigures) {
    const RunBasin basin;
    const std::vector<std::string> lines = lines_of(basin.run().out);
    ASSERT_GE(lines.size(), 9U);
    EXPECT_EQ(lines[0], "Statistics, Melt Season Simulation");
    EXPECT_EQ(lines[1], "Basin Name:  Alder Brook");
    EXPECT_EQ(lines[2], "Simulation:  alder");
    EXPECT_THAT(lines[3], StartsWith("Measured Runoff Volume (10^6 m\xc2\xb3)"));
    EXPECT_THAT(lines[3], testing::EndsWith(" 2.0736"));
    EXPECT_THAT(lines[4], StartsWith("Average Measured Runoff (m\xc2\xb3/s): "));
    EXPECT_THAT(lines[4], testing::EndsWith(" 8"));
    EXPECT_THAT(lines[5], StartsWith("Computed Runoff Volume (10^6 m\xc2\xb3)"));
    EXPECT_THAT(lines[6], StartsWith("Average Computed Runoff  (m\xc2\xb3/s): "));
    EXPECT_THAT(lines[6], testing::EndsWith(" 8.13"));
    EXPECT_THAT(lines[7], StartsWith("Volume Difference (%): "));
    EXPECT_THAT(lines[8], StartsWith("Coefficient of Determination (R\xc2\xb2):"));
}

TEST(Run, AnEnglishBasinIsReportedInFeet) {
    LegacyParts parts = receding_parts();
    parts.units = "1";
    const RunBasin basin{parts};
    const BatchResult result = basin.run();
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, HasSubstr("Measured Runoff Volume (10^6 f\xc2\xb3)"));
    EXPECT_THAT(result.out, HasSubstr("Average Measured Runoff (f\xc2\xb3/s): "));
}

TEST(Run, TheKindChangesTheTitleAndNoFigure) {
    const RunBasin basin;
    auto season = basin.json({"--kind", "melt-season"});
    auto year = basin.json({"--kind", "year-round"});
    EXPECT_EQ(season["RunTitle"], "Melt Season Simulation");
    EXPECT_EQ(year["RunTitle"], "Year round Simulation");
    season.erase("RunTitle");
    year.erase("RunTitle");
    EXPECT_EQ(season, year);
}

// Updated every day: day 1 is 9; the next days start from the measured 10 and 8: 9 and 7.2.
TEST(Run, AForecastRestartsFromTheMeasuredDischarge) {
    const RunBasin basin;
    const auto json = basin.json({"--forecast", "1"});
    EXPECT_EQ(json["RunTitle"], "Melt Season Forecast");
    EXPECT_THAT(basin.computed(), Pointwise(testing::DoubleNear(1e-9), {9.0, 9.0, 7.2}));
    EXPECT_THAT(basin.run({"--forecast", "2", "--kind", "year-round"}).out,
                StartsWith("Statistics, Year round Forecast (updating every 2 days)\n"));
    // Updated on day 2, so day 3 starts from 8: 9, 8.1, 7.2.
    EXPECT_THAT(basin.computed(), Pointwise(testing::DoubleNear(1e-9), {9.0, 8.1, 7.2}));
}

TEST(Run, AForecastTakesOnlyOneToNineDays) {
    const RunBasin basin;
    for (const char* days : {"0", "10", "x", "", "-1", "1.5"}) {
        SCOPED_TRACE(days);
        const BatchResult result = basin.run({"--forecast", days, "--json"});
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.err,
                    HasSubstr("Invalid forecast frequency!: Updating interval for forecasting must be 1-9 "
                              "(days).  Forecast run aborted. [OK]\n"));
        EXPECT_TRUE(nlohmann::json::parse(result.out)["FinalQ"].is_null());
        EXPECT_FALSE(basin.has_table("SimResults"));
    }
}

TEST(Run, NoSnowIsAcceptedOnlyWithYearRound) {
    const RunBasin basin;
    const BatchResult result = basin.run({"--no-snow", "--kind", "year-round"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, StartsWith("Statistics, Year round Simulation  {no snow}\n"));
    EXPECT_EQ(basin.run({"--no-snow"}).status, 2);
    EXPECT_EQ(basin.run({"--no-snow", "--kind", "melt-season"}).status, 2);
}

// Without input a lag has nothing to distribute, and the recession is the same.
TEST(Run, LagSharesThatAddUpToOneAreAccepted) {
    const RunBasin basin;
    for (const char* shares : {"1", "0.5,0.5", "0.5,0.3,0.2", "0.5,0.1,0.1,0.1,0.1,0.1"}) {
        SCOPED_TRACE(shares);
        EXPECT_EQ(basin.run({"--lag-shares", shares}).status, 0);
        EXPECT_THAT(basin.computed(), Pointwise(testing::DoubleNear(1e-9), {9.0, 8.1, 7.29}));
    }
}

/// A basin in which snow melts, so that a lag has input to distribute.
LegacyParts melting_parts() {
    LegacyParts parts = receding_parts();
    parts.section(LegacySection::Tavg) = "366*8/";
    parts.section(LegacySection::SCA) = "366*0.5/";
    return parts;
}

TEST(Run, LagSharesThatAddUpToZeroLeaveTheLagOfTheSimulation) {
    const RunBasin basin{melting_parts()};
    ASSERT_EQ(basin.run().status, 0);
    const std::vector<double> without = basin.computed();
    ASSERT_EQ(basin.run({"--lag-shares", "1"}).status, 0);
    ASSERT_NE(basin.computed(), without) << "all at once differs from the lag of the simulation";
    for (const char* shares : {"0", "0,0", "0.0,0,0"}) {
        SCOPED_TRACE(shares);
        EXPECT_EQ(basin.run({"--lag-shares", shares}).status, 0);
        EXPECT_EQ(basin.computed(), without);
    }
}

TEST(Run, LagSharesThatDoNotAddUpOrAreTooManyAreRefused) {
    const RunBasin basin;
    const BatchResult total = basin.run({"--lag-shares", "0.5,0.4"});
    EXPECT_EQ(total.status, 1);
    EXPECT_THAT(total.err,
                HasSubstr("Distribution of daily melt over the period specified must equal 1 (100%)."));
    const BatchResult many = basin.run({"--lag-shares", "0.4,0.1,0.1,0.1,0.1,0.1,0.1"});
    EXPECT_EQ(many.status, 1);
    EXPECT_THAT(many.err, HasSubstr("Day count must be from 0 to 6"));
    EXPECT_FALSE(basin.has_table("SimResults"));
}

TEST(Run, LagSharesMayComeBeforeTheBasin) {
    const RunBasin basin;
    const BatchResult result =
        batch({"run", "--lag-shares", "0.5,0.5", basin.basin(), "--simulation", "alder"});
    EXPECT_EQ(result.status, 0) << result.err;
}

TEST(Run, ASimulationIsFoundInAnyCase) {
    const RunBasin basin;
    EXPECT_EQ(batch({"run", basin.basin(), "--simulation", "ALDER"}).status, 0);
}

TEST(Run, ARunTwiceGivesTheSameResults) {
    const RunBasin basin;
    const BatchResult first = basin.run();
    const std::string table = basin.exported("SimResults");
    const BatchResult second = basin.run();
    EXPECT_EQ(first.out, second.out);
    EXPECT_EQ(basin.exported("SimResults"), table);
}

TEST(Run, LeavesEveryTableButItsResultsAlone) {
    const RunBasin basin;
    std::vector<std::string> before;
    const std::vector<std::string> tables{"BasinDescription", "ZoneDescription", "SimulationIndex",
                                          "PhysicalData",     "BasinAverages",   "alder"};
    for (const std::string& table : tables) before.push_back(basin.exported(table));
    ASSERT_EQ(basin.run().status, 0);
    for (std::size_t i = 0; i < tables.size(); ++i) EXPECT_EQ(basin.exported(tables[i]), before[i]);
}

TEST(Run, QuestionsAreAnsweredSoThatTheRunContinuesAndAreReported) {
    RunBasin basin{receding_parts(), "20"};
    basin.execute("UPDATE BasinDescription SET Latitude = NULL");
    const BatchResult result = basin.run({"--json"});
    EXPECT_EQ(result.status, 0);
    const auto messages = nlohmann::json::parse(result.out)["messages"];
    ASSERT_EQ(messages.size(), 2U);
    // The latitude is asked about before anything in the file changes. |20 - 10| is more than a fifth of 10.
    EXPECT_EQ(messages[1]["title"], "Warning, possible data problem");
    EXPECT_EQ(messages[1]["text"],
              "There is a significant difference between your InitialRunoffValue {20} and day #1's Measured "
              "Runoff {10}.  Continue?");
    EXPECT_EQ(messages[1]["answer"], "OK");
    EXPECT_EQ(messages[0]["title"], "Missing latitude");
    EXPECT_EQ(messages[0]["answer"], "Yes");
    const std::vector<std::string> reported = lines_of(result.err);
    ASSERT_EQ(reported.size(), 2U);
    EXPECT_EQ(reported[1],
              "Warning, possible data problem: There is a significant difference between your "
              "InitialRunoffValue {20} and day #1's Measured Runoff {10}.  Continue? [OK]");
}

TEST(Run, OneMissingMeasuredRunoffLeavesTheVolumesAndIsReported) {
    const RunBasin basin;
    basin.execute("UPDATE PhysicalData SET Runoff = NULL WHERE Runoff = 8");
    const BatchResult result = basin.run();
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("Run statistics failed, probably caused by missing/invalid data: "));
    const std::vector<std::string> lines = lines_of(result.out);
    ASSERT_GE(lines.size(), 10U);
    // 10 + 6 = 16 m³/s over two days measured; 24.39 over three days computed.
    EXPECT_THAT(lines[3], testing::EndsWith(" 1.3824"));
    EXPECT_THAT(lines[4], testing::EndsWith(" 8"));
    EXPECT_THAT(lines[6], testing::EndsWith(" 8.13"));
    EXPECT_THAT(lines[7], testing::EndsWith(" not known"));
    EXPECT_THAT(lines[8], testing::EndsWith(" not known"));
    const auto json = basin.json();
    EXPECT_EQ(json["AvgMeasuredQ"].get<double>(), 8.0);
    EXPECT_TRUE(json["VolumeDifference"].is_null());
    EXPECT_TRUE(json["CoefficientR2"].is_null());
    EXPECT_THAT(json["FinalQ"].get<double>(), DoubleNear(7.29, 1e-6));
}

TEST(Run, DaysWithoutRowsAreNotedAndChangeNeitherNumbersNorStatus) {
    const RunBasin basin;
    basin.execute("DELETE FROM PhysicalData WHERE Runoff = 8");
    const BatchResult result = basin.run({"--json"});
    EXPECT_EQ(result.status, 0);
    const std::string text =
        "1 of 3 days from 04/01/1996 to 04/03/1996 has no rows in zone 1: 04/02/1996. The run skips these "
        "days and continues with the next one. To add the missing days, choose Data, Variables, Current "
        "simulation and Data, Parameters, and fill them in.";
    EXPECT_EQ(result.err, "Note: " + text + "\n");
    const auto json = nlohmann::json::parse(result.out);
    EXPECT_THAT(json["FinalQ"].get<double>(), DoubleNear(8.1, 1e-6));
    EXPECT_TRUE(json["messages"].empty());
    ASSERT_EQ(json["notes"].size(), 1U);
    EXPECT_EQ(json["notes"][0], (nlohmann::json{{"kind", "DaysWithoutRows"},
                                                {"zones", {1}},
                                                {"first", "1996-04-02"},
                                                {"last", "1996-04-02"},
                                                {"days", 1},
                                                {"periodDays", 3},
                                                {"text", text}}));
}

// 5 cm of rain on 100 km² are 500 x 10^4 m³ a day, 57.87 m³/s. A coefficient of -1 subtracts all of it.
TEST(Run, ADischargeBelowZeroIsNoted) {
    const RunBasin basin;
    basin.execute("UPDATE PhysicalData SET Precip = 5, Tavg = 10");
    basin.execute("UPDATE alder SET Cr = -1, Tcrit = 1, RCA = 1");
    const BatchResult result = basin.run({"--json", "--lag-shares", "1"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.err, StartsWith("Note: The computed discharge is below 0 on 2 of 3 days "));
    const auto note = nlohmann::json::parse(result.out)["notes"][0];
    EXPECT_EQ(note["kind"], "RunoffBelowZero");
    EXPECT_TRUE(note["zones"].empty());
    // Day 1: 9 - 5.787037 = 3.212963. Day 2: 2.891667 - 5.787037. Day 3: -2.605833 - 5.787037 = -8.39287.
    EXPECT_THAT(note["value"].get<double>(), DoubleNear(-8.39287, 1e-4));
    EXPECT_EQ(note["first"], "1996-04-02");
    EXPECT_EQ(note["last"], "1996-04-03");
}

TEST(Run, ANegativeInitialRunoffIsRefusedBeforeTheRun) {
    const RunBasin basin;
    // The names of the fields are shifted by one: this one holds the initial runoff.
    basin.execute("UPDATE SimulationIndex SET SimPrecipThreshold = -1");
    const BatchResult result = basin.run();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "Invalid initial runoff: The initial runoff of the simulation 'alder' is -1. A runoff cannot "
              "be below 0: enter the discharge of the day before the simulation starts. [OK]\n");
    EXPECT_FALSE(basin.has_table("SimResults"));
}

TEST(Run, RefusingABlankLatitudeLeavesTheFileAsItWas) {
    const RunBasin basin;
    ASSERT_EQ(basin.run().status, 0);
    basin.execute("UPDATE BasinDescription SET Latitude = NULL");
    const std::string before = basin.bytes();
    const BatchResult result = basin.run({"--refuse"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, testing::AllOf(testing::StartsWith("Missing latitude: "),
                                           testing::EndsWith("Continue processing? [No]\n")));
    EXPECT_TRUE(basin.bytes() == before);
}

TEST(Run, RefusingAQuestionEndsTheRun) {
    const RunBasin basin{receding_parts(), "20"};
    const BatchResult result = basin.run({"--json", "--refuse"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("Continue? [Cancel]\n"));
    const auto json = nlohmann::json::parse(result.out);
    EXPECT_TRUE(json["CoefficientR2"].is_null());
    EXPECT_TRUE(json["FinalQ"].is_null());
    ASSERT_EQ(json["messages"].size(), 1U);
    EXPECT_EQ(json["messages"][0]["answer"], "Cancel");
}

}  // namespace
}  // namespace nivora
