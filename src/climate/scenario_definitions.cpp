#include "climate/scenario_definitions.h"

#include "base/text.h"
#include "store/scenario_placeholder.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <fmt/format.h>

#include <algorithm>

namespace nivora {
namespace {

/// The name for results that were edited by hand; no scenario may have it.
constexpr const char* k_reserved_word = "AUXILIARY";
constexpr std::string_view k_refused_characters = ".![]`";
constexpr std::string_view k_store_prefix = "sqlite_";
constexpr DayCount k_shortest_period = 2;  // days between the start and the end

using StoredIndexRow = Stored<ScenarioIndexRow>;

std::vector<StoredIndexRow> index_rows(BasinDatabase& database) {
    return read_stored_rows<ScenarioIndexRow>(database, template_table(k_scenario_index));
}

/// The rows of one simulation.
std::vector<StoredIndexRow> index_rows(BasinDatabase& database, std::string_view simulation) {
    std::vector<StoredIndexRow> rows = index_rows(database);
    std::erase_if(
        rows, [&](const StoredIndexRow& stored) { return !same_name(stored.row.simulation, simulation); });
    return rows;
}

const StoredIndexRow* find_scenario(const std::vector<StoredIndexRow>& rows, std::string_view name) {
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const StoredIndexRow& stored) {
        return same_name(stored.row.scenario, name);
    });
    return found == rows.end() ? nullptr : &*found;
}

void delete_index_row(BasinDatabase& database, const StoredIndexRow& stored) {
    delete_row(database, k_scenario_index, stored.number);
}

void replace_index_row(BasinDatabase& database, const StoredIndexRow& stored) {
    replace_row(database, template_table(k_scenario_index), stored);
}

/// Drops a table with the rows of a scenario. A table of another kind stays even if the index names it: it
/// may be data of the basin.
void drop_scenario_table(BasinDatabase& database, const std::string& name) {
    if (!database.has_table(name)) return;
    const auto fields = database.table_fields(name);
    const auto expected = scenario_table(name).fields;
    const bool scenario =
        std::equal(fields.begin(), fields.end(), expected.begin(), expected.end(),
                   [](const Field& a, const Field& b) { return same_name(a.name, b.name); });
    if (scenario) database.drop_table(name);
}

/// Removes the placeholder of a simulation, and its table once no simulation has one.
void remove_placeholder(BasinDatabase& database, const std::string& simulation) {
    for (const StoredIndexRow& stored : index_rows(database, simulation)) {
        if (same_name(stored.row.scenario, k_no_scenario)) delete_index_row(database, stored);
    }
    if (find_scenario(index_rows(database), k_no_scenario) == nullptr)
        drop_scenario_table(database, k_no_scenario);
}

std::optional<Message> period_problem(const BasinState& basin) {
    if (basin.Current_Start && basin.Current_End &&
        *basin.Current_End - *basin.Current_Start >= k_shortest_period) {
        return std::nullopt;
    }
    return Message{.text = "Similation period too small to perform a meaningful climate change simulation",
                   .title = "Period too short for climate change"};
}

bool has_refused_character(const std::string& name) {
    const bool control = std::any_of(name.begin(), name.end(), [](char character) {
        return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
    });
    return control || !is_utf8(name) || name.find_first_of(k_refused_characters) != std::string::npos;
}

/// Why a table cannot have a name. The names of the fixed tables are reserved even while these are missing.
std::optional<Message> name_problem(BasinDatabase& database, const std::string& name) {
    constexpr const char* k_invalid = "Invalid scenario name";
    constexpr const char* k_naming = "Error naming new climate scenario";
    if (name.empty()) return Message{.text = "A scenario needs a name.", .title = k_invalid};
    if (same_name(name, k_reserved_word)) return Message{.text = "Reserved word " + name, .title = k_invalid};
    if (has_refused_character(name)) {
        return Message{.text = "The name selected, " + name + ", contains invalid character(s)",
                       .title = k_invalid};
    }
    if (same_name(name, k_no_scenario) || is_fixed_table(name) ||
        folded_name(name).rfind(k_store_prefix, 0) == 0) {
        return Message{.text = "This name is reserved for system use.", .title = k_naming};
    }
    if (database.has_table(name))
        return Message{.text = "This name is already in use in this database.", .title = k_naming};
    return std::nullopt;
}

/// Creates the table and the index row of a scenario whose name is free.
void make_scenario(BasinDatabase& database, const BasinState& basin, const std::string& name) {
    remove_placeholder(database, basin.Current_Sim_Name);
    database.create_table(scenario_table(name));
    const ScenarioIndexRow row{
        .simulation = basin.Current_Sim_Name,
        .scenario = name,
        .winter_end_date = default_winter_end(*basin.Current_Start, *basin.Current_End),
        .creation_date = static_cast<double>(whole_day(local_now())),
        .comments = k_new_scenario_comments};
    add_rows<ScenarioIndexRow>(database, template_table(k_scenario_index), std::span{&row, 1});
}

Scenario read_scenario(BasinDatabase& database, const ScenarioIndexRow& index) {
    Scenario scenario{.index = index, .rows = {}, .fault = {}};
    try {
        scenario.rows = read_table<ScenarioRow>(database, scenario_table(index.scenario));
    } catch (const StoreError& error) {
        scenario.fault = error.what();
    }
    return scenario;
}

}  // namespace

std::vector<Scenario> open_scenarios(BasinDatabase& database, const std::string& simulation,
                                     Dialogs& dialogs) {
    std::vector<Scenario> scenarios;
    for (const StoredIndexRow& stored : index_rows(database, simulation)) {
        const std::string& name = stored.row.scenario;
        if (same_name(name, k_no_scenario)) continue;
        if (database.has_table(name)) {
            scenarios.push_back(read_scenario(database, stored.row));
            continue;
        }
        dialogs.message(
            {.text =
                 fmt::format("A reference to a climate change scenario, '{}', could not be resolved.  The "
                             "reference will be deleted from the basin database.",
                             name),
             .title = fmt::format("Missing climate change scenario for Simulation '{}'", simulation)});
        delete_index_row(database, stored);
    }
    return scenarios;
}

Message unreadable_scenario_message(const Scenario& scenario) {
    return {
        .text = fmt::format("The climate change scenario '{}' can't be read, and its rows are not shown. {}  "
                            "Delete the scenario, or repair its table with another program.",
                            scenario.index.scenario, scenario.fault),
        .icon = Icon::Stop};
}

std::optional<std::string> new_scenario(BasinDatabase& database, const BasinState& basin, Dialogs& dialogs) {
    if (const auto problem = period_problem(basin)) {
        dialogs.message(*problem);
        return std::nullopt;
    }
    const auto answer = dialogs.input({.prompt = "Enter a name for the new climate change sceanario:",
                                       .title = "Create New Climate Change Scenario"});
    const std::string name{trimmed(answer.value_or(""))};
    if (name.empty()) return std::nullopt;
    if (const auto problem = name_problem(database, name)) {
        dialogs.message(*problem);
        return std::nullopt;
    }
    atomically(database, [&] { make_scenario(database, basin, name); });
    return name;
}

std::optional<Message> create_scenario(BasinDatabase& database, const BasinState& basin,
                                       const std::string& name) {
    std::optional<Message> problem = period_problem(basin);
    if (problem) return problem;
    const std::string wanted{trimmed(name)};
    atomically_if(database, [&] {
        const auto rows = index_rows(database, basin.Current_Sim_Name);
        if (const StoredIndexRow* stored = find_scenario(rows, wanted)) {
            drop_scenario_table(database, wanted);
            delete_index_row(database, *stored);
        }
        problem = name_problem(database, wanted);
        if (problem) return false;  // the rollback restores the former scenario
        make_scenario(database, basin, wanted);
        return true;
    });
    return problem;
}

bool delete_scenario(BasinDatabase& database, const std::string& simulation, const std::string& name,
                     Dialogs& dialogs) {
    const auto rows = index_rows(database, simulation);
    const StoredIndexRow* stored = find_scenario(rows, name);
    if (stored == nullptr || same_name(name, k_no_scenario)) return false;
    const Answer answer = dialogs.message({.text = fmt::format("Delete '{}' scenario table?", name),
                                           .buttons = Buttons::YesNoCancel,
                                           .default_answer = Answer::No});
    if (answer != Answer::Yes) return false;
    atomically(database, [&] {
        if (rows.size() > 1) {
            delete_index_row(database, *stored);
        } else {
            // The index is never empty: the last row stays and means that there is no scenario.
            replace_index_row(database, {stored->number, scenario_placeholder(stored->row.simulation)});
            if (!database.has_table(k_no_scenario)) database.create_table(scenario_table(k_no_scenario));
        }
        drop_scenario_table(database, name);
    });
    return true;
}

void store_scenario(BasinDatabase& database, const Scenario& scenario) {
    const auto rows = index_rows(database, scenario.index.simulation);
    const StoredIndexRow* found = find_scenario(rows, scenario.index.scenario);
    if (found == nullptr) {
        throw StoreError(StoreFault::Missing,
                         fmt::format("The simulation '{}' has no climate change scenario '{}'.",
                                     scenario.index.simulation, scenario.index.scenario));
    }
    StoredIndexRow stored = *found;
    stored.row.winter_end_date = scenario.index.winter_end_date;
    stored.row.comments = scenario.index.comments;
    atomically(database, [&] {
        clear_table(database, scenario.index.scenario);
        add_rows<ScenarioRow>(database, scenario_table(scenario.index.scenario), scenario.rows);
        replace_index_row(database, stored);
    });
}

}  // namespace nivora
