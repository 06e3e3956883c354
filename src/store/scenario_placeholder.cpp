#include "store/scenario_placeholder.h"

#include "base/text.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <algorithm>

namespace nivora {

ScenarioIndexRow scenario_placeholder(const std::string& simulation) {
    return {.simulation = simulation,
            .scenario = k_no_scenario,
            .winter_end_date = std::nullopt,
            .creation_date = std::nullopt,
            .comments = "No climate change"};
}

void ensure_scenario_placeholder(BasinDatabase& database, const std::string& simulation) {
    const TableSchema index = template_table(k_scenario_index);
    const auto rows = read_table<ScenarioIndexRow>(database, index);
    const bool known = std::any_of(rows.begin(), rows.end(), [&](const ScenarioIndexRow& row) {
        return same_name(row.simulation, simulation);
    });
    if (known) return;
    atomically(database, [&] {
        const ScenarioIndexRow row = scenario_placeholder(simulation);
        add_rows<ScenarioIndexRow>(database, index, std::span{&row, 1});
        // A simulation may have the name "None"; its table is not changed.
        if (!database.has_table(k_no_scenario)) database.create_table(scenario_table(k_no_scenario));
    });
}

}  // namespace nivora
