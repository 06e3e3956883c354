#include "engine/build_results.h"

#include "base/number_text.h"
#include "store/simulation_days.h"

#include <fmt/format.h>

#include <cmath>

namespace nivora {
namespace {

constexpr float k_no_prior_runoff = -99.0F;
constexpr double k_runoff_tolerance = 0.2;

/// The discharge of the day before the run, if more than one row of that day is stored: a basin with one
/// zone never has it. A missing value counts as no row.
float prior_runoff(BasinDatabase& database, DayCount day) {
    const DayDischarge discharge = discharge_of_day(database, day);
    return discharge.rows > 1 ? discharge.first : k_no_prior_runoff;
}

/// The rows; none, after a message, if the store reports an error.
std::vector<SimulationDay> source_rows_or_message(BasinDatabase& database, const BasinState& basin,
                                                  DayCount start, DayCount end, Dialogs& dialogs) {
    try {
        return read_simulation_days(database, basin.Current_Sim_Name, {start, end});
    } catch (const StoreError& error) {
        dialogs.message({.text = std::string{"Can't open PhysicalData table. "} + error.what()});
        return {};
    }
}

/// Whether the run may start from the initial runoff that the simulation gives.
bool accepts_initial_runoff(const RunState& run, float prior, float first_runoff, Dialogs& dialogs) {
    Message question{.buttons = Buttons::OkCancel};
    const double initial = as_double(run.InitialRunoff);
    if (prior == k_no_prior_runoff) {
        const double first = as_double(first_runoff);
        if (!(std::abs(initial - first) > first * k_runoff_tolerance)) return true;
        question.title = "Warning, possible data problem";
        question.text = fmt::format(
            "There is a significant difference between your InitialRunoffValue {{{}}} and day #1's "
            "Measured Runoff {{{}}}.  Continue?",
            single_text(run.InitialRunoff), single_text(first_runoff));
    } else {
        if (is_missing(prior) || prior == run.InitialRunoff) return true;
        question.title = "Inconsistent data";
        question.text = fmt::format(
            "The InitialRunoffValue for this simulation {{{}}} is different than that found in the basin "
            "database {{{}}}.  Continue?",
            single_text(run.InitialRunoff), single_text(prior));
    }
    return dialogs.message(question) == Answer::Ok;
}

/// What a run reads of the basin.
struct SourceRows {
    float prior_runoff = k_no_prior_runoff;
    std::vector<SimulationDay> days;  ///< none, after messages, if the run cannot start
};

SourceRows read_source(BasinDatabase& database, const BasinState& basin, RunState& run, Dialogs& dialogs) {
    const Simulation& simulation = *basin.current_simulation();
    const DayCount start = *simulation.start;
    const DayCount end = *simulation.end;
    run.MonthDays[2] = february_days(start, end);
    SourceRows source;
    try {
        source.prior_runoff = prior_runoff(database, start - 1);
    } catch (const StoreError&) {
        source.prior_runoff = k_no_prior_runoff;  // the query below tells what is wrong with the table
    }
    source.days = source_rows_or_message(database, basin, start, end, dialogs);
    if (source.days.empty()) dialogs.message(missing_data_message(basin));
    return source;
}

void fill_row(SimResults& t, std::size_t row, const SimulationDay& source, bool no_snow) {
    t.Zone[row] = source.zone;
    t.Date[row] = source.date;
    t.ActualQ[row] = source.runoff;
    t.TMax[row] = t.TMaxCC[row] = source.tmax;
    t.Tmin[row] = t.TminCC[row] = source.tmin;
    t.TAvg[row] = t.TAvgCC[row] = source.tavg;
    t.Precip[row] = t.PrecipCC[row] = source.precip;
    t.SCA[row] = no_snow ? 0.0F : source.sca;
    t.SCACC[row] = source.sca;  // the observed cover in every case
    t.LR[row] = t.LRCC[row] = source.lapse_rate;
    t.Tcrit[row] = t.TcritCC[row] = source.tcrit;
    t.AN[row] = t.ANCC[row] = source.an;
    t.CS[row] = t.CSCC[row] = source.cs;
    t.CR[row] = t.CRCC[row] = source.cr;
    t.LagTime[row] = t.LagTimeCC[row] = source.lag;
    t.RCA[row] = t.RCACC[row] = source.rca;
    t.NetRad[row] = t.NetRadCC[row] = source.net_radiation;
    t.Xcoeff[row] = t.XcoeffCC[row] = source.x;
    t.YCoeff[row] = t.YCoeffCC[row] = source.y;
    t.SCAclim[row] = t.SCAclimWA[row] = t.SCAclimWAMA[row] = 0.0F;
    t.MDCincl[row] = t.MDCexcl[row] = t.MDCexclWA[row] = t.MDCexclWAnew[row] = t.MeltOffset[row] = 0.0F;
    t.DailyQPresent[row] = 0.0;
}

/// Fills the table after the question about the initial runoff, which may stop the run.
/// @return whether the table has the zones of the basin
bool fill_table(BuiltResults& built, const SourceRows& source, const BasinState& basin, const RunState& run,
                Dialogs& dialogs) {
    if (!accepts_initial_runoff(run, source.prior_runoff, source.days.front().runoff, dialogs)) {
        built.Status = 1;
        return false;
    }
    built.results.resize(source.days.size());
    for (std::size_t row = 0; row < source.days.size(); ++row)
        fill_row(built.results, row, source.days[row], run.NoSnow);
    if (static_cast<double>(source.days.back().zone) == leading_number(basin.zones_text)) return true;
    dialogs.stop("# of zones with variable and parameter values don't match basin definition", "Fatal error");
    return false;
}

/// Replaces the table in the file; returns nothing, after a message, if the store reports an error.
std::unique_ptr<ResultsReplacement> replace_or_message(BasinDatabase& database, Dialogs& dialogs) {
    try {
        return std::make_unique<ResultsReplacement>(database);
    } catch (const StoreError& error) {
        dialogs.message(results_fault_message(error));
        return nullptr;
    }
}

/// The old table, with which the run continues if it cannot be replaced; empty if it cannot be read either.
SimResults remaining_results(BasinDatabase& database) {
    try {
        return load_results(database);
    } catch (const StoreError&) {
        return {};  // the user was just told that the table cannot be read
    }
}

}  // namespace

Message missing_data_message(const BasinState& basin) {
    return {
        .text = fmt::format("The current database is missing variables and/or parameters needed to run '{}'!",
                            basin.Current_Sim_Name),
        .title = "Run aborting, possible invalid simulation definition",
        .icon = Icon::Stop};
}

Message results_fault_message(const StoreError& error) {
    Message message{.icon = Icon::Stop};
    if (error.fault() == StoreFault::Busy) {
        message.text =
            "Conflict while accessing the 'SimResults' table.  Make sure you close the "
            "'Simulation Results' window before proceeding";
    } else {
        message.text = fmt::format("{} {}", static_cast<int>(error.fault()), error.what());
        message.title = "Unexpected error!  Simulation aborted.";
    }
    return message;
}

int february_days(DayCount start, DayCount end) {
    const CivilDate first = civil_date(start);
    int year = civil_date(end).year;
    if (first.year < year && first.month < 3) year = first.year;
    const bool leap = year % 100 == 0 ? year % 400 == 0 : year % 4 == 0;
    return leap ? 29 : 28;
}

BuiltResults Build_SimResults(BasinDatabase& database, const BasinState& basin, RunState& run,
                              Dialogs& dialogs, const ApplyScenario& apply_scenario) {
    BuiltResults built;
    const SourceRows source = read_source(database, basin, run, dialogs);
    if (source.days.empty()) {
        built.Status = 1;
        return built;
    }
    built.replacement = replace_or_message(database, dialogs);
    if (!built.replacement) {
        built.results = remaining_results(database);
        return built;
    }
    if (!fill_table(built, source, basin, run, dialogs)) return built;
    if (run.ClimateStep == 1 && apply_scenario) built.Status = apply_scenario(database, built.results);
    return built;
}

BuiltResults build_results_in_memory(BasinDatabase& database, const BasinState& basin, RunState& run,
                                     Dialogs& dialogs) {
    BuiltResults built;
    const SourceRows source = read_source(database, basin, run, dialogs);
    if (source.days.empty()) {
        built.Status = 1;
    } else {
        static_cast<void>(fill_table(built, source, basin, run, dialogs));
    }
    return built;
}

}  // namespace nivora
