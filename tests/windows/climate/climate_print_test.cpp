// Printing a scenario, and an evaluation.

#include "climate/scenario_print.h"
#include "tests/windows/climate/control_window_fixture.h"
#include "tests/windows/climate/scenario_window_fixture.h"

namespace nivora {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class ScenarioPrintTest : public ScenarioWindowTest {
protected:
    static constexpr int k_print = 2;

    const std::string& print() {
        press_action(k_print);
        page_ = printers_.jobs().empty() ? "" : printers_.jobs().back().page(0);
        return page_;
    }
    std::string page_;
};

TEST_F(ScenarioPrintTest, PrintsDatesCommentsRowsAndWhatTheColumnsMean) {
    session_.basin.Basin_File = "/home/ranger/alder.mdb";
    open_scenario();
    const std::string& page = print();
    ASSERT_EQ(printers_.jobs().size(), 1U);
    EXPECT_EQ(printers_.jobs()[0].pages.size(), 1U);
    for (const char* text :
         {"Hollin Flow Model (Nivora)\n", "Climate Change Scenario\n", "Simulation:   Test\n",
          "Climate Scenario:  Warmer\n", "Starting Date:   03/30/2001\n", "Ending Date:   04/04/2001\n",
          "Winter End Date:  03/31/2001\n", "Comments\none degree more\n", "Average Temperature\n",
          "Add/subtract to each\n", "All\n", "Zone - the zone or zones affected by the edit\n",
          "  Normalize temperature/precipitation using long-term monthly averages)\n",
          "Basin Filename:  /home/ranger/alder.mdb\n"})
        EXPECT_THAT(page, HasSubstr(text));
    EXPECT_TRUE(window_->isVisible());
}

TEST_F(ScenarioPrintTest, PrintsWhatIsTypedAndNoBlankRows) {
    open_scenario();
    set(1, k_factor, "2.5");
    go_to(2, k_factor);
    key(Qt::Key_Delete);  // leaves a blank row
    EXPECT_THAT(print(), HasSubstr("2.5\n"));
    EXPECT_EQ(stored("SELECT EditFactor FROM Warmer").front(), "1.0") << "Done has not been pressed";
}

TEST_F(ScenarioPrintTest, AWinterEndThatIsRefusedIsNotPrinted) {
    open_scenario();
    set_winter_end("01012050");
    press_action(k_print);
    EXPECT_TRUE(printers_.jobs().empty());
    EXPECT_EQ(messages(), 1U);
}

TEST_F(ScenarioPrintTest, WhatTheBasinDoesNotHoldIsBlank) {
    Scenario scenario;
    scenario.index.scenario = "bare";
    const PrintedSheet sheet = printed_scenario(scenario, BasinState{}, 0.0);
    EXPECT_THAT(sheet.heading,
                AllOf(HasSubstr("/nStarting Date:   /n"), HasSubstr("/nWinter End Date:  /n")));
}

using EvaluationPrintTest = ControlWindowTest;

TEST_F(EvaluationPrintTest, PrintsTheStatisticsAndThenTheScenario) {
    open_six_days();
    run_to(6);
    press(3);
    ASSERT_EQ(printers_.jobs().size(), 1U);
    ASSERT_EQ(printers_.jobs()[0].pages.size(), 2U);
    const std::string statistics = printers_.jobs()[0].page(0);
    for (const char* text :
         {"Climate Change Statistics\n", "Simulation:   Test\n", "Climate Scenario:  Warmer\n", "Step 1\n",
          "Step 2\n", "Step 3\n", "Step 6\n", "Measured Runoff Volume (10^6 m³)",
          "Coefficient of Determination (R²):", "Page 1\n"})
        EXPECT_THAT(statistics, HasSubstr(text));
    EXPECT_THAT(printers_.jobs()[0].page(1),
                AllOf(HasSubstr("Climate Change Scenario\n"), HasSubstr("Average Temperature\n"),
                      HasSubstr("Basin Filename:  ")));
}

TEST_F(EvaluationPrintTest, ChangesThatWereMadeByHandHaveNoScenario) {
    open_six_days();
    run_to(6);
    press(0);
    open();
    reuse()->setChecked(true);
    dialogs_.then(Answer::Yes);
    run_to(6);
    press(3);
    ASSERT_EQ(printers_.jobs().size(), 1U);
    EXPECT_EQ(printers_.jobs()[0].pages.size(), 1U);
    EXPECT_THAT(printers_.jobs()[0].page(0), HasSubstr("Climate Scenario:  Auxiliary\n"));
}

TEST_F(EvaluationPrintTest, PrintsTheScenarioThatWasEvaluatedThoughItWasChangedSince) {
    open_six_days();
    run_to(6);
    press(3);
    change("UPDATE ClimateScenarioIndex SET Comments = 'three degrees more'");
    change("UPDATE Warmer SET EditFactor = 3");
    press(3);
    ASSERT_EQ(printers_.jobs().size(), 2U);
    ASSERT_EQ(printers_.jobs()[1].pages.size(), 2U);
    const auto from_heading = [&](std::size_t job) {
        const std::string page = printers_.jobs().at(job).page(1);
        return page.substr(page.find("Basin name:"));  // behind the moment of the print
    };
    EXPECT_EQ(from_heading(1), from_heading(0));
    EXPECT_THAT(from_heading(1), Not(HasSubstr("three degrees more")));
}

TEST_F(EvaluationPrintTest, PrintsTheScenarioThatWasEvaluatedThoughItWasDeletedSince) {
    open_six_days();
    run_to(6);
    change("DELETE FROM ClimateScenarioIndex");
    press(3);
    ASSERT_EQ(printers_.jobs()[0].pages.size(), 2U);
    EXPECT_THAT(printers_.jobs()[0].page(1), HasSubstr("Climate Scenario:  Warmer\n"));
}

TEST_F(EvaluationPrintTest, AnotherEvaluationPrintsTheScenarioAsItIsNow) {
    open_six_days();
    run_to(6);
    press(0);
    change("UPDATE Warmer SET EditFactor = 3");
    open();
    run_to(6);
    press(3);
    ASSERT_EQ(printers_.jobs()[0].pages.size(), 2U);
    EXPECT_THAT(printers_.jobs()[0].page(1), HasSubstr("\n3\n"));
}

}  // namespace
}  // namespace nivora
