// Runs on data that are missing, misplaced or out of range: each is reported, and none damages the basin.
#include "tests/batch/run_basin.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::DoubleNear;
using testing::HasSubstr;
using testing::Pointwise;

std::string date_text(int month, int day_of_month) { return std::to_string(day(1996, month, day_of_month)); }

TEST(RunRefusal, AnUnknownSimulationIsReportedWithTheExistingOnes) {
    const RunBasin basin;
    const std::string before = basin.bytes();
    const BatchResult result = batch({"run", basin.basin(), "--simulation", "birch"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "No such simulation: The basin has no simulation 'birch'. It has: 'alder'. [OK]\n");
    EXPECT_TRUE(basin.bytes() == before);
}

TEST(RunRefusal, ABasinWithoutSimulationsSaysSo) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch({"template", batch_folder.basin()}).status, 0);
    const BatchResult result = batch_folder.run();
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("It has: none."));
}

TEST(RunRefusal, AFileThatIsNotABasinIsReportedAndStays) {
    const BatchFolder batch_folder;
    const std::string before = file_bytes(batch_folder.file());
    const BatchResult text = batch({"run", batch_folder.file(), "--simulation", "alder", "--json"});
    EXPECT_EQ(text.status, 1);
    EXPECT_THAT(text.err, HasSubstr("The basin can't be read: "));
    EXPECT_THAT(text.err, HasSubstr("alder.NVR' is not a Nivora basin file"));
    EXPECT_EQ(nlohmann::json::parse(text.out)["messages"].size(), 1U);
    EXPECT_EQ(file_bytes(batch_folder.file()), before);
    const BatchResult missing = batch_folder.run();
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.err, HasSubstr("does not exist."));
    const BatchResult folder = batch({"run", batch_folder.path("."), "--simulation", "alder"});
    EXPECT_EQ(folder.status, 1);
    EXPECT_THAT(folder.err, HasSubstr("is a folder"));
}

TEST(RunRefusal, APeriodOfMoreThan366DaysIsReportedAndNotRun) {
    const RunBasin basin;
    // 1 April to 1 April of the next year are 366 days in 1996/97; one day more is too many.
    basin.execute("UPDATE SimulationIndex SET SimEndDate = SimStartDate + 366");
    const BatchResult result = basin.run({"--kind", "year-round"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "Nivora: Date range error!  366  [OK]\n");
    EXPECT_FALSE(basin.has_table("SimResults"));
    basin.execute("UPDATE SimulationIndex SET SimEndDate = SimStartDate + 365");
    EXPECT_EQ(basin.run({"--kind", "year-round"}).status, 0) << "the days that there are, within 366";
}

TEST(RunRefusal, APeriodOutsideTheDataIsReported) {
    const RunBasin basin;
    basin.execute(
        "UPDATE SimulationIndex SET SimStartDate = SimStartDate + 1000, SimEndDate = SimEndDate + 1000");
    const BatchResult result = basin.run();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(
        result.err,
        "Run aborting, possible invalid simulation definition: The current database is missing variables "
        "and/or parameters needed to run 'alder'! [OK]\n");
}

TEST(RunRefusal, ASimulationWithoutRowsIsReported) {
    const RunBasin basin;
    basin.execute("DELETE FROM alder");
    const BatchResult result = basin.run();
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("is missing variables and/or parameters needed to run 'alder'!"));
}

TEST(RunRefusal, ASimulationWithoutItsTableIsReported) {
    const RunBasin basin;
    basin.execute("DROP TABLE alder");
    const BatchResult result = basin.run();
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("Can't open PhysicalData table. "));
    EXPECT_THAT(result.err, HasSubstr("is missing variables and/or parameters needed to run 'alder'!"));
}

TEST(RunRefusal, AMissingTemperatureIsReportedWithItsDayAndZone) {
    const RunBasin basin;
    basin.execute("UPDATE PhysicalData SET Tavg = NULL WHERE Date = " + date_text(4, 2));
    const BatchResult result = basin.run({"--json"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(
        result.err,
        "Missing data in basin variable table.: Null value(s) in basin variable table on 04/02/1996, in Zone "
        "1 The missing value is that of Tavg. [OK]\n");
    EXPECT_TRUE(nlohmann::json::parse(result.out)["CoefficientR2"].is_null());
}

TEST(RunRefusal, AMissingParameterIsReportedWithItsDayAndZone) {
    const RunBasin basin;
    basin.execute("UPDATE alder SET Cs = NULL WHERE Date = " + date_text(4, 3));
    const BatchResult result = basin.run();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err,
              "Missing data in simulation parameter Table.: Null value(s) in simulation parameter table on "
              "04/03/1996, in Zone 1 The missing value is that of CS. [OK]\n");
}

TEST(RunRefusal, AMissingReferenceElevationIsReportedAndTheRunContinues) {
    const RunBasin basin;
    basin.execute("UPDATE BasinDescription SET RefElev = NULL");
    const BatchResult result = basin.run();
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(
        result.err,
        HasSubstr("Missing a required value: Please provide a basin reference elevation before continuing"));
    EXPECT_TRUE(basin.has_table("SimResults"));
}

// x = 1 and y = 0 make k = 1, which is limited to 0.99: 9.9, 9.801, 9.70299.
TEST(RunRefusal, KOfOneOrMoreIsAskedAboutOnceAndLimitedTo099) {
    for (const char* x : {"1", "1.5", "100"}) {
        SCOPED_TRACE(x);
        LegacyParts parts = receding_parts();
        parts.x = x;
        const RunBasin basin{parts};
        const BatchResult result = basin.run();
        EXPECT_EQ(result.status, 0);
        ASSERT_EQ(lines_of(result.err).size(), 1U);
        EXPECT_THAT(result.err, HasSubstr("result in k => 1 which was replaced by the limit k = 0.99"));
        EXPECT_THAT(basin.computed(), Pointwise(testing::DoubleNear(1e-9), {9.9, 9.801, 9.70299}));
    }
}

TEST(RunRefusal, RefusingTheLimitOfKEndsTheRun) {
    LegacyParts parts = receding_parts();
    parts.x = "1";
    const RunBasin basin{parts};
    const BatchResult result = basin.run({"--refuse"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("[Cancel]"));
}

// 0^-0.05 is undefined: the share of the recession keeps its initial value, 0, and so meets the limit.
TEST(RunRefusal, ADischargeOfZeroRunsToItsEnd) {
    LegacyParts parts = receding_parts();
    parts.y = "0.05";
    parts.section(LegacySection::Runoff) = "/";
    const RunBasin basin{parts, "0"};
    const BatchResult result = basin.run({"--json"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.err, HasSubstr("k = 0.99"));
    EXPECT_THAT(basin.computed(), Pointwise(testing::DoubleNear(0.0), {0.0, 0.0, 0.0}));
    EXPECT_EQ(nlohmann::json::parse(result.out)["ComputedVolume"], 0.0);
}

// Three days of 3E+38 add up to 9E+38, and the largest Single is 3.4E+38.
TEST(RunRefusal, ASumThatOverflowsASingleIsReported) {
    LegacyParts parts = receding_parts();
    parts.section(LegacySection::Runoff) = "366*3e38/";
    const RunBasin basin{parts, "3e38"};
    const BatchResult result = basin.run({"--json"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "Run statistics failed, probably caused by missing/invalid data: Overflow [OK]\n");
    const auto json = nlohmann::json::parse(result.out);
    EXPECT_TRUE(json["MeasuredVolume"].is_null());
    // 3E+38 x 0.9 x 0.9 x 0.9
    EXPECT_THAT(json["FinalQ"].get<double>() / 1e38, DoubleNear(2.187, 1e-6));
}

TEST(RunRefusal, AZoneElevationThatOverflowsASingleIsReported) {
    LegacyParts parts = receding_parts();
    parts.pairs[0] = "100,1e300";
    const RunBasin basin{parts};
    const BatchResult result = basin.run();
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("Overflow"));
}

TEST(RunRefusal, ADamagedTableIsReportedAndNotReplaced) {
    const RunBasin basin;
    basin.execute("UPDATE SimulationIndex SET SimUnits = 'cubits'");
    const std::string before = basin.bytes();
    const BatchResult result = basin.run();
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("The basin can't be read: "));
    EXPECT_TRUE(basin.bytes() == before);
}

TEST(RunRefusal, ASimulationWithoutDatesIsReported) {
    const RunBasin basin;
    basin.execute("UPDATE SimulationIndex SET SimEndDate = NULL");
    const BatchResult result = basin.run();
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err, "");
}

}  // namespace
}  // namespace nivora
