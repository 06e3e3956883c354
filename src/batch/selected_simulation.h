// A simulation of a basin file as the commands work on it.
#pragma once

#include "batch/batch_dialogs.h"
#include "session/session.h"
#include "store/basin_opening.h"

#include <filesystem>
#include <string>

namespace nivora {

/// Reads the basin into the session and selects the simulation; false after a report.
[[nodiscard]] bool select_in(Session& session, BasinDatabase& database, const std::filesystem::path& file,
                             const std::string& simulation, BatchDialogs& dialogs);

/// Whether every zone has an area greater than zero; reported where one has none.
[[nodiscard]] bool has_zone_areas(const BasinState& basin, BatchDialogs& dialogs);

/// The last step before a run, once nothing refuses it any more: takes damaged results out of the file and
/// reads the basin anew. @return whether the simulation is still there
[[nodiscard]] bool make_ready(OpenBasin& basin, Session& session, const std::filesystem::path& file,
                              const std::string& simulation, std::chrono::milliseconds wait,
                              BatchDialogs& dialogs);

}  // namespace nivora
