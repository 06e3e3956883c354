// Cells between the daily editor and a spreadsheet, through the system's clipboard in both directions.
#include "tests/shell/main_window_fixture.h"
#include "tests/shell/window_driver.h"
#include "widgets/grid_model.h"
#include "widgets/qt_text.h"

#include <gmock/gmock.h>

#include <QMimeData>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// Columns of the daily variables, from 0.
constexpr int k_runoff = 1;
constexpr int k_tmax = 2;
constexpr int k_precip = 6;

class ClipboardRoundTripTest : public MainWindowTest {
protected:
    void SetUp() override { open_sample(); }

    /// Edits the variables of the current simulation; all changes are discarded at the end.
    void edit(const std::function<void(QTableView&)>& act) { open("mnuDataOptVar(1)", act); }
    void edit_parameters(const std::function<void(QTableView&)>& act) { open("mnuDataOpt(5)", act); }

    static QString shown(const QTableView& grid, int row, int column) {
        return grid.model()->index(row, column).data(Qt::DisplayRole).toString();
    }
    static std::string whole(const QTableView& grid, int row, int column) {
        return from_qt(grid.model()->index(row, column).data(Qt::EditRole).toString());
    }
    static std::vector<std::string> column(const QTableView& grid, int first_row, int rows, int column) {
        std::vector<std::string> texts;
        for (int row = first_row; row < first_row + rows; ++row) texts.push_back(whole(grid, row, column));
        return texts;
    }
    static std::string copied(QTableView& grid) {
        QApplication::clipboard()->clear();
        QTest::keyClick(&grid, Qt::Key_C, Qt::ControlModifier);
        return from_qt(QApplication::clipboard()->text());
    }

private:
    void open(const char* action, const std::function<void(QTableView&)>& act) {
        bool worked = false;
        modal_.then("frmData", [&](QWidget& window) {
            act(element<QTableView>(window, "Spread"));
            worked = true;
            element<QPushButton>(window, "Command1(1)").click();
        });
        choose(action);
        EXPECT_TRUE(worked);
    }
};

TEST_F(ClipboardRoundTripTest, LineEndsOfAnyKindSeparateRowsAndTheLastOneBeginsNone) {
    for (const char* text : {"1.5\t2\n3\t4\n", "1.5\t2\r\n3\t4\r\n", "1.5\t2\r3\t4\r", "1.5\t2\n3\t4"}) {
        SCOPED_TRACE(text);
        edit([&](QTableView& grid) {
            const auto third_row = whole(grid, 2, k_runoff);
            paste_at(grid, 0, k_runoff, QString::fromUtf8(text));
            EXPECT_THAT(column(grid, 0, 3, k_runoff), ElementsAre("1.5", "3", third_row));
            EXPECT_THAT(column(grid, 0, 2, k_tmax), ElementsAre("2", "4"));
        });
    }
    EXPECT_THAT(dialogs_.messages(), IsEmpty());
}

TEST_F(ClipboardRoundTripTest, QuotedCellsAreReadWithoutTheirQuotes) {
    edit([](QTableView& grid) {
        paste_at(grid, 0, k_runoff, QStringLiteral("\"7.25\"\t\"8\"\r\n\"9\"\t10\r\n"));
        EXPECT_THAT(column(grid, 0, 2, k_runoff), ElementsAre("7.25", "9"));
        EXPECT_THAT(column(grid, 0, 2, k_tmax), ElementsAre("8", "10"));
    });
    EXPECT_THAT(dialogs_.messages(), IsEmpty());
}

TEST_F(ClipboardRoundTripTest, TabsAndLineEndsWithinQuotesMoveNoCell) {
    edit([&](QTableView& grid) {
        dialogs_.then(Answer::Yes);
        const auto kept = whole(grid, 0, k_runoff);
        paste_at(grid, 0, k_runoff, QStringLiteral("\"a\tb\r\nc \"\"d\"\"\"\t11\r\n12\t13\r\n"));
        // The text is one cell, which is refused; the cells next to it go where they belong.
        EXPECT_THAT(column(grid, 0, 2, k_runoff), ElementsAre(kept, "12"));
        EXPECT_THAT(column(grid, 0, 2, k_tmax), ElementsAre("11", "13"));
    });
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_THAT(last_message().text, HasSubstr("1 of the 4 pasted cells can't be accepted"));
    EXPECT_THAT(last_message().text, HasSubstr("a\tb\r\nc \"d\""));
}

TEST_F(ClipboardRoundTripTest, NumbersKeepTheirWholeValueThoughFewerDecimalsShow) {
    edit_parameters([](QTableView& grid) {
        // y, the last column.
        const int y = grid.model()->columnCount() - 1;
        paste_at(grid, 0, y, QStringLiteral("0.025\r\n0.0251234567890123\r\n"));
        EXPECT_EQ(shown(grid, 0, y), QStringLiteral("0.0250"));
        EXPECT_EQ(whole(grid, 0, y), "0.025");
        EXPECT_EQ(whole(grid, 1, y), "0.0251234567890123");
        select_block(grid, 0, y, 1, y);
        EXPECT_EQ(copied(grid), "0.025\n0.0251234567890123\n");
    });
    edit([](QTableView& grid) {
        paste_at(grid, 0, k_precip, QStringLiteral("0.025"));
        EXPECT_EQ(shown(grid, 0, k_precip), QStringLiteral("0.03"));
        EXPECT_EQ(whole(grid, 0, k_precip), "0.025");
        select_block(grid, 0, k_precip, 0, k_precip);
        EXPECT_EQ(copied(grid), "0.025\n");
    });
}

TEST_F(ClipboardRoundTripTest, ABlockThatIsCopiedAndPastedBackElsewhereIsTheSameBlock) {
    edit([](QTableView& grid) {
        std::vector<std::string> before;
        for (int at = k_runoff; at <= k_precip + 1; ++at) {
            for (const auto& text : column(grid, 10, 40, at)) before.push_back(text);
        }
        select_block(grid, 10, k_runoff, 49, k_precip + 1);
        const std::string text = copied(grid);
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 40);
        EXPECT_EQ(std::count(text.begin(), text.end(), '\t'), 40 * 6);
        // A spreadsheet on another system returns the same cells with its own line ends.
        paste_at(grid, 100, k_runoff, to_qt(text).replace(QLatin1Char('\n'), QStringLiteral("\r\n")));
        std::vector<std::string> after;
        for (int at = k_runoff; at <= k_precip + 1; ++at) {
            for (const auto& cell : column(grid, 100, 40, at)) after.push_back(cell);
        }
        EXPECT_EQ(after, before);
    });
    EXPECT_THAT(dialogs_.messages(), IsEmpty());
}

TEST_F(ClipboardRoundTripTest, DatesAreCopiedButNotPasted) {
    edit([this](QTableView& grid) {
        dialogs_.then(Answer::Yes);
        select_block(grid, 0, 0, 1, 1);
        const std::string text = copied(grid);
        const std::string first = from_qt(shown(grid, 0, 0));
        EXPECT_EQ(text.substr(0, 11), first + "\t");
        paste_at(grid, 0, 0, QStringLiteral("01/01/1901\t5\r\n"));
        EXPECT_EQ(from_qt(shown(grid, 0, 0)), first);
        EXPECT_EQ(whole(grid, 0, 1), "5");
    });
    EXPECT_THAT(last_message().text, HasSubstr("1 of the 2 pasted cells can't be accepted"));
}

TEST_F(ClipboardRoundTripTest, CutPutsTheWholeValuesOnTheClipboardAndLeavesZeros) {
    edit([](QTableView& grid) {
        paste_at(grid, 0, k_precip, QStringLiteral("0.025\n1.125\n"));
        select_block(grid, 0, k_precip, 1, k_precip);
        QTest::keyClick(&grid, Qt::Key_X, Qt::ControlModifier);
        EXPECT_EQ(from_qt(QApplication::clipboard()->text()), "0.025\n1.125\n");
        EXPECT_THAT(column(grid, 0, 2, k_precip), ElementsAre("0", "0"));
    });
}

TEST_F(ClipboardRoundTripTest, ATwoRowCopyFillsSevenRowsInPairsAndTheLastWithTheFirstOfThePair) {
    edit([](QTableView& grid) {
        QApplication::clipboard()->setText(QStringLiteral("1\r\n2\r\n"));
        const auto eighth = whole(grid, 7, k_precip);
        select_block(grid, 0, k_precip, 6, k_precip);
        QTest::keyClick(&grid, Qt::Key_V, Qt::ControlModifier);
        EXPECT_THAT(column(grid, 0, 8, k_precip), ElementsAre("1", "2", "1", "2", "1", "2", "1", eighth));
    });
}

TEST_F(ClipboardRoundTripTest, AnEmptiedClipboardChangesNothing) {
    edit([](QTableView& grid) {
        const auto before = whole(grid, 0, k_precip);
        QApplication::clipboard()->clear();
        select_block(grid, 0, k_precip, 0, k_precip);
        QTest::keyClick(&grid, Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(whole(grid, 0, k_precip), before);
    });
    EXPECT_THAT(dialogs_.messages(), IsEmpty());
}

TEST_F(ClipboardRoundTripTest, CommasThousandsAndUnitsAreRefusedAndCounted) {
    edit([this](QTableView& grid) {
        dialogs_.then(Answer::Yes);
        const auto before = column(grid, 0, 4, k_runoff);
        paste_at(grid, 0, k_runoff, QStringLiteral("1,5\r\n1 234\r\n1,234.5\r\n12 cm\r\n5\r\n"));
        EXPECT_EQ(column(grid, 0, 4, k_runoff), before);
        EXPECT_EQ(whole(grid, 4, k_runoff), "5");
    });
    EXPECT_THAT(last_message().text, HasSubstr("4 of the 5 pasted cells can't be accepted"));
    EXPECT_THAT(last_message().text, HasSubstr("'1,5'"));
}

TEST_F(ClipboardRoundTripTest, RowsAndColumnsBeyondTheGridAreLeftOutAndReported) {
    edit([this](QTableView& grid) {
        dialogs_.then(Answer::Yes);
        const int last_row = grid.model()->rowCount() - 1;
        const int last_column = grid.model()->columnCount() - 1;
        paste_at(grid, last_row, last_column, QStringLiteral("1\t2\t3\r\n4\t5\t6\r\n"));
        EXPECT_EQ(whole(grid, last_row, last_column), "1");
    });
    // One row and two columns have no room.
    EXPECT_THAT(last_message().text,
                HasSubstr("The grid has no room for 1 row and 2 columns of the clipboard."));
}

}  // namespace
}  // namespace nivora
