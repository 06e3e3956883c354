#include "base/durable_file.h"
#include "climate/named_evaluation.h"
#include "engine/named_run.h"
#include "engine/results_summary.h"
#include "prep/daily_units.h"
#include "python/calls.h"
#include "python/refusal.h"

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <array>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace py = pybind11;

namespace nivora {
namespace {

constexpr std::array<const char*, 6> k_statistics_keys{"MeasuredVolume", "AvgMeasuredQ",     "ComputedVolume",
                                                       "AvgComputedQ",   "VolumeDifference", "CoefficientR2"};

/// What a run was asked for.
struct AskedRun {
    std::string basin = {};
    std::string simulation = {};
    bool year_round = false;
    std::optional<std::string> forecast = {};
    bool no_snow = false;
    std::vector<std::string> lag_shares = {};
    bool refuse = false;
    double wait = 0.0;
};

/// A run and all that it left.
struct DoneRun {
    BasinState basin = {};
    RunState run = {};
    RunOutcome outcome = {};
    SimResults table = {};
    std::vector<ReportedMessage> messages = {};
    bool refused = false;
};

DoneRun run_asked(const AskedRun& asked, std::chrono::milliseconds wait) {
    DoneRun done;
    std::ostringstream report;
    BatchDialogs dialogs{report, asked.refuse};
    if (asked.forecast) dialogs.prepare_input(*asked.forecast);
    done.outcome =
        run_by_name({.basin = path_from_utf8(asked.basin),
                     .simulation = asked.simulation,
                     .choice = {.forecast = asked.forecast.has_value(), .index = asked.year_round ? 1 : 0},
                     .no_snow = asked.no_snow,
                     .lag_shares = asked.lag_shares,
                     .wait = wait},
                    {done.basin, done.run, dialogs}, &done.table);
    done.messages = dialogs.messages();
    done.refused = dialogs.was_refused();
    return done;
}

py::list message_list(const std::vector<ReportedMessage>& messages) {
    py::list list;
    for (const ReportedMessage& message : messages)
        list.append(py::make_tuple(message.title, message.text, answer_name(message.answer)));
    return list;
}

py::list note_list(const std::vector<RunNote>& notes, Units units) {
    py::list list;
    for (const RunNote& note : notes) list.append(note_text(note, units));
    return list;
}

/// The fields of a results table, which the arrays keep together: none of them is copied.
py::dict columns_dict(SimResults table) {
    auto kept = std::make_unique<SimResults>(std::move(table));
    const SimResults& columns = *kept;
    const py::capsule owner{kept.release(), [](void* held) { delete static_cast<SimResults*>(held); }};
    py::dict arrays;
    SimResults::visit_named(columns, [&](const char* name, const auto& column) {
        using Value = typename std::decay_t<decltype(column)>::value_type;
        arrays[name] = py::array_t<Value>(static_cast<py::ssize_t>(column.size()), column.data(), owner);
    });
    return arrays;
}

/// The units of the fields of a results table, by name.
py::dict result_units(int units) {
    py::dict texts;
    const SimResults none;
    SimResults::visit_named(none, [&](const char* name, const auto& /*column*/) {
        texts[name] = daily_unit(name, static_cast<Units>(units));
    });
    return texts;
}

py::dict done_as_dict(DoneRun done) {
    const Units units = done.basin.Units_Code;
    py::dict statistics;
    const auto values = statistics_values(done.run);
    for (std::size_t i = 0; i < values.size(); ++i) statistics[k_statistics_keys.at(i)] = values.at(i);
    statistics["FinalQ"] =
        done.outcome.completed ? py::object(py::float_(done.run.FinalQ[0])) : py::object(py::none());

    py::dict result;
    result["completed"] = done.outcome.completed && done.outcome.statistics == StatisticsReach::All;
    result["refused"] = done.refused;
    result["title"] = done.run.RunTitle;
    result["simulation"] = done.basin.Current_Sim_Name;
    result["discharge_unit"] = unit_words(units).discharge;
    result["statistics"] = statistics;
    result["messages"] = message_list(done.messages);
    result["notes"] = note_list(done.run.notes, units);
    result["units"] = static_cast<int>(units);
    result["columns"] = done.outcome.results_rebuilt ? py::object(columns_dict(std::move(done.table)))
                                                     : py::object(py::none());
    return result;
}

/// A climate evaluation and all that it left.
struct DoneEvaluation {
    BasinState basin = {};
    RunState run = {};
    ClimateState climate = {};
    std::vector<ReportedMessage> messages = {};
    bool done = false;
};

/// What an evaluation was asked for.
struct AskedEvaluation {
    std::string basin = {};
    std::string simulation = {};
    std::string scenario = {};
    std::string report = {};
    int last_step = k_climate_steps;
    bool refuse = false;
    double wait = 0.0;
};

DoneEvaluation evaluate_asked(const AskedEvaluation& asked, std::chrono::milliseconds wait) {
    DoneEvaluation done;
    std::ostringstream report;
    BatchDialogs dialogs{report, asked.refuse};
    const bool reached = evaluate_by_name({.basin = path_from_utf8(asked.basin),
                                           .simulation = asked.simulation,
                                           .scenario = asked.scenario,
                                           .report = path_from_utf8(asked.report),
                                           .last_step = asked.last_step,
                                           .wait = wait},
                                          {done.basin, done.run, done.climate, dialogs});
    done.messages = dialogs.messages();
    done.done = reached && !dialogs.was_refused();
    return done;
}

py::dict step_dict(const StepStatistics& step) {
    const std::array<std::optional<float>, 6> values{step.measured_volume,   step.average_measured,
                                                     step.computed_volume,   step.average_computed,
                                                     step.volume_difference, step.r2};
    py::dict statistics;
    for (std::size_t i = 0; i < values.size(); ++i) statistics[k_statistics_keys.at(i)] = values.at(i);
    return statistics;
}

py::dict evaluation_dict(const DoneEvaluation& done) {
    constexpr std::array<std::pair<SummaryRow, const char*>, 3> k_rows{
        {{SummaryRow::Measured, "Measured"},
         {SummaryRow::Computed, "Computed"},
         {SummaryRow::ClimateAffected, "ClimateAffected"}}};
    constexpr std::array<std::pair<SummarySeason, const char*>, 3> k_seasons{
        {{SummarySeason::Winter, "Winter"},
         {SummarySeason::Summer, "Summer"},
         {SummarySeason::Year, "Year"}}};
    py::dict steps;
    for (int step = 1; step <= k_climate_steps; ++step) {
        const auto& statistics = done.climate.statistics.at(static_cast<std::size_t>(step));
        if (statistics) steps[py::int_(step)] = step_dict(*statistics);
    }
    py::dict summary;
    for (const auto& [row, name] : k_rows) {
        py::dict cells;
        for (const auto& [season, column] : k_seasons) cells[column] = done.climate.summary(row, season);
        summary[name] = cells;
    }
    const UnitWords& words = unit_words(done.basin.Units_Code);
    py::dict result;
    result["done"] = done.done;
    result["simulation"] = done.basin.Current_Sim_Name;
    result["scenario"] = done.climate.scenario;
    result["steps"] = steps;
    result["summary"] = summary;
    result["volume_unit"] = std::string{"10^6 "} + words.length_letter + "³";
    result["messages"] = message_list(done.messages);
    result["notes"] = note_list(done.run.notes, done.basin.Units_Code);
    return result;
}

}  // namespace

void add_run_calls(py::module_& module) {
    module.def(
        "run",
        [](std::string path, std::string simulation, bool year_round, std::optional<std::string> forecast,
           bool no_snow, std::vector<std::string> lag_shares, bool refuse, double wait) {
            const AskedRun asked{.basin = std::move(path),
                                 .simulation = std::move(simulation),
                                 .year_round = year_round,
                                 .forecast = std::move(forecast),
                                 .no_snow = no_snow,
                                 .lag_shares = std::move(lag_shares),
                                 .refuse = refuse,
                                 .wait = wait};
            return done_as_dict(
                patiently(path_from_utf8(asked.basin), wait,
                          [&](std::chrono::milliseconds piece) { return run_asked(asked, piece); }));
        },
        py::arg("path"), py::arg("simulation"), py::kw_only(), py::arg("year_round"), py::arg("forecast"),
        py::arg("no_snow"), py::arg("lag_shares"), py::arg("refuse"), py::arg("wait"));
    module.def("result_units", &result_units, py::arg("units"));
    module.def(
        "climate",
        [](std::string path, std::string simulation, std::string scenario, std::string report, int last_step,
           bool refuse, double wait) {
            const AskedEvaluation asked{.basin = std::move(path),
                                        .simulation = std::move(simulation),
                                        .scenario = std::move(scenario),
                                        .report = std::move(report),
                                        .last_step = last_step,
                                        .refuse = refuse,
                                        .wait = wait};
            return evaluation_dict(
                patiently(path_from_utf8(asked.basin), wait,
                          [&](std::chrono::milliseconds piece) { return evaluate_asked(asked, piece); }));
        },
        py::arg("path"), py::arg("simulation"), py::arg("scenario"), py::kw_only(), py::arg("report"),
        py::arg("last_step"), py::arg("refuse"), py::arg("wait"));
}

}  // namespace nivora
