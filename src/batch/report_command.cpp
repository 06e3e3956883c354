#include "base/durable_file.h"
#include "batch/commands.h"
#include "batch/output_guard.h"
#include "batch/repeated_run.h"
#include "batch/report_output.h"
#include "batch/reported_state.h"
#include "batch/selected_simulation.h"
#include "climate/named_evaluation.h"
#include "reports/report_generator.h"
#include "reports/run_figures.h"
#include "store/basin_marks.h"
#include "store/basin_opening.h"
#include "store/daily_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace nivora {
namespace {

constexpr const char* k_report_file = "NVRrpts.out";
constexpr const char* k_no_step = "No such climate step";

std::filesystem::path beside(const std::filesystem::path& basin, const char* name) {
    return std::filesystem::path{basin}.replace_filename(name);
}

/// Sets the climate step that was taken last, with its scenario and period; false after a report.
bool take_reported_step(BasinDatabase& database, Session& session, const ReportCommand& command,
                        BatchDialogs& dialogs) {
    const int step = command.run.step;
    if (step == 0) return true;
    const BasinState& basin = session.basin;
    const auto scenario = stored_scenario(database, basin, command.run.scenario, dialogs);
    if (!scenario) return false;
    const auto [period, problem] = step_period(basin, *scenario, step);
    if (!period) {
        dialogs.report_problem(k_no_step, problem);
        return false;
    }
    if (!has_results(database, *period)) {
        dialogs.report_problem(
            "No results",
            fmt::format("The basin has no results of the simulation '{}' from {} to {}, the period of step "
                        "{}. Evaluate the scenario up to this step, then report it: nivora-batch climate "
                        "'{}' --simulation '{}' --scenario '{}' --last-step {}",
                        basin.Current_Sim_Name, long_date_text(period->start), long_date_text(period->end),
                        step, path_text(command.basin), basin.Current_Sim_Name, scenario->scenario, step));
        return false;
    }
    take_step(session.run, step, *scenario, *period);
    return true;
}

/// Brings the session to the state of a program that has made the run of the options; false after a report.
bool take_state(BasinDatabase& database, Session& session, const ReportCommand& command,
                BatchDialogs& dialogs) {
    if (!select_in(session, database, command.basin, command.simulation, dialogs)) return false;
    if (!take_kind(session.run, command.run, dialogs)) return false;
    if (!take_reported_step(database, session, command, dialogs)) return false;
    BasinState& basin = session.basin;
    const bool found = has_results(database, ReportPeriod{basin.Current_Start, basin.Current_End}.covered());
    mark_results_found(basin, found, command.input_changed);
    if (found) session.run.LastRunSimulation = basin.Current_Sim_Name;
    return true;
}

std::vector<Report> asked_reports(const Session& session, const ReportCommand& command) {
    if (command.reports) return *command.reports;
    std::vector<Report> reports;
    std::copy_if(k_all_reports.begin(), k_all_reports.end(), std::back_inserter(reports),
                 [&](Report report) { return may_choose_report(report, session.basin, session.run); });
    return reports;
}

/// The statistics of the results in the table. What cannot be computed stays missing.
void take_summary_statistics(BasinDatabase& database, RunState& run, BatchDialogs& dialogs) {
    try {
        take_statistics(database, run);
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
    take_summary_statistics(database, run, dialogs);
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
