// Names of simulations: which are in use, which are refused, and what happens to a table of the same name.
#include "prep/simulation_names.h"

#include "store/transactions.h"
#include "tests/prep/scratch_basin.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::Optional;

constexpr const char* k_ask = "Enter a unique name to associate with this data";
constexpr const char* k_ask_again = "Invalid character(s) in name, please re-enter";

/// Asks for a name in a transaction, as the callers do, and returns it.
std::optional<std::string> add(const ScratchBasin& basin, ScriptedDialogs& dialogs,
                               const std::string& proposed = {}) {
    BasinDatabase database{basin.path(), Access::ReadWrite};
    HeldTransaction transaction{database};
    auto name = Add_Simulation_Name(database, dialogs, proposed);
    if (name) transaction.commit();
    EXPECT_TRUE(dialogs.complaints().empty()) << dialogs.complaints().front();
    EXPECT_EQ(dialogs.answers_left(), 0U);
    return name;
}

std::optional<std::string> add_named(const ScratchBasin& basin, const std::string& name) {
    ScriptedDialogs dialogs;
    dialogs.then_text(name);
    return add(basin, dialogs);
}

TEST(SimulationName, IsAskedForWithTheTitleOfANewSimulation) {
    const ScratchBasin basin;
    ScriptedDialogs dialogs;
    dialogs.then_text("wet");
    EXPECT_THAT(add(basin, dialogs), Optional(std::string{"wet"}));
    ASSERT_EQ(dialogs.inputs().size(), 1U);
    EXPECT_EQ(dialogs.inputs()[0].prompt, k_ask);
    EXPECT_EQ(dialogs.inputs()[0].title, "Name the New Simulation");
    EXPECT_EQ(dialogs.inputs()[0].proposed, "");
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST(SimulationName, TheNameOfferedByAnImportChangesTheTitle) {
    const ScratchBasin basin;
    ScriptedDialogs dialogs;
    dialogs.then_text("wet");
    add(basin, dialogs, "alder");
    EXPECT_EQ(dialogs.inputs()[0].title, "Name the Imported Simulation");
    EXPECT_EQ(dialogs.inputs()[0].proposed, "alder");
}

TEST(SimulationName, BlanksAtItsEndsAreRemoved) {
    const ScratchBasin basin;
    EXPECT_THAT(add_named(basin, "  wet year \t"), Optional(std::string{"wet year"}));
    EXPECT_TRUE(basin.has_table("wet year"));
}

TEST(SimulationName, WithoutOneNoTableIsCreated) {
    for (const auto& answer :
         std::vector<std::optional<std::string>>{std::nullopt, std::string{}, std::string{"   "}}) {
        const ScratchBasin basin;
        const std::string before = file_bytes(basin.path());
        ScriptedDialogs dialogs;
        dialogs.then_text(answer);
        EXPECT_EQ(add(basin, dialogs), std::nullopt);
        EXPECT_EQ(file_bytes(basin.path()), before);
    }
}

TEST(SimulationName, EachInvalidCharacterLeadsToAnotherQuestion) {
    for (const char refused : std::string{".![]`"}) {
        for (const std::string& name :
             {std::string{"a"} + refused + "b", std::string(1, refused), "name" + std::string(1, refused)}) {
            SCOPED_TRACE(name);
            const ScratchBasin basin;
            ScriptedDialogs dialogs;
            dialogs.then_text(name).then_text("good");
            EXPECT_THAT(add(basin, dialogs), Optional(std::string{"good"}));
            ASSERT_EQ(dialogs.inputs().size(), 2U);
            EXPECT_EQ(dialogs.inputs()[1].prompt, k_ask_again);
            EXPECT_EQ(dialogs.inputs()[1].title, "Name the New Simulation");
            EXPECT_FALSE(basin.has_table(name));
        }
    }
}

TEST(SimulationName, IsAskedForUntilItIsValidOrEmpty) {
    const ScratchBasin basin;
    ScriptedDialogs dialogs;
    dialogs.then_text("a.b").then_text("[c]").then_text("d!").then_text("");
    EXPECT_EQ(add(basin, dialogs), std::nullopt);
    EXPECT_EQ(dialogs.inputs().size(), 4U);
}

TEST(SimulationName, InvalidUtf8AndControlCharactersAreRefused) {
    for (const std::string& name : {std::string{"a\xff"}, std::string{"a\0b", 3}, std::string{"a\nb"},
                                    std::string{"a\x7f"
                                                "b"},
                                    std::string{"\xc3"}}) {
        EXPECT_THAT(simulation_name_problem(name), Optional(std::string{k_ask_again}));
    }
}

TEST(SimulationName, AllOtherCharactersAreAccepted) {
    for (const std::string& name :
         {std::string{"O'Hara's \"wet\" year"}, std::string{"100% (a+b); DROP TABLE x --"},
          std::string{"Gr\xc3\xbcnbach \xc3\x84\xc3\xa9"}, std::string{"\xe9\xa3\x8e\xe9\x9b\xaa 1996"},
          std::string{"\xd0\x98\xd0\xbd\xd1\x8f"}, std::string{"\xf0\x9f\x8f\x94"}, std::string{"select"},
          std::string{"1996"}, std::string{"a/b\\c:d*e?f<g>h|i&j"}, std::string{"--"}, std::string{"\""},
          std::string{"'"}}) {
        SCOPED_TRACE(name);
        const ScratchBasin basin;
        EXPECT_THAT(add_named(basin, name), Optional(name));
        EXPECT_TRUE(basin.has_table(name));
        EXPECT_TRUE(basin.parameters(name).empty());
    }
}

TEST(SimulationName, ThreeHundredLettersAreAccepted) {
    const ScratchBasin basin;
    const std::string name(300, 'n');
    EXPECT_THAT(add_named(basin, name), Optional(name));
    EXPECT_TRUE(basin.has_table(name));
}

TEST(SimulationName, NamesOfTheStoresOwnTablesAreRefusedInAnyCase) {
    for (const char* name : {"sqlite_master", "SQLITE_x", "Sqlite_sequence"}) {
        SCOPED_TRACE(name);
        const ScratchBasin basin;
        ScriptedDialogs dialogs;
        dialogs.then_text(name).then_text("good");
        EXPECT_THAT(add(basin, dialogs), Optional(std::string{"good"}));
        EXPECT_EQ(dialogs.inputs().size(), 2U);
        EXPECT_NE(dialogs.inputs()[1].prompt, k_ask);
    }
    EXPECT_EQ(simulation_name_problem("sqlite"), std::nullopt);
    EXPECT_EQ(simulation_name_problem("my sqlite_x"), std::nullopt);
}

TEST(SimulationTable, HasItsFieldsInOrderWithTheirTypes) {
    const ScratchBasin basin;
    add_named(basin, "wet");
    BasinDatabase database{basin.path(), Access::ReadOnly};
    std::vector<std::string> fields;
    for (const Field& field : database.table_fields("wet"))
        fields.push_back(field.name + " " + declared_type(field));
    EXPECT_THAT(fields, ElementsAre("Zone SMALLINT", "Date DATE", "Tcrit FLOAT", "LagTime FLOAT",
                                    "LapseRate FLOAT", "An FLOAT", "Cs FLOAT", "Cr FLOAT", "RCA SMALLINT",
                                    "Xcoeff DOUBLE", "Ycoeff DOUBLE"));
}

TEST(DuplicateName, IsAskedAboutWithABlankBeforeTheQuote) {
    const ScratchBasin basin;
    add_named(basin, "wet");
    ScriptedDialogs dialogs;
    dialogs.then_text("wet").then(Answer::No);
    EXPECT_EQ(add(basin, dialogs), std::nullopt);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(dialogs.messages()[0].message.text,
              "The current database already contains a simulation named 'wet '.  Overwrite?");
    EXPECT_EQ(dialogs.messages()[0].message.title, "Duplicate simulation same");
    EXPECT_EQ(dialogs.messages()[0].message.buttons, Buttons::YesNo);
}

TEST(DuplicateName, NoKeepsTheTable) {
    const ScratchBasin basin;
    add_named(basin, "wet");
    basin.execute("INSERT INTO wet (Zone, Date) VALUES (1, 35000)");
    const std::string before = file_bytes(basin.path());
    ScriptedDialogs dialogs;
    dialogs.then_text("wet").then(Answer::No);
    EXPECT_EQ(add(basin, dialogs), std::nullopt);
    EXPECT_EQ(file_bytes(basin.path()), before);
}

TEST(DuplicateName, YesGivesAnEmptyTable) {
    const ScratchBasin basin;
    add_named(basin, "wet");
    basin.execute("INSERT INTO wet (Zone, Date) VALUES (1, 35000)");
    ScriptedDialogs dialogs;
    dialogs.then_text("wet").then(Answer::Yes);
    EXPECT_THAT(add(basin, dialogs), Optional(std::string{"wet"}));
    EXPECT_TRUE(basin.parameters("wet").empty());
}

TEST(DuplicateName, AnotherCaseIsTheSameNameInEveryScript) {
    for (const auto& [first, second] : std::vector<std::pair<std::string, std::string>>{
             {"Wet", "wET"},
             {"\xc3\x84rmel", "\xc3\xa4RMEL"},
             {"\xd0\x98\xd0\xbd\xd1\x8f", "\xd0\xb8\xd0\x9d\xd0\xaf"}}) {
        SCOPED_TRACE(first);
        const ScratchBasin basin;
        add_named(basin, first);
        ScriptedDialogs dialogs;
        dialogs.then_text(second).then(Answer::Yes);
        EXPECT_THAT(add(basin, dialogs), Optional(second));
        BasinDatabase database{basin.path(), Access::ReadOnly};
        EXPECT_EQ(database.stored_name(first), second);
    }
}

TEST(ReservedName, YesToOverwritingATableOfTheBasinIsRefusedAndActsAsNo) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    basin.execute(create_statement(sim_results_table()));
    const std::string before = file_bytes(basin.path());
    for (const char* name :
         {k_basin_description, k_zone_description, k_simulation_index, k_physical_data, k_basin_averages,
          k_scenario_index, k_sim_results, "PHYSICALDATA", "simresults"}) {
        SCOPED_TRACE(name);
        ScriptedDialogs dialogs;
        dialogs.then_text(name).then(Answer::Yes);
        EXPECT_EQ(add(basin, dialogs), std::nullopt);
        ASSERT_EQ(dialogs.messages().size(), 2U);
        EXPECT_THAT(
            dialogs.messages()[1].message.text,
            testing::StartsWith("'" + std::string{name} + "' is the name of a table that the basin needs"));
        EXPECT_EQ(dialogs.messages()[1].message.icon, Icon::Stop);
        EXPECT_EQ(file_bytes(basin.path()), before);
    }
}

// A run deletes SimResults, and the monthly averages use a table of their own: a
// parameter table of that name would be lost.
TEST(ReservedName, ATableThatTheBasinDoesNotHaveYetIsReservedToo) {
    for (const char* name : {k_sim_results, k_basin_averages, "simRESULTS"}) {
        SCOPED_TRACE(name);
        const ScratchBasin basin;
        ScriptedDialogs dialogs;
        dialogs.then_text(name).then_text("good");
        EXPECT_THAT(add(basin, dialogs), Optional(std::string{"good"}));
        EXPECT_FALSE(basin.has_table(name));
    }
}

TEST(ReservedName, YesToOverwritingAScenarioIsRefusedAndActsAsNo) {
    const ScratchBasin basin;
    basin.execute(create_statement(scenario_table("warm")));
    basin.execute("INSERT INTO ClimateScenarioIndex (SimulationFile, ScenarioFile) VALUES ('wet', 'warm')");
    const std::string before = file_bytes(basin.path());
    for (const char* name : {"warm", "WARM"}) {
        ScriptedDialogs dialogs;
        dialogs.then_text(name).then(Answer::Yes);
        EXPECT_EQ(add(basin, dialogs), std::nullopt);
        EXPECT_EQ(dialogs.messages().size(), 2U);
        EXPECT_EQ(file_bytes(basin.path()), before);
    }
}

/// Gives the results of a basin a name.
std::optional<std::string> name_results(const ScratchBasin& basin, ScriptedDialogs& dialogs) {
    BasinDatabase database{basin.path(), Access::ReadWrite};
    if (!database.has_table("SimResults")) database.create_table(sim_results_table());
    const auto name = Name_Results_Table(database, dialogs);
    EXPECT_TRUE(dialogs.complaints().empty()) << dialogs.complaints().front();
    EXPECT_EQ(dialogs.answers_left(), 0U);
    return name;
}

TEST(NameOfResults, IsGivenToTheTable) {
    const ScratchBasin basin;
    ScriptedDialogs dialogs;
    dialogs.then_text("a.b").then_text("  kept ");
    EXPECT_THAT(name_results(basin, dialogs), Optional(std::string{"kept"}));
    ASSERT_EQ(dialogs.inputs().size(), 2U);
    EXPECT_EQ(dialogs.inputs()[0].prompt, k_ask);
    EXPECT_EQ(dialogs.inputs()[0].title, "Assign name to current results table");
    EXPECT_EQ(dialogs.inputs()[1].prompt, k_ask_again);
    EXPECT_TRUE(basin.has_table("kept"));
    EXPECT_FALSE(basin.has_table("SimResults"));
}

TEST(NameOfResults, WithoutOneTheTableKeepsItsOwn) {
    const ScratchBasin basin;
    ScriptedDialogs dialogs;
    dialogs.then_text("   ");
    EXPECT_EQ(name_results(basin, dialogs), std::nullopt);
    EXPECT_TRUE(basin.has_table("SimResults"));
}

TEST(NameOfResults, OfAnExistingTableIsAskedAboutAndNoIsProposed) {
    for (const Answer answer : {Answer::No, Answer::Yes}) {
        const ScratchBasin basin;
        add_named(basin, "wet");
        ScriptedDialogs dialogs;
        dialogs.then_text("wet").then(answer);
        EXPECT_EQ(name_results(basin, dialogs).has_value(), answer == Answer::Yes);
        const Message& question = dialogs.messages().at(0).message;
        EXPECT_EQ(question.text,
                  "The current database already contains a simulation named 'wet '.  Overwrite?");
        EXPECT_EQ(question.title, "Duplicate simulation same");
        EXPECT_EQ(question.icon, Icon::Question);
        EXPECT_EQ(question.buttons, Buttons::YesNo);
        EXPECT_EQ(question.default_answer, Answer::No);
        EXPECT_EQ(basin.has_table("SimResults"), answer == Answer::No);
        BasinDatabase database{basin.path(), Access::ReadOnly};
        EXPECT_EQ(database.table_fields("wet").size(),
                  answer == Answer::Yes ? sim_results_table().fields.size() : 11U);
    }
}

}  // namespace
}  // namespace nivora
