// What the entries of the menu bar and the buttons of the main window do.

#include "prep/data_check.h"
#include "session/availability.h"
#include "session/data_check_setting.h"
#include "session/data_commands.h"
#include "session/listed_runs.h"
#include "session/simulation_list.h"
#include "shell/basin_panel.h"
#include "shell/frmNVR.h"
#include "shell/simulations_panel.h"
#include "widgets/busy_pointer.h"
#include "widgets/edit_target.h"
#include "widgets/grid_view.h"
#include "widgets/page_dialogs.h"
#include "widgets/window_keys.h"

#include <QProcess>
#include <QStandardPaths>

namespace nivora {
namespace {

constexpr int k_main_window_topic = 0;

}  // namespace

void frmNVR::do_command(Command command) {
    switch (command) {
        case Command::New: return new_basin();
        case Command::Open: return open_basin();
        case Command::Save:
            if (!basin_->refuses_typed_box()) life_.save();
            return;
        case Command::SaveAs:
            if (!basin_->refuses_typed_box()) life_.save_as();
            return;
        case Command::Exit: close(); return;
        case Command::Import: return import_file();
        case Command::Cut: return edit_target_->cut();
        case Command::Copy: return edit_target_->copy();
        case Command::Paste: return edit_target_->paste();
        case Command::InsertRow: return add_simulation();
        case Command::DeleteRow: return delete_simulation();
        case Command::DuplicateSimulation: return duplicate_simulation();
        case Command::RenameSimulation: return rename_simulation();
        case Command::ChangeParameter: return change_parameter();
        case Command::Runs: return windows_.show_runs();
        case Command::CheckData: return check_data();
        case Command::ImportTable: return import_table();
        case Command::ExportTable: commit_edits(); return windows_.export_table();
        case Command::NoSnow: return toggle_snow();
        case Command::MeltTemperature:
        case Command::MeltRadiation: return show_labels();
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
        case Command::MeltSeasonSimulation: return run({.forecast = false, .index = 0});
        case Command::YearRoundSimulation: return run({.forecast = false, .index = 1});
        case Command::MeltSeasonForecast: return run({.forecast = true, .index = 0});
        case Command::YearRoundForecast: return run({.forecast = true, .index = 1});
        case Command::Convert:
            session().dialogs.message({.text = "Database conversion routine in development"});
            return;
        case Command::TimeLag: return windows_.edit_time_lag();
        case Command::Graphics: return show_plots();
        case Command::Reports: return show_reports();
        case Command::Help: return windows_.show_help_topic(k_main_window_topic);
        case Command::Welcome: return windows_.show_welcome(*this);
        case Command::About: return windows_.show_about(*this);
        case Command::SystemInformation: return show_system_information();
        case Command::PageSetup: return Page_Setup(session().settings.page, this);
        case Command::None: return;
    }
}

void frmNVR::new_basin() {
    if (!life_.new_basin()) return;
    zone_question_.forget();
    basin_->begin_naming();
}

void frmNVR::open_basin() {
    zone_question_.forget();
    life_.open();
}

void frmNVR::open_recent(std::size_t entry) {
    zone_question_.forget();
    life_.open_recent(entry);
}

void frmNVR::open_run_menu() {
    if (!session().shell.run_simulation || context().quick_help.is_on()) return;
    static_cast<void>(may_run());  // the menu opens anyway
}

/// What is being typed is stored before the check, so that the check and the run see the same values.
/// @return false after a message or an unanswered question
bool frmNVR::may_run() {
    commit_edits();
    if (basin_->refuses_typed_box()) return false;
    if (const auto problem = run_menu_problem(session().basin)) {
        basin_->show_problem(*problem);
        return false;
    }
    return zones_are_usual();
}

/// Asks about a zone that is unlike the others. @return whether there is none, or it is meant
bool frmNVR::zones_are_usual() {
    const auto unusual = zone_question_.open_for(session().basin);
    if (!unusual) return true;
    if (session().dialogs.message(unusual->question) == Answer::Yes) {
        zone_question_.confirm(*unusual);
        return true;
    }
    basin_->go_to_cell(unusual->zone - 1, unusual->column - 1);
    return false;
}

/// Repeats the last choice of the Run menu; without one, or where it is no longer offered, opens the menu.
void frmNVR::run_again() {
    const QString entry =
        last_choice_ ? QStringLiteral("mnuRun%1Var(%2)")
                           .arg(last_choice_->forecast ? QStringLiteral("For") : QStringLiteral("Sim"))
                           .arg(last_choice_->index)
                     : QString{};
    if (!last_choice_ || !can_be_chosen(*menu_->action(entry))) return menu_->open(QStringLiteral("mnuRun"));
    if (may_run()) run(*last_choice_);
}

/// The Run menu only warns of an area that is not above zero, but no run starts with one.
bool frmNVR::zones_can_run() {
    commit_edits();
    const auto problem = zone_area_problem(session().basin);
    if (problem) basin_->show_problem(*problem);
    return !problem;
}

void frmNVR::run(const RunChoice& choice) {
    last_choice_ = choice;
    if (!zones_can_run()) return;
    const RunContext run{session().basin, session().run, session().dialogs};
    const RunOutcome outcome = choose_and_run(run, choice, [&] {
        const BusyPointer busy;
        return start_run(run, choice.index);
    });
    if (outcome.completed) simulation_was_run(session());
    if (outcome.results_rebuilt) list_run(session(), outcome.completed);
    menu_->refresh();
    simulations_->show_rows();
    if (outcome.statistics != StatisticsReach::Nothing) windows_.show_results();
    windows_.refresh();
    if (outcome.missing) offer_missing_values(*outcome.missing);
}

/// After the message of a run that stopped on a missing value: leads to it, where the list has it.
void frmNVR::offer_missing_values(const MissingInput& missing) {
    const DailyPlace place{missing.zone, missing.day, missing.field};
    if (!missing_value_is_listed(session().basin, place)) return;
    const Answer answer =
        session().dialogs.message({.text = "The daily variables lack a value that the run needs. Show the "
                                           "missing values?",
                                   .title = "Missing value(s)",
                                   .icon = Icon::Question,
                                   .buttons = Buttons::YesNo});
    if (answer == Answer::Yes) windows_.show_missing_values(place, [this](const auto& it) { go_to(it); });
}

void frmNVR::toggle_snow() {
    if (const auto told = toggle_no_snow(session())) session().dialogs.message(*told);
    menu_->refresh();
    windows_.refresh();
}

void frmNVR::show_plots() {
    commit_edits();
    windows_.show_plots();
}

void frmNVR::show_reports() {
    commit_edits();
    windows_.choose_reports();
}

void frmNVR::show_system_information() {
    for (const char* tool : {"msinfo32", "kinfocenter", "hardinfo2", "hardinfo"}) {
        const QString program = QStandardPaths::findExecutable(QString::fromUtf8(tool));
        if (!program.isEmpty() && QProcess::startDetached(program, {})) return;
    }
    session().dialogs.message({.text = "System Information Is Unavailable At This Time"});
}

// While a climate evaluation is open, its simulation stays the current one and no simulation is added.

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
    const auto row = simulations_->row_to_delete();
    if (!row) return;
    try {
        delete_simulation_row(session(), *row);
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
    }
    refresh_main_window();
    simulations_->activate_last_row();
    // The button may be disabled now; the focus would move on to the QuickHelp button.
    simulations_->grid().setFocus();
}

/// Shows the window of the prepared definition, then its effect on the grid.
void frmNVR::show_definition() {
    const auto row_before = session().basin.current_row;
    const auto end = windows_.define_simulation();
    if (end == WindowKeeper::DefinitionEnd::NotOpened) return;
    definition_was_closed(session(), end == WindowKeeper::DefinitionEnd::Accepted, row_before);
    refresh_main_window();
}

void frmNVR::import_file() {
    if (!life_.import_file()) return;
    refresh_main_window();
    const auto row_before = session().basin.current_row;
    const auto end = windows_.define_simulation();
    definition_was_closed(session(), end == WindowKeeper::DefinitionEnd::Accepted, row_before);
    life_.imported();
}

/// Opens what the checks of a Data entry have prepared.
void frmNVR::follow(DataOutcome outcome) {
    switch (outcome) {
        case DataOutcome::ShowDefinition: return show_definition();
        case DataOutcome::ShowEditor: return open_daily_editor(std::nullopt);
        case DataOutcome::ShowScenarios: windows_.edit_scenarios(); return refresh_main_window();
        case DataOutcome::Stopped: return;
    }
}

void frmNVR::choose_data(DataEntry entry) {
    commit_edits();
    follow(choose_data_entry(session(), entry));
}

void frmNVR::choose_variables(int index) {
    commit_edits();
    follow(choose_daily_variables(session(), index));
}

/// Shows what is likely to be wrong in the daily variables, and opens the editor where the user wants to go.
void frmNVR::check_data() {
    commit_edits();
    windows_.show_data_check([this](const DataFinding& finding) { go_to(finding); });
}

void frmNVR::go_to(const DataFinding& finding) {
    commit_edits();
    if (view_record(session()) != DataOutcome::ShowEditor) return;
    open_daily_editor(DailyPlace{finding.zone, finding.first, std::string{finding.field()}});
}

void frmNVR::import_table() {
    commit_edits();
    if (!windows_.import_table()) return;
    refresh_main_window();
    windows_.look_at_data_again();
}

void frmNVR::show_climate_run() {
    if (zones_can_run()) windows_.show_climate_run();
}

void frmNVR::open_daily_editor(const std::optional<DailyPlace>& place) {
    if (!windows_.edit_daily_data(place)) return;
    daily_editor_was_closed(session());
    refresh_main_window();
    windows_.look_at_data_again();
}

void frmNVR::show_long_term_averages() {
    commit_edits();
    if (!windows_.edit_monthly_averages()) return;
    menu_->refresh();
    windows_.refresh();
}

}  // namespace nivora
