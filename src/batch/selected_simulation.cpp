#include "batch/selected_simulation.h"

#include "engine/named_run.h"

namespace nivora {

bool select_in(Session& session, BasinDatabase& database, const std::filesystem::path& file,
               const std::string& simulation, BatchDialogs& dialogs) {
    return select_by_name(database, file, simulation, session.basin, dialogs);
}

bool has_zone_areas(const BasinState& basin, BatchDialogs& dialogs) {
    return every_zone_has_area(basin, dialogs);
}

bool make_ready(OpenBasin& basin, Session& session, const std::filesystem::path& file,
                const std::string& simulation, std::chrono::milliseconds wait, BatchDialogs& dialogs) {
    return make_basin_ready(basin, file, simulation, wait, session.basin, dialogs);
}

}  // namespace nivora
