// Renders every window of the program with the sample basin into PNG files: nivora_screenshots <folder>.
// Needs no display: QT_QPA_PLATFORM=offscreen:configfile=screen.json, where the file beside this one stands
// for a screen on which every window has its full size. QT_SCALE_FACTOR=2 gives the pictures of a sharp
// screen. The same build draws the same bytes wherever and whenever it runs, since the manual of a package
// shows the pictures: the clock stands still, and basins have short relative paths.

#include "base/durable_file.h"
#include "plot_pictures.h"
#include "prep/data_menu.h"
#include "shell/frmAbout.h"
#include "shell/frmNVR.h"
#include "shell/frmNVRHelp.h"
#include "shell/frmSplash.h"
#include "widgets/colours.h"
#include "widgets/desktop_dialogs.h"
#include "widgets/desktop_printers.h"
#include "widgets/print_dialog.h"
#include "widgets/qt_text.h"
#include "windows/climate/frmCC.h"
#include "windows/climate/frmCtrlClim.h"
#include "windows/engine/Results.h"
#include "windows/engine/frmTimeLagDist.h"
#include "windows/plots/frmColorDef.h"
#include "windows/plots/frmLineAtt.h"
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

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>
#include <ctime>
#include <filesystem>
#include <iostream>
#include <string_view>

/// Stands before the C library's: what a picture dates, a run or a report, is dated the same in every build.
extern "C" std::time_t time(std::time_t* result) noexcept {
    constexpr std::time_t k_first_of_october_2026_nine_o_clock = 1790845200;
    if (result != nullptr) *result = k_first_of_october_2026_nine_o_clock;
    return k_first_of_october_2026_nine_o_clock;
}

namespace nivora {
namespace {

namespace fs = std::filesystem;

/// Shows the real boxes, takes a picture of each and answers so that the
/// work continues. Files come from `next_file`.
class PicturedDialogs : public DesktopDialogs {
public:
    explicit PicturedDialogs(fs::path folder) : folder_(std::move(folder)) {}

    Answer message(const Message& message) override {
        draw_soon();
        DesktopDialogs::message(message);
        return go_on_answer(message.buttons);
    }
    std::optional<std::string> input(const InputBox& box) override {
        draw_soon();
        DesktopDialogs::input(box);
        return "7";
    }
    std::optional<FileAnswer> file(const FileQuestion&) override { return FileAnswer{.file = next_file}; }

    fs::path next_file;
    const char* next_picture = nullptr;

private:
    void draw_soon() {
        QTimer::singleShot(50, qApp, [this] {
            QWidget* box = QApplication::activeModalWidget();
            if (box == nullptr) return;
            if (next_picture != nullptr) box->grab().save(picture(next_picture));
            next_picture = nullptr;
            box->close();
        });
    }
    [[nodiscard]] QString picture(const char* name) const { return to_qt(path_text(folder_ / name)); }

    fs::path folder_;
};

class Photographer {
public:
    explicit Photographer(const fs::path& pictures)
        : pictures_(fs::absolute(pictures)), program_(program_folder()), dialogs_(pictures_) {
        window_ = std::make_unique<frmNVR>(WindowContext{session_, quick_help_, program_, printing_});
        window_->answer(desktop_);
    }

    void work() {
        window_->start();
        settle();
        draw(*window_, "main-window-new-basin.png");
        new_basin();
        sample();
        menus();
        windows();
        plots();
        reports();
        preparing();
        climate();
    }

private:
    /// A writable program folder with the files that belong beside the program. It is named from the folder
    /// above, which becomes the current one, since that has another name in every run.
    fs::path program_folder() {
        fs::current_path(path_from_utf8(from_qt(scratch_.path())));
        fs::path folder{"basins"};
        fs::create_directory(folder);
        for (const char* name : {"null.mdb", "NIVORAHelp.txt", "quickhelp.txt", "climate_1.ss2"}) {
            fs::copy_file(fs::path{NIVORA_PROGRAM_FOLDER} / name, folder / name);
        }
        fs::copy_file(fs::path{NIVORA_PROGRAM_FOLDER} / "samples/ellervane.mdb", folder / "ellervane.mdb");
        return folder;
    }

    static void settle() {
        for (int i = 0; i < 5; ++i) QApplication::processEvents();
    }

    void draw(QWidget& widget, const char* name) {
        settle();
        widget.grab().save(to_qt(path_text(pictures_ / name)));
    }

    void trigger(const char* action) {
        window_->findChild<QAction*>(QString::fromUtf8(action))->trigger();
        settle();
    }

    void new_basin() {
        auto* units = window_->findChild<QComboBox*>(QStringLiteral("Combo1"));
        dialogs_.next_picture = "units-question.png";
        units->setCurrentIndex(0);
        fix_units(session_, Units::Metric);
        session_.dialogs.message(units_question());
        dialogs_.next_picture = "zones-question.png";
        session_.dialogs.message(zones_question());
        session_.desktop.refresh_main_window();
        draw(*window_, "main-window-zones.png");
    }

    void sample() {
        session_.basin.Basin_Changed = false;
        dialogs_.next_file = program_ / "ellervane.mdb";
        trigger("mnuFileItem(1)");
        window_->findChild<QTableView*>(QStringLiteral("DBGrid1"))->selectRow(1);
        draw(*window_, "main-window.png");
        trigger("mnuRunSimVar(1)");
        draw_top("Results", "results.png");
        dialogs_.next_picture = "forecast-input.png";
        trigger("mnuRunForVar(1)");
        draw_top("Results", "results-forecast.png");
        trigger("mnuRuns");
        draw_runs();
        window_->findChild<QToolButton*>(QStringLiteral("btnHelp"))->click();
        window_->explain_widget(window_->findChild<QLineEdit*>(QStringLiteral("Text(3)")));
        draw(*window_, "quickhelp.png");
        quick_help_.set_on(false);
    }

    /// The two runs of the sample, compared.
    void draw_runs() {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->objectName() != QStringLiteral("frmRuns")) continue;
            top->findChild<QTableView*>(QStringLiteral("grdRuns"))->selectAll();
        }
        draw_top("frmRuns", "runs.png");
    }

    void draw_top(const char* name, const char* picture) {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->objectName() != QString::fromUtf8(name) || !top->isVisible()) continue;
            draw(*top, picture);
            top->close();
        }
    }

    void menus() {
        for (const auto& [menu, picture] :
             {std::pair{"mnuFile", "recent-files.png"}, std::pair{"mnuRun", "run-menu.png"},
              std::pair{"mnuData", "data-menu.png"}, std::pair{"mnuOpt", "options-menu.png"}}) {
            auto* popup = window_->findChild<QMenu*>(QString::fromUtf8(menu));
            popup->popup(QPoint(0, 0));
            draw(*popup, picture);
            popup->hide();
        }
    }

    /// A file with refused rows, before and after a check.
    void tables() {
        const WindowContext context{session_, quick_help_, program_, printing_};
        const fs::path file = program_ / "stations.csv";
        write_whole_file(
            file, "Zone;Date;Precip (mm);Wind\nA;1985-10-01;12.5;3\nA;1985-06-31;0;2\nZ;1985-10-03;0;2\n");
        frmTableImport import(context);
        import.show_file(file);
        import.show();
        draw(import, "table-import.png");
        import.findChild<QPushButton*>(QStringLiteral("Command1(0)"))->click();
        draw(import, "table-import-refused.png");
        frmTableExport table(context);
        table.show();
        draw(table, "table-export.png");
    }

    void windows() {
        tables();
        const WindowContext context{session_, quick_help_, program_, printing_};
        frmTimeLagDist lag(context);
        lag.show();
        draw(lag, "time-lag.png");
        frmNVRHelp help(context);
        help.show_topic(0);
        help.show();
        draw(help, "help-window.png");
        frmSplash splash(session_, true);
        splash.show();
        draw(splash, "splash.png");
        frmAbout about;
        about.show();
        draw(about, "about.png");
        frmColorDef strip(context, colours_, nullptr);
        strip.show();
        draw(strip, "quickhelp-colours.png");
        frmLineAtt lines(context, colours_, {.edited_line = 2, .curves = 4, .fills = false});
        lines.show();
        draw(lines, "line-attributes.png");
        frmLineAtt fills(context, colours_, {.edited_line = 1, .curves = 3, .fills = true});
        fills.show();
        fills.findChild<QComboBox*>(QStringLiteral("Combo2"))->setCurrentIndex(4);
        draw(fills, "line-attributes-fill.png");
        PageSetup page;
        PrintDialog print({QStringLiteral("Office printer")}, {.page = page});
        print.show();
        draw(print, "print-dialog.png");
    }

    /// The plots of a year-round simulation of the sample.
    void plots() {
        trigger("mnuRunSimVar(1)");
        draw_top("Results", "results-year.png");
        trigger("mnuWinGraphics");
        QWidget* window = top("frmNVRPlot");
        if (window == nullptr) return;
        const Draw draw_into = [this](QWidget& widget, const std::string& name) {
            draw(widget, name.c_str());
        };
        draw_offered_plots(*window, "", draw_into);
        draw_plot_work(*window, draw_into);
        window->close();
    }

    static QWidget* top(const char* name) {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->objectName() == QString::fromUtf8(name) && top->isVisible()) return top;
        }
        return nullptr;
    }

    /// The choice of reports with three selected, and two reports as displayed. The sample was run before.
    void reports() {
        const WindowContext context{session_, quick_help_, program_, printing_};
        frmPrint choice(context);
        choice.show();
        for (const char* box : {"Check1(0)", "Check1(6)", "Check1(7)"})
            choice.findChild<QCheckBox*>(QString::fromUtf8(box))->click();
        choice.findChild<QRadioButton*>(QStringLiteral("Option1(1)"))->click();
        draw(choice, "output-definition.png");
        frmFileDisp display(context);
        display.show();
        display.findChild<QAction*>(QStringLiteral("mnuRptItm(6)"))->trigger();
        draw(display, "file-display.png");
        display.findChild<QAction*>(QStringLiteral("mnuRptItm(7)"))->trigger();
        draw(display, "file-display-summary.png");
    }

    /// The windows that define a basin by hand, filled with the sample.
    void preparing() {
        const WindowContext context{session_, quick_help_, program_, printing_};
        frmPopulate populate(context);
        populate.show();
        draw(populate, "populate.png");
        session_.prep.SimOptions_Mode = SimOptionsMode::Edit;
        SimOptions options(context);
        if (options.open()) {
            options.show();
            draw(options, "sim-options.png");
        }
        draw_data(DataEntry::Parameters, "data-parameters.png");
        draw_change();
        draw_data(DataEntry::Results, "data-results.png");
        draw_data(DataEntry::Variables, "data-variables.png");
        draw_data_check();
        frmLongTermAvg averages(context);
        if (!averages.open()) return;
        averages.show();
        averages.findChild<QPushButton*>(QStringLiteral("Command1(3)"))->click();
        draw(averages, "long-term-averages.png");
    }

    /// The degree-day factors of April and May, a tenth larger.
    void draw_change() {
        frmParameterChange change(WindowContext{session_, quick_help_, program_, printing_});
        if (!change.open()) return;
        change.findChild<QComboBox*>(QStringLiteral("cboParameter"))->setCurrentIndex(2);
        change.findChild<QComboBox*>(QStringLiteral("cboAction"))->setCurrentIndex(2);
        for (int month = 1; month <= 12; ++month) {
            change.findChild<QCheckBox*>(QStringLiteral("chkMonth(%1)").arg(month))
                ->setChecked(month == 4 || month == 5);
        }
        change.findChild<QLineEdit*>(QStringLiteral("txtNumber"))->setText(QStringLiteral("1.1"));
        change.show();
        draw(change, "parameter-change.png");
    }

    /// The list of what is likely to be wrong, of data into which some faults were put for the picture.
    void draw_data_check() {
        const fs::path sound = session_.basin.Work_File;
        const fs::path file = program_ / "faulty.mdb";
        fs::copy_file(session_.basin.Work_File, file, fs::copy_options::overwrite_existing);
        {
            BasinDatabase database{file, Access::ReadWrite};
            database.execute("UPDATE PhysicalData SET Precip = NULL WHERE Zone = 1 AND Date % 97 = 5");
            database.execute("UPDATE PhysicalData SET SCA = 1.5 WHERE Zone = 2 AND Date % 211 < 3");
            database.execute("UPDATE PhysicalData SET Tavg = 31 WHERE Zone = 1 AND Date % 301 = 7");
            database.execute("DELETE FROM PhysicalData WHERE Zone = 3 AND Date % 401 < 4");
        }
        session_.basin.Work_File = file;
        frmDataCheck check(WindowContext{session_, quick_help_, program_, printing_});
        check.look();
        check.show();
        draw(check, "check-data.png");
        session_.basin.Work_File = sound;
    }

    /// The daily editor, opened by an entry of the Data menu.
    void draw_data(DataEntry entry, const char* picture) {
        {
            const PrepContext prep{session_.basin, session_.prep, dialogs_};
            BasinDatabase database{session_.basin.Work_File, Access::ReadWrite};
            if (mnuDataOpt_Click(prep, database, entry) != DataOutcome::ShowEditor) return;
        }
        frmData data(WindowContext{session_, quick_help_, program_, printing_});
        if (!data.open()) return;
        data.show();
        draw(data, picture);
        data.close();
    }

    /// A warmer and wetter scenario of the sample, and its evaluation.
    void climate() {
        const WindowContext context{session_, quick_help_, program_, printing_};
        {
            BasinDatabase database{session_.basin.Work_File, Access::ReadWrite};
            if (create_scenario(database, session_.basin, "warmer")) return;
            auto scenarios = open_scenarios(database, session_.basin.Current_Sim_Name, dialogs_);
            Scenario& scenario = scenarios.front();
            const auto start = session_.basin.Current_Start;
            const auto end = session_.basin.Current_End;
            scenario.rows = {
                {.variable = 1, .start = start, .end = end, .action = 0, .factor = 2.0F, .zones = 0},
                {.variable = 2, .start = start, .end = end, .action = 1, .factor = 1.1F, .zones = 0}};
            scenario.index.winter_end_date = static_cast<double>(*start + 181);
            scenario.index.comments = "Two degrees warmer, a tenth more precipitation.";
            store_scenario(database, scenario);
        }
        frmCC scenarios(context);
        if (!scenarios.open()) return;
        scenarios.show();
        draw(scenarios, "climate-scenario.png");
        QTimer::singleShot(100, qApp, [this] { draw_top("frmData", "climate-variables.png"); });
        scenarios.findChild<QPushButton*>(QStringLiteral("Command2(3)"))->click();
        scenarios.close();
        frmCtrlClim steps(context);
        if (!steps.open()) return;
        steps.show();
        steps.findChild<QComboBox*>(QStringLiteral("CmboScenario"))->setCurrentIndex(0);
        for (int step = 0; step < k_climate_steps; ++step) {
            steps.findChild<QCheckBox*>(QStringLiteral("Check1(%1)").arg(step))->click();
            if (step != 1) continue;
            draw(steps, "climate-run-step2.png");
            draw_data(DataEntry::Results, "data-read-only.png");
        }
        trigger("mnuWinGraphics");
        if (QWidget* window = top("frmNVRPlot")) {
            draw_offered_plots(*window, "changed-", [this](QWidget& widget, const std::string& name) {
                draw(widget, name.c_str());
            });
        }
        auto* summary = steps.findChild<QTableView*>(QStringLiteral("vaSpread1"));
        emit summary->clicked(summary->model()->index(2, 2));
        draw(steps, "climate-run.png");
    }

    fs::path pictures_;
    QTemporaryDir scratch_;
    fs::path program_;
    PicturedDialogs dialogs_;
    Desktop desktop_;
    Session session_{dialogs_, desktop_};
    QuickHelp quick_help_;
    ColourDialog colours_;
    DesktopPrinters printers_;
    Printing printing_{session_, printers_};
    std::unique_ptr<frmNVR> window_;
};

}  // namespace
}  // namespace nivora

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const bool dark = argc == 3 && std::string_view{argv[2]} == "dark";
    if (argc != 2 && !dark) {
        std::cerr << "usage: nivora_screenshots <folder> [dark]\n";
        return 2;
    }
    qputenv("TZ", "UTC");
    if (dark) QApplication::setPalette(QPalette{QColor{45, 48, 52}});
    std::filesystem::create_directories(argv[1]);
    nivora::Photographer{argv[1]}.work();
    return 0;
}
