// The scenarios of a simulation: their index rows, their tables, and the rules of their rows.
#pragma once

#include "base/dialogs.h"
#include "climate/scenario_codes.h"
#include "store/basin_store.h"
#include "store/database.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// The comments that a new scenario gets.
inline constexpr const char* k_new_scenario_comments = "Place your comments here!";

/// What the sheet that lies beside the program says about the columns of the scenario grid.
struct ScenarioSheet {
    std::vector<std::string> headers;    ///< six
    std::vector<std::string> variables;  ///< by code
    std::vector<std::string> zones;      ///< "All", "A" ... for as many zones as a basin may have
};

/// Reads `climate_1.ss2` in the program's folder; nothing where it is missing or unreadable, which the user
/// is told.
[[nodiscard]] std::optional<ScenarioSheet> load_scenario_sheet(const std::filesystem::path& program_folder,
                                                               Dialogs& dialogs);

/// One scenario as the window edits it. The basin file holds it once it was stored.
struct Scenario {
    ScenarioIndexRow index;
    std::vector<ScenarioRow> rows;
    std::string fault;  ///< why the rows can't be read; empty where they can
};

/// The scenarios of a simulation, without the placeholder. A row of the index whose table is missing is told
/// of and deleted. Where a table can't be read its scenario comes without rows, so that it does not hide the
/// others and can be deleted. @throws StoreError
[[nodiscard]] std::vector<Scenario> open_scenarios(BasinDatabase& database, const std::string& simulation,
                                                   Dialogs& dialogs);

/// What the user is told of a scenario with a fault.
[[nodiscard]] Message unreadable_scenario_message(const Scenario& scenario);

/// Asks for a name and makes a scenario over the current simulation's period.
/// @return its name; nothing where the user gave none or it was refused, which was shown. @throws StoreError
[[nodiscard]] std::optional<std::string> new_scenario(BasinDatabase& database, const BasinState& basin,
                                                      Dialogs& dialogs);

/// Makes or replaces a scenario under a name, without questions. @return why the name can't be given, or
/// nothing.
/// @throws StoreError
[[nodiscard]] std::optional<Message> create_scenario(BasinDatabase& database, const BasinState& basin,
                                                     const std::string& name);

/// Deletes a scenario after a question; the last one of a simulation leaves the placeholder "None".
/// @return whether it is gone. @throws StoreError
[[nodiscard]] bool delete_scenario(BasinDatabase& database, const std::string& simulation,
                                   const std::string& name, Dialogs& dialogs);

/// Stores the rows of a scenario, its comments and its winter end date. @throws StoreError
void store_scenario(BasinDatabase& database, const Scenario& scenario);

/// The winter end date that a new scenario gets: the start plus half the period minus one day, half days
/// included.
[[nodiscard]] double default_winter_end(DayCount start, DayCount end);

/// What is wrong with a winter end date that was typed; nothing where it is a date within the simulation.
[[nodiscard]] std::optional<Message> winter_end_problem(const BasinState& basin, std::string_view text);

/// What a change of column 1 or 4 of a row leads to. Columns count from 1.
struct RowChange {
    bool beep = false;
    bool kept = true;  ///< whether the value that was chosen stays
};
/// Takes a code into column 1, 4 or 6 of a row; nothing for an emptied cell.
RowChange set_scenario_code(ScenarioRow& row, int column, std::optional<int> code);
/// What leaving column 4, or the row, does to it. @return whether it changed
bool leave_scenario_row(ScenarioRow& row);

}  // namespace nivora
