// The keys of undo in the daily editor and in the window of the monthly averages.
#include "tests/windows/prep/daily_window_fixture.h"

#include <QSpinBox>

namespace nivora {
namespace {

class DailyUndoWindowTest : public DailyWindowTest {
protected:
    static void undo() { key(Qt::Key_Z, Qt::ControlModifier); }
    static void redo() { key(Qt::Key_Y, Qt::ControlModifier); }
    DailyUndoWindowTest() { open_variables(); }
};

TEST_F(DailyUndoWindowTest, TypingIsTakenBackAndDoneFindsNoChange) {
    set(1, 2, "11.5");
    undo();
    EXPECT_EQ(whole(1, 2), "101");
    EXPECT_EQ(grid()->currentIndex(), grid()->model()->index(0, 1));
    session_.basin.Output_Valid = true;
    press(0);
    EXPECT_EQ(messages(), 0U) << "no results are lost";
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(DailyUndoWindowTest, APasteAndACutAreOneStepEach) {
    QApplication::clipboard()->setText(QStringLiteral("1\t2\n3\t4\n"));
    grid()->setCurrentIndex(grid()->model()->index(0, 1));
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(whole(2, 3), "4");
    grid()->selectionModel()->select(
        QItemSelection(grid()->model()->index(0, 1), grid()->model()->index(3, 1)),
        QItemSelectionModel::ClearAndSelect);
    key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(whole(2, 2), "0");
    undo();
    EXPECT_EQ(whole(2, 2), "3");
    const CellRange block = grid()->block();
    EXPECT_EQ(block.first_row, 0);
    EXPECT_EQ(block.last_row, 3);
    undo();
    EXPECT_EQ(whole(1, 2), "101");
    EXPECT_EQ(whole(2, 2), "102");
    redo();
    redo();
    EXPECT_EQ(whole(2, 2), "0");
}

TEST_F(DailyUndoWindowTest, AChangeOfAnotherZoneShowsItsZone) {
    set(1, 2, "11.5");
    zone()->setValue(2);
    undo();
    EXPECT_EQ(zone()->value(), 1);
    EXPECT_EQ(find<QGroupBox>("Frame1")->title(), QStringLiteral("Zone 1 of 2"));
    EXPECT_EQ(whole(1, 2), "101");
    EXPECT_EQ(whole(2, 2), "102");
}

TEST_F(DailyUndoWindowTest, AMassEditIsTakenBack) {
    grid()->selectionModel()->select(
        QItemSelection(grid()->model()->index(0, 1), grid()->model()->index(1, 1)),
        QItemSelectionModel::ClearAndSelect);
    dialogs_.then_text("10");
    find<QAction>("mnuEditItmAct(0)")->trigger();
    EXPECT_EQ(whole(1, 2), "111");
    grid()->setFocus();
    undo();
    EXPECT_EQ(whole(1, 2), "101");
    EXPECT_EQ(whole(2, 2), "102");
}

TEST_F(DailyUndoWindowTest, AClosedWindowAsksNothingOnceAllIsTakenBack) {
    set(1, 2, "11.5");
    undo();
    window_->close();
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(messages(), 0U);
}

}  // namespace
}  // namespace nivora
