// What the commands of studies say about input that they can't work with.
#include "store/basin_opening.h"
#include "tests/batch/study_call.h"
#include "tests/support/full_disk.h"
#include "tests/support/other_program.h"

#include <gmock/gmock.h>

#include <chrono>

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::Not;
using RefusalJson = nlohmann::json;

class StudyRefusals : public StudyFolder {
protected:
    /// Both commands that run a simulation over ranges.
    [[nodiscard]] std::vector<BatchResult> searched(const std::string& range,
                                                    const std::vector<std::string>& more = {}) const {
        std::vector<std::string> options{"--free", range};
        options.insert(options.end(), more.begin(), more.end());
        std::vector<std::string> calibrate = options;
        calibrate.insert(calibrate.end(), {"--evaluations", "20"});
        std::vector<std::string> sample = options;
        sample.insert(sample.end(), {"--runs", "20", "--out", path("refused.csv")});
        return {study("calibrate", calibrate), study("sample", sample)};
    }
    void expect_both_refused(const std::string& range, const std::string& words,
                             const std::vector<std::string>& more = {}, int status = 1) const {
        for (const BatchResult& result : searched(range, more)) expect_refused(result, words, status);
        EXPECT_FALSE(has("refused.csv")) << range;
    }
    void measure_runoff(const std::string& value, const std::string& where = "1") const {
        BasinDatabase{basin(), Access::ReadWrite}.execute("UPDATE PhysicalData SET Runoff = " + value +
                                                          " WHERE " + where);
    }

    static constexpr const char* k_range = "Degree Day Factors:multiply:0.7..1.4:All";
};

TEST_F(StudyRefusals, ARangeHasTwoFiniteNumbersTheLowerOneFirst) {
    expect_both_refused("An:multiply:1.4..0.7:All", "'1.4..0.7' is reversed: the lower number comes first");
    for (const std::string limits : {"", "..", "0.7..", "..1.4", "0.7-1.4"})
        expect_both_refused("An:multiply:" + limits + ":All",
                            "'" + limits + "' is not a range such as 0.7..1.4");
    for (const std::string limit : {"inf", "nan", "1e999"})
        expect_both_refused("An:multiply:0.." + limit + ":All", "'" + limit + "' is not a finite number");
    expect_both_refused("", "is not of the form VARIABLE:ACTION:LOW..HIGH:ZONES");
    expect_both_refused("Wind:add:0..1:All", "'Wind' is not a variable that a study can change");
}

TEST_F(StudyRefusals, ARangeWithoutWidthIsThePlainRun) {
    const auto results = searched("An:multiply:1..1:All");
    for (const BatchResult& result : results) EXPECT_EQ(result.status, 0) << result.err;
    // Without a choice one evaluation is enough.
    EXPECT_THAT(results[0].out, HasSubstr(", 1 evaluations\n"));
    EXPECT_THAT(results[0].out, HasSubstr("0.8567138     0.8567138\n"));
    EXPECT_THAT(results[1].out,
                HasSubstr("KGE                      0.8567138     0.8567138     0.8567138\n"));
}

TEST_F(StudyRefusals, AVariableThatIsBasinwideCannotBeChangedByZone) {
    expect_both_refused("Precip:multiply:0.9..1.1:A",
                        "the simulation has 'Precipitation' basinwide: its zones must be All");
    expect_both_refused("Tmax:add:-1..1:All", "the simulation does not use 'Maximum Temperature'");
    expect_both_refused("An:multiply:0.9..1.1:P", "the basin has no zone 'P'");
}

TEST_F(StudyRefusals, WithoutAMeasuredDayThereIsNothingToFit) {
    measure_runoff("NULL", "Date > 35800");
    expect_both_refused(k_range,
                        "None of the days to fit has a measured discharge. Choose other days with --fit.",
                        {"--fit", "1998-06-01..1998-09-30"});
    measure_runoff("NULL");
    expect_both_refused(k_range, "None of the days to fit has a measured discharge");
}

TEST_F(StudyRefusals, AConstantMeasuredDischargeHasNoEfficiency) {
    for (const char* value : {"5", "0"}) {
        measure_runoff(value);
        const auto results = searched(k_range);
        expect_refused(results[0], "is not defined. Choose other days with --fit.");
        // A sample only reports its measures: those that there are.
        EXPECT_EQ(results[1].status, 0) << results[1].err;
        EXPECT_THAT(results[1].out, HasSubstr("20 of 20 runs, 20 kept\n"));
        EXPECT_THAT(results[1].out,
                    HasSubstr("KGE                              -             -             -\n"));
        EXPECT_THAT(results[1].out, Not(HasSubstr("RMSE                             -")));
    }
    expect_refused(study("calibrate", {"--free", k_range, "--objective", "RMSE", "--objective", "NSE"}),
                   "so that 'NSE' is not defined");
    EXPECT_EQ(study("calibrate", {"--free", k_range, "--objective", "RMSE", "--evaluations", "20"}).status,
              0);
}

TEST_F(StudyRefusals, ZerosUnderALogarithmAreLifted) {
    measure_runoff("0", "Date % 3 = 0");
    const BatchResult result = study("calibrate", {"--free", k_range, "--evaluations", "50", "--objective",
                                                   "NSE of logs", "--out", path("logs.json")});
    EXPECT_EQ(result.status, 0) << result.err;
    const RefusalJson json = RefusalJson::parse(content("logs.json"));
    const double found = json["sets"][0]["fit"]["NSE of logs"].get<double>();
    EXPECT_GE(found, json["unchanged"]["fit"]["NSE of logs"].get<double>());
    EXPECT_LT(found, 1.0);
}

TEST_F(StudyRefusals, WhereEveryRunFailsNothingIsFoundAndNothingKept) {
    const auto results = searched("An:multiply:1e200..1e300:All");
    expect_refused(results[0], "Nothing found: No numbers of these ranges gave a run");
    EXPECT_EQ(results[1].status, 0) << results[1].err;
    EXPECT_THAT(results[1].out, HasSubstr("20 of 20 runs, of which 20 gave no measure, 0 kept"));
    expect_refused(study("sample", {"--free", "An:multiply:1e200..1e300:All", "--runs", "20", "--out",
                                    path("refused.csv"), "--resume", "--bands", path("bands.csv")}),
                   "No run was kept, so that there are no bands");
    EXPECT_FALSE(has("bands.csv"));
}

TEST_F(StudyRefusals, ABasinThatAnotherProgramWritesIsRefusedAfterTheWait) {
    const OtherProgram other{[&](const std::function<void()>& hold) {
        const OpenBasin held = open_to_write(basin(), std::chrono::seconds{10});
        hold();
    }};
    const std::string words = "is in use by another program, which did not finish within 0 seconds";
    expect_both_refused(k_range, words, {"--wait", "0"});
    expect_refused(study("evaluate", {"--wait", "0"}), words);
}

TEST_F(StudyRefusals, ThreadsAreFromOneToTheMost) {
    for (const char* threads : {"0", "10000", "-1", "many", "1.5"})
        expect_both_refused(k_range, "--threads", {"--threads", threads}, 2);
}

TEST_F(StudyRefusals, AFullDiskIsReportedAndLeavesTheStateOfASearch) {
    const std::vector<std::string> search{"--free", k_range, "--evaluations",
                                          "400",    "--out", path("fit.json")};
    BatchResult result;
    {
        const FullDisk full{4'000};
        result = study("calibrate", search);
    }
    expect_refused(result, "is the disk full?");
    EXPECT_FALSE(has("fit.json"));
    std::vector<std::string> resumed = search;
    resumed.emplace_back("--resume");
    result = study("calibrate", resumed);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.err, HasSubstr("evaluations of the former search are taken over"));
    std::vector<std::string> whole = search;
    whole.back() = path("whole.json");
    EXPECT_EQ(study("calibrate", whole).status, 0);
    EXPECT_EQ(content("fit.json"), content("whole.json"));
    {
        const FullDisk full{0};
        result = study("sample", {"--free", k_range, "--runs", "20", "--out", path("none.csv")});
    }
    expect_refused(result, "full");
}

TEST_F(StudyRefusals, ANameThatExistsIsRefusedBeforeTheSearch) {
    const std::string before = content("sample.mdb");
    const BatchResult result =
        study("calibrate", {"--free", k_range, "--evaluations", "100000000", "--save-as", k_simulation});
    expect_refused(result, "already in use");
    EXPECT_EQ(content("sample.mdb"), before);
}

TEST_F(StudyRefusals, WhatCannotBeStoredIsStoredLaterWithoutANewSearch) {
    namespace fs = std::filesystem;
    std::vector<std::string> search{"--free", k_range,        "--evaluations", "200",
                                    "--out",  path("f.json"), "--save-as",     "fitted"};
    fs::permissions(basin(), fs::perms::owner_read);
    const BatchResult refused = study("calibrate", search);
    expect_refused(refused, "with --resume stores what was found without a new search");
    EXPECT_TRUE(has("f.json"));
    EXPECT_TRUE(has("f.json.state"));
    fs::permissions(basin(), fs::perms::owner_read | fs::perms::owner_write);
    search.emplace_back("--resume");
    const BatchResult result = study("calibrate", search);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.err, HasSubstr("200 evaluations of the former search are taken over"));
    EXPECT_THAT(result.out, HasSubstr("Stored what was found as the simulation 'fitted'"));
    EXPECT_FALSE(has("f.json.state"));
}

TEST_F(StudyRefusals, ASearchThatGoesOnSaysWhatHasChanged) {
    const auto search = [&](const std::vector<std::string>& more) {
        std::vector<std::string> options{"--free", k_range, "--out", path("f.json")};
        options.insert(options.end(), more.begin(), more.end());
        return study("calibrate", options);
    };
    {
        const FullDisk full{3'000};
        EXPECT_EQ(search({"--evaluations", "400"}).status, 1);
    }
    const std::string state = content("f.json.state");
    expect_refused(search({"--evaluations", "500", "--resume"}), "or use these: evaluations 400 [");
    expect_refused(search({"--evaluations", "400", "--seed", "2", "--no-snow", "--resume"}),
                   "or use these: no snow false, seed 1 [");
    BasinDatabase{basin(), Access::ReadWrite}.execute("UPDATE [ellervane-1997-98] SET AN = AN + 0.01");
    expect_refused(search({"--evaluations", "400", "--resume"}),
                   "begun with: its parameters have changed; begin anew without --resume");
    BasinDatabase{basin(), Access::ReadWrite}.execute("UPDATE PhysicalData SET Precip = Precip + 0.01");
    expect_refused(search({"--evaluations", "400", "--resume"}), "its variables, parameters have changed");
    EXPECT_EQ(content("f.json.state"), state);
}

TEST_F(StudyRefusals, AnEvaluationOfARunThatFailsSaysWhy) {
    BasinDatabase{basin(), Access::ReadWrite}.execute("UPDATE [ellervane-1997-98] SET AN = NULL");
    const BatchResult result = study("evaluate", {"--run"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("AN"));
}

}  // namespace
}  // namespace nivora
