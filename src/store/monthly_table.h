// The table of long-term monthly averages in its present layout.
#pragma once

#include "store/database.h"

namespace nivora {

/// The three-letter name of a month, 1 to 12.
[[nodiscard]] const char* month_name(int month);

/// Brings `BasinAverages` to its present layout: made where it is missing, its fields put in order where the
/// first one is not `Zone`, and its twelve rows a zone made anew, with 0 in every average, where there are
/// fewer.
void Ensure_Monthly_Table(BasinDatabase& database);

}  // namespace nivora
