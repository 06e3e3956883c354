// The look through the daily variables.
#include "tests/batch/study_call.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

class CheckDataCommandTest : public StudyFolder {
protected:
    CheckDataCommandTest() {
        BasinDatabase database{basin(), Access::ReadWrite};
        database.execute("UPDATE PhysicalData SET SCA = 1.5 WHERE Zone = 2 AND Date IN (35704, 35705)");
    }
};

TEST_F(CheckDataCommandTest, PrintsALineForEachFinding) {
    const std::string before = content("sample.mdb");
    const std::string out = printed({"check", basin(), "--data"});
    EXPECT_THAT(
        out,
        HasSubstr("Zone B, 1997-10-01 to 1997-10-02: Cover outside 0 to 1: The snow cover is 1.5, which is "
                  "not between 0 and 1.\n"));
    EXPECT_THAT(out, EndsWith(" findings in 1004 days of 5 zones\n"));
    EXPECT_EQ(content("sample.mdb"), before);
}

TEST_F(CheckDataCommandTest, PrintsJson) {
    const auto json = nlohmann::json::parse(printed({"check", basin(), "--data", "--json"}));
    EXPECT_EQ(json["recordDays"], 1004);
    EXPECT_EQ(json["total"], json["findings"].size());
    bool found = false;
    for (const auto& finding : json["findings"]) {
        if (finding["kind"] != "Cover outside 0 to 1") continue;
        found = true;
        EXPECT_EQ(finding["zone"], "B");
        EXPECT_EQ(finding["field"], "SCA");
        EXPECT_EQ(finding["first"], "1997-10-01");
        EXPECT_EQ(finding["days"], 2);
    }
    EXPECT_TRUE(found);
}

TEST_F(CheckDataCommandTest, NeedsABasin) {
    expect_refused(batch({"check", path("none.mdb"), "--data"}), "none.mdb");
    expect_refused(batch({"check", basin(), "--json"}), "--data", 2);
}

}  // namespace
}  // namespace nivora
