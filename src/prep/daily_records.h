// The rows that daily tables lack for a period.
#pragma once

#include "prep/prep_state.h"
#include "store/database.h"

namespace nivora {

/// The extent of the daily variables: number of rows, last zone, first and last day.
[[nodiscard]] RecordExtent Scan_Physical_Data(BasinDatabase& database);
/// The same of any daily table.
[[nodiscard]] RecordExtent scan_daily_table(BasinDatabase& database, std::string_view table);

/// Adds the daily rows that the table of the mode at hand (`PrepState::Data_View`) lacks for the period,
/// after a question; in the parameter table of a definition it writes the definition's first values, those of
/// the working record, into every row of the period. The period is that of the selected row of the simulation
/// grid, or, with no row selected, the one its caller set.
///
/// The daily variables are asked about where days of the period are missing, other tables at any time. All
/// that it writes is written, or nothing, also within a transaction of the caller. As the mode Scenario it
/// does nothing.
///
/// @return the answer to its question; Ok where none was asked
/// @throws StoreError, std::invalid_argument where a first value or a date of the selected row is missing
Answer Build_Daily_Records(const PrepContext& context, BasinDatabase& database);

/// Adds what the daily variables lack in a period, with zeros in every field: such a day counts as measured,
/// where one that Build_Daily_Records added counts as missing.
void add_missing_days_as_zeros(BasinDatabase& database, const Period& period, int zones);

}  // namespace nivora
