// What the grids of the main window keep of selection, active cell and scroll position.
#include "tests/shell/simulation_fixture.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>

namespace nivora {
namespace {

class KeptSelectionTest : public SimulationWindowTest {
protected:
    GridView* zones() { return find<GridView>("vaSpread1"); }
    /// Selects area and elevation of the zones 2 to 4, and scrolls to the last column.
    void select_zones() {
        window_->resize(700, 600);
        settle();
        const auto* model = zones()->model();
        zones()->setCurrentIndex(model->index(1, 1));
        zones()->selectionModel()->select(QItemSelection(model->index(1, 1), model->index(3, 2)),
                                          QItemSelectionModel::ClearAndSelect);
        zones()->horizontalScrollBar()->setValue(zones()->horizontalScrollBar()->maximum());
    }
    void expect_block(const CellRange& wanted) {
        const CellRange block = zones()->block();
        EXPECT_EQ(block.first_row, wanted.first_row);
        EXPECT_EQ(block.first_column, wanted.first_column);
        EXPECT_EQ(block.last_row, wanted.last_row);
        EXPECT_EQ(block.last_column, wanted.last_column);
    }
    std::vector<int> selected_simulations() {
        std::vector<int> selected;
        for (const QModelIndex& index : grid()->selectionModel()->selectedRows())
            selected.push_back(index.row());
        return selected;
    }
};

TEST_F(KeptSelectionTest, ARefreshKeepsTheBlockOfTheZonesAndItsPlace) {
    select_zones();
    const int scrolled = zones()->horizontalScrollBar()->value();
    ASSERT_GT(scrolled, 0);
    const QSignalSpy resets(zones()->model(), &QAbstractItemModel::modelReset);
    session_.basin.zones[2].area = 77.5;
    session_.desktop.refresh_main_window();
    EXPECT_EQ(zones()->model()->index(2, 1).data().toString(), QStringLiteral("77.5"));
    EXPECT_TRUE(resets.isEmpty());
    expect_block({1, 1, 3, 2});
    EXPECT_EQ(zones()->currentIndex(), zones()->model()->index(1, 1));
    EXPECT_EQ(zones()->horizontalScrollBar()->value(), scrolled);
}

TEST_F(KeptSelectionTest, ARunKeepsTheActiveCellOfTheSimulations) {
    go_to(1, 5);
    look_at_modal("Results", [](QWidget*) {});
    choose("mnuRunSimVar(1)");
    EXPECT_EQ(grid()->currentIndex(), grid()->model()->index(0, 4));
    EXPECT_EQ(selected_simulations(), std::vector<int>{0});
}

TEST_F(KeptSelectionTest, AnAddedSimulationInsertsARow) {
    go_to(1, 4);
    const QSignalSpy inserted(grid()->model(), &QAbstractItemModel::rowsInserted);
    const QSignalSpy resets(grid()->model(), &QAbstractItemModel::modelReset);
    session_.basin.simulations.push_back(row(1));
    row(3).name = "third";
    session_.desktop.refresh_main_window();
    ASSERT_EQ(inserted.size(), 1);
    EXPECT_EQ(inserted[0][1].toInt(), 2);
    EXPECT_EQ(inserted[0][2].toInt(), 2);
    EXPECT_TRUE(resets.isEmpty());
    EXPECT_EQ(grid()->verticalHeader()->count(), 3);
    EXPECT_EQ(grid()->currentIndex(), grid()->model()->index(0, 3));
    EXPECT_EQ(selected_simulations(), std::vector<int>{0});
}

TEST_F(KeptSelectionTest, ADeletedSimulationRemovesARow) {
    select_zones();
    go_to(1, 1);
    const QSignalSpy removed(grid()->model(), &QAbstractItemModel::rowsRemoved);
    const QSignalSpy resets(grid()->model(), &QAbstractItemModel::modelReset);
    dialogs_.then(Answer::Yes);
    press(1);
    ASSERT_EQ(removed.size(), 1);
    EXPECT_EQ(removed[0][1].toInt(), 0);
    EXPECT_EQ(removed[0][2].toInt(), 0);
    EXPECT_TRUE(resets.isEmpty());
    EXPECT_EQ(cell(1, 1), "ellervane-1997-98");
    EXPECT_EQ(selected_simulations(), std::vector<int>{}) << "the last row is active, and not selected";
    EXPECT_EQ(grid()->currentIndex().row(), 0);
    expect_block({1, 1, 3, 2});
}

TEST_F(KeptSelectionTest, RowsBeyondTheZonesOfTheBasinAreEmptyUntilARefresh) {
    session_.basin.zones.resize(2);
    EXPECT_EQ(zones()->model()->rowCount(), 5) << "as long as it is not refreshed";
    EXPECT_EQ(zones()->model()->index(4, 1).data().toString(), QString{});
    session_.desktop.refresh_main_window();
    EXPECT_EQ(zones()->model()->rowCount(), 2);
}

TEST_F(KeptSelectionTest, AnotherBasinResetsTheGrids) {
    select_zones();
    const QSignalSpy zone_resets(zones()->model(), &QAbstractItemModel::modelReset);
    const QSignalSpy simulation_resets(grid()->model(), &QAbstractItemModel::modelReset);
    // The same file again: another basin may have as many zones, and names of the same simulations.
    dialogs_.then_file(user_ / "ellervane.mdb");
    choose("mnuFileItem(1)");
    EXPECT_EQ(zone_resets.size(), 1);
    EXPECT_EQ(simulation_resets.size(), 1);
    EXPECT_EQ(zones()->model()->rowCount(), 5);
    EXPECT_FALSE(zones()->selectionModel()->hasSelection());
    EXPECT_EQ(selected_simulations(), std::vector<int>{0});
}

}  // namespace
}  // namespace nivora
