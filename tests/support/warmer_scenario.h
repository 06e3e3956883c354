// A scenario for the sample basin.
#pragma once

#include "base/calendar.h"
#include "store/schema.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <filesystem>
#include <span>
#include <string>

namespace nivora {

/// Adds the scenario "warmer" to a basin file: two degrees more on every day, and a winter that ends on 31
/// March of the simulation's last year. As with any first scenario, the placeholder of the simulation is
/// removed.
inline void add_warmer_scenario(const std::filesystem::path& file, const std::string& simulation,
                                DayCount start, DayCount end) {
    const DayCount winter_end = *day_count({civil_date(end).year, 3, 31});
    BasinDatabase database{file, Access::ReadWrite};
    atomically(database, [&] {
        database.execute("DELETE FROM ClimateScenarioIndex WHERE ScenarioFile = '" +
                         std::string{k_no_scenario} + "' AND SimulationFile = '" + simulation + "'");
        const ScenarioIndexRow row{.simulation = simulation,
                                   .scenario = "warmer",
                                   .winter_end_date = static_cast<double>(winter_end),
                                   .creation_date = std::nullopt,
                                   .comments = "two degrees"};
        add_rows<ScenarioIndexRow>(database, template_table(k_scenario_index), std::span{&row, 1});
        database.create_table(scenario_table("warmer"));
        ScenarioRow warmer;
        warmer.variable = 1;
        warmer.start = start;
        warmer.end = end;
        warmer.action = 0;
        warmer.factor = 2.0F;
        warmer.zones = 0;
        add_rows<ScenarioRow>(database, scenario_table("warmer"), std::span{&warmer, 1});
    });
}

}  // namespace nivora
