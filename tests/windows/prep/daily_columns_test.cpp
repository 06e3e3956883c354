// Hidden and moved columns of the daily editor, and what acts on those that are seen.

#include "prep/daily_units.h"
#include "tests/windows/prep/daily_window_fixture.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QStatusBar>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class DailyColumnsTest : public DailyWindowTest {
protected:
    static std::string clipboard_now() { return from_qt(QApplication::clipboard()->text()); }
    std::string kept(const char* view) {
        const auto found = session_.settings.columns.find(view);
        return found == session_.settings.columns.end() ? std::string{} : found->second;
    }
    QMenu* header_menu(int column) {
        QHeaderView& header = *grid()->horizontalHeader();
        const QPoint at(header.sectionViewportPosition(column - 1) + 5, header.height() / 2);
        emit header.customContextMenuRequested(at);
        return column_menu();
    }
    QMenu* column_menu() { return grid()->findChild<QMenu*>(QStringLiteral("mnuColumns")); }
    void choose_entry(QMenu* menu, const char* name) {
        ASSERT_NE(menu, nullptr);
        auto* entry = menu->findChild<QAction*>(QString::fromUtf8(name));
        ASSERT_NE(entry, nullptr) << name;
        EXPECT_TRUE(entry->isEnabled()) << name;
        entry->trigger();
        menu->close();
        QApplication::processEvents();
        window_->activateWindow();
        grid()->setFocus();
        EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; }));
    }
    void hide_column(int column) {
        go_to(1, column);
        key(Qt::Key_0, Qt::ControlModifier);
    }
    std::pair<int, int> cursor() {
        return {grid()->currentIndex().row() + 1, grid()->currentIndex().column() + 1};
    }
    std::string told() { return from_qt(window_->statusBar()->currentMessage()); }
    std::string variable(const char* field, int day) {
        return stored(std::string{"SELECT "} + field +
                      " FROM PhysicalData WHERE Zone = 1 AND Date = " + std::to_string(october(day)));
    }
    void reopen() {
        press(*find<QPushButton>("Command1(1)"));
        window_.reset();
        open_prepared_variables();
    }
    void press(QPushButton& button) { button.click(); }
    void put_on_clipboard(const char* text) { QApplication::clipboard()->setText(QString::fromUtf8(text)); }
};

TEST_F(DailyColumnsTest, KeysHideAndMoveTheColumnOfTheCursor) {
    open_variables();
    EXPECT_THAT(headers(),
                ElementsAre("Date", "Runoff", "Tmax", "Tmin", "Tavg", "CDC", "Precip", "NetRadiation"));
    hide_column(3);
    EXPECT_THAT(headers(), ElementsAre("Date", "Runoff", "Tmin", "Tavg", "CDC", "Precip", "NetRadiation"));
    EXPECT_EQ(cursor(), std::pair(1, 3));
    go_to(2, 6);
    key(Qt::Key_Left, Qt::AltModifier);
    EXPECT_THAT(headers(), ElementsAre("Date", "Runoff", "Tmin", "Tavg", "Precip", "CDC", "NetRadiation"));
    EXPECT_EQ(cursor(), std::pair(2, 5)) << "the cursor goes with its column";
    key(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(header(6), "Precip");
    EXPECT_EQ(kept("Variables"), "Date Runoff -Tmax Tmin Tavg SCA Precip NetRadiation");
}

TEST_F(DailyColumnsTest, TheDatesAreNeitherHiddenNorMoved) {
    open_variables();
    hide_column(1);
    key(Qt::Key_Right, Qt::AltModifier);
    go_to(1, 2);
    key(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(header(1), "Date");
    EXPECT_EQ(header(2), "Runoff");
    QMenu* menu = header_menu(1);
    for (const char* name : {"columnHide", "columnLeft", "columnRight", "column(0)"})
        EXPECT_FALSE(menu->findChild<QAction*>(QString::fromUtf8(name))->isEnabled()) << name;
}

TEST_F(DailyColumnsTest, TheMenuOfAHeaderAndTheMenuOfTheCellsListTheColumns) {
    open_variables();
    choose_entry(header_menu(4), "columnHide");
    EXPECT_EQ(header(4), "Tavg");
    key(Qt::Key_L, Qt::ControlModifier);
    QMenu* list = column_menu();
    ASSERT_NE(list, nullptr);
    EXPECT_FALSE(list->findChild<QAction*>(QStringLiteral("column(3)"))->isChecked());
    EXPECT_TRUE(list->findChild<QAction*>(QStringLiteral("column(4)"))->isChecked());
    choose_entry(list, "column(3)");
    EXPECT_EQ(header(4), "Tmin");
    hide_column(2);
    hide_column(2);
    choose_entry(header_menu(2), "columnsAll");
    EXPECT_EQ(headers().size(), 8U);
    EXPECT_EQ(kept("Variables"), "");
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint{}, QPoint{});
    QApplication::sendEvent(grid()->viewport(), &event);
    const auto* menu = grid()->findChild<QMenu*>(QStringLiteral("mnuGrid"));
    ASSERT_NE(menu, nullptr);
    EXPECT_NE(menu->findChild<QAction*>(QStringLiteral("columnHide")), nullptr);
}

TEST_F(DailyColumnsTest, TheLayoutIsRememberedByViewAndNotInTheBasin) {
    open_variables();
    hide_column(3);
    go_to(1, 2);
    key(Qt::Key_Right, Qt::AltModifier);
    const auto seen = headers();
    EXPECT_FALSE(session_.basin.Basin_Changed);
    reopen();
    EXPECT_EQ(headers(), seen);
    window_.reset();
    open_parameters();
    EXPECT_EQ(header(2), "LapseRate");
    EXPECT_EQ(headers().size(), 10U);
}

TEST_F(DailyColumnsTest, CopyTakesWhatIsSeenInTheOrderSeen) {
    open_variables();
    set(1, 2, "1");
    set(1, 3, "2");
    set(1, 4, "3");
    hide_column(3);
    go_to(1, 2);
    key(Qt::Key_Right, Qt::AltModifier);
    select(1, 2, 1, 3);
    grid()->copy_with_headers();
    EXPECT_EQ(clipboard_now(), "Tmin\tRunoff\n3\t1\n");
}

TEST_F(DailyColumnsTest, APasteWritesIntoSeenColumnsOnly) {
    open_variables();
    set(1, 3, "7");
    hide_column(3);
    put_on_clipboard("1\t2\n");
    go_to(1, 2);
    grid()->paste();
    EXPECT_EQ(shown(1, 2), "1.00");
    EXPECT_EQ(shown(1, 3), "2.00");
    go_to(1, 1);
    choose_entry(header_menu(2), "columnsAll");
    EXPECT_EQ(header(3), "Tmax");
    EXPECT_EQ(shown(1, 3), "7.00") << "it was hidden";
    EXPECT_EQ(shown(1, 4), "2.00");
}

TEST_F(DailyColumnsTest, ACutClearsSeenColumnsOnly) {
    open_variables();
    set(1, 2, "5");
    set(1, 3, "7");
    set(1, 4, "9");
    hide_column(3);
    select(1, 2, 1, 3);
    grid()->cut();
    EXPECT_EQ(clipboard_now(), "5\t9\n");
    choose_entry(header_menu(2), "columnsAll");
    EXPECT_EQ(shown(1, 2), "0.00");
    EXPECT_EQ(shown(1, 3), "7.00");
    EXPECT_EQ(shown(1, 4), "0.00");
}

TEST_F(DailyColumnsTest, APasteHasNoRoomBeyondTheSeenColumns) {
    open_variables();
    hide_column(8);
    put_on_clipboard("1\t2\n");
    go_to(1, 7);
    dialogs_.then(Answer::No);
    grid()->paste();
    EXPECT_THAT(last_message().text, HasSubstr("The grid has no room for 1 column of the clipboard."));
}

TEST_F(DailyColumnsTest, APasteByDateLeavesHiddenColumnsAlone) {
    open_variables();
    set(2, 3, "7");
    hide_column(3);
    put_on_clipboard("Date\tTmax\tTmin\n10/02/1980\t50\t60\n");
    go_to(1, 2);
    dialogs_.then(Answer::Yes);
    grid()->paste();
    EXPECT_THAT(last_message().text, HasSubstr("These columns are hidden and get no values: Tmax."));
    EXPECT_EQ(shown(2, 3), "60.00");
    choose_entry(header_menu(2), "columnsAll");
    EXPECT_EQ(shown(2, 3), "7.00");
}

TEST_F(DailyColumnsTest, APasteByDateWithoutNamesGoesAlongTheSeenColumns) {
    open_variables();
    hide_column(3);
    put_on_clipboard("Day\ta\tb\n10/02/1980\t50\t60\n");
    go_to(1, 2);
    dialogs_.then(Answer::Yes);
    grid()->paste();
    EXPECT_EQ(shown(2, 2), "50.00");
    EXPECT_EQ(header(3), "Tmin");
    EXPECT_EQ(shown(2, 3), "60.00");
}

TEST_F(DailyColumnsTest, AMovedColumnIsTypedEditedAndStoredUnderItsOwnField) {
    open_variables();
    go_to(1, 2);
    key(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(header(2), "Tmax");
    set(1, 2, "12");
    set(1, 3, "34");
    select(2, 3, 2, 3);
    dialogs_.then_text("1");
    find<QAction>("mnuEditItmAct(0)")->trigger();
    EXPECT_THAT(dialogs_.inputs().back().title, HasSubstr("Runoff"));
    press(*find<QPushButton>("Command1(0)"));
    EXPECT_EQ(variable("Tmax", 1), "12.0");
    EXPECT_EQ(variable("Runoff", 1), "34.0");
}

TEST_F(DailyColumnsTest, UndoShowsTheHiddenColumnInWhichItTakesAChangeBack) {
    open_variables();
    set(2, 3, "7");
    hide_column(3);
    go_to(1, 1);
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(header(3), "Tmax");
    EXPECT_EQ(cursor(), std::pair(2, 3));
    EXPECT_NE(shown(2, 3), "7.00");
}

TEST_F(DailyColumnsTest, AFindingInAHiddenColumnShowsItAgain) {
    open_variables();
    hide_column(3);
    dynamic_cast<frmData&>(*window_).go_to({.zone = 1, .day = october(3), .field = "Tmax"});
    EXPECT_EQ(header(3), "Tmax");
    EXPECT_EQ(cursor(), std::pair(3, 3));
}

TEST_F(DailyColumnsTest, TabAndShiftArrowsGoAlongTheSeenColumns) {
    open_variables();
    hide_column(3);
    go_to(1, 2);
    key(Qt::Key_Tab);
    EXPECT_EQ(cursor(), std::pair(1, 3));
    key(Qt::Key_Right, Qt::ShiftModifier);
    const CellRange block = grid()->block();
    EXPECT_EQ(block.columns(), 2);
    EXPECT_FALSE(grid()->isColumnHidden(3));
}

TEST_F(DailyColumnsTest, WidthsGoWithTheirColumns) {
    open_variables();
    grid()->setColumnWidth(2, 133);
    go_to(1, 3);
    key(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(header(4), "Tmax");
    EXPECT_EQ(grid()->columnWidth(3), 133);
    hide_column(4);
    key(Qt::Key_L, Qt::ControlModifier);
    choose_entry(column_menu(), "column(2)");
    EXPECT_EQ(header(4), "Tmax");
    EXPECT_EQ(grid()->columnWidth(3), 133);
}

TEST_F(DailyColumnsTest, EveryColumnOfEveryViewHasItsUnitInBothSystems) {
    for (const DataView view :
         {DataView::PhysicalData, DataView::Parameters, DataView::Results, DataView::Scenario}) {
        for (const std::string& field : daily_fields(view)) {
            EXPECT_NE(daily_unit(field, Units::Metric), "") << field;
            EXPECT_NE(daily_unit(field, Units::English), "") << field;
        }
    }
}

TEST_F(DailyColumnsTest, AMovedColumnKeepsItsUnitAndItsHelp) {
    open_variables();
    go_to(1, 2);
    key(Qt::Key_Right, Qt::AltModifier);
    const auto* model = grid()->model();
    EXPECT_EQ(from_qt(model->headerData(2, Qt::Horizontal, Qt::ToolTipRole).toString()), "Runoff: m³/s");
    EXPECT_EQ(model->headerData(2, Qt::Horizontal, k_column_role).toInt(), 1);
}

class ComputedFlowTest : public DailyColumnsTest {
protected:
    void after_a_run() {
        fill_parameter_table();
        make_results();
        session_.basin.Output_Valid = true;
    }
    void show_computed(int offered) {
        key(Qt::Key_L, Qt::ControlModifier);
        choose_entry(column_menu(), ("column(" + std::to_string(offered) + ")").c_str());
    }
};

TEST_F(ComputedFlowTest, TheComputedDischargeStandsBesideTheMeasuredOneIfItIsWanted) {
    after_a_run();
    open_variables();
    EXPECT_EQ(header(3), "Tmax") << "not at first";
    show_computed(2);
    EXPECT_THAT(headers(), ElementsAre("Date", "Runoff", "Computed", "Tmax", "Tmin", "Tavg", "CDC", "Precip",
                                       "NetRadiation"));
    EXPECT_EQ(shown(1, 3), "5.00");
    EXPECT_EQ(from_qt(grid()->cells().tip(2)), "Computed: m³/s");
    zone()->setValue(2);
    EXPECT_FALSE(grid()->cells().number(0, 2).has_value()) << "the discharge stands with zone 1";
}

TEST_F(ComputedFlowTest, NothingCanBeWrittenIntoIt) {
    after_a_run();
    open_variables();
    show_computed(2);
    put_on_clipboard("1\t2\t3\n");
    go_to(1, 2);
    dialogs_.then(Answer::Yes);
    grid()->paste();
    EXPECT_THAT(last_message().text, HasSubstr("a run computes this value"));
    EXPECT_EQ(shown(1, 2), "1.00");
    EXPECT_EQ(shown(1, 3), "5.00");
    EXPECT_EQ(shown(1, 4), "3.00");
    select(1, 3, 2, 3);
    find<QAction>("mnuEditItmAct(0)")->trigger();
    EXPECT_EQ(last_message().title, "ERROR - The computed discharge can't be changed.");
    EXPECT_FALSE(grid()->can_cut());
}

TEST_F(ComputedFlowTest, WithoutValidResultsThereIsNone) {
    after_a_run();
    session_.basin.Output_Valid = false;
    session_.settings.columns["Variables"] = "Date Runoff Computed Tmax";
    open_variables();
    EXPECT_EQ(header(3), "Tmax");
    go_to(1, 3);
    key(Qt::Key_Right, Qt::AltModifier);
    EXPECT_THAT(kept("Variables"), HasSubstr(" Computed "));
}

TEST_F(ComputedFlowTest, AmongTheResultsItFollowsTheColumnOfTheResults) {
    session_.basin.Output_Valid = true;
    open_results();
    EXPECT_EQ(header(2), "ActualQ");
    EXPECT_EQ(header(3), "TMax");
    show_computed(2);
    EXPECT_EQ(header(3), "Computed");
    EXPECT_EQ(shown(1, 3), "5.00");
}

class ChangedValueTest : public DailyColumnsTest {
protected:
    void next() { key(Qt::Key_F3, Qt::ControlModifier); }
    void previous() { key(Qt::Key_F3, Qt::ControlModifier | Qt::ShiftModifier); }
};

TEST_F(ChangedValueTest, CtrlF3GoesFromChangeToChange) {
    open_variables();
    next();
    EXPECT_EQ(told(), "Zone 1: no value in sight has changed since the window was opened.");
    set(3, 4, "8");
    set(2, 2, "9");
    go_to(1, 1);
    next();
    EXPECT_EQ(cursor(), std::pair(2, 2));
    next();
    EXPECT_EQ(cursor(), std::pair(3, 4));
    EXPECT_EQ(told(), "");
    next();
    EXPECT_EQ(cursor(), std::pair(2, 2));
    EXPECT_EQ(told(), "Zone 1: went on at the first day.");
    previous();
    EXPECT_EQ(cursor(), std::pair(3, 4));
    EXPECT_EQ(told(), "Zone 1: went on at the last day.");
}

TEST_F(ChangedValueTest, AChangeThatIsTakenBackIsNone) {
    open_variables();
    const std::string before = whole(2, 2);
    set(2, 2, "9");
    set(2, 2, before.c_str());
    go_to(1, 1);
    next();
    EXPECT_EQ(cursor(), std::pair(1, 1));
    set(2, 2, "9");
    key(Qt::Key_Z, Qt::ControlModifier);
    go_to(1, 1);
    next();
    EXPECT_EQ(cursor(), std::pair(1, 1));
}

TEST_F(ChangedValueTest, AMassEditIsFound) {
    open_variables();
    select(2, 2, 3, 2);
    dialogs_.then_text("1");
    find<QAction>("mnuEditItmAct(0)")->trigger();
    go_to(1, 1);
    next();
    EXPECT_EQ(cursor(), std::pair(2, 2));
}

TEST_F(ChangedValueTest, ChangesOutOfSightAreTold) {
    open_variables();
    set(2, 3, "8");
    hide_column(3);
    zone()->setValue(2);
    set(2, 2, "8");
    zone()->setValue(1);
    go_to(1, 1);
    next();
    EXPECT_EQ(cursor(), std::pair(1, 1));
    EXPECT_EQ(
        told(),
        "Zone 1: no value in sight has changed; there are changes in the hidden column Tmax and in zone 2.");
}

}  // namespace
}  // namespace nivora
