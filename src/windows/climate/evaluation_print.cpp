#include "windows/climate/evaluation_print.h"

#include "climate/scenario_print.h"
#include "reports/print_texts.h"
#include "widgets/grid_sheet.h"

namespace nivora {
namespace {

PrintedSheet printed_statistics(const Session& session, const GridView& statistics, double now) {
    PrintedSheet sheet = sheet_of(statistics);
    for (std::size_t column = 1; column < sheet.columns.size(); ++column)
        sheet.columns.at(column).align = PrintAlign::Right;
    sheet.header = grid_print_header(k_climate_statistics_title, session.basin.basin_name, now);
    sheet.heading = "Simulation:   " + mark_up_text(session.basin.Current_Sim_Name) +
                    "/nClimate Scenario:  " + mark_up_text(session.run.ScenarioName) + "/n";
    for (const RunNote& note : session.run.notes)
        sheet.legend += "/n" + mark_up_text("Note: " + note_text(note, session.basin.Units_Code));
    sheet.footer = k_grid_print_footer;
    return sheet;
}

}  // namespace

std::optional<PrintedSheet> evaluated_scenario(const Session& session, double now) {
    if (session.climate.reuse_results) return std::nullopt;
    BasinDatabase database{session.basin.Work_File, Access::ReadOnly};
    const auto scenario = stored_scenario(database, session.basin.Current_Sim_Name, session.run.ScenarioName);
    if (!scenario) return std::nullopt;
    return printed_scenario(*scenario, session.basin, now);
}

std::vector<PrintedSheet> printed_evaluation(const Session& session, const GridView& statistics,
                                             const std::optional<PrintedSheet>& scenario, double now) {
    std::vector<PrintedSheet> sheets{printed_statistics(session, statistics, now)};
    if (!scenario) return sheets;
    sheets.push_back(*scenario);
    sheets.back().header = grid_print_header(k_scenario_title, session.basin.basin_name, now);
    return sheets;
}

}  // namespace nivora
