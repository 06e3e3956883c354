// The entries of the Data menu on the open basin.
#pragma once

#include "prep/data_menu.h"
#include "session/session.h"

namespace nivora {

// Each runs the checks of its entry on the working file and prepares the view. A working file that can't be
// opened ends the command without a message, as other failures of these checks do.

[[nodiscard]] DataOutcome choose_data_entry(Session& session, DataEntry entry);
/// @param index 0 the whole record, 1 the current simulation
[[nodiscard]] DataOutcome choose_daily_variables(Session& session, int index);

/// Prepares the view of the whole record as it is, for a place in it.
[[nodiscard]] DataOutcome view_record(Session& session);

}  // namespace nivora
