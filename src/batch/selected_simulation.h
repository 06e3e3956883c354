// The simulation of a basin file that a command works on.
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

/// Whether every zone has an area greater than zero; reported if one has none.
[[nodiscard]] bool has_zone_areas(const BasinState& basin, BatchDialogs& dialogs);

/// The last step before a run that has passed all its checks: removes damaged results from the file and reads
/// the basin again. @return whether the simulation is still there
[[nodiscard]] bool make_ready(OpenBasin& basin, Session& session, const std::filesystem::path& file,
                              const std::string& simulation, std::chrono::milliseconds wait,
                              BatchDialogs& dialogs);

}  // namespace nivora
