#include "base/durable_file.h"
#include "batch/climate_steps.h"
#include "batch/commands.h"
#include "batch/output_guard.h"
#include "batch/repeated_run.h"
#include "batch/report_output.h"
#include "batch/selected_simulation.h"
#include "engine/run_statistics.h"
#include "reports/report_generator.h"
#include "reports/run_figures.h"
#include "store/basin_opening.h"
#include "store/daily_columns.h"
#include "store/daily_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <sstream>

namespace nivora {
namespace {

constexpr const char* k_report_file = "NVRrpts.out";
constexpr const char* k_no_step = "No such climate step";
constexpr int k_last_winter_step = 2;

std::filesystem::path beside(const std::filesystem::path& basin, const char* name) {
    return std::filesystem::path{basin}.replace_filename(name);
}

/// Sets the kind of run from the options; false after the message of a refused interval.
bool take_kind(RunState& run, const ReportCommand& command, BatchDialogs& dialogs) {
    const int index = command.year_round ? 1 : 0;
    run.NoSnow = command.no_snow;
    if (command.forecast_days) {
        dialogs.prepare_input(*command.forecast_days);
        return choose_forecast(run, dialogs, index);
    }
    run.RunKind = index + k_melt_season_simulation;
    return true;
}

/// The days that a climate step computes; nothing after a report.
std::optional<Period> step_period(const BasinState& basin, const ScenarioIndexRow& scenario, int step,
                                  BatchDialogs& dialogs) {
    if (const auto problem = period_problem(basin, RunState{})) {
        dialogs.report_problem(k_no_step, fmt::format("The steps of an evaluation have no period: {}. {}.",
                                                      problem->cause, problem->remedy));
        return std::nullopt;
    }
    if (!scenario.winter_end_date) {
        dialogs.report_problem(
            k_no_step, fmt::format("The scenario '{}' has no winter end date, so the steps of its evaluation "
                                   "have no period. Enter the date in the scenario window, or store the "
                                   "scenario again with nivora-batch scenario --winter-end.",
                                   scenario.scenario));
        return std::nullopt;
    }
    const DayCount winter_end = whole_day(*scenario.winter_end_date);
    if (step <= k_last_winter_step) return Period{*basin.Current_Start, winter_end};
    return Period{winter_end + 1, *basin.Current_End};
}

/// Whether the results table has a row of a period.
bool has_results(BasinDatabase& database, const Period& period) {
    return period.days() > 0 && database.has_table(k_sim_results) &&
           count_days(database, k_sim_results, period) > 0;
}

/// Sets the climate step that was taken last, with its scenario and period; false after a report.
bool take_step(BasinDatabase& database, Session& session, const ReportCommand& command,
               BatchDialogs& dialogs) {
    if (command.step == 0) return true;
    const BasinState& basin = session.basin;
    const auto scenario = stored_scenario(database, basin, command.scenario, dialogs);
    if (!scenario) return false;
    const auto period = step_period(basin, *scenario, command.step, dialogs);
    if (!period) return false;
    if (!has_results(database, *period)) {
        dialogs.report_problem(
            "No results",
            fmt::format("The basin has no results of the simulation '{}' from {} to {}, the period of step "
                        "{}. Evaluate the scenario up to this step, then report it: nivora-batch climate "
                        "'{}' --simulation '{}' --scenario '{}' --last-step {}",
                        basin.Current_Sim_Name, long_date_text(period->start), long_date_text(period->end),
                        command.step, path_text(command.basin), basin.Current_Sim_Name, scenario->scenario,
                        command.step));
        return false;
    }
    RunState& run = session.run;
    run.ClimateStep = command.step;
    run.ScenarioName = scenario->scenario;
    run.RunStart = period->start;
    run.RunEnd = period->end;
    return true;
}

/// Brings the session to the state of a program that has made the run of the options; false after a report.
bool take_state(BasinDatabase& database, Session& session, const ReportCommand& command,
                BatchDialogs& dialogs) {
    if (!select_in(session, database, command.basin, command.simulation, dialogs)) return false;
    if (!take_kind(session.run, command, dialogs)) return false;
    if (!take_step(database, session, command, dialogs)) return false;
    BasinState& basin = session.basin;
    basin.Input_Changed = command.input_changed;
    basin.Output_Valid =
        has_results(database, ReportPeriod{basin.Current_Start, basin.Current_End}.covered());
    if (basin.Output_Valid) session.run.LastRunSimulation = basin.Current_Sim_Name;
    return true;
}

std::vector<Report> asked_reports(const Session& session, const ReportCommand& command) {
    if (command.reports) return *command.reports;
    std::vector<Report> reports;
    std::copy_if(k_all_reports.begin(), k_all_reports.end(), std::back_inserter(reports),
                 [&](Report report) { return may_choose_report(report, session.basin, session.run); });
    return reports;
}

/// The discharges of a run's period on the days that the results table has, without its other columns.
SimResults discharges(BasinDatabase& database, const RunState& run) {
    constexpr std::array<std::string_view, 3> k_fields{"ActualQ", "DailyQ", "DailyQPresent"};
    const DailyColumns columns =
        read_daily_columns(database, k_sim_results, k_fields, 1, run.RunStart, run.RunEnd);
    SimResults results;
    for (const StoredDay& day : stored_days(database, k_sim_results, Period{run.RunStart, run.RunEnd})) {
        if (day.zone != 1) continue;
        const std::size_t row = results.size();
        results.resize(row + 1);
        results.Zone[row] = 1;
        results.Date[row] = day.date;
        results.ActualQ[row] = static_cast<float>(columns.at(1, 0, day.date));
        results.DailyQ[row] = columns.at(1, 1, day.date);
        results.DailyQPresent[row] = columns.at(1, 2, day.date);
    }
    return results;
}

/// The statistics of the results in the table. What cannot be computed stays missing.
void take_statistics(BasinDatabase& database, RunState& run, BatchDialogs& dialogs) {
    run.statistics = StatisticsReach::Nothing;
    std::ostringstream discarded;
    BatchDialogs quiet{discarded, false};
    try {
        const SimResults results = discharges(database, run);
        static_cast<void>(Run_Statistics(results, run_rows(results, run.RunStart, run.RunEnd), run, quiet));
    } catch (const StoreError& error) {
        dialogs.report_note(std::string{"Report 7 lacks the statistics. "} + error.what());
    }
}

/// The figures of the input summary that the results table does not hold.
RunFigures summary_figures(BasinDatabase& database, const Session& session, BatchDialogs& dialogs) {
    const RepeatedRun repeated = repeat_run(database, session.basin, session.run);
    RunState run = repeated.run.value_or(session.run);
    const Period period = report_period(session.basin, session.run).covered();
    run.RunStart = period.start;
    run.RunEnd = period.end;
    take_statistics(database, run, dialogs);
    RunFigures figures = run_figures(run);
    if (repeated.run) return figures;
    figures.initial_runoff.reset();
    dialogs.report_note(fmt::format(
        "The run can't be repeated, so that report 7 lacks the initial runoff and the snow that was left. {}",
        repeated.reason));
    return figures;
}

/// Makes the reports and writes those that were made. If the first one is refused, the file stays as it is: a
/// script that goes on must not find an empty one.
/// @return whether none was refused
bool make(const ReportCommand& command, BatchDialogs& dialogs) {
    const std::filesystem::path out = command.out.value_or(beside(command.basin, k_report_file));
    const std::filesystem::path climate_report =
        command.climate_report.value_or(beside(command.basin, k_climate_report));
    refuse_basin_as_output(out, command.basin);
    Desktop no_desktop;
    Session session{dialogs, no_desktop};
    ReportRequest made;
    {
        const OpenBasin basin = open_to_read(command.basin, command.wait, Check::All);
        BasinDatabase& database = basin.database();
        if (!take_state(database, session, command, dialogs)) return false;
        const std::vector<Report> reports = asked_reports(session, command);
        RunFigures figures;
        const bool summary = std::find(reports.begin(), reports.end(), Report::InputSummary) != reports.end();
        if (summary && !report_refusal(Report::InputSummary, session.basin, session.run))
            figures = summary_figures(database, session, dialogs);
        const ReportSources sources{database, session.basin, session.run, command.now.value_or(local_now())};
        made = make_reports(ReportGenerator{sources, figures, climate_report}, reports);
    }
    if (made.made > 0) write_report_file(out, made.text, {command.basin, climate_report});
    if (made.refusal) dialogs.message(*made.refusal);
    return !made.refusal;
}

}  // namespace

int report_command(const ReportCommand& command, BatchDialogs& dialogs) {
    try {
        return make(command, dialogs) ? k_done : k_failed;
    } catch (const StoreError& error) {
        dialogs.report_problem("The basin can't be read", error.what());
    } catch (const FileError& error) {
        dialogs.report_problem("The reports can't be written", error.what());
    }
    return k_failed;
}

}  // namespace nivora
