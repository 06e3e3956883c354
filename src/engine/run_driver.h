// Where a user's command enters the model: the checks before a run, the choice of its kind, and the run
// itself.
#pragma once

#include "base/dialogs.h"
#include "engine/build_results.h"
#include "engine/run_state.h"
#include "engine/run_statistics.h"

#include <optional>
#include <string>

namespace nivora {

/// What a run works on and with.
struct RunContext {
    BasinState& basin;
    RunState& run;
    Dialogs& dialogs;
};

/// What opening the Run menu finds wrong, and where the user has to look.
struct RunMenuProblem {
    enum class Place { None, ReferenceElevation, Zone };

    Message message;
    Place place = Place::None;
    int zone = 0;  ///< 1 to 16 where the place is a zone
};

/// The checks at the opening of the Run menu, in their order; the first failure counts. They report and
/// disable nothing.
[[nodiscard]] std::optional<RunMenuProblem> run_menu_problem(const BasinState& basin);

/// What keeps a simulation from any run: a start or an end that is missing, or a period that is not of 2 to
/// 366 days. Every run asks this, because the grid leaves the dates of its first row unchecked. Null stands
/// for no simulation.
[[nodiscard]] std::optional<Message> run_period_problem(const Simulation* simulation);

/// A zone whose area is not greater than zero, which neither the menu nor a run accepts.
[[nodiscard]] std::optional<RunMenuProblem> zone_area_problem(const BasinState& basin);

/// Captions of the run commands, the accelerator marked by "&". Index 0 melt season, 1 year round.
[[nodiscard]] const char* simulation_caption(int index);
[[nodiscard]] const char* forecast_caption(int index);

/// The choice of the Simulation menu, before one of its items.
void choose_simulation(RunState& run);

/// The choice of an item of the Forecast menu: asks for the updating interval, 1 to 9 days.
///
/// @return whether the run may start; a refused interval has been shown
[[nodiscard]] bool choose_forecast(RunState& run, Dialogs& dialogs, int index);

/// Why a run does not start from the initial runoff of a simulation; nothing where it may. A blank one counts
/// as 0.
[[nodiscard]] std::optional<Message> initial_runoff_problem(const Simulation& simulation);

/// Asks whether a basin without a latitude lies in the north; true where it has one, or the answer is Yes.
[[nodiscard]] bool accepts_blank_latitude(const BasinState& basin, Dialogs& dialogs);

/// How a run ended.
struct RunOutcome {
    bool results_rebuilt = false;  ///< the old results table is gone
    bool completed = false;        ///< all stages reached their end, and the table is in the file
    StatisticsReach statistics = StatisticsReach::Nothing;  ///< what there is to show
};

/// The stages of a run after the building of its table: zone inputs, snow and melt, runoff, statistics.
///
/// @param statistics set to what was worked out of the statistics
/// @return whether all stages reached their end
[[nodiscard]] bool Run_Model(SimResults& results, RunContext context, StatisticsReach& statistics);

/// Runs the current simulation over its period, with the results table read from and left in the working
/// file, and the notes on the run in `run`. Once the old table is gone, only a run that is completed leaves
/// valid results.
///
/// @param index 0 melt season, 1 year round; after choose_simulation or choose_forecast
RunOutcome start_run(RunContext context, int index);

/// The same in a file that the caller has open, once accepts_blank_latitude was true: that question is not
/// asked here, so that a No leaves the file as it was.
RunOutcome start_run(BasinDatabase& database, RunContext context, int index);

}  // namespace nivora
