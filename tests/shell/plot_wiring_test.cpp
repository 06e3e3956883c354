// When the plot window opens, follows the basin and closes.
#include "tests/shell/main_window_fixture.h"
#include "widgets/qt_text.h"

#include <gmock/gmock.h>

#include <QStandardItemModel>

namespace nivora {
namespace {

constexpr std::size_t k_water_year = 1;  ///< the row of "ellervane-1997-98" in the sample

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

}  // namespace
}  // namespace nivora
