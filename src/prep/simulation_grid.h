// The rules of the simulation grid: edits of its cells, and deleting a row.
#pragma once

#include "prep/prep_state.h"
#include "store/database.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// Pads a date text to the length of its mask: "m/d/yyyy", with one or two digits each, becomes "mm/dd/yyyy".
[[nodiscard]] std::string Date_Size(std::string text);

/// The items of the lists in columns 5 to 12; none for the other columns.
[[nodiscard]] std::vector<std::string> simulation_list(int column);

/// Stores a text in a cell of the simulation grid, columns 1 to 17; a list accepts an item or its number, and
/// an emptied date becomes the first or the last day of 1980. Column 1, the name, is that of the parameter
/// table and can't be edited.
///
/// A change sets `Basin_Changed` and `Input_Changed`. The units of any row become `Units_Code`, while the
/// basin's own units stay. The dates of the selected row, if they make a period, become those of the current
/// simulation. The caller enables and disables controls of the main window.
///
/// @return false if the cell can't hold it, such as a text instead of a number or a date
bool edit_simulation_cell(const PrepContext& context, std::size_t row, int column, std::string_view text);

/// Why that function does not accept a text in a column: a clause without a full stop; empty if it does.
[[nodiscard]] std::string simulation_cell_refusal(int column, std::string_view text);

/// What is wrong with the temperatures of a simulation: Max/Min values by zone.
[[nodiscard]] std::optional<Message> max_min_problem(const Simulation& simulation);

/// What is wrong with a cell that is left: a period of more than 366 days or of less than two, in columns 3
/// and 4 of any row but the first, or Max/Min temperatures by zone in column 7. The caller shows the message,
/// then repairs the cell.
[[nodiscard]] std::optional<Message> left_simulation_cell_problem(const BasinState& basin, std::size_t row,
                                                                  int column);
/// Restores a valid value: for a date that of the current simulation, for column 7 "Basinwide".
void repair_simulation_cell(BasinState& basin, std::size_t row, int column);

/// "Are you sure you want to delete ...?"
[[nodiscard]] Message delete_simulation_question(const BasinState& basin, std::size_t row);

/// Removes a row of the grid and the parameter table of its name, if there is one; the last row becomes the
/// active one, and no simulation is selected. A table of the basin itself or of a scenario stays. A row that
/// does not exist changes nothing. @throws StoreError, with the row in place
void Delete_Simulation(const PrepContext& context, BasinDatabase& database, std::size_t row);

}  // namespace nivora
