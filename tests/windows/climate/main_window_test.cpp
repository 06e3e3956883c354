#include "tests/climate/climate_run_fixture.h"
#include "tests/shell/main_window_fixture.h"
#include "widgets/qt_text.h"
#include "windows/climate/frmCtrlClim.h"

#include <QCheckBox>
#include <QToolBar>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* k_read_only = " (Read-only during climate change processing)";

/// The main window while an evaluation is under way in the window of the six steps.
class MainWindowMeanwhileTest : public MainWindowTest {
protected:
    MainWindowMeanwhileTest() {
        const SixDays small;
        const auto file = user_ / "six.mdb";
        small.write(file);
        write_scenario(file, k_scenario, static_cast<double>(SixDays::winter_end()), {small.plus_one});
        dialogs_.then_file(file);
        choose("mnuFileItem(1)");
    }

    void open_climate_run() {
        choose("mnuRunClim");
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->isVisible() && top->objectName() == QStringLiteral("frmCtrlClim"))
                climate_ = qobject_cast<frmCtrlClim*>(top);
        }
        ASSERT_NE(climate_, nullptr);
        climate_->findChild<QComboBox*>(QStringLiteral("CmboScenario"))->setCurrentIndex(0);
    }
    void run_to(int last) {
        for (int step = 1; step <= last; ++step) {
            if (step == 5) dialogs_.then_text("0").then_text("0");
            climate_->findChild<QCheckBox*>(QStringLiteral("Check1(%1)").arg(step - 1))->click();
            ASSERT_EQ(session_.climate.steps_done, step);
        }
    }
    void press_in_climate_run(int index) {
        climate_->findChild<QPushButton*>(QStringLiteral("Command1(%1)").arg(index))->click();
    }

    /// Those of the elements that an evaluation disables which are enabled at present.
    std::vector<std::string> usable() {
        std::vector<std::string> names;
        for (const char* name : {"mnuFile", "mnuOpt", "mnuRun", "mnuTools"}) {
            if (enabled(name)) names.emplace_back(name);
        }
        for (const char* name : {"Command1(0)", "Command1(1)", "Command1(2)"}) {
            if (find<QPushButton>(name)->isEnabled()) names.emplace_back(name);
        }
        for (const QToolBar* bar : window_->findChildren<QToolBar*>()) {
            if (bar->isEnabled()) names.push_back(from_qt(bar->objectName()));
        }
        return names;
    }
    std::string run_caption() { return from_qt(find<QAction>("mnuRun")->text()); }
    std::string title_of_daily_window(const char* entry) {
        std::string title;
        look_at_modal("frmData", [&](QWidget* editor) { title = from_qt(editor->windowTitle()); });
        choose(entry);
        EXPECT_TRUE(seen_) << entry;
        seen_ = false;
        return title;
    }

    frmCtrlClim* climate_ = nullptr;
};

TEST_F(MainWindowMeanwhileTest, OffersNoFilesRunsToolsOrSimulations) {
    const std::vector<std::string> before = usable();
    ASSERT_GE(before.size(), 8U);  // four menus, three buttons, the toolbar
    open_climate_run();
    EXPECT_THAT(usable(), testing::IsEmpty());
    EXPECT_TRUE(enabled("mnuData"));
    press_in_climate_run(0);
    EXPECT_EQ(usable(), before);
}

TEST_F(MainWindowMeanwhileTest, TheRunMenuNamesTheStepAndGetsItsNameBack) {
    open_climate_run();
    EXPECT_EQ(run_caption(), "&Run");
    run_to(2);
    EXPECT_EQ(run_caption(), "Running Step2");
    press_in_climate_run(1);
    EXPECT_EQ(run_caption(), "&Run");
    open_climate_run();
    run_to(6);
    EXPECT_EQ(run_caption(), "Run completed");
    press_in_climate_run(0);
    EXPECT_EQ(run_caption(), "&Run");
}

TEST_F(MainWindowMeanwhileTest, ReportsAndPlotsAreDisabledFromStepFourToTheEnd) {
    open_climate_run();
    run_to(3);
    EXPECT_TRUE(enabled("mnuReports"));
    EXPECT_TRUE(enabled("mnuWinGraphics"));
    climate_->findChild<QCheckBox*>(QStringLiteral("Check1(3)"))->click();
    EXPECT_FALSE(enabled("mnuReports"));
    EXPECT_FALSE(enabled("mnuWinGraphics"));
    press_in_climate_run(1);
    EXPECT_TRUE(enabled("mnuReports"));
    EXPECT_TRUE(enabled("mnuWinGraphics"));
}

TEST_F(MainWindowMeanwhileTest, ResultsCanBeOpenedBetweenSteps) {
    EXPECT_FALSE(enabled("mnuDataOpt(7)"));
    open_climate_run();
    run_to(1);
    EXPECT_TRUE(enabled("mnuDataOpt(7)"));
    EXPECT_THAT(title_of_daily_window("mnuDataOpt(7)"), HasSubstr(k_read_only));
}

TEST_F(MainWindowMeanwhileTest, DailyWindowsAreReadOnlyWhileStepsAreMissing) {
    EXPECT_THAT(title_of_daily_window("mnuDataOptVar(1)"), testing::Not(HasSubstr(k_read_only)));
    open_climate_run();
    EXPECT_THAT(title_of_daily_window("mnuDataOptVar(1)"), testing::Not(HasSubstr(k_read_only)));
    run_to(1);
    EXPECT_THAT(title_of_daily_window("mnuDataOptVar(1)"), HasSubstr(k_read_only));
    EXPECT_THAT(title_of_daily_window("mnuDataOpt(5)"), HasSubstr(k_read_only));
    press_in_climate_run(1);  // Abort
    EXPECT_THAT(title_of_daily_window("mnuDataOptVar(1)"), testing::Not(HasSubstr(k_read_only)));
    open_climate_run();
    run_to(6);
    EXPECT_THAT(title_of_daily_window("mnuDataOptVar(1)"), testing::Not(HasSubstr(k_read_only)));
}

TEST_F(MainWindowMeanwhileTest, AnOrdinaryRunAfterItIsNoClimateRun) {
    open_climate_run();
    run_to(6);
    press_in_climate_run(0);
    EXPECT_EQ(session_.run.ClimateStep, 6);
    choose("mnuRunSimVar(1)");
    EXPECT_EQ(session_.run.ClimateStep, 0);
}

TEST_F(MainWindowMeanwhileTest, TheScenarioWindowOpensFromTheDataMenu) {
    std::string shown;
    look_at_modal("frmCC", [&](QWidget* window) {
        shown = from_qt(window->findChild<QComboBox*>(QStringLiteral("DBCombo1"))->currentText());
    });
    choose("mnuDataOpt(2)");
    EXPECT_TRUE(seen_);
    EXPECT_EQ(shown, "Warmer");
}

TEST_F(MainWindowMeanwhileTest, TheVariablesOfAScenarioAreShownReadOnly) {
    std::string title;
    bool editable = true;
    look_at_modal("frmCC", [&](QWidget* window) {
        look_at_modal("frmData", [&](QWidget* editor) {
            title = from_qt(editor->windowTitle());
            const auto* cells = editor->findChild<QTableView*>(QStringLiteral("Spread"))->model();
            editable = (cells->flags(cells->index(0, 1)) & Qt::ItemIsEditable) != 0;
        });
        window->findChild<QPushButton*>(QStringLiteral("Command2(3)"))->click();
    });
    choose("mnuDataOpt(2)");
    EXPECT_THAT(title, HasSubstr("Climate Change Scenario Warmer 03/30/2001 to 04/04/2001"));
    EXPECT_FALSE(editable);
}

TEST_F(MainWindowMeanwhileTest, TheSimulationStaysWhileTheWindowIsOpen) {
    open_climate_run();
    run_to(4);
    find<QAction>("mnuEditItmDelete(0)")->trigger();
    find<QAction>("mnuEditItmInsert(0)")->trigger();
    EXPECT_EQ(session_.basin.simulations.size(), 1U);
    EXPECT_FALSE(enabled("mnuReports"));
    // A click on the row of the simulation enables nothing that step 4 has disabled.
    auto* grid = find<QTableView>("DBGrid1");
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                      grid->visualRect(grid->model()->index(0, 2)).center());
    EXPECT_FALSE(enabled("mnuReports"));
    EXPECT_FALSE(enabled("mnuWinGraphics"));
    EXPECT_EQ(grid->currentIndex().row(), 0);
}

TEST_F(MainWindowMeanwhileTest, ADefinitionEnablesNothingThatTheEvaluationDisabled) {
    open_climate_run();
    run_to(4);
    BasinDatabase{session_.basin.Work_File, Access::ReadWrite}.execute(
        "UPDATE SimResults SET MDCexcl = NULL");
    dialogs_.then_text("0");
    climate_->findChild<QCheckBox*>(QStringLiteral("Check1(4)"))->click();  // suspended: data are missing
    ASSERT_FALSE(enabled("mnuDataOpt(7)"));
    bool accepted = false;
    look_at_modal("SimOptions", [&](QWidget* definition) {
        for (auto* button : definition->findChildren<QPushButton*>()) {
            if (button->text() != QStringLiteral("&Accept")) continue;
            accepted = true;
            button->click();
        }
    });
    choose("mnuDataOpt(0)");
    ASSERT_TRUE(seen_ && accepted);
    EXPECT_FALSE(enabled("mnuDataOpt(7)"));
    EXPECT_FALSE(enabled("mnuWinGraphics"));
    EXPECT_FALSE(enabled("mnuReports"));
}

TEST_F(MainWindowMeanwhileTest, TheResultsOfAnEarlierRunCloseWithTheWindow) {
    choose("mnuRunSimVar(1)");
    const auto shown = [] {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->isVisible() && top->objectName() == QStringLiteral("Results")) return true;
        }
        return false;
    };
    ASSERT_TRUE(shown());
    open_climate_run();
    EXPECT_TRUE(shown());
    press_in_climate_run(0);
    EXPECT_FALSE(shown());
}

}  // namespace
}  // namespace nivora
