// What can be chosen in the main window: one function for each event that changes it. Only these functions
// write `ShellState`. The caller then updates the window with Desktop::refresh_main_window.
#pragma once

#include "session/session.h"

namespace nivora {

// The life of a basin

/// The main window starts again, for a basin that is created, opened or saved.
void window_was_reset(Session& session);
void program_was_started(Session& session);
/// A basin was read from a file.
void basin_was_read(Session& session);
/// A new basin without a file name is open.
void basin_is_new(Session& session);
/// A basin got a file name.
void basin_was_named(Session& session);
/// The boxes and grids show a basin that was read, saved or imported.
void basin_is_shown(Session& session);
/// A basin is open again after a crash, at whichever stage of its definition it was.
void basin_was_recovered(Session& session);
void basin_was_imported(Session& session);

// The stages of a definition

void units_were_fixed(Session& session);
void zones_were_fixed(Session& session);
void zone_areas_were_typed(Session& session);

// Simulations

void simulation_was_selected(Session& session);
void simulation_was_edited(Session& session);
void simulation_was_deleted(Session& session);
/// A simulation has another name, or a copy: the basin can be saved, and results are as they were.
void simulation_was_renamed(Session& session);
/// A run was completed: its results can be reported.
void simulation_was_run(Session& session);
/// A simulation was added or deleted.
void simulations_have_changed(Session& session);
/// A simulation that can run is selected.
void runs_are_possible(Session& session);
void no_snow_was_switched(Session& session);

// Windows that are open beside the main window

void daily_editor_button_was_pressed(Session& session);
void daily_editor_was_closed(Session& session);
void evaluation_was_opened(Session& session);
/// @param caption of the Run menu, which names the step
void evaluation_step_is_shown(Session& session, const std::string& caption);
/// From here until the end of the evaluation there are no results of the present climate.
void evaluation_left_results_behind(Session& session);
void evaluation_was_finished(Session& session);
void evaluation_was_closed(Session& session, const std::string& caption);

}  // namespace nivora
