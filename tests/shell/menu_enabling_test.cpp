#include "tests/shell/main_window_fixture.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

/// The entries whose state depends on the basin, in the order of the menu bar.
constexpr std::array k_watched{"mnuFileItem(4)",  "mnuFileItem(5)",   "mnuDataOpt(0)",    "mnuDataOpt(2)",
                               "mnuDataOpt(4)",   "mnuDataOptVar(0)", "mnuDataOptVar(1)", "mnuDataOpt(5)",
                               "mnuDataOpt(7)",   "mnuRun",           "mnuRunSim",        "mnuRunSimVar(0)",
                               "mnuRunSimVar(1)", "mnuRunFor",        "mnuRunForVar(0)",  "mnuRunForVar(1)",
                               "mnuRunClim",      "mnuTools",         "mnuToolsItm(0)",   "mnuWinGraphics",
                               "mnuReports"};

class MenuEnablingTest : public MainWindowTest {
protected:
    /// The entries that are disabled at present.
    std::vector<std::string> off() {
        std::vector<std::string> names;
        for (const char* name : k_watched) {
            if (!enabled(name)) names.emplace_back(name);
        }
        return names;
    }
    void expect_simulation_buttons(bool on) {
        EXPECT_TRUE(find<QPushButton>("Command1(0)")->isEnabled());
        EXPECT_EQ(find<QPushButton>("Command1(1)")->isEnabled(), on);
        EXPECT_EQ(find<QPushButton>("Command1(2)")->isEnabled(), on);
    }
    void select_row(int row) {
        find<QTableView>("DBGrid1")->selectRow(row);
        QTest::qWait(1);
    }

    const std::vector<std::string> off_at_start_{
        "mnuFileItem(4)", "mnuDataOpt(2)",  "mnuDataOpt(4)",  "mnuDataOptVar(0)", "mnuDataOptVar(1)",
        "mnuDataOpt(5)",  "mnuDataOpt(7)",  "mnuRunSim",      "mnuRunFor",        "mnuRunClim",
        "mnuTools",       "mnuToolsItm(0)", "mnuWinGraphics", "mnuReports"};
    const std::vector<std::string> off_with_zones_{"mnuFileItem(4)",   "mnuDataOpt(2)",  "mnuDataOptVar(0)",
                                                   "mnuDataOptVar(1)", "mnuDataOpt(5)",  "mnuDataOpt(7)",
                                                   "mnuRunSim",        "mnuRunFor",      "mnuRunClim",
                                                   "mnuToolsItm(0)",   "mnuWinGraphics", "mnuReports"};
};

TEST_F(MenuEnablingTest, AtTheStartWhatNeedsZonesOrASimulationIsOff) {
    EXPECT_THAT(off(), ElementsAreArray(off_at_start_));
    expect_simulation_buttons(false);
}

TEST_F(MenuEnablingTest, TheRestIsAlwaysOn) {
    for (const char* name :
         {"mnuFileItem(0)", "mnuFileItem(1)", "mnuFileItem(2)", "mnuFileItem(7)", "mnuFileItem(9)",
          "mnuEditItem(0)", "mnuEditItem(1)", "mnuEditItem(2)", "mnuEditItem(4)", "mnuEditItem(5)",
          "mnuOptItem(0)", "mnuOptItem(3)", "mnuOptItem(5)", "mnuHelpItm(0)", "mnuHelpItm(1)",
          "mnuHelpItm(3)", "mnuHelpItm(4)"}) {
        EXPECT_TRUE(enabled(name)) << name;
    }
}

TEST_F(MenuEnablingTest, FixedUnitsTurnNothingOn) {
    choose_units(0, Answer::Yes);
    EXPECT_THAT(off(), ElementsAreArray(off_at_start_));
}

TEST_F(MenuEnablingTest, FixedZonesTurnVariablesAndToolsOn) {
    choose_units(0, Answer::Yes);
    give_zones("3", Answer::Yes);
    EXPECT_THAT(off(), ElementsAreArray(off_with_zones_));
    expect_simulation_buttons(false);
}

TEST_F(MenuEnablingTest, AnOpenedBasinTurnsAllButItsResultsOn) {
    open_sample();
    EXPECT_THAT(off(), ElementsAre("mnuDataOpt(7)"));
    expect_simulation_buttons(true);
}

TEST_F(MenuEnablingTest, SelectingARowTurnsTheResultsOnToo) {
    open_sample();
    select_row(1);
    EXPECT_THAT(off(), ElementsAre());
    EXPECT_EQ(find<QLabel>("lblSimVisible")->text(), QStringLiteral("ellervane-1997-98"));
    EXPECT_EQ(session_.basin.Current_Sim_Name, "ellervane-1997-98");
    EXPECT_EQ(session_.basin.current_row, 1U);
}

TEST_F(MenuEnablingTest, TheArrowKeysSelectARow) {
    open_sample();
    auto* grid = find<QTableView>("DBGrid1");
    grid->setFocus();
    QTest::keyClick(grid, Qt::Key_Down);
    EXPECT_EQ(session_.basin.Current_Sim_Name, "ellervane-1997-98");
    QTest::keyClick(grid, Qt::Key_Up);
    EXPECT_EQ(session_.basin.Current_Sim_Name, "ellervane-1996");
    QTest::keyClick(grid, Qt::Key_Up);
    EXPECT_EQ(session_.basin.Current_Sim_Name, "ellervane-1996");
}

TEST_F(MenuEnablingTest, SelectingARowWithoutZoneAreasTurnsTheWholeRunMenuOff) {
    open_sample();
    session_.basin.basin_area_text = k_no_area;
    select_row(1);
    EXPECT_THAT(off(), ElementsAre("mnuRun"));
    session_.basin.basin_area_text = "12.5";
    select_row(0);
    EXPECT_THAT(off(), ElementsAre());
}

TEST_F(MenuEnablingTest, NewAfterAnOpenedBasinTurnsSaveAsOffAsWell) {
    open_sample();
    select_row(1);
    choose("mnuFileItem(0)");
    std::vector<std::string> expected = off_at_start_;
    expected.insert(expected.begin() + 1, "mnuFileItem(5)");
    EXPECT_THAT(off(), ElementsAreArray(expected));
    expect_simulation_buttons(false);
}

TEST_F(MenuEnablingTest, ADeclinedSaveQuestionStillMakesANewBasin) {
    open_sample();
    type(4, "changed");
    dialogs_.then(Answer::No);
    choose("mnuFileItem(0)");
    EXPECT_FALSE(enabled("mnuFileItem(5)"));
    EXPECT_EQ(QApplication::focusWidget(), box(0));
}

TEST_F(MenuEnablingTest, ACancelledNewLeavesEverythingOn) {
    open_sample();
    type(4, "changed");
    dialogs_.then(Answer::Cancel);
    choose("mnuFileItem(0)");
    EXPECT_THAT(off(), ElementsAre("mnuDataOpt(7)"));
    EXPECT_EQ(box(4)->text(), QStringLiteral("changed"));
}

TEST_F(MenuEnablingTest, OpeningAfterNewTurnsSaveAsOnAgain) {
    const auto file = open_sample();
    choose("mnuFileItem(0)");
    dialogs_.then_file(file);
    choose("mnuFileItem(1)");
    EXPECT_THAT(off(), ElementsAre("mnuDataOpt(7)"));
}

TEST_F(MenuEnablingTest, SaveKeepsEnabledEntriesEnabled) {
    open_sample();
    select_row(1);
    type(4, "changed");
    choose("mnuFileItem(4)");
    EXPECT_THAT(off(), ElementsAre());
    EXPECT_EQ(find<QLabel>("lblSimVisible")->text(), QStringLiteral("ellervane-1997-98"));
    expect_simulation_buttons(true);
}

TEST_F(MenuEnablingTest, SaveAsTurnsSaveAndTheRunMenusOn) {
    open_sample();
    dialogs_.then_file(user_ / "copy.mdb");
    choose("mnuFileItem(5)");
    EXPECT_TRUE(enabled("mnuFileItem(4)"));
    for (const char* name : {"mnuRun", "mnuRunSim", "mnuRunFor", "mnuRunClim"}) EXPECT_TRUE(enabled(name));
    EXPECT_EQ(find<QLabel>("panel1")->text(), QString::fromStdString((user_ / "copy.mdb").string()));
}

TEST_F(MenuEnablingTest, NoSnowModeTurnsExactlyMeltSeasonAndClimateRunsOff) {
    open_sample();
    select_row(0);
    select_row(1);
    choose("mnuOptItem(0)");
    EXPECT_THAT(off(), ElementsAre("mnuRunSimVar(0)", "mnuRunForVar(0)", "mnuRunClim"));
    select_row(0);
    EXPECT_THAT(off(), ElementsAre("mnuRunSimVar(0)", "mnuRunForVar(0)", "mnuRunClim"));
    choose("mnuOptItem(0)");
    EXPECT_THAT(off(), ElementsAre());
}

TEST_F(MenuEnablingTest, NoSnowModeSurvivesOpenNewAndSave) {
    choose("mnuOptItem(0)");
    open_sample();
    EXPECT_THAT(off(), ElementsAre("mnuDataOpt(7)", "mnuRunSimVar(0)", "mnuRunForVar(0)", "mnuRunClim"));
    choose("mnuFileItem(4)");
    EXPECT_FALSE(enabled("mnuRunClim"));
    EXPECT_FALSE(enabled("mnuRunSimVar(0)"));
    choose("mnuFileItem(0)");
    EXPECT_TRUE(find<QAction>("mnuOptItem(0)")->isChecked());
    EXPECT_FALSE(enabled("mnuRunForVar(0)"));
}

TEST_F(MenuEnablingTest, NoSnowModeSwitchedOnAndOffLeavesTheClimateRunToASimulation) {
    choose("mnuOptItem(0)");
    EXPECT_FALSE(enabled("mnuRunClim"));
    choose("mnuOptItem(0)");
    EXPECT_FALSE(enabled("mnuRunClim"));
    open_sample();
    choose("mnuOptItem(0)");
    EXPECT_FALSE(enabled("mnuRunClim"));
    choose("mnuOptItem(0)");
    EXPECT_TRUE(enabled("mnuRunClim"));
}

TEST_F(MenuEnablingTest, TheNoSnowBoxShowsItsWholeTextOnlyWhenTheModeGoesOn) {
    choose("mnuOptItem(0)");
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().title, "No Snow Description");
    EXPECT_EQ(last_message().icon, Icon::Information);
    EXPECT_EQ(last_message().buttons, Buttons::Ok);
    EXPECT_EQ(
        last_message().text,
        "When this menu is checked, the model is modified to run only year-round forecasts and simulations.  "
        "In 'no snow' mode, snow depletion information is disregarded by the model.  Instead, the unmelted "
        "precipitation from winter is carried forward into the melt season where it is melted in lieu of the "
        "snowcover.  In normal mode, the winter precip is held for melting only until the snowpack reaches "
        "100% or until the melt season begins, whichever occurs first.\n"
        "Existing snow depletion data is unaffected while this option is 'on', but are not used for any "
        "plots or reports.");
    choose("mnuOptItem(0)");
    EXPECT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_FALSE(find<QAction>("mnuOptItem(0)")->isChecked());
    EXPECT_FALSE(session_.run.NoSnow);
}

}  // namespace
}  // namespace nivora
