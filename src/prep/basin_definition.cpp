#include "prep/basin_definition.h"

#include "base/durable_file.h"
#include "base/text.h"
#include "store/basin_copy.h"
#include "store/scenario_placeholder.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <utility>

namespace nivora {
namespace {

std::string first_reason(const std::vector<DefinitionProblem>& problems) {
    if (problems.empty()) return "the definition can't be taken";
    const DefinitionProblem& first = problems.front();
    return first.place.empty() ? first.reason : first.place + ": " + first.reason;
}

bool is_placeholder(const ScenarioIndexRow& row) { return same_name(row.scenario, k_no_scenario); }

void store_scenario(BasinDatabase& database, const ScenarioDefinition& scenario) {
    add_rows<ScenarioIndexRow>(database, template_table(k_scenario_index), std::span{&scenario.index, 1});
    const TableSchema table = scenario_table(scenario.index.scenario);
    if (!database.has_table(table.name)) database.create_table(table);
    if (!scenario.edits.empty()) add_rows<ScenarioRow>(database, table, scenario.edits);
}

}  // namespace

DefinitionFault::DefinitionFault(std::vector<DefinitionProblem> problems)
    : std::runtime_error(first_reason(problems)), problems_(std::move(problems)) {}

BasinDefinition stored_definition(BasinDatabase& database) {
    BasinDefinition definition;
    definition.basin = read_basin_description(database);
    definition.zones = read_table<Zone>(database, template_table(k_zone_description));
    const int zones = definition.basin.zones.value_or(0);
    if (static_cast<std::size_t>(std::max(zones, 0)) != definition.zones.size()) {
        throw StoreError(StoreFault::Value, fmt::format("The basin says that it has {} zones, and has {}.",
                                                        zones, definition.zones.size()));
    }
    definition.simulations = read_table<Simulation>(database, template_table(k_simulation_index));
    for (ScenarioIndexRow& row : read_table<ScenarioIndexRow>(database, template_table(k_scenario_index))) {
        ScenarioDefinition scenario{.index = std::move(row)};
        const std::string& name = scenario.index.scenario;
        if (!is_placeholder(scenario.index) && database.has_table(name))
            scenario.edits = read_table<ScenarioRow>(database, scenario_table(name));
        definition.scenarios.push_back(std::move(scenario));
    }
    return definition;
}

void store_definition(BasinDatabase& database, const BasinDefinition& definition) {
    atomically(database, [&] {
        BasinDescription basin = definition.basin;
        basin.zones = static_cast<std::int16_t>(definition.zones.size());
        write_basin_description(database, basin);
        clear_table(database, k_zone_description);
        add_rows<Zone>(database, template_table(k_zone_description), definition.zones);
        add_rows<Simulation>(database, template_table(k_simulation_index), definition.simulations);
        for (const Simulation& simulation : definition.simulations) {
            database.create_table(parameter_table(simulation.name));
            database.create_daily_index(simulation.name);
        }
        for (const ScenarioDefinition& scenario : definition.scenarios) store_scenario(database, scenario);
        for (const Simulation& simulation : definition.simulations)
            ensure_scenario_placeholder(database, simulation.name);
    });
}

void make_basin(const std::filesystem::path& file, const BasinDefinition& definition) {
    if (std::filesystem::exists(std::filesystem::symlink_status(file))) {
        throw FileError(
            fmt::format("The file '{}' exists already. Choose another name, or delete it.", path_text(file)));
    }
    const PartFile beside{file};
    BasinDatabase::create_template(beside.path());
    {
        BasinDatabase database{beside.path(), Access::ReadWrite};
        store_definition(database, definition);
    }
    move_basin_to_new_name(beside.path(), file);
}

}  // namespace nivora
