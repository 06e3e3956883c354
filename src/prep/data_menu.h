// The checks before every view of daily data, and what each entry of the Data menu prepares.
#pragma once

#include "prep/prep_state.h"
#include "store/database.h"

namespace nivora {

/// Entries of the Data menu by their index.
enum class DataEntry { SimulationDefinition = 0, Scenarios = 2, Variables = 4, Parameters = 5, Results = 7 };

/// What follows once an entry's checks have passed.
enum class DataOutcome { Stopped, ShowDefinition, ShowScenarios, ShowEditor };

/// Checks that the rows of the requested period exist, offers to add them, and prepares the view. The rows
/// are added in the mode of the last view: to the daily variables, or to the current simulation's own table.
/// Added rows set `Basin_Changed` and `Input_Changed`. The definition of a simulation without a table opens
/// without a question, since its window can recreate the table. The entry Variables is for other windows,
/// which use it to check a simulation's variables; the menu itself opens a submenu there. Any failure ends
/// the command without a message.
[[nodiscard]] DataOutcome mnuDataOpt_Click(const PrepContext& context, BasinDatabase& database,
                                           DataEntry entry);

/// The same for the daily variables: index 0 the whole record, 1 the current simulation. Missing days are
/// added with zeros here. Errors of the store are shown.
[[nodiscard]] DataOutcome mnuDataOptVar_Click(const PrepContext& context, BasinDatabase& database, int index);

/// Prepares the view of the whole record as it is, without a question about days that it lacks.
[[nodiscard]] DataOutcome view_record(const PrepContext& context, BasinDatabase& database);

}  // namespace nivora
