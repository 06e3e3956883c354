#include "base/number_text.h"
#include "base/text.h"
#include "batch/commands.h"
#include "batch/json.h"
#include "batch/selected_simulation.h"
#include "engine/lag_distribution.h"
#include "engine/results_summary.h"
#include "engine/run_driver.h"
#include "session/session.h"
#include "store/basin_opening.h"

#include <fmt/format.h>

#include <ostream>

namespace nivora {
namespace {

/// Sets the lag shares as the window of the distribution does; false after its message.
bool set_lag_shares(Session& session, const RunCommand& command) {
    if (command.lag_shares.empty()) return true;
    const auto days = static_cast<double>(command.lag_shares.size());
    auto problem = lag_day_count_problem(days);
    if (!problem) problem = lag_total_problem(lag_total_text(command.lag_shares));
    if (problem) {
        session.dialogs.message(*problem);
        return false;
    }
    session.run.LagDistribution = lag_distribution(days, command.lag_shares);
    return true;
}

Json statistics_json(const RunState& run, Units units, const RunOutcome& outcome,
                     const BatchDialogs& dialogs) {
    const auto values = statistics_values(run);
    Json json = Json::object();
    for (std::size_t i = 0; i < values.size(); ++i)
        json[k_statistics_keys.at(i)] = values.at(i) ? Json(*values.at(i)) : Json(nullptr);
    json["FinalQ"] = outcome.completed ? Json(run.FinalQ[0]) : Json(nullptr);
    json["RunTitle"] = run.RunTitle;
    json["notes"] = notes_json(run.notes, units);
    json["messages"] = messages_json(dialogs.messages());
    return json;
}

void print_line(std::ostream& out, const std::string& label, std::optional<float> value) {
    constexpr std::size_t k_value_column = 46;
    const std::size_t used = character_count(label);
    const std::string text = value ? single_text(*value) : "not known";
    out << label << std::string(used < k_value_column ? k_value_column - used : 1, ' ') << text << '\n';
}

void print_statistics(const Session& session, std::ostream& out) {
    out << statistics_caption(session.run) << '\n';
    out << "Basin Name:  " << session.basin.basin_name << '\n';
    out << "Simulation:  " << session.basin.Current_Sim_Name << '\n';
    const auto labels = statistics_labels(session.basin.Units_Code);
    const auto values = statistics_values(session.run);
    for (std::size_t i = 0; i < labels.size(); ++i) print_line(out, labels[i], values[i]);
    print_line(out,
               fmt::format("Computed Runoff of the last day ({}³/s):",
                           unit_words(session.basin.Units_Code).length_letter),
               session.run.FinalQ[0]);
}

/// What the start of the run would refuse, checked before anything in the file is changed.
std::optional<Message> start_problem(const BasinState& basin) {
    const Simulation* simulation = basin.current_simulation();
    if (auto problem = run_period_problem(simulation)) return problem;
    return initial_runoff_problem(*simulation);
}

/// Runs after the checks that leave the file as it is.
RunOutcome run_checked(OpenBasin& basin, Session& session, const RunCommand& command, BatchDialogs& dialogs,
                       int index) {
    if (const auto problem = start_problem(session.basin)) {
        dialogs.message(*problem);
        return {};
    }
    if (!accepts_blank_latitude(session.basin, dialogs)) return {};
    if (!make_ready(basin, session, command.basin, command.simulation, command.wait, dialogs)) return {};
    return start_run(basin.database(), {session.basin, session.run, dialogs}, index);
}

RunOutcome run_in(Session& session, const RunCommand& command, BatchDialogs& dialogs) {
    OpenBasin basin = open_to_run(command.basin, command.wait);
    if (!select_in(session, basin.database(), command.basin, command.simulation, dialogs) ||
        !set_lag_shares(session, command) || !has_zone_areas(session.basin, dialogs))
        return {};
    session.run.NoSnow = command.no_snow;
    if (const auto problem = run_menu_problem(session.basin)) dialogs.message(problem->message);
    const RunChoice choice{.forecast = command.forecast_days.has_value(),
                           .index = command.year_round ? 1 : 0};
    if (choice.forecast) dialogs.prepare_input(*command.forecast_days);
    return choose_and_run({session.basin, session.run, dialogs}, choice,
                          [&] { return run_checked(basin, session, command, dialogs, choice.index); });
}

}  // namespace

int run_command(const RunCommand& command, BatchDialogs& dialogs, std::ostream& out) {
    Desktop no_desktop;
    Session session{dialogs, no_desktop};
    RunOutcome outcome;
    try {
        outcome = run_in(session, command, dialogs);
    } catch (const StoreError& error) {
        dialogs.report_problem("The basin can't be read", error.what());
    }
    dialogs.report_notes(session.run.notes, session.basin.Units_Code);
    if (command.json) {
        out << printed(statistics_json(session.run, session.basin.Units_Code, outcome, dialogs));
    } else if (outcome.statistics != StatisticsReach::Nothing) {
        print_statistics(session, out);
    }
    const bool done = outcome.completed && outcome.statistics == StatisticsReach::All;
    return done && !dialogs.was_refused() ? k_done : k_failed;
}

}  // namespace nivora
