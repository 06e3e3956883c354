// The command that evaluates pairs of climate changes.
#include "batch/response_options.h"
#include "tests/batch/run_basin.h"

#include <gmock/gmock.h>

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
    EXPECT_EQ(lines_of(one).size(), 6U + 9U * 5U);
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

TEST(ReadChanges, ARangeCountsItsStepsFromTheLowEnd) {
    EXPECT_THAT(read_changes("-1..1:0.5").values, ElementsAre(-1.0F, -0.5F, 0.0F, 0.5F, 1.0F));
    EXPECT_THAT(read_changes("0.8..1.2:0.1").values, ElementsAre(0.8F, 0.9F, 1.0F, 1.1F, 1.2F));
    EXPECT_THAT(read_changes("0..1:0.4").values, ElementsAre(0.0F, 0.4F, 0.8F));
    EXPECT_THAT(read_changes("2..2:1").values, ElementsAre(2.0F));
    EXPECT_THAT(read_changes("3,-1,3").values, ElementsAre(3.0F, -1.0F, 3.0F));
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
