#include "base/durable_file.h"
#include "base/text.h"
#include "batch/commands.h"
#include "batch/scenario_edit.h"
#include "batch/selected_simulation.h"
#include "climate/scenario_definitions.h"
#include "store/basin_opening.h"
#include "store/transactions.h"

#include <fmt/format.h>

#include <ostream>

namespace nivora {
namespace {

constexpr const char* k_title = "No scenario was stored";

/// Why an edit does not fit the simulation; empty if it fits.
std::string edit_problem(const ScenarioRow& row, const BasinState& basin) {
    const DayCount start = *basin.Current_Start;
    const DayCount end = *basin.Current_End;
    if (*row.start < start || *row.end > end) {
        return fmt::format("the dates {} to {} are not within the simulation, which runs from {} to {}",
                           iso_date_text(*row.start), iso_date_text(*row.end), iso_date_text(start),
                           iso_date_text(end));
    }
    if (*row.zones > basin.ZoneCount) {
        return fmt::format("the basin has no zone {}; its number of zones is {}",
                           scenario_zone_text(*row.zones), basin.ZoneCount);
    }
    return {};
}

/// The rows of the edits; nothing, after a report, if one does not fit.
std::optional<std::vector<ScenarioRow>> rows_of(const std::vector<std::string>& edits,
                                                const BasinState& basin, BatchDialogs& dialogs) {
    std::vector<ScenarioRow> rows;
    for (const std::string& text : edits) {
        ReadEdit edit = read_scenario_edit(text);
        if (edit.problem.empty()) edit.problem = edit_problem(edit.row, basin);
        if (!edit.problem.empty()) {
            dialogs.report_problem(k_title, fmt::format("Edit {}: {}.", rows.size() + 1, edit.problem));
            return std::nullopt;
        }
        rows.push_back(edit.row);
    }
    return rows;
}

/// The winter end date that was given, or the one of a new scenario; nothing after its message.
std::optional<double> winter_end_of(const ScenarioCommand& command, const BasinState& basin,
                                    BatchDialogs& dialogs) {
    if (!command.winter_end) return default_winter_end(*basin.Current_Start, *basin.Current_End);
    if (const auto problem = winter_end_problem(basin, *command.winter_end)) {
        dialogs.message(*problem);
        return std::nullopt;
    }
    return static_cast<double>(*read_date(*command.winter_end));
}

/// The scenario as it was stored; nothing if it was refused, which was shown, and the basin is unchanged.
std::optional<Scenario> store_in(BasinDatabase& database, const BasinState& basin,
                                 const ScenarioCommand& command, BatchDialogs& dialogs) {
    if (!basin.Current_Start || !basin.Current_End) {
        dialogs.report_problem(k_title,
                               fmt::format("The simulation '{}' has no period.", basin.Current_Sim_Name));
        return std::nullopt;
    }
    auto rows = rows_of(command.edits, basin, dialogs);
    if (!rows) return std::nullopt;
    const auto winter_end = winter_end_of(command, basin, dialogs);
    if (!winter_end) return std::nullopt;

    Scenario scenario;
    scenario.index.simulation = basin.Current_Sim_Name;
    scenario.index.scenario = std::string{trimmed(command.name)};
    scenario.index.winter_end_date = winter_end;
    scenario.index.comments = k_new_scenario_comments;
    scenario.rows = *std::move(rows);
    HeldTransaction transaction{database};
    if (const auto problem = create_scenario(database, basin, scenario.index.scenario)) {
        dialogs.message(*problem);
        return std::nullopt;
    }
    store_scenario(database, scenario);
    transaction.commit();
    return scenario;
}

}  // namespace

int scenario_command(const ScenarioCommand& command, BatchDialogs& dialogs, std::ostream& out) {
    Desktop no_desktop;
    Session session{dialogs, no_desktop};
    try {
        const OpenBasin basin = open_to_write(command.basin, command.wait);
        BasinDatabase& database = basin.database();
        if (!select_in(session, database, command.basin, command.simulation, dialogs)) return k_failed;
        const auto scenario = store_in(database, session.basin, command, dialogs);
        if (!scenario) return k_failed;
        out << fmt::format("Stored '{}' for '{}' in {}: {} edits, the winter ends on {}.\n",
                           scenario->index.scenario, scenario->index.simulation, path_text(command.basin),
                           scenario->rows.size(), iso_date_text(whole_day(*scenario->index.winter_end_date)));
        return k_done;
    } catch (const StoreError& error) {
        dialogs.report_problem(k_title, error.what());
    }
    return k_failed;
}

}  // namespace nivora
