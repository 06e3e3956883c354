// A run of a simulation by its name, in a basin file that is opened for the run alone.
#pragma once

#include "engine/run_driver.h"
#include "store/basin_opening.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace nivora {

/// Which simulation of which file to run, and how.
struct NamedRun {
    std::filesystem::path basin = {};
    std::string simulation = {};  ///< in upper or lower case
    RunChoice choice = {};
    bool no_snow = false;
    std::vector<std::string> lag_shares = {};  ///< texts of a custom lag distribution; empty for none
    std::chrono::milliseconds wait = {};       ///< for another program that works on the basin
};

/// Reads a basin that is open and selects a simulation; false after a message that names the known ones.
[[nodiscard]] bool select_by_name(BasinDatabase& database, const std::filesystem::path& file,
                                  const std::string& simulation, BasinState& basin, Dialogs& dialogs);

/// Whether every zone has an area greater than zero; false after a message.
[[nodiscard]] bool every_zone_has_area(const BasinState& basin, Dialogs& dialogs);

/// The last step before a run that has passed all its checks: removes damaged results from the file and reads
/// the basin again. @return whether the simulation is still there
[[nodiscard]] bool make_basin_ready(OpenBasin& open, const std::filesystem::path& file,
                                    const std::string& simulation, std::chrono::milliseconds wait,
                                    BasinState& basin, Dialogs& dialogs);

/// Opens the basin, makes all checks of a run, runs the simulation and stores its table. What is refused
/// before the table is built leaves the file as it is.
///
/// @param table gets the rows, if it is not null and the table was stored
/// @throws StoreError if the basin can't be read
RunOutcome run_by_name(const NamedRun& named, RunContext context, SimResults* table = nullptr);

}  // namespace nivora
