// The import of a legacy file into the open basin.
#pragma once

#include "session/session.h"

namespace nivora {

/// Asks for a legacy file and imports it into the working file: zones, daily variables and a parameter table.
/// The definition of its simulation becomes the working record, which the user then adds in its window.
///
/// @return whether there is a definition to add; otherwise, after a message, the basin is unchanged
[[nodiscard]] bool import_basin(Session& session);

}  // namespace nivora
