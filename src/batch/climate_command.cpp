#include "base/durable_file.h"
#include "base/number_text.h"
#include "base/text.h"
#include "batch/commands.h"
#include "batch/json.h"
#include "batch/output_guard.h"
#include "climate/named_evaluation.h"
#include "engine/results_summary.h"
#include "session/session.h"

#include <fmt/format.h>

#include <ostream>

namespace nivora {
namespace {

constexpr std::array<std::pair<SummaryRow, const char*>, 3> k_rows{
    {{SummaryRow::Measured, "Measured"},
     {SummaryRow::Computed, "Computed"},
     {SummaryRow::ClimateAffected, "ClimateAffected"}}};
constexpr std::array<std::pair<SummarySeason, const char*>, 3> k_seasons{
    {{SummarySeason::Winter, "Winter"}, {SummarySeason::Summer, "Summer"}, {SummarySeason::Year, "Year"}}};

/// Runs the steps that were asked for until one fails.
bool run_steps(Session& session, const ClimateCommand& command, BatchDialogs& dialogs) {
    const std::filesystem::path report =
        command.report.value_or(std::filesystem::path{command.basin}.replace_filename(k_climate_report));
    refuse_basin_as_output(report, command.basin);
    return evaluate_by_name({.basin = command.basin,
                             .simulation = command.simulation,
                             .scenario = command.scenario,
                             .report = report,
                             .last_step = command.last_step,
                             .wait = command.wait},
                            {session.basin, session.run, session.climate, dialogs});
}

/// The statistics of a step in the order of their labels; nothing for what the step does not have.
std::array<std::optional<float>, 6> step_values(const StepStatistics& step) {
    return {step.measured_volume,  step.average_measured,  step.computed_volume,
            step.average_computed, step.volume_difference, step.r2};
}

Json step_json(const StepStatistics& statistics) {
    const auto values = step_values(statistics);
    Json json = Json::object();
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (values.at(i)) json[k_statistics_keys.at(i)] = *values.at(i);
    }
    return json;
}

Json climate_json(const Session& session, const BatchDialogs& dialogs) {
    const ClimateState& climate = session.climate;
    Json steps = Json::object();
    for (int step = 1; step <= k_climate_steps; ++step) {
        const auto& statistics = climate.statistics.at(static_cast<std::size_t>(step));
        if (statistics) steps[std::to_string(step)] = step_json(*statistics);
    }
    Json summary = Json::object();
    for (const auto& [row, name] : k_rows) {
        Json cells = Json::object();
        for (const auto& [season, column] : k_seasons) {
            const auto value = climate.summary(row, season);
            cells[column] = value ? Json(*value) : Json(nullptr);
        }
        summary[name] = cells;
    }
    return {{"steps", steps},
            {"summary", summary},
            {"notes", notes_json(session.run.notes, session.basin.Units_Code)},
            {"messages", messages_json(dialogs.messages())}};
}

std::string figure(std::optional<float> value) { return value ? single_text(*value) : std::string{}; }

void print_climate(const Session& session, std::ostream& out) {
    const ClimateState& climate = session.climate;
    const std::string letter = unit_words(session.basin.Units_Code).length_letter;
    const std::string volume = " (10^6 " + letter + "³)";
    out << "Climate Change Statistics\n";
    out << "Basin Name:  " << session.basin.basin_name << '\n';
    out << "Simulation:  " << session.basin.Current_Sim_Name << '\n';
    out << "Scenario:    " << climate.scenario << "\n\n";
    const auto labels = statistics_names(session.basin.Units_Code);
    constexpr std::size_t k_label = 38;
    constexpr int k_cell = 14;
    const auto padded = [](const std::string& label) {
        const std::size_t used = character_count(label);
        return label + std::string(used < k_label ? k_label - used : 1, ' ');
    };
    out << padded("Statistics");
    for (const int step : {1, 2, 3, 6}) out << fmt::format("{:>{}}", "Step " + std::to_string(step), k_cell);
    out << '\n';
    for (std::size_t line = 0; line < labels.size(); ++line) {
        out << padded(labels.at(line));
        for (const std::size_t step : {1U, 2U, 3U, 6U}) {
            const auto& statistics = climate.statistics.at(step);
            out << fmt::format(
                "{:>{}}", statistics ? figure(step_values(*statistics).at(line)) : std::string{}, k_cell);
        }
        out << '\n';
    }
    out << '\n' << padded("Seasonal Summary of Runoff" + volume);
    for (const auto& [season, name] : k_seasons) out << fmt::format("{:>{}}", name, k_cell);
    out << '\n';
    constexpr std::array<const char*, 3> k_labels{"Measured", "Computed", "Climate affected"};
    for (std::size_t row = 0; row < k_rows.size(); ++row) {
        out << padded(k_labels.at(row));
        for (const auto& [season, name] : k_seasons)
            out << fmt::format("{:>{}}", figure(climate.summary(k_rows.at(row).first, season)), k_cell);
        out << '\n';
    }
}

}  // namespace

int climate_command(const ClimateCommand& command, BatchDialogs& dialogs, std::ostream& out) {
    Desktop no_desktop;
    Session session{dialogs, no_desktop};
    bool done = false;
    try {
        done = run_steps(session, command, dialogs);
    } catch (const StoreError& error) {
        dialogs.report_problem("The basin can't be read", error.what());
    } catch (const FileError& error) {
        dialogs.report_problem("The report can't be written", error.what());
    }
    dialogs.report_notes(session.run.notes, session.basin.Units_Code);
    if (command.json) {
        out << printed(climate_json(session, dialogs));
    } else if (done) {
        print_climate(session, out);
    }
    return done && !dialogs.was_refused() ? k_done : k_failed;
}

}  // namespace nivora
