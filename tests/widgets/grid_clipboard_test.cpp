#include "tests/widgets/grid_fixture.h"
#include "widgets/controls.h"

namespace nivora {
namespace {

using testing::ElementsAre;

class GridClipboardTest : public GridTest {
protected:
    /// What the user is told of the last paste; empty where nothing is told.
    std::string told() {
        EXPECT_TRUE(outcome_.has_value());
        const auto problem = paste_problem(outcome_.value_or(PasteOutcome{}));
        return problem ? problem->text : std::string{};
    }
    void paste_at(int row, int column, const char* text) {
        put_on_clipboard(QString::fromUtf8(text));
        go_to(row, column);
        grid_->paste();
    }
};

TEST_F(GridClipboardTest, WithoutASelectionTheActiveCellIsTheBlock) {
    go_to(3, Column::k_integer);
    grid_->clearSelection();
    EXPECT_THAT(block(), ElementsAre(3, 2, 3, 2));
}

TEST_F(GridClipboardTest, WithoutAnActiveCellThereIsNoBlock) {
    grid_->setCurrentIndex({});
    grid_->clearSelection();
    EXPECT_EQ(grid_->block().rows(), 0);
    put_on_clipboard(QStringLiteral("5"));
    grid_->paste();
    grid_->cut();
    EXPECT_FALSE(outcome_.has_value());
    EXPECT_EQ(edits_, 0);
}

TEST_F(GridClipboardTest, ShiftAndArrowsSelectABlock) {
    go_to(2, 1);
    key(Qt::Key_Down, Qt::ShiftModifier);
    key(Qt::Key_Down, Qt::ShiftModifier);
    key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_THAT(block(), ElementsAre(2, 1, 4, 2));
}

TEST_F(GridClipboardTest, AHeaderSelectsItsRowOrColumn) {
    const QHeaderView* rows = grid_->verticalHeader();
    QTest::mouseClick(rows->viewport(), Qt::LeftButton, Qt::NoModifier,
                      QPoint(3, rows->sectionViewportPosition(4) + rows->sectionSize(4) / 2));
    EXPECT_THAT(block(), ElementsAre(4, 0, 4, 4));
    const QHeaderView* columns = grid_->horizontalHeader();
    QTest::mouseClick(columns->viewport(), Qt::LeftButton, Qt::NoModifier,
                      QPoint(columns->sectionViewportPosition(2) + columns->sectionSize(2) / 2, 3));
    EXPECT_THAT(block(), ElementsAre(0, 2, k_rows - 1, 2));
}

TEST_F(GridClipboardTest, ControlASelectsTheWholeGrid) {
    go_to(3, 2);
    key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_THAT(block(), ElementsAre(0, 0, k_rows - 1, 4));
}

TEST_F(GridClipboardTest, CopyTakesWholeValuesRowByRow) {
    select(1, Column::k_number, 2, Column::k_date);
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard(), "1.125\t1\t10/02/1980\n2.125\t2\t10/03/1980\n");
    EXPECT_EQ(edits_, 0);
}

TEST_F(GridClipboardTest, CutCopiesTheBlockAndClearsIt) {
    select(1, Column::k_number, 2, Column::k_integer);
    key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(clipboard(), "1.125\t1\n2.125\t2\n");
    EXPECT_THAT(column(Column::k_number, 0, 3), ElementsAre("0.125", "0", "0", "3.125"));
    EXPECT_THAT(column(Column::k_integer, 0, 3), ElementsAre("0", "0", "0", "3"));
    EXPECT_EQ(edits_, 1);
}

TEST_F(GridClipboardTest, CutLeavesLockedCellsAsTheyAre) {
    cells_->locked_cells = {{1, Column::k_number}};
    select(1, Column::k_number, 2, Column::k_number);
    grid_->cut();
    EXPECT_EQ(clipboard(), "1.125\n2.125\n");
    EXPECT_THAT(column(Column::k_number, 1, 2), ElementsAre("1.125", "0"));
}

TEST_F(GridClipboardTest, PasteBeginsAtTheActiveCell) {
    put_on_clipboard(QStringLiteral("7.5\t8\n9.5\t10\n"));
    go_to(4, Column::k_number);
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_THAT(column(Column::k_number, 3, 6), ElementsAre("3.125", "7.5", "9.5", "6.125"));
    EXPECT_THAT(column(Column::k_integer, 3, 6), ElementsAre("3", "8", "10", "6"));
    ASSERT_TRUE(outcome_.has_value());
    EXPECT_EQ(outcome_->taken, 4);
    EXPECT_EQ(told(), "");
    EXPECT_EQ(edits_, 1);
}

TEST_F(GridClipboardTest, TwoCopiedRowsFillSevenInPairsAndTheLastWithTheFirstOfThePair) {
    put_on_clipboard(QStringLiteral("100\n200\n"));
    select(1, Column::k_integer, 7, Column::k_integer);
    grid_->paste();
    EXPECT_THAT(column(Column::k_integer, 0, 8),
                ElementsAre("0", "100", "200", "100", "200", "100", "200", "100", "8"));
    EXPECT_EQ(told(), "");
}

TEST_F(GridClipboardTest, OneCopiedCellFillsTheSelectedRows) {
    go_to(0, Column::k_number);
    grid_->copy();
    select(3, Column::k_number, 5, Column::k_number);
    grid_->paste();
    EXPECT_THAT(column(Column::k_number, 2, 6), ElementsAre("2.125", "0.125", "0.125", "0.125", "6.125"));
}

TEST_F(GridClipboardTest, ACopyTallerThanTheSelectionIsPastedInItsWholeHeight) {
    put_on_clipboard(QStringLiteral("10\n20\n30\n"));
    select(1, Column::k_integer, 2, Column::k_integer);
    grid_->paste();
    EXPECT_THAT(column(Column::k_integer, 0, 4), ElementsAre("0", "10", "20", "30", "4"));
}

TEST_F(GridClipboardTest, RowsAndColumnsBeyondTheEdgeAreLeftOutAndTold) {
    // Of three rows one has room, of three columns two: two rows and one column are cut off.
    paste_at(k_rows - 1, Column::k_date,
             "01/02/1990\tEnglish\tbeyond\n01/03/1990\tMetric\n01/04/1990\tMetric\n");
    EXPECT_EQ(at(k_rows - 1, Column::k_date), "01/02/1990");
    EXPECT_EQ(at(k_rows - 1, Column::k_list), "English");
    EXPECT_EQ(told(), "Rows or columns of the clipboard that had no room in the grid were left out: 3.");
}

TEST_F(GridClipboardTest, TextsInANumberColumnAreRefusedAndToldOnceWithTheFirst) {
    paste_at(2, Column::k_number, "1\n1,5\n1.234,5\n2 000\nabc\n10/01/1980\n7\n");
    EXPECT_THAT(column(Column::k_number, 2, 8),
                ElementsAre("1", "3.125", "4.125", "5.125", "6.125", "7.125", "7"));
    EXPECT_EQ(
        told(),
        "5 of the pasted cells could not be taken, and the grid kept what stood there. The first is '1,5'. "
        "Numbers need a point as their decimal sign and no separators of thousands; dates have the form "
        "mm/dd/yyyy.");
    EXPECT_EQ(paste_problem(*outcome_)->title, "Paste");
    EXPECT_EQ(paste_problem(*outcome_)->icon, Icon::Warning);
}

TEST_F(GridClipboardTest, EverythingRefusedIsNoEdit) {
    paste_at(2, Column::k_number, "abc");
    EXPECT_EQ(at(2, Column::k_number), "2.125");
    EXPECT_EQ(edits_, 0);
    EXPECT_EQ(outcome_->refused, 1);
}

TEST_F(GridClipboardTest, ALongRefusedTextIsToldByItsFirstFortyCharacters) {
    paste_at(2, Column::k_number, "abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz");
    EXPECT_THAT(told(), testing::HasSubstr("The first is 'abcdefghijklmnopqrstuvwxyzabcdefghijklmn'."));
}

TEST_F(GridClipboardTest, RefusedCellsAndCutOffRowsAreToldInOneBox) {
    paste_at(k_rows - 1, Column::k_number, "abc\n1\n");
    EXPECT_THAT(told(), testing::StartsWith("1 of the pasted cells could not be taken"));
    EXPECT_THAT(told(),
                testing::EndsWith("\nRows or columns of the clipboard that had no room in the grid were "
                                  "left out: 1."));
}

TEST_F(GridClipboardTest, AnEmptyPastedCellEmptiesItsCell) {
    paste_at(2, Column::k_number, "5\t\n");
    EXPECT_EQ(at(2, Column::k_number), "5");
    EXPECT_EQ(at(2, Column::k_integer), "");
}

TEST_F(GridClipboardTest, ADateThatDoesNotExistIsRefusedInADateColumn) {
    paste_at(2, Column::k_date, "02/29/1980\n02/29/1981\n29.02.1980\n");
    EXPECT_THAT(column(Column::k_date, 2, 4), ElementsAre("02/29/1980", "10/04/1980", "10/05/1980"));
    EXPECT_EQ(outcome_->refused, 2);
    EXPECT_EQ(outcome_->first_refused, QStringLiteral("02/29/1981"));
}

TEST_F(GridClipboardTest, LockedCellsStayAndCountAsRefused) {
    cells_->locked_cells = {{3, Column::k_number}};
    paste_at(2, Column::k_number, "50\n60\n70\n");
    EXPECT_THAT(column(Column::k_number, 2, 4), ElementsAre("50", "3.125", "70"));
    EXPECT_EQ(outcome_->refused, 1);
    EXPECT_EQ(outcome_->first_refused, QStringLiteral("60"));
}

TEST_F(GridClipboardTest, QuotedCellsKeepTheirTabsLineEndsAndQuoteMarks) {
    paste_at(0, Column::k_text, "\"a\tb\"\t1\n\"c\nd\"\t2\n\"e \"\"f\"\"\"\t3\n");
    EXPECT_THAT(column(Column::k_text, 0, 3), ElementsAre("a\tb", "c\nd", "e \"f\"", "t3"));
    EXPECT_THAT(column(Column::k_number, 0, 2), ElementsAre("1", "2", "3"));
}

TEST_F(GridClipboardTest, WhatWasCopiedComesBackAsItWas) {
    ASSERT_TRUE(cells_->take(0, Column::k_text, QStringLiteral("a \"b\"\tc\nd")));
    go_to(0, Column::k_text);
    grid_->copy();
    go_to(5, Column::k_text);
    grid_->paste();
    EXPECT_EQ(at(5, Column::k_text), "a \"b\"\tc\nd");
    EXPECT_EQ(at(6, Column::k_text), "t6");
}

TEST_F(GridClipboardTest, LineEndsOfOtherSystemsSeparateRowsAsWell) {
    paste_at(0, Column::k_integer, "11\r\n12\r\n13\r\n");
    EXPECT_THAT(column(Column::k_integer, 0, 3), ElementsAre("11", "12", "13", "3"));
    paste_at(5, Column::k_integer, "21\r22\r");
    EXPECT_THAT(column(Column::k_integer, 5, 7), ElementsAre("21", "22", "7"));
}

TEST_F(GridClipboardTest, AnEmptyClipboardPastesNothing) {
    paste_at(2, Column::k_number, "");
    EXPECT_FALSE(outcome_.has_value());
    EXPECT_EQ(at(2, Column::k_number), "2.125");
}

TEST_F(GridClipboardTest, AColumnOfTwentyThousandRowsIsPastedAsOneEdit) {
    constexpr int k_days = 20000;
    show_grid(k_days);
    edits_ = 0;
    QString text;
    for (int day = 0; day < k_days; ++day) text += QStringLiteral("%1.5\n").arg(day + 1);
    put_on_clipboard(text);
    go_to(0, Column::k_number);
    grid_->paste();
    ASSERT_TRUE(outcome_.has_value());
    EXPECT_EQ(outcome_->taken, k_days);
    EXPECT_EQ(outcome_->refused, 0);
    EXPECT_EQ(outcome_->cut_off, 0);
    EXPECT_EQ(at(0, Column::k_number), "1.5");
    EXPECT_EQ(at(k_days - 1, Column::k_number), "20000.5");
    EXPECT_EQ(edits_, 1);
}

TEST_F(GridClipboardTest, OfTwentyThousandPastedRowsThoseWithoutRoomAreCounted) {
    QString text;
    for (int day = 0; day < 20000; ++day) text += QStringLiteral("1\n");
    put_on_clipboard(text);
    go_to(0, Column::k_integer);
    grid_->paste();
    EXPECT_EQ(outcome_->taken, k_rows);
    EXPECT_EQ(outcome_->cut_off, 20000 - k_rows);
}

TEST_F(GridClipboardTest, APastedBlockIsAnnouncedToItsLastCell) {
    std::vector<int> announced;
    QObject::connect(cells_.get(), &GridModel::edited, grid_,
                     [&](int first_row, int first_column, int last_row, int last_column) {
                         announced = {first_row, first_column, last_row, last_column};
                     });
    paste_at(8, Column::k_number, "1\n2\n3\n");
    ASSERT_EQ(announced.size(), 4U);
    EXPECT_EQ(announced[0], 8);
    EXPECT_EQ(announced[1], Column::k_number);
    EXPECT_EQ(announced[2], k_rows - 1);
    EXPECT_GE(announced[3], Column::k_number);
}

}  // namespace
}  // namespace nivora
