// When the plot window opens, follows the basin and closes.
#include "tests/shell/main_window_fixture.h"
#include "widgets/qt_text.h"

#include <gmock/gmock.h>

#include <QStandardItemModel>

namespace nivora {
namespace {

constexpr std::size_t k_water_year = 1;  ///< the row of "ellervane-1997-98" in the sample

// The filters of the two discharge plots, by position.
constexpr std::size_t k_bitmap_filter = 0;
constexpr std::size_t k_slurp_filter = 2;

class PlotWiringTest : public MainWindowTest {
protected:
    PlotWiringTest() {
        open_sample();
        find<QTableView>("DBGrid1")->selectRow(static_cast<int>(k_water_year));
        settle();
    }

    void run_year() {
        choose("mnuRunSimVar(1)");
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->objectName() == QStringLiteral("Results")) top->close();
        }
    }
    QWidget* open_plots() {
        choose("mnuWinGraphics");
        return plots();
    }
    /// The plot window if it is open; otherwise null.
    static QWidget* plots() {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->isVisible() && top->objectName() == QStringLiteral("frmNVRPlot")) return top;
        }
        return nullptr;
    }
    static QToolButton* tool(const char* name) {
        return plots()->findChild<QToolButton*>(QString::fromUtf8(name));
    }
    static void press(const char* name) {
        tool(name)->click();
        settle();
    }
    static void pick(int plot) {
        list()->setCurrentIndex(plot - 1);
        emit list()->activated(plot - 1);
        settle();
    }
    /// Saves the plot under a name without an ending. @return whether the file is there
    bool saves(const char* name, std::size_t filter, const char* ending) {
        dialogs_.then_file(user_ / name, filter);
        press("SaveAs");
        return std::filesystem::exists(user_ / (std::string{name} + "." + ending));
    }
    static QComboBox* list() { return plots()->findChild<QComboBox*>(QStringLiteral("PlotList")); }
    static bool offers(int plot) {
        return qobject_cast<QStandardItemModel*>(list()->model())->item(plot - 1)->isEnabled();
    }
};

TEST_F(PlotWiringTest, GraphicsShowsTheHydrographAfterARun) {
    run_year();
    ASSERT_NE(open_plots(), nullptr);
    EXPECT_EQ(from_qt(list()->currentText()), "Runoff (Measured vs Computed)");
    const QWidget* first = plots();
    EXPECT_EQ(open_plots(), first) << "there is one window";
}

TEST_F(PlotWiringTest, BeforeARunPlotsOfInputsAreOffered) {
    ASSERT_NE(open_plots(), nullptr);
    EXPECT_EQ(list()->currentIndex(), -1);
    EXPECT_FALSE(offers(1));
    EXPECT_TRUE(offers(2));
    run_year();
    EXPECT_NE(plots(), nullptr) << "it stays open beside the run";
    EXPECT_TRUE(offers(1));
}

TEST_F(PlotWiringTest, TheListFollowsTheSimulationAndTheSnowMode) {
    run_year();
    open_plots();
    ASSERT_TRUE(offers(1));
    find<QTableView>("DBGrid1")->selectRow(0);
    settle();
    EXPECT_FALSE(offers(1));
    EXPECT_EQ(list()->currentIndex(), 0) << "the picture stays";
    find<QTableView>("DBGrid1")->selectRow(static_cast<int>(k_water_year));
    settle();
    EXPECT_TRUE(offers(1));
    EXPECT_TRUE(offers(14));
    choose("mnuOptItem(0)");
    EXPECT_FALSE(offers(14));
    EXPECT_FALSE(offers(2));
}

TEST_F(PlotWiringTest, AnEditTurnsComputedPlotsOff) {
    run_year();
    open_plots();
    type(0, "Another name");
    settle();
    EXPECT_FALSE(offers(1));
    EXPECT_TRUE(offers(2));
}

TEST_F(PlotWiringTest, AnotherBasinClosesThePlots) {
    open_plots();
    session_.basin.Basin_Changed = false;
    choose("mnuFileItem(0)");
    EXPECT_EQ(plots(), nullptr);
    dialogs_.then_file(user_ / "ellervane.mdb");
    session_.basin.Basin_Changed = false;
    choose("mnuFileItem(1)");
    ASSERT_NE(open_plots(), nullptr);
    dialogs_.then_file(user_ / "ellervane.mdb");
    session_.basin.Basin_Changed = false;
    choose("mnuFileItem(1)");
    EXPECT_EQ(plots(), nullptr);
}

TEST_F(PlotWiringTest, SaveAsClosesThePlotsAndACancelLeavesThem) {
    open_plots();
    dialogs_.then_file(std::nullopt);
    choose("mnuFileItem(5)");
    EXPECT_NE(plots(), nullptr);
    dialogs_.then_file(user_ / "copy.mdb");
    choose("mnuFileItem(5)");
    EXPECT_EQ(plots(), nullptr);
}

TEST_F(PlotWiringTest, ASaveKeepsThePlotAndItsDataCanBeReadAgain) {
    run_year();
    QWidget* window = open_plots();
    auto* maximum = window->findChild<QLineEdit*>(QStringLiteral("bartext2"));
    const QString before = maximum->text();
    choose("mnuFileItem(4)");
    ASSERT_EQ(plots(), window);
    EXPECT_EQ(maximum->text(), before);
    list()->setCurrentIndex(1);
    emit list()->activated(1);
    settle();
    EXPECT_NE(maximum->text(), before) << "another plot was read from the saved basin";
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(PlotWiringTest, AfterASaveThePlotCanBeRescaledAndSaved) {
    run_year();
    const QWidget* window = open_plots();
    choose("mnuFileItem(4)");
    ASSERT_EQ(plots(), window);
    auto* maximum = window->findChild<QLineEdit*>(QStringLiteral("bartext2"));
    maximum->selectAll();
    QTest::keyClicks(maximum, QStringLiteral("7777"));
    press("Redraw");
    EXPECT_FALSE(tool("Redraw")->isVisible());
    EXPECT_EQ(maximum->text(), QStringLiteral("7777"));
    press("ZoomOut");
    EXPECT_EQ(maximum->text(), QStringLiteral("7777"));
    EXPECT_TRUE(saves("picture", k_bitmap_filter, "bmp"));
    EXPECT_TRUE(saves("flow", k_slurp_filter, "flx"));
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(PlotWiringTest, TheEndOfTheProgramClosesThePlots) {
    open_plots();
    session_.basin.Basin_Changed = false;
    window_->close();
    EXPECT_EQ(plots(), nullptr);
}

TEST_F(PlotWiringTest, ADeletedSimulationLeavesThePicture) {
    run_year();
    open_plots();
    dialogs_.then(Answer::Yes);
    choose("mnuEditItmDelete(0)");
    EXPECT_NE(plots(), nullptr);
    EXPECT_EQ(list()->currentIndex(), 0);
    EXPECT_FALSE(offers(1));
}

TEST_F(PlotWiringTest, ThePictureOfADeletedSimulationIsViewedAndSavedButNotItsFlow) {
    run_year();
    QWidget* window = open_plots();
    auto* maximum = window->findChild<QLineEdit*>(QStringLiteral("bartext2"));
    const QString whole = maximum->text();
    dialogs_.then(Answer::Yes);
    choose("mnuEditItmDelete(0)");
    const std::size_t told = dialogs_.messages().size();
    press("GridLn");
    press("ZoomOut");
    window->resize(1000, 650);
    settle();
    EXPECT_EQ(maximum->text(), whole);
    EXPECT_TRUE(saves("picture", k_bitmap_filter, "bmp"));
    EXPECT_EQ(dialogs_.messages().size(), told);
    EXPECT_FALSE(saves("flow", k_slurp_filter, "flx"));
    ASSERT_EQ(dialogs_.messages().size(), told + 1);
    EXPECT_THAT(last_message().text, testing::HasSubstr("no longer those of this plot"));
    pick(1);
    ASSERT_EQ(dialogs_.messages().size(), told + 2) << "a plot that is off, picked by its signal";
    EXPECT_EQ(last_message().title, "Plotting error");
    EXPECT_EQ(maximum->text(), whole);
    EXPECT_TRUE(tool("SaveAs")->isEnabled());
}

TEST_F(PlotWiringTest, AZoneOfADeletedSimulationIsRefusedAndItsPlotStays) {
    run_year();
    open_plots();
    pick(2);
    auto* zones = plots()->findChild<QComboBox*>(QStringLiteral("ZoneList"));
    ASSERT_TRUE(zones->isEnabled());
    const QString shown = zones->currentText();
    dialogs_.then(Answer::Yes);
    choose("mnuEditItmDelete(0)");
    const std::size_t told = dialogs_.messages().size();
    emit zones->activated(0);
    settle();
    ASSERT_EQ(dialogs_.messages().size(), told + 1);
    EXPECT_EQ(last_message().text,
              "Plots show a simulation, and none is selected. Select one in the simulation table.");
    EXPECT_EQ(zones->currentText(), shown) << "the list shows the zones that stand";
    EXPECT_TRUE(tool("SaveAs")->isEnabled());
    // Another simulation makes the same plot of its own data.
    auto* simulations = find<QTableView>("DBGrid1");
    const QPoint first = simulations->visualRect(simulations->model()->index(0, 0)).center();
    QTest::mouseClick(simulations->viewport(), Qt::LeftButton, Qt::NoModifier, first);
    settle();
    ASSERT_EQ(session_.basin.current_row, 0U);
    emit zones->activated(0);
    settle();
    EXPECT_EQ(dialogs_.messages().size(), told + 1) << last_message().text;
    EXPECT_EQ(from_qt(zones->currentText()), "Zone A");
}

}  // namespace
}  // namespace nivora
