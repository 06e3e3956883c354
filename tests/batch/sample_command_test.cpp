// The command that runs a simulation many times over ranges, and the one that puts parts together.
#include "engine/results_store.h"
#include "tests/batch/study_call.h"
#include "tests/support/full_disk.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class SampleCommandTest : public StudyFolder {
protected:
    [[nodiscard]] BatchResult sample(const std::string& out, std::vector<std::string> more) const {
        more.insert(more.end(), {"--free", "Degree Day Factors:multiply:0.7..1.4:All", "--free",
                                 "Critical Temperature:add:-1..1:All", "--out", path(out)});
        return study("sample", more);
    }
    void expect_done(const BatchResult& result) const { EXPECT_EQ(result.status, 0) << result.err; }
    [[nodiscard]] std::vector<std::string> lines(const std::string& name) const {
        return lines_of(content(name));
    }
};

std::vector<std::string> fields_of(const std::string& line) {
    std::vector<std::string> fields;
    std::istringstream stream{line};
    for (std::string field; std::getline(stream, field, ',');) fields.push_back(field);
    return fields;
}

TEST_F(SampleCommandTest, WritesALineForEachRun) {
    const std::string before = content("sample.mdb");
    const BatchResult result = sample("runs.csv", {"--runs", "50"});
    expect_done(result);
    EXPECT_EQ(content("sample.mdb"), before);
    EXPECT_THAT(result.out, StartsWith("Sample of simulation 'ellervane-1997-98', 50 of 50 runs, 50 kept\n"));
    const auto all = lines("runs.csv");
    ASSERT_EQ(all.size(), 52U);
    EXPECT_THAT(all[0], StartsWith("# nivora sample {\"program\":\"Nivora "));
    EXPECT_EQ(all[1],
              "Run,\"Degree Day Factors:multiply:0.7..1.4:All\",\"Critical "
              "Temperature:add:-1..1:All\",R2,NSE,NSE of "
              "logs,KGE,modified KGE,RMSE,MAE,volume difference");
    for (std::size_t run = 0; run < 50; ++run) {
        const auto fields = fields_of(all[run + 2]);
        ASSERT_EQ(fields.size(), 11U);
        EXPECT_EQ(fields[0], std::to_string(run));
        EXPECT_GE(std::stod(fields[1]), 0.7);
        EXPECT_LE(std::stod(fields[1]), 1.4);
        EXPECT_GE(std::stod(fields[2]), -1.0);
        EXPECT_LE(std::stod(fields[2]), 1.0);
    }
}

TEST_F(SampleCommandTest, OneRunWithoutWidthIsThePlainRun) {
    const BatchResult result = study("sample", {"--free", "An:multiply:1..1:All", "--runs", "1", "--out",
                                                path("one.csv"), "--bands", path("bands.csv")});
    expect_done(result);
    EXPECT_NEAR(std::stod(fields_of(lines("one.csv")[2])[2]), 0.9301775, 1e-6);
    printed({"run", basin(), "--simulation", k_simulation, "--kind", "year-round"});
    BasinDatabase database{basin(), Access::ReadOnly};
    const SimResults results = load_results(database);
    for (std::size_t row = 0; row < results.size(); ++row) {
        if (results.Zone[row] != 1) continue;
        const auto fields = fields_of(lines("bands.csv")[row + 1]);
        for (std::size_t i = 2; i < 7; ++i) EXPECT_EQ(std::stod(fields[i]), results.DailyQ[row]);
    }
}

TEST_F(SampleCommandTest, KeepsTheRunsThatReachAMeasure) {
    const BatchResult result =
        sample("runs.csv", {"--runs", "200", "--keep", "NSE>0.9", "--keep", "volume difference<8"});
    expect_done(result);
    std::size_t kept = 0;
    const auto all = lines("runs.csv");
    for (std::size_t run = 0; run < 200; ++run) {
        const auto fields = fields_of(all[run + 2]);
        if (std::stod(fields[4]) > 0.9 && std::stod(fields[10]) < 8.0) ++kept;
    }
    EXPECT_GT(kept, 0U);
    EXPECT_LT(kept, 200U);
    EXPECT_THAT(result.out, HasSubstr(", " + std::to_string(kept) + " kept\n"));
    expect_refused(sample("x.csv", {"--keep", "beauty>1"}), "'beauty' is not a measure", 2);
    expect_refused(sample("x.csv", {"--keep", "NSE=1"}), "is not a rule such as KGE>0.7", 2);
    expect_refused(sample("x.csv", {"--keep", "NSE>high"}), "'high' is not a number", 2);
    expect_refused(sample("none.csv", {"--runs", "10", "--keep", "NSE>1.5", "--bands", path("b.csv")}),
                   "No bands");
}

TEST_F(SampleCommandTest, BandsHaveADayALineAndTellHowManyMeasuredDaysLieWithin) {
    const BatchResult result = sample("runs.csv", {"--runs", "40", "--bands", path("bands.csv")});
    expect_done(result);
    const auto all = lines("bands.csv");
    ASSERT_EQ(all.size(), 366U);
    EXPECT_EQ(all[0], "Date,Measured,Q05,Q25,Q50,Q75,Q95");
    std::size_t within = 0;
    for (std::size_t day = 1; day < all.size(); ++day) {
        const auto fields = fields_of(all[day]);
        for (std::size_t i = 3; i < 7; ++i) EXPECT_LE(std::stod(fields[i - 1]), std::stod(fields[i]));
        const double measured = std::stod(fields[1]);
        if (measured >= std::stod(fields[2]) && measured <= std::stod(fields[6])) ++within;
    }
    EXPECT_THAT(result.out,
                HasSubstr("Bands of 40 runs: " + std::to_string(within) + " of 365 measured days"));
}

TEST_F(SampleCommandTest, PartsTogetherAreTheWholeByteForByte) {
    expect_done(sample("whole.csv", {"--runs", "100"}));
    for (const char* part : {"3", "1", "2"})
        expect_done(
            sample(std::string{"part"} + part, {"--runs", "100", "--share", std::string{part} + "/3"}));
    printed({"gather", path("part3"), path("part1"), path("part2"), "--out", path("all.csv")});
    EXPECT_EQ(content("all.csv"), content("whole.csv"));
    // The bands come from the whole.
    expect_done(sample("all.csv", {"--runs", "100", "--resume", "--bands", path("a.csv")}));
    expect_done(sample("other.csv", {"--runs", "100", "--bands", path("b.csv")}));
    EXPECT_EQ(content("a.csv"), content("b.csv"));

    const auto gather = [&](const std::vector<std::string>& names) {
        std::vector<std::string> arguments{"gather"};
        for (const std::string& name : names) arguments.push_back(path(name));
        arguments.insert(arguments.end(), {"--out", path("wrong.csv")});
        return batch(arguments);
    };
    expect_refused(gather({"part1", "part3"}), "the runs 34 to 66 is missing");
    expect_refused(gather({"part1", "part2"}), "the runs 67 to 99 is missing");
    expect_refused(gather({"part1", "part2", "part2", "part3"}), "these runs are there twice");
    expect_refused(gather({"part1", "sample.mdb"}), "sample.mdb");
    expect_done(sample("seed.csv", {"--runs", "100", "--share", "2/3", "--seed", "9"}));
    expect_refused(gather({"part1", "seed.csv", "part3"}), "another sample");
    const std::string cut = content("part2");
    std::ofstream{path("part2"), std::ios::binary} << cut.substr(0, cut.size() - 5);
    expect_refused(gather({"part1", "part2", "part3"}), "not complete: 32 of its 33 runs");
    EXPECT_FALSE(has("wrong.csv"));
    expect_refused(sample("x.csv", {"--share", "4/3"}), "is not a share", 2);
    expect_refused(sample("x.csv", {"--share", "1/3", "--bands", path("b.csv")}),
                   "A part of a sample has no bands");
}

TEST_F(SampleCommandTest, GoesOnWhereItWasStopped) {
    expect_done(sample("whole.csv", {"--runs", "60"}));
    const std::string whole = content("whole.csv");
    // Cut within a line, as a killed program may leave it.
    std::ofstream{path("cut.csv"), std::ios::binary} << whole.substr(0, whole.size() / 2);
    const BatchResult result = sample("cut.csv", {"--runs", "60", "--resume"});
    expect_done(result);
    EXPECT_THAT(result.err, HasSubstr("runs are taken over"));
    EXPECT_EQ(content("cut.csv"), whole);
    expect_refused(sample("cut.csv", {"--runs", "61", "--resume"}), "the options are not those");
    expect_refused(sample("cut.csv", {"--runs", "60", "--seed", "2", "--resume"}),
                   "the options are not those");
    expect_refused(sample("cut.csv", {"--runs", "60", "--sensitivity", "--resume"}),
                   "the options are not those");
    BasinDatabase{basin(), Access::ReadWrite}.execute("UPDATE PhysicalData SET Precip = Precip + 0.01");
    expect_refused(sample("cut.csv", {"--runs", "60", "--resume"}), "the basin is not the one");
    EXPECT_EQ(content("cut.csv"), whole);
    expect_refused(sample("none.csv", {"--runs", "60", "--resume"}), "none.csv");
    expect_refused(sample("sample.mdb", {"--runs", "60", "--resume"}), "sample.mdb");
}

TEST_F(SampleCommandTest, PrintsHowMuchEachRangeMatters) {
    const BatchResult result = sample("runs.csv", {"--runs", "400", "--sensitivity"});
    expect_done(result);
    EXPECT_THAT(result.out, HasSubstr("400 of 400 runs"));
    EXPECT_THAT(result.out,
                HasSubstr("(1) Degree Day Factors:multiply:0.7..1.4:All\n(2) Critical Temperature"));
    EXPECT_THAT(result.out, HasSubstr("First-order index"));
    EXPECT_THAT(result.out, HasSubstr("Total index"));
    EXPECT_EQ(lines("runs.csv").size(), 402U);
    expect_refused(sample("x.csv", {"--runs", "7", "--sensitivity"}), "in groups of 4: at least 8");
}

TEST_F(SampleCommandTest, RunsThatFailHaveNoMeasures) {
    const BatchResult result =
        study("sample", {"--free", "An:multiply:1e200..1e300:All", "--runs", "3", "--out", path("runs.csv")});
    expect_done(result);
    EXPECT_THAT(result.out, HasSubstr("3 of 3 runs, of which 3 gave no measure, 0 kept"));
    EXPECT_THAT(lines("runs.csv")[2], testing::EndsWith(",,,,,,,,"));
}

TEST_F(SampleCommandTest, NeverWritesOverABasinOrItsOwnRuns) {
    const std::string before = content("sample.mdb");
    EXPECT_EQ(sample("sample.mdb", {"--runs", "5"}).status, 1);
    EXPECT_EQ(sample("runs.csv", {"--runs", "5", "--bands", basin()}).status, 1);
    EXPECT_EQ(content("sample.mdb"), before);
    EXPECT_EQ(sample("same.csv", {"--runs", "5", "--bands", path("same.csv")}).status, 1);
}

TEST_F(SampleCommandTest, SaysThatTheDiskIsFull) {
    expect_done(sample("runs.csv", {"--runs", "50"}));
    const std::string whole = content("runs.csv");
    {
        const FullDisk full{whole.size() / 2};
        expect_refused(sample("part.csv", {"--runs", "50"}), "is the disk full?");
    }
    EXPECT_EQ(content("part.csv"), whole.substr(0, content("part.csv").size()));
    expect_done(sample("part.csv", {"--runs", "50", "--resume"}));
    EXPECT_EQ(content("part.csv"), whole);
    const FullDisk full{100};
    expect_refused(sample("runs.csv", {"--runs", "50"}), "the disk may be full");
    EXPECT_EQ(content("runs.csv"), whole);
}

}  // namespace
}  // namespace nivora
