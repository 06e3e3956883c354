#include "prep/simulation_copies.h"

#include "base/text.h"
#include "prep/simulation_names.h"
#include "store/basin_marks.h"
#include "store/scenario_placeholder.h"
#include "store/table_copy.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>

namespace nivora {
namespace {

constexpr const char* k_reserved = "This name is reserved for system use, please re-enter";
constexpr const char* k_taken = "This name is already in use in this database, please re-enter";

using StoredIndexRow = Stored<ScenarioIndexRow>;

std::vector<StoredIndexRow> scenario_rows(BasinDatabase& database, std::string_view simulation) {
    auto rows = read_stored_rows<ScenarioIndexRow>(database, template_table(k_scenario_index));
    std::erase_if(
        rows, [&](const StoredIndexRow& stored) { return !same_name(stored.row.simulation, simulation); });
    return rows;
}

bool is_placeholder(const StoredIndexRow& stored) { return same_name(stored.row.scenario, k_no_scenario); }

/// Whether a table has the fields of a scenario; another one may be data of the basin.
bool is_scenario_table(BasinDatabase& database, const std::string& name) {
    const auto fields = database.table_fields(name);
    const auto expected = scenario_table(name).fields;
    return std::equal(fields.begin(), fields.end(), expected.begin(), expected.end(),
                      [](const Field& a, const Field& b) { return same_name(a.name, b.name); });
}

/// Whether the table of a simulation's name is its parameter table.
bool has_own_table(BasinDatabase& database, const std::string& simulation) {
    return database.has_table(simulation) && !is_fixed_table(simulation) &&
           !is_scenario(database, simulation);
}

bool is_taken(BasinDatabase& database, const BasinState& basin, std::string_view name) {
    return database.has_table(name) || is_scenario(database, name) || find_simulation(basin, name);
}

/// A free name for the copy of a scenario.
std::string scenario_copy_name(BasinDatabase& database, const BasinState& basin, const std::string& scenario,
                               const std::string& simulation) {
    const std::string wanted = fmt::format("{} ({})", scenario, simulation);
    std::string name = wanted;
    for (int number = 2; is_taken(database, basin, name); ++number)
        name = fmt::format("{} {}", wanted, number);
    return name;
}

/// Copies a scenario for another simulation. @return its name; empty if its table is missing
std::string copy_scenario(BasinDatabase& database, const BasinState& basin, const ScenarioIndexRow& scenario,
                          const std::string& simulation) {
    if (!database.has_table(scenario.scenario)) return {};
    if (!is_scenario_table(database, scenario.scenario)) {
        throw StoreError(StoreFault::Value,
                         fmt::format("The climate change scenario '{}' can't be read, so the simulation "
                                     "can't be copied with it. Delete the scenario first.",
                                     scenario.scenario));
    }
    ScenarioIndexRow copy = scenario;
    copy.simulation = simulation;
    copy.scenario = scenario_copy_name(database, basin, scenario.scenario, simulation);
    copy_table(database, scenario.scenario, scenario_table(copy.scenario));
    add_rows<ScenarioIndexRow>(database, template_table(k_scenario_index), std::span{&copy, 1});
    return copy.scenario;
}

std::vector<std::string> copy_scenarios(BasinDatabase& database, const BasinState& basin,
                                        const std::string& from, const std::string& to) {
    std::vector<std::string> copies;
    for (const StoredIndexRow& stored : scenario_rows(database, from)) {
        if (is_placeholder(stored)) continue;
        std::string copy = copy_scenario(database, basin, stored.row, to);
        if (!copy.empty()) copies.push_back(std::move(copy));
    }
    return copies;
}

/// The placeholder says that a simulation has no scenario: it does not stand beside one.
void settle_placeholders(BasinDatabase& database, const std::string& simulation) {
    const auto rows = scenario_rows(database, simulation);
    bool keeps_one = std::all_of(rows.begin(), rows.end(), is_placeholder);
    for (const StoredIndexRow& stored : rows) {
        if (!is_placeholder(stored)) continue;
        if (!keeps_one) delete_row(database, k_scenario_index, stored.number);
        keeps_one = false;
    }
    ensure_scenario_placeholder(database, simulation);
}

void rename_scenario_rows(BasinDatabase& database, const std::string& from, const std::string& to) {
    for (StoredIndexRow& stored : scenario_rows(database, from)) {
        stored.row.simulation = to;
        replace_row(database, template_table(k_scenario_index), stored);
    }
    settle_placeholders(database, to);
}

/// The file may still lack a simulation that the grid has: the grid is stored by a save.
void rename_index_row(BasinDatabase& database, const std::string& from, const std::string& to) {
    const TableSchema table = template_table(k_simulation_index);
    for (Stored<Simulation>& stored : read_stored_rows<Simulation>(database, table)) {
        if (!same_name(stored.row.name, from)) continue;
        stored.row.name = to;
        replace_row(database, table, stored);
    }
}

std::optional<std::string> ask_name(BasinDatabase& database, const BasinState& basin, Dialogs& dialogs,
                                    InputBox box, std::optional<std::size_t> renamed) {
    for (;;) {
        const auto answer = dialogs.input(box);
        const std::string name{trimmed(answer.value_or(""))};
        if (name.empty()) return std::nullopt;
        const auto problem = other_name_problem(database, basin, name, renamed);
        if (!problem) return name;
        box.prompt = *problem;
        box.proposed = name;
    }
}

}  // namespace

std::optional<std::string> other_name_problem(BasinDatabase& database, const BasinState& basin,
                                              std::string_view name, std::optional<std::size_t> renamed) {
    if (auto problem = simulation_name_problem(name)) return problem;
    // The label of the main window shows this name while no simulation is selected.
    if (is_fixed_table(name) || same_name(name, k_no_scenario) || name == k_no_simulation) return k_reserved;
    const bool own = renamed && same_name(basin.simulations.at(*renamed).name, name);
    if (!own && is_taken(database, basin, name)) return k_taken;
    return std::nullopt;
}

std::optional<std::string> ask_copy_name(BasinDatabase& database, const PrepContext& context,
                                         std::size_t row) {
    const BasinState& basin = context.basin;
    const std::string& copied = basin.simulations.at(row).name;
    std::string proposed = copied + " copy";
    for (int number = 2; is_taken(database, basin, proposed); ++number)
        proposed = fmt::format("{} copy {}", copied, number);
    return ask_name(database, basin, context.dialogs,
                    {.prompt = "Enter a unique name to associate with this data",
                     .title = "Name the New Simulation",
                     .proposed = proposed},
                    std::nullopt);
}

std::optional<std::string> ask_new_name(BasinDatabase& database, const PrepContext& context,
                                        std::size_t row) {
    const BasinState& basin = context.basin;
    const std::string& name = basin.simulations.at(row).name;
    const auto given = ask_name(database, basin, context.dialogs,
                                {.prompt = "Enter a unique name to associate with this data",
                                 .title = "Rename the simulation '" + name + "'",
                                 .proposed = name},
                                row);
    if (given == name) return std::nullopt;
    return given;
}

SimulationCopy duplicate_simulation(const PrepContext& context, BasinDatabase& database, std::size_t row,
                                    const std::string& name) {
    BasinState& basin = context.basin;
    Simulation copy = basin.simulations.at(row);
    const std::string copied = copy.name;
    copy.name = name;
    SimulationCopy made{.row = basin.simulations.size(), .scenarios = {}};
    atomically(database, [&] {
        if (has_own_table(database, copied)) {
            copy_table(database, copied, parameter_table(name));
            database.create_daily_index(name);
        }
        made.scenarios = copy_scenarios(database, basin, copied, name);
        settle_placeholders(database, name);
    });
    basin.simulations.push_back(std::move(copy));
    mark_basin_changed(basin);
    return made;
}

void rename_simulation(const PrepContext& context, BasinDatabase& database, std::size_t row,
                       const std::string& name) {
    BasinState& basin = context.basin;
    const std::string former = basin.simulations.at(row).name;
    atomically(database, [&] {
        if (has_own_table(database, former)) rename_daily_table(database, former, name);
        rename_index_row(database, former, name);
        rename_scenario_rows(database, former, name);
    });
    basin.simulations[row].name = name;
    PrepState& prep = context.prep;
    for (std::string* known :
         {&basin.Current_Sim_Name, &prep.query.table, &prep.working_record.definition.name}) {
        if (same_name(*known, former)) *known = name;
    }
    mark_basin_changed(basin);
}

}  // namespace nivora
