// A simulation of a basin file as the commands work on it.
#pragma once

#include "batch/batch_dialogs.h"
#include "session/session.h"

#include <filesystem>
#include <string>

namespace nivora {

/// Opens the basin in the session and selects the simulation; false after a report.
[[nodiscard]] bool select_in(Session& session, const std::filesystem::path& file,
                             const std::string& simulation, BatchDialogs& dialogs);

}  // namespace nivora
