#include "tests/widgets/grid_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;

class GridClipboardTest : public GridTest {
protected:
    /// The message of the last paste, whether a question or not; empty if there was none.
    std::string told() {
        return dialogs_.messages().empty() ? std::string{} : dialogs_.messages().back().message.text;
    }
    /// Pastes a block that can't be accepted as a whole, and answers Yes to pasting the rest.
    void paste_rest_at(int row, int column, const char* text) {
        dialogs_.then(Answer::Yes);
        paste_at(row, column, text);
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
    EXPECT_EQ(pastes_, 0);
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
    EXPECT_EQ(pastes_, 1);
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

TEST_F(GridClipboardTest, RowsAndColumnsBeyondTheEdgeAreAskedAboutAndLeftOut) {
    // One of three rows has room, and two of three columns: two rows and one column are cut off.
    paste_rest_at(k_rows - 1, Column::k_date,
                  "01/02/1990\tEnglish\tbeyond\n01/03/1990\tMetric\n01/04/1990\tMetric\n");
    EXPECT_EQ(at(k_rows - 1, Column::k_date), "01/02/1990");
    EXPECT_EQ(at(k_rows - 1, Column::k_list), "English");
    EXPECT_EQ(told(),
              "The grid has no room for 2 rows and 1 column of the clipboard.\n"
              "Paste the rest? No leaves all cells as they are.");
}

TEST_F(GridClipboardTest, ABlockWithRefusedCellsIsAskedAboutBeforeAnyCellChanges) {
    dialogs_.then(Answer::No);
    paste_at(2, Column::k_number, "1\n1,5\n1.234,5\n2 000\nabc\n10/01/1980\n7\n");
    EXPECT_THAT(column(Column::k_number, 2, 8),
                ElementsAre("2.125", "3.125", "4.125", "5.125", "6.125", "7.125", "8.125"));
    EXPECT_EQ(
        told(),
        "5 of the 7 pasted cells can't be accepted. The first is '1,5' for Amount, row 4; a number has a "
        "point as its decimal sign and no other separators.\n"
        "Paste the rest? No leaves all cells as they are.");
    const Message& question = dialogs_.messages().back().message;
    EXPECT_EQ(question.title, "Paste");
    EXPECT_EQ(question.buttons, Buttons::YesNo);
    EXPECT_EQ(question.default_answer, Answer::No);
    EXPECT_EQ(edits_, 0);
    EXPECT_EQ(pastes_, 0);
}

TEST_F(GridClipboardTest, YesTakesTheCellsThatCanBeTaken) {
    paste_rest_at(2, Column::k_number, "1\n1,5\n1.234,5\n2 000\nabc\n10/01/1980\n7\n");
    EXPECT_THAT(column(Column::k_number, 2, 8),
                ElementsAre("1", "3.125", "4.125", "5.125", "6.125", "7.125", "7"));
    EXPECT_EQ(edits_, 1);
}

TEST_F(GridClipboardTest, TheQuestionNamesTheRuleThatRefused) {
    cells_->locked_cells = {{3, Column::k_text}};
    const auto refused = [&](int row, int column, const char* text) {
        paste_at(row, column, text);
        return told();
    };
    EXPECT_EQ(refused(3, Column::k_text, "a"),
              "The pasted cell can't be accepted: 'a' for Name, row 4; this cell can't be changed.");
    EXPECT_EQ(refused(3, Column::k_integer, "4.5"),
              "The pasted cell can't be accepted: '4.5' for Count, row 4; a whole number is needed.");
    EXPECT_EQ(
        refused(3, Column::k_integer, "32768"),
        "The pasted cell can't be accepted: '32768' for Count, row 4; the number must lie between -32768 and "
        "32767.");
    EXPECT_EQ(
        refused(3, Column::k_date, "02/31/2006"),
        "The pasted cell can't be accepted: '02/31/2006' for Day, row 4; the calendar has no such day.");
    EXPECT_EQ(refused(3, Column::k_list, "Imperial"),
              "The pasted cell can't be accepted: 'Imperial' for Units, row 4; it must be one of 'Metric', "
              "'English'.");
}

TEST_F(GridClipboardTest, ALockedCellTakesTheTextThatItHas) {
    cells_->locked_cells = {{3, Column::k_text}};
    paste_at(3, Column::k_text, "t3\t5\n");
    EXPECT_EQ(at(3, Column::k_number), "5");
    EXPECT_EQ(told(), "");
}

TEST_F(GridClipboardTest, IfEverythingIsRefusedThereIsNoQuestion) {
    paste_at(2, Column::k_number, "abc\nabc\n");
    EXPECT_EQ(at(2, Column::k_number), "2.125");
    EXPECT_EQ(edits_, 0);
    EXPECT_EQ(told(),
              "None of the pasted cells can be accepted. The first is 'abc' for Amount, row 3; this is not a "
              "number.");
    EXPECT_EQ(dialogs_.messages().back().message.buttons, Buttons::Ok);
}

TEST_F(GridClipboardTest, ALongRefusedTextIsQuotedByItsFirstFortyCharacters) {
    paste_at(2, Column::k_number, "abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz");
    EXPECT_THAT(told(), testing::HasSubstr(": 'abcdefghijklmnopqrstuvwxyzabcdefghijklmn' for"));
}

TEST_F(GridClipboardTest, RefusedCellsAndCutOffRowsAreReportedInOneBox) {
    paste_at(k_rows - 1, Column::k_number, "abc\n1\n");
    EXPECT_THAT(told(), testing::StartsWith("The pasted cell can't be accepted: 'abc'"));
    EXPECT_THAT(told(), testing::EndsWith("\nThe grid has no room for 1 row of the clipboard."));
    EXPECT_EQ(dialogs_.messages().size(), 1U);
}

TEST_F(GridClipboardTest, AGridThatSelectsRowsTakesASingleValueAtItsActiveCell) {
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    put_on_clipboard(QStringLiteral("77\n"));
    grid_->setCurrentIndex(cells_->index(4, Column::k_integer));
    ASSERT_THAT(block(), ElementsAre(4, 0, 4, 4));
    grid_->paste();
    EXPECT_EQ(at(4, Column::k_integer), "77");
    EXPECT_EQ(at(4, Column::k_text), "t4");
}

TEST_F(GridClipboardTest, AGridThatSelectsRowsTakesAWholeRowFromItsFirstCellOn) {
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->setCurrentIndex(cells_->index(2, Column::k_integer));
    grid_->copy();
    grid_->setCurrentIndex(cells_->index(5, Column::k_integer));
    grid_->paste();
    EXPECT_EQ(at(5, Column::k_text), "t2");
    EXPECT_EQ(at(5, Column::k_date), "10/03/1980");
}

TEST_F(GridClipboardTest, AnEmptyPastedCellEmptiesItsCell) {
    paste_at(2, Column::k_number, "5\t\n");
    EXPECT_EQ(at(2, Column::k_number), "5");
    EXPECT_EQ(at(2, Column::k_integer), "");
}

TEST_F(GridClipboardTest, ADateThatDoesNotExistIsRefusedInADateColumn) {
    paste_rest_at(2, Column::k_date, "02/29/1980\n02/29/1981\n29.02.1980\n");
    EXPECT_THAT(column(Column::k_date, 2, 4), ElementsAre("02/29/1980", "10/04/1980", "10/05/1980"));
    EXPECT_THAT(told(),
                testing::StartsWith("2 of the 3 pasted cells can't be accepted. The first is '02/29/1981'"));
}

TEST_F(GridClipboardTest, LockedCellsStayAndCountAsRefused) {
    cells_->locked_cells = {{3, Column::k_number}};
    paste_rest_at(2, Column::k_number, "50\n60\n70\n");
    EXPECT_THAT(column(Column::k_number, 2, 4), ElementsAre("50", "3.125", "70"));
    EXPECT_THAT(told(), testing::StartsWith("1 of the 3 pasted cells can't be accepted: '60'"));
}

TEST_F(GridClipboardTest, QuotedCellsKeepTheirTabsLineEndsAndQuoteMarks) {
    paste_at(0, Column::k_text, "\"a\tb\"\t1\n\"c\nd\"\t2\n\"e \"\"f\"\"\"\t3\n");
    EXPECT_THAT(column(Column::k_text, 0, 3), ElementsAre("a\tb", "c\nd", "e \"f\"", "t3"));
    EXPECT_THAT(column(Column::k_number, 0, 2), ElementsAre("1", "2", "3"));
}

TEST_F(GridClipboardTest, ACopiedBlockPastesUnchanged) {
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
    EXPECT_EQ(pastes_, 0);
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
    EXPECT_EQ(told(), "");
    EXPECT_EQ(at(0, Column::k_number), "1.5");
    EXPECT_EQ(at(k_days - 1, Column::k_number), "20000.5");
    EXPECT_EQ(edits_, 1);
}

TEST_F(GridClipboardTest, OfTwentyThousandPastedRowsThoseWithoutRoomAreCounted) {
    QString text;
    for (int day = 0; day < 20000; ++day) text += QStringLiteral("1\n");
    put_on_clipboard(text);
    go_to(0, Column::k_integer);
    dialogs_.then(Answer::Yes);
    grid_->paste();
    EXPECT_EQ(at(k_rows - 1, Column::k_integer), "1");
    EXPECT_THAT(told(), testing::StartsWith("The grid has no room for " + std::to_string(20000 - k_rows) +
                                            " rows of the clipboard."));
}

TEST_F(GridClipboardTest, APastedBlockIsAnnouncedToItsLastCell) {
    std::vector<int> announced;
    QObject::connect(cells_.get(), &GridModel::edited, grid_,
                     [&](int first_row, int first_column, int last_row, int last_column) {
                         announced = {first_row, first_column, last_row, last_column};
                     });
    paste_rest_at(8, Column::k_number, "1\n2\n3\n");
    ASSERT_EQ(announced.size(), 4U);
    EXPECT_EQ(announced[0], 8);
    EXPECT_EQ(announced[1], Column::k_number);
    EXPECT_EQ(announced[2], k_rows - 1);
    EXPECT_GE(announced[3], Column::k_number);
}

}  // namespace
}  // namespace nivora
