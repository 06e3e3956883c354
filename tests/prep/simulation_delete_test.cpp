// Deleting a simulation from the grid and from the basin file.
#include "prep/simulation_grid.h"
#include "tests/prep/prep_fixture.h"

namespace nivora {
namespace {

using testing::Optional;

class SimulationDelete : public PrepTest {
protected:
    SimulationDelete() {
        for (const char* name : {"one", "two", "three"}) {
            make_parameter_table(name);
            select(name, october(1), october(3));
        }
    }

    void remove(std::size_t row) { Delete_Simulation(context_, database_, row); }
};

TEST_F(SimulationDelete, IsAskedAboutByName) {
    const Message question = delete_simulation_question(basin_, 1);
    EXPECT_EQ(question.text, "Are you sure you want to delete 'two'?");
    EXPECT_EQ(question.title, "Delete a simulation");
    EXPECT_EQ(question.buttons, Buttons::YesNo);
    EXPECT_EQ(question.default_answer, Answer::No) << "Enter right after Alt+D must not delete anything";
}

TEST_F(SimulationDelete, RemovesTheRowAndTheTableOfItsName) {
    remove(0);
    ASSERT_EQ(basin_.simulations.size(), 2U);
    EXPECT_EQ(basin_.simulations[0].name, "two");
    EXPECT_FALSE(database_.has_table("one"));
    EXPECT_TRUE(database_.has_table("two"));
    EXPECT_TRUE(database_.has_table("three"));
    EXPECT_TRUE(basin_.Basin_Changed);
    EXPECT_TRUE(basin_.Input_Changed);
}

TEST_F(SimulationDelete, LeavesTheLastRowActiveAndNoSimulationSelected) {
    remove(0);
    EXPECT_THAT(basin_.current_row, Optional(std::size_t{1}));
    EXPECT_EQ(basin_.Current_Sim_Name, "--");
}

TEST_F(SimulationDelete, OfTheOnlyOneLeavesAnEmptyGrid) {
    remove(2);
    remove(1);
    remove(0);
    EXPECT_TRUE(basin_.simulations.empty());
    EXPECT_EQ(basin_.current_row, std::nullopt);
    EXPECT_FALSE(database_.has_table("one"));
}

TEST_F(SimulationDelete, OfAMissingRowDoesNothing) {
    remove(3);
    EXPECT_EQ(basin_.simulations.size(), 3U);
    EXPECT_EQ(basin_.Current_Sim_Name, "three");
    EXPECT_FALSE(basin_.Basin_Changed);
}

TEST_F(SimulationDelete, NeedsNoParameterTable) {
    database_.drop_table("two");
    remove(1);
    EXPECT_EQ(basin_.simulations.size(), 2U);
}

TEST_F(SimulationDelete, FindsTheTableInAnyCase) {
    basin_.simulations[1].name = "TWO";
    remove(1);
    EXPECT_FALSE(database_.has_table("two"));
}

TEST_F(SimulationDelete, NeverRemovesATableOfTheBasin) {
    database_.create_table(sim_results_table());
    for (const char* name : {"PhysicalData", "zonedescription", "SIMRESULTS"}) {
        basin_.simulations[0].name = name;
        remove(0);
        EXPECT_TRUE(database_.has_table(name)) << name;
    }
    EXPECT_TRUE(basin_.simulations.empty());
}

TEST_F(SimulationDelete, NeverRemovesTheTableOfAScenario) {
    database_.create_table(scenario_table("warm"));
    database_.execute(
        "INSERT INTO ClimateScenarioIndex (SimulationFile, ScenarioFile) VALUES ('one', 'Warm')");
    basin_.simulations[1].name = "warm";
    remove(1);
    EXPECT_TRUE(database_.has_table("warm"));
    EXPECT_EQ(basin_.simulations.size(), 2U);
}

TEST_F(SimulationDelete, ThatTheStoreRefusesKeepsTheRow) {
    // Another program writes for longer than this one waits, which is two seconds.
    SQLite::Database other{file_.path().string(), SQLite::OPEN_READWRITE};
    other.exec("BEGIN IMMEDIATE");
    EXPECT_EQ(refused([&] { remove(1); }), StoreFault::Busy);
    EXPECT_EQ(basin_.simulations.size(), 3U);
    EXPECT_EQ(basin_.Current_Sim_Name, "three");
}

}  // namespace
}  // namespace nivora
