#include "tests/windows/climate/scenario_window_fixture.h"

#include <QHeaderView>
#include <QMenuBar>
#include <QSignalSpy>

namespace nivora {
namespace {

using testing::ElementsAre;

const std::vector<std::string> k_base_actions{"Add/subtract to each", "Multiply each", "Shift backward",
                                              "Shift forward"};

std::vector<std::string> with_normalize() {
    std::vector<std::string> actions = k_base_actions;
    actions.emplace_back("Normalize");
    return actions;
}

/// The rows of a scenario, edited in the grid.
class ScenarioGridTest : public ScenarioWindowTest {
protected:
    void SetUp() override { open_scenario(); }
};

TEST_F(ScenarioGridTest, ARowIsTypedCellByCellAndStoredByDone) {
    pick(2, k_variable, "Precipitation");
    set(2, k_start, "03/31/2001");
    set(2, k_end, "04/02/2001");
    pick(2, k_action, "Multiply each");
    set(2, k_factor, "1.1");
    pick(2, k_zones, "B");
    key(Qt::Key_Escape);  // the editor of the next row
    EXPECT_THAT(cells_of(2),
                ElementsAre("Precipitation", "03/31/2001", "04/02/2001", "Multiply each", "1.1", "B"));
    EXPECT_EQ(stored("SELECT VarParm FROM Warmer").size(), 1U);  // not before Done
    press(0);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_THAT(stored("SELECT VarParm || ' ' || StartDate || ' ' || EndDate || ' ' || EditAction || ' ' || "
                       "round(EditFactor, 6) || ' ' || Zones FROM Warmer"),
                ElementsAre("1 36980 36985 0 1.0 0", "2 36981 36983 1 1.1 2"));
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

TEST_F(ScenarioGridTest, AListThatNothingIsChosenFromLeavesItsCellBlank) {
    for (const int column : {k_variable, k_action, k_zones}) {
        go_to(2, column);
        key(Qt::Key_F2);
        key(Qt::Key_Return);
    }
    EXPECT_THAT(cells_of(2), ElementsAre("", "", "", "", "", ""));
}

TEST_F(ScenarioGridTest, TheListsOfACellOfferCodesAndTheZonesOfTheBasin) {
    EXPECT_THAT(offered(2, k_variable),
                ElementsAre("M/M Temperature", "Average Temperature", "Precipitation", "Maximum Temperature",
                            "Critical Temperature", "Lag Time", "Temperature Lapse Rate", "Degree Day Factor",
                            "Runoff Coefficient (Snow)", "Runoff Coefficient (Rain)",
                            "Rainfall Contributing Area", "Net Radiation"));
    EXPECT_THAT(offered(2, k_zones), ElementsAre("All", "A", "B"));
}

TEST_F(ScenarioGridTest, NormalizeIsOfferedForTemperatureAndPrecipitationAlone) {
    EXPECT_EQ(offered(1, k_action), with_normalize());
    pick(1, k_variable, "Precipitation");
    EXPECT_EQ(offered(1, k_action), with_normalize());
    for (const char* other : {"M/M Temperature", "Maximum Temperature", "Lag Time", "Net Radiation"}) {
        pick(1, k_variable, other);
        EXPECT_EQ(offered(1, k_action), k_base_actions) << other;
    }
    EXPECT_EQ(offered(2, k_action), k_base_actions);  // no variable yet
}

TEST_F(ScenarioGridTest, ANormalizeIsBlankedWhenItsVariableTakesNone) {
    pick(1, k_action, "Normalize");
    EXPECT_EQ(cell(1, k_action), "Normalize");
    pick(1, k_variable, "Precipitation");
    EXPECT_EQ(cell(1, k_action), "Normalize");
    pick(1, k_variable, "M/M Temperature");
    EXPECT_EQ(cell(1, k_action), "");
    EXPECT_EQ(cell(1, k_factor), "0");
    EXPECT_EQ(cell(1, k_zones), "All");
}

TEST_F(ScenarioGridTest, OtherActionsSurviveAChangeOfTheVariable) {
    pick(1, k_action, "Multiply each");
    pick(1, k_variable, "M/M Temperature");
    EXPECT_EQ(cell(1, k_action), "Multiply each");
}

TEST_F(ScenarioGridTest, AShiftForwardOfTheFirstFourVariablesGoesBackToAdd) {
    for (const char* variable :
         {"M/M Temperature", "Average Temperature", "Precipitation", "Maximum Temperature"}) {
        pick(1, k_variable, variable);
        pick(1, k_action, "Multiply each");
        pick(1, k_action, "Shift forward");
        EXPECT_EQ(cell(1, k_action), "Add/subtract to each") << variable;
    }
    pick(1, k_variable, "Critical Temperature");
    pick(1, k_action, "Shift forward");
    EXPECT_EQ(cell(1, k_action), "Shift forward");
}

TEST_F(ScenarioGridTest, AShiftBackwardHasNoSuchTest) {
    pick(1, k_action, "Shift backward");
    EXPECT_EQ(cell(1, k_action), "Shift backward");
}

TEST_F(ScenarioGridTest, PrecipitationMayBeNormalizedInSpiteOfTheBeep) {
    pick(1, k_variable, "Precipitation");
    pick(1, k_action, "Normalize");
    EXPECT_EQ(cell(1, k_action), "Normalize");
}

TEST_F(ScenarioGridTest, LeavingANormalizeSetsItsFactorToZeroAndKeepsTheAction) {
    set(1, k_factor, "7");
    EXPECT_EQ(cell(1, k_factor), "7");
    pick(1, k_action, "Normalize");  // and on to the next column
    EXPECT_EQ(cell(1, k_factor), "0");
    set(1, k_factor, "5");
    EXPECT_EQ(cell(1, k_factor), "5");  // the row is not left yet
    go_to(2, k_factor);
    EXPECT_EQ(cell(1, k_factor), "0");
    EXPECT_EQ(cell(1, k_action), "Normalize");
}

TEST_F(ScenarioGridTest, LeavingAnotherActionKeepsTheFactor) {
    go_to(1, k_action);
    go_to(2, k_action);
    EXPECT_EQ(cell(1, k_factor), "1");
}

TEST_F(ScenarioGridTest, ACellRefusesWhatItCannotHold) {
    set(1, k_start, "02/30/2001");
    EXPECT_EQ(cell(1, k_start), "03/30/2001");
    set(1, k_factor, "1e39");  // beyond a Single
    EXPECT_EQ(cell(1, k_factor), "1");
}

TEST_F(ScenarioGridTest, CutCopyAndPasteAreInTheEditMenu) {
    std::vector<std::string> captions;
    for (int index = 0; index < 3; ++index)
        captions.push_back(from_qt(find<QAction>("mnuEdItm(" + std::to_string(index) + ")")->text()));
    EXPECT_THAT(captions, ElementsAre("Cu&t", "&Copy", "&Paste"));
    go_to(1, k_variable);
    grid()->selectRow(0);
    find<QAction>("mnuEdItm(1)")->trigger();
    go_to(2, k_variable);
    find<QAction>("mnuEdItm(2)")->trigger();
    EXPECT_EQ(cells_of(2), cells_of(1));
    grid()->selectRow(0);
    find<QAction>("mnuEdItm(0)")->trigger();
    EXPECT_THAT(cells_of(1), ElementsAre("", "", "", "", "", ""));
    EXPECT_EQ(cell(2, k_variable), "Average Temperature");
}

TEST_F(ScenarioGridTest, RowsThatWereCutAreNotStored) {
    grid()->setFocus();
    grid()->selectRow(0);
    find<QAction>("mnuEdItm(1)")->trigger();
    go_to(3, k_variable);
    find<QAction>("mnuEdItm(2)")->trigger();
    grid()->selectRow(0);
    find<QAction>("mnuEdItm(0)")->trigger();
    press(0);
    // The first and second rows are blank, so only the pasted third one is stored.
    EXPECT_THAT(stored("SELECT VarParm FROM Warmer"), ElementsAre("1"));
}

TEST_F(ScenarioGridTest, APasteThatACellRefusesIsAskedAbout) {
    QApplication::clipboard()->setText(QStringLiteral("Average Temperature\tnonsense"));
    go_to(2, k_variable);
    dialogs_.then(Answer::No);
    find<QAction>("mnuEdItm(2)")->trigger();
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(
        last_message().text,
        "1 of the 2 pasted cells can't be accepted: 'nonsense' for Start Date, row 2; a date has the form "
        "mm/dd/yyyy.\nPaste the rest? No leaves all cells as they are.");
    EXPECT_EQ(cell(2, k_variable), "");
    EXPECT_EQ(cell(2, k_start), "");
}

TEST_F(ScenarioGridTest, TheEditMenuWorksOnTheCommentsWhileTheyHaveTheFocus) {
    QApplication::clipboard()->setText(QStringLiteral("dry"));
    go_to(2, k_variable);
    comments()->setFocus();
    comments()->selectAll();
    find<QAction>("mnuEdItm(2)")->trigger();
    EXPECT_EQ(from_qt(comments()->toPlainText()), "dry");
    EXPECT_EQ(cell(2, k_variable), "");
    EXPECT_EQ(messages(), 0U);
}

/// Comments and the date at which the winter ends.
class ScenarioBoxesTest : public ScenarioWindowTest {
protected:
    void SetUp() override { open_scenario(); }
};

TEST_F(ScenarioBoxesTest, AWinterEndDateIsStoredByDone) {
    set_winter_end("04/02/2001");
    leave_winter_end();
    EXPECT_THAT(stored("SELECT WinterEndDate FROM ClimateScenarioIndex"), ElementsAre("36981"));
    press(0);
    EXPECT_THAT(stored("SELECT WinterEndDate FROM ClimateScenarioIndex"), ElementsAre("36983"));
    EXPECT_EQ(messages(), 0U);
}

TEST_F(ScenarioBoxesTest, FirstAndLastDayOfTheSimulationAreWithinIt) {
    for (const char* date : {"03/30/2001", "04/04/2001"}) {
        set_winter_end(date);
        leave_winter_end();
        EXPECT_EQ(messages(), 0U) << date;
    }
}

TEST_F(ScenarioBoxesTest, ADateOutsideTheSimulationIsRefused) {
    for (const char* date : {"03/29/2001", "04/05/2001"}) {
        set_winter_end(date);
        leave_winter_end();
        EXPECT_EQ(last_message().text, "Invalid winter end date!") << date;
        EXPECT_EQ(from_qt(winter_end()->text()), "03/31/2001") << "the kept date returns";
    }
    EXPECT_EQ(messages(), 2U);
    EXPECT_EQ(QApplication::focusWidget(), winter_end());
}

TEST_F(ScenarioBoxesTest, ATextThatIsNotADateIsRefused) {
    set_winter_end("02/30/2001");
    leave_winter_end();
    EXPECT_EQ(last_message().text, "Invalid date value!");
    EXPECT_EQ(messages(), 1U);
    EXPECT_EQ(from_qt(winter_end()->text()), "03/31/2001");
    EXPECT_FALSE(winter_end()->isModified());
}

TEST_F(ScenarioBoxesTest, DoneStaysOnARefusedWinterEndDate) {
    set_winter_end("04/05/2001");
    press(0);
    EXPECT_TRUE(window_->isVisible());
    EXPECT_GE(messages(), 1U);
    EXPECT_THAT(stored("SELECT WinterEndDate FROM ClimateScenarioIndex"), ElementsAre("36981"));
    set_winter_end("04/01/2001");
    press(0);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_THAT(stored("SELECT WinterEndDate FROM ClimateScenarioIndex"), ElementsAre("36982"));
}

TEST_F(ScenarioBoxesTest, ADefaultOfHalfADayStaysIfItsDayIsUnchanged) {
    change("UPDATE ClimateScenarioIndex SET WinterEndDate = 36981.5");
    reopen();
    EXPECT_EQ(from_qt(winter_end()->text()), "03/31/2001");
    winter_end()->setFocus();
    leave_winter_end();
    press(0);
    EXPECT_THAT(stored("SELECT WinterEndDate FROM ClimateScenarioIndex"), ElementsAre("36981.5"));
}

TEST_F(ScenarioBoxesTest, CommentsAreStoredByDone) {
    comments()->setFocus();
    comments()->selectAll();
    type("two degrees");
    press(0);
    EXPECT_THAT(stored("SELECT Comments FROM ClimateScenarioIndex"), ElementsAre("two degrees"));
}

TEST_F(ScenarioBoxesTest, CommentsOfAScenarioThatIsNoLongerShownAreStoredToo) {
    add_scenario("second", {});
    reopen();
    comments()->setFocus();
    comments()->selectAll();
    type("typed before");
    choose("second");
    press(0);
    EXPECT_THAT(stored("SELECT Comments FROM ClimateScenarioIndex ORDER BY ScenarioFile"),
                ElementsAre("typed before", "one degree more"));
}

/// How the window is closed.
class ScenarioLeavingTest : public ScenarioWindowTest {
protected:
    void SetUp() override { open_scenario(); }

    std::vector<std::string> factors() { return stored("SELECT round(EditFactor, 3) FROM Warmer"); }
};

TEST_F(ScenarioLeavingTest, CancelLeavesTheStoredRows) {
    set(1, k_factor, "7");
    press(1);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_THAT(factors(), ElementsAre("1.0"));
    EXPECT_EQ(messages(), 0U);
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(ScenarioLeavingTest, TheCloseControlAsksBeforeItLosesWhatWasTyped) {
    set(1, k_factor, "7");
    dialogs_.then(Answer::No);
    EXPECT_FALSE(window_->close());
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(last_message().buttons, Buttons::YesNo);
    EXPECT_EQ(last_message().default_answer, Answer::No);
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(window_->close());
    EXPECT_THAT(factors(), ElementsAre("1.0"));
}

TEST_F(ScenarioLeavingTest, TheCloseControlAsksNothingIfNothingWasTyped) {
    EXPECT_TRUE(window_->close());
    EXPECT_EQ(messages(), 0U);
}

TEST_F(ScenarioLeavingTest, DoneTakesTheCellThatIsBeingEdited) {
    go_to(1, k_factor);
    type("3");
    QTest::mouseClick(button(0), Qt::LeftButton);
    EXPECT_THAT(factors(), ElementsAre("3.0"));
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

TEST_F(ScenarioLeavingTest, QuickHelpRefusesTheCloseControl) {
    set(1, k_factor, "7");
    expect_close_refused();
    EXPECT_EQ(messages(), 0U);  // not even the question
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(window_->close());
}

TEST_F(ScenarioLeavingTest, HelpShowsItsTopic) {
    press(2);
    EXPECT_THAT(desktop_.topics, ElementsAre(4));
}

TEST_F(ScenarioLeavingTest, TheVariablesAreShownReadOnly) {
    bool locked = false;
    DataView view{};
    std::string title;
    std::string status;
    desktop_.while_editing = [&] {
        const PrepState& prep = session_.prep;
        locked = prep.Edit_Locked;
        view = prep.Data_View;
        title = prep.window_title;
        status = prep.status;
    };
    press_action(3);
    EXPECT_EQ(desktop_.editors, 1);
    EXPECT_TRUE(locked);
    EXPECT_EQ(view, DataView::Scenario);
    EXPECT_EQ(title, "Climate Change Scenario Warmer 03/30/2001 to 04/04/2001");
    EXPECT_EQ(status, "Variable/parameter values adjusted for climate change");
    EXPECT_FALSE(session_.prep.Edit_Locked);
    EXPECT_EQ(session_.prep.query.table, "Test");
    ASSERT_TRUE(session_.prep.query.period);
    EXPECT_EQ(session_.prep.query.period->start, SixDays::first_day());
    EXPECT_EQ(session_.prep.query.period->end, SixDays::first_day() + SixDays::k_days - 1);
    EXPECT_EQ(session_.prep.query.fields.size(), 17U);
}

TEST_F(ScenarioGridTest, FillingTheLastRowsAddsBlankRows) {
    ASSERT_EQ(grid()->verticalHeader()->count(), 40);
    const QSignalSpy resets(grid()->model(), &QAbstractItemModel::modelReset);
    set(35, k_factor, "1.5");
    // 35 rows and ten blank ones.
    EXPECT_EQ(grid()->model()->rowCount(), 45);
    EXPECT_EQ(grid()->verticalHeader()->count(), 45);
    EXPECT_EQ(grid()->currentIndex(), grid()->model()->index(34, k_zones - 1));
    EXPECT_TRUE(resets.isEmpty());
    key(Qt::Key_Escape);  // the editor of the next cell
    set(45, k_factor, "2");
    EXPECT_EQ(cell(45, k_factor), "2");
    EXPECT_EQ(grid()->verticalHeader()->count(), 55);
}

}  // namespace
}  // namespace nivora
