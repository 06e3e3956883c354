#include "engine/named_run.h"

#include "engine/lag_distribution.h"

#include <fmt/format.h>

namespace nivora {
namespace {

/// Sets the lag shares as the window of the distribution does; false after its message.
bool set_lag_shares(const std::vector<std::string>& shares, RunContext context) {
    if (shares.empty()) return true;
    const auto days = static_cast<double>(shares.size());
    auto problem = lag_day_count_problem(days);
    if (!problem) problem = lag_total_problem(lag_total_text(shares));
    if (problem) {
        context.dialogs.message(*problem);
        return false;
    }
    context.run.LagDistribution = lag_distribution(days, shares);
    return true;
}

/// What the start of the run would refuse, checked before anything in the file is changed.
std::optional<Message> start_problem(const BasinState& basin) {
    const Simulation* simulation = basin.current_simulation();
    if (auto problem = run_period_problem(simulation)) return problem;
    return initial_runoff_problem(*simulation);
}

/// Runs after the checks that leave the file as it is.
RunOutcome run_checked(OpenBasin& open, const NamedRun& named, RunContext context, SimResults* table) {
    if (const auto problem = start_problem(context.basin)) {
        context.dialogs.message(*problem);
        return {};
    }
    if (!accepts_blank_latitude(context.basin, context.dialogs)) return {};
    if (!make_basin_ready(open, named.basin, named.simulation, named.wait, context.basin, context.dialogs))
        return {};
    return start_run(open.database(), context, named.choice.index, table);
}

}  // namespace

bool select_by_name(BasinDatabase& database, const std::filesystem::path& file, const std::string& simulation,
                    BasinState& basin, Dialogs& dialogs) {
    basin.Basin_File = file;
    basin.Work_File = file;
    basin.New_Basin = false;
    read_basin(database, basin);
    if (const auto row = find_simulation(basin, simulation)) {
        select_simulation(basin, *row);
        return true;
    }
    std::string names;
    for (const Simulation& known : basin.simulations)
        names += (names.empty() ? "'" : ", '") + known.name + "'";
    dialogs.message({.text = fmt::format("The basin has no simulation '{}'. It has: {}.", simulation,
                                         names.empty() ? "none" : names),
                     .title = "No such simulation"});
    return false;
}

bool every_zone_has_area(const BasinState& basin, Dialogs& dialogs) {
    const auto problem = zone_area_problem(basin);
    if (problem) dialogs.message(problem->message);
    return !problem;
}

bool make_basin_ready(OpenBasin& open, const std::filesystem::path& file, const std::string& simulation,
                      std::chrono::milliseconds wait, BasinState& basin, Dialogs& dialogs) {
    if (!open.has_damaged_results()) return true;
    drop_damaged_results(open, wait);
    return select_by_name(open.database(), file, simulation, basin, dialogs);
}

RunOutcome run_by_name(const NamedRun& named, RunContext context, SimResults* table) {
    OpenBasin open = open_to_run(named.basin, named.wait);
    if (!select_by_name(open.database(), named.basin, named.simulation, context.basin, context.dialogs) ||
        !set_lag_shares(named.lag_shares, context) || !every_zone_has_area(context.basin, context.dialogs))
        return {};
    context.run.NoSnow = named.no_snow;
    if (const auto problem = run_menu_problem(context.basin)) context.dialogs.message(problem->message);
    return choose_and_run(context, named.choice, [&] { return run_checked(open, named, context, table); });
}

}  // namespace nivora
