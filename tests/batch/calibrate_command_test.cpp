// The command that searches the numbers which make a simulation meet the measured discharge best.
#include "tests/batch/study_call.h"

#include <gmock/gmock.h>

#include <sys/wait.h>

#include <cstdlib>

namespace nivora {
namespace {

using testing::HasSubstr;
using FoundJson = nlohmann::json;

const std::string k_factor = "Degree Day Factors:multiply:0.7..1.4:All";
const std::string k_limit = "Critical Temperature:add:-1..1:All";

class CalibrateCommandTest : public StudyFolder {
protected:
    [[nodiscard]] BatchResult calibrate(std::vector<std::string> more,
                                        const std::vector<std::string>& free = {k_factor, k_limit}) const {
        for (const std::string& range : free) more.insert(more.end(), {"--free", range});
        return study("calibrate", more);
    }
    /// What a search wrote as JSON.
    [[nodiscard]] FoundJson found(std::vector<std::string> more,
                                  const std::vector<std::string>& free = {k_factor, k_limit}) const {
        more.insert(more.end(), {"--out", path("fit.json")});
        const BatchResult result = calibrate(more, free);
        EXPECT_EQ(result.status, 0) << result.err;
        return result.status == 0 ? FoundJson::parse(content("fit.json")) : FoundJson{};
    }
    /// R² as a run of the basin prints it.
    [[nodiscard]] double run_r2(const std::string& simulation) const {
        return FoundJson::parse(printed(
            {"run", basin(), "--simulation", simulation, "--kind", "year-round", "--json"}))["CoefficientR2"]
            .get<double>();
    }
};

TEST_F(CalibrateCommandTest, FindsABetterSetAndLeavesTheBasin) {
    const std::string before = content("sample.mdb");
    const FoundJson json = found({"--objective", "NSE", "--evaluations", "1000"});
    EXPECT_EQ(content("sample.mdb"), before);
    EXPECT_EQ(json["evaluations"], 1000);
    EXPECT_EQ(json["fitDays"], 365);
    EXPECT_EQ(json["stopped"], false);
    EXPECT_EQ(json["options"]["free"], (FoundJson{k_factor, k_limit}));
    ASSERT_EQ(json["sets"].size(), 1U);
    EXPECT_NEAR(json["unchanged"]["fit"]["NSE"].get<double>(), 0.9301775, 1e-6);
    EXPECT_GT(json["sets"][0]["fit"]["NSE"].get<double>(), 0.931);
    EXPECT_FALSE(json["sets"][0].contains("check"));
    EXPECT_FALSE(has("fit.json.state"));
}

TEST_F(CalibrateCommandTest, PrintsRangesAndMeasures) {
    const BatchResult result = calibrate(
        {"--evaluations", "200", "--fit", "1998-04-01..1998-09-30", "--check", "1997-10-01..1998-03-31"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("Calibration of simulation 'ellervane-1997-98', 200 evaluations\n"
                                      "Fit: 183 days with a measured discharge\n"
                                      "Check: 182 days with a measured discharge\n"));
    EXPECT_THAT(result.out, HasSubstr("unchanged         found\n"));
    EXPECT_THAT(result.out, HasSubstr("KGE, days to fit"));
    EXPECT_THAT(result.out, HasSubstr("KGE, days to check"));
}

TEST_F(CalibrateCommandTest, ARunOfTheStoredSimulationHasTheMeasureThatWasFound) {
    const std::vector<std::string> all{k_factor,
                                       k_limit,
                                       "Recession Coefficient x:multiply:0.9..1.05:All",
                                       "Recession Coefficient y:multiply:0.5..1.5:All:1997-11-01..1998-06-30",
                                       "RCA:set:0..1:B",
                                       "Temperature Lapse Rate:multiply:0.8..1.2:All",
                                       "Lag Time:add:-6..6:All",
                                       "Cs:multiply:0.7..1.2:All",
                                       "Cr:add:-0.2..0.2:All"};
    const FoundJson json =
        found({"--objective", "R2", "--evaluations", "600", "--save-as", "fitted", "--seed", "3"}, all);
    const double r2 = json["sets"][0]["fit"]["R2"].get<double>();
    EXPECT_EQ(static_cast<float>(run_r2("fitted")), static_cast<float>(r2));
    EXPECT_GT(r2, run_r2(k_simulation));
    // The first simulation is as it was.
    EXPECT_NEAR(run_r2(k_simulation), 0.9301775, 1e-6);
}

TEST_F(CalibrateCommandTest, StoresNoSimulationWhereItCannot) {
    const std::string before = content("sample.mdb");
    expect_refused(calibrate({"--save-as", "ELLERVANE-1997-98"}), "already in use");
    expect_refused(calibrate({"--save-as", "PhysicalData"}), "re-enter");
    expect_refused(calibrate({"--save-as", "a.b"}), "--save-as a.b");
    expect_refused(calibrate({"--save-as", "wetter"}, {"Precip:multiply:1..2:All"}),
                   "'Precipitation' belongs to the basin");
    EXPECT_EQ(content("sample.mdb"), before);
}

TEST_F(CalibrateCommandTest, SeveralObjectivesGiveAFront) {
    const FoundJson json =
        found({"--objective", "KGE", "--objective", "nse of LOGS", "--evaluations", "1200"});
    ASSERT_GT(json["sets"].size(), 1U);
    double kge = 2.0;
    double logs = -100.0;
    for (const FoundJson& set : json["sets"]) {
        EXPECT_LT(set["fit"]["KGE"].get<double>(), kge);
        EXPECT_GT(set["fit"]["NSE of logs"].get<double>(), logs);
        kge = set["fit"]["KGE"].get<double>();
        logs = set["fit"]["NSE of logs"].get<double>();
    }
    const BatchResult result =
        calibrate({"--objective", "KGE", "--objective", "MAE", "--evaluations", "100"});
    EXPECT_THAT(result.out, HasSubstr("(1) " + k_factor));
    EXPECT_THAT(result.out, HasSubstr("Set "));
}

TEST_F(CalibrateCommandTest, FitsAndChecksFurtherSimulations) {
    printed({"simulations", basin(), "--duplicate", k_simulation, "--as", "twin"});
    const std::string twin = basin() + ":twin";
    const FoundJson json =
        found({"--objective", "NSE", "--evaluations", "100", "--with", twin, "--check-with", twin});
    EXPECT_EQ(json["fitDays"], 730);
    EXPECT_EQ(json["checkDays"], 365);
    // Twice the same days have the measure of one of them.
    EXPECT_NEAR(json["sets"][0]["fit"]["NSE"].get<double>(), json["sets"][0]["check"]["NSE"].get<double>(),
                1e-9);
    expect_refused(calibrate({"--with", basin() + ":nobody"}), "nobody");
    expect_refused(calibrate({"--with", path("none.mdb") + ":twin"}), "none.mdb");
    expect_refused(calibrate({"--with", "twin"}), "not of the form BASIN.mdb:SIMULATION", 2);
}

TEST_F(CalibrateCommandTest, RefusesOptionsBeforeTheSearch) {
    expect_refused(calibrate({}, {"An:multiply:2..1:All"}), "the range '2..1' is reversed");
    expect_refused(calibrate({}, {"An:multiply:..1:All"}), "is not a range");
    expect_refused(calibrate({}, {"An:multiply:1..inf:All"}), "number");
    expect_refused(calibrate({}, {"Xcoeff:multiply:1..2:A"}), "basinwide");
    expect_refused(calibrate({"--objective", "beauty"}), "'beauty' is not an objective. There are: R2, NSE");
    expect_refused(calibrate({"--objective", "KGE", "--objective", "kge"}), "given twice");
    expect_refused(calibrate({"--fit", "1990-01-01..1990-02-01"}), "is not within the simulation");
    expect_refused(calibrate({"--check", "1997-10-01..1998-10-01"}), "--check: ");
    expect_refused(calibrate({"--fit", "1998-02-01..1998-01-01"}), "is not a period", 2);
    expect_refused(calibrate({"--threads", "0"}), "--threads", 2);
    expect_refused(calibrate({"--threads", "10000"}), "--threads", 2);
    expect_refused(calibrate({"--evaluations", "0"}), "--evaluations", 2);
    expect_refused(calibrate({"--resume"}), "--out", 2);
    expect_refused(batch({"calibrate", basin(), "--simulation", k_simulation}), "--free", 2);
    expect_refused(batch({"calibrate", basin(), "--simulation", "nobody", "--free", k_factor}), "nobody");
}

TEST_F(CalibrateCommandTest, NeedsAMeasuredDischargeThatTheMeasureIsDefinedFor) {
    BasinDatabase{basin(), Access::ReadWrite}.execute("UPDATE PhysicalData SET Runoff = 5");
    expect_refused(calibrate({"--evaluations", "10"}),
                   "constant on the days to fit, so that 'KGE' is not defined");
    EXPECT_EQ(calibrate({"--evaluations", "10", "--objective", "RMSE"}).status, 0);
    BasinDatabase{basin(), Access::ReadWrite}.execute("UPDATE PhysicalData SET Runoff = NULL");
    expect_refused(calibrate({"--evaluations", "10", "--objective", "RMSE"}),
                   "None of the days to fit has a measured discharge");
}

TEST_F(CalibrateCommandTest, CountsMissingDays) {
    BasinDatabase{basin(), Access::ReadWrite}.execute(
        "UPDATE PhysicalData SET Runoff = NULL WHERE Date IN (SELECT DISTINCT Date FROM "
        "[ellervane-1997-98] LIMIT 10)");
    const FoundJson json = found({"--evaluations", "20"});
    EXPECT_EQ(json["fitDays"], 355);
    EXPECT_EQ(json["fitDaysLeftOut"], 10);
}

TEST_F(CalibrateCommandTest, SaysWhereNoRunWorks) {
    const BatchResult result = calibrate({"--evaluations", "20"}, {"An:multiply:1e200..1e300:All"});
    expect_refused(result, "Nothing found");
    EXPECT_THAT(result.out, HasSubstr("20 evaluations, of which 20 gave no result"));
}

TEST_F(CalibrateCommandTest, TheResultDoesNotDependOnTheThreads) {
    for (const char* threads : {"1", "2", "5"}) {
        EXPECT_EQ(calibrate({"--evaluations", "2500", "--threads", threads, "--out", path(threads)}).status,
                  0);
        EXPECT_EQ(content(threads), content("1"));
    }
    EXPECT_EQ(calibrate({"--evaluations", "2500", "--seed", "2", "--out", path("other")}).status, 0);
    EXPECT_NE(content("other"), content("1"));
}

TEST_F(CalibrateCommandTest, NeverWritesOverABasin) {
    const std::string before = content("sample.mdb");
    EXPECT_EQ(calibrate({"--evaluations", "5", "--out", basin()}).status, 1);
    std::filesystem::copy_file(basin(), path("second.mdb"));
    EXPECT_EQ(calibrate({"--evaluations", "5", "--out", path("second.mdb")}).status, 1);
    EXPECT_EQ(content("sample.mdb"), before);
    EXPECT_EQ(content("second.mdb"), before);
}

TEST_F(CalibrateCommandTest, RefusesAResultThatCannotBeWrittenBeforeTheSearch) {
    expect_refused(calibrate({"--evaluations", "100000000", "--out", path("none/fit.json")}),
                   "none/fit.json");
    std::filesystem::create_directory(path("folder"));
    expect_refused(calibrate({"--evaluations", "100000000", "--out", path("folder")}), "folder");
}

TEST_F(CalibrateCommandTest, RefusesToGoOnWithAnotherSearch) {
    expect_refused(calibrate({"--out", path("fit.json"), "--resume"}), "fit.json.state");
    std::ofstream{path("fit.json.state")} << "nivora search 1\nother\n";
    expect_refused(calibrate({"--out", path("fit.json"), "--resume"}), "the basin is not the one");
}

TEST_F(CalibrateCommandTest, SaysThatAFileOfTheProgramIsMissing) {
    std::filesystem::copy_file(NIVORA_BATCH_PROGRAM, path("nivora-batch"));
    const std::string command = "'" + path("nivora-batch") + "' calibrate '" + basin() + "' --simulation " +
                                k_simulation + " --free '" + k_factor + "' >'" + path("out") + "' 2>'" +
                                path("err") + "'";
    EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 1);
    EXPECT_THAT(content("err"), HasSubstr("nivora-search.so' can't be loaded"));
}

}  // namespace
}  // namespace nivora
