// Adds the rows that daily tables lack for a period.
#pragma once

#include "prep/prep_state.h"
#include "store/database.h"

namespace nivora {

/// The extent of the daily variables: number of rows, last zone, first and last day.
[[nodiscard]] RecordExtent Scan_Physical_Data(BasinDatabase& database);

/// Adds the daily rows that a table lacks for the period, after a question. The mode (`PrepState::Data_View`)
/// decides which table is written, and what: the daily variables, or the parameter table of a simulation. In
/// the mode Parameters it writes the first values of the working record into every row of the period, in the
/// mode Results it adds days without values. The period is that of the selected row of the simulation grid
/// or, with no row selected, the one that the caller set.
///
/// For the daily variables it asks only if days of the period are missing, for other tables always. It writes
/// everything or nothing, also within a transaction of the caller; a write sets `Basin_Changed` and
/// `Input_Changed`. In the mode Scenario it does nothing.
///
/// @param simulation_table the simulation's table; not used in the mode of the daily variables
/// @return the answer to its question; Ok if none was asked
/// @throws StoreError, std::invalid_argument if a first value or a date of the selected row is missing
Answer Build_Daily_Records(const PrepContext& context, BasinDatabase& database,
                           const std::string& simulation_table = {});

/// Adds what the daily variables lack in a period, with zeros in every field: such a day counts as measured,
/// while one that Build_Daily_Records added counts as missing.
///
/// @return how many rows it added
int add_missing_days_as_zeros(BasinDatabase& database, const Period& period, int zones);

}  // namespace nivora
