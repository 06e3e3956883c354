// Entry points of the model: the checks before a run, the choice of its kind, and the run itself.
#pragma once

#include "base/dialogs.h"
#include "engine/build_results.h"
#include "engine/missing_input.h"
#include "engine/run_state.h"
#include "engine/run_statistics.h"

#include <functional>
#include <optional>
#include <string>

namespace nivora {

/// The data and services that a run works with.
struct RunContext {
    BasinState& basin;
    RunState& run;
    Dialogs& dialogs;
};

/// A problem found when the Run menu opens, and where it is.
struct RunMenuProblem {
    enum class Place { None, ReferenceElevation, Zone };

    Message message;
    Place place = Place::None;
    int zone = 0;  ///< 1 to 16 if the place is a zone
};

/// The checks when the Run menu opens, in this order;
/// only the first problem is reported. No command is disabled.
[[nodiscard]] std::optional<RunMenuProblem> run_menu_problem(const BasinState& basin);

/// Why a simulation cannot run: its start or end is missing, or its period is not 2 to 366 days long. Every
/// run checks this, because the grid does not check the dates of its first row. Null means no simulation.
[[nodiscard]] std::optional<Message> run_period_problem(const Simulation* simulation);

/// The first zone whose area is not greater than zero, which neither the menu nor a run accepts.
[[nodiscard]] std::optional<RunMenuProblem> zone_area_problem(const BasinState& basin);

/// Captions of the run commands, the accelerator marked by "&". Index 0 melt season, 1 year round.
[[nodiscard]] const char* simulation_caption(int index);
[[nodiscard]] const char* forecast_caption(int index);

/// The choice of the Simulation menu, before one of its items.
void choose_simulation(RunState& run);

/// The choice of an item of the Forecast menu: asks for the updating interval, 1 to 9 days.
///
/// @return whether the run may start; for an invalid interval a message was shown
[[nodiscard]] bool choose_forecast(RunState& run, Dialogs& dialogs, int index);

/// Why a run cannot start from the initial runoff of a simulation;
/// nothing if it can. A blank one counts as 0.
[[nodiscard]] std::optional<Message> initial_runoff_problem(const Simulation& simulation);

/// Asks whether a basin without a latitude lies in the north.
/// True if it has a latitude, or if the answer is Yes.
[[nodiscard]] bool accepts_blank_latitude(const BasinState& basin, Dialogs& dialogs);

/// How a run ended.
struct RunOutcome {
    bool results_rebuilt = false;  ///< the file has a new results table, complete or not
    bool completed = false;        ///< all stages were completed and the table is in the file
    StatisticsReach statistics = StatisticsReach::Nothing;  ///< the statistics that were computed
    /// The daily variable that a stage lacked, so that it stopped; the user was told.
    std::optional<MissingInput> missing = std::nullopt;
};

/// The stages of a run after its table is built: zone inputs, snow and melt, runoff, statistics.
///
/// @param statistics set to the statistics that were computed
/// @return whether all stages were completed
[[nodiscard]] bool Run_Model(SimResults& results, RunContext context, StatisticsReach& statistics);

/// Runs the current simulation over its period, with the results table read from and left in the working
/// file, and the notes on the run in `run`. Once the old table is gone,
/// only a completed run leaves valid results. A table that could not be stored leaves the old one with its
/// marks.
///
/// @param index 0 melt season, 1 year round; after choose_simulation or choose_forecast
RunOutcome start_run(RunContext context, int index);

/// The same in a file that the caller has open. The caller asks accepts_blank_latitude before, so that the
/// answer No leaves the file unchanged.
/// @param table gets the rows, if it is not null and the table was stored
RunOutcome start_run(BasinDatabase& database, RunContext context, int index, SimResults* table = nullptr);

/// Runs the current simulation for what a run leaves in `run` beside its table, which is computed in memory:
/// the file is only read, and the marks of its results in `run` and the basin stay. The latitude is not asked
/// about.
/// @return whether all stages were completed
[[nodiscard]] bool run_without_storing(BasinDatabase& database, RunContext context, int index);

/// A command of the Run menu.
struct RunChoice {
    bool forecast = false;
    int index = 0;  ///< 0 melt season, 1 year round
};

/// Makes a choice of the Run menu and starts the run. If the run was refused or cancelled, or if its table
/// could not be stored, so that the file keeps its results, `context.run` still describes those: it is as
/// before.
///
/// @param start starts the run by start_run, after what the caller has to do between choice and run
/// @return the outcome of the run; nothing of one that left the file as it was
RunOutcome choose_and_run(RunContext context, const RunChoice& choice,
                          const std::function<RunOutcome()>& start);

}  // namespace nivora
