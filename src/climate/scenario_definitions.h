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

/// The comments of a new scenario.
inline constexpr const char* k_new_scenario_comments = "Place your comments here!";

/// The content of the sheet beside the program: what the columns of the scenario grid offer.
struct ScenarioSheet {
    std::vector<std::string> headers;    ///< six
    std::vector<std::string> variables;  ///< by code
    std::vector<std::string> zones;      ///< "All", "A" ... for as many zones as a basin may have
};

/// Reads `climate_1.ss2` in the program's folder; nothing, after a message, if it is missing or
/// cannot be read.
[[nodiscard]] std::optional<ScenarioSheet> load_scenario_sheet(const std::filesystem::path& program_folder,
                                                               Dialogs& dialogs);

/// One scenario as the window edits it; the basin file holds it after it is stored.
struct Scenario {
    ScenarioIndexRow index;
    std::vector<ScenarioRow> rows;
    std::string fault;  ///< why the rows cannot be read; empty if they can
};

/// The scenarios of a simulation, without the placeholder. An index row whose table is missing is deleted
/// after a message. If a table cannot be read, its scenario is returned without rows, so that it does not
/// hide the others and can be deleted. @throws StoreError
[[nodiscard]] std::vector<Scenario> open_scenarios(BasinDatabase& database, const std::string& simulation,
                                                   Dialogs& dialogs);

/// The message for a scenario with a fault.
[[nodiscard]] Message unreadable_scenario_message(const Scenario& scenario);

/// Asks for a name and makes a scenario over the current simulation's period.
/// @return its name; nothing if the user gave none, or, after a message, an invalid one. @throws StoreError
[[nodiscard]] std::optional<std::string> new_scenario(BasinDatabase& database, const BasinState& basin,
                                                      Dialogs& dialogs);

/// Creates or replaces a scenario without questions. @return why the name is invalid, or nothing.
/// @throws StoreError
[[nodiscard]] std::optional<Message> create_scenario(BasinDatabase& database, const BasinState& basin,
                                                     const std::string& name);

/// Deletes a scenario after a question; the placeholder "None" replaces the last one of a simulation.
/// @return whether it was deleted. @throws StoreError
[[nodiscard]] bool delete_scenario(BasinDatabase& database, const std::string& simulation,
                                   const std::string& name, Dialogs& dialogs);

/// Stores the rows of a scenario, its comments and its winter end date. @throws StoreError
void store_scenario(BasinDatabase& database, const Scenario& scenario);

/// The winter end date of a new scenario: the start plus half
/// the period minus one day, half days included.
[[nodiscard]] double default_winter_end(DayCount start, DayCount end);

/// Why a typed winter end date is invalid; nothing if it is a date within the simulation.
[[nodiscard]] std::optional<Message> winter_end_problem(const BasinState& basin, std::string_view text);

/// The effect of a change of column 1 or 4 of a row. Columns count from 1.
struct RowChange {
    bool beep = false;
    bool kept = true;  ///< whether the chosen value stays
};
/// Sets the code of column 1, 4 or 6 of a row; nothing for an empty cell.
RowChange set_scenario_code(ScenarioRow& row, int column, std::optional<int> code);
/// Applies the rules for leaving column 4, or the row. @return whether the row changed
bool leave_scenario_row(ScenarioRow& row);

}  // namespace nivora
