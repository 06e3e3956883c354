#include "session/availability.h"

#include "base/text.h"

namespace nivora {
namespace {

void allow_reports_and_plots(ShellState& shell, bool allowed) {
    shell.reports = allowed;
    shell.graphics = allowed;
}

}  // namespace

void window_was_reset(Session& session) {
    session.shell = ShellState{};
    session.shell.melt_season = !session.run.NoSnow;
}

void program_was_started(Session& session) {
    ShellState& shell = session.shell;
    shell.save = false;
    shell.save_as = true;
    // The basin of the last start may have simulations, but none is selected.
    shell.variables_of_record = false;
    shell.variables_of_simulation = false;
    shell.parameters = false;
    shell.scenario_definition = false;
}

void basin_was_read(Session& session) {
    ShellState& shell = session.shell;
    shell.units_list_shown = session.basin.basin_units == Units::NotFixed;
    if (session.basin.simulations.empty()) return;
    shell.save_as = true;
    shell.simulation_definition = true;
    shell.variables_of_record = true;
    shell.variables_of_simulation = true;
    shell.parameters = true;
    shell.scenario_definition = true;
    allow_reports_and_plots(shell, true);
}

void basin_is_new(Session& session) {
    window_was_reset(session);
    session.shell.save_as = false;
    session.run.results_enabled = false;
}

void basin_was_named(Session& session) {
    session.shell.save = true;
    session.shell.save_as = true;
}

void basin_is_shown(Session& session) {
    const BasinState& basin = session.basin;
    ShellState& shell = session.shell;
    shell.save = !basin.New_Basin;
    shell.save_as = true;
    if (!trimmed(basin.zones_text).empty()) {
        shell.zones_box_shown = false;
        shell.zones_fixed_shown = true;
        shell.zones_label_shown = true;
        shell.variables = true;
        shell.tools_menu = true;
    }
    const bool any = !basin.simulations.empty();
    if (any) {
        runs_are_possible(session);
        shell.run_menu = has_area(basin);
        shell.long_term_averages = true;
        shell.graphics = true;
    }
    shell.delete_simulation = any;
    shell.edit_simulation = any;
}

void basin_was_recovered(Session& session) {
    const BasinState& basin = session.basin;
    if (basin.New_Basin) {
        basin_is_new(session);
    } else {
        window_was_reset(session);
    }
    basin_was_read(session);
    if (!basin.simulations.empty()) return basin_is_shown(session);
    if (!basin.zones.empty()) {
        zones_were_fixed(session);
        session.shell.zones_label_shown = true;
        session.shell.run_menu = has_area(basin);
    } else if (basin.basin_units != Units::NotFixed) {
        units_were_fixed(session);
    }
    session.shell.save = !basin.New_Basin;
}

void basin_was_imported(Session& session) {
    session.shell.units_list_shown = session.basin.basin_units == Units::NotFixed;
}

void units_were_fixed(Session& session) {
    ShellState& shell = session.shell;
    shell.units_list_shown = false;
    shell.zones_label_shown = true;
    shell.zones_box_shown = true;
    shell.zones_fixed_shown = false;
}

void zones_were_fixed(Session& session) {
    ShellState& shell = session.shell;
    shell.zones_box_shown = false;
    shell.zones_fixed_shown = true;
    shell.variables = true;
    shell.tools_menu = true;
}

void zone_areas_were_typed(Session& session) { session.shell.run_menu = has_area(session.basin); }

void simulation_was_selected(Session& session) {
    ShellState& shell = session.shell;
    shell.scenario_definition = true;
    shell.variables = true;
    shell.variables_of_simulation = true;
    shell.parameters = true;
    runs_are_possible(session);
    if (!shell.climate_window) {  // otherwise the evaluation enables and disables what shows results
        session.run.results_enabled = true;
        allow_reports_and_plots(shell, true);
    }
    shell.run_menu = has_area(session.basin);
}

void simulation_was_edited(Session& session) {
    session.shell.save = !session.basin.New_Basin;
    session.shell.save_as = true;
    session.shell.reports = false;
}

void simulation_was_renamed(Session& session) {
    session.shell.save = !session.basin.New_Basin;
    session.shell.save_as = true;
}

void simulation_was_run(Session& session) { session.shell.reports = true; }

void simulation_was_deleted(Session& session) {
    ShellState& shell = session.shell;
    shell.run_simulation = false;
    shell.run_forecast = false;
    shell.run_climate = false;
    shell.variables_of_simulation = false;
    allow_reports_and_plots(shell, false);
}

void simulations_have_changed(Session& session) {
    const bool any = !session.basin.simulations.empty();
    ShellState& shell = session.shell;
    shell.delete_simulation = any;
    shell.edit_simulation = any;
    shell.simulation_definition = any;
    shell.variables_of_record = any;
    shell.long_term_averages = any;
}

void runs_are_possible(Session& session) {
    ShellState& shell = session.shell;
    shell.run_simulation = true;
    shell.run_forecast = true;
    shell.run_climate = !session.run.NoSnow;
}

void no_snow_was_switched(Session& session) {
    session.shell.melt_season = !session.run.NoSnow;
    session.shell.run_climate = !session.run.NoSnow && session.shell.run_simulation;
}

void daily_editor_button_was_pressed(Session& session) { session.shell.edit_menu = false; }

void daily_editor_was_closed(Session& session) { session.shell.edit_menu = true; }

void evaluation_was_opened(Session& session) { session.shell.climate_window = true; }

void evaluation_step_is_shown(Session& session, const std::string& caption) {
    session.shell.run_caption = caption;
}

void evaluation_left_results_behind(Session& session) { allow_reports_and_plots(session.shell, false); }

void evaluation_was_finished(Session& session) { allow_reports_and_plots(session.shell, true); }

void evaluation_was_closed(Session& session, const std::string& caption) {
    session.shell.climate_window = false;
    session.shell.run_caption = caption;
    allow_reports_and_plots(session.shell, true);
}

}  // namespace nivora
