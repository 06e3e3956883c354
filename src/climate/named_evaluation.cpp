#include "climate/named_evaluation.h"

#include "base/text.h"
#include "engine/named_run.h"
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

bool evaluate_by_name(const NamedEvaluation& named, EvaluationContext context) {
    auto& [basin, run, climate, dialogs] = context;
    OpenBasin open = open_to_run(named.basin, named.wait);
    if (!select_by_name(open.database(), named.basin, named.simulation, basin, dialogs)) return false;
    const auto scenario = stored_scenario(open.database(), basin, named.scenario, dialogs);
    if (!scenario || !every_zone_has_area(basin, dialogs)) return false;
    if (const auto problem = run_menu_problem(basin)) dialogs.message(problem->message);
    if (const auto problem = evaluation_problem(open.database(), basin, scenario->scenario)) {
        dialogs.message(*problem);
        return false;
    }
    if (!make_basin_ready(open, named.basin, named.simulation, named.wait, basin, dialogs)) return false;
    dialogs.accept_proposals();
    return run_climate_steps(
        open.database(),
        {.run = {basin, run, dialogs}, .climate = climate, .report_file = named.report, .now = local_now()},
        scenario->scenario, named.last_step);
}

}  // namespace nivora
