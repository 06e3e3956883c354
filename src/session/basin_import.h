// The import of a legacy file into the open basin.
#pragma once

#include "session/session.h"

namespace nivora {

/// Asks for a legacy file and brings it into the working file: zones, daily variables and a parameter table.
/// The definition of its simulation is then the working record, to be added through its window.
///
/// @return whether there is a definition to add; otherwise the basin is as it was, and the user knows why
[[nodiscard]] bool import_basin(Session& session);

}  // namespace nivora
