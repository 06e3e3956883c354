#include "climate/scenario_print.h"

#include "base/calendar.h"
#include "base/durable_file.h"
#include "base/number_text.h"
#include "base/single.h"
#include "base/text.h"
#include "reports/print_texts.h"
#include "store/table_io.h"

#include <algorithm>

namespace nivora {
namespace {

std::string date_cell(const std::optional<DayCount>& date) {
    return date ? long_date_text(*date) : std::string{};
}

std::vector<std::string> cells_of(const ScenarioRow& row) {
    return {row.variable ? scenario_variable_text(*row.variable) : "",
            date_cell(row.start),
            date_cell(row.end),
            row.action ? edit_action_text(*row.action) : "",
            single_text(row.factor),
            row.zones ? scenario_zone_text(*row.zones) : std::string{}};
}

}  // namespace

PrintedSheet printed_scenario(const Scenario& scenario, const BasinState& basin, double now) {
    PrintedSheet sheet;
    sheet.header = grid_print_header(k_scenario_title, basin.basin_name, now);
    const auto& winter_end = scenario.index.winter_end_date;
    sheet.heading = scenario_heading(
        {.basin_name = basin.basin_name,
         .simulation = basin.Current_Sim_Name,
         .scenario = scenario.index.scenario,
         .start = basin.Current_Start,
         .end = basin.Current_End,
         .winter_end = winter_end ? std::optional<DayCount>{whole_day(*winter_end)} : std::nullopt,
         .comments = scenario.index.comments.value_or("")});
    sheet.heading += "/n";
    sheet.columns = {{"Variable/Parameter", PrintAlign::Left}, {"Start Date", PrintAlign::Left},
                     {"End Date", PrintAlign::Left},           {"Edit Action", PrintAlign::Left},
                     {"Edit Factor", PrintAlign::Right},       {"Zones", PrintAlign::Left}};
    for (const ScenarioRow& row : scenario.rows) sheet.rows.push_back(cells_of(row));
    sheet.legend = scenario_legend();
    sheet.footer = scenario_footer(path_text(basin.Basin_File));
    return sheet;
}

std::optional<Scenario> stored_scenario(BasinDatabase& database, const std::string& simulation,
                                        const std::string& name) {
    const auto index = read_table<ScenarioIndexRow>(database, template_table(k_scenario_index));
    const auto row = std::ranges::find_if(index, [&](const ScenarioIndexRow& found) {
        return same_name(found.simulation, simulation) && same_name(found.scenario, name);
    });
    if (row == index.end()) return std::nullopt;
    return Scenario{
        .index = *row, .rows = read_table<ScenarioRow>(database, scenario_table(row->scenario)), .fault = {}};
}

}  // namespace nivora
