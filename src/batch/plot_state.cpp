#include "batch/plot_state.h"

#include "batch/selected_simulation.h"
#include "climate/named_evaluation.h"
#include "reports/report_period.h"
#include "store/basin_marks.h"

namespace nivora {
namespace {

/// Whether plots are offered after a step of an evaluation: not in the middle of its summer.
constexpr bool is_plotted_step(int step) { return step != 4 && step != 5; }

/// Sets the step of an evaluation; why it has no plots, if it has none.
std::optional<PlotRefusal> take_plotted_step(Session& session, int step, const ScenarioIndexRow& scenario) {
    session.run.LastRunSimulation = session.basin.Current_Sim_Name;
    const auto [period, problem] = step_period(session.basin, scenario, step);
    take_step(session.run, step, scenario, period.value_or(Period{.start = 1, .end = 0}));
    if (period || !is_plotted_step(step)) return std::nullopt;
    return PlotRefusal{PlotRefusal::Kind::NotOffered, problem};
}

void take_results(BasinDatabase& database, Session& session, PlotNumber plot) {
    session.run.LastRunSimulation = session.basin.Current_Sim_Name;
    if (!shows_runoff(plot)) return;
    try {
        take_statistics(database, session.run);
    } catch (const StoreError&) {
        // A table that can't be read refuses the plot as well.
    }
}

}  // namespace

std::optional<PlotState> take_plot_state(BasinDatabase& database, Session& session,
                                         const PlotCommand& command, BatchDialogs& dialogs) {
    PlotState state;
    if (!select_in(session, database, command.basin, command.simulation, dialogs)) return std::nullopt;
    if (!take_kind(session.run, command.run, dialogs)) return std::nullopt;
    if (command.run.step > 0) {
        const auto scenario = stored_scenario(database, session.basin, command.run.scenario, dialogs);
        if (!scenario) return std::nullopt;
        state.refusal = take_plotted_step(session, command.run.step, *scenario);
    }
    const Period period = report_period(session.basin, session.run).covered();
    session.run.RunStart = period.start;
    session.run.RunEnd = period.end;
    state.results_current = has_results(database, period);
    mark_results_found(session.basin, state.results_current);
    if (state.results_current) take_results(database, session, command.plot);
    return state;
}

}  // namespace nivora
