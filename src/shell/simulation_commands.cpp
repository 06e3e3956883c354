// The commands of the main window that copy and rename simulations.

#include "session/main_window_rules.h"
#include "session/simulation_list.h"
#include "shell/frmNVR.h"
#include "shell/simulations_panel.h"
#include "widgets/grid_view.h"
#include "widgets/qt_text.h"

#include <QStatusBar>

namespace nivora {
namespace {

constexpr int k_shown_milliseconds = 10'000;

std::string copied_text(const std::string& name, const std::vector<std::string>& scenarios) {
    if (scenarios.empty()) return "'" + name + "' was made.";
    std::string text = "'" + name + "' was made, with the scenarios ";
    for (std::size_t i = 0; i < scenarios.size(); ++i) text += (i == 0 ? "'" : ", '") + scenarios[i] + "'";
    return text + ".";
}

}  // namespace

// While a climate evaluation is open, its simulation stays the current one under its name.

void frmNVR::duplicate_simulation() {
    if (session().shell.climate_window) return;
    commit_edits();
    const auto row = simulations_->active_row();
    if (!row) return;
    try {
        const auto scenarios = duplicate_simulation_row(session(), *row);
        if (!scenarios) return;
        refresh_main_window();
        statusBar()->showMessage(to_qt(copied_text(session().basin.Current_Sim_Name, *scenarios)),
                                 k_shown_milliseconds);
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
    }
    simulations_->grid().setFocus();
}

void frmNVR::rename_simulation() {
    if (session().shell.climate_window) return;
    commit_edits();
    const auto row = simulations_->active_row();
    if (!row) return;
    try {
        const auto former = rename_simulation_row(session(), *row);
        if (!former) return;
        windows_.simulation_was_renamed(*former, session().basin.simulations.at(*row).name);
        refresh_main_window();
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
    }
    simulations_->grid().setFocus();
}

void frmNVR::change_parameter() {
    if (session().shell.climate_window) return;
    commit_edits();
    const auto row = simulations_->active_row();
    if (!row) return;
    // The active row is not the current simulation after another one was deleted.
    if (session().basin.current_row != row || session().basin.Current_Sim_Name == k_no_simulation)
        choose_simulation_row(session(), *row);
    windows_.change_parameter();
    refresh_main_window();
    simulations_->grid().setFocus();
}

}  // namespace nivora
