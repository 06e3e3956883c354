// The plot window on a display: its keys, its lists, refused boxes, and how it stands beside other windows.

#include "tests/screen/climate_screen_fixture.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSpinBox>
#include <QToolButton>

namespace nivora {
namespace {

class PlotWindowOnScreenTest : public ClimateOnScreenTest {
protected:
    void SetUp() override {
        ClimateOnScreenTest::SetUp();
        if (IsSkipped()) return;
        choose("mnuRunSimVar(1)");
        if (QWidget* results = open_window("Results")) results->close();
        await_active(*window_);
    }

    QWidget* open_plots() {
        choose("mnuWinGraphics");
        QWidget* plots = await_window("frmNVRPlot");
        if (plots != nullptr) await_active(*plots);
        return plots;
    }
    static QComboBox* plot_list(QWidget* plots) { return in<QComboBox>(plots, "PlotList"); }
    /// Chooses the plot that begins with these letters, in the list that has the keyboard.
    void choose_plot(QWidget* plots, const char* letters) {
        plot_list(plots)->setFocus();
        press({"alt+Down"});
        type(letters);
        press({"Return"});
    }
    /// Whether the middle of a window is in front of all others.
    static bool is_in_front(QWidget& window) {
        return QApplication::topLevelAt(window.mapToGlobal(window.rect().center())) == &window;
    }
};

TEST_F(PlotWindowOnScreenTest, GraphicsBringsTheOpenWindowToTheFrontAlsoWhenMinimized) {
    QWidget* plots = open_plots();
    ASSERT_NE(plots, nullptr);
    EXPECT_EQ(focused(), "PlotList");
    window_->raise();
    window_->activateWindow();
    await_active(*window_);
    EXPECT_EQ(open_plots(), plots);
    EXPECT_TRUE(is_in_front(*plots));
    plots->showMinimized();
    ASSERT_TRUE(await([&] { return plots->isMinimized(); }));
    window_->activateWindow();
    await_active(*window_);
    EXPECT_EQ(open_plots(), plots);
    EXPECT_FALSE(plots->isMinimized());
    EXPECT_TRUE(is_in_front(*plots));
    EXPECT_EQ(from_qt(plot_list(plots)->currentText()), "Runoff (Measured vs Computed)");
}

TEST_F(PlotWindowOnScreenTest, KeysChoosePlotsAndPassThoseThatAreOff) {
    QWidget* plots = open_plots();
    ASSERT_NE(plots, nullptr);
    press({"Down"});
    EXPECT_EQ(plot_list(plots)->currentIndex(), 1);
    EXPECT_TRUE(in<QComboBox>(plots, "ZoneList")->isEnabled());
    press({"End"});
    EXPECT_EQ(plot_list(plots)->currentIndex(), 22);
    press({"Up"});
    EXPECT_EQ(plot_list(plots)->currentIndex(), 15) << "the dashes and the changed climate are off";
}

TEST_F(PlotWindowOnScreenTest, AClickOnAnEntryThatIsOffChoosesNothing) {
    QWidget* plots = open_plots();
    ASSERT_NE(plots, nullptr);
    QComboBox* list = plot_list(plots);
    press({"alt+Down"});
    ASSERT_TRUE(await([&] { return list->view()->isVisible(); }));
    const QAbstractItemView& view = *list->view();
    const auto entry = [&](int number) { return view.visualRect(view.model()->index(number - 1, 0)); };
    EXPECT_GT(drawn_points(picture(*view.viewport(), entry(18))), 0) << "it stays visible";
    // On the way to it the mouse marks an entry that could be chosen.
    const QPoint marked = view.viewport()->mapToGlobal(entry(16).center());
    screen_display()->point_at(marked.x(), marked.y());
    ASSERT_TRUE(await([&] { return view.currentIndex().row() == 15; }));
    click(*view.viewport(), entry(18).center());
    EXPECT_TRUE(view.isVisible());
    EXPECT_EQ(list->currentIndex(), 0);
    click(*view.viewport(), entry(3).center());
    EXPECT_EQ(list->currentIndex(), 2);
}

TEST_F(PlotWindowOnScreenTest, TheZoneListOfAPlotOfOneZoneEndsWithTheLastZone) {
    QWidget* plots = open_plots();
    ASSERT_NE(plots, nullptr);
    auto* zones = in<QComboBox>(plots, "ZoneList");
    const auto opened_height = [&] {
        zones->setFocus();
        press({"alt+Down"});
        await([&] { return zones->view()->isVisible(); });
        const int height = zones->view()->height();
        press({"Escape"});
        return height;
    };
    plot_list(plots)->setFocus();
    press({"Down"});
    const int with_all = opened_height();
    choose_plot(plots, "Cumul");
    ASSERT_EQ(plot_list(plots)->currentIndex(), 15);
    EXPECT_EQ(from_qt(zones->currentText()), "Zone A");
    EXPECT_LT(opened_height(), with_all);
    EXPECT_TRUE(plots->isVisible()) << "Escape closes the list alone";
}

TEST_F(PlotWindowOnScreenTest, ARefusedBoxIsColouredWhileTheMessageShowsAndThenHasTheKeyboard) {
    QWidget* plots = open_plots();
    ASSERT_NE(plots, nullptr);
    auto* maximum = in<QLineEdit>(plots, "bartext2");
    const QRgb before = main_colour(picture(*maximum));
    click(*maximum);
    press({"ctrl+a"});
    type("high");
    EXPECT_TRUE(in<QToolButton>(plots, "Redraw")->isVisible());
    QRgb shown = before;
    dialogs_.while_shown = [&] { shown = main_colour(picture(*maximum)); };
    press({"Return"});
    dialogs_.while_shown = nullptr;
    EXPECT_NE(shown, before);
    EXPECT_EQ(main_colour(picture(*maximum, {2, 2, 6, 4})), before);
    EXPECT_EQ(focused(), "bartext2");
    press({"ctrl+a"});
    type("60");
    click(*in<QToolButton>(plots, "Redraw"));
    EXPECT_FALSE(in<QToolButton>(plots, "Redraw")->isVisible());
    EXPECT_EQ(dialogs_.messages().size(), 1U);
}

TEST_F(PlotWindowOnScreenTest, TheMainWindowStaysUsableAndAModalWindowBlocksThePlots) {
    QWidget* plots = open_plots();
    ASSERT_NE(plots, nullptr);
    const auto other = find_simulation(session_.basin, "ellervane-1996");
    ASSERT_TRUE(other);
    window_->raise();
    window_->activateWindow();
    await_active(*window_);
    click_cell(*find<QTableView>("DBGrid1"), static_cast<int>(*other), 0);
    EXPECT_EQ(session_.basin.Current_Sim_Name, "ellervane-1996");
    in_modal("frmPrint", [&](QWidget& reports) {
        EXPECT_TRUE(reports.isActiveWindow());
        plots->activateWindow();
        const int plot = plot_list(plots)->currentIndex();
        click(*plots, {60, plots->height() - 60});
        EXPECT_EQ(QApplication::activeModalWidget(), &reports);
        EXPECT_EQ(plot_list(plots)->currentIndex(), plot);
    });
    choose("mnuReports");
    EXPECT_EQ(modal_windows_seen_, 1);
    EXPECT_TRUE(plots->isVisible());
}

TEST_F(PlotWindowOnScreenTest, AStepOfAnEvaluationIsOfferedAndItsEndClosesThePlots) {
    add_scenario();
    QWidget* plots = open_plots();
    ASSERT_NE(plots, nullptr);
    plots->move(0, 0);
    QWidget* climate = open_climate();
    ASSERT_NE(climate, nullptr);
    tick_to(climate, 2);
    EXPECT_EQ(from_qt(plot_list(plots)->itemText(0)), "Runoff (Measured vs CompClim)");
    EXPECT_EQ(from_qt(plot_list(plots)->currentText()), "Runoff (Measured vs CompClim)");
    EXPECT_TRUE(plots->isVisible());
    climate->activateWindow();
    await_active(*climate);
    close_by_key(Answer::Yes);
    EXPECT_TRUE(await([&] { return !plots->isVisible(); }));
}

TEST_F(PlotWindowOnScreenTest, FitsOnASmallScreen) {
    QWidget* plots = open_plots();
    ASSERT_NE(plots, nullptr);
    constexpr QSize k_small(784, 552);  // 800 x 600 without the frame
    plots->resize(200, 200);
    settle();
    EXPECT_LE(plots->width(), k_small.width());
    EXPECT_LE(plots->height(), k_small.height());
    for (const char* name : {"SaveAs", "ZoneList", "bartext1", "bartext2", "Help", "btnHelp", "cmdPlot"}) {
        const auto* element = in<QWidget>(plots, name);
        EXPECT_TRUE(element->isVisible()) << name;
        const QRect place(element->mapTo(plots, QPoint(0, 0)), element->size());
        EXPECT_TRUE(plots->rect().contains(place)) << name;
        EXPECT_GE(element->width(), element->minimumSizeHint().width()) << name;
    }
    keep(*plots, "plot-least.png");
}

}  // namespace
}  // namespace nivora
