// Copies, new names and changes of simulations by the context menu of their grid, and the list of runs, with
// real keys on a real display.

#include "tests/screen/screen_fixture.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollArea>
#include <QScrollBar>

namespace nivora {
namespace {

class SimulationToolsOnScreenTest : public MainWindowOnScreenTest {
protected:
    /// Opens the context menu of a row of the simulation grid by its key, and chooses an entry by its letter.
    void choose_on_row(int row, const char* letter) {
        click_cell(*find<QTableView>("DBGrid1"), row, 1);
        press({"Menu"});
        EXPECT_TRUE(await([] { return QApplication::activePopupWidget() != nullptr; }));
        press({letter});
    }
    std::vector<std::string> simulations() {
        std::vector<std::string> names;
        for (const Simulation& row : session_.basin.simulations) names.push_back(row.name);
        return names;
    }
    std::int64_t count(const std::string& from) {
        BasinDatabase database{session_.basin.Work_File, Access::ReadOnly};
        SQLite::Statement query{database.sql(), "SELECT count(*) FROM " + from};
        query.executeStep();
        return query.getColumn(0).getInt64();
    }
};

TEST_F(SimulationToolsOnScreenTest, ACopyIsShownAndHasTheKeyboardInItsRow) {
    open_sample();
    dialogs_.then_text("dry");
    choose_on_row(0, "d");
    EXPECT_THAT(simulations(), testing::ElementsAre("ellervane-1996", "ellervane-1997-98", "dry"));
    EXPECT_EQ(find<QLabel>("lblSimVisible")->text(), QStringLiteral("dry"));
    EXPECT_EQ(focused(), "DBGrid1");
    press({"Up"});
    EXPECT_EQ(session_.basin.Current_Sim_Name, "ellervane-1997-98");
}

TEST_F(SimulationToolsOnScreenTest, ANewNameIsShown) {
    open_sample();
    dialogs_.then_text("measured");
    choose_on_row(1, "r");
    EXPECT_THAT(simulations(), testing::ElementsAre("ellervane-1996", "measured"));
    EXPECT_EQ(find<QTableView>("DBGrid1")->model()->index(1, 0).data().toString(),
              QStringLiteral("measured"));
}

TEST_F(SimulationToolsOnScreenTest, AParameterIsChangedByKeysAlone) {
    open_sample();
    int empty = 0;
    int filled = 0;
    in_modal("frmParameterChange", [&](QWidget& window) {
        auto* preview = window.findChild<QTableView*>(QStringLiteral("grdPreview"));
        EXPECT_EQ(focused(), "cboParameter");
        empty = drawn_points(picture(*preview->viewport()));
        press({"alt+n"});
        type("0.5");
        filled = drawn_points(picture(*preview->viewport()));
        press({"alt+a"});
        EXPECT_TRUE(await([&] { return !window.isVisible(); }));
    });
    choose_on_row(0, "m");
    EXPECT_EQ(modal_windows_seen_, 1);
    EXPECT_EQ(count("[ellervane-1996] WHERE LapseRate = 0.5"), 1830);  // 366 days of five zones
    EXPECT_GT(filled, empty + 100) << "the preview shows its rows";
}

TEST_F(SimulationToolsOnScreenTest, AChangeOfAParameterIsSeenWholeFromTheStart) {
    open_sample();
    in_modal("frmParameterChange", [&](QWidget& window) {
        const auto* area = window.findChild<QScrollArea*>();
        ASSERT_NE(area, nullptr);
        EXPECT_FALSE(area->verticalScrollBar()->isVisible()) << "nothing is chosen";
        // The longest summary: a lag time that no cell takes.
        press({"Down", "Down", "Down", "alt+n"});
        type("50");
        const auto* summary = window.findChild<QLabel*>(QStringLiteral("lblSummary"));
        EXPECT_TRUE(await([&] { return summary->text().contains(QStringLiteral("Refused")); }));
        EXPECT_GE(summary->height(), summary->heightForWidth(summary->width()));
        EXPECT_FALSE(area->verticalScrollBar()->isVisible()) << from_qt(summary->text());
        const auto* preview = window.findChild<QTableView*>(QStringLiteral("grdPreview"));
        EXPECT_TRUE(preview->viewport()->rect().contains(preview->visualRect(preview->model()->index(3, 0))))
            << "four rows at least";
    });
    choose_on_row(0, "m");
    EXPECT_EQ(modal_windows_seen_, 1);
}

TEST_F(SimulationToolsOnScreenTest, TheRunsOpenFromTheMenuAndCompareBySelection) {
    open_sample();
    for (const int row : {0, 1}) {
        click_cell(*find<QTableView>("DBGrid1"), row, 1);
        choose("mnuRunSimVar(1)");
        if (QWidget* results = await_window("Results")) results->close();
        settle();
    }
    press({"alt+l", "m", "r"});
    QWidget* runs = await_window("frmRuns");
    ASSERT_NE(runs, nullptr);
    await_active(*runs);
    auto* list = runs->findChild<QTableView*>(QStringLiteral("grdRuns"));
    ASSERT_GE(list->model()->rowCount(), 2);
    click_cell(*list, 0, 1);
    press({"shift+Down"});
    auto* compared = runs->findChild<QTableView*>(QStringLiteral("grdCompared"));
    ASSERT_EQ(compared->model()->rowCount(), 19);
    const QRgb plain = main_colour(picture_of_cell(*compared, 1, 1));
    EXPECT_NE(main_colour(picture_of_cell(*compared, 0, 1)), plain) << "the simulations differ";
    press({"Escape"});
    EXPECT_TRUE(await([&] { return !runs->isVisible(); }));
}

}  // namespace
}  // namespace nivora
