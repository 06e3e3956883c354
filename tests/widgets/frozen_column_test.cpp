// The first column of a grid stays in view while the others scroll.

#include "widgets/frozen_column.h"

#include "tests/widgets/grid_fixture.h"

#include <QScrollBar>
#include <QWheelEvent>

namespace nivora {
namespace {

using testing::ElementsAre;

class FrozenColumnTest : public GridTest {
protected:
    static constexpr int k_many_rows = 60;

    FrozenColumnTest() { freeze(k_many_rows); }

    void freeze(int rows) {
        show_grid(rows);
        grid_->fit_columns();
        grid_->freeze_first_column();
        frozen_ = grid_->findChild<FrozenColumn*>();
        show_width(300);
    }
    void show_width(int width) {
        window_->resize(width, 300);
        QApplication::processEvents();
    }
    void scroll_to_end() {
        grid_->horizontalScrollBar()->setValue(grid_->horizontalScrollBar()->maximum());
        QApplication::processEvents();
    }
    /// The place of the middle of a frozen cell.
    [[nodiscard]] QPoint in_row(int row) const {
        return {frozen_->width() / 2, grid_->rowViewportPosition(row) + grid_->rowHeight(row) / 2};
    }
    /// The first column with its header, where it stands while the grid is not scrolled.
    [[nodiscard]] QImage picture_of_first_column() const {
        QApplication::processEvents();
        const QRect cells = grid_->viewport()->geometry();
        const int head = grid_->horizontalHeader()->height();
        // Without the line that separates it from the next column.
        return grid_
            ->grab(QRect(cells.left(), cells.top() - head, grid_->columnWidth(0) - 1, head + cells.height()))
            .toImage();
    }

    FrozenColumn* frozen_ = nullptr;
};

TEST_F(FrozenColumnTest, ItIsShownOnlyWhileTheGridIsScrolledToTheRight) {
    EXPECT_FALSE(frozen_->isVisible());
    scroll_to_end();
    ASSERT_GT(grid_->horizontalScrollBar()->value(), 0);
    EXPECT_TRUE(frozen_->isVisible());
    EXPECT_EQ(frozen_->width(), grid_->columnWidth(0));
    EXPECT_EQ(frozen_->viewport()->mapTo(grid_, QPoint{}), grid_->viewport()->pos());
    EXPECT_EQ(frozen_->viewport()->height(), grid_->viewport()->height());
    grid_->horizontalScrollBar()->setValue(0);
    EXPECT_FALSE(frozen_->isVisible());
}

TEST_F(FrozenColumnTest, ItLooksAsTheColumnDoesWithSelectionCursorAndHeader) {
    select(2, 0, 5, 3);
    const QImage before = picture_of_first_column();
    scroll_to_end();
    ASSERT_TRUE(frozen_->isVisible());
    EXPECT_EQ(picture_of_first_column(), before);
    beside_->setFocus();
    const QImage without_focus = picture_of_first_column();
    EXPECT_NE(without_focus, before);
    grid_->horizontalScrollBar()->setValue(0);
    EXPECT_EQ(picture_of_first_column(), without_focus);
}

TEST_F(FrozenColumnTest, ItLooksAsTheColumnDoesInDarkColours) {
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    dark.setColor(QPalette::Text, QColor(220, 220, 220));
    dark.setColor(QPalette::Button, QColor(50, 50, 50));
    dark.setColor(QPalette::ButtonText, QColor(220, 220, 220));
    dark.setColor(QPalette::Highlight, QColor(20, 80, 160));
    window_->setPalette(dark);
    select(1, 0, 3, 2);
    const QImage before = picture_of_first_column();
    scroll_to_end();
    ASSERT_TRUE(frozen_->isVisible());
    EXPECT_EQ(picture_of_first_column(), before);
}

TEST_F(FrozenColumnTest, ItsRowsFollowTheGrid) {
    scroll_to_end();
    grid_->verticalScrollBar()->setValue(20);
    EXPECT_EQ(frozen_->rowAt(2), grid_->rowAt(2));
    grid_->horizontalScrollBar()->setValue(0);
    grid_->verticalScrollBar()->setValue(grid_->verticalScrollBar()->maximum());
    scroll_to_end();
    EXPECT_EQ(frozen_->rowAt(2), grid_->rowAt(2));
    show_width(320);
    window_->resize(320, 400);
    QApplication::processEvents();
    EXPECT_EQ(frozen_->rowAt(2), grid_->rowAt(2));
    EXPECT_EQ(frozen_->viewport()->height(), grid_->viewport()->height());
}

TEST_F(FrozenColumnTest, TheCursorInTheFrozenColumnScrollsNothingAway) {
    scroll_to_end();
    const int scrolled = grid_->horizontalScrollBar()->value();
    go_to(3, Column::k_list);
    key(Qt::Key_Home);
    EXPECT_EQ(active(), std::pair(3, 0));
    EXPECT_EQ(grid_->horizontalScrollBar()->value(), scrolled);
    for (int i = 0; i < 30; ++i) key(Qt::Key_Down);
    EXPECT_EQ(active(), std::pair(33, 0));
    EXPECT_EQ(grid_->horizontalScrollBar()->value(), scrolled);
    EXPECT_GT(grid_->verticalScrollBar()->value(), 0);
}

TEST_F(FrozenColumnTest, NoOtherCellStaysBehindIt) {
    for (int column = Column::k_list; column > 0; --column) {
        go_to(1, Column::k_list);
        while (grid_->currentIndex().column() > column) key(Qt::Key_Left);
        EXPECT_GE(grid_->columnViewportPosition(column), frozen_->isVisible() ? frozen_->width() : 0)
            << column;
    }
    EXPECT_EQ(grid_->horizontalScrollBar()->value(), 0);
}

TEST_F(FrozenColumnTest, ShiftAndArrowsSelectFromACellThatScrolledBehindIt) {
    go_to(1, 1);
    for (int i = 0; i < 3; ++i) key(Qt::Key_Right, Qt::ShiftModifier);
    ASSERT_TRUE(frozen_->isVisible());
    EXPECT_THAT(block(), ElementsAre(1, 1, 1, 4));
}

TEST_F(FrozenColumnTest, AClickSelectsItsCellInTheGrid) {
    scroll_to_end();
    const int scrolled = grid_->horizontalScrollBar()->value();
    beside_->setFocus();
    QTest::mouseClick(frozen_->viewport(), Qt::LeftButton, Qt::NoModifier, in_row(4));
    EXPECT_EQ(active(), std::pair(4, 0));
    EXPECT_THAT(block(), ElementsAre(4, 0, 4, 0));
    QTest::mouseClick(frozen_->viewport(), Qt::LeftButton, Qt::ShiftModifier, in_row(6));
    EXPECT_THAT(block(), ElementsAre(4, 0, 6, 0));
    EXPECT_EQ(grid_->horizontalScrollBar()->value(), scrolled);
}

TEST_F(FrozenColumnTest, ADragFromItReachesTheOtherColumns) {
    scroll_to_end();
    const QPoint end = grid_->visualRect(cells_->index(5, Column::k_list)).center();
    QTest::mousePress(frozen_->viewport(), Qt::LeftButton, Qt::NoModifier, in_row(2));
    QTest::mouseMove(frozen_->viewport(), in_row(3));
    QTest::mouseMove(frozen_->viewport(), end);
    QTest::mouseRelease(frozen_->viewport(), Qt::LeftButton, Qt::NoModifier, end);
    EXPECT_THAT(block(), ElementsAre(2, 0, 5, static_cast<int>(Column::k_list)));
}

TEST_F(FrozenColumnTest, ItsHeaderSelectsTheColumnAndSetsTheWidth) {
    scroll_to_end();
    QHeaderView* header = frozen_->horizontalHeader();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(12, 5));
    EXPECT_THAT(block(), ElementsAre(0, 0, k_many_rows - 1, 0));
    header->resizeSection(0, 80);
    EXPECT_EQ(grid_->columnWidth(0), 80);
    EXPECT_EQ(frozen_->width(), 80);
    grid_->setColumnWidth(0, 70);
    EXPECT_EQ(frozen_->width(), 70);
    EXPECT_EQ(header->sectionSize(0), 70);
}

TEST_F(FrozenColumnTest, TheWheelScrollsTheGridOverIt) {
    scroll_to_end();
    const QPoint at = in_row(2);
    QWheelEvent turn(at, frozen_->viewport()->mapToGlobal(at), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                     Qt::NoScrollPhase, false);
    QApplication::sendEvent(frozen_->viewport(), &turn);
    EXPECT_GT(grid_->verticalScrollBar()->value(), 0);
    EXPECT_EQ(frozen_->rowAt(2), grid_->rowAt(2));
}

TEST_F(FrozenColumnTest, AGridThatIsTooNarrowScrollsAsAWhole) {
    show_width(180);
    grid_->setColumnWidth(Column::k_number, 160);
    ASSERT_LT(grid_->viewport()->width(), grid_->columnWidth(0) + 160);
    scroll_to_end();
    EXPECT_FALSE(frozen_->isVisible());
    go_to(2, 0);
    EXPECT_EQ(grid_->horizontalScrollBar()->value(), 0);
    grid_->setColumnWidth(Column::k_list, 300);
    show_width(500);
    scroll_to_end();
    EXPECT_TRUE(frozen_->isVisible());
}

TEST_F(FrozenColumnTest, ATableThatIsRefilledOrEmptyIsFollowed) {
    select(2, 0, 5, 1);
    scroll_to_end();
    cells_->reload();
    QApplication::processEvents();
    EXPECT_FALSE(grid_->selectionModel()->hasSelection());
    EXPECT_EQ(frozen_->isVisible(), grid_->horizontalScrollBar()->value() > 0);
    freeze(0);
    scroll_to_end();
    EXPECT_EQ(frozen_->rowAt(2), -1);
    key(Qt::Key_Left);
    QTest::mouseClick(frozen_->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    EXPECT_FALSE(grid_->currentIndex().isValid());
}

TEST_F(FrozenColumnTest, AnOpenEditorStaysOpenWhileItsGridIsScrolled) {
    go_to(2, Column::k_number);
    key(Qt::Key_F2);
    ASSERT_NE(editor(), nullptr);
    scroll_to_end();
    EXPECT_TRUE(frozen_->isVisible());
    type("7");
    key(Qt::Key_Return);
    EXPECT_EQ(at(2, Column::k_number), "7");
}

TEST_F(FrozenColumnTest, ADragThatEndsInItLeavesTheGridFreeToScroll) {
    scroll_to_end();
    QTest::mousePress(frozen_->viewport(), Qt::LeftButton, Qt::NoModifier, in_row(2));
    QTest::mouseRelease(frozen_->viewport(), Qt::LeftButton, Qt::NoModifier, in_row(2));
    grid_->horizontalScrollBar()->setValue(5);
    EXPECT_EQ(grid_->horizontalScrollBar()->value(), 5);
    EXPECT_TRUE(frozen_->isVisible());
}

TEST_F(FrozenColumnTest, ItTakesNoFocusAndHasAName) {
    scroll_to_end();
    QTest::mouseClick(frozen_->viewport(), Qt::LeftButton, Qt::NoModifier, in_row(1));
    EXPECT_FALSE(frozen_->hasFocus());
    EXPECT_EQ(frozen_->focusPolicy(), Qt::NoFocus);
    EXPECT_FALSE(frozen_->accessibleName().isEmpty());
}

}  // namespace
}  // namespace nivora
