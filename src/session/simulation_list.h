// The list of simulations as the main window handles it:
// adding and deleting simulations, and the effect on its menus.
#pragma once

#include "session/session.h"

#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// Asks for the name of a new simulation, makes its empty parameter table and prepares its working record.
/// @return whether there is a definition to edit. @throws StoreError
[[nodiscard]] bool name_new_simulation(Session& session);

/// Deletes a row of the grid with its parameter table; no simulation is selected then. @throws StoreError
void delete_simulation_row(Session& session, std::size_t row);

/// Asks for a name and copies a row of the grid with its parameter table and its scenarios; the copy is the
/// current simulation then. @return the names of the copied scenarios; nothing if the user gave no name.
/// @throws StoreError, with the basin as it was
std::optional<std::vector<std::string>> duplicate_simulation_row(Session& session, std::size_t row);

/// Asks for another name of a simulation and gives it to all that knows the simulation by its name.
/// @return its former name; nothing if it keeps its name. @throws StoreError, with the basin as it was
std::optional<std::string> rename_simulation_row(Session& session, std::size_t row);

/// Updates what can be chosen after the window of a definition has closed: the grid may have a new row.
///
/// @param row_before the current row when the window opened
void definition_was_closed(Session& session, bool accepted, std::optional<std::size_t> row_before);

/// Updates buttons and menus after rows were added or removed.
void Repaint_Sim_Grid(Session& session);

/// Updates the commands after an edit of the simulation grid.
void edited_simulation(Session& session);

}  // namespace nivora
