// The sums of the selected numbers in the status bar.

#include "widgets/grid_sums.h"

#include "tests/widgets/grid_fixture.h"
#include "widgets/grid_status.h"

#include <QLabel>
#include <QStatusBar>

namespace nivora {
namespace {

class GridSumsTest : public GridTest {
protected:
    GridSumsTest() { watch(); }
    void clear_cell(int row, int column) {
        ASSERT_TRUE(cells_->take(row, column, QString{}));
        cells_->changed_block(row, column, row, column);
    }
    void watch() {
        (new GridStatus(window_->statusBar()))->watch(grid_);
        panel_ = window_->statusBar()->findChild<QLabel*>(QStringLiteral("sumsPanel"));
    }
    /// What the status bar shows of the sums; "hidden" if it shows none.
    std::string told() {
        QApplication::processEvents();
        return panel_->isVisible() ? from_qt(panel_->text()) : "hidden";
    }

    QLabel* panel_ = nullptr;
};

TEST_F(GridSumsTest, TwoNumbersAndMoreAreSummedInTheStatusBar) {
    select(0, 1, 0, 1);
    EXPECT_EQ(told(), "hidden");
    // 1.125 + 2.125 + 3.125 = 6.375, / 3 = 2.125
    select(1, 1, 3, 1);
    EXPECT_EQ(told(), "3 numbers   Sum 6.375   Mean 2.125   Minimum 1.125   Maximum 3.125");
    EXPECT_EQ(panel_->toolTip(), panel_->text());
    // and 1 + 2 + 3: 12.375 / 6 = 2.0625
    select(1, 0, 3, 4);
    EXPECT_EQ(told(), "6 numbers   Sum 12.375   Mean 2.0625   Minimum 1   Maximum 3.125");
}

TEST_F(GridSumsTest, MissingValuesTextsAndDatesDoNotCount) {
    clear_cell(2, Column::k_integer);
    select(1, 2, 3, 4);
    EXPECT_EQ(told(), "2 numbers   Sum 4   Mean 2   Minimum 1   Maximum 3");
    select(0, 3, 5, 4);
    EXPECT_EQ(told(), "hidden");
    select(2, 2, 3, 2);  // one number and a missing one
    EXPECT_EQ(told(), "hidden");
}

TEST_F(GridSumsTest, HiddenRowsAndColumnsDoNotCount) {
    grid_->hideColumn(Column::k_number);
    grid_->hideRow(2);
    select(1, 0, 3, 4);
    EXPECT_EQ(told(), "2 numbers   Sum 4   Mean 2   Minimum 1   Maximum 3");
}

TEST_F(GridSumsTest, TheSumsFollowAnEditAndARefill) {
    select(1, 2, 2, 2);
    EXPECT_EQ(told(), "2 numbers   Sum 3   Mean 1.5   Minimum 1   Maximum 2");
    ASSERT_TRUE(cells_->take(1, 2, QStringLiteral("8")));
    cells_->changed_block(1, 2, 1, 2);
    EXPECT_EQ(told(), "2 numbers   Sum 10   Mean 5   Minimum 2   Maximum 8");
    cells_->reload();
    EXPECT_EQ(told(), "hidden");
}

TEST_F(GridSumsTest, WholeRowsAreNotSummed) {
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->selectRow(3);
    EXPECT_EQ(told(), "hidden");
}

TEST_F(GridSumsTest, AMessageIsNotDrawnOver) {
    select(1, 2, 2, 2);
    EXPECT_NE(told(), "hidden");
    window_->statusBar()->showMessage(QStringLiteral("a message"));
    select(1, 2, 4, 2);
    EXPECT_EQ(told(), "hidden");
    window_->statusBar()->clearMessage();
    EXPECT_EQ(told(), "4 numbers   Sum 10   Mean 2.5   Minimum 1   Maximum 4");
}

TEST_F(GridSumsTest, ALongTextDoesNotWidenANarrowWindow) {
    window_->resize(200, 300);
    QApplication::processEvents();
    const int narrow = window_->width();
    grid_->selectAll();
    EXPECT_NE(told(), "hidden");
    EXPECT_EQ(window_->width(), narrow);
}

TEST(SumsTextTest, NumbersHaveUpToFourDecimals) {
    const auto text = [](double sum) { return from_qt(sums_text({2, sum, -0.00001, 0.5})); };
    EXPECT_EQ(text(2.0 / 3.0), "2 numbers   Sum 0.6667   Mean 0.3333   Minimum -1e-05   Maximum 0.5");
    EXPECT_EQ(text(1234567.5),
              "2 numbers   Sum 1234567.5   Mean 617283.75   "
              "Minimum -1e-05   Maximum 0.5");
    EXPECT_TRUE(sums_text({1, 5.0, 5.0, 5.0}).isEmpty());
    EXPECT_TRUE(sums_text({}).isEmpty());
}

}  // namespace
}  // namespace nivora
