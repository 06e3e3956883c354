// The zones of the main window: their letters, areas, shares and units, and what is refused.

#include "tests/screen/screen_fixture.h"
#include "widgets/grid_view.h"

#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QStatusBar>

namespace nivora {
namespace {

/// The sample basin: five zones.
class ZoneGridOnScreenTest : public MainWindowOnScreenTest {
protected:
    void SetUp() override {
        MainWindowOnScreenTest::SetUp();
        if (!IsSkipped()) open_sample();
    }

    GridView& zones() { return *find<GridView>("vaSpread1"); }
    GridView& simulations() { return *find<GridView>("DBGrid1"); }
    /// Scrolls to a cell, row and column from 1, and clicks it.
    static void go_to(GridView& grid, int row, int column) {
        grid.scrollTo(grid.model()->index(row - 1, column - 1));
        settle();
        click_cell(grid, row - 1, column - 1);
    }
    static void type_into(GridView& grid, int row, int column, const std::string& text) {
        go_to(grid, row, column);
        type(text);
        press({"Tab"});
    }
    /// Opens the Run menu with the mouse and closes it, with the questions and messages in between.
    void open_run_menu() {
        auto* run = find<QMenu>("mnuRun");
        click(*window_->menuBar(), window_->menuBar()->actionGeometry(run->menuAction()).center());
        if (run->isVisible()) press({"Escape"});
        EXPECT_TRUE(await([&] { return !run->isVisible(); }));
    }
    std::string status() { return from_qt(window_->statusBar()->currentMessage()); }
};

TEST_F(ZoneGridOnScreenTest, ANegativeAreaIsRefusedByTheRunMenu) {
    go_to(simulations(), 2, 1);
    type_into(zones(), 2, 2, "-20");
    EXPECT_EQ(session_.basin.zones[1].area, -20.0);
    QRgb shown = 0;
    dialogs_.while_shown = [&] { shown = main_colour(picture_of_cell(zones(), 1, 2)); };
    open_run_menu();
    dialogs_.while_shown = nullptr;
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().text, "Zone area must be greater than zero!");
    EXPECT_EQ(shown, 0xFF8080U);
    choose("mnuRunSimVar(1)");
    EXPECT_EQ(dialogs_.messages().size(), 2U);
    EXPECT_FALSE(session_.basin.Output_Valid);
}

TEST_F(ZoneGridOnScreenTest, AnAreaBeyondTenMillionIsAskedAboutUntilItIsConfirmed) {
    go_to(simulations(), 2, 1);
    type_into(zones(), 2, 2, "20000000");
    dialogs_.then(Answer::No);
    open_run_menu();
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().title, "Unusual zone values");
    EXPECT_THAT(last_message().text, testing::HasSubstr("Zone 2: area 20000000 km²"));
    EXPECT_EQ(last_message().default_answer, Answer::No);
    EXPECT_EQ(zones().currentIndex(), zones().model()->index(1, 1));
    dialogs_.then(Answer::Yes);
    open_run_menu();
    open_run_menu();
    EXPECT_EQ(dialogs_.messages().size(), 2U);
}

// If the text were cut short, a wider column would show more of it.
TEST_F(ZoneGridOnScreenTest, TheColumnOfTheAreasShowsWholeNumbers) {
    type_into(zones(), 2, 2, "1234567.25");
    go_to(zones(), 1, 4);
    const int shown = drawn_points(picture_of_cell(zones(), 1, 1));
    EXPECT_GT(shown, 60);
    zones().setColumnWidth(1, zones().columnWidth(1) + 120);
    settle();
    EXPECT_EQ(drawn_points(picture_of_cell(zones(), 1, 1)), shown);
}

TEST_F(ZoneGridOnScreenTest, TheStatusLineSaysWhatAShareOfOneStandsFor) {
    session_.basin.zones[1].aspects[0].share = 1.0;
    go_to(zones(), 2, 4);
    const auto* told = find<QLabel>("unitPanel");
    EXPECT_THAT(from_qt(told->text()), testing::HasSubstr("1 in an imported basin, whose file gives none"));
    EXPECT_GT(drawn_points(picture(*told)), 200);
    point_at(*zones().viewport(), zones().visualRect(zones().model()->index(1, 3)).center());
    EXPECT_TRUE(QToolTip::isVisible());
    EXPECT_EQ(QToolTip::text(), told->text());
}

TEST_F(ZoneGridOnScreenTest, ASimulationInOtherUnitsLeavesTheUnitsOfTheBasin) {
    const auto pictures = [&] {
        std::vector<QImage> seen;
        for (const char* label : {"Label1(5)", "Label1(7)", "lblUnits"})
            seen.push_back(picture(*find<QLabel>(label)));
        seen.push_back(picture(*zones().horizontalHeader()->viewport()));
        return seen;
    };
    go_to(simulations(), 2, 5);
    const auto before = pictures();
    type("E");
    press({"Tab"});
    ASSERT_EQ(session_.basin.Units_Code, Units::English);
    simulations().scrollTo(simulations().model()->index(1, 12));
    EXPECT_EQ(simulations().model()->headerData(12, Qt::Horizontal).toString(),
              QStringLiteral("Initial Runoff (CFS)"));
    EXPECT_TRUE(pictures() == before);
}

TEST_F(ZoneGridOnScreenTest, ARefusedEntryIsReportedInTheStatusLine) {
    const auto area = session_.basin.zones[1].area;
    const QImage before = picture(*window_->statusBar());
    type_into(zones(), 2, 2, "450,5");
    EXPECT_EQ(session_.basin.zones[1].area, area);
    EXPECT_EQ(status(),
              "'450,5' is not accepted for Zone Area (km²), zone 2: a number has a point as its decimal sign "
              "and no other separators.");
    EXPECT_NE(picture(*window_->statusBar()), before);
    type_into(simulations(), 2, 3, "02312006");
    EXPECT_THAT(status(), testing::StartsWith("'02/31/2006' is not accepted for Starting Date of "
                                              "'ellervane-1997-98': "));
    EXPECT_EQ(session_.basin.simulations[1].start, day_count({1997, 10, 1}));
}

TEST_F(ZoneGridOnScreenTest, CutTakesTheTextOfTheBoxAndNoCellOfTheGrids) {
    const auto runoff = session_.basin.simulations[1].initial_runoff;
    const auto area = session_.basin.zones[1].area;
    go_to(zones(), 2, 2);
    go_to(simulations(), 2, 13);
    auto* description = find<QLineEdit>("Text(4)");
    click(*description);
    press({"ctrl+a"});
    type("Alder");
    press({"ctrl+a", "alt+i", "t"});
    EXPECT_EQ(description->text(), QString{});
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("Alder"));
    EXPECT_EQ(session_.basin.simulations[1].initial_runoff, runoff);
    EXPECT_EQ(session_.basin.zones[1].area, area);
}

TEST_F(ZoneGridOnScreenTest, ASinglePastedValueGoesToTheActiveCellOfTheSimulations) {
    QApplication::clipboard()->setText(QStringLiteral("2.75"));
    go_to(simulations(), 2, 13);
    press({"alt+i", "p"});
    EXPECT_EQ(session_.basin.simulations[1].initial_runoff, 2.75F);
    go_to(simulations(), 2, 14);
    press({"ctrl+v"});
    EXPECT_EQ(session_.basin.simulations[1].precipitation_threshold, 2.75F);
    EXPECT_EQ(session_.basin.simulations[1].name, "ellervane-1997-98");
    EXPECT_TRUE(dialogs_.messages().empty());
}

using NewZonesOnScreenTest = MainWindowOnScreenTest;

TEST_F(NewZonesOnScreenTest, ZonesMadeByHandHaveLetters) {
    click(*find<QLineEdit>("Text(0)"));
    dialogs_.then(Answer::Yes).then(Answer::Yes);
    press({"Return", "Down", "Return"});
    ASSERT_TRUE(await([&] { return focused() == "Text(1)"; }));
    type("2");
    in_modal("frmPopulate", [](QWidget&) { press({"Escape"}); });
    press({"Return"});
    ASSERT_TRUE(await([&] { return modal_windows_seen_ == 1; }));
    const auto& zones = *find<GridView>("vaSpread1");
    EXPECT_EQ(zones.model()->index(0, 0).data().toString(), QStringLiteral("A"));
    EXPECT_EQ(zones.model()->index(1, 0).data().toString(), QStringLiteral("B"));
    EXPECT_GT(drawn_points(picture_of_cell(zones, 0, 0)), 10);
    EXPECT_NE(picture_of_cell(zones, 0, 0), picture_of_cell(zones, 1, 0));
}

}  // namespace
}  // namespace nivora
