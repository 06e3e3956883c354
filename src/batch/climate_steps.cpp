#include "batch/climate_steps.h"

#include "base/text.h"
#include "store/table_io.h"

#include <fmt/format.h>

namespace nivora {

std::optional<ScenarioIndexRow> stored_scenario(BasinDatabase& database, const BasinState& basin,
                                                const std::string& scenario, BatchDialogs& dialogs) {
    std::string names;
    for (const ScenarioIndexRow& row :
         read_table<ScenarioIndexRow>(database, template_table(k_scenario_index))) {
        if (!same_name(row.simulation, basin.Current_Sim_Name)) continue;
        if (same_name(row.scenario, k_no_scenario)) continue;
        if (same_name(row.scenario, scenario)) return row;
        names += (names.empty() ? "'" : ", '") + row.scenario + "'";
    }
    dialogs.report_problem("No such scenario",
                           fmt::format("The simulation '{}' has no scenario '{}'. It has: {}.",
                                       basin.Current_Sim_Name, scenario, names.empty() ? "none" : names));
    return std::nullopt;
}

}  // namespace nivora
