// Colours of the main window's grids as the screen shows them, and their keys.

#include "tests/screen/screen_fixture.h"
#include "widgets/grid_view.h"

#include <QClipboard>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>

namespace nivora {
namespace {

constexpr QRgb k_refused_cell = 0xFF8080;

/// The sample basin: simulations of 01/01/1996 to 12/31/1996 and 10/01/1997 to 09/30/1998, five zones.
class GridsOnScreenTest : public MainWindowOnScreenTest {
protected:
    void SetUp() override {
        MainWindowOnScreenTest::SetUp();
        if (!IsSkipped()) open_sample();
    }

    GridView& simulations() { return *find<GridView>("DBGrid1"); }
    GridView& zones() { return *find<GridView>("vaSpread1"); }
    /// Scrolls to a cell, row and column from 1, and clicks it.
    void go_to(GridView& grid, int row, int column) {
        grid.scrollTo(grid.model()->index(row - 1, column - 1));
        settle();
        click_cell(grid, row - 1, column - 1);
    }
    static QRgb colour(const GridView& grid, int row, int column) {
        return main_colour(picture_of_cell(grid, row - 1, column - 1));
    }
    /// Records the colours of a row's visible cells while a message is shown.
    void watch_row(GridView& grid, int row) {
        dialogs_.while_shown = [this, &grid, row] {
            colours_.clear();
            for (int column = 1; column <= grid.model()->columnCount(); ++column) {
                const QRect cell = grid.visualRect(grid.model()->index(row - 1, column - 1));
                if (grid.viewport()->rect().contains(cell)) colours_[column] = colour(grid, row, column);
            }
        };
    }

    std::map<int, QRgb> colours_;
};

TEST_F(GridsOnScreenTest, ARefusedDateIsLightRedThoughItsRowIsSelected) {
    go_to(simulations(), 2, 3);
    watch_row(simulations(), 2);
    type("09291997");
    press({"Tab"});
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(dialogs_.messages()[0].message.text, "Date range error!  ");
    EXPECT_EQ(colours_.at(3), k_refused_cell);
    EXPECT_NE(colours_.at(2), k_refused_cell);
    EXPECT_NE(colour(simulations(), 2, 3), k_refused_cell);
}

TEST_F(GridsOnScreenTest, RefusedMaxMinTemperaturesByZoneAreLightRed) {
    session_.basin.simulations[1].temperature_values = std::int16_t{1};
    go_to(simulations(), 2, 7);
    watch_row(simulations(), 2);
    type("B");
    press({"Tab"});
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(dialogs_.messages()[0].message.title, "Max/min temperature problem");
    EXPECT_EQ(colours_.at(7), k_refused_cell);
    EXPECT_NE(colours_.at(6), k_refused_cell);
}

TEST_F(GridsOnScreenTest, TheWholeRowIsLightRedWhileItsDeletionIsAskedAbout) {
    go_to(simulations(), 2, 3);
    watch_row(simulations(), 2);
    dialogs_.then(Answer::No);
    click(*find<QPushButton>("Command1(1)"));
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_GE(colours_.size(), 5U);
    for (const auto& [column, seen] : colours_) EXPECT_EQ(seen, k_refused_cell) << column;
    EXPECT_NE(colour(simulations(), 2, 3), k_refused_cell);
}

TEST_F(GridsOnScreenTest, TheElevationThatTheRunMenuRefusesIsLightRedThoughItIsTheActiveCell) {
    go_to(zones(), 3, 3);
    session_.basin.zones[2].elevation = 1.0;
    watch_row(zones(), 3);
    press({"alt+r"});
    ASSERT_TRUE(await([&] { return !dialogs_.messages().empty(); }));
    press({"Escape", "Escape"});
    EXPECT_EQ(dialogs_.messages()[0].message.title, "Invalid zone description");
    EXPECT_EQ(colours_.at(3), k_refused_cell);
    EXPECT_NE(colours_.at(2), k_refused_cell);
    EXPECT_NE(colour(zones(), 3, 3), k_refused_cell);
}

TEST_F(GridsOnScreenTest, TheAreaBelowTheSimulationsIsGreyAndTheirCellsAreNot) {
    GridView& grid = simulations();
    const QRect last = grid.visualRect(grid.model()->index(1, 0));
    const QRect below(2, last.bottom() + 6, 100, grid.viewport()->height() - last.bottom() - 8);
    ASSERT_GT(below.height(), 10);
    EXPECT_EQ(main_colour(picture(*grid.viewport(), below)), 0xC0C0C0U);
    EXPECT_EQ(colour(grid, 2, 2), 0xFFFFFFU);
}

TEST_F(GridsOnScreenTest, TwoSimulationsHaveAScrollBarWhileColumnsAreHidden) {
    EXPECT_TRUE(simulations().horizontalScrollBar()->isVisible());
}

TEST_F(GridsOnScreenTest, EnterKeepsTheSimulationThatIsEdited) {
    go_to(simulations(), 1, 2);
    type("12");
    press({"Return"});
    EXPECT_EQ(session_.basin.simulations[0].run_number, 12);
    EXPECT_EQ(simulations().currentIndex().row(), 0);
    EXPECT_EQ(session_.basin.Current_Sim_Name, "ellervane-1996");
}

TEST_F(GridsOnScreenTest, TheEditMenuReachedByKeysWorksWhereTheFocusWas) {
    auto* name = find<QLineEdit>("Text(0)");
    click(*name);
    press({"ctrl+a", "alt+i", "c"});
    EXPECT_EQ(QApplication::clipboard()->text(), name->text());
    const std::string before = session_.basin.simulations[0].name;
    QApplication::clipboard()->setText(QStringLiteral("Alder"));
    click(*name);
    press({"ctrl+a", "alt+i", "p"});
    EXPECT_EQ(from_qt(name->text()), "Alder");
    QApplication::clipboard()->setText(QStringLiteral("61.5"));
    go_to(zones(), 2, 2);
    press({"alt+i", "p"});
    EXPECT_EQ(session_.basin.zones[1].area, 61.5);
    EXPECT_EQ(session_.basin.simulations[0].name, before);
    EXPECT_TRUE(dialogs_.messages().empty());
}

}  // namespace
}  // namespace nivora
