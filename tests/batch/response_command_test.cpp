// The command that evaluates pairs of climate changes.
#include "base/iso_date.h"
#include "batch/response_options.h"
#include "store/basin_opening.h"
#include "tests/batch/run_basin.h"
#include "tests/support/full_disk.h"
#include "tests/support/other_program.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using ResponseJson = nlohmann::json;

class ResponseCommandTest : public YearBasinTest {
protected:
    [[nodiscard]] BatchResult response(const std::vector<std::string>& more,
                                       const std::string& winter_end = "1996-03-31") const {
        std::vector<std::string> arguments{"response", file(),         "--simulation",
                                           "alder",    "--winter-end", winter_end};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return batch(arguments);
    }
    /// The JSON of an evaluation of a scenario.
    [[nodiscard]] std::string climate_json(const std::string& scenario) const {
        return climate({"--json"}, "alder", scenario).out;
    }
    [[nodiscard]] BatchResult pairs(const std::string& temperature, const std::string& precipitation,
                                    std::vector<std::string> more = {}) const {
        more.insert(more.begin(), {"--temperature=" + temperature, "--precipitation", precipitation});
        return response(more);
    }
};

TEST_F(ResponseCommandTest, EachPairGivesWhatAScenarioOfItGives) {
    EXPECT_EQ(
        batch({"scenario", file(), "--simulation", "alder", "--name", "both", "--winter-end", "1996-03-31",
               "--edit", "1:1996-01-01:1996-12-31:0:1.5:0", "--edit", "2:1996-01-01:1996-12-31:1:0.9:0"})
            .status,
        0);
    const std::string before = basin.bytes();
    const BatchResult result = pairs("0,1.5", "1,0.9", {"--json"});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(basin.bytes(), before);
    const ResponseJson json = ResponseJson::parse(result.out);
    ASSERT_EQ(json["points"].size(), 4U);
    EXPECT_EQ(json["winterEnd"], "1996-03-31");
    const ResponseJson& point = json["points"][3];
    EXPECT_EQ(point["temperature"], 1.5);
    EXPECT_FLOAT_EQ(point["precipitation"].get<float>(), 0.9F);
    const ResponseJson climate = ResponseJson::parse(climate_json("both"));
    EXPECT_EQ(point["runoff"], climate["summary"]["ClimateAffected"]);
    EXPECT_EQ(json["present"]["runoff"], climate["summary"]["Computed"]);
    EXPECT_EQ(point["notes"].size(), climate["notes"].size());
}

TEST_F(ResponseCommandTest, TheNumberOfThreadsDoesNotShow) {
    const std::string one = pairs("-1..3:0.5", "0.8..1.2:0.1", {"--threads", "1"}).out;
    EXPECT_THAT(one, HasSubstr("present climate"));
    // Head and present climate, and a line for each pair; the dates of snow; the differences.
    constexpr std::size_t k_pairs = 9U * 5U;
    EXPECT_EQ(lines_of(one).size(), 6U + k_pairs + 5U + k_pairs + 4U + k_pairs);
    for (const char* threads : {"2", "7"})
        EXPECT_EQ(pairs("-1..3:0.5", "0.8..1.2:0.1", {"--threads", threads}).out, one);
}

TEST_F(ResponseCommandTest, APairThatIsNotDoneHasItsReason) {
    basin.execute("UPDATE PhysicalData SET SCA = NULL WHERE Date = 35300");
    const BatchResult result = pairs("0", "1");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.out, HasSubstr("not done: "));
    const ResponseJson json = ResponseJson::parse(pairs("0", "1", {"--json"}).out);
    EXPECT_FALSE(json["points"][0]["done"].get<bool>());
    EXPECT_NE(json["points"][0]["problem"], "");
    EXPECT_TRUE(json["present"].is_null());
}

TEST_F(ResponseCommandTest, WhatCannotBeEvaluatedIsRefused) {
    const std::vector<std::string> changes{"--temperature", "1", "--precipitation", "1"};
    EXPECT_EQ(response(changes, "1996-12-31").status, 1);
    EXPECT_THAT(response(changes, "1996-12-31").err,
                HasSubstr("The winter must end on a day from 1996-01-01 to 1996-12-30"));
    EXPECT_EQ(response(changes, "1995-12-31").status, 1);
    EXPECT_EQ(response(changes, "31.3.1996").status, 2);
    EXPECT_EQ(batch({"response", file(), "--simulation", "birch", "--winter-end", "1996-03-31",
                     "--temperature", "1", "--precipitation", "1"})
                  .status,
              1);
    for (const char* text :
         {"", "a", "1,", "1..", "0..4", "4..0:1", "0..4:0", "0..4:-1", "0..1:0.001", "1e39"})
        EXPECT_EQ(pairs(text, "1").status, 2) << text;
    EXPECT_EQ(pairs("0", "-0.1").status, 2);
    EXPECT_EQ(pairs("0", "1", {"--threads", "0"}).status, 2);
}

std::vector<std::string> fields_of_pair(const std::string& line) {
    std::vector<std::string> fields;
    std::istringstream stream{line};
    for (std::string field; std::getline(stream, field, ',');) fields.push_back(field);
    return fields;
}

class ResponseFileTest : public ResponseCommandTest {
protected:
    [[nodiscard]] std::filesystem::path path(const std::string& name) const { return folder_ / name; }
    [[nodiscard]] BatchResult into(const std::string& name, std::vector<std::string> more = {}) const {
        more.insert(more.end(), {"--out", path(name).string()});
        return pairs("0..2:0.5", "0.8..1.2:0.1", more);
    }
    [[nodiscard]] BatchResult gather(const std::vector<std::string>& parts) const {
        std::vector<std::string> arguments{"gather"};
        for (const std::string& part : parts) arguments.push_back(path(part).string());
        arguments.insert(arguments.end(), {"--out", path("whole.csv").string()});
        return batch(arguments);
    }
    [[nodiscard]] std::string bytes(const std::string& name) const { return file_bytes(path(name)); }

    TemporaryFolder folder_;
};

TEST_F(ResponseFileTest, HasALineForEachPairBesideThePresentClimate) {
    const BatchResult result = into("a.csv");
    ASSERT_EQ(result.status, 0) << result.err;
    const auto lines = lines_of(bytes("a.csv"));
    ASSERT_EQ(lines.size(), 2U + 25U);
    EXPECT_THAT(lines[0], testing::StartsWith("# nivora response {"));
    EXPECT_THAT(lines[1], testing::StartsWith(
                              "Point,Temperature,Precipitation,Winter,Winter present,Winter change,Summer,"));
    EXPECT_THAT(lines[1], HasSubstr(",Median day,Median day present,Median day change,"));
    EXPECT_THAT(lines[1], HasSubstr(",Last snow A,Last snow A present,Last snow A change,"));
    EXPECT_THAT(lines[1], testing::EndsWith(",Notes,Problem"));
    EXPECT_THAT(lines[2], testing::StartsWith("0,0,0.8,"));
    EXPECT_THAT(lines[26], testing::StartsWith("24,2,1.2,"));
    const auto commas = std::count(lines[1].begin(), lines[1].end(), ',');
    for (std::size_t line = 2; line < lines.size(); ++line)
        EXPECT_EQ(std::count(lines[line].begin(), lines[line].end(), ','), commas) << line;
    const ResponseJson json = ResponseJson::parse(pairs("0..2:0.5", "0.8..1.2:0.1", {"--json"}).out);
    EXPECT_THAT(lines[2], HasSubstr("," + json["points"][0]["medianDay"].get<std::string>() + "," +
                                    json["present"]["medianDay"].get<std::string>() + ","));
    EXPECT_EQ(json["points"][0]["lastSnow"].size(), json["present"]["lastSnow"].size());
    const auto fields = fields_of_pair(lines[2]);
    const ResponseJson& change = json["points"][0]["change"];
    EXPECT_FLOAT_EQ(change["runoff"]["Winter"].get<float>(), std::stof(fields[5]));
    EXPECT_EQ(std::to_string(change["medianDay"].get<int>()), fields[14]);
    EXPECT_TRUE(change["lastSnow"]["A"].is_null()) << "the zone keeps its snow all year";
}

TEST_F(ResponseFileTest, AChangeIsTheFigureWithoutThatOfThePresentClimate) {
    const TemporaryFolder sample;
    std::filesystem::copy_file(std::filesystem::path{NIVORA_PROGRAM_FOLDER} / "samples/ellervane.mdb",
                               sample / "s.mdb");
    const auto csv = sample / "out.csv";
    const BatchResult result =
        batch({"response", (sample / "s.mdb").string(), "--simulation", "ellervane-1997-98", "--winter-end",
               "1998-03-31", "--temperature", "0..4:1", "--precipitation", "0.9,1", "--out", csv.string()});
    ASSERT_EQ(result.status, 0) << result.err;
    const auto lines = lines_of(file_bytes(csv));
    const auto names = fields_of_pair(lines.at(1));
    const auto column = [&](const std::string& name) {
        return static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin());
    };
    int known = 0;
    int unknown = 0;
    for (std::size_t line = 2; line < lines.size(); ++line) {
        const auto fields = fields_of_pair(lines[line]);
        for (const char* name : {"Winter", "Summer", "Year"}) {
            const std::size_t at = column(name);
            EXPECT_NEAR(std::stod(fields[at + 2]), std::stod(fields[at]) - std::stod(fields[at + 1]), 1e-4);
        }
        for (const char* name :
             {"Median day", "Centre of mass", "Highest day", "Last snow A", "Last snow E"}) {
            const std::size_t at = column(name);
            const auto day = read_iso_date(fields[at]);
            const auto present = read_iso_date(fields[at + 1]);
            if (day && present) {
                EXPECT_EQ(fields[at + 2], std::to_string(*day - *present)) << name;
                ++known;
            } else {
                EXPECT_EQ(fields[at + 2], "") << name;
                ++unknown;
            }
        }
    }
    EXPECT_GT(known, 40);
    EXPECT_GT(unknown, 0) << "zone A is bare all summer where it is warm";
    const std::string& out = result.out;
    const std::size_t dates = out.find("Last day of snow by zone");
    const std::size_t changes = out.find("Change against the present climate");
    ASSERT_LT(dates, changes);
    ASSERT_NE(changes, std::string::npos);
    const auto table = lines_of(out.substr(changes));
    ASSERT_EQ(table.size(), 3U + 10U);
    EXPECT_THAT(table[4], HasSubstr(" " + fields_of_pair(lines.at(3))[column("Median day") + 2] + " "));
}

TEST_F(ResponseFileTest, ADiskThatIsFullAtOnceLeavesAnEarlierFile) {
    ASSERT_EQ(into("a.csv").status, 0);
    const std::string whole = bytes("a.csv");
    const FullDisk full{100};
    const BatchResult result = into("a.csv");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("the disk may be full"));
    EXPECT_EQ(bytes("a.csv"), whole);
}

TEST_F(ResponseFileTest, ADiskThatBecomesFullKeepsWhatWasStored) {
    ASSERT_EQ(into("a.csv").status, 0);
    const std::string whole = bytes("a.csv");
    {
        const FullDisk full{whole.size() / 2};
        const BatchResult result = into("b.csv");
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.err, HasSubstr("is the disk full?"));
    }
    const std::string part = bytes("b.csv");
    EXPECT_EQ(part, whole.substr(0, part.size()));
    EXPECT_GT(lines_of(part).size(), 5U);
    EXPECT_EQ(into("b.csv", {"--resume"}).status, 0);
    EXPECT_EQ(bytes("b.csv"), whole);
}

TEST_F(ResponseFileTest, ThreadsDoNotShowInTheFile) {
    ASSERT_EQ(into("a.csv", {"--threads", "1"}).status, 0);
    ASSERT_EQ(into("b.csv", {"--threads", "1000"}).status, 0);
    EXPECT_EQ(bytes("a.csv"), bytes("b.csv"));
    EXPECT_EQ(into("c.csv", {"--threads", "10000"}).status, 2);
}

TEST_F(ResponseFileTest, ABasinThatAnotherProgramWritesIsRefused) {
    const OtherProgram other{[&](const std::function<void()>& hold) {
        const OpenBasin held = open_to_write(file(), std::chrono::seconds{10});
        hold();
    }};
    const BatchResult result = into("a.csv", {"--wait", "0"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("is in use by another program"));
    EXPECT_FALSE(std::filesystem::exists(path("a.csv")));
}

TEST_F(ResponseFileTest, InterruptedItSaysWhatWasDoneAndGoesOn) {
    // Far more pairs than are done before the signal comes, which is sent once there are some.
    const std::string csv = path("a.csv").string();
    const std::string command =
        std::string{NIVORA_BATCH_PROGRAM} + " response '" + file() + "' --simulation alder --winter-end " +
        "1996-03-31 --temperature 0..19.9:0.1 --precipitation 0.01..2:0.01 --threads 1 --out '" + csv + "'";
    const std::string script = command + " >'" + path("out").string() + "' 2>'" + path("err").string() +
                               "' & p=$!; until [ \"$(wc -l <'" + csv +
                               "' 2>/dev/null || echo 0)\" -gt 10 ]; do sleep 0.01; done; kill -INT $p; " +
                               "wait $p; exit $?";
    const int status = std::system(script.c_str());
    EXPECT_EQ(WEXITSTATUS(status), 130);
    EXPECT_THAT(bytes("err"), HasSubstr("Stopped. The same command with --resume goes on from here."));
    const std::string part = bytes("a.csv");
    ASSERT_TRUE(part.ends_with('\n'));
    const auto lines = lines_of(part);
    ASSERT_GT(lines.size(), 10U);
    ASSERT_LT(lines.size(), 2U + 40000U);
    for (std::size_t line = 2; line < lines.size(); ++line)
        EXPECT_EQ(fields_of_pair(lines[line])[0], std::to_string(line - 2));
    const std::string out = bytes("out");
    const std::string table = out.substr(0, out.find("\n\nLast day of snow"));
    EXPECT_EQ(lines_of(table).size(), 4U + 2U + lines.size() - 2U) << "it prints what was done";
}

TEST_F(ResponseFileTest, AStoppedOneGoesOnToTheSameBytes) {
    const std::string table = into("a.csv").out;
    const std::string whole = bytes("a.csv");
    for (const std::size_t kept :
         {whole.find('\n', whole.find("\n") + 1) + 1, whole.size() / 2, whole.size()}) {
        write_bytes(path("b.csv"), whole.substr(0, kept));
        const BatchResult result = into("b.csv", {"--resume", "--threads", "2"});
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_THAT(result.err, HasSubstr("evaluations are taken over"));
        EXPECT_EQ(bytes("b.csv"), whole) << kept;
        EXPECT_EQ(result.out, table);
    }
}

TEST_F(ResponseFileTest, AnotherBasinOrOtherOptionsAreRefused) {
    ASSERT_EQ(into("a.csv").status, 0);
    const std::string whole = bytes("a.csv");
    const BatchResult options =
        pairs("0..2:0.5", "0.8..1.2:0.2", {"--out", path("a.csv").string(), "--resume"});
    EXPECT_EQ(options.status, 1);
    EXPECT_THAT(options.err,
                HasSubstr("the options are not those that the response was begun with; begin "
                          "anew without --resume, or use these: precipitation [0.8,0.9,1.0,1.1,1.2], "
                          "25 runs, the share with the runs 0 to 24"));
    EXPECT_THAT(into("a.csv", {"--resume", "--share", "2/2"}).err,
                HasSubstr("or use these: the share with the runs 0 to 24 [OK]"));
    EXPECT_THAT(response({"--temperature=0..2:0.5", "--precipitation", "0.8..1.2:0.1", "--resume", "--out",
                          path("a.csv").string()},
                         "1996-04-01")
                    .err,
                HasSubstr("or use these: winterEnd \"1996-03-31\" [OK]"));
    basin.execute("UPDATE PhysicalData SET Precip = 2.5 WHERE Date = 35100");
    const BatchResult changed = into("a.csv", {"--resume"});
    EXPECT_EQ(changed.status, 1);
    EXPECT_THAT(changed.err,
                HasSubstr("the basin is not the one that the response was begun with: its variables "
                          "have changed; begin anew without --resume"));
    basin.execute("UPDATE " + std::string{k_zone_description} + " SET ZoneArea = ZoneArea + 1");
    EXPECT_THAT(into("a.csv", {"--resume"}).err, HasSubstr("its settings, zones, variables have changed"));
    EXPECT_EQ(bytes("a.csv"), whole);
    write_bytes(path("c.csv"), "Point,x\n1,2\n");
    EXPECT_THAT(into("c.csv", {"--resume"}).err, HasSubstr("this is not a response"));
    std::string damaged = whole;
    damaged.replace(damaged.find("\n3,") + 1, 1, "7");
    write_bytes(path("d.csv"), damaged);
    EXPECT_EQ(into("d.csv", {"--resume"}).status, 1);
}

TEST_F(ResponseFileTest, PartsPutTogetherAreTheWhole) {
    ASSERT_EQ(into("a.csv").status, 0);
    for (const char* part : {"1/3", "2/3", "3/3"})
        ASSERT_EQ(into(std::string{"part"} + part[0], {"--share", part}).status, 0);
    const BatchResult result = gather({"part3", "part1", "part2"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "25 evaluations of 3 parts\n");
    EXPECT_EQ(bytes("whole.csv"), bytes("a.csv"));
    EXPECT_THAT(gather({"part1", "part3"}).err, HasSubstr("is missing"));
    // The whole goes on to its pictures without an evaluation.
    const BatchResult pictures =
        pairs("0..2:0.5", "0.8..1.2:0.1",
              {"--out", path("whole.csv").string(), "--resume", "--picture", path("r.png").string()});
    EXPECT_EQ(pictures.status, 0) << pictures.err;
    EXPECT_THAT(pictures.err, HasSubstr("25 evaluations are taken over"));
    EXPECT_TRUE(std::filesystem::exists(path("r-winter.png")));
}

TEST_F(ResponseFileTest, EveryQuantityHasAPicture) {
    const BatchResult result = into("a.csv", {"--picture", path("r.svg").string()});
    ASSERT_EQ(result.status, 0) << result.err;
    for (const char* name : {"winter", "summer", "year", "median-day"}) {
        const std::string drawn = bytes("r-" + std::string{name} + ".svg");
        EXPECT_THAT(drawn, HasSubstr("Factor of precipitation")) << name;
        EXPECT_THAT(drawn, HasSubstr("present climate")) << name;
    }
}

TEST_F(ResponseFileTest, OptionsThatDoNotFitAreRefusedBeforeTheWork) {
    const auto refused = [&](const std::vector<std::string>& more, const char* why) {
        const BatchResult result = pairs("0,1", "1", more);
        EXPECT_EQ(result.status, 1) << why;
        EXPECT_THAT(result.err, HasSubstr(why));
    };
    refused({"--resume"}, "goes on with the file that --out names");
    refused({"--share", "1/2"}, "needs a file");
    refused({"--share", "1/2", "--out", path("x.csv").string(), "--picture", path("x.png").string()},
            "A part of a response has no pictures");
    refused({"--picture", path("x.txt").string()}, "is not a picture by its name");
    refused({"--out", file()}, "basin");
    refused({"--out", path("x-winter.png").string(), "--picture", path("x.png").string()},
            "which the command works on");
    std::filesystem::create_symlink(file(), path("y-year.svg"));
    refused({"--picture", path("y.svg").string()}, "basin");
    EXPECT_EQ(pairs("0", "1", {"--picture", path("x.png").string()}).status, 1);
    EXPECT_EQ(pairs("0", "1", {"--share", "3/2"}).status, 2);
    EXPECT_EQ(pairs("0,0", "1").status, 2);
    EXPECT_FALSE(std::filesystem::exists(path("x.csv")));
}

TEST(ReadChanges, ARangeCountsItsStepsFromTheLowEnd) {
    EXPECT_THAT(read_changes("-1..1:0.5").values, ElementsAre(-1.0F, -0.5F, 0.0F, 0.5F, 1.0F));
    EXPECT_THAT(read_changes("0.8..1.2:0.1").values, ElementsAre(0.8F, 0.9F, 1.0F, 1.1F, 1.2F));
    EXPECT_THAT(read_changes("0..1:0.4").values, ElementsAre(0.0F, 0.4F, 0.8F));
    EXPECT_THAT(read_changes("2..2:1").values, ElementsAre(2.0F));
    EXPECT_THAT(read_changes("3,-1").values, ElementsAre(3.0F, -1.0F));
    EXPECT_EQ(read_changes("3,-1,3").problem, "'3,-1,3' has 3 twice: give each value once");
    EXPECT_EQ(read_changes("0..1:0.1").problem, "");
    EXPECT_THAT(read_changes("0..1").problem, HasSubstr("has no step"));
}

TEST(ResponseOfTheSample, TheManualShowsWhatTheCommandPrints) {
    const TemporaryFolder folder;
    const std::filesystem::path file = folder / "alder.mdb";
    std::filesystem::copy_file(std::filesystem::path{NIVORA_PROGRAM_FOLDER} / "samples/ellervane.mdb", file);
    const std::string chapter =
        file_bytes(std::filesystem::path{NIVORA_SOURCE_DIR} / "docs/manual/28-response.md");
    const std::string out =
        printed({"response", file.string(), "--simulation", "ellervane-1997-98", "--winter-end", "1998-03-31",
                 "--temperature", "0..4:1", "--precipitation", "0.9,1,1.1"});
    EXPECT_THAT(chapter, HasSubstr("```\n" + out + "```\n"));
}

}  // namespace
}  // namespace nivora
