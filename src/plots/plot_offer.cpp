#include "plots/plot_offer.h"

#include "base/text.h"
#include "plots/plot_catalogue.h"
#include "reports/report_period.h"
#include "store/basin_marks.h"

#include <fmt/format.h>

namespace nivora {
namespace {

constexpr int k_winter_of_changed_climate = 2;
constexpr int k_last_step = 6;
/// The least difference of a simulation's end and start with which it has a whole winter and a summer.
constexpr DayCount k_year_difference = 364;

constexpr const char* k_average_title = "Average Temperature (Tavg)";
constexpr const char* k_step_2_runoff_title = "Runoff (Measured vs CompClim)";

/// Plots 18 to 22 compare the present with the changed climate.
bool compares_climates(PlotNumber plot) {
    return plot >= PlotNumber::RunoffComparison && plot <= PlotNumber::DepletionComparison;
}

bool covers_a_year(const BasinState& basin) {
    const Simulation* simulation = basin.current_simulation();
    return simulation != nullptr && simulation->start && simulation->end &&
           *simulation->end - *simulation->start >= k_year_difference;
}

/// Why the climate step rules out a plot; nothing if it does not.
std::optional<std::string> step_problem(PlotNumber plot, int step, const BasinState& basin) {
    if (compares_climates(plot) && step != k_last_step)
        return "compares the present with a changed climate, which needs all six steps of a climate "
               "evaluation. Evaluate a scenario of the simulation up to step 6.";
    if (plot == PlotNumber::Runoff && step == k_last_step)
        return fmt::format(
            "is not available after step 6 of a climate evaluation. Choose '{}', or run the "
            "simulation.",
            plot_entry(PlotNumber::RunoffComparison).title);
    if (plot != PlotNumber::WaterEquivalent || step == k_last_step) return std::nullopt;
    if (step > 0)
        return "is available after a run without climate change and after step 6 of a climate evaluation. "
               "Take the remaining steps, or run the simulation.";
    if (covers_a_year(basin)) return std::nullopt;
    return fmt::format(
        "needs a year, and the simulation '{}' is shorter. Select a simulation that ends at "
        "least {} days after it starts.",
        one_line(basin.Current_Sim_Name), k_year_difference);
}

/// Why no-snow mode rules out a plot: it shows the snow that the run left out.
std::optional<std::string> snow_problem(PlotNumber plot, const RunState& run) {
    const bool shows_snow = plot == PlotNumber::SnowCover || plot == PlotNumber::PotentialMelt ||
                            plot == PlotNumber::DepletionOverMelt || plot == PlotNumber::AccumulatedMelt;
    if (!run.NoSnow || !shows_snow) return std::nullopt;
    return "shows snow, and runs are made in 'No Snow' mode. Turn the mode off and run the simulation.";
}

/// Why results rule out a plot: they are missing, or not up to date.
std::optional<std::string> results_problem(PlotNumber plot, const PlotSources& sources) {
    if (plot_entry(plot).table != PlotTable::Results || sources.results_current) return std::nullopt;
    const BasinState& basin = sources.basin;
    const std::string name = one_line(basin.Current_Sim_Name);
    if (is_last_run(basin, sources.run) && inputs_changed_since_run(basin))
        return fmt::format(
            "needs up-to-date results, and inputs of the simulation '{}' have changed since its "
            "last run. Run it again.",
            name);
    return fmt::format("needs results of the simulation '{}', and there are none. Run the simulation.", name);
}

std::string problem_text(PlotNumber plot, const PlotSources& sources, const std::string& problem) {
    return fmt::format("The plot '{}' {}", plot_title(plot, sources), problem);
}

}  // namespace

bool shows_average_temperatures(const BasinState& basin) {
    constexpr std::int16_t k_max_min = 1;
    const Simulation* simulation = basin.current_simulation();
    return simulation != nullptr && simulation->temperature_values != k_max_min;
}

ZoneList zone_list(PlotNumber plot, const BasinState& basin) {
    const PlotEntry& entry = plot_entry(plot);
    if (entry.zones == PlotZones::Basin || is_basinwide(entry, basin.current_simulation()))
        return ZoneList::None;
    return entry.zones == PlotZones::OneZone ? ZoneList::OneZone : ZoneList::WithAllZones;
}

std::string plot_title(PlotNumber plot, const PlotSources& sources) {
    if (plot == PlotNumber::Temperatures && shows_average_temperatures(sources.basin)) return k_average_title;
    const int step = reported_climate_step(sources.basin, sources.run);
    if (plot == PlotNumber::Runoff && step == k_winter_of_changed_climate) return k_step_2_runoff_title;
    return plot_entry(plot).title;
}

std::optional<PlotRefusal> plot_refusal(PlotNumber plot, const PlotSources& sources) {
    using enum PlotRefusal::Kind;
    const int step = reported_climate_step(sources.basin, sources.run);
    if (step == 4 || step == 5)
        return PlotRefusal{ClimateStep, "Plots are not available during this climate change step!"};
    if (plot == PlotNumber::Dashes)
        return PlotRefusal{NotOffered, "Position 17 of the plot list is a line, not a plot. Choose another."};
    if (sources.basin.current_simulation() == nullptr)
        return PlotRefusal{
            NotOffered, "Plots show a simulation, and none is selected. Select one in the simulation table."};
    auto problem = step_problem(plot, step, sources.basin);
    if (!problem) problem = snow_problem(plot, sources.run);
    if (!problem) problem = results_problem(plot, sources);
    if (!problem) return std::nullopt;
    return PlotRefusal{NotOffered, problem_text(plot, sources, *problem)};
}

int picked_zone(PlotNumber plot, const BasinState& basin) {
    return zone_list(plot, basin) == ZoneList::WithAllZones ? basin.ZoneCount + 1 : 1;
}

std::string zone_label(PlotNumber plot, int zone, const BasinState& basin) {
    const ZoneList list = zone_list(plot, basin);
    if (list == ZoneList::None) return "Basinwide";
    if (zone > basin.ZoneCount) return "All Zones";
    const std::string name = "Zone " + zone_letter(zone);
    return list == ZoneList::OneZone && basin.ZoneCount == 1 ? name + " (Basinwide)" : name;
}

}  // namespace nivora
