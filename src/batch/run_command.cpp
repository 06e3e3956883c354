#include "base/number_text.h"
#include "base/text.h"
#include "batch/commands.h"
#include "batch/json.h"
#include "engine/named_run.h"
#include "engine/results_summary.h"
#include "session/session.h"

#include <fmt/format.h>

#include <ostream>

namespace nivora {
namespace {

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

RunOutcome run_in(Session& session, const RunCommand& command, BatchDialogs& dialogs) {
    const RunChoice choice{.forecast = command.forecast_days.has_value(),
                           .index = command.year_round ? 1 : 0};
    if (choice.forecast) dialogs.prepare_input(*command.forecast_days);
    return run_by_name({.basin = command.basin,
                        .simulation = command.simulation,
                        .choice = choice,
                        .no_snow = command.no_snow,
                        .lag_shares = command.lag_shares,
                        .wait = command.wait},
                       {session.basin, session.run, dialogs});
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
