// Copies of simulations and new names for them, from the context menu of the simulation grid.
#include "store/transactions.h"
#include "tests/shell/simulation_fixture.h"
#include "windows/engine/Results.h"

#include <QContextMenuEvent>
#include <QStatusBar>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class SimulationNamesWindowTest : public SimulationWindowTest {
protected:
    /// Chooses an entry of the context menu on a row, from 1.
    void choose_on(int number, const char* entry) {
        go_to(number, 1);
        auto* action = menu_entry(entry);
        ASSERT_NE(action, nullptr);
        ASSERT_TRUE(action->isEnabled());
        action->trigger();
        QTest::qWait(1);
    }
    QAction* menu_entry(const char* entry) {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint{}, QPoint{});
        QApplication::sendEvent(grid()->viewport(), &event);
        menu_ = grid()->findChild<QMenu*>(QStringLiteral("mnuGrid"));
        return menu_ == nullptr ? nullptr : menu_->findChild<QAction*>(QString::fromUtf8(entry));
    }
    void TearDown() override {
        delete menu_.data();
        SimulationWindowTest::TearDown();
    }
    std::vector<std::string> names() {
        std::vector<std::string> names;
        for (int number = 1; number <= grid()->model()->rowCount(); ++number)
            names.push_back(cell(number, 1));
        return names;
    }
    QWidget* results() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->objectName() == QStringLiteral("Results")) return window;
        }
        return nullptr;
    }

    QPointer<QMenu> menu_;
};

TEST_F(SimulationNamesWindowTest, ACopyIsTheCurrentSimulation) {
    dialogs_.then_text("dry & cold");
    choose_on(1, "gridDuplicate");
    EXPECT_EQ(dialogs_.inputs().back().proposed, "ellervane-1996 copy");
    EXPECT_THAT(names(), ElementsAre("ellervane-1996", "ellervane-1997-98", "dry & cold"));
    EXPECT_EQ(session_.basin.Current_Sim_Name, "dry & cold");
    EXPECT_EQ(session_.basin.current_row, 2U);
    EXPECT_EQ(grid()->currentIndex().row(), 2);
    EXPECT_EQ(label(), "dry && cold");
    EXPECT_EQ(count("[dry & cold]"), 1830);  // 366 days of five zones
    EXPECT_EQ(cell(3, 3), "01/01/1996");
    EXPECT_EQ(from_qt(window_->statusBar()->currentMessage()), "'dry & cold' was made.");
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_TRUE(enabled("mnuFileItem(4)"));
    EXPECT_EQ(grid(), QApplication::focusWidget());
}

TEST_F(SimulationNamesWindowTest, ACopyRunsAndIsSaved) {
    dialogs_.then_text("dry");
    choose_on(1, "gridDuplicate");
    choose("mnuRunSimVar(1)");
    const float r2 = session_.run.CoefficientR2;
    EXPECT_EQ(session_.run.LastRunSimulation, "dry");
    go_to(1, 1);
    choose("mnuRunSimVar(1)");
    EXPECT_EQ(session_.run.LastRunSimulation, "ellervane-1996");
    EXPECT_EQ(session_.run.CoefficientR2, r2);
    choose("mnuFileItem(4)");
    BasinDatabase saved{session_.basin.Basin_File, Access::ReadOnly};
    const auto index = read_table<Simulation>(saved, template_table(k_simulation_index));
    ASSERT_EQ(index.size(), 3U);
    EXPECT_EQ(index[2].name, "dry");
    EXPECT_TRUE(saved.has_table("dry"));
}

TEST_F(SimulationNamesWindowTest, ARenamedSimulationKeepsItsResults) {
    go_to(1, 1);
    choose("mnuRunSimVar(1)");
    ASSERT_EQ(session_.run.LastRunSimulation, "ellervane-1996");
    dialogs_.then_text("measured");
    choose_on(1, "gridRename");
    EXPECT_EQ(dialogs_.inputs().back().title, "Rename the simulation 'ellervane-1996'");
    EXPECT_THAT(names(), ElementsAre("measured", "ellervane-1997-98"));
    EXPECT_EQ(label(), "measured");
    EXPECT_EQ(session_.run.LastRunSimulation, "measured");
    EXPECT_TRUE(session_.basin.Output_Valid);
    EXPECT_FALSE(session_.basin.Input_Changed);
    EXPECT_TRUE(enabled("mnuReports"));
    ASSERT_NE(results(), nullptr);
    EXPECT_EQ(from_qt(results()->findChild<QLabel*>(QStringLiteral("Lbl(8)"))->text()), "measured");
    EXPECT_TRUE(has_table("measured"));
    EXPECT_FALSE(has_table("ellervane-1996"));
}

TEST_F(SimulationNamesWindowTest, ARenamedSimulationIsSavedUnderItsName) {
    dialogs_.then_text("measured");
    choose_on(2, "gridRename");
    EXPECT_EQ(session_.basin.Current_Sim_Name, "measured");
    choose("mnuFileItem(4)");
    const auto file = session_.basin.Basin_File;
    BasinDatabase saved{file, Access::ReadOnly};
    EXPECT_EQ(read_table<Simulation>(saved, template_table(k_simulation_index))[1].name, "measured");
    EXPECT_FALSE(saved.has_table("ellervane-1997-98"));
}

TEST_F(SimulationNamesWindowTest, AParameterIsChangedInItsWindow) {
    go_to(1, 1);
    choose("mnuRunSimVar(1)");
    ASSERT_TRUE(session_.basin.Output_Valid);
    look_at_modal("frmParameterChange", [](QWidget* window) {
        window->findChild<QLineEdit*>(QStringLiteral("txtNumber"))->setText(QStringLiteral("0.5"));
        press_in(window, 0);
    });
    choose_on(2, "gridChangeParameter");
    EXPECT_TRUE(seen_);
    // The first parameter is the lapse rate.
    EXPECT_EQ(count("[ellervane-1997-98] WHERE LapseRate = 0.5"), 1825);  // 365 days of five zones
    EXPECT_EQ(count("[ellervane-1996] WHERE LapseRate = 0.5"), 0);
    EXPECT_EQ(session_.basin.Current_Sim_Name, "ellervane-1997-98");
    EXPECT_TRUE(session_.basin.Input_Changed);
    EXPECT_FALSE(session_.basin.Output_Valid);
}

TEST_F(SimulationNamesWindowTest, CancelChangesNothing) {
    dialogs_.then_text(std::nullopt).then_text(std::nullopt);
    choose_on(1, "gridDuplicate");
    choose_on(1, "gridRename");
    EXPECT_EQ(rows(), 2U);
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(SimulationNamesWindowTest, AFileThatIsHeldIsToldAndChangesNothing) {
    BasinDatabase other{session_.basin.Work_File, Access::ReadWrite};
    const HeldTransaction holding{other};
    other.execute("DELETE FROM PhysicalData");
    dialogs_.then_text("dry");
    choose_on(1, "gridDuplicate");
    EXPECT_EQ(rows(), 2U);
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(SimulationNamesWindowTest, AnEvaluationThatIsOpenKeepsItsSimulation) {
    go_to(1, 1);
    session_.shell.climate_window = true;
    ASSERT_NE(menu_entry("gridDuplicate"), nullptr);
    EXPECT_FALSE(menu_->findChild<QAction*>(QStringLiteral("gridDuplicate"))->isEnabled());
    EXPECT_FALSE(menu_->findChild<QAction*>(QStringLiteral("gridRename"))->isEnabled());
    session_.shell.climate_window = false;
}

}  // namespace
}  // namespace nivora
