// The simulation of a basin file that a command works on.
#pragma once

#include "engine/batch_dialogs.h"
#include "session/session.h"
#include "store/basin_opening.h"

#include <filesystem>
#include <string>

namespace nivora {

/// Reads the basin into the session and selects the simulation; false after a report.
[[nodiscard]] bool select_in(Session& session, BasinDatabase& database, const std::filesystem::path& file,
                             const std::string& simulation, BatchDialogs& dialogs);

}  // namespace nivora
