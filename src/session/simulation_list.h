// The list of simulations as the main window handles it: adding, deleting, and what follows in its menus.
#pragma once

#include "session/session.h"

#include <optional>

namespace nivora {

/// Asks for the name of a new simulation, makes its empty parameter table and prepares its working record.
/// @return whether there is a definition to edit. @throws StoreError
[[nodiscard]] bool name_new_simulation(Session& session);

/// Deletes a row of the grid with its parameter table; no simulation is selected then. @throws StoreError
void delete_simulation_row(Session& session, std::size_t row);

/// Brings what can be chosen in line with the grid, and with the row that was defined, once the window of a
/// definition has closed.
///
/// @param row_before the current row when the window opened
void definition_was_closed(Session& session, bool accepted, std::optional<std::size_t> row_before);

/// Buttons and entries after rows were added or removed.
void Repaint_Sim_Grid(Session& session);

/// What an edit of the simulation grid enables and disables.
void edited_simulation(Session& session);

}  // namespace nivora
