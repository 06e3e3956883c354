#include "climate/climate_run.h"

#include "base/durable_file.h"
#include "base/fault.h"
#include "climate/depletion_curves.h"
#include "climate/scenario_application.h"
#include "climate/winter_adjustment.h"
#include "engine/results_store.h"
#include "engine/runoff_simulation.h"
#include "engine/snow_melt.h"
#include "engine/zone_inputs.h"
#include "engine/zone_totals.h"
#include "store/basin_marks.h"
#include "store/table_io.h"

namespace nivora {
namespace {

/// The name that a run bears whose changed climate stands in the results already.
constexpr const char* k_auxiliary = "Auxiliary";

/// The fields that an earlier evaluation worked in.
/// Intended: AZMexclWA and AZMwork are not among them and keep their values.
constexpr std::array<std::string_view, 20> k_work_columns{
    "SCAclim",   "SCAclimWA",    "SCAclimWAMA", "ZoneDD",        "ZoneDDCC",  "SumAT",   "NewMelt",
    "M1S",       "aT",           "SnowOnStore", "ZonalMelt",     "TotalMelt", "MDCincl", "MDCexcl",
    "MDCexclWA", "MDCexclWAnew", "MeltOffset",  "DailyQPresent", "AZMincl",   "AZMexcl"};

void keep_statistics(ClimateContext context, StatisticsReach reach) {
    if (reach == StatisticsReach::Nothing) return;
    const RunState& run = context.run.run;
    StepStatistics statistics{.measured_volume = run.MeasuredVolume,
                              .average_measured = run.AvgMeasuredQ,
                              .computed_volume = run.ComputedVolume,
                              .average_computed = run.AvgComputedQ,
                              .volume_difference = std::nullopt,
                              .r2 = std::nullopt};
    if (reach == StatisticsReach::All && run.ClimateStep < k_climate_steps) {
        statistics.volume_difference = run.VolumeDifference;
        statistics.r2 = run.CoefficientR2;
    }
    context.climate.statistics.at(static_cast<std::size_t>(run.ClimateStep)) = statistics;
}

/// What the days of the whole simulation lack, for the summer as well.
void note_days_without_rows(const SimResults& results, ClimateContext context) {
    const BasinState& basin = context.run.basin;
    RunState& run = context.run.run;
    run.notes =
        days_without_rows(results, basin.ZoneCount, run.RunStart, basin.Current_End.value_or(run.RunEnd));
    for (RunNote& note : run.notes) note.step = run.ClimateStep;
}

bool run_model(SimResults& results, ClimateContext context) {
    StatisticsReach reach = StatisticsReach::Nothing;
    const bool reached_end = Run_Model(results, context.run, reach);
    keep_statistics(context, reach);
    return reached_end;
}

/// The last row of the index that bears the scenario's name; a name is unique in a basin.
std::optional<ScenarioIndexRow> index_row(BasinDatabase& database, const std::string& scenario) {
    std::optional<ScenarioIndexRow> found;
    for (ScenarioIndexRow& row : read_table<ScenarioIndexRow>(database, template_table(k_scenario_index))) {
        if (row.scenario == scenario) found = std::move(row);
    }
    return found;
}

void take_winter(ClimateContext context, DayCount winter_end) {
    const BasinState& basin = context.run.basin;
    RunState& run = context.run.run;
    context.climate.WinterEndDate = winter_end;
    run.InitialRunoff = basin.current_simulation()->initial_runoff.value_or(0.0F);
    run.RunStart = basin.Current_Start.value_or(0);
    run.RunEnd = winter_end;
    run.ScenarioName = context.climate.scenario;
}

/// Takes the scenario's dates and comments over; false after a message where nothing can be evaluated.
bool take_scenario(BasinDatabase& database, ClimateContext context) {
    ClimateState& climate = context.climate;
    Dialogs& dialogs = context.run.dialogs;
    if (const auto problem = evaluation_problem(database, context.run.basin, climate.scenario)) {
        dialogs.message(*problem);
        return false;
    }
    const auto row = index_row(database, climate.scenario);
    climate.ScenarioComments = row->comments.value_or("");
    take_winter(context, whole_day(*row->winter_end_date));
    return true;
}

bool reuse_confirmed(ClimateContext context) {
    const ClimateState& climate = context.climate;
    return context.run.dialogs.message({.text = "You are about to use the results of your most recent "
                                                "climate change scenario.\r\nThe winter end "
                                                "date, " +
                                                short_date_text(climate.WinterEndDate) + ", is taken from " +
                                                climate.scenario + ".  Continue?",
                                        .title = "Climate change validation",
                                        .buttons = Buttons::YesNo}) == Answer::Yes;
}

bool store(ResultsReplacement& replacement, const SimResults& results, RunContext context) {
    try {
        replacement.commit(results);
        mark_results_stored(context.basin);
        return true;
    } catch (const StoreError& error) {
        context.dialogs.message(results_fault_message(error));
        return false;
    }
}

bool store(BasinDatabase& database, const SimResults& results, RunContext context) {
    try {
        ResultsReplacement replacement{database};
        return store(replacement, results, context);
    } catch (const StoreError& error) {
        context.dialogs.message(results_fault_message(error));
        return false;
    }
}

void clear_sums(RunState& run) {
    run.ClimateSums = {};
    run.WinterPrecip = {};
    run.EndingStores = {};
}

/// After the model of step 1 has run, whatever came of it.
void mark_started(ClimateContext context) {
    BasinState& basin = context.run.basin;
    mark_evaluation_started(basin);
    context.run.run.LastRunSimulation = basin.Current_Sim_Name;
}

/// The table holds inputs alone.
void mark_without_results(ClimateContext context) {
    mark_output_invalid(context.run.basin);
    context.run.run.LastRunSimulation.clear();
    context.run.run.results_enabled = false;
}

StepOutcome outcome_of(bool done) { return done ? StepOutcome::Done : StepOutcome::Suspended; }

/// The results table between two steps.
struct StepTable {
    bool in_file = true;  ///< the next step reads it there, with what the user edits in between
    std::optional<SimResults> handed_on = std::nullopt;
};

/// The table as the file would give it back: a zero has no sign there.
SimResults as_stored(SimResults results) {
    SimResults::visit(results, [](auto& column) {
        for (auto& value : column) {
            if (value == 0) value = 0;
        }
    });
    return results;
}

/// Step 1 on results that the user edited by hand.
StepOutcome first_step_on_results(BasinDatabase& database, ClimateContext context) {
    context.run.run.ScenarioName = k_auxiliary;
    SimResults results = load_results(database);
    Clear_CC_Work_Columns(results);
    context.reached(StepStage::ModelStarts);
    note_days_without_rows(results, context);
    const bool reached_end = run_model(results, context);
    const bool stored = store(database, results, context.run);
    mark_started(context);
    return outcome_of(reached_end && stored);
}

/// Step 1 on a table that is built, with the scenario applied.
StepOutcome first_step_on_scenario(BasinDatabase& database, ClimateContext context, StepTable& table) {
    BasinState& basin = context.run.basin;
    Dialogs& dialogs = context.run.dialogs;
    const auto apply = [&](BasinDatabase& file, SimResults& results) {
        return Apply_Scenario(file, results, basin, context.climate.scenario, dialogs);
    };
    BuiltResults built = Build_SimResults(database, basin, context.run.run, dialogs, apply);
    if (built.replacement) mark_basin_changed(basin);
    if (built.Status == 1) {
        if (!built.replacement) return StepOutcome::Refused;
        if (store(*built.replacement, built.results, context.run)) mark_without_results(context);
        return StepOutcome::NotRun;
    }
    context.reached(StepStage::ModelStarts);
    note_days_without_rows(built.results, context);
    const bool reached_end = run_model(built.results, context);
    const bool stored = built.replacement && store(*built.replacement, built.results, context.run);
    mark_started(context);
    if (reached_end && stored && !table.in_file) table.handed_on = as_stored(std::move(built.results));
    return outcome_of(reached_end && stored);
}

StepOutcome checked_first_step(BasinDatabase& database, ClimateContext context, StepTable& table) {
    if (!take_scenario(database, context)) return StepOutcome::Refused;
    context.reached(StepStage::DatesChecked);
    if (!context.climate.reuse_results) return first_step_on_scenario(database, context, table);
    return reuse_confirmed(context) ? first_step_on_results(database, context) : StepOutcome::Refused;
}

void start_first_step(ClimateContext context) {
    RunState& run = context.run.run;
    run.RunKind = k_year_round_simulation;
    run.UpdateInterval = 0;
    run.notes.clear();
    clear_sums(run);
    context.climate.statistics = {};
}

/// @param before what to go back to where the step does not start
StepOutcome first_step(BasinDatabase& database, ClimateContext context, const RunState& before,
                       StepTable& table) {
    const ClimateState climate_before = context.climate;
    start_first_step(context);
    const StepOutcome outcome = checked_first_step(database, context, table);
    if (outcome == StepOutcome::Refused) {
        context.run.run = before;
        context.climate = climate_before;
    }
    return outcome;
}

bool second_step(SimResults& results, ClimateContext context) {
    const bool reached_end = run_model(results, context);
    context.run.run.MeltSeasonStart = context.climate.WinterEndDate;
    Prepare_Zone_Totals(results, context.run.basin.ZoneCount, context.run.run);
    return reached_end;
}

bool third_step(SimResults& results, ClimateContext context) {
    RunState& run = context.run.run;
    run.RunStart = context.climate.WinterEndDate + 1;
    run.RunEnd = context.run.basin.Current_End.value_or(run.RunEnd);
    run.InitialRunoff = run.FinalQ[1];
    return run_model(results, context);
}

/// Inputs and melt of the changed summer; no discharge is computed.
bool fourth_step(SimResults& results, ClimateContext context) {
    auto& [basin, run, dialogs] = context.run;
    run.InitialRunoff = run.FinalQ[1];
    const RunRows rows = run_rows(results, run.RunStart, run.RunEnd);
    const BasinInputs inputs = basin_inputs(basin);
    const bool reached_end = Zone_Inputs(results, rows, inputs, run, dialogs);
    Snow_Melt(results, rows, inputs, run, dialogs);
    return reached_end;
}

WinterReport new_report(ClimateContext context) {
    return {context.run.basin, context.run.run, context.climate, context.now};
}

/// False, after a message, if the report cannot be written.
bool write_report(ClimateContext context, const WinterReport& report) {
    if (context.report_file.empty()) return true;
    try {
        const BasinState& basin = context.run.basin;
        write_whole_file(context.report_file, report.written(), {basin.Work_File, basin.Basin_File});
        return true;
    } catch (const FileError& error) {
        context.run.dialogs.stop(std::string{error.what()} +
                                 " Step 5 can be repeated once it can be written.");
        return false;
    }
}

/// After a fault the report holds the completed zones.
bool fifth_step(SimResults& results, ClimateContext context) {
    const WinterContext winter{context.run.basin, context.run.run, context.climate, context.run.dialogs};
    WinterReport report = new_report(context);
    bool reached_end = false;
    try {
        Winter_Adjustment(results, winter, report);
        reached_end = true;
    } catch (const Fault& fault) {
        context.run.dialogs.stop(fault.what());
    }
    return write_report(context, report) && reached_end;
}

bool sixth_step(SimResults& results, ClimateContext context) {
    auto& [basin, run, dialogs] = context.run;
    run.InitialRunoff = run.FinalQ[2];
    const bool reached_end = run_model(results, context);
    context.climate.SummerStartDate = run.RunStart;
    const RunRows rows = run_rows(results, run.RunStart, run.RunEnd);
    try {
        for (int zone = 1; zone <= basin.ZoneCount; ++zone) {
            RowOrder of_zone;
            for (const std::uint32_t row : rows.by_zone) {
                if (results.Zone[row] == zone) of_zone.push_back(row);
            }
            if (of_zone.empty()) continue;
            accumulate_zonal_melt(results, of_zone);
            Climate_Depletion_Curves(results, of_zone);
        }
    } catch (const Fault& fault) {
        dialogs.stop(fault.what());
        return false;
    }
    return reached_end;
}

SimResults take_table(BasinDatabase& database, StepTable& table) {
    if (!table.handed_on) return load_results(database);
    SimResults results = std::move(*table.handed_on);
    table.handed_on.reset();
    return results;
}

bool work_later_step(SimResults& results, ClimateContext context, int step) {
    switch (step) {
        case 2: return second_step(results, context);
        case 3: return third_step(results, context);
        case 4: return fourth_step(results, context);
        case 5: return fifth_step(results, context);
        default: return sixth_step(results, context);
    }
}

StepOutcome later_step(BasinDatabase& database, ClimateContext context, int step, StepTable& table) {
    SimResults results = take_table(database, table);
    const bool done = work_later_step(results, context, step);
    if (done && !table.in_file) {
        table.handed_on = as_stored(std::move(results));
        return StepOutcome::Done;
    }
    const bool stored = store(database, results, context.run);
    return outcome_of(done && stored);
}

StepOutcome run_step(BasinDatabase& database, ClimateContext context, int step, StepTable& table) {
    const RunState before = context.run.run;
    context.run.run.ClimateStep = step;
    if (step > 1) forget_notes(context.run.run, step);
    // Even if step 5 fails, the report must not be that of an earlier evaluation.
    if (step == 5 && !write_report(context, new_report(context))) return StepOutcome::Suspended;
    try {
        return step == 1 ? first_step(database, context, before, table)
                         : later_step(database, context, step, table);
    } catch (const StoreError& error) {
        context.run.dialogs.stop(error.what());
        return StepOutcome::Suspended;
    }
}

}  // namespace

std::optional<Message> evaluation_problem(BasinDatabase& database, const BasinState& basin,
                                          const std::string& scenario) {
    const Simulation* simulation = basin.current_simulation();
    if (auto problem = run_period_problem(simulation)) return problem;
    if (auto problem = initial_runoff_problem(*simulation)) return problem;
    const auto row = index_row(database, scenario);
    if (row && row->winter_end_date && basin.Current_Start.value_or(0) <= whole_day(*row->winter_end_date))
        return std::nullopt;
    return Message{.text =
                       "Invalid date range.  Check the starting and ending dates in your current "
                       "simulation and the 'winter end date' in the selected climate scenario.",
                   .title = "Invalid dates",
                   .icon = Icon::Stop};
}

std::optional<float> ClimateState::summary(SummaryRow row, SummarySeason season) const {
    if (season == SummarySeason::Year) {
        const auto winter = summary(row, SummarySeason::Winter);
        const auto summer = summary(row, SummarySeason::Summer);
        if (!winter && !summer) return std::nullopt;
        return winter.value_or(0.0F) + summer.value_or(0.0F);
    }
    const bool winter = season == SummarySeason::Winter;
    const std::size_t present = winter ? 1 : 3;
    const std::size_t changed = winter ? 2 : 6;
    const auto& step = statistics.at(row == SummaryRow::ClimateAffected ? changed : present);
    if (!step) return std::nullopt;
    return row == SummaryRow::Measured ? step->measured_volume : step->computed_volume;
}

void begin_climate(ClimateContext context) {
    // Keeps what plots and the printed scenario need: the results may still be those of the last evaluation.
    ClimateState fresh;
    fresh.ScenarioComments = context.climate.ScenarioComments;
    fresh.SummerStartDate = context.climate.SummerStartDate;
    context.climate = fresh;
}

StepOutcome run_climate_step(ClimateContext context, int step) {
    try {
        BasinDatabase database{context.run.basin.Work_File, Access::ReadWrite};
        return run_climate_step(database, context, step);
    } catch (const StoreError& error) {
        context.run.run.ClimateStep = step;
        if (step == 5) static_cast<void>(write_report(context, new_report(context)));
        context.run.dialogs.stop(error.what());
        return StepOutcome::Suspended;
    }
}

StepOutcome run_climate_step(BasinDatabase& database, ClimateContext context, int step) {
    StepTable table;
    return run_step(database, context, step, table);
}

bool run_climate_steps(BasinDatabase& database, ClimateContext context, const std::string& scenario,
                       int last_step) {
    begin_climate(context);
    context.climate.scenario = scenario;
    StepTable table;
    for (int step = 1; step <= last_step; ++step) {
        table.in_file = step == last_step;
        const StepOutcome outcome = run_step(database, context, step, table);
        if (table.handed_on && outcome != StepOutcome::Done) store(database, *table.handed_on, context.run);
        end_climate_step(context, step, outcome);
        if (outcome != StepOutcome::Done) return false;
    }
    end_climate(context, false);
    return true;
}

bool run_climate_steps_in_memory(SimResults& results, ClimateContext context, const MemoryScenario& scenario,
                                 const std::function<void(int step, const SimResults& results)>& after) {
    begin_climate(context);
    context.climate.scenario = scenario.name;
    RunState& run = context.run.run;
    for (int step = 1; step <= k_climate_steps; ++step) {
        run.ClimateStep = step;
        if (step == 1) {
            start_first_step(context);
            take_winter(context, scenario.winter_end);
            apply_scenario_rows(results, scenario.rows, context.run.basin.ZoneCount);
            note_days_without_rows(results, context);
            if (!run_model(results, context)) return false;
        } else {
            forget_notes(run, step);
            if (!work_later_step(results, context, step)) return false;
        }
        results = as_stored(std::move(results));
        context.climate.steps_done = step;
        after(step, results);
    }
    return true;
}

void end_climate_step(ClimateContext context, int step, StepOutcome outcome) {
    auto& [basin, run, dialogs] = context.run;
    if (outcome == StepOutcome::Refused || outcome == StepOutcome::NotRun) return;
    if (outcome == StepOutcome::Suspended) {
        dialogs.message(
            {.text = "Climate change, step " + std::to_string(step) + " was 'cancelled' by the user",
             .title = "CC run suspended"});
    }
    run.results_enabled = false;
    run.LastRunSimulation.clear();
    if (outcome == StepOutcome::Suspended) {
        mark_output_invalid(basin);
        return;
    }
    context.climate.steps_done = step;
    mark_results_current(basin);
    run.results_enabled = true;
    run.LastRunSimulation = basin.Current_Sim_Name;
}

void end_climate(ClimateContext context, bool aborted) {
    if (aborted) context.run.run.ClimateStep = 0;
    if (context.run.run.ClimateStep < k_climate_steps) mark_output_invalid(context.run.basin);
}

std::string climate_step_caption(int step) {
    if (step == 0) return "&Run";
    return step > k_climate_steps ? "Run completed" : "Running Step" + std::to_string(step);
}

void Clear_CC_Work_Columns(SimResults& results) {
    SimResults::visit_named(results, [](std::string_view name, auto& column) {
        if (std::find(k_work_columns.begin(), k_work_columns.end(), name) != k_work_columns.end())
            std::fill(column.begin(), column.end(), 0);
    });
}

}  // namespace nivora
