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

/// Sets the climate step that was taken last, with its scenario and period; false after a report.
bool take_step(BasinDatabase& database, Session& session, const ReportCommand& command,
               BatchDialogs& dialogs) {
    if (command.step == 0) return true;
    const BasinState& basin = session.basin;
    const auto scenario = stored_scenario(database, basin, command.scenario, dialogs);
    if (!scenario) return false;
    if (!basin.Current_Start || !basin.Current_End || !scenario->winter_end_date) {
        dialogs.report_problem(
            "No such climate step",
            fmt::format("The scenario '{}' has no winter end date, or the simulation '{}' no start or end: "
                        "no step of its evaluation has a period.",
                        scenario->scenario, basin.Current_Sim_Name));
        return false;
    }
    const DayCount winter_end = whole_day(*scenario->winter_end_date);
    const bool winter = command.step <= k_last_winter_step;
    RunState& run = session.run;
    run.ClimateStep = command.step;
    run.ScenarioName = scenario->scenario;
    run.RunStart = winter ? *basin.Current_Start : winter_end + 1;
    run.RunEnd = winter ? winter_end : *basin.Current_End;
    return true;
}

/// Whether the results table holds a day of the current simulation.
bool has_results(BasinDatabase& database, const BasinState& basin) {
    if (!basin.Current_Start || !basin.Current_End || !database.has_table(k_sim_results)) return false;
    return count_days(database, k_sim_results, {*basin.Current_Start, *basin.Current_End}) > 0;
}

/// Brings the session to where a program is that has made the run of the options; false after a report.
bool take_state(BasinDatabase& database, Session& session, const ReportCommand& command,
                BatchDialogs& dialogs) {
    if (!select_in(session, database, command.basin, command.simulation, dialogs)) return false;
    if (!take_kind(session.run, command, dialogs)) return false;
    if (!take_step(database, session, command, dialogs)) return false;
    BasinState& basin = session.basin;
    basin.Input_Changed = command.input_changed;
    basin.Output_Valid = has_results(database, basin);
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

/// The discharges of a run's period on the days that the results table has, and nothing else of them.
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

/// The statistics of the results as they stand in the table. What can't be worked out is left blank.
void take_statistics(BasinDatabase& database, RunState& run, BatchDialogs& dialogs) {
    run.statistics = StatisticsReach::Nothing;
    std::ostringstream unheard;
    BatchDialogs quiet{unheard, false};
    try {
        const SimResults results = discharges(database, run);
        static_cast<void>(Run_Statistics(results, run_rows(results, run.RunStart, run.RunEnd), run, quiet));
    } catch (const StoreError& error) {
        dialogs.report_note(std::string{"Report 7 lacks the statistics. "} + error.what());
    }
}

/// What the input summary shows beside the results table.
RunFigures summary_figures(BasinDatabase& database, const Session& session, BatchDialogs& dialogs) {
    const RepeatedRun repeated = repeat_run(database, session.basin, session.run);
    RunState run = repeated.run.value_or(session.run);
    const ReportPeriod period = report_period(session.basin, session.run);
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

/// Makes the reports and writes those that could be made. @return whether none was refused
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
