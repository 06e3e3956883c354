// The command that creates climate scenarios: what it stores, and what it refuses without a trace.
#include "batch/scenario_edit.h"
#include "climate/scenario_codes.h"
#include "tests/batch/batch_call.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;

/// The simulation "alder" of two zones, 1 to 3 April 1996.
class ScenarioCommandTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(folder.import().status, 0); }

    [[nodiscard]] BatchResult scenario(const std::string& name, const std::vector<std::string>& edits,
                                       const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments{"scenario", folder.basin(), "--simulation",
                                           "alder",    "--name",       name};
        for (const std::string& edit : edits) {
            arguments.emplace_back("--edit");
            arguments.push_back(edit);
        }
        arguments.insert(arguments.end(), more.begin(), more.end());
        return batch(arguments);
    }

    [[nodiscard]] std::vector<ScenarioIndexRow> index() const {
        return folder.rows<ScenarioIndexRow>(template_table(k_scenario_index));
    }
    [[nodiscard]] std::vector<ScenarioRow> rows(const std::string& name) const {
        return folder.rows<ScenarioRow>(scenario_table(name));
    }

    /// Expects a call to be refused with this status and text on standard error, and to change no byte.
    void expect_refused(const BatchResult& result, int status, const std::string& said,
                        const std::string& before) const {
        EXPECT_EQ(result.status, status);
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, HasSubstr(said));
        EXPECT_TRUE(folder.bytes() == before);
    }

    DayCount first = day_count({1996, 4, 1}).value();
    BatchFolder folder;
};

TEST_F(ScenarioCommandTest, StoresItsEditsInTheirOrder) {
    const BatchResult result =
        scenario("warm", {"2:1996-04-02:1996-04-03:1:1.2:2", "1:1996-04-01:1996-04-03:0:-2:0"},
                 {"--winter-end", "1996-04-02"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, "Stored 'warm' for 'alder' in " + folder.basin() +
                              ": 2 edits, the winter ends on 1996-04-02.\n");
    const auto stored = rows("warm");
    ASSERT_EQ(stored.size(), 2U);
    EXPECT_THAT(stored[0].variable, Optional(2));
    EXPECT_THAT(stored[0].start, Optional(first + 1));
    EXPECT_THAT(stored[0].end, Optional(first + 2));
    EXPECT_THAT(stored[0].action, Optional(1));
    EXPECT_EQ(stored[0].factor, 1.2F);
    EXPECT_THAT(stored[0].zones, Optional(2));
    EXPECT_THAT(stored[1].variable, Optional(1));
    EXPECT_THAT(stored[1].action, Optional(0));
    EXPECT_EQ(stored[1].factor, -2.0F);
    EXPECT_THAT(stored[1].zones, Optional(0));
    ASSERT_EQ(index().size(), 1U);
    EXPECT_EQ(index()[0].simulation, "alder");
    EXPECT_EQ(index()[0].scenario, "warm");
    EXPECT_THAT(index()[0].winter_end_date, Optional(static_cast<double>(first + 1)));
    EXPECT_THAT(index()[0].comments, Optional(std::string{"Place your comments here!"}));
}

TEST_F(ScenarioCommandTest, AcceptsTheTextsOfTheGridForTheCodes) {
    const BatchResult result =
        scenario("warm", {"Average Temperature:1996-04-01:1996-04-03:Add/subtract to each:2.5:All",
                          "critical temperature : 1996-04-01 : 1996-04-03 : SHIFT FORWARD : 1 : b",
                          "Precipitation:1996-04-01:1996-04-03:Normalize::A"});
    EXPECT_EQ(result.status, 0) << result.err;
    const auto stored = rows("warm");
    ASSERT_EQ(stored.size(), 3U);
    EXPECT_THAT(stored[0].variable, Optional(1));
    EXPECT_THAT(stored[0].action, Optional(0));
    EXPECT_THAT(stored[0].zones, Optional(0));
    EXPECT_THAT(stored[1].variable, Optional(4));
    EXPECT_THAT(stored[1].action, Optional(3));
    EXPECT_THAT(stored[1].zones, Optional(2));
    EXPECT_THAT(stored[2].variable, Optional(2));
    EXPECT_THAT(stored[2].action, Optional(4));
    EXPECT_EQ(stored[2].factor, 0.0F);
    EXPECT_THAT(stored[2].zones, Optional(1));
}

TEST_F(ScenarioCommandTest, NormalizeStores0WhateverFactorWasGiven) {
    ASSERT_EQ(scenario("warm", {"1:1996-04-01:1996-04-03:4:7:0"}).status, 0);
    EXPECT_EQ(rows("warm")[0].factor, 0.0F);
}

TEST_F(ScenarioCommandTest, WithoutAWinterEndUsesTheDefaultOfANewScenario) {
    // 1 to 3 April: 2 / 2 - 1 = 0 days after the start.
    const BatchResult result = scenario("warm", {"1:1996-04-01:1996-04-03:0:1:0"});
    EXPECT_THAT(result.out, HasSubstr("the winter ends on 1996-04-01"));
    EXPECT_THAT(index()[0].winter_end_date, Optional(static_cast<double>(first)));
}

TEST_F(ScenarioCommandTest, ReplacesTheScenarioOfItsName) {
    ASSERT_EQ(scenario("warm", {"1:1996-04-01:1996-04-03:0:1:0", "2:1996-04-01:1996-04-03:0:1:0"}).status, 0);
    ASSERT_EQ(scenario("cold", {"1:1996-04-01:1996-04-03:0:-1:0"}).status, 0);
    ASSERT_EQ(scenario("WARM", {"1:1996-04-01:1996-04-03:0:3:0"}, {"--winter-end", "1996-04-03"}).status, 0);
    ASSERT_EQ(index().size(), 2U);
    EXPECT_EQ(index()[0].scenario, "cold");
    EXPECT_EQ(index()[1].scenario, "WARM");
    EXPECT_THAT(index()[1].winter_end_date, Optional(static_cast<double>(first + 2)));
    ASSERT_EQ(rows("warm").size(), 1U);
    EXPECT_EQ(rows("warm")[0].factor, 3.0F);
}

TEST_F(ScenarioCommandTest, MayHaveNoEdits) {
    EXPECT_THAT(scenario("calm", {}).out, HasSubstr(": 0 edits, "));
    EXPECT_THAT(rows("calm"), IsEmpty());
}

TEST_F(ScenarioCommandTest, FindsItsSimulationInAnyCase) {
    const BatchResult result =
        batch({"scenario", folder.basin(), "--simulation", "ALDER", "--name", "it's \"warm\""});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(index()[0].simulation, "alder");
    EXPECT_TRUE(folder.has_table("it's \"warm\""));
}

TEST_F(ScenarioCommandTest, AnInvalidEditIsWrongUsage) {
    const std::string before = folder.bytes();
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "is not of the form"},
        {"1:1996-04-01:1996-04-03:0:1", "is not of the form"},
        {"1:1996-04-01:1996-04-03:0:1:0:", "is not of the form"},
        {":1996-04-01:1996-04-03:0:1:0", "'' is not a variable"},
        {"12:1996-04-01:1996-04-03:0:1:0", "'12' is not a variable"},
        {"-1:1996-04-01:1996-04-03:0:1:0", "'-1' is not a variable"},
        {"Rain:1996-04-01:1996-04-03:0:1:0", "'Rain' is not a variable"},
        {"1::1996-04-03:0:1:0", "'' is not a date"},
        {"1:1996-04-01::0:1:0", "'' is not a date"},
        {"1:04/01/1996:1996-04-03:0:1:0", "'04/01/1996' is not a date"},
        {"1:1996-02-30:1996-04-03:0:1:0", "'1996-02-30' is not a date"},
        {"1:1996-04-03:1996-04-01:0:1:0", "the start, 1996-04-03, is after the end, 1996-04-01"},
        {"1:1996-04-01:1996-04-03::1:0", "'' is not an action"},
        {"1:1996-04-01:1996-04-03:5:1:0", "'5' is not an action"},
        {"1:1996-04-01:1996-04-03:0::0", "'' is not a number"},
        {"1:1996-04-01:1996-04-03:0:1,5:0", "'1,5' is not a number"},
        {"1:1996-04-01:1996-04-03:0:1e39:0", "'1e39' is not a number"},
        {"1:1996-04-01:1996-04-03:0:nan:0", "'nan' is not a number"},
        {"1:1996-04-01:1996-04-03:4:much:0", "'much' is not a number"},
        {"1:1996-04-01:1996-04-03:0:1:", "'' is not a zone"},
        {"1:1996-04-01:1996-04-03:0:1:17", "'17' is not a zone"},
        {"1:1996-04-01:1996-04-03:0:1:Q", "'Q' is not a zone"},
        {"2:1996-04-01:1996-04-03:3:1:0", "'Shift forward' can't be chosen for 'Precipitation'"},
        {"3:1996-04-01:1996-04-03:3:1:0", "'Shift forward' can't be chosen for 'Maximum Temperature'"},
        {"0:1996-04-01:1996-04-03:4:1:0", "'Normalize' can't be chosen for 'M/M Temperature'"},
        {"5:1996-04-01:1996-04-03:Normalize::0", "'Normalize' can't be chosen for 'Lag Time'"}};
    for (const auto& [edit, said] : cases) {
        SCOPED_TRACE(edit);
        expect_refused(scenario("warm", {"1:1996-04-01:1996-04-03:0:1:0", edit}), 2, said, before);
    }
}

TEST_F(ScenarioCommandTest, WrongUsageHasAStatusOfItsOwn) {
    const std::string before = folder.bytes();
    const std::string mdb = folder.basin();
    const std::vector<std::vector<std::string>> calls{
        {"scenario"},
        {"scenario", mdb},
        {"scenario", mdb, "--simulation", "alder"},
        {"scenario", mdb, "--name", "warm"},
        {"scenario", "--simulation", "alder", "--name", "warm"},
        {"scenario", mdb, "--simulation", "alder", "--name", "warm", "--edit"},
        {"scenario", mdb, "--simulation", "alder", "--name", "warm", "--winter-end", "soon"},
        {"scenario", mdb, "--simulation", "alder", "--name", "warm", "--winter-end", "4/1/1996"},
        {"scenario", mdb, "--simulation", "alder", "--name", "warm", "--winter-end", ""},
        {"scenario", mdb, "--simulation", "alder", "--name", "warm", "more"}};
    for (const auto& call : calls) {
        const BatchResult result = batch(call);
        EXPECT_EQ(result.status, 2) << testing::PrintToString(call);
        EXPECT_NE(result.err, "");
        EXPECT_EQ(result.out, "");
    }
    EXPECT_TRUE(folder.bytes() == before);
}

TEST_F(ScenarioCommandTest, WhatDoesNotFitTheSimulationIsRefused) {
    ASSERT_EQ(scenario("warm", {"1:1996-04-01:1996-04-03:0:1:0"}).status, 0);
    const std::string before = folder.bytes();
    const std::vector<std::pair<std::string, std::string>> cases{
        {"1:1996-03-31:1996-04-03:0:1:0",
         "No scenario was stored: Edit 2: the dates 1996-03-31 to 1996-04-03 are not within the simulation, "
         "which runs from 1996-04-01 to 1996-04-03. [OK]\n"},
        {"1:1996-04-01:1996-04-04:0:1:0", "Edit 2: the dates 1996-04-01 to 1996-04-04 are not within"},
        {"1:1996-04-01:1996-04-03:0:1:3", "Edit 2: the basin has no zone C; its number of zones is 2."},
        {"1:1996-04-01:1996-04-03:0:1:P", "Edit 2: the basin has no zone P; its number of zones is 2."}};
    for (const auto& [edit, said] : cases) {
        SCOPED_TRACE(edit);
        for (const char* name : {"warm", "new"})
            expect_refused(scenario(name, {"1:1996-04-01:1996-04-03:0:2:0", edit}), 1, said, before);
    }
    for (const char* date : {"1996-03-31", "1996-04-04"}) {
        expect_refused(scenario("warm", {}, {"--winter-end", date}), 1, "Invalid winter end date! [OK]\n",
                       before);
    }
}

TEST_F(ScenarioCommandTest, TheWinterMayEndOnTheFirstOrTheLastDay) {
    for (const char* date : {"1996-04-01", "1996-04-03"})
        EXPECT_EQ(scenario("warm", {}, {"--winter-end", date}).status, 0) << date;
}

TEST_F(ScenarioCommandTest, ANameThatNoScenarioMayHaveIsRefused) {
    const std::string before = folder.bytes();
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "Invalid scenario name: A scenario needs a name. [OK]\n"},
        {"Auxiliary", "Invalid scenario name: Reserved word Auxiliary [OK]\n"},
        {"none", "Error naming new climate scenario: This name is reserved for system use. [OK]\n"},
        {"sqlite_x", "Error naming new climate scenario: This name is reserved for system use. [OK]\n"},
        {"physicaldata", "Error naming new climate scenario: This name is reserved for system use. [OK]\n"},
        {"ALDER", "Error naming new climate scenario: This name is already in use in this database. [OK]\n"},
        {"wa.rm", "Invalid scenario name: The name selected, wa.rm, contains invalid character(s) [OK]\n"}};
    for (const auto& [name, said] : cases)
        expect_refused(scenario(name, {"1:1996-04-01:1996-04-03:0:1:0"}), 1, said, before);
}

TEST_F(ScenarioCommandTest, AnUnknownSimulationIsRefused) {
    const std::string before = folder.bytes();
    expect_refused(batch({"scenario", folder.basin(), "--simulation", "birch", "--name", "warm"}), 1,
                   "No such simulation: The basin has no simulation 'birch'. It has: 'alder'. [OK]\n",
                   before);
}

TEST_F(ScenarioCommandTest, ASimulationOfTwoDaysOrWithoutAPeriodIsRefused) {
    folder.execute("UPDATE SimulationIndex SET SimEndDate = SimStartDate + 1");
    expect_refused(scenario("warm", {}), 1, "Period too short for climate change: ", folder.bytes());
    folder.execute("UPDATE SimulationIndex SET SimEndDate = NULL");
    expect_refused(scenario("warm", {}), 1, "The simulation 'alder' has no period.", folder.bytes());
}

TEST_F(ScenarioCommandTest, AFileThatIsNotABasinStaysAsItIs) {
    const std::string before = file_bytes(folder.file());
    for (const std::string& file : {folder.file(), folder.path("none.mdb")}) {
        const BatchResult result = batch({"scenario", file, "--simulation", "alder", "--name", "warm"});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(lines_of(result.err).size(), 1U) << result.err;
    }
    EXPECT_EQ(file_bytes(folder.file()), before);
}

TEST_F(ScenarioCommandTest, ItsHelpExplainsTheFormOfAnEdit) {
    const BatchResult help = batch({"scenario", "--help"});
    EXPECT_EQ(help.status, 0);
    for (const char* word : {"--simulation", "--name", "--winter-end", "--edit",
                             "VARIABLE:START:END:ACTION:FACTOR:ZONE", "Average Temperature"})
        EXPECT_THAT(help.out, HasSubstr(word));
    EXPECT_THAT(batch({"--help"}).out, HasSubstr("scenario"));
}

TEST(ScenarioEdit, EachVariableMayBeAddedToAndShiftedBackward) {
    for (int code = 0; code <= k_last_scenario_variable; ++code) {
        for (const int action : {0, 1, 2}) {
            const ReadEdit edit =
                read_scenario_edit(std::string{scenario_variable_text(code)} +
                                   ":1996-04-01:1996-04-01:" + std::to_string(action) + ":1.5:0");
            EXPECT_EQ(edit.problem, "");
            EXPECT_THAT(edit.row.variable, Optional(code));
            EXPECT_THAT(edit.row.action, Optional(action));
        }
    }
}

}  // namespace
}  // namespace nivora
