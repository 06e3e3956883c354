#include "tests/widgets/grid_fixture.h"

#include <QPointer>
#include <QScrollBar>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// What leaving a cell does, and what does not count as leaving one.
class GridLeavingTest : public GridTest {
protected:
    void empty(int row, int column) { ASSERT_TRUE(cells_->take(row, column, {})); }
};

TEST_F(GridLeavingTest, AMissingNumberStaysMissingIfTheCursorPasses) {
    for (int row = 2; row < 5; ++row) empty(row, Column::k_number);
    go_to(2, Column::k_number);
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    key(Qt::Key_Tab);
    EXPECT_THAT(column(Column::k_number, 2, 4), ElementsAre("", "", ""));
    EXPECT_THAT(left_,
                ElementsAre(Pair(2, Column::k_number), Pair(3, Column::k_number), Pair(4, Column::k_number)));
    EXPECT_EQ(edits_, 0);
}

TEST_F(GridLeavingTest, AMissingNumberThatIsLeftByTheMouseOrForAnotherWidgetStaysMissing) {
    empty(1, Column::k_number);
    go_to(1, Column::k_number);
    const QRect other = grid_->visualRect(cells_->index(3, Column::k_integer));
    QTest::mouseClick(grid_->viewport(), Qt::LeftButton, Qt::NoModifier, other.center());
    EXPECT_THAT(active(), Pair(3, Column::k_integer));
    go_to(1, Column::k_number);
    beside_->setFocus();
    EXPECT_EQ(at(1, Column::k_number), "");
    EXPECT_THAT(left_, ElementsAre(Pair(1, Column::k_number)));
    EXPECT_EQ(edits_, 0);
}

TEST_F(GridLeavingTest, AnEditorThatIsOpenedOnAMissingNumberAndEndedChangesNothing) {
    empty(2, Column::k_number);
    go_to(2, Column::k_number);
    key(Qt::Key_F2);
    key(Qt::Key_Return);
    EXPECT_EQ(at(2, Column::k_number), "");
    EXPECT_EQ(edits_, 0);
}

TEST_F(GridLeavingTest, ACellThatWasEmptiedInItsEditorBecomesZeroAtEnter) {
    go_to(2, Column::k_integer);
    key(Qt::Key_F2);
    key(Qt::Key_Delete);
    key(Qt::Key_Return);
    EXPECT_EQ(at(2, Column::k_integer), "0");
    EXPECT_EQ(edits_, 1);
}

TEST_F(GridLeavingTest, AChangeOfTheFocusTakesWhatIsBeingTyped) {
    go_to(2, Column::k_number);
    key(Qt::Key_F2);
    key(Qt::Key_Delete);
    beside_->setFocus();
    EXPECT_EQ(at(2, Column::k_number), "0");
}

TEST_F(GridLeavingTest, AnEmptyTextStaysEmpty) {
    for (const int column : {Column::k_text, Column::k_date, Column::k_list}) {
        empty(2, column);
        go_to(2, column);
        key(Qt::Key_Down);
        EXPECT_EQ(at(2, column), "") << column;
    }
    EXPECT_EQ(edits_, 0);
}

TEST_F(GridLeavingTest, OpeningAnEditorDoesNotLeaveTheCell) {
    empty(2, Column::k_number);
    go_to(2, Column::k_number);
    key(Qt::Key_F2);
    EXPECT_NE(editor(), nullptr);
    EXPECT_THAT(left_, IsEmpty());
    key(Qt::Key_Escape);
    EXPECT_THAT(left_, IsEmpty());
    EXPECT_EQ(at(2, Column::k_number), "");
}

TEST_F(GridLeavingTest, OpeningAMenuDoesNotLeaveTheCell) {
    empty(2, Column::k_number);
    go_to(2, Column::k_number);
    menu_->popup(window_->mapToGlobal(QPoint(5, 5)));
    QTest::qWait(1);
    ASSERT_TRUE(menu_->isVisible());
    menu_->close();
    EXPECT_THAT(left_, IsEmpty());
    EXPECT_EQ(at(2, Column::k_number), "");
}

TEST_F(GridLeavingTest, TheMenuBarThatIsReachedByKeyDoesNotLeaveTheCell) {
    empty(2, Column::k_number);
    go_to(2, Column::k_number);
    window_->menuBar()->setFocus(Qt::MenuBarFocusReason);
    ASSERT_EQ(QApplication::focusWidget(), window_->menuBar());
    EXPECT_THAT(left_, IsEmpty());
    EXPECT_EQ(at(2, Column::k_number), "");
    grid_->setFocus(Qt::MenuBarFocusReason);
    EXPECT_THAT(left_, IsEmpty());
}

TEST_F(GridLeavingTest, AnotherWindowDoesNotLeaveTheCell) {
    empty(2, Column::k_number);
    go_to(2, Column::k_number);
    QLineEdit other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    other.setFocus();
    EXPECT_THAT(left_, IsEmpty());
    EXPECT_EQ(at(2, Column::k_number), "");
}

TEST_F(GridLeavingTest, ALockedEmptyCellStaysEmpty) {
    empty(2, Column::k_number);
    cells_->locked_cells = {{2, Column::k_number}};
    go_to(2, Column::k_number);
    key(Qt::Key_Down);
    EXPECT_EQ(at(2, Column::k_number), "");
    EXPECT_THAT(left_, ElementsAre(Pair(2, Column::k_number)));
}

TEST_F(GridLeavingTest, ACellOfARemovedRowIsNotLeft) {
    go_to(2, Column::k_number);
    cells_->reload();
    EXPECT_THAT(left_, IsEmpty());
}

TEST_F(GridLeavingTest, TrackScrollingIsThatOfTheScrollBar) {
    grid_->set_track_scrolling(false);
    EXPECT_FALSE(grid_->track_scrolling());
    EXPECT_FALSE(grid_->verticalScrollBar()->hasTracking());
    grid_->set_track_scrolling(true);
    EXPECT_TRUE(grid_->track_scrolling());
}

TEST_F(GridLeavingTest, ACommandRightAfterEnterTakesTheTextOnceAndTheEnterThenMovesNothing) {
    go_to(2, Column::k_text);
    type("typed");
    // The command comes before the events that Enter has posted.
    QTest::sendKeyEvent(QTest::Press, QApplication::focusWidget(), Qt::Key_Return, QString{}, Qt::NoModifier);
    grid_->commit_editor();
    EXPECT_EQ(from_qt(cells_->whole_text(2, Column::k_text)), "typed");
    edits_ = 0;
    left_.clear();
    QApplication::processEvents();
    EXPECT_EQ(edits_, 0);
    EXPECT_TRUE(left_.empty());
    EXPECT_EQ(grid_->currentIndex().row(), 2);
}

TEST_F(GridLeavingTest, KeysRightAfterEnterMayDeleteItsEditorBeforeTheEnterActs) {
    empty(2, Column::k_number);
    go_to(2, Column::k_number);
    key(Qt::Key_F2);
    const QPointer<QLineEdit> first = editor();
    ASSERT_NE(first, nullptr);
    QTest::sendKeyEvent(QTest::Press, first, Qt::Key_Return, QString{}, Qt::NoModifier);
    QTest::sendKeyEvent(QTest::Press, first, Qt::Key_Tab, QString{}, Qt::NoModifier);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_EQ(first, nullptr);
    QApplication::processEvents();
    EXPECT_EQ(at(2, Column::k_number), "");
    EXPECT_THAT(active(), Pair(2, Column::k_integer));
    EXPECT_THAT(left_, ElementsAre(Pair(2, Column::k_number)));
    EXPECT_EQ(edits_, 0);
}

}  // namespace
}  // namespace nivora
