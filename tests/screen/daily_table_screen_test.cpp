// Reading the daily table as its user sees it.

#include "tests/screen/screen_fixture.h"
#include "widgets/frozen_column.h"
#include "widgets/grid_view.h"

#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QStatusBar>

namespace nivora {
namespace {

/// The parameter table of the sample's second simulation in a window that is too narrow for it.
class DailyTableOnScreenTest : public MainWindowOnScreenTest {
protected:
    void SetUp() override {
        MainWindowOnScreenTest::SetUp();
        if (IsSkipped()) return;
        open_sample();
        click_cell(*find<QTableView>("DBGrid1"), 1, 0);
    }
    void in_parameters(const std::function<void(NivoraWindow&, GridView&)>& act) {
        in_modal("frmData", [&](QWidget& window) {
            window.resize(560, 520);
            settle();
            act(dynamic_cast<NivoraWindow&>(window), *window.findChild<GridView*>(QStringLiteral("Spread")));
            click(*window.findChild<QPushButton*>(QStringLiteral("Command1(1)")));
            EXPECT_FALSE(window.isVisible());
        });
        choose("mnuDataOpt(5)");
        EXPECT_EQ(modal_windows_seen_, 1);
    }
    /// The column of days with its header, without the line at its right.
    static QImage picture_of_days(const GridView& grid) {
        const QRect cells = grid.viewport()->geometry();
        const int head = grid.horizontalHeader()->height();
        return picture(
            grid, QRect(cells.left(), cells.top() - head, grid.columnWidth(0) - 1, head + cells.height()));
    }
    static void right_click_cell(const GridView& grid, int row, int column) {
        const QPoint at =
            grid.viewport()->mapToGlobal(grid.visualRect(grid.model()->index(row, column)).center());
        screen_display()->right_click(at.x(), at.y());
        await([&] { return menu(grid) != nullptr; });
        settle();
    }
    static QMenu* menu(const GridView& grid) {
        for (QMenu* found : grid.findChildren<QMenu*>(QStringLiteral("mnuGrid"))) {
            if (found->isVisible()) return found;
        }
        return nullptr;
    }
    static void scroll_to_end(const GridView& grid) {
        grid.horizontalScrollBar()->setValue(grid.horizontalScrollBar()->maximum());
        settle();
    }
};

TEST_F(DailyTableOnScreenTest, TheDaysLookTheSameWhileTheColumnsScroll) {
    in_parameters([&](NivoraWindow&, GridView& grid) {
        click_cell(grid, 2, 0);
        press({"shift+Down", "shift+Down", "shift+Right"});
        screen_display()->point_at(5, 5);
        settle();
        const QImage before = picture_of_days(grid);
        scroll_to_end(grid);
        ASSERT_TRUE(grid.findChild<FrozenColumn*>()->isVisible());
        EXPECT_EQ(picture_of_days(grid), before);
        grid.verticalScrollBar()->setValue(40);
        settle();
        const QImage further = picture_of_days(grid);
        grid.horizontalScrollBar()->setValue(0);
        settle();
        EXPECT_EQ(picture_of_days(grid), further);
    });
}

TEST_F(DailyTableOnScreenTest, AClickAndKeysReachTheDaysAndLeaveTheColumnsWhereTheyAre) {
    in_parameters([&](NivoraWindow&, GridView& grid) {
        scroll_to_end(grid);
        const int scrolled = grid.horizontalScrollBar()->value();
        const auto& days = *grid.findChild<FrozenColumn*>();
        click(*days.viewport(), days.visualRect(grid.model()->index(3, 0)).center());
        EXPECT_EQ(grid.currentIndex(), grid.model()->index(3, 0));
        press({"Down", "End", "Home"});
        EXPECT_EQ(grid.currentIndex(), grid.model()->index(4, 0));
        EXPECT_EQ(grid.horizontalScrollBar()->value(), scrolled);
        press({"Right"});
        EXPECT_GE(grid.columnViewportPosition(1), days.isVisible() ? days.width() : 0);
        EXPECT_TRUE(grid.hasFocus());
    });
}

TEST_F(DailyTableOnScreenTest, ADragDownTheDaysScrollsNoColumns) {
    in_parameters([&](NivoraWindow&, GridView& grid) {
        scroll_to_end(grid);
        const int scrolled = grid.horizontalScrollBar()->value();
        const auto& days = *grid.findChild<FrozenColumn*>();
        const auto at = [&](int row) {
            return days.viewport()->mapToGlobal(
                QPoint(6, days.visualRect(grid.model()->index(row, 0)).center().y()));
        };
        screen_display()->point_at(at(2).x(), at(2).y());
        screen_display()->button_down(1);
        for (const int row : {3, 4, 5}) {
            screen_display()->point_at(at(row).x(), at(row).y());
            settle();
            // Still in the cell, and at the grid's edge.
            screen_display()->point_at(at(row).x() + 1, at(row).y());
            QTest::qWait(150);
        }
        screen_display()->button_up(1);
        settle();
        EXPECT_EQ(grid.horizontalScrollBar()->value(), scrolled);
        const CellRange block = grid.block();
        EXPECT_THAT((std::vector{block.first_row, block.first_column, block.last_row, block.last_column}),
                    testing::ElementsAre(2, 0, 5, 0));
    });
}

TEST_F(DailyTableOnScreenTest, TheHeaderOfTheDaysHasItsUnitInATip) {
    in_parameters([&](NivoraWindow&, GridView& grid) {
        scroll_to_end(grid);
        const QHeaderView& header = *grid.findChild<FrozenColumn*>()->horizontalHeader();
        point_at(*header.viewport(), QPoint(20, header.height() / 2));
        ASSERT_TRUE(QToolTip::isVisible());
        EXPECT_EQ(from_qt(QToolTip::text()), "Date: mm/dd/yyyy");
    });
}

TEST_F(DailyTableOnScreenTest, ARightClickOpensTheMenuOfItsCellAndALetterChoosesAnEntry) {
    in_parameters([&](NivoraWindow&, GridView& grid) {
        right_click_cell(grid, 2, 4);
        ASSERT_NE(menu(grid), nullptr);
        EXPECT_EQ(grid.currentIndex(), grid.model()->index(2, 4));
        EXPECT_GT(drawn_points(picture(*menu(grid))), 500);
        press({"h"});
        EXPECT_EQ(menu(grid), nullptr);
        EXPECT_TRUE(QApplication::clipboard()->text().startsWith(QStringLiteral("LagTime\n")));
        press({"Menu"});
        ASSERT_TRUE(await([&] { return menu(grid) != nullptr; }));
        press({"Escape"});
        EXPECT_EQ(menu(grid), nullptr);
        EXPECT_TRUE(grid.hasFocus());
        scroll_to_end(grid);
        const auto& days = *grid.findChild<FrozenColumn*>();
        const QPoint at = days.viewport()->mapToGlobal(days.visualRect(grid.model()->index(5, 0)).center());
        screen_display()->right_click(at.x(), at.y());
        ASSERT_TRUE(await([&] { return menu(grid) != nullptr; }));
        EXPECT_EQ(grid.currentIndex(), grid.model()->index(5, 0));
        press({"Escape"});
    });
}

TEST_F(DailyTableOnScreenTest, CtrlGGoesToADateInTheColumnAndTheKeyboardStaysInTheTable) {
    in_parameters([&](NivoraWindow&, GridView& grid) {
        click_cell(grid, 0, 3);
        dialogs_.then_text("1998-03-15");
        press({"ctrl+g"});
        EXPECT_EQ(dialogs_.inputs().at(0).proposed, "10/01/1997");
        EXPECT_EQ(from_qt(grid.currentIndex().siblingAtColumn(0).data().toString()), "03/15/1998");
        EXPECT_EQ(grid.currentIndex().column(), 3);
        EXPECT_TRUE(grid.viewport()->rect().contains(grid.visualRect(grid.currentIndex())));
        press({"Down"});
        EXPECT_EQ(from_qt(grid.currentIndex().siblingAtColumn(0).data().toString()), "03/16/1998");
    });
}

TEST_F(DailyTableOnScreenTest, SumsAndTheEndOfASearchAreSeenInTheStatusBar) {
    in_parameters([&](NivoraWindow& window, GridView& grid) {
        click_cell(grid, 0, 4);
        const auto& sums = *window.findChild<QLabel*>(QStringLiteral("sumsPanel"));
        EXPECT_FALSE(sums.isVisible());
        press({"shift+Down", "shift+Down"});
        ASSERT_TRUE(sums.isVisible());
        EXPECT_THAT(from_qt(sums.text()), testing::StartsWith("3 numbers   Sum "));
        EXPECT_GT(drawn_points(picture(sums)), 200);
        press({"F3"});
        EXPECT_EQ(from_qt(window.statusBar()->currentMessage()), "LagTime, zone 1: no value is missing.");
        EXPECT_FALSE(sums.isVisible());
    });
}

}  // namespace
}  // namespace nivora
