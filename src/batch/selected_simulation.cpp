#include "batch/selected_simulation.h"

#include "engine/run_driver.h"

#include <fmt/format.h>

namespace nivora {

bool select_in(Session& session, BasinDatabase& database, const std::filesystem::path& file,
               const std::string& simulation, BatchDialogs& dialogs) {
    BasinState& basin = session.basin;
    basin.Basin_File = file;
    basin.Work_File = file;
    basin.New_Basin = false;
    read_basin(database, basin);
    if (const auto row = find_simulation(basin, simulation)) {
        select_simulation(basin, *row);
        return true;
    }
    std::string names;
    for (const Simulation& known : basin.simulations)
        names += (names.empty() ? "'" : ", '") + known.name + "'";
    dialogs.report_problem("No such simulation", fmt::format("The basin has no simulation '{}'. It has: {}.",
                                                             simulation, names.empty() ? "none" : names));
    return false;
}

bool has_zone_areas(const BasinState& basin, BatchDialogs& dialogs) {
    const auto problem = zone_area_problem(basin);
    if (problem) dialogs.message(problem->message);
    return !problem;
}

bool make_ready(OpenBasin& basin, Session& session, const std::filesystem::path& file,
                const std::string& simulation, std::chrono::milliseconds wait, BatchDialogs& dialogs) {
    if (!basin.has_damaged_results()) return true;
    drop_damaged_results(basin, wait);
    return select_in(session, basin.database(), file, simulation, dialogs);
}

}  // namespace nivora
