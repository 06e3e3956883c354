// The name of a new simulation, which is also the name of its parameter table.
#pragma once

#include "base/dialogs.h"
#include "store/database.h"

#include <optional>
#include <string>
#include <string_view>

namespace nivora {

/// Why a name can't be given to a simulation, as the prompt that asks for another; nothing if it can. Refused
/// are the characters . ! [ ] `, text that is not UTF-8, and names that the store reserves.
[[nodiscard]] std::optional<std::string> simulation_name_problem(std::string_view name);

/// Asks for the name of a new simulation and creates its empty parameter table.
///
/// A name that the program reserves for a table of its own is refused, too, even if that table does not
/// exist yet. The name of an existing table may be reused after a question, which deletes that table. The
/// tables of the basin itself and those of scenarios are never deleted: there a Yes only shows a message and
/// acts as a No.
///
/// @param proposed the name that the import offers; empty for a simulation that is added by hand
/// @return the name without blanks at its ends; nothing if the user gave none or kept the table
/// @throws StoreError
[[nodiscard]] std::optional<std::string> Add_Simulation_Name(BasinDatabase& database, Dialogs& dialogs,
                                                             const std::string& proposed);

/// Asks for a name and gives it to the results table, by the rules of a simulation's name.
///
/// @return the name; nothing if the user gave none or kept the table of that name
/// @throws StoreError
[[nodiscard]] std::optional<std::string> Name_Results_Table(BasinDatabase& database, Dialogs& dialogs);

}  // namespace nivora
