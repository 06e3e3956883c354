// Scenarios in the basin file: opening, storing, replacing and deleting them.
#include "store/transactions.h"
#include "tests/climate/scenario_basin.h"

#include <cmath>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

using OpenedScenarios = ScenarioBasinTest;
using StoredScenario = ScenarioBasinTest;
using DeletedScenario = ScenarioBasinTest;
using CreatedScenario = ScenarioBasinTest;

TEST_F(OpenedScenarios, AreThoseOfTheSimulationInStoredOrder) {
    ASSERT_TRUE(make("warm"));
    select("dry", first, first + 10);
    ASSERT_TRUE(make("cold"));
    select("wet", first, first + 10);
    ASSERT_TRUE(make("another"));
    const auto scenarios = open_scenarios(database, "WET", dialogs);
    ASSERT_EQ(scenarios.size(), 2U);
    EXPECT_EQ(scenarios[0].index.scenario, "warm");
    EXPECT_EQ(scenarios[1].index.scenario, "another");
    EXPECT_THAT(open_scenarios(database, "snowy", dialogs), IsEmpty());
}

TEST_F(OpenedScenarios, BringTheirRowsWithTheirBlanks) {
    ASSERT_TRUE(make("warm"));
    ScenarioRow half = scenario_row(2, k_missing);
    half.start.reset();
    half.zones.reset();
    add_rows<ScenarioRow>(database, scenario_table("warm"), std::vector{scenario_row(1, 1.5F), half});
    const auto scenarios = open_scenarios(database, "wet", dialogs);
    ASSERT_EQ(scenarios.size(), 1U);
    ASSERT_EQ(scenarios[0].rows.size(), 2U);
    EXPECT_THAT(scenarios[0].rows[0].variable, Optional(1));
    EXPECT_EQ(scenarios[0].rows[0].factor, 1.5F);
    EXPECT_THAT(scenarios[0].rows[1].variable, Optional(2));
    EXPECT_EQ(scenarios[0].rows[1].start, std::nullopt);
    EXPECT_EQ(scenarios[0].rows[1].zones, std::nullopt);
    EXPECT_TRUE(std::isnan(scenarios[0].rows[1].factor));
}

TEST_F(OpenedScenarios, LeaveOutThePlaceholderAndKeepIt) {
    add_placeholder("wet");
    EXPECT_THAT(open_scenarios(database, "wet", dialogs), IsEmpty());
    EXPECT_THAT(references(), ElementsAre("wet/None"));
    EXPECT_TRUE(database.has_table(k_no_scenario));
    EXPECT_THAT(dialogs.messages(), IsEmpty());
}

TEST_F(OpenedScenarios, DoNotMissThePlaceholdersTable) {
    add_index_row("wet", k_no_scenario);
    EXPECT_THAT(open_scenarios(database, "wet", dialogs), IsEmpty());
    EXPECT_THAT(references(), ElementsAre("wet/None"));
    EXPECT_THAT(dialogs.messages(), IsEmpty());
}

TEST_F(OpenedScenarios, LoseAReferenceWhoseTableIsMissing) {
    ASSERT_TRUE(make("warm"));
    add_index_row("wet", "it's gone");
    add_index_row("dry", "gone as well");
    const auto scenarios = open_scenarios(database, "wet", dialogs);
    ASSERT_EQ(scenarios.size(), 1U);
    EXPECT_EQ(scenarios[0].index.scenario, "warm");
    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_last(
        "A reference to a climate change scenario, 'it's gone', could not be resolved.  The reference will "
        "be deleted from the basin database.",
        "Missing climate change scenario for Simulation 'wet'");
    EXPECT_THAT(references(), ElementsAre("wet/warm", "dry/gone as well"));
}

TEST_F(OpenedScenarios, OfABasinWithoutTheIndexAreRefused) {
    database.execute("DROP TABLE ClimateScenarioIndex");
    EXPECT_THAT(refused([&] { static_cast<void>(open_scenarios(database, "wet", dialogs)); }),
                Optional(StoreFault::Missing));
}

TEST_F(StoredScenario, IsReadBackAsItWas) {
    ASSERT_TRUE(make("warm"));
    ASSERT_TRUE(make("cold"));
    auto scenarios = open_scenarios(database, "wet", dialogs);
    Scenario& warm = scenarios[0];
    const auto creation = warm.index.creation_date;
    warm.rows = {scenario_row(1, 1.5F), scenario_row(2, -0.25F)};
    warm.rows[1].zones.reset();
    warm.index.comments = "Two degrees \"warmer\"";
    warm.index.winter_end_date = static_cast<double>(first + 7);
    store_scenario(database, warm);
    warm.rows.pop_back();
    store_scenario(database, warm);

    const auto read = open_scenarios(database, "wet", dialogs);
    ASSERT_EQ(read.size(), 2U);
    EXPECT_EQ(read[0].index.scenario, "warm");
    EXPECT_THAT(read[0].index.comments, Optional(std::string{"Two degrees \"warmer\""}));
    EXPECT_THAT(read[0].index.winter_end_date, Optional(static_cast<double>(first + 7)));
    EXPECT_EQ(read[0].index.creation_date, creation);
    ASSERT_EQ(read[0].rows.size(), 1U);
    EXPECT_EQ(read[0].rows[0].factor, 1.5F);
    EXPECT_THAT(read[1].index.comments, Optional(std::string{"Place your comments here!"}));
    EXPECT_THAT(read[1].index.winter_end_date, Optional(static_cast<double>(first + 4)));
    EXPECT_THAT(read[1].rows, IsEmpty());
}

TEST_F(StoredScenario, ThatTheFileCannotTakeLeavesItAsItWas) {
    ASSERT_TRUE(make("warm"));
    auto scenario = open_scenarios(database, "wet", dialogs).front();
    scenario.rows = {scenario_row(1, 1.5F)};
    store_scenario(database, scenario);
    scenario.rows = {scenario_row(2, 2.5F), scenario_row(2, std::numeric_limits<float>::infinity())};
    scenario.index.comments = "new";
    EXPECT_THAT(refused([&] { store_scenario(database, scenario); }), Optional(StoreFault::Value));
    ASSERT_EQ(rows("warm").size(), 1U);
    EXPECT_EQ(rows("warm")[0].factor, 1.5F);
    EXPECT_THAT(index()[0].comments, Optional(std::string{"Place your comments here!"}));
    EXPECT_TRUE(is_free());
}

TEST_F(StoredScenario, MustBeOneOfTheBasin) {
    ASSERT_TRUE(make("warm"));
    auto scenario = open_scenarios(database, "wet", dialogs).front();
    for (const auto& [simulation, name] :
         std::vector<std::pair<std::string, std::string>>{{"wet", "cold"}, {"dry", "warm"}}) {
        scenario.index.simulation = simulation;
        scenario.index.scenario = name;
        EXPECT_THAT(refused([&] { store_scenario(database, scenario); }), Optional(StoreFault::Missing));
    }
    scenario.index.simulation = "wet";
    scenario.index.scenario = "warm";
    database.drop_table("warm");
    EXPECT_THAT(refused([&] { store_scenario(database, scenario); }), Optional(StoreFault::Missing));
    EXPECT_TRUE(is_free());
}

TEST_F(DeletedScenario, GoesWithItsTableAndItsRowAfterAQuestion) {
    ASSERT_TRUE(make("warm"));
    ASSERT_TRUE(make("cold"));
    dialogs.then(Answer::Yes);
    EXPECT_TRUE(delete_scenario(database, "wet", "warm", dialogs));
    EXPECT_EQ(dialogs.messages().back().message.text, "Delete 'warm' scenario table?");
    EXPECT_EQ(dialogs.messages().back().message.default_answer, Answer::No);
    EXPECT_EQ(dialogs.messages().back().message.buttons, Buttons::YesNoCancel);
    EXPECT_THAT(references(), ElementsAre("wet/cold"));
    EXPECT_FALSE(database.has_table("warm"));
    EXPECT_FALSE(database.has_table(k_no_scenario));
}

TEST_F(DeletedScenario, StaysIfTheAnswerIsNoOrCancel) {
    ASSERT_TRUE(make("warm"));
    for (const Answer answer : {Answer::No, Answer::Cancel}) {
        dialogs.then(answer);
        EXPECT_FALSE(delete_scenario(database, "wet", "warm", dialogs));
    }
    EXPECT_THAT(references(), ElementsAre("wet/warm"));
    EXPECT_TRUE(database.has_table("warm"));
}

TEST_F(DeletedScenario, ThatWasTheLastLeavesThePlaceholder) {
    select("dry", first, first + 10);
    ASSERT_TRUE(make("cold"));
    select("wet", first, first + 10);
    ASSERT_TRUE(make("warm"));
    dialogs.then(Answer::Yes);
    EXPECT_TRUE(delete_scenario(database, "wet", "warm", dialogs));
    EXPECT_THAT(references(), ElementsAre("dry/cold", "wet/None"));
    const ScenarioIndexRow placeholder = index()[1];
    EXPECT_EQ(placeholder.winter_end_date, std::nullopt);
    EXPECT_EQ(placeholder.creation_date, std::nullopt);
    EXPECT_THAT(placeholder.comments, Optional(std::string{"No climate change"}));
    EXPECT_FALSE(database.has_table("warm"));
    EXPECT_EQ(database.table_fields(k_no_scenario).size(), 6U);
    EXPECT_THAT(rows(k_no_scenario), IsEmpty());
}

TEST_F(DeletedScenario, OfASecondSimulationSharesTheTableOfThePlaceholder) {
    add_placeholder("dry");
    ASSERT_TRUE(make("warm"));
    dialogs.then(Answer::Yes);
    EXPECT_TRUE(delete_scenario(database, "wet", "warm", dialogs));
    EXPECT_THAT(references(), ElementsAre("dry/None", "wet/None"));
    EXPECT_TRUE(database.has_table(k_no_scenario));
}

TEST_F(DeletedScenario, IsFoundInAnyCaseAndWithQuotes) {
    ASSERT_TRUE(make("It's \"warm\""));
    dialogs.then(Answer::Yes);
    EXPECT_TRUE(delete_scenario(database, "WET", "IT'S \"WARM\"", dialogs));
    EXPECT_THAT(references(), ElementsAre("wet/None"));
    EXPECT_FALSE(database.has_table("It's \"warm\""));
}

TEST_F(DeletedScenario, WhoseTableIsMissingIsStillDeleted) {
    ASSERT_TRUE(make("warm"));
    database.drop_table("warm");
    dialogs.then(Answer::Yes);
    EXPECT_TRUE(delete_scenario(database, "wet", "warm", dialogs));
    EXPECT_THAT(references(), ElementsAre("wet/None"));
}

TEST_F(DeletedScenario, ThatTheSimulationLacksIsNotAskedAbout) {
    ASSERT_TRUE(make("warm"));
    add_placeholder("dry");
    EXPECT_FALSE(delete_scenario(database, "wet", "cold", dialogs));
    EXPECT_FALSE(delete_scenario(database, "dry", "warm", dialogs));
    EXPECT_FALSE(delete_scenario(database, "dry", k_no_scenario, dialogs));
    EXPECT_THAT(dialogs.messages(), IsEmpty());
}

// Only a file that another program changed can refer to such a table; its data must not be lost.
TEST_F(DeletedScenario, NeverRemovesATableThatIsNotAScenario) {
    add_index_row("wet", "PhysicalData");
    dialogs.then(Answer::Yes);
    EXPECT_TRUE(delete_scenario(database, "wet", "PhysicalData", dialogs));
    EXPECT_THAT(references(), ElementsAre("wet/None"));
    EXPECT_TRUE(database.has_table("PhysicalData"));
}

TEST_F(CreatedScenario, AsksNothing) {
    EXPECT_EQ(create_scenario(database, basin, "warm"), std::nullopt);
    EXPECT_THAT(references(), ElementsAre("wet/warm"));
    EXPECT_THAT(rows("warm"), IsEmpty());
    EXPECT_THAT(index()[0].winter_end_date, Optional(static_cast<double>(first + 4)));
}

TEST_F(CreatedScenario, ReplacesOneOfItsNameInTheSameSimulation) {
    ASSERT_EQ(create_scenario(database, basin, "warm"), std::nullopt);
    auto scenario = open_scenarios(database, "wet", dialogs).front();
    scenario.rows = {scenario_row(1, 1.5F)};
    scenario.index.comments = "old";
    store_scenario(database, scenario);
    EXPECT_EQ(create_scenario(database, basin, "Warm"), std::nullopt);
    EXPECT_THAT(references(), ElementsAre("wet/Warm"));
    EXPECT_THAT(rows("warm"), IsEmpty());
    EXPECT_THAT(index()[0].comments, Optional(std::string{"Place your comments here!"}));
}

TEST_F(CreatedScenario, IsRefusedForTheSameReasonsAsANewOne) {
    ASSERT_EQ(create_scenario(database, basin, "warm"), std::nullopt);
    database.create_table(parameter_table("wet"));
    const std::string before = file_bytes(file.path());
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "A scenario needs a name."},
        {"  ", "A scenario needs a name."},
        {"auxiliary", "Reserved word auxiliary"},
        {"None", "This name is reserved for system use."},
        {"SimResults", "This name is reserved for system use."},
        {"wet", "This name is already in use in this database."},
        {"wa.rm", "The name selected, wa.rm, contains invalid character(s)"}};
    for (const auto& [name, text] : cases) {
        const auto problem = create_scenario(database, basin, name);
        ASSERT_TRUE(problem.has_value()) << name;
        EXPECT_EQ(problem->text, text);
    }
    select("dry", first, first + 10);
    EXPECT_EQ(create_scenario(database, basin, "warm")->text,
              "This name is already in use in this database.");
    select("wet", first, first + 1);
    EXPECT_EQ(create_scenario(database, basin, "warm")->title, "Period too short for climate change");
    EXPECT_TRUE(file_bytes(file.path()) == before);
    EXPECT_TRUE(is_free());
}

TEST_F(CreatedScenario, ThatIsRefusedRestoresTheFormerOne) {
    // The scenario refers to a table of another kind: its row would be deleted, but the name stays in use.
    database.create_table(parameter_table("odd"));
    add_index_row("wet", "odd");
    EXPECT_TRUE(create_scenario(database, basin, "odd").has_value());
    EXPECT_THAT(references(), ElementsAre("wet/odd"));
    EXPECT_TRUE(is_free());
}

TEST_F(CreatedScenario, WorksWithinATransactionAndIsRolledBackWithIt) {
    add_placeholder("wet");
    {
        const HeldTransaction transaction{database};
        EXPECT_EQ(create_scenario(database, basin, "warm"), std::nullopt);
    }
    EXPECT_THAT(references(), ElementsAre("wet/None"));
    EXPECT_FALSE(database.has_table("warm"));
}

}  // namespace
}  // namespace nivora
