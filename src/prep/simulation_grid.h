// The rules of the simulation grid: edits of its cells, and deleting a row.
#pragma once

#include "prep/prep_state.h"
#include "store/database.h"

#include <optional>
#include <string>
#include <string_view>

namespace nivora {

/// Makes a date text as long as its mask: "m/d/yyyy" in any mix becomes "mm/dd/yyyy".
[[nodiscard]] std::string Date_Size(std::string text);

/// The items of the lists in columns 5 to 12; none for the other columns.
[[nodiscard]] std::vector<std::string> simulation_list(int column);

/// Takes a text into a cell of the simulation grid, columns 1 to 17; a list takes its item or its number.
/// Sets what a change sets. @return false where the cell can't hold it: a text where a number or a date
/// belongs
bool edit_simulation_cell(const PrepContext& context, std::size_t row, int column, std::string_view text);

/// What is wrong with a cell that is left. The repair is made once the message was shown.
[[nodiscard]] std::optional<Message> left_simulation_cell_problem(const BasinState& basin, std::size_t row,
                                                                  int column);
/// Gives the cell back what it may hold.
void repair_simulation_cell(BasinState& basin, std::size_t row, int column);

/// "Are you sure you want to delete ...?"
[[nodiscard]] Message delete_simulation_question(const BasinState& basin, std::size_t row);

/// Removes a row of the grid and the parameter table of its name; the last row becomes the current one, and
/// no simulation is selected. @throws StoreError
void Delete_Simulation(const PrepContext& context, BasinDatabase& database, std::size_t row);

}  // namespace nivora
