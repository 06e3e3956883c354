#include "engine/run_driver.h"

#include "base/number_text.h"
#include "base/text.h"
#include "engine/runoff_custom_lag.h"
#include "engine/runoff_simulation.h"
#include "engine/snow_melt.h"
#include "engine/zone_inputs.h"
#include "engine/zone_totals.h"
#include "store/basin_marks.h"
#include "store/run_period.h"

#include <fmt/format.h>

#include <utility>

namespace nivora {
namespace {

constexpr double k_below_first_elevation = -0.00001;

RunMenuProblem zone_problem(int zone, const char* text) {
    return {{.text = text, .title = "Invalid zone description"}, RunMenuProblem::Place::Zone, zone};
}

Zone zone_of(const BasinState& basin, int number) {
    const auto index = static_cast<std::size_t>(number - 1);
    return index < basin.zones.size() ? basin.zones[index] : Zone{};
}

std::optional<RunMenuProblem> area_problem(const Zone& zone, int number) {
    if (zone.area.value_or(0.0) > 0.0) return std::nullopt;  // NaN is refused, too
    return zone_problem(number, "Zone area must be greater than zero!");
}

std::optional<RunMenuProblem> first_zone_problem(const BasinState& basin) {
    double previous = k_below_first_elevation;
    for (int number = 1; number <= basin.ZoneCount; ++number) {
        const Zone zone = zone_of(basin, number);
        if (auto problem = area_problem(zone, number)) return problem;
        const double elevation = zone.elevation.value_or(0.0);
        if (!(elevation > previous)) {
            return zone_problem(number, "Hypsometric elevations must be in increasing order by zone");
        }
        previous = elevation;
    }
    return std::nullopt;
}

std::string title_of(const char* caption) { return std::string{caption}.substr(1); }

/// Writes the rows to the file; false, after a message, if the store reports an error. The old table is in
/// the file then.
bool store_results(BuiltResults& built, RunContext context) {
    if (!built.replacement) return false;
    try {
        built.replacement->commit(built.results);
        built.replacement.reset();
        mark_basin_changed(context.basin);
        mark_results_stored(context.basin);
        return true;
    } catch (const StoreError& error) {
        built.replacement.reset();
        context.dialogs.message(results_fault_message(error));
        return false;
    }
}

void mark_outcome(RunContext context, bool completed) {
    context.run.results_enabled = false;
    context.run.LastRunSimulation.clear();
    // The table is empty or half filled from here on.
    mark_output_invalid(context.basin);
    if (!completed) return;
    mark_results_current(context.basin);
    context.run.results_enabled = true;
    context.run.LastRunSimulation = context.basin.Current_Sim_Name;
}

/// Opens the working file; nothing, after messages, if it cannot be opened.
std::unique_ptr<BasinDatabase> open_or_message(const BasinState& basin, Dialogs& dialogs) {
    try {
        return std::make_unique<BasinDatabase>(basin.Work_File, Access::ReadWrite);
    } catch (const StoreError& error) {
        dialogs.message({.text = "Can't open database."});
        dialogs.message({.text = std::string{"Can't open PhysicalData table. "} + error.what()});
        dialogs.message(missing_data_message(basin));
        return nullptr;
    }
}

/// Takes period, units and options from the current simulation;
/// false, after a message, if its period is invalid.
bool prepare_run(RunContext context, int index) {
    auto& [basin, run, dialogs] = context;
    if (run.RunKind == k_run_kind_simulation_chosen) {
        run.RunKind = index + k_melt_season_simulation;
        run.RunTitle = title_of(simulation_caption(index));
    }
    const Simulation* simulation = basin.current_simulation();
    if (const auto problem = run_period_problem(simulation)) {
        dialogs.message(*problem);
        return false;
    }
    if (const auto problem = initial_runoff_problem(*simulation)) {
        dialogs.message(*problem);
        return false;
    }
    run.notes.clear();
    run.statistics = StatisticsReach::Nothing;
    run.RunStart = *simulation->start;
    run.RunEnd = *simulation->end;
    run.ClimateStep = 0;
    run.InitialRunoff = simulation->initial_runoff.value_or(0.0F);
    return true;
}

/// Who asks about a blank latitude: the run, after its table is built, or its caller before the run.
enum class LatitudeQuestion { Here, AnsweredBefore };

/// The stages of the run on a table that was built, and what they leave beside it.
/// @return whether all stages were completed
bool run_stages(BuiltResults& built, RunContext context, RunOutcome& outcome) {
    RunState& run = context.run;
    run.notes = days_without_rows(built.results, context.basin.ZoneCount, run.RunStart, run.RunEnd);
    const bool reached_end = Run_Model(built.results, context, outcome.statistics);
    Prepare_Zone_Totals(built.results, context.basin.ZoneCount, run);
    return reached_end;
}

/// Only a table that is in the file takes the marks of the former one away.
RunOutcome run_on(BasinDatabase& database, RunContext context, LatitudeQuestion latitude,
                  SimResults* table = nullptr) {
    RunOutcome outcome;
    BuiltResults built = Build_SimResults(database, context.basin, context.run, context.dialogs, nullptr);
    const bool goes_on = built.Status != 1 && (latitude == LatitudeQuestion::AnsweredBefore ||
                                               accepts_blank_latitude(context.basin, context.dialogs));
    const bool reached_end = goes_on && run_stages(built, context, outcome);
    if (goes_on)
        outcome.missing = missing_input(built.results, basin_inputs(context.basin), context.run, reached_end);
    outcome.results_rebuilt = store_results(built, context);
    outcome.completed = reached_end && outcome.results_rebuilt;
    if (outcome.results_rebuilt) mark_outcome(context, outcome.completed);
    if (outcome.results_rebuilt && table != nullptr) *table = std::move(built.results);
    return outcome;
}

/// Puts the former state of a run back at its end, unless the new one is kept.
class FormerState {
public:
    explicit FormerState(RunState& run) : run_(run), former_(run) {}
    FormerState(const FormerState&) = delete;
    FormerState& operator=(const FormerState&) = delete;
    ~FormerState() {
        if (!discarded_) run_ = std::move(former_);
    }
    void discard() { discarded_ = true; }

private:
    RunState& run_;
    RunState former_;
    bool discarded_ = false;
};

bool choose(RunContext context, const RunChoice& choice) {
    if (choice.forecast) return choose_forecast(context.run, context.dialogs, choice.index);
    choose_simulation(context.run);
    return true;
}

}  // namespace

std::optional<RunMenuProblem> run_menu_problem(const BasinState& basin) {
    if (basin.current_simulation() == nullptr) {
        return RunMenuProblem{
            {.text = "Identify a simulation before attempting a calculation!", .title = "Simulation Error!"},
            RunMenuProblem::Place::None,
            0};
    }
    if (trimmed(basin.reference_elevation_text).empty()) {
        return RunMenuProblem{{.text = "Please provide a basin reference elevation before continuing",
                               .title = "Missing a required value",
                               .icon = Icon::Stop},
                              RunMenuProblem::Place::ReferenceElevation,
                              0};
    }
    return first_zone_problem(basin);
}

std::optional<Message> run_period_problem(const Simulation* simulation) {
    if (simulation == nullptr || !simulation->start || !simulation->end) {
        return Message{.text = "Please check the start/end dates for this simulation!", .icon = Icon::Stop};
    }
    if (is_run_period(*simulation->start, *simulation->end)) return std::nullopt;
    return Message{.text = "Date range error!  366 ", .icon = Icon::Stop};
}

std::optional<RunMenuProblem> zone_area_problem(const BasinState& basin) {
    for (int number = 1; number <= basin.ZoneCount; ++number) {
        if (auto problem = area_problem(zone_of(basin, number), number)) return problem;
    }
    return std::nullopt;
}

const char* simulation_caption(int index) {
    return index == 0 ? "&Melt Season Simulation" : "&Year round Simulation";
}

const char* forecast_caption(int index) {
    return index == 0 ? "&Melt Season Forecast" : "&Year round Forecast";
}

void choose_simulation(RunState& run) {
    run.RunKind = k_run_kind_simulation_chosen;
    run.UpdateInterval = 0;
}

bool choose_forecast(RunState& run, Dialogs& dialogs, int index) {
    run.UpdateInterval = 0;
    const auto answer = dialogs.input(
        {.prompt = "Enter the frequency (1-9 days) for updating simulated runoff with observed values",
         .title = "Enter Forecast Frequency",
         .proposed = {}});
    run.RunKind = index;
    run.RunTitle = title_of(forecast_caption(index));
    const std::string text{trimmed(answer.value_or(""))};
    if (text.size() == 1 && text.front() >= '1' && text.front() <= '9') {
        run.UpdateInterval = text.front() - '0';
        return true;
    }
    dialogs.message({.text = "Updating interval for forecasting must be 1-9 (days).  Forecast run aborted.",
                     .title = "Invalid forecast frequency!"});
    return false;
}

std::optional<Message> initial_runoff_problem(const Simulation& simulation) {
    const float runoff = simulation.initial_runoff.value_or(0.0F);
    if (!(runoff < 0.0F)) return std::nullopt;
    return Message{
        .text = fmt::format(
            "The initial runoff of the simulation '{}' is {}. A runoff cannot be below 0: enter the "
            "discharge of the day before the simulation starts.",
            simulation.name, single_text(runoff)),
        .title = "Invalid initial runoff",
        .icon = Icon::Stop};
}

bool accepts_blank_latitude(const BasinState& basin, Dialogs& dialogs) {
    if (!trimmed(basin.latitude_text).empty()) return true;
    return dialogs.message(
               {.text = "A positive or blank latitude indicates a basin located in the northern hemisphere, "
                        "a negative latitude indicates a basin located in the southern hemisphere.  "
                        "Continue processing?",
                .title = "Missing latitude",
                .buttons = Buttons::YesNo}) == Answer::Yes;
}

bool Run_Model(SimResults& results, RunContext context, StatisticsReach& statistics) {
    auto& [basin, run, dialogs] = context;
    statistics = StatisticsReach::Nothing;
    const RunRows rows = run_rows(results, run.RunStart, run.RunEnd);
    BasinInputs inputs = basin_inputs(basin);
    if (!Zone_Inputs(results, rows, inputs, run, dialogs)) return false;
    Snow_Melt(results, rows, inputs, run, dialogs);
    inputs.precipitation_threshold = settle_precipitation_threshold(basin);
    const bool custom_lag = run.LagDistribution[0] > 0.0F;
    const bool reached_end = custom_lag ? Runoff_Custom_Lag(results, rows, inputs, run, dialogs)
                                        : Runoff_Simulation(results, rows, inputs, run, dialogs);
    if (const auto note = runoff_below_zero(results, rows, run)) run.notes.push_back(*note);
    if (reached_end) statistics = Run_Statistics(results, rows, run, dialogs);
    return reached_end;
}

RunOutcome start_run(RunContext context, int index) {
    if (!prepare_run(context, index)) return {};
    const auto database = open_or_message(context.basin, context.dialogs);
    if (!database) return {};
    return run_on(*database, context, LatitudeQuestion::Here);
}

RunOutcome start_run(BasinDatabase& database, RunContext context, int index, SimResults* table) {
    if (!prepare_run(context, index)) return {};
    return run_on(database, context, LatitudeQuestion::AnsweredBefore, table);
}

bool run_without_storing(BasinDatabase& database, RunContext context, int index) {
    if (!prepare_run(context, index)) return false;
    BuiltResults built = build_results_in_memory(database, context.basin, context.run, context.dialogs);
    RunOutcome outcome;
    return built.Status != 1 && run_stages(built, context, outcome);
}

RunOutcome choose_and_run(RunContext context, const RunChoice& choice,
                          const std::function<RunOutcome()>& start) {
    FormerState former{context.run};
    if (!choose(context, choice)) return {};
    const RunOutcome outcome = start();
    if (!outcome.results_rebuilt) return {};
    former.discard();
    return outcome;
}

}  // namespace nivora
