// The table of long-term monthly averages in its present layout.
#pragma once

#include "store/database.h"

namespace nivora {

/// The three-letter name of a month, 1 to 12.
[[nodiscard]] const char* month_name(int month);

/// Brings `BasinAverages` to its present layout: creates it if it is missing, puts its fields in order if the
/// first one is not `Zone`, and, if there are fewer than twelve rows for each zone, writes them again with 0
/// in every average.
void Ensure_Monthly_Table(BasinDatabase& database);

}  // namespace nivora
