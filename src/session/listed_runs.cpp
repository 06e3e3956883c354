#include "session/listed_runs.h"

#include "base/number_text.h"
#include "base/text.h"
#include "engine/results_summary.h"

#include <fmt/format.h>

#include <algorithm>

namespace nivora {
namespace {

constexpr std::size_t k_r2 = 5;

/// What a run and an evaluation have in common.
ListedRun listed(const Session& session) {
    const BasinState& basin = session.basin;
    const RunState& run = session.run;
    ListedRun made{.time = basin.results_time.value_or(local_now()),
                   .basin = open_basin_name(basin),
                   .simulation = basin.Current_Sim_Name,
                   .start = run.RunStart,
                   .end = run.RunEnd,
                   .units = basin.Units_Code,
                   .no_snow = run.NoSnow,
                   .initial_runoff = run.InitialRunoff};
    const auto days = static_cast<std::size_t>(run.LagDistribution[0]);
    for (std::size_t day = 1; day <= days && day < run.LagDistribution.size(); ++day)
        made.lag += (day == 1 ? "" : " ") + single_text(run.LagDistribution.at(day));
    return made;
}

bool has_simulation(const BasinState& basin, const std::string& name) {
    return !name.empty() && find_simulation(basin, name).has_value();
}

std::string moment_text(double moment) { return long_date_text(whole_day(moment)) + " " + time_text(moment); }

std::string figure(const std::optional<float>& value) { return value ? single_text(*value) : std::string{}; }

ComparedItem text_item(const char* name, const std::string& first, const std::string& second) {
    return {.name = name, .first = first, .second = second, .difference = {}, .differs = first != second};
}

/// The names of the statistics without a unit: two runs may differ in theirs.
std::string statistic_name(std::size_t index, const ListedRun& first, const ListedRun& second) {
    std::string name = statistics_names(first.units).at(index);
    if (first.units != second.units && index < 4) name.erase(name.find(" ("));
    return name;
}

/// The difference of two numbers as they are stored, not as they are shown.
ComparedItem number_item(std::string name, const std::optional<float>& first,
                         const std::optional<float>& second, bool same_units) {
    ComparedItem item{.name = std::move(name),
                      .first = figure(first),
                      .second = figure(second),
                      .difference = {},
                      .differs = first != second};
    if (first && second && same_units)
        item.difference = seven_digit_text(static_cast<double>(*second) - static_cast<double>(*first));
    return item;
}

}  // namespace

std::string open_basin_name(const BasinState& basin) {
    return basin.New_Basin ? std::string{} : listed_basin(basin.Basin_File);
}

void list_run(Session& session, bool completed) {
    ListedRun made = listed(session);
    made.kind = session.run.RunTitle;
    made.completed = completed;
    made.interval = session.run.UpdateInterval;
    made.statistics = statistics_values(session.run);
    session.runs.add(std::move(made));
}

void list_evaluation(Session& session) {
    ListedRun made = listed(session);
    made.kind = "Climate Change";
    made.scenario = session.climate.scenario;
    made.completed = true;
    if (const auto& last = session.climate.statistics[k_climate_steps]) {
        made.statistics = {last->measured_volume,  last->average_measured,  last->computed_volume,
                           last->average_computed, last->volume_difference, last->r2};
    }
    session.runs.add(std::move(made));
}

std::vector<std::string> listed_headers() {
    return {
        "Time",   "Simulation", "Kind",     "Scenario", "Start", "End", "Measured volume", "Computed volume",
        "Dv (%)", "R²",         "Settings", "Units",    "Basin"};
}

std::string listed_simulation(const ListedRun& run, const BasinState& basin) {
    if (run.basin != open_basin_name(basin))
        return run.renamed.empty() ? run.simulation : run.simulation + " (later " + run.renamed + ")";
    if (has_simulation(basin, run.simulation)) return run.simulation;
    if (has_simulation(basin, run.renamed)) return run.simulation + " (now " + run.renamed + ")";
    return run.simulation + " (no longer in the basin)";
}

std::string listed_settings(const ListedRun& run) {
    std::string text;
    if (!run.completed) text += "not completed; ";
    if (run.interval > 0) text += fmt::format("updated every {} days; ", run.interval);
    if (run.no_snow) text += "no snow; ";
    if (!run.lag.empty()) text += "time lag " + run.lag + "; ";
    return text + "initial runoff " + single_text(run.initial_runoff);
}

std::vector<std::string> listed_texts(const ListedRun& run, const BasinState& basin) {
    return {moment_text(run.time),
            listed_simulation(run, basin),
            run.kind,
            run.scenario,
            long_date_text(run.start),
            long_date_text(run.end),
            figure(run.statistics[0]),
            figure(run.statistics[2]),
            figure(run.statistics[4]),
            figure(run.statistics[k_r2]),
            listed_settings(run),
            unit_words(run.units).name,
            run.basin.empty() ? "(not saved)" : run.basin};
}

std::vector<ComparedItem> compare_runs(const ListedRun& first, const ListedRun& second,
                                       const BasinState& basin) {
    const bool same_units = first.units == second.units;
    const auto text = [](bool on) { return std::string{on ? "yes" : "no"}; };
    const auto updating = [](const ListedRun& run) {
        return run.interval > 0 ? fmt::format("every {} days", run.interval) : std::string{"no"};
    };
    std::vector<ComparedItem> items{
        text_item("Simulation", listed_simulation(first, basin), listed_simulation(second, basin)),
        text_item("Kind", first.kind, second.kind), text_item("Scenario", first.scenario, second.scenario),
        text_item("Start", long_date_text(first.start), long_date_text(second.start)),
        text_item("End", long_date_text(first.end), long_date_text(second.end))};
    for (std::size_t index = 0; index < first.statistics.size(); ++index) {
        // A percentage and R² have no unit.
        items.push_back(number_item(statistic_name(index, first, second), first.statistics.at(index),
                                    second.statistics.at(index), same_units || index >= 4));
    }
    const auto add = [&](const char* name, const std::string& of_first, const std::string& of_second) {
        items.push_back(text_item(name, of_first, of_second));
    };
    items.push_back(number_item("Initial Runoff", first.initial_runoff, second.initial_runoff, same_units));
    add("Completed", text(first.completed), text(second.completed));
    add("Updated", updating(first), updating(second));
    add("No snow", text(first.no_snow), text(second.no_snow));
    add("Custom time lag", first.lag.empty() ? "no" : first.lag, second.lag.empty() ? "no" : second.lag);
    add("Units", unit_words(first.units).name, unit_words(second.units).name);
    add("Time", moment_text(first.time), moment_text(second.time));
    add("Basin", first.basin, second.basin);
    return items;
}

}  // namespace nivora
