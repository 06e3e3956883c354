// The command that compares the computed with the measured discharge.
#include "batch/evaluate_options.h"
#include "batch/evaluate_output.h"
#include "tests/batch/run_basin.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::HasSubstr;
using EvaluateJson = nlohmann::json;

/// Measured 10, 8, 6 on 1 to 3 April 1996, computed 9, 8.1, 7.29.
class EvaluateCommandTest : public testing::Test {
protected:
    [[nodiscard]] BatchResult evaluate(const std::vector<std::string>& more = {},
                                       const std::string& simulation = "alder") const {
        std::vector<std::string> arguments{"evaluate", basin.basin(), "--simulation", simulation};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return batch(arguments);
    }
    [[nodiscard]] EvaluateJson json(std::vector<std::string> more = {}) const {
        more.emplace_back("--json");
        const BatchResult result = evaluate(more);
        EXPECT_EQ(result.status, 0) << result.err;
        return result.status == 0 ? EvaluateJson::parse(result.out) : EvaluateJson{};
    }
    [[nodiscard]] static EvaluateJson row(const EvaluateJson& result, const std::string& key) {
        for (const EvaluateJson& row : result["measures"])
            if (row["key"] == key) return row;
        ADD_FAILURE() << "no measure " << key;
        return {};
    }
    [[nodiscard]] static double value(const EvaluateJson& result, const std::string& key) {
        return row(result, key)["value"].get<double>();
    }
    void measure(const std::string& runoffs) const {
        basin.execute("UPDATE PhysicalData SET Runoff = CASE Date WHEN 35156 THEN " + runoffs + " END");
    }

    RunBasin basin;
};

TEST_F(EvaluateCommandTest, MeasuresOfThreeDaysWorkedByHand) {
    const EvaluateJson result = json();
    // errors 1, -0.1, -1.29 with squares 1 + 0.01 + 1.6641; the mean is 8, squares from it 4 + 0 + 4
    EXPECT_NEAR(value(result, "NSE"), 1.0 - 2.6741 / 8.0, 1e-6);
    EXPECT_NEAR(value(result, "R2"), 1.0 - 2.6741 / 8.0, 1e-6);
    EXPECT_NEAR(value(result, "RMSE"), std::sqrt(2.6741 / 3.0), 1e-6);
    EXPECT_NEAR(value(result, "MAE"), 2.39 / 3.0, 1e-6);
    EXPECT_NEAR(value(result, "VolumeDifference"), -0.39 / 24.0 * 100.0, 1e-5);
    EXPECT_NEAR(value(result, "HighestDaySize"), -10.0, 1e-5);
    EXPECT_EQ(value(result, "HighestDayDate"), 0.0);
    EXPECT_NEAR(value(result, "LowFlowVolume"), 21.5, 1e-5);  // one day of three: 7.29 for 6
    // (0 x 10 + 8 + 2 x 6) / 24 days measured, (8.1 + 2 x 7.29) / 24.39 computed
    EXPECT_NEAR(value(result, "CentreOfMass"), 22.68 / 24.39 - 20.0 / 24.0, 1e-6);
    ASSERT_EQ(result["biasByMonth"].size(), 1U);
    EXPECT_EQ(result["biasByMonth"][0]["month"], 4);
    EXPECT_EQ(result["biasByMonth"][0]["days"], 3);
    EXPECT_NEAR(result["biasByMonth"][0]["bias"].get<double>(), 0.13, 1e-6);
}

TEST_F(EvaluateCommandTest, TakesStoredResultsAndRunsInMemoryWhereThereAreNone) {
    const std::string before = basin.bytes();
    const EvaluateJson fresh = json();
    EXPECT_EQ(fresh["results"], "fresh");
    EXPECT_EQ(basin.bytes(), before);
    const double r2 = basin.json()["CoefficientR2"].get<double>();
    EXPECT_EQ(value(fresh, "R2"), r2);
    const EvaluateJson stored = json();
    EXPECT_EQ(stored["results"], "stored");
    EXPECT_EQ(stored["measures"], fresh["measures"]);
    EXPECT_EQ(json({"--run"})["results"], "fresh");
}

TEST_F(EvaluateCommandTest, StoredResultsOfAForecastAreComparedAsTheyStand) {
    EXPECT_EQ(basin.run({"--forecast", "1"}).status, 0);
    // Each day starts from the measured discharge: 9, then 0.9 x 10, then 0.9 x 8.
    EXPECT_NEAR(value(json(), "MAE"), (1.0 + 1.0 + 1.2) / 3.0, 1e-6);
    EXPECT_NEAR(value(json({"--run"}), "MAE"), 2.39 / 3.0, 1e-6);
}

TEST_F(EvaluateCommandTest, ANoteTellsWhereTheResultsHaveOtherInputs) {
    EXPECT_EQ(basin.run().status, 0);
    EXPECT_EQ(evaluate().err, "");
    basin.execute("UPDATE alder SET Xcoeff = 0.8");
    const BatchResult result = evaluate();
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.err, HasSubstr("were not made with the data and parameters that 'alder' has now"));
    EXPECT_EQ(evaluate({"--run"}).err, "");
}

TEST_F(EvaluateCommandTest, DaysWithoutAValueAreLeftOutAndCounted) {
    measure("NULL WHEN 35157 THEN 8 WHEN 35158 THEN 6");
    const EvaluateJson days = json()["days"];
    EXPECT_EQ(days["asked"], 3);
    EXPECT_EQ(days["compared"], 2);
    EXPECT_EQ(days["leftOut"], 1);
    EXPECT_EQ(days["withoutMeasured"], 1);
    EXPECT_EQ(days["withoutComputed"], 0);
    EXPECT_THAT(evaluate().out,
                HasSubstr("3 asked for, 2 compared, 1 left out (1 without measured, 0 without "
                          "computed discharge)"));
}

TEST_F(EvaluateCommandTest, ConstantFlowLeavesEfficienciesUnknownWithTheReason) {
    measure("5 WHEN 35157 THEN 5 WHEN 35158 THEN 5");
    const EvaluateJson result = json();
    for (const char* key : {"R2", "NSE", "NSElog", "KGE", "KGE_r", "KGEmodified", "KGEmodified_gamma"}) {
        EXPECT_TRUE(row(result, key)["value"].is_null()) << key;
        EXPECT_EQ(row(result, key)["remark"], "the measured discharge is constant") << key;
    }
    EXPECT_NEAR(value(result, "MAE"), (4.0 + 3.1 + 2.29) / 3.0, 1e-6);
    EXPECT_THAT(evaluate().out, HasSubstr("not known"));
}

TEST_F(EvaluateCommandTest, ZerosUnderALogarithmAreLiftedAndCounted) {
    measure("10 WHEN 35157 THEN 0 WHEN 35158 THEN 0");
    const EvaluateJson lifted = row(json(), "NSElog");
    EXPECT_FALSE(lifted["value"].is_null());
    EXPECT_THAT(lifted["remark"].get<std::string>(),
                HasSubstr("ln(Q + 0.03333333 m³/s), 1/100 of mean; zeros: 2 measured"));
    measure("0 WHEN 35157 THEN 0 WHEN 35158 THEN 0");
    const EvaluateJson result = json();
    EXPECT_THAT(row(result, "NSElog")["remark"].get<std::string>(), HasSubstr("no logarithm"));
    EXPECT_EQ(row(result, "VolumeDifference")["remark"], "the measured volume is 0");
    EXPECT_EQ(row(result, "HighestDaySize")["remark"], "the highest measured discharge is 0");
    EXPECT_EQ(row(result, "CentreOfMass")["remark"], "no measured volume");
    EXPECT_TRUE(result["biasByMonth"][0]["percent"].is_null());
}

TEST_F(EvaluateCommandTest, WithoutAMeasuredDayThereIsNothingToCompare) {
    measure("NULL");
    const BatchResult result = evaluate();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("None of the 3 days from 1996-04-01 to 1996-04-03 has a measured"));
}

TEST_F(EvaluateCommandTest, WithoutAComputedDayThereIsNothingToCompare) {
    EXPECT_EQ(basin.run().status, 0);
    basin.execute("UPDATE SimResults SET DailyQ = NULL");
    const BatchResult result = evaluate();
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("has a computed discharge. With --run a fresh run is compared."));
    EXPECT_EQ(evaluate({"--run"}).status, 0);
}

TEST_F(EvaluateCommandTest, APeriodAndMonthsNarrowTheComparison) {
    const EvaluateJson result = json({"--from", "1996-04-02", "--to", "1996-04-03", "--months", "3-5"});
    EXPECT_EQ(result["days"]["asked"], 2);
    EXPECT_EQ(result["months"], "3-5");
    EXPECT_NEAR(value(result, "MAE"), (0.1 + 1.29) / 2.0, 1e-6);
    const BatchResult none = evaluate({"--months", "5-9,11"});
    EXPECT_EQ(none.status, 1);
    EXPECT_THAT(none.err, HasSubstr("No day from 1996-04-01 to 1996-04-03 lies in the months 5-9,11."));
}

TEST_F(EvaluateCommandTest, WhatCannotBeAskedIsRefusedWithTheReason) {
    const auto refusal = [&](const std::vector<std::string>& more) {
        const BatchResult result = evaluate(more);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out, "");
        return result.err;
    };
    EXPECT_THAT(refusal({"--from", "1996-03-31"}),
                HasSubstr("Period outside the simulation: 1996-03-31 to 1996-04-03 is not within"));
    EXPECT_THAT(refusal({"--to", "1996-04-04"}), HasSubstr("which goes from 1996-04-01 to 1996-04-03"));
    EXPECT_THAT(refusal({"--from", "1996-04-03", "--to", "1996-04-01"}), HasSubstr("Period reversed"));
    const BatchResult unknown = evaluate({}, "birch");
    EXPECT_EQ(unknown.status, 1);
    EXPECT_THAT(unknown.err, HasSubstr("The basin has no simulation 'birch'. It has: 'alder'."));
    basin.execute("DELETE FROM alder");
    EXPECT_THAT(refusal({}), HasSubstr("missing variables and/or parameters"));
}

TEST_F(EvaluateCommandTest, WrongOptionsAreWrongUsage) {
    for (const char* months : {"9-4", "0", "13", "4-", "-9", "4-9,", "april", "4 - 9", "1-2-3"})
        EXPECT_EQ(evaluate({"--months", months}).status, 2) << months;
    EXPECT_THAT(evaluate({"--months", "9-4"}).err,
                HasSubstr("'9-4' is reversed; for months over the end of a year give 9-12,1-4"));
    EXPECT_EQ(evaluate({"--from", "1.4.1996"}).status, 2);
    EXPECT_EQ(evaluate({"--to", "1996-02-30"}).status, 2);
    EXPECT_EQ(batch({"evaluate", basin.basin()}).status, 2);
    EXPECT_EQ(batch({"evaluate", "--simulation", "alder"}).status, 2);
}

TEST_F(EvaluateCommandTest, AFileThatIsNoBasinIsRefused) {
    const BatchResult result = batch({"evaluate", basin.path("none.mdb"), "--simulation", "alder"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("The basin can't be read"));
}

TEST(EvaluatedMonths, ReadAndPrintedAreTheSame) {
    for (const char* months : {"4-9", "1-3,10-12", "5", "1,3,5-6"}) {
        const ReadMonths read = read_months(months);
        EXPECT_EQ(read.problem, "") << months;
        EXPECT_EQ(months_text(read.months), months);
    }
    EXPECT_EQ(months_text(read_months("4-6,5-9,4").months), "4-9");
    EXPECT_EQ(months_text(all_months()), "all");
}

TEST(EvaluatedSample, TheManualShowsWhatTheCommandPrints) {
    const TemporaryFolder folder;
    const std::filesystem::path file = folder / "alder.mdb";
    std::filesystem::copy_file(std::filesystem::path{NIVORA_PROGRAM_FOLDER} / "samples/ellervane.mdb", file);
    const std::string chapter =
        file_bytes(std::filesystem::path{NIVORA_SOURCE_DIR} / "docs/manual/26-evaluating.md");
    for (const std::vector<std::string>& more : {std::vector<std::string>{}, {"--months", "4-9"}}) {
        std::vector<std::string> arguments{"evaluate", file.string(), "--simulation", "ellervane-1997-98"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        EXPECT_THAT(chapter, HasSubstr("```\n" + printed(arguments) + "```\n"));
    }
}

}  // namespace
}  // namespace nivora
