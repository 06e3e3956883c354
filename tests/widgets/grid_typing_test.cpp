#include "tests/widgets/grid_fixture.h"

#include <QComboBox>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::Pair;

class GridTypingTest : public GridTest {};

TEST_F(GridTypingTest, TypingANumberReplacesTheOldOneAndEnterGoesDown) {
    go_to(2, Column::k_number);
    type("12.5");
    key(Qt::Key_Return);
    EXPECT_EQ(at(2, Column::k_number), "12.5");
    EXPECT_THAT(active(), Pair(3, Column::k_number));
    EXPECT_EQ(edits_, 1);
    EXPECT_EQ(QApplication::focusWidget(), grid_);
}

TEST_F(GridTypingTest, TheKeypadsEnterGoesDownAsWell) {
    go_to(2, Column::k_number);
    type("-3");
    key(Qt::Key_Enter);
    EXPECT_EQ(at(2, Column::k_number), "-3");
    EXPECT_THAT(active(), Pair(3, Column::k_number));
}

TEST_F(GridTypingTest, EnterWithoutTypingGoesDownAndChangesNothing) {
    go_to(2, Column::k_number);
    key(Qt::Key_Return);
    EXPECT_THAT(active(), Pair(3, Column::k_number));
    EXPECT_EQ(at(2, Column::k_number), "2.125");
    EXPECT_EQ(edits_, 0);
}

TEST_F(GridTypingTest, EnterInTheLastRowTakesTheTextAndStays) {
    go_to(k_rows - 1, Column::k_integer);
    type("77");
    key(Qt::Key_Return);
    EXPECT_EQ(at(k_rows - 1, Column::k_integer), "77");
    EXPECT_THAT(active(), Pair(k_rows - 1, Column::k_integer));
}

TEST_F(GridTypingTest, IfEnterDoesNotGoDownItEndsTheEditAndStays) {
    grid_->set_enter_goes_down(false);
    go_to(2, Column::k_number);
    type("12.5");
    key(Qt::Key_Return);
    EXPECT_EQ(at(2, Column::k_number), "12.5");
    EXPECT_EQ(editor(), nullptr);
    EXPECT_THAT(active(), Pair(2, Column::k_number));
    key(Qt::Key_Enter);
    EXPECT_THAT(active(), Pair(2, Column::k_number));
    EXPECT_TRUE(left_.empty());
}

TEST_F(GridTypingTest, TabTakesTheTextAndLeadsToTheRight) {
    go_to(2, Column::k_number);
    type("8");
    key(Qt::Key_Tab);
    EXPECT_EQ(at(2, Column::k_number), "8");
    EXPECT_THAT(active(), Pair(2, Column::k_integer));
    type("9");
    key(Qt::Key_Return);
    EXPECT_EQ(at(2, Column::k_integer), "9");
}

TEST_F(GridTypingTest, TabWithoutTypingLeadsToTheRightAndBackTabToTheLeft) {
    go_to(2, Column::k_number);
    key(Qt::Key_Tab);
    EXPECT_THAT(active(), Pair(2, Column::k_integer));
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_THAT(active(), Pair(2, Column::k_number));
}

TEST_F(GridTypingTest, F2EditsTheWholeValueWhereTheCellShowsLess) {
    go_to(2, Column::k_number);
    EXPECT_EQ(cells_->text(2, Column::k_number), QStringLiteral("2.13"));  // 2.125, halves away from zero
    key(Qt::Key_F2);
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(editor()->text(), QStringLiteral("2.125"));
    key(Qt::Key_End);
    type("5");
    key(Qt::Key_Return);
    EXPECT_EQ(at(2, Column::k_number), "2.1255");
}

TEST_F(GridTypingTest, EscapeKeepsTheOldValueAndTheCell) {
    go_to(2, Column::k_text);
    type("other");
    ASSERT_NE(editor(), nullptr);
    key(Qt::Key_Escape);
    EXPECT_EQ(at(2, Column::k_text), "t2");
    EXPECT_THAT(active(), Pair(2, Column::k_text));
    EXPECT_EQ(edits_, 0);
}

TEST_F(GridTypingTest, ATextCellTakesAnyText) {
    go_to(0, Column::k_text);
    type("a 'b' \"c\"%");
    key(Qt::Key_Return);
    EXPECT_EQ(at(0, Column::k_text), "a 'b' \"c\"%");
}

TEST_F(GridTypingTest, LettersDoNotEnterANumberCell) {
    go_to(2, Column::k_number);
    type("x");
    key(Qt::Key_Return);
    EXPECT_EQ(at(2, Column::k_number), "2.125");
    EXPECT_EQ(edits_, 0);
}

TEST_F(GridTypingTest, APointInAnIntegerAndACommaInAnyNumberAreRefusedAsAWhole) {
    // Without the refused character another number would remain: 45 for 4.5, 15 for 1,5.
    for (const auto& [column, typed] :
         {std::pair{Column::k_integer, "4.5"}, std::pair{Column::k_integer, "4,5"},
          std::pair{Column::k_number, "1,5"}, std::pair{Column::k_number, "1,234.5"}}) {
        go_to(2, column);
        const std::string before = at(2, column);
        refused_.clear();
        type(typed);
        key(Qt::Key_Return);
        EXPECT_EQ(at(2, column), before) << typed;
        EXPECT_THAT(refused_, ElementsAre(typed));
    }
    EXPECT_EQ(edits_, 0);
}

TEST_F(GridTypingTest, ALoneMinusSignIsRefusedAndTheOldValueStays) {
    for (const int column : {Column::k_number, Column::k_integer}) {
        go_to(2, column);
        const std::string before = at(2, column);
        refused_.clear();
        type("-");
        key(Qt::Key_Return);
        EXPECT_EQ(at(2, column), before);
        EXPECT_THAT(refused_, ElementsAre("-"));
    }
    EXPECT_EQ(edits_, 0);
}

TEST_F(GridTypingTest, ADateIsTypedAsDigitsBehindItsMask) {
    go_to(2, Column::k_date);
    type("02291980");
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(editor()->text(), QStringLiteral("02/29/1980"));
    key(Qt::Key_Return);
    EXPECT_EQ(at(2, Column::k_date), "02/29/1980");
    EXPECT_THAT(active(), Pair(3, Column::k_date));
}

TEST_F(GridTypingTest, ADayThatDoesNotExistIsRefusedAndTheOldDateStays) {
    go_to(2, Column::k_date);
    type("02291981");
    key(Qt::Key_Return);
    EXPECT_EQ(at(2, Column::k_date), "10/03/1980");
    EXPECT_THAT(refused_, ElementsAre("02/29/1981"));
}

TEST_F(GridTypingTest, AnUnfinishedDateIsRefusedAndTheOldDateStays) {
    go_to(2, Column::k_date);
    type("0229");
    key(Qt::Key_Return);
    EXPECT_EQ(at(2, Column::k_date), "10/03/1980");
    EXPECT_EQ(refused_.size(), 1U);
}

TEST_F(GridTypingTest, AnEmptiedMaskCountsAsNoText) {
    go_to(2, Column::k_date);
    key(Qt::Key_F2);
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_Delete);
    key(Qt::Key_Return);
    EXPECT_EQ(at(2, Column::k_date), "");
    EXPECT_TRUE(refused_.empty());
}

TEST_F(GridTypingTest, AListIsChosenFromByArrowOrByItsFirstLetter) {
    go_to(2, Column::k_list);
    key(Qt::Key_F2);
    auto* list = qobject_cast<QComboBox*>(QApplication::focusWidget());
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->count(), 2);
    EXPECT_EQ(list->currentText(), QStringLiteral("Metric"));
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_EQ(at(2, Column::k_list), "English");
    go_to(4, Column::k_list);
    type("E");
    key(Qt::Key_Return);
    EXPECT_EQ(at(4, Column::k_list), "English");
    EXPECT_THAT(active(), Pair(5, Column::k_list));
}

TEST_F(GridTypingTest, AListThatIsLeftByEscapeKeepsItsItem) {
    go_to(2, Column::k_list);
    key(Qt::Key_F2);
    key(Qt::Key_Down);
    key(Qt::Key_Escape);
    EXPECT_EQ(at(2, Column::k_list), "Metric");
}

TEST_F(GridTypingTest, ALockedCellOpensNoEditor) {
    cells_->locked_cells = {{2, Column::k_number}};
    go_to(2, Column::k_number);
    type("9");
    EXPECT_EQ(editor(), nullptr);
    EXPECT_THAT(active(), Pair(2, Column::k_number));  // no jump to row 9, which begins with "9"
    key(Qt::Key_F2);
    EXPECT_EQ(editor(), nullptr);
    EXPECT_EQ(at(2, Column::k_number), "2.125");
    EXPECT_EQ(edits_, 0);
}

TEST_F(GridTypingTest, DeleteCutsTheCellToZeroOntoTheClipboard) {
    go_to(2, Column::k_number);
    key(Qt::Key_Delete);
    EXPECT_EQ(at(2, Column::k_number), "0");
    EXPECT_EQ(clipboard(), "2.125\n");
    EXPECT_EQ(edits_, 1);
}

TEST_F(GridTypingTest, DeleteEmptiesTextsDatesAndLists) {
    for (const int column : {Column::k_text, Column::k_date, Column::k_list}) {
        go_to(2, column);
        key(Qt::Key_Delete);
        EXPECT_EQ(at(2, column), "") << column;
    }
}

TEST_F(GridTypingTest, DeleteDoesNothingWhereCellsAreNotCleared) {
    grid_->set_clears_cells(false);
    go_to(2, Column::k_number);
    key(Qt::Key_Delete);
    EXPECT_EQ(at(2, Column::k_number), "2.125");
}

TEST_F(GridTypingTest, DeleteWithinTheEditorOnlyDeletesThere) {
    go_to(2, Column::k_text);
    key(Qt::Key_F2);
    key(Qt::Key_Home);
    key(Qt::Key_Delete);
    key(Qt::Key_Return);
    EXPECT_EQ(at(2, Column::k_text), "2");
    EXPECT_EQ(clipboard(), "");
}

TEST_F(GridTypingTest, WhatIsBeingTypedCanBeTakenAtOnce) {
    go_to(2, Column::k_number);
    type("41");
    EXPECT_EQ(at(2, Column::k_number), "2.125");
    grid_->commit_editor();
    EXPECT_EQ(at(2, Column::k_number), "41");
    EXPECT_THAT(active(), Pair(2, Column::k_number));
    EXPECT_EQ(editor(), nullptr);
}

TEST_F(GridTypingTest, ARewrittenHeaderShowsAtOnce) {
    EXPECT_EQ(cells_->headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("Amount"));
    cells_->rename(1, QStringLiteral("Initial Runoff (CFS) "));
    EXPECT_EQ(cells_->headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(),
              QStringLiteral("Initial Runoff (CFS)"));
    EXPECT_EQ(cells_->headerData(4, Qt::Vertical, Qt::DisplayRole).toString(), QStringLiteral("5"));
}

TEST_F(GridTypingTest, WidthsAreMeasuredOnceAndKept) {
    std::vector<int> kept;
    grid_->fit_columns(kept);
    ASSERT_EQ(kept.size(), 5U);
    const int before = grid_->columnWidth(Column::k_text);
    EXPECT_EQ(before, kept[0]);
    ASSERT_TRUE(
        cells_->take(0, Column::k_text, QStringLiteral("a text that is far wider than any of the others")));
    grid_->fit_columns(kept);
    EXPECT_EQ(grid_->columnWidth(Column::k_text), before);
    grid_->fit_columns();
    EXPECT_GT(grid_->columnWidth(Column::k_text), before);
    EXPECT_EQ(kept[0], before);
}

TEST_F(GridTypingTest, AColumnGrowsWithATextThatIsTooWideAndDoesNotShrink) {
    grid_->fit_columns();
    const int before = grid_->columnWidth(Column::k_number);
    ASSERT_TRUE(cells_->take(0, Column::k_number, QStringLiteral("123456789012345.25")));
    grid_->widen_columns(Column::k_number, Column::k_number);
    const int wide = grid_->columnWidth(Column::k_number);
    EXPECT_GT(wide, before);
    EXPECT_GE(wide, grid_->fontMetrics().horizontalAdvance(QStringLiteral("123456789012345.25")));
    ASSERT_TRUE(cells_->take(0, Column::k_number, QStringLiteral("1")));
    grid_->widen_columns(Column::k_number, Column::k_number);
    EXPECT_EQ(grid_->columnWidth(Column::k_number), wide);
}

TEST_F(GridTypingTest, AMarkedCellShowsItsColourWhileItIsSelected) {
    select(2, Column::k_number, 4, Column::k_integer);
    cells_->mark(QRect(Column::k_number, 3, 1, 1));
    QApplication::processEvents();
    const QImage picture = grid_->viewport()->grab().toImage();
    const auto colour = [&](int row, int column) {
        return picture.pixelColor(grid_->visualRect(cells_->index(row, column)).topLeft() + QPoint(3, 3));
    };
    EXPECT_EQ(colour(3, Column::k_number), QColor(0xFF, 0x80, 0x80));
    EXPECT_NE(colour(3, Column::k_integer), QColor(0xFF, 0x80, 0x80));
    EXPECT_NE(colour(3, Column::k_integer), QColor(Qt::white));  // still the colour of the selection
}

TEST_F(GridTypingTest, ARefusedBlockShowsTheColourUntilTheMarkEnds) {
    const auto colour = [&](int row, int column) {
        return cells_->data(cells_->index(row, column), Qt::BackgroundRole).value<QColor>();
    };
    cells_->mark(QRect(1, 2, 2, 1));
    EXPECT_EQ(colour(2, 1), QColor(0xFF, 0x80, 0x80));
    EXPECT_EQ(colour(2, 2), QColor(0xFF, 0x80, 0x80));
    EXPECT_FALSE(colour(2, 3).isValid());
    EXPECT_FALSE(colour(1, 1).isValid());
    cells_->mark({});
    EXPECT_FALSE(colour(2, 1).isValid());
}

TEST_F(GridTypingTest, TheTextThatIsBeingTypedIsKnownBeforeItIsStored) {
    go_to(2, Column::k_number);
    EXPECT_FALSE(grid_->typed_cell());
    type("12.5");
    const auto typed = grid_->typed_cell();
    ASSERT_TRUE(typed);
    EXPECT_EQ(typed->row, 2);
    EXPECT_EQ(typed->column, Column::k_number);
    EXPECT_EQ(typed->text, QStringLiteral("12.5"));
    EXPECT_EQ(at(2, Column::k_number), "2.125");
    EXPECT_EQ(edits_, 0);
    key(Qt::Key_Return);
    EXPECT_FALSE(grid_->typed_cell());
}

TEST_F(GridTypingTest, ATypedTextThatTheCellCannotHoldOrHoldsAlreadyIsNone) {
    go_to(2, Column::k_number);
    type("1e");
    EXPECT_FALSE(grid_->typed_cell());
    key(Qt::Key_Escape);
    EXPECT_FALSE(grid_->typed_cell());
    type("2.125");
    EXPECT_FALSE(grid_->typed_cell());
}

TEST_F(GridTypingTest, AnEmptiedCellIsTypedAsWhatItWillHold) {
    go_to(2, Column::k_number);
    type("7");
    key(Qt::Key_Backspace);
    const auto typed = grid_->typed_cell();
    ASSERT_TRUE(typed);
    EXPECT_EQ(typed->text, QStringLiteral("0"));
}

}  // namespace
}  // namespace nivora
