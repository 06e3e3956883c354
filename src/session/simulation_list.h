// The list of simulations as the main window handles it: adding, deleting, and what follows in its menus.
#pragma once

#include "session/session.h"

namespace nivora {

/// Asks for the name of a new simulation, makes its empty parameter table and prepares its working record.
/// @return whether there is a definition to edit. @throws StoreError
[[nodiscard]] bool name_new_simulation(Session& session);

/// Deletes a row of the grid with its parameter table; no simulation is selected then. @throws StoreError
void delete_simulation_row(Session& session, std::size_t row);

/// Buttons and entries after rows were added or removed.
void Repaint_Sim_Grid(Session& session);

/// What an edit of the simulation grid enables and disables.
void edited_simulation(Session& session);

}  // namespace nivora
