// Simulations under another name: copies and new names.
#pragma once

#include "prep/prep_state.h"
#include "store/database.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// Why a name can't be given to a copy of a simulation, or to a simulation that is renamed, as the prompt
/// that asks for another; nothing if it can. Refused are the names that a new simulation can't have, those
/// that the program reserves, and those of tables, scenarios and other simulations of the basin.
///
/// @param renamed the row that gets the name: its own name, also in other letters, is free; nothing for a
/// copy
[[nodiscard]] std::optional<std::string> other_name_problem(BasinDatabase& database, const BasinState& basin,
                                                            std::string_view name,
                                                            std::optional<std::size_t> renamed);

/// Asks for the name of a copy of a simulation until it is free; nothing if the user gave none.
[[nodiscard]] std::optional<std::string> ask_copy_name(BasinDatabase& database, const PrepContext& context,
                                                       std::size_t row);
/// Asks for another name of a simulation; nothing if the user gave none, or the one that it has.
[[nodiscard]] std::optional<std::string> ask_new_name(BasinDatabase& database, const PrepContext& context,
                                                      std::size_t row);

/// What a copy of a simulation has.
struct SimulationCopy {
    std::size_t row = 0;                 ///< its row of the grid, the last
    std::vector<std::string> scenarios;  ///< the names of its scenarios
};

/// Copies a simulation with its parameter table and its scenarios; the copy is the last row of the grid, and
/// the selected one stays. A scenario's name is the name of its table, which no two can share: the copy of a
/// scenario has the name of the new simulation behind its own, in parentheses. A scenario whose table is
/// missing is left out. Results belong to the simulation that ran, and are not copied.
///
/// Sets `Basin_Changed`; no result depends on a copy.
/// @param name from ask_copy_name, or without an other_name_problem
/// @throws StoreError, with the file and the grid as they were
SimulationCopy duplicate_simulation(const PrepContext& context, BasinDatabase& database, std::size_t row,
                                    const std::string& name);

/// Gives a simulation another name: its row of the grid and of the index in the file, its parameter table,
/// the index rows of its scenarios, the current simulation, and what data preparation has chosen by its name.
/// The caller renames what else knows simulations by name.
///
/// Sets `Basin_Changed`; results stay valid.
/// @param name from ask_new_name, or without an other_name_problem
/// @throws StoreError, with the file and the grid as they were
void rename_simulation(const PrepContext& context, BasinDatabase& database, std::size_t row,
                       const std::string& name);

}  // namespace nivora
