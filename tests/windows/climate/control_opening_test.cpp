#include "tests/windows/climate/control_window_fixture.h"

#include <QGroupBox>
#include <QLabel>
#include <QTextEdit>
#include <QToolButton>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The window of the six steps as it opens.
class ControlOpeningTest : public ControlWindowTest {};

TEST_F(ControlOpeningTest, TheOnlyScenarioIsChosenAndStepOneOpen) {
    open_six_days();
    EXPECT_EQ(from_qt(scenario()->currentText()), k_scenario);
    EXPECT_EQ(session_.climate.scenario, k_scenario);
    EXPECT_THAT(enabled(), ElementsAre(1));
    tick(1);
    EXPECT_THAT(ticked(), ElementsAre(1));
}

TEST_F(ControlOpeningTest, ThePlaceholderAloneIsNotChosen) {
    write(SixDays{});
    add_scenario(k_no_scenario, {});
    open();
    EXPECT_EQ(scenario()->currentIndex(), -1);
    EXPECT_THAT(enabled(), IsEmpty());
}

TEST_F(ControlOpeningTest, OnlyDoneHelpAndTheChoicesCanBeUsed) {
    const SixDays small;
    write(small);
    add_scenario(k_scenario, {small.plus_one});
    add_scenario("Another", {small.plus_one});
    open();
    ASSERT_TRUE(opened_);
    EXPECT_EQ(from_qt(window_->windowTitle()), "Run a Climate Change ");
    EXPECT_TRUE(scenario()->isEnabled());
    EXPECT_EQ(scenario()->currentIndex(), -1);
    EXPECT_TRUE(reuse()->isEnabled());
    EXPECT_FALSE(reuse()->isChecked());
    EXPECT_THAT(enabled(), IsEmpty());
    EXPECT_THAT(ticked(), IsEmpty());
    EXPECT_TRUE(button(0)->isEnabled());
    EXPECT_FALSE(button(1)->isEnabled());
    EXPECT_TRUE(button(2)->isEnabled());
    EXPECT_FALSE(button(3)->isEnabled());
    EXPECT_FALSE(statistics()->isVisible());
    EXPECT_TRUE(session_.shell.climate_window);
    EXPECT_EQ(messages(), 0U);
}

TEST_F(ControlOpeningTest, TheTipOfQuickHelpSaysShowHere) {
    open_six_days();
    auto* button = window_->findChild<QToolButton*>(QStringLiteral("btnHelp"));
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(from_qt(button->toolTip()), "Show 'QuickHelp'");
    quick_help_.set_on(true);
    EXPECT_EQ(from_qt(button->toolTip()), "Hide 'QuickHelp'");
    quick_help_.set_on(false);
    EXPECT_EQ(from_qt(button->toolTip()), "Show 'QuickHelp'");
}

TEST_F(ControlOpeningTest, CaptionsAreTheGivenOnes) {
    open_six_days();
    std::vector<std::string> captions;
    for (int step = 1; step <= 6; ++step) captions.push_back(from_qt(box(step)->text()));
    EXPECT_THAT(captions, ElementsAre("Step1:   Winter, Present Climate", "Step 2:  Winter, Changed Climate",
                                      "Step 3:  Summer, Present Climate", "Step 4:  Summer, Changed Climate ",
                                      "Step 5:  Derive CDCclimWA", "Step 6:  Summer, Changed Climate"));
    captions.clear();
    for (int index = 0; index < 4; ++index) captions.push_back(from_qt(button(index)->text()));
    EXPECT_THAT(captions, ElementsAre("&Done", "&Abort", "&Help", "&Print"));
    EXPECT_EQ(from_qt(find<QGroupBox>("Frame1")->title()), "Scenario Definition(s) for Test");
    EXPECT_EQ(from_qt(reuse()->text()), "Use the climate changes defined in Results");
    EXPECT_EQ(from_qt(reuse()->toolTip()),
              "To reuse the modified climate from the most recent climate simulation, check here (normally "
              "only when you've edited SimResults manually to change a few daily values in a scenario).");
    EXPECT_EQ(from_qt(box(3)->toolTip()), "This step computes MDC's for summer, needed to derive CDCliims");
    EXPECT_EQ(from_qt(find<QLabel>("panel1")->text()), path_text(file_));
}

TEST_F(ControlOpeningTest, TheGridsAreLabelledInTheUnitsOfTheBasin) {
    open_six_days();
    std::vector<std::string> labels;
    for (int row = 1; row <= statistics()->model()->rowCount(); ++row)
        labels.push_back(cell(statistics(), row, 1));
    EXPECT_THAT(labels,
                ElementsAre("Measured Runoff Volume (10^6 m³)", "Average Measured Runoff (m³/s): ", "",
                            "Computed Runoff Volume (10^6 m³)", "Average Computed Runoff  (m³/s): ", "",
                            "Volume Difference (%): ", "Coefficient of Determination (R²):"));
    const auto* model = statistics()->model();
    std::vector<std::string> headers;
    for (int column = 0; column < model->columnCount(); ++column)
        headers.push_back(from_qt(model->headerData(column, Qt::Horizontal).toString()));
    EXPECT_THAT(headers, ElementsAre("Statistics", "Step 1", "Step 2", "Step 3", "Step 6"));
    const auto* cells = summary()->model();
    headers.clear();
    for (int column = 0; column < 3; ++column)
        headers.push_back(from_qt(cells->headerData(column, Qt::Horizontal).toString()));
    for (int row = 0; row < 3; ++row)
        headers.push_back(from_qt(cells->headerData(row, Qt::Vertical).toString()));
    EXPECT_THAT(headers, ElementsAre("Winter", "Summer", "Year", "Measured", "Computed", "Climate affected"));
    EXPECT_EQ(cell(summary(), 4, 1), "Seasonal Summary of Runoff");
}

TEST_F(ControlOpeningTest, AnEnglishBasinHasCubicFeet) {
    SixDays small;
    small.header.units = small.simulation.units = Units::English;
    open_six_days(small);
    EXPECT_EQ(cell(statistics(), 1, 1), "Measured Runoff Volume (10^6 f³)");
    EXPECT_EQ(cell(statistics(), 2, 1), "Average Measured Runoff (f³/s): ");
    EXPECT_EQ(cell(statistics(), 4, 1), "Computed Runoff Volume (10^6 f³)");
    EXPECT_EQ(cell(statistics(), 5, 1), "Average Computed Runoff  (f³/s): ");
}

TEST_F(ControlOpeningTest, TheListHoldsTheScenariosOfTheSimulationAlone) {
    write(SixDays{});
    add_scenario("Warmer", {});
    add_scenario("Wetter", {});
    change("INSERT INTO ClimateScenarioIndex (SimulationFile, ScenarioFile) VALUES ('Another', 'Drier')");
    open();
    ASSERT_EQ(scenario()->count(), 2);
    EXPECT_EQ(from_qt(scenario()->itemText(0)), "Warmer");
    EXPECT_EQ(from_qt(scenario()->itemText(1)), "Wetter");
}

TEST_F(ControlOpeningTest, AChosenScenarioEnablesStepOneAlone) {
    write(SixDays{});
    add_scenario(k_scenario, {});
    add_scenario("Wetter", {});
    open();
    choose(k_scenario);
    EXPECT_THAT(enabled(), ElementsAre(1));
    EXPECT_THAT(ticked(), IsEmpty());
    EXPECT_EQ(session_.climate.scenario, "Warmer");
    EXPECT_FALSE(button(1)->isEnabled());
}

TEST_F(ControlOpeningTest, NoCellCanBeEdited) {
    open_six_days();
    run_to(1);
    for (GridView* grid : {summary(), statistics()}) {
        for (int row = 0; row < grid->model()->rowCount(); ++row) {
            for (int column = 0; column < grid->model()->columnCount(); ++column) {
                EXPECT_FALSE(grid->model()->flags(grid->model()->index(row, column)) & Qt::ItemIsEditable)
                    << row << ' ' << column;
            }
        }
    }
}

TEST_F(ControlOpeningTest, ABasinThatCannotBeReadOpensNoWindow) {
    write(SixDays{});
    std::filesystem::remove(file_);
    open();
    EXPECT_FALSE(opened_);
    EXPECT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_FALSE(session_.shell.climate_window);
}

TEST_F(ControlOpeningTest, HelpShowsItsTopic) {
    open_six_days();
    press(2);
    EXPECT_THAT(desktop_.topics, ElementsAre(5));
}

TEST_F(ControlOpeningTest, QuickHelpExplainsABoxAndRunsNothing) {
    open_six_days();
    choose(k_scenario);
    auto* toggle = find<QToolButton>("btnHelp");
    QTest::mouseClick(toggle, Qt::LeftButton);
    QTest::mouseClick(box(1), Qt::LeftButton, {}, {8, box(1)->height() / 2});
    EXPECT_THAT(ticked(), IsEmpty());
    EXPECT_EQ(session_.run.ClimateStep, 0);
    EXPECT_FALSE(find<QTextEdit>("lblHelp")->toPlainText().isEmpty());
}

TEST_F(ControlOpeningTest, CloseIsRefusedWhileQuickHelpIsOn) {
    open_six_days();
    expect_close_refused();
    EXPECT_EQ(left_, 0);
    EXPECT_TRUE(session_.shell.climate_window);
}

}  // namespace
}  // namespace nivora
