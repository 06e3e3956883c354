#include "studies/evaluator.h"

#include "base/fault.h"
#include "engine/runoff_custom_lag.h"
#include "engine/runoff_simulation.h"
#include "engine/snow_melt.h"
#include "engine/zone_inputs.h"
#include "studies/kept_messages.h"

#include <algorithm>
#include <utility>

namespace nivora {
namespace {

std::optional<Message> start_problem(const BasinState& basin) {
    const Simulation* simulation = basin.current_simulation();
    if (auto problem = run_period_problem(simulation)) return problem;
    if (auto problem = initial_runoff_problem(*simulation)) return problem;
    if (auto problem = zone_area_problem(basin)) return problem->message;
    return std::nullopt;
}

/// The settings of a run before its first stage.
RunState started_run(const Simulation& simulation, const RunRequest& request) {
    RunState run;
    run.RunKind = request.RunKind;
    run.UpdateInterval = request.UpdateInterval;
    run.NoSnow = request.NoSnow;
    run.LagDistribution = request.LagDistribution;
    run.RunStart = simulation.start.value_or(0);
    run.RunEnd = simulation.end.value_or(0);
    run.InitialRunoff = simulation.initial_runoff.value_or(0.0F);
    return run;
}

void take_measured(StudyBasin& study) {
    for (const std::uint32_t row : study.rows.by_zone) {
        if (study.table.Zone[row] != 1) continue;
        study.flow_rows.push_back(row);
        study.measured.dates.push_back(study.table.Date[row]);
        study.measured.measured.push_back(as_double(study.table.ActualQ[row]));
    }
}

/// The stages of a run, without its statistics. @return whether they were completed
bool run_stages(SimResults& table, const StudyBasin& study, RunState& run, Dialogs& dialogs) {
    if (!Zone_Inputs(table, study.rows, study.inputs, run, dialogs)) return false;
    Snow_Melt(table, study.rows, study.inputs, run, dialogs);
    return run.LagDistribution[0] > 0.0F ? Runoff_Custom_Lag(table, study.rows, study.inputs, run, dialogs)
                                         : Runoff_Simulation(table, study.rows, study.inputs, run, dialogs);
}

}  // namespace

bool Evaluation::is_sound() const {
    // A question was answered so that the run went on, as a user may answer it.
    return reached_end && std::none_of(messages.begin(), messages.end(),
                                       [](const Message& message) { return message.buttons == Buttons::Ok; });
}

std::variant<std::shared_ptr<const StudyBasin>, Message> read_study_basin(BasinDatabase& database,
                                                                          const BasinState& basin,
                                                                          const RunRequest& request) {
    if (auto problem = start_problem(basin)) return *problem;
    auto study = std::make_shared<StudyBasin>();
    study->basin = basin;
    study->run = started_run(*basin.current_simulation(), request);
    KeptMessages dialogs;
    BuiltResults built = build_results_in_memory(database, study->basin, study->run, dialogs);
    for (const Message& message : dialogs.messages) {
        if (message.buttons == Buttons::Ok) return message;
    }
    settle_precipitation_threshold(study->basin);
    study->inputs = basin_inputs(study->basin);
    study->table = std::move(built.results);
    study->rows = run_rows(study->table, study->run.RunStart, study->run.RunEnd);
    take_measured(*study);
    return study;
}

Evaluator::Evaluator(std::shared_ptr<const StudyBasin> basin) : basin_(std::move(basin)) {}

Evaluation Evaluator::evaluate(std::span<const Adjustment> adjustments) {
    Evaluation evaluation;
    table_ = basin_->table;
    RunState run = basin_->run;
    KeptMessages dialogs;
    try {
        for (const Adjustment& adjustment : adjustments) adjust(table_, adjustment, run.NoSnow);
        evaluation.reached_end = run_stages(table_, *basin_, run, dialogs);
    } catch (const Fault& fault) {
        dialogs.stop(fault.what());
    }
    evaluation.messages = std::move(dialogs.messages);
    evaluation.computed.reserve(basin_->flow_rows.size());
    for (const std::uint32_t row : basin_->flow_rows) evaluation.computed.push_back(table_.DailyQ[row]);
    return evaluation;
}

}  // namespace nivora
