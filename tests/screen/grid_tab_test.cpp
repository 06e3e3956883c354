// Tab in a grid and out of it, with the keys of a real display.

#include "tests/screen/screen_fixture.h"
#include "widgets/grid_view.h"

#include <QLabel>

namespace nivora {
namespace {

/// The sample basin: two simulations, five zones.
class GridTabTest : public MainWindowOnScreenTest {
protected:
    void SetUp() override {
        MainWindowOnScreenTest::SetUp();
        if (!IsSkipped()) open_sample();
    }

    GridView& grid(const char* name) { return *find<GridView>(name); }
    /// Scrolls to a cell, row and column from 0, and clicks it.
    static void go_to(GridView& grid, int row, int column) {
        grid.scrollTo(grid.model()->index(row, column));
        settle();
        click_cell(grid, row, column);
        ASSERT_EQ(grid.currentIndex(), grid.model()->index(row, column));
    }
    static void go_to_last(GridView& grid) {
        go_to(grid, grid.model()->rowCount() - 1, grid.model()->columnCount() - 1);
    }
    static std::pair<int, int> active(const GridView& grid) {
        return {grid.currentIndex().row(), grid.currentIndex().column()};
    }
};

TEST_F(GridTabTest, TabGoesFromCellToCellAndOnToTheNextRow) {
    GridView& zones = grid("vaSpread1");
    go_to(zones, 1, 1);
    press({"Tab"});
    EXPECT_EQ(active(zones), std::pair(1, 2));
    go_to(zones, 1, zones.model()->columnCount() - 1);
    press({"Tab"});
    EXPECT_EQ(active(zones), std::pair(2, 0));
    press({"shift+Tab"});
    EXPECT_EQ(active(zones), std::pair(1, zones.model()->columnCount() - 1));
    EXPECT_EQ(focused(), "vaSpread1");
}

TEST_F(GridTabTest, TabInTheLastCellLeadsToTheNextControl) {
    go_to_last(grid("vaSpread1"));
    press({"Tab"});
    EXPECT_EQ(focused(), "DBGrid1");
    go_to_last(grid("DBGrid1"));
    press({"Tab"});
    EXPECT_EQ(focused(), "Command1(0)");
}

TEST_F(GridTabTest, ShiftTabInTheFirstCellLeadsToTheControlBefore) {
    go_to(grid("DBGrid1"), 0, 0);
    press({"shift+Tab"});
    EXPECT_EQ(focused(), "vaSpread1");
    go_to(grid("vaSpread1"), 0, 0);
    press({"shift+Tab"});
    EXPECT_EQ(focused(), "Text(4)");
}

TEST_F(GridTabTest, TabOutOfAnOpenEditorTakesTheCellAndLeavesAtTheEdgeAlone) {
    GridView& zones = grid("vaSpread1");
    const int last = zones.model()->columnCount() - 1;
    go_to(zones, 1, 1);
    press({"F2", "ctrl+a"});
    type("42.5");
    press({"Tab"});
    EXPECT_EQ(session_.basin.zones[1].area, 42.5);
    EXPECT_EQ(active(zones), std::pair(1, 2));
    press({"Escape"});
    go_to(zones, 4, last);
    press({"F2", "ctrl+a"});
    type("2050.5");
    press({"Tab"});
    EXPECT_EQ(session_.basin.zones[4].aspects[3].elevation, 2050.5);
    EXPECT_EQ(focused(), "DBGrid1");
}

TEST_F(GridTabTest, F6AndCtrlTabLeaveFromAnyCell) {
    for (const char* key : {"F6", "ctrl+Tab"}) {
        go_to(grid("vaSpread1"), 1, 1);
        press({key});
        EXPECT_EQ(focused(), "DBGrid1") << key;
    }
    for (const char* key : {"shift+F6", "ctrl+shift+Tab"}) {
        go_to(grid("DBGrid1"), 1, 1);
        press({key});
        EXPECT_EQ(focused(), "vaSpread1") << key;
    }
}

TEST_F(GridTabTest, TheStatusBarHasRoomForTheUnitOfEachColumn) {
    GridView& zones = grid("vaSpread1");
    const auto* told = find<QLabel>("unitPanel");
    for (int column = 0; column < zones.model()->columnCount(); ++column) {
        go_to(zones, 1, column);
        EXPECT_LE(told->fontMetrics().horizontalAdvance(told->text()), told->width())
            << from_qt(told->text());
        EXPECT_EQ(told->toolTip(), told->text());
    }
}

}  // namespace
}  // namespace nivora
