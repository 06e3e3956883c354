// Moves of the cursor in the daily editor: to a date, and to missing values.

#include "tests/windows/prep/daily_window_fixture.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QStatusBar>

namespace nivora {
namespace {

using testing::ElementsAre;

class DailyMovesTest : public DailyWindowTest {
protected:
    /// Presses Ctrl+G and answers its box.
    void ask_date(const char* answer) {
        dialogs_.then_text(answer);
        key(Qt::Key_G, Qt::ControlModifier);
    }
    /// Row and column of the cursor, from 1.
    std::pair<int, int> cursor() {
        return {grid()->currentIndex().row() + 1, grid()->currentIndex().column() + 1};
    }
    std::string told() { return from_qt(window_->statusBar()->currentMessage()); }
    void make_missing(const char* where) {
        file_.open().execute(std::string{"UPDATE PhysicalData SET Runoff = NULL WHERE Zone = 1 AND "} +
                             where);
    }
    static std::string on(int day) { return "Date = " + std::to_string(october(day)); }
    /// Opens ten days of variables; the runoffs of two of them are missing.
    void open_with_gaps(int one, int other) {
        add_physical(1, 10);
        session_.basin.simulations[0].end = october(10);
        select_simulation(session_.basin, 0);
        make_missing((on(one) + " OR Zone = 1 AND " + on(other)).c_str());
        open_prepared_variables();
    }
    QMenu* open_menu() {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint{}, QPoint{});
        QApplication::sendEvent(grid()->viewport(), &event);
        return grid()->findChild<QMenu*>(QStringLiteral("mnuGrid"));
    }
};

TEST_F(DailyMovesTest, CtrlGGoesToADateInTheCurrentColumn) {
    open_variables();
    go_to(1, 3);
    ask_date("10/03/1980");
    EXPECT_EQ(cursor(), std::pair(3, 3));
    EXPECT_EQ(dialogs_.inputs().back().title, "Go to date");
    EXPECT_EQ(dialogs_.inputs().back().proposed, "10/01/1980");
    ask_date(" 1980-10-04 ");
    EXPECT_EQ(cursor(), std::pair(4, 3));
    ask_date("10/1/1980");
    EXPECT_EQ(cursor(), std::pair(1, 3));
    EXPECT_EQ(messages(), 0U);
}

TEST_F(DailyMovesTest, CancelAndAnEmptyAnswerMoveNothing) {
    open_variables();
    go_to(2, 3);
    dialogs_.then_text(std::nullopt);
    key(Qt::Key_G, Qt::ControlModifier);
    ask_date("  ");
    EXPECT_EQ(cursor(), std::pair(2, 3));
    EXPECT_EQ(messages(), 0U);
}

TEST_F(DailyMovesTest, ADateOutsideTheTableNamesItsDays) {
    open_variables();
    zone()->setValue(2);
    go_to(2, 3);
    ask_date("10/05/1980");
    EXPECT_EQ(last_message().text,
              "Zone 2 has no row of 10/05/1980 in this table. Its days are "
              "10/01/1980 to 10/04/1980.");
    EXPECT_EQ(last_message().title, "Go to date");
    ask_date("09/30/1980");
    EXPECT_EQ(messages(), 2U);
    EXPECT_EQ(cursor(), std::pair(2, 3));
}

TEST_F(DailyMovesTest, ADateInAGapOfTheTableSaysSo) {
    add_physical(1, 4);
    file_.open().execute("DELETE FROM PhysicalData WHERE " + on(2));
    session_.basin.Current_Sim_Name.clear();
    session_.prep.query = {
        .table = k_physical_data, .fields = daily_fields(DataView::PhysicalData), .period = {}};
    open();
    ask_date("10/02/1980");
    EXPECT_EQ(last_message().text,
              "Zone 1 has no row of 10/02/1980 in this table. Its days are "
              "10/01/1980 to 10/04/1980, with gaps.");
    ask_date("10/03/1980");
    EXPECT_EQ(cursor(), std::pair(2, 1));
}

TEST_F(DailyMovesTest, WhatIsNoDateIsRefusedWithTheReason) {
    open_variables();
    ask_date("02/31/1980");
    EXPECT_EQ(last_message().text, "'02/31/1980' is not accepted: the calendar has no such day.");
    ask_date("tomorrow");
    EXPECT_EQ(last_message().text, "'tomorrow' is not accepted: a date has the form mm/dd/yyyy.");
}

TEST_F(DailyMovesTest, AnOpenEditorIsStoredBeforeTheCursorMoves) {
    open_variables();
    go_to(1, 2);
    type("7");
    ask_date("10/04/1980");
    EXPECT_EQ(cursor(), std::pair(4, 2));
    EXPECT_EQ(shown(1, 2), "7.00");
    go_to(3, 2);
    type("9");
    ask_date("01/01/2030");
    EXPECT_EQ(shown(3, 2), "9.00");
    go_to(2, 2);
    type("8");
    key(Qt::Key_F3);
    EXPECT_EQ(shown(2, 2), "8.00");
    EXPECT_EQ(cursor(), std::pair(2, 2));
    EXPECT_EQ(told(), "Runoff, zone 1: no value is missing.");
    dialogs_.then(Answer::Yes);
    window_->close();
}

TEST_F(DailyMovesTest, F3GoesFromOneMissingValueToTheNextAndWrapsWithANotice) {
    open_with_gaps(4, 8);
    go_to(1, 2);
    key(Qt::Key_F3);
    EXPECT_EQ(cursor(), std::pair(4, 2));
    EXPECT_EQ(told(), "");
    key(Qt::Key_F3);
    EXPECT_EQ(cursor(), std::pair(8, 2));
    key(Qt::Key_F3);
    EXPECT_EQ(cursor(), std::pair(4, 2));
    EXPECT_EQ(told(), "Runoff, zone 1: went on at the first day.");
    key(Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(cursor(), std::pair(8, 2));
    EXPECT_EQ(told(), "Runoff, zone 1: went on at the last day.");
    key(Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(cursor(), std::pair(4, 2));
    EXPECT_EQ(told(), "");
}

TEST_F(DailyMovesTest, ASingleMissingValueAndNoneAreTold) {
    open_with_gaps(4, 4);
    go_to(4, 2);
    key(Qt::Key_F3);
    EXPECT_EQ(cursor(), std::pair(4, 2));
    EXPECT_EQ(told(), "Runoff, zone 1: no other value is missing.");
    zone()->setValue(2);
    key(Qt::Key_F3);
    EXPECT_EQ(told(), "Runoff, zone 2: no value is missing.");
    EXPECT_EQ(cursor(), std::pair(4, 2));
    go_to(3, 1);
    key(Qt::Key_F3);
    EXPECT_EQ(told(), "Date, zone 2: no value is missing.");
}

TEST_F(DailyMovesTest, TheKeysWorkInAReadOnlyTableAndNotUnderQuickHelp) {
    session_.run.ClimateStep = 2;
    open_with_gaps(4, 8);
    go_to(1, 2);
    key(Qt::Key_F3);
    EXPECT_EQ(cursor(), std::pair(4, 2));
    ask_date("10/02/1980");
    EXPECT_EQ(cursor(), std::pair(2, 2));
    quick_help_.set_on(true);
    key(Qt::Key_F3);
    key(Qt::Key_G, Qt::ControlModifier);
    EXPECT_EQ(cursor(), std::pair(2, 2));
}

TEST_F(DailyMovesTest, TheContextMenuHasTheMovesWithTheirKeys) {
    open_with_gaps(4, 8);
    go_to(1, 2);
    const QMenu* menu = open_menu();
    ASSERT_NE(menu, nullptr);
    std::vector<std::string> texts;
    for (const QAction* entry : menu->actions()) texts.push_back(from_qt(entry->text()));
    EXPECT_THAT(texts, ElementsAre("&Undo\tCtrl+Z", "R&edo\tCtrl+Shift+Z", "", "Cu&t\tCtrl+X",
                                   "&Copy\tCtrl+C", "Copy with &headers\tCtrl+Shift+C", "&Paste\tCtrl+V", "",
                                   "&Go to date...\tCtrl+G", "&Next missing value\tF3",
                                   "P&revious missing value\tShift+F3", "Ne&xt changed value\tCtrl+F3",
                                   "Pre&vious changed value\tCtrl+Shift+F3", "C&olumns"));
    menu->findChild<QAction*>(QStringLiteral("gridNextMissing"))->trigger();
    EXPECT_EQ(cursor(), std::pair(4, 2));
}

TEST_F(DailyMovesTest, InTheColumnOfDatesNothingCanBeMissingAndNothingCut) {
    open_with_gaps(4, 8);
    go_to(2, 1);
    const QMenu* menu = open_menu();
    for (const char* name : {"gridCut", "gridNextMissing", "gridPreviousMissing"})
        EXPECT_FALSE(menu->findChild<QAction*>(QString::fromUtf8(name))->isEnabled()) << name;
    EXPECT_TRUE(menu->findChild<QAction*>(QStringLiteral("gridGoToDate"))->isEnabled());
}

TEST_F(DailyMovesTest, SumsOfTheSelectionFollowTheZone) {
    open_variables();
    select(1, 1, 3, 4);
    QApplication::processEvents();
    // 101 + 102 + 103; the temperatures are missing
    EXPECT_EQ(from_qt(find<QLabel>("sumsPanel")->text()),
              "3 numbers   Sum 306   Mean 102   Minimum 101   Maximum 103");
    zone()->setValue(2);
    QApplication::processEvents();
    EXPECT_EQ(from_qt(find<QLabel>("sumsPanel")->text()),
              "3 numbers   Sum 606   Mean 202   Minimum 201   Maximum 203");
}

}  // namespace
}  // namespace nivora
