#include "batch/selected_simulation.h"

#include "engine/named_run.h"

namespace nivora {

bool select_in(Session& session, BasinDatabase& database, const std::filesystem::path& file,
               const std::string& simulation, BatchDialogs& dialogs) {
    return select_by_name(database, file, simulation, session.basin, dialogs);
}

}  // namespace nivora
