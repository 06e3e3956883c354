// What can be chosen in the main window, as plain values.
#pragma once

#include <string>

namespace nivora {

/// Enabled and visible elements of the main window that depend on the basin. The window shows them; the
/// functions of availability.h set them.
struct ShellState {
    // File menu
    bool save = false;
    bool save_as = true;

    // Edit menu: off from the press of a button of the daily editor until it closes
    bool edit_menu = true;

    // Data menu
    bool simulation_definition = true;
    bool scenario_definition = false;
    bool variables = false;
    bool variables_of_record = false;
    bool variables_of_simulation = false;
    bool parameters = false;

    // Run menu. The Results entry of the Data menu is RunState::results_enabled.
    bool run_menu = true;
    bool run_simulation = false;
    bool run_forecast = false;
    bool run_climate = false;
    bool melt_season = true;  ///< the melt season items of both kinds; off in no-snow mode

    /// The window of a climate evaluation is open: File, Options, Run and Tools, the toolbar and the buttons
    /// below the simulation grid are off.
    bool climate_window = false;
    std::string run_caption = "&Run";  ///< the caption of the Run menu

    // Tools, graphics, reports
    bool tools_menu = false;
    bool long_term_averages = false;
    bool graphics = false;
    bool reports = false;

    // Buttons below the simulation grid
    bool delete_simulation = false;
    bool edit_simulation = false;

    // The steps of a basin's definition
    bool units_list_shown = true;    ///< units are not chosen yet
    bool zones_box_shown = false;    ///< the number of zones is not entered yet
    bool zones_label_shown = false;  ///< the label of the number of zones
    bool zones_fixed_shown = false;  ///< the number of zones is fixed
};

}  // namespace nivora
