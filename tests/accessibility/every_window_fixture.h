// Opens every window of the program, one after the other, on the sample basin.
#pragma once

#include "climate/scenario_definitions.h"
#include "plots/line_attributes.h"
#include "prep/data_menu.h"
#include "shell/frmAbout.h"
#include "shell/frmNVRHelp.h"
#include "shell/frmSplash.h"
#include "tests/shell/main_window_fixture.h"
#include "widgets/desktop_dialogs.h"
#include "widgets/grid_view.h"
#include "widgets/print_dialog.h"
#include "widgets/qt_text.h"
#include "windows/climate/frmCC.h"
#include "windows/climate/frmCtrlClim.h"
#include "windows/engine/Results.h"
#include "windows/engine/frmRuns.h"
#include "windows/engine/frmTimeLagDist.h"
#include "windows/plots/frmColorDef.h"
#include "windows/plots/frmLineAtt.h"
#include "windows/plots/frmNVRPlot.h"
#include "windows/prep/SimOptions.h"
#include "windows/prep/frmData.h"
#include "windows/prep/frmDataCheck.h"
#include "windows/prep/frmLongTermAvg.h"
#include "windows/prep/frmParameterChange.h"
#include "windows/prep/frmPopulate.h"
#include "windows/prep/frmTableExport.h"
#include "windows/prep/frmTableImport.h"
#include "windows/reports/frmFileDisp.h"
#include "windows/reports/frmPrint.h"

#include <gmock/gmock.h>

#include <QCheckBox>
#include <QTimer>
#include <functional>
#include <set>
#include <string>

namespace nivora {

/// A window as a test sees it: the class, and what it shows if a class is opened in several ways.
struct OpenedWindow {
    std::string name;
    QWidget& window;
};

class EveryWindowTest : public WithMainWindow<OffscreenTest> {
protected:
    using Visit = std::function<void(const OpenedWindow&)>;

    EveryWindowTest() {
        make_program_folder();
        start_main_window();
        settle();
        open_sample();
        find<QTableView>("DBGrid1")->selectRow(1);
        settle();
    }

    /// Opens each window, shows it to the visitor, and closes it.
    void for_each_window(const Visit& visit) {
        visit_ = visit;
        show("frmNVR", *window_);
        show_windows_of_a_run();
        show_plain_windows();
        show_preparing_windows();
        show_climate_windows();
        show_boxes();
    }

    /// The classes that were shown.
    [[nodiscard]] const std::set<std::string>& shown_classes() const { return shown_; }

private:
    void show(const std::string& name, QWidget& window) {
        shown_.insert(name.substr(0, name.find(' ')));
        window.show();
        window.activateWindow();
        settle();
        settle();
        visit_({name, window});
    }
    template <typename Window>
    void show_and_close(const std::string& name, Window& window) {
        show(name, window);
        window.close();
        settle();
    }

    static QWidget* top(const char* name) {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->objectName() == QString::fromUtf8(name) && top->isVisible()) return top;
        }
        return nullptr;
    }
    void show_top(const char* name) {
        QWidget* window = top(name);
        ASSERT_NE(window, nullptr) << name;
        show_and_close(name, *window);
    }
    [[nodiscard]] WindowContext context() { return {session_, quick_help_, program_.path(), printing_}; }

    void show_windows_of_a_run() {
        choose("mnuRunSimVar(1)");
        show_top("Results");
        choose("mnuWinGraphics");
        show_top("frmNVRPlot");
        frmRuns runs(context());
        runs.fill();
        show_and_close("frmRuns", runs);
        frmDataCheck check(context());
        check.look();
        show_and_close("frmDataCheck", check);
        frmTableImport table_import(context());
        show_and_close("frmTableImport", table_import);
        frmTableExport table(context());
        show_and_close("frmTableExport", table);
        frmPrint reports(context());
        show_and_close("frmPrint", reports);
        frmFileDisp display(context());
        display.show();
        display.findChild<QAction*>(QStringLiteral("mnuRptItm(6)"))->trigger();
        show_and_close("frmFileDisp", display);
    }

    void show_plain_windows() {
        frmTimeLagDist lag(context());
        show_and_close("frmTimeLagDist", lag);
        frmNVRHelp help(context());
        help.show_topic(0);
        show_and_close("frmNVRHelp", help);
        frmSplash splash(session_, true);
        show_and_close("frmSplash", splash);
        frmAbout about;
        show_and_close("frmAbout", about);
        frmColorDef strip(context(), colours_, nullptr);
        show_and_close("frmColorDef", strip);
        frmLineAtt lines(context(), colours_, {.edited_line = 2, .curves = 4, .fills = false});
        show_and_close("frmLineAtt lines", lines);
        frmLineAtt fills(context(), colours_, {.edited_line = 1, .curves = 3, .fills = true});
        show_and_close("frmLineAtt fills", fills);
        PageSetup page;
        PrintDialog print({QStringLiteral("Office printer")}, {.page = page});
        show_and_close("PrintDialog", print);
    }

    void show_preparing_windows() {
        frmPopulate populate(context());
        show_and_close("frmPopulate", populate);
        session_.prep.SimOptions_Mode = SimOptionsMode::Edit;
        SimOptions options(context());
        ASSERT_TRUE(options.open());
        show_and_close("SimOptions", options);
        show_data(DataEntry::Variables, "frmData variables");
        show_data(DataEntry::Parameters, "frmData parameters");
        show_data(DataEntry::Results, "frmData results");
        frmParameterChange change(context());
        ASSERT_TRUE(change.open());
        show_and_close("frmParameterChange", change);
        frmLongTermAvg averages(context());
        ASSERT_TRUE(averages.open());
        show_and_close("frmLongTermAvg", averages);
    }

    void show_data(DataEntry entry, const std::string& name) {
        {
            const PrepContext prep{session_.basin, session_.prep, dialogs_};
            BasinDatabase database{session_.basin.Work_File, Access::ReadWrite};
            ASSERT_EQ(mnuDataOpt_Click(prep, database, entry), DataOutcome::ShowEditor);
        }
        frmData data(context());
        ASSERT_TRUE(data.open());
        show_and_close(name, data);
    }

    void show_climate_windows() {
        {
            BasinDatabase database{session_.basin.Work_File, Access::ReadWrite};
            ASSERT_FALSE(create_scenario(database, session_.basin, "warmer"));
            auto scenarios = open_scenarios(database, session_.basin.Current_Sim_Name, dialogs_);
            Scenario& scenario = scenarios.front();
            scenario.rows = {{.variable = 1,
                              .start = session_.basin.Current_Start,
                              .end = session_.basin.Current_End,
                              .action = 0,
                              .factor = 2.0F,
                              .zones = 0}};
            store_scenario(database, scenario);
        }
        frmCC scenarios(context());
        ASSERT_TRUE(scenarios.open());
        show_and_close("frmCC", scenarios);
        frmCtrlClim steps(context());
        ASSERT_TRUE(steps.open());
        steps.show();
        steps.findChild<QComboBox*>(QStringLiteral("CmboScenario"))->setCurrentIndex(0);
        for (int step = 0; step < 2; ++step)
            steps.findChild<QCheckBox*>(QStringLiteral("Check1(%1)").arg(step))->click();
        show("frmCtrlClim", steps);
        dialogs_.then(Answer::Yes);
        steps.close();
        settle();
    }

    /// The boxes that ask a user; each is closed once it was seen.
    void show_boxes() {
        DesktopDialogs user;
        show_modal("QMessageBox");
        user.message({.text = "Save the changes?", .title = "Nivora", .buttons = Buttons::YesNoCancel});
        show_modal("ChoiceBox");
        user.choose({.text = "Recover the basin?", .title = "Nivora", .buttons = {"Recover", "Discard"}});
        show_modal("QInputDialog");
        user.input({.prompt = "Days:", .title = "Forecast", .proposed = "7"});
    }
    void show_modal(const std::string& name) {
        QTimer::singleShot(0, qApp, [this, name] {
            QWidget* box = QApplication::activeModalWidget();
            if (box == nullptr) return;
            show(name, *box);
            box->close();
        });
    }

    Visit visit_;
    std::set<std::string> shown_;
    ColourDialog colours_;
};

}  // namespace nivora
