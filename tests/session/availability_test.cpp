#include "session/availability.h"

#include "base/scripted_dialogs.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

class AvailabilityTest : public testing::Test {
protected:
    /// A basin with one zone of 5 km² and one simulation, which is selected.
    void select_a_simulation() {
        session_.basin.zones_text = "1";
        Zone zone;
        zone.id = "A";
        zone.area = 5.0;
        session_.basin.zones = {zone};
        session_.basin.basin_area_text = "5";
        Simulation simulation;
        simulation.name = "wet";
        session_.basin.simulations = {simulation};
        session_.basin.current_row = 0;
        simulation_was_selected(session_);
    }

    ScriptedDialogs dialogs_;
    Desktop desktop_;
    Session session_{dialogs_, desktop_};
    ShellState& shell_ = session_.shell;
};

TEST_F(AvailabilityTest, ASelectedSimulationCanBeRunEditedAndEvaluated) {
    select_a_simulation();
    EXPECT_TRUE(shell_.run_menu);
    EXPECT_TRUE(shell_.run_simulation);
    EXPECT_TRUE(shell_.run_forecast);
    EXPECT_TRUE(shell_.run_climate);
    EXPECT_TRUE(shell_.parameters);
    EXPECT_TRUE(session_.run.results_enabled);
}

TEST_F(AvailabilityTest, WithoutAnAreaTheRunMenuIsDisabledUntilOneIsTyped) {
    select_a_simulation();
    session_.basin.basin_area_text = k_no_area;
    zone_areas_were_typed(session_);
    EXPECT_FALSE(shell_.run_menu);
    session_.basin.basin_area_text = "5";
    zone_areas_were_typed(session_);
    EXPECT_TRUE(shell_.run_menu);
}

TEST_F(AvailabilityTest, NoSnowLeavesNeitherMeltSeasonNorEvaluation) {
    select_a_simulation();
    session_.run.NoSnow = true;
    no_snow_was_switched(session_);
    EXPECT_FALSE(shell_.melt_season);
    EXPECT_FALSE(shell_.run_climate);
    session_.run.NoSnow = false;
    no_snow_was_switched(session_);
    EXPECT_TRUE(shell_.melt_season);
    EXPECT_TRUE(shell_.run_climate);
}

TEST_F(AvailabilityTest, AnEvaluationNeedsASimulationEvenAfterNoSnow) {
    no_snow_was_switched(session_);
    EXPECT_FALSE(shell_.run_climate);
}

TEST_F(AvailabilityTest, NoSnowRemainsForTheNextBasin) {
    session_.run.NoSnow = true;
    basin_is_new(session_);
    EXPECT_FALSE(shell_.melt_season);
    EXPECT_FALSE(shell_.save_as);
    EXPECT_FALSE(session_.run.results_enabled);
}

TEST_F(AvailabilityTest, DuringAnEvaluationASelectionEnablesNothingThatShowsResults) {
    evaluation_was_opened(session_);
    evaluation_left_results_behind(session_);
    select_a_simulation();
    EXPECT_FALSE(shell_.reports);
    EXPECT_FALSE(shell_.graphics);
    EXPECT_FALSE(session_.run.results_enabled);
    evaluation_was_closed(session_, "&Run");
    EXPECT_FALSE(shell_.climate_window);
    EXPECT_TRUE(shell_.reports);
    EXPECT_EQ(shell_.run_caption, "&Run");
}

TEST_F(AvailabilityTest, ADeletedSimulationLeavesNothingToRun) {
    select_a_simulation();
    session_.basin.simulations.clear();
    simulations_have_changed(session_);
    simulation_was_deleted(session_);
    EXPECT_FALSE(shell_.run_simulation);
    EXPECT_FALSE(shell_.graphics);
    EXPECT_FALSE(shell_.delete_simulation);
    EXPECT_FALSE(shell_.long_term_averages);
}

TEST_F(AvailabilityTest, AnEditedSimulationOfANewBasinCanOnlyBeSavedUnderAName) {
    select_a_simulation();
    simulation_was_edited(session_);
    EXPECT_FALSE(shell_.save);
    EXPECT_TRUE(shell_.save_as);
    EXPECT_FALSE(shell_.reports);
    session_.basin.New_Basin = false;
    simulation_was_edited(session_);
    EXPECT_TRUE(shell_.save);
}

TEST_F(AvailabilityTest, AnEditedSimulationCanBeReportedAgainOnceItWasRun) {
    select_a_simulation();
    simulation_was_edited(session_);
    simulation_was_run(session_);
    EXPECT_TRUE(shell_.reports);
}

TEST_F(AvailabilityTest, TheStagesOfADefinitionShowOneBoxAfterTheOther) {
    units_were_fixed(session_);
    EXPECT_FALSE(shell_.units_list_shown);
    EXPECT_TRUE(shell_.zones_box_shown);
    EXPECT_FALSE(shell_.variables);
    zones_were_fixed(session_);
    EXPECT_FALSE(shell_.zones_box_shown);
    EXPECT_TRUE(shell_.zones_fixed_shown);
    EXPECT_TRUE(shell_.variables);
    EXPECT_TRUE(shell_.tools_menu);
}

TEST_F(AvailabilityTest, AButtonOfTheDailyEditorTakesTheEditMenuUntilItCloses) {
    daily_editor_button_was_pressed(session_);
    EXPECT_FALSE(shell_.edit_menu);
    daily_editor_was_closed(session_);
    EXPECT_TRUE(shell_.edit_menu);
}

}  // namespace
}  // namespace nivora
