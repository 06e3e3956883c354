#include "batch/reported_state.h"

#include "engine/run_driver.h"
#include "engine/run_statistics.h"
#include "reports/report_period.h"
#include "store/daily_rows.h"

#include <fmt/format.h>

#include <array>
#include <sstream>

namespace nivora {
namespace {

constexpr int k_last_winter_step = 2;

/// Zone 1's discharges in a run's period, row by row as the run has left them, without their other columns.
SimResults discharges(BasinDatabase& database, const RunState& run) {
    constexpr std::array<std::string_view, 3> k_fields{"ActualQ", "DailyQ", "DailyQPresent"};
    const DailyRows rows =
        read_daily_rows(database, k_sim_results, k_fields, 1, 1, Period{run.RunStart, run.RunEnd});
    SimResults results;
    results.resize(rows.size());
    for (std::size_t row = 0; row < rows.size(); ++row) {
        results.Zone[row] = 1;
        results.Date[row] = rows.date[row];
        results.ActualQ[row] = static_cast<float>(rows.fields[0][row]);
        results.DailyQ[row] = rows.fields[1][row];
        results.DailyQPresent[row] = rows.fields[2][row];
    }
    return results;
}

}  // namespace

bool take_kind(RunState& run, const ReportedRun& options, BatchDialogs& dialogs) {
    const int index = options.year_round ? 1 : 0;
    run.NoSnow = options.no_snow;
    if (options.forecast_days) {
        dialogs.prepare_input(*options.forecast_days);
        return choose_forecast(run, dialogs, index);
    }
    run.RunKind = index + k_melt_season_simulation;
    run.RunTitle = std::string{simulation_caption(index)}.substr(1);  // without the mark of its letter
    return true;
}

StepPeriod step_period(const BasinState& basin, const ScenarioIndexRow& scenario, int step) {
    if (const auto problem = period_problem(basin, RunState{})) {
        return {.period = {},
                .problem = fmt::format("The steps of an evaluation have no period: {}. {}.", problem->cause,
                                       problem->remedy)};
    }
    if (!scenario.winter_end_date) {
        return {
            .period = {},
            .problem = fmt::format("The scenario '{}' has no winter end date, so the steps of its evaluation "
                                   "have no period. Enter the date in the scenario window, or store the "
                                   "scenario again with nivora-batch scenario --winter-end.",
                                   scenario.scenario)};
    }
    const DayCount winter_end = whole_day(*scenario.winter_end_date);
    const Period period = step <= k_last_winter_step ? Period{*basin.Current_Start, winter_end}
                                                     : Period{winter_end + 1, *basin.Current_End};
    return {.period = period, .problem = {}};
}

void take_step(RunState& run, int step, const ScenarioIndexRow& scenario, const Period& period) {
    run.ClimateStep = step;
    run.ScenarioName = scenario.scenario;
    run.RunStart = period.start;
    run.RunEnd = period.end;
}

bool has_results(BasinDatabase& database, const Period& period) {
    return period.days() > 0 && database.has_table(k_sim_results) &&
           count_days(database, k_sim_results, period) > 0;
}

void take_statistics(BasinDatabase& database, RunState& run) {
    run.statistics = StatisticsReach::Nothing;
    std::ostringstream discarded;
    BatchDialogs quiet{discarded, false};
    const SimResults results = discharges(database, run);
    static_cast<void>(Run_Statistics(results, run_rows(results, run.RunStart, run.RunEnd), run, quiet));
}

}  // namespace nivora
