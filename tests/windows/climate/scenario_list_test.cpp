#include "tests/windows/climate/scenario_window_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Which scenarios there are: opening, New, Delete.
class ScenarioListTest : public ScenarioWindowTest {
protected:
    void expect_asked_for_a_name(std::size_t times = 1) {
        ASSERT_EQ(dialogs_.inputs().size(), times);
        EXPECT_EQ(dialogs_.inputs().back().prompt, "Enter a name for the new climate change sceanario:");
        EXPECT_EQ(dialogs_.inputs().back().title, "Create New Climate Change Scenario");
        EXPECT_EQ(dialogs_.inputs().back().proposed, "");
    }
    void expect_nothing_to_edit() {
        EXPECT_EQ(chooser()->count(), 0);
        EXPECT_FALSE(winter_end()->isEnabled());
        EXPECT_FALSE(comments()->isEnabled());
        EXPECT_FALSE(action(1)->isEnabled());
        EXPECT_FALSE(action(2)->isEnabled());
        EXPECT_EQ(grid()->model()->rowCount(), 0);
    }
};

TEST_F(ScenarioListTest, AScenarioIsShownWithItsRows) {
    open_scenario();
    EXPECT_EQ(from_qt(window_->windowTitle()), "Climate Change Scenario Definition for Simulation: Test");
    EXPECT_EQ(from_qt(find<QGroupBox>("Frame1")->title()), "Existing Scenarios for Test");
    ASSERT_EQ(chooser()->count(), 1);
    EXPECT_EQ(from_qt(chooser()->currentText()), "Warmer");
    EXPECT_EQ(from_qt(winter_end()->text()), "03/31/2001");
    EXPECT_EQ(from_qt(find<QLabel>("txtSimDate")->text()), "03/30/2001 - 04/04/2001");
    EXPECT_EQ(from_qt(comments()->toPlainText()), "one degree more");
    EXPECT_EQ(from_qt(comments()->toolTip()), "Type comments about the climate scenario here.");
    EXPECT_THAT(cells_of(1), ElementsAre("Average Temperature", "03/30/2001", "04/04/2001",
                                         "Add/subtract to each", "1", "All"));
    EXPECT_THAT(cells_of(2), ElementsAre("", "", "", "", "", ""));
    std::vector<std::string> captions;
    for (int index = 0; index < 3; ++index) captions.push_back(from_qt(action(index)->text()));
    for (int index = 0; index < 3; ++index) captions.push_back(from_qt(button(index)->text()));
    EXPECT_THAT(captions, ElementsAre("&New", "D&elete", "&Print", "&Done", "&Cancel", "&Help"));
    EXPECT_TRUE(action(2)->isEnabled());
    std::vector<std::string> headers;
    for (int column = 0; column < 6; ++column)
        headers.push_back(from_qt(grid()->model()->headerData(column, Qt::Horizontal).toString()));
    EXPECT_THAT(headers, ElementsAre("Variable/Parameter", "Start Date", "End Date", "Edit Action",
                                     "Edit Factor", "Zones"));
    EXPECT_EQ(messages(), 0U);
}

TEST_F(ScenarioListTest, AMissingSheetOpensNoWindow) {
    std::filesystem::remove(program_ / "climate_1.ss2");
    add_scenario(k_scenario, {});
    open();
    EXPECT_FALSE(opened_);
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text, "A required system file, 'climate_1.ss2', could not be located!");
    EXPECT_EQ(last_message().title, "Error initializing the 'Climate Change Scenario Definition'window");
}

TEST_F(ScenarioListTest, ASimulationWithoutScenariosAsksForOne) {
    dialogs_.then_text("warm");
    open();
    ASSERT_TRUE(opened_);
    expect_asked_for_a_name();
    EXPECT_EQ(from_qt(chooser()->currentText()), "warm");
    EXPECT_EQ(from_qt(comments()->toPlainText()), "Place your comments here!");
    // 30 March + (5 / 2 - 1) = 31 March, 12 o'clock
    EXPECT_EQ(from_qt(winter_end()->text()), "03/31/2001");
    EXPECT_THAT(stored("SELECT WinterEndDate FROM ClimateScenarioIndex"), ElementsAre("36981.5"));
    EXPECT_THAT(references(), ElementsAre("Test/warm"));
    EXPECT_THAT(cells_of(1), ElementsAre("", "", "", "", "", ""));
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

TEST_F(ScenarioListTest, NoNameLeavesAnEmptyWindow) {
    dialogs_.then_text(std::nullopt);
    open();
    ASSERT_TRUE(opened_);
    expect_asked_for_a_name();
    expect_nothing_to_edit();
    EXPECT_THAT(references(), IsEmpty());
    EXPECT_FALSE(session_.basin.Basin_Changed);
    press(0);  // Done has nothing to complain about
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(messages(), 0U);
}

TEST_F(ScenarioListTest, ThePlaceholderGivesWayToANewScenario) {
    change("INSERT INTO ClimateScenarioIndex (SimulationFile, ScenarioFile) VALUES ('Test', 'None')");
    change(
        "CREATE TABLE None (VarParm INTEGER, StartDate DATE, EndDate DATE, EditAction INTEGER, "
        "EditFactor FLOAT, Zones INTEGER)");
    dialogs_.then_text("warm");
    open();
    expect_asked_for_a_name();
    EXPECT_THAT(references(), ElementsAre("Test/warm"));
    EXPECT_FALSE(has_table("None"));
    EXPECT_EQ(chooser()->count(), 1);
}

TEST_F(ScenarioListTest, AScenarioWhoseTableIsMissingIsDeleted) {
    add_scenario("lost", {});
    add_scenario(k_scenario, {});
    change("DROP TABLE lost");
    open();
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text,
              "A reference to a climate change scenario, 'lost', could not be resolved.  The reference will "
              "be deleted from the basin database.");
    EXPECT_EQ(last_message().title, "Missing climate change scenario for Simulation 'Test'");
    EXPECT_THAT(references(), ElementsAre("Test/Warmer"));
    EXPECT_EQ(chooser()->count(), 1);
}

TEST_F(ScenarioListTest, IfAllTablesAreMissingANameIsAskedFor) {
    add_scenario("lost", {});
    change("DROP TABLE lost");
    dialogs_.then_text("found");
    open();
    EXPECT_EQ(messages(), 1U);
    expect_asked_for_a_name();
    EXPECT_THAT(references(), ElementsAre("Test/found"));
}

TEST_F(ScenarioListTest, APlaceholderBesideAScenarioIsNotShownAndStays) {
    change("INSERT INTO ClimateScenarioIndex (SimulationFile, ScenarioFile) VALUES ('Test', 'None')");
    add_scenario(k_scenario, {});
    open();
    EXPECT_EQ(chooser()->count(), 1);
    EXPECT_EQ(from_qt(chooser()->currentText()), "Warmer");
    EXPECT_THAT(references(), ElementsAre("Test/None", "Test/Warmer"));
    EXPECT_THAT(dialogs_.inputs(), IsEmpty());
}

TEST_F(ScenarioListTest, APeriodOfTwoDaysIsReportedAtOnceIfThereIsNoScenario) {
    session_.basin.Current_End = *session_.basin.Current_Start + 1;
    open();
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().title, "Period too short for climate change");
    EXPECT_THAT(dialogs_.inputs(), IsEmpty());
    expect_nothing_to_edit();
}

TEST_F(ScenarioListTest, NewMakesAScenarioAndShowsIt) {
    open_scenario();
    dialogs_.then_text("second");
    press_action(0);
    expect_asked_for_a_name();
    EXPECT_EQ(chooser()->count(), 2);
    EXPECT_EQ(from_qt(chooser()->currentText()), "second");
    EXPECT_TRUE(has_table("second"));
    EXPECT_THAT(references(), ElementsAre("Test/Warmer", "Test/second"));
}

TEST_F(ScenarioListTest, NewWithoutANameLeavesTheScenarioShown) {
    open_scenario();
    dialogs_.then_text("  ");
    press_action(0);
    EXPECT_THAT(references(), ElementsAre("Test/Warmer"));
    EXPECT_EQ(from_qt(chooser()->currentText()), "Warmer");
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(ScenarioListTest, TheReservedWordIsRefusedInAnyCase) {
    open_scenario();
    for (const char* name : {"AUXILIARY", "auxiliary", "Auxiliary"}) {
        dialogs_.then_text(name);
        press_action(0);
        EXPECT_EQ(last_message().text, std::string{"Reserved word "} + name);
        EXPECT_EQ(last_message().title, "Invalid scenario name");
    }
    EXPECT_THAT(references(), ElementsAre("Test/Warmer"));
}

TEST_F(ScenarioListTest, NamesInUseAndOtherSignsAreRefused) {
    open_scenario();
    dialogs_.then_text("warmer");
    press_action(0);
    EXPECT_EQ(last_message().text, "This name is already in use in this database.");
    EXPECT_EQ(last_message().title, "Error naming new climate scenario");
    dialogs_.then_text("PhysicalData");
    press_action(0);
    EXPECT_EQ(last_message().text, "This name is reserved for system use.");
    dialogs_.then_text("a.b");
    press_action(0);
    EXPECT_EQ(last_message().text, "The name selected, a.b, contains invalid character(s)");
    EXPECT_EQ(last_message().title, "Invalid scenario name");
    EXPECT_THAT(references(), ElementsAre("Test/Warmer"));
}

TEST_F(ScenarioListTest, APeriodOfTwoDaysIsTooShortForANewScenario) {
    open_scenario();
    session_.basin.Current_End = *session_.basin.Current_Start + 1;
    press_action(0);
    EXPECT_EQ(last_message().text,
              "Similation period too small to perform a meaningful climate change simulation");
    EXPECT_EQ(last_message().title, "Period too short for climate change");
    EXPECT_TRUE(dialogs_.inputs().empty());
}

TEST_F(ScenarioListTest, DeleteAsksAndANoOrACancelKeepsTheScenario) {
    add_scenario(k_scenario, {});
    add_scenario("second", {});
    open();
    for (const Answer answer : {Answer::No, Answer::Cancel}) {
        dialogs_.then(answer);
        press_action(1);
        EXPECT_EQ(last_message().text, "Delete 'Warmer' scenario table?");
        EXPECT_EQ(last_message().buttons, Buttons::YesNoCancel);
        EXPECT_EQ(chooser()->count(), 2);
    }
    EXPECT_TRUE(has_table("Warmer"));
    EXPECT_FALSE(session_.basin.Basin_Changed);
    dialogs_.then(Answer::Yes);
    press_action(1);
    EXPECT_FALSE(has_table("Warmer"));
    EXPECT_THAT(references(), ElementsAre("Test/second"));
    EXPECT_EQ(from_qt(chooser()->currentText()), "second");
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

TEST_F(ScenarioListTest, DeletingTheLastScenarioLeavesThePlaceholder) {
    open_scenario();
    dialogs_.then(Answer::Yes);
    press_action(1);
    EXPECT_THAT(references(), ElementsAre("Test/None"));
    EXPECT_TRUE(has_table("None"));
    EXPECT_FALSE(has_table("Warmer"));
    expect_nothing_to_edit();
    dialogs_.then_text("again");
    press_action(0);
    EXPECT_THAT(references(), ElementsAre("Test/again"));
}

TEST_F(ScenarioListTest, WhatWasTypedWaitsForDoneAcrossNewAndDelete) {
    open_scenario();
    set(1, k_factor, "7");
    dialogs_.then_text(std::nullopt);
    press_action(0);
    EXPECT_EQ(cell(1, k_factor), "7");
    dialogs_.then_text("second");
    press_action(0);
    dialogs_.then(Answer::Yes);
    press_action(1);
    EXPECT_EQ(from_qt(chooser()->currentText()), "Warmer");
    EXPECT_EQ(cell(1, k_factor), "7");
    EXPECT_THAT(stored("SELECT round(EditFactor, 3) FROM Warmer"), ElementsAre("1.0"));
    press(1);  // Cancel
    EXPECT_THAT(stored("SELECT round(EditFactor, 3) FROM Warmer"), ElementsAre("1.0"));
}

TEST_F(ScenarioListTest, AScenarioThatIsMadeAgainStartsBlank) {
    open_scenario();
    set(1, k_factor, "7");
    dialogs_.then(Answer::Yes);
    press_action(1);
    dialogs_.then_text("Warmer");
    press_action(0);
    EXPECT_THAT(cells_of(1), ElementsAre("", "", "", "", "", ""));
}

TEST_F(ScenarioListTest, AnotherScenarioShowsItsOwnRows) {
    ScenarioRow other = SixDays{}.plus_one;
    other.variable = 2;
    other.action = 1;
    other.factor = 1.1F;
    other.zones = 2;
    add_scenario(k_scenario, {SixDays{}.plus_one});
    add_scenario("wetter", {other}, static_cast<double>(SixDays::first_day()));
    open();
    choose("wetter");
    EXPECT_THAT(cells_of(1),
                ElementsAre("Precipitation", "03/30/2001", "04/04/2001", "Multiply each", "1.1", "B"));
    EXPECT_EQ(from_qt(winter_end()->text()), "03/30/2001");
    choose("Warmer");
    EXPECT_EQ(cell(1, k_variable), "Average Temperature");
}

}  // namespace
}  // namespace nivora
