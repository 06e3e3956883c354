#include "batch/evaluate_command.h"

#include "base/durable_file.h"
#include "base/iso_date.h"
#include "batch/commands.h"
#include "batch/evaluate_output.h"
#include "batch/reported_state.h"
#include "batch/selected_simulation.h"
#include "engine/run_driver.h"
#include "store/basin_opening.h"
#include "store/daily_rows.h"
#include "store/simulation_days.h"
#include "studies/evaluator.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace nivora {
namespace {

/// A day of the record as text.
std::string span_text(const Period& period) {
    return fmt::format("{} to {}", iso_date_text(period.start), iso_date_text(period.end));
}

/// The days that the options ask for; nothing after a report.
std::optional<Period> asked_period(const BasinState& basin, const EvaluateCommand& command,
                                   BatchDialogs& dialogs) {
    if (const auto problem = run_period_problem(basin.current_simulation())) {
        dialogs.message(*problem);
        return std::nullopt;
    }
    const Period whole{*basin.Current_Start, *basin.Current_End};
    Period asked = whole;
    if (command.from) asked.start = read_iso_date(*command.from).value_or(whole.start);
    if (command.to) asked.end = read_iso_date(*command.to).value_or(whole.end);
    if (asked.start > asked.end) {
        dialogs.report_problem("Period reversed",
                               fmt::format("The first day, {}, is after the last one, {}.",
                                           iso_date_text(asked.start), iso_date_text(asked.end)));
        return std::nullopt;
    }
    if (asked.start < whole.start || asked.end > whole.end) {
        dialogs.report_problem("Period outside the simulation",
                               fmt::format("{} is not within the simulation '{}', which goes from {}.",
                                           span_text(asked), basin.Current_Sim_Name, span_text(whole)));
        return std::nullopt;
    }
    return asked;
}

/// The stored discharges of zone 1.
DailyDischarge stored_discharge(BasinDatabase& database, const Period& period) {
    constexpr std::array<std::string_view, 2> k_fields{"ActualQ", "DailyQ"};
    DailyRows rows = read_daily_rows(database, k_sim_results, k_fields, 1, 1, period);
    return {.dates = std::move(rows.date),
            .measured = std::move(rows.fields[0]),
            .computed = std::move(rows.fields[1])};
}

/// Whether two values of a field are the same; missing ones are.
bool same_value(double a, double b) { return a == b || (is_missing(a) && is_missing(b)); }

/// Notes if the stored results were not made with the data and parameters that the simulation has now. They
/// don't tell which simulation they belong to.
void note_other_inputs(BasinDatabase& database, const BasinState& basin, const Period& period,
                       BatchDialogs& dialogs) {
    constexpr std::array<std::string_view, 6> k_fields{"ActualQ", "SCACC",  "AN",
                                                       "LagTime", "Xcoeff", "YCoeff"};
    const DailyRows rows = read_daily_rows(database, k_sim_results, k_fields, 1, basin.ZoneCount, period);
    const auto inputs = read_simulation_days(database, basin.Current_Sim_Name, period);
    std::size_t input = 0;
    bool same = rows.size() == inputs.size();
    for (std::size_t row = 0; row < rows.size() && same; ++row, ++input) {
        const SimulationDay& day = inputs[input];
        const std::array<double, 6> values{
            as_double(day.runoff), as_double(day.sca), as_double(day.an), as_double(day.lag), day.x, day.y};
        same = rows.zone[row] == day.zone && rows.date[row] == day.date;
        for (std::size_t field = 0; field < values.size(); ++field)
            same = same && same_value(rows.fields[field][row], values.at(field));
    }
    if (same) return;
    dialogs.report_note(fmt::format(
        "The results in the basin were not made with the data and parameters that '{}' has now: they "
        "belong to another simulation, or something was changed since. With --run a fresh run is "
        "compared.",
        basin.Current_Sim_Name));
}

/// The discharges of a run in memory; nothing after a report.
std::optional<DailyDischarge> fresh_discharge(BasinDatabase& database, const BasinState& basin,
                                              BatchDialogs& dialogs) {
    RunRequest request;
    request.RunKind = k_year_round_simulation;
    auto read = read_study_basin(database, basin, request);
    if (const auto* problem = std::get_if<Message>(&read)) {
        dialogs.message(*problem);
        return std::nullopt;
    }
    Evaluator evaluator{std::get<std::shared_ptr<const StudyBasin>>(read)};
    Evaluation evaluation = evaluator.evaluate({});
    for (const Message& message : evaluation.messages) dialogs.message(message);
    if (!evaluation.is_sound()) return std::nullopt;
    DailyDischarge discharge = evaluator.basin().measured;
    discharge.computed = std::move(evaluation.computed);
    return discharge;
}

/// Why there is nothing to compare; empty if there is a day.
std::string comparison_problem(const PrintedComparison& comparison) {
    const MissingDays& missing = comparison.days.missing;
    const std::string days = span_text(comparison.period);
    if (missing.asked == 0)
        return fmt::format("No day from {} lies in the months {}.", days, months_text(comparison.months));
    if (missing.measured == missing.asked)
        return fmt::format("None of the {} days from {} has a measured discharge.", missing.asked, days);
    if (missing.computed == missing.asked) {
        return fmt::format(
            "None of the {} days from {} has a computed discharge. With --run a fresh run is "
            "compared.",
            missing.asked, days);
    }
    if (missing.left_out == missing.asked)
        return fmt::format("No day from {} has both a measured and a computed discharge.", days);
    return {};
}

/// Compares and prints; false after a report.
bool evaluate(const EvaluateCommand& command, BatchDialogs& dialogs, std::ostream& out) {
    Desktop no_desktop;
    Session session{dialogs, no_desktop};
    PrintedComparison comparison;
    {
        const OpenBasin open = open_to_read(command.basin, command.wait, Check::All);
        BasinDatabase& database = open.database();
        if (!select_in(session, database, command.basin, command.simulation, dialogs)) return false;
        const BasinState& basin = session.basin;
        const auto period = asked_period(basin, command, dialogs);
        if (!period) return false;
        comparison = {.basin = basin.basin_name,
                      .simulation = basin.Current_Sim_Name,
                      .period = *period,
                      .months = command.months,
                      .fresh = command.run || !has_results(database, *period),
                      .units = basin.Units_Code,
                      .days = {}};
        std::optional<DailyDischarge> discharge;
        if (comparison.fresh) {
            discharge = fresh_discharge(database, basin, dialogs);
        } else {
            note_other_inputs(database, basin, *period, dialogs);
            discharge = stored_discharge(database, *period);
        }
        if (!discharge) return false;
        comparison.days = compared_days(*discharge, *period, command.months);
    }
    if (const std::string problem = comparison_problem(comparison); !problem.empty()) {
        dialogs.report_problem("Nothing to compare", problem);
        return false;
    }
    if (command.json) {
        print_measures_json(comparison, out);
    } else {
        print_measures(comparison, out);
    }
    return true;
}

}  // namespace

int evaluate_command(const EvaluateCommand& command, BatchDialogs& dialogs, std::ostream& out) {
    try {
        return evaluate(command, dialogs, out) ? k_done : k_failed;
    } catch (const StoreError& error) {
        dialogs.report_problem("The basin can't be read", error.what());
    } catch (const FileError& error) {
        dialogs.report_problem("The basin can't be read", error.what());
    }
    return k_failed;
}

}  // namespace nivora
