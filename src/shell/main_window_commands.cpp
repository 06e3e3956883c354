// What the entries of the menu bar and the buttons of the main window do.

#include "engine/run_driver.h"
#include "prep/simulation_grid.h"
#include "session/availability.h"
#include "session/simulation_list.h"
#include "shell/basin_grids.h"
#include "shell/frmAbout.h"
#include "shell/frmNVR.h"
#include "shell/frmNVRHelp.h"
#include "shell/frmSplash.h"
#include "widgets/busy_pointer.h"
#include "widgets/edit_target.h"
#include "widgets/grid_view.h"
#include "widgets/page_dialogs.h"
#include "widgets/qt_text.h"
#include "windows/climate/frmCC.h"
#include "windows/climate/frmCtrlClim.h"
#include "windows/engine/Results.h"
#include "windows/engine/frmTimeLagDist.h"
#include "windows/prep/SimOptions.h"
#include "windows/prep/frmData.h"
#include "windows/prep/frmLongTermAvg.h"
#include "windows/prep/frmPopulate.h"
#include "windows/reports/frmPrint.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QStandardPaths>

namespace nivora {
namespace {

constexpr int k_main_window_topic = 0;
constexpr int k_simulation_columns = 17;
constexpr int k_elevation_column = 2;

}  // namespace

void frmNVR::do_command(Command command) {
    switch (command) {
        case Command::New:
            if (life_.new_basin()) {
                confirmed_zones_.clear();
                boxes_[0]->setFocus();
                boxes_[0]->selectAll();
            }
            return;
        case Command::Open: confirmed_zones_.clear(); return life_.open();
        case Command::Save:
            if (!refuses_typed_box()) life_.save();
            return;
        case Command::SaveAs:
            if (!refuses_typed_box()) life_.save_as();
            return;
        case Command::Exit: close(); return;
        case Command::Import: return import_file();
        case Command::Cut: return edit_target_->cut();
        case Command::Copy: return edit_target_->copy();
        case Command::Paste: return edit_target_->paste();
        case Command::InsertRow: return add_simulation();
        case Command::DeleteRow: return delete_simulation();
        case Command::NoSnow: return toggle_snow();
        case Command::MeltTemperature:
        case Command::MeltRadiation: return fill_labels();
        case Command::ClearRecent: session().settings.recent_files.clear(); return menu_->refresh();
        case Command::SimulationDefinition: return choose_data(DataEntry::SimulationDefinition);
        case Command::Scenarios: return choose_data(DataEntry::Scenarios);
        case Command::ClimateRun: return show_climate_run();
        case Command::Parameters: return choose_data(DataEntry::Parameters);
        case Command::ResultsTable: return choose_data(DataEntry::Results);
        case Command::VariablesOfRecord: return choose_variables(0);
        case Command::VariablesOfSimulation: return choose_variables(1);
        case Command::LongTermAverages: return show_long_term_averages();
        case Command::OpeningRun: return open_run_menu();
        case Command::MeltSeasonSimulation: return run_simulation(0);
        case Command::YearRoundSimulation: return run_simulation(1);
        case Command::MeltSeasonForecast: return run_forecast(0);
        case Command::YearRoundForecast: return run_forecast(1);
        case Command::Convert:
            session().dialogs.message({.text = "Database conversion routine in development"});
            return;
        case Command::TimeLag: return show_time_lag();
        case Command::Reports: return show_reports();
        case Command::Help: return show_help_topic(k_main_window_topic);
        case Command::Welcome: frmSplash(session(), false, this).exec(); return;
        case Command::About: frmAbout(this).exec(); return;
        case Command::SystemInformation: return show_system_information();
        case Command::PageSetup: return Page_Setup(session().settings.page, this);
        case Command::None: return;
    }
}

/// What is typed counts before it is checked, so that the checks see what the run will see.
void frmNVR::open_run_menu() {
    if (!session().shell.run_simulation || context().quick_help.is_on()) return;
    commit_edits();
    if (refuses_typed_box()) return;
    if (const auto problem = run_menu_problem(session().basin)) return show_run_problem(*problem);
    ask_about_zones();
}

/// A menu only interrupts the work in a box, but a run and a save take what is typed there: it is checked as
/// if the box were left. True where it was refused.
bool frmNVR::refuses_typed_box() {
    if (!typed_box_) return false;
    const std::size_t box = *typed_box_;
    if (!left_box_problem(static_cast<BasinBox>(box), from_qt(boxes_.at(box)->text()),
                          session().basin.basin_units))
        return false;
    box_left(box);
    return true;
}

/// Asks once for values that are unlikely; the same values are not asked about again.
void frmNVR::ask_about_zones() {
    const auto unusual = unusual_zones(session().basin);
    if (!unusual || unusual->question.text == confirmed_zones_) return;
    if (session().dialogs.message(unusual->question) == Answer::Yes) {
        confirmed_zones_ = unusual->question.text;
        return;
    }
    zone_grid_->setFocus();
    zone_grid_->setCurrentIndex(zones_->index(unusual->zone - 1, unusual->column - 1));
}

void frmNVR::show_run_problem(const RunMenuProblem& problem) {
    if (problem.place == RunMenuProblem::Place::ReferenceElevation) {
        refuse(boxes_[2], problem.message);
        boxes_[2]->setFocus();
        return;
    }
    if (problem.place == RunMenuProblem::Place::None) {
        session().dialogs.message(problem.message);
        return;
    }
    zone_grid_->scrollTo(zones_->index(problem.zone - 1, k_elevation_column));
    zones_->mark_zone(problem.zone);
    session().dialogs.message(problem.message);
    zones_->mark_zone(0);
    zone_grid_->setFocus();
    zone_grid_->setCurrentIndex(zones_->index(problem.zone - 1, k_elevation_column));
}

/// The menu only tells of an area that is not above zero; no run starts with one.
bool frmNVR::zones_can_run() {
    commit_edits();
    const auto problem = zone_area_problem(session().basin);
    if (problem) show_run_problem(*problem);
    return !problem;
}

void frmNVR::show_area() {
    take_zone_areas(session());
    area_label_->setText(to_qt(session().basin.basin_area_text));
    menu_->refresh();
}

void frmNVR::run_simulation(int index) {
    choose_simulation(session().run);
    run(index);
}

void frmNVR::run_forecast(int index) {
    if (choose_forecast(session().run, session().dialogs, index)) run(index);
}

void frmNVR::run(int index) {
    if (!zones_can_run()) return;
    RunOutcome outcome;
    {
        const BusyPointer busy;
        outcome = start_run({session().basin, session().run, session().dialogs}, index);
    }
    menu_->refresh();
    show_simulations();
    if (outcome.statistics != StatisticsReach::Nothing) {
        show_results();
    } else {
        refresh_results();
    }
}

void frmNVR::toggle_snow() {
    if (const auto told = toggle_no_snow(session())) session().dialogs.message(*told);
    menu_->refresh();
}

void frmNVR::show_results() {
    if (!results_) results_ = std::make_unique<Results>(context(), nullptr);
    results_->fill();
    results_->show();
    results_->raise();
    results_->activateWindow();
}

void frmNVR::close_results() {
    if (results_) results_->close();
}

/// Statistics that still show say so where they are out of date.
void frmNVR::refresh_results() {
    if (results_) results_->refresh_status();
}

void frmNVR::show_time_lag() { frmTimeLagDist(context(), nullptr).show_modal(); }

void frmNVR::show_reports() {
    commit_edits();
    frmPrint(context(), nullptr).show_modal();
}

/// The help stays beside the window that asked for it: a modal window shuts out all others but those that it
/// called.
void frmNVR::show_help_topic(int topic) {
    if (!help_) help_ = std::make_unique<frmNVRHelp>(context(), nullptr);
    help_->show_topic(topic);
    QWidget* caller = QApplication::activeModalWidget();
    if (help_->caller() != caller) {
        help_->hide();
        help_->set_caller(caller);
    }
    help_->show();
    help_->raise();
    help_->activateWindow();
}

void frmNVR::show_system_information() {
    for (const char* tool : {"msinfo32", "kinfocenter", "hardinfo2", "hardinfo"}) {
        const QString program = QStandardPaths::findExecutable(QString::fromUtf8(tool));
        if (!program.isEmpty() && QProcess::startDetached(program, {})) return;
    }
    session().dialogs.message({.text = "System Information Is Unavailable At This Time"});
}

// While a climate evaluation is open its simulation stays, and no other joins it.

void frmNVR::add_simulation() {
    if (session().shell.climate_window) return;
    if (const auto problem = add_simulation_problem(session())) {
        session().dialogs.message(*problem);
        return;
    }
    commit_edits();
    try {
        if (!name_new_simulation(session())) return;
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
        return;
    }
    show_definition();
}

void frmNVR::delete_simulation() {
    if (session().shell.climate_window) return;
    commit_edits();
    const QModelIndex active = simulation_grid_->currentIndex();
    if (!active.isValid()) return;
    simulations_->mark(QRect(0, active.row(), k_simulation_columns, 1));
    const auto row = static_cast<std::size_t>(active.row());
    const bool confirmed =
        session().dialogs.message(delete_simulation_question(session().basin, row)) == Answer::Yes;
    simulations_->mark({});
    if (!confirmed) return;
    try {
        delete_simulation_row(session(), row);
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
    }
    refresh_main_window();
    // The last row becomes the active one, and is not selected.
    const bool filling = std::exchange(filling_, true);
    simulation_grid_->selectionModel()->setCurrentIndex(simulations_->index(simulations_->rowCount() - 1, 0),
                                                        QItemSelectionModel::NoUpdate);
    filling_ = filling;
    // The button may be off now: the focus would go on to the QuickHelp button.
    simulation_grid_->setFocus();
}

/// Brings buttons and menus in line with the grid, and with the row that was defined.
void frmNVR::show_added(bool defined, std::optional<std::size_t> row_before) {
    Repaint_Sim_Grid(session());
    // A definition that was refused in the end may have grown or changed its row.
    const auto row = session().basin.current_row;
    if (!row || (!defined && row == row_before)) return;
    choose_simulation_row(session(), *row);
    edited_simulation(session());
}

/// Shows the window of the definition at hand, and the grid with what came of it.
void frmNVR::show_definition() {
    const auto row_before = session().basin.current_row;
    SimOptions window(context(), nullptr);
    if (!window.open()) return;
    window.show_modal();
    show_added(window.accepted(), row_before);
    refresh_main_window();
}

void frmNVR::import_file() {
    if (!life_.import_file()) return;
    refresh_main_window();
    const auto row_before = session().basin.current_row;
    SimOptions window(context(), nullptr);
    if (window.open()) window.show_modal();
    show_added(window.accepted(), row_before);
    life_.imported();
}

/// Runs the checks of a Data entry on the working file and shows what they lead to.
template <typename Choose>
void frmNVR::follow(Choose choose) {
    commit_edits();
    DataOutcome outcome = DataOutcome::Stopped;
    try {
        BasinDatabase database{session().basin.Work_File, Access::ReadWrite};
        outcome = choose(PrepContext{session().basin, session().prep, session().dialogs}, database);
    } catch (const StoreError&) {
        // The command ends without a further word.
    }
    switch (outcome) {
        case DataOutcome::ShowDefinition: return show_definition();
        case DataOutcome::ShowEditor: return open_daily_editor();
        case DataOutcome::ShowScenarios: return show_scenarios();
        case DataOutcome::Stopped: return;
    }
}

void frmNVR::choose_data(DataEntry entry) {
    follow([entry](const PrepContext& prep, BasinDatabase& database) {
        return mnuDataOpt_Click(prep, database, entry);
    });
}

void frmNVR::choose_variables(int index) {
    follow([index](const PrepContext& prep, BasinDatabase& database) {
        return mnuDataOptVar_Click(prep, database, index);
    });
}

void frmNVR::show_scenarios() {
    frmCC window(context(), nullptr);
    if (window.open()) window.show_modal();
    refresh_main_window();
}

void frmNVR::show_climate_run() {
    if (!zones_can_run()) return;
    climate_ = std::make_unique<frmCtrlClim>(context(), nullptr);
    connect(climate_.get(), &frmCtrlClim::left, this, [this] {
        if (results_) results_->close();
    });
    if (climate_->open()) climate_->show();
}

void frmNVR::open_daily_editor() {
    frmData window(context(), nullptr);
    if (!window.open()) return;
    window.show_modal();
    daily_editor_was_closed(session());
    refresh_main_window();
}

void frmNVR::show_long_term_averages() {
    commit_edits();
    frmLongTermAvg window(context(), nullptr);
    if (!window.open()) return;
    window.show_modal();
    menu_->refresh();
    refresh_results();
}

void frmNVR::populate() { frmPopulate(context(), nullptr).show_modal(); }

void frmNVR::closeEvent(QCloseEvent* event) {
    if (!context().quick_help.is_on()) {
        // An evaluation that is not complete has its own question.
        if (climate_ && climate_->isVisible() && climate_->goes_on() && !climate_->close()) {
            event->ignore();
            return;
        }
        leaving_ = true;
        const bool ends = life_.may_exit();
        leaving_ = false;
        if (!ends) {
            event->ignore();
            return;
        }
    }
    NivoraWindow::closeEvent(event);
    if (!event->isAccepted()) return;
    if (climate_ && climate_->isVisible()) climate_->close();
    if (results_) results_->close();
    if (help_) help_->close();
    qApp->quit();
}

}  // namespace nivora
