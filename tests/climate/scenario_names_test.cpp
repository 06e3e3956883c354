// New scenarios: their names, what they hold at first, and what a refusal leaves.
#include "tests/climate/scenario_basin.h"

#include <cmath>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

using NewScenario = ScenarioBasinTest;
using ScenarioName = ScenarioBasinTest;
using ScenarioPlaceholder = ScenarioBasinTest;

constexpr const char* k_invalid_name = "Invalid scenario name";
constexpr const char* k_naming_error = "Error naming new climate scenario";
constexpr const char* k_reserved = "This name is reserved for system use.";
constexpr const char* k_in_use = "This name is already in use in this database.";

TEST_F(NewScenario, HasAnEmptyTableWithItsFieldsInOrder) {
    EXPECT_THAT(make("warm"), Optional(std::string{"warm"}));
    std::vector<std::string> fields;
    for (const Field& field : database.table_fields("warm")) fields.push_back(field.name);
    EXPECT_THAT(fields, ElementsAre("VarParm", "StartDate", "EndDate", "EditAction", "EditFactor", "Zones"));
    EXPECT_THAT(rows("warm"), IsEmpty());
}

TEST_F(NewScenario, GetsAnIndexRowOfTodayThatEndsTheWinterInTheMiddle) {
    const double before = std::floor(local_now());
    ASSERT_TRUE(make("warm"));
    const auto index_rows = index();
    ASSERT_EQ(index_rows.size(), 1U);
    EXPECT_EQ(index_rows[0].simulation, "wet");
    EXPECT_EQ(index_rows[0].scenario, "warm");
    // 10 / 2 - 1 = 4 days after the start
    EXPECT_THAT(index_rows[0].winter_end_date, Optional(static_cast<double>(first + 4)));
    EXPECT_THAT(index_rows[0].creation_date, testing::AnyOf(Optional(before), Optional(before + 1.0)));
    EXPECT_THAT(index_rows[0].comments, Optional(std::string{"Place your comments here!"}));
}

TEST_F(NewScenario, StoresAWinterEndOfHalfADay) {
    select("wet", first, first + 3);
    ASSERT_TRUE(make("warm"));
    EXPECT_THAT(index()[0].winter_end_date, Optional(static_cast<double>(first) + 0.5));
}

TEST_F(NewScenario, AsksForItsName) {
    ASSERT_TRUE(make("warm"));
    ASSERT_EQ(dialogs.inputs().size(), 1U);
    EXPECT_EQ(dialogs.inputs()[0].prompt, "Enter a name for the new climate change sceanario:");
    EXPECT_EQ(dialogs.inputs()[0].title, "Create New Climate Change Scenario");
    EXPECT_THAT(dialogs.messages(), IsEmpty());
}

TEST_F(NewScenario, OfThreeDaysIsAllowedAndOfTwoDaysIsNot) {
    select("wet", first, first + 1);
    EXPECT_EQ(new_scenario(database, basin, dialogs), std::nullopt);
    expect_last("Similation period too small to perform a meaningful climate change simulation",
                "Period too short for climate change");
    EXPECT_THAT(index(), IsEmpty());
    select("wet", first, first + 2);
    EXPECT_TRUE(make("warm"));
    EXPECT_THAT(index()[0].winter_end_date, Optional(static_cast<double>(first)));
}

TEST_F(NewScenario, WithoutAPeriodIsRefused) {
    basin.Current_End.reset();
    EXPECT_EQ(new_scenario(database, basin, dialogs), std::nullopt);
    EXPECT_EQ(dialogs.messages().back().message.title, "Period too short for climate change");
}

TEST_F(NewScenario, WithoutANameIsNotMade) {
    const std::string before = file_bytes(file.path());
    EXPECT_EQ(make(""), std::nullopt);
    EXPECT_EQ(make("   "), std::nullopt);
    dialogs.then_text(std::nullopt);
    EXPECT_EQ(new_scenario(database, basin, dialogs), std::nullopt);
    EXPECT_THAT(dialogs.messages(), IsEmpty());
    EXPECT_TRUE(file_bytes(file.path()) == before);
}

TEST_F(NewScenario, LosesTheBlanksAroundItsName) {
    EXPECT_THAT(make("  warm and wet "), Optional(std::string{"warm and wet"}));
    EXPECT_TRUE(database.has_table("warm and wet"));
}

TEST_F(ScenarioName, AuxiliaryIsReservedInAnyCase) {
    for (const char* name : {"AUXILIARY", "auxiliary", "Auxiliary", "aUXILIARy"}) {
        EXPECT_EQ(make(name), std::nullopt);
        expect_last("Reserved word " + std::string{name}, k_invalid_name);
        EXPECT_FALSE(database.has_table(name));
    }
    EXPECT_TRUE(make("Auxiliary 2"));
}

TEST_F(ScenarioName, NamesOfTheStoreAreReserved) {
    const std::string before = file_bytes(file.path());
    for (const char* name :
         {"None", "NONE", "none", "sqlite_warm", "SQLITE_x", "SimResults", "simresults", "BasinAverages",
          "PhysicalData", "ClimateScenarioIndex", "SimulationIndex", "ZoneDescription", "basindescription"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(make(name), std::nullopt);
        expect_last(k_reserved, k_naming_error);
    }
    EXPECT_TRUE(file_bytes(file.path()) == before);
    EXPECT_TRUE(make("sqlite"));
    EXPECT_TRUE(make("None at all"));
}

TEST_F(ScenarioName, OfAnyOtherTableIsInUseInAnyCase) {
    database.create_table(parameter_table("wet"));
    ASSERT_TRUE(make("warm"));
    ASSERT_TRUE(make("\xc3\x89t\xc3\xa9"));  // "Été"
    for (const char* name : {"wet", "WET", "warm", "Warm", "\xc3\xa9t\xc3\xa9"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(make(name), std::nullopt);
        expect_last(k_in_use, k_naming_error);
    }
    EXPECT_EQ(index().size(), 2U);
}

TEST_F(ScenarioName, OfAnotherSimulationsScenarioIsInUse) {
    ASSERT_TRUE(make("warm"));
    select("dry", first, first + 10);
    EXPECT_EQ(make("warm"), std::nullopt);
    expect_last(k_in_use, k_naming_error);
    EXPECT_THAT(references(), ElementsAre("wet/warm"));
}

TEST_F(ScenarioName, WithACharacterThatNoTableTakesIsRefused) {
    for (const std::string& name :
         {std::string{"wa.rm"}, std::string{"warm!"}, std::string{"[warm"}, std::string{"warm]"},
          std::string{"wa`rm"}, std::string{"wa\nrm"}, std::string{"wa\0rm", 5}, std::string{"\xff\xfe"}}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(make(name), std::nullopt);
        expect_last("The name selected, " + name + ", contains invalid character(s)", k_invalid_name);
    }
    EXPECT_THAT(index(), IsEmpty());
}

TEST_F(ScenarioName, MayHoldQuotesSignsLettersOfAnyScriptAndThreeHundredLetters) {
    std::vector<std::string> names{
        "it's", "\"warm\"",           "50 % more; -- ?", "select", "\xe6\xb8\xa9\xe6\x9a\x96",
        "1996", std::string(300, 'n')};
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        EXPECT_THAT(make(name), Optional(name));
        EXPECT_TRUE(database.has_table(name));
        EXPECT_EQ(index().back().scenario, name);
    }
    EXPECT_THAT(dialogs.messages(), IsEmpty());
    EXPECT_EQ(open_scenarios(database, "wet", dialogs).size(), names.size());
}

TEST_F(ScenarioPlaceholder, IsRemovedWithItsTableOnceAScenarioExists) {
    add_placeholder("wet");
    ASSERT_TRUE(make("warm"));
    EXPECT_THAT(references(), ElementsAre("wet/warm"));
    EXPECT_FALSE(database.has_table(k_no_scenario));
}

TEST_F(ScenarioPlaceholder, OfAnotherSimulationStaysWithItsTable) {
    add_placeholder("dry");
    add_placeholder("wet");
    ASSERT_TRUE(make("warm"));
    EXPECT_THAT(references(), ElementsAre("dry/None", "wet/warm"));
    EXPECT_TRUE(database.has_table(k_no_scenario));
    select("dry", first, first + 10);
    ASSERT_TRUE(make("cold"));
    EXPECT_THAT(references(), ElementsAre("wet/warm", "dry/cold"));
    EXPECT_FALSE(database.has_table(k_no_scenario));
}

TEST_F(ScenarioPlaceholder, StaysIfNoNameOrARefusedOneWasGiven) {
    add_placeholder("wet");
    const std::string before = file_bytes(file.path());
    for (const char* name : {"", "Auxiliary", "None", "wa.rm", "PhysicalData"})
        EXPECT_EQ(make(name), std::nullopt);
    EXPECT_THAT(references(), ElementsAre("wet/None"));
    EXPECT_TRUE(file_bytes(file.path()) == before);
}

// A simulation may be named None. Its table holds parameters and must outlive every placeholder.
TEST_F(ScenarioPlaceholder, NeverRemovesTheParametersOfASimulationOfItsName) {
    database.create_table(parameter_table("None"));
    add_index_row("wet", "None");
    ASSERT_TRUE(make("warm"));
    EXPECT_THAT(references(), ElementsAre("wet/warm"));
    EXPECT_EQ(database.table_fields("None").size(), 11U);
}

TEST_F(NewScenario, ThatTheFileCannotTakeLeavesItAsItWas) {
    add_placeholder("wet");
    database.execute("DROP TABLE ClimateScenarioIndex");
    database.execute(
        "CREATE TABLE ClimateScenarioIndex (SimulationFile, ScenarioFile, WinterEndDate, "
        "CreationDate, Comments CHECK (Comments = ''))");
    dialogs.then_text("warm");
    EXPECT_TRUE(refused([&] { static_cast<void>(new_scenario(database, basin, dialogs)); }));
    EXPECT_FALSE(database.has_table("warm"));
    EXPECT_TRUE(database.has_table(k_no_scenario));
    EXPECT_TRUE(is_free());
}

}  // namespace
}  // namespace nivora
