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

TEST_F(CheckDataCommandTest, ListsDoubledRowsAndRowsOfZonesThatTheBasinDoesNotHave) {
    {
        BasinDatabase database{basin(), Access::ReadWrite};
        for (const int zone : {0, 7}) {
            database.execute("INSERT INTO PhysicalData (Zone, Date, Precip) SELECT " + std::to_string(zone) +
                             ", Date, Precip FROM PhysicalData WHERE Zone = 1 AND Date IN (35704, 35706)");
        }
        database.execute(
            "INSERT INTO PhysicalData SELECT * FROM PhysicalData WHERE Zone = 3 AND Date = 35710");
    }
    const std::string out = printed({"check", basin(), "--data"});
    EXPECT_THAT(out, HasSubstr("Zone 0, 1997-10-01 to 1997-10-03: No such zone: The basin has no zone 0, but "
                               "2 rows of it.\n"));
    EXPECT_THAT(out,
                HasSubstr("Zone C, 1997-10-07: Doubled row: The zone has more than one row on 1 day.\n"));
    EXPECT_THAT(out, HasSubstr("Zone 7, 1997-10-01 to 1997-10-03: No such zone: The basin has no zone 7, but "
                               "2 rows of it.\n"));
    EXPECT_LT(out.find("zone 0"), out.find("Zone C"));
    EXPECT_LT(out.find("Zone C"), out.find("zone 7"));
}

TEST_F(CheckDataCommandTest, TakesNumbersAsTheSinglesThatARunReads) {
    {
        BasinDatabase database{basin(), Access::ReadWrite};
        database.execute("UPDATE PhysicalData SET SCA = 1.00000001 WHERE Zone = 4 AND Date = 35704");
        database.execute("UPDATE PhysicalData SET SCA = 1.0000002 WHERE Zone = 4 AND Date = 35706");
    }
    const std::string out = printed({"check", basin(), "--data"});
    EXPECT_THAT(out, testing::Not(HasSubstr("Zone D, 1997-10-01: Cover outside")));
    EXPECT_THAT(out, HasSubstr("Zone D, 1997-10-03: Cover outside 0 to 1"));
    // The form of the file is another question, which the check of the file answers.
    const auto result = batch({"check", basin()});
    EXPECT_THAT(result.out, HasSubstr("SCA holds 1.00000001, which is not a valid FLOAT"));
}

TEST_F(CheckDataCommandTest, NeedsABasin) {
    expect_refused(batch({"check", path("none.mdb"), "--data"}), "none.mdb");
    expect_refused(batch({"check", basin(), "--json"}), "--data", 2);
}

}  // namespace
}  // namespace nivora
