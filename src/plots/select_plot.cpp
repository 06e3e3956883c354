#include "plots/select_plot.h"

#include "base/durable_file.h"
#include "plots/legend.h"
#include "plots/plot_build.h"
#include "plots/plot_catalogue.h"
#include "plots/plot_offer.h"
#include "reports/report_period.h"

#include <fmt/format.h>

namespace nivora {
namespace {

/// Intended: each step of a climate evaluation bears this title, whatever the run before it was.
constexpr const char* k_step_title = "Year round Simulation";

/// The zone of a request, within those that the zone list of the plot offers; nothing if it does not.
std::optional<int> offered_zone(const PlotRequest& request, const BasinState& basin) {
    const ZoneList list = zone_list(request.plot, basin);
    if (list == ZoneList::None) return 1;
    const int zone = request.zone.value_or(picked_zone(request.plot, basin));
    const int last = list == ZoneList::WithAllZones ? basin.ZoneCount + 1 : basin.ZoneCount;
    if (zone < 1 || zone > last) return std::nullopt;
    return zone;
}

PlotRefusal zone_refusal(PlotNumber plot, int zone, const PlotSources& sources) {
    const BasinState& basin = sources.basin;
    const std::string title = plot_title(plot, sources);
    if (zone == basin.ZoneCount + 1)
        return {PlotRefusal::Kind::NotOffered,
                fmt::format("The plot '{}' shows one zone at a time. Choose a zone.", title)};
    const std::string zones =
        basin.ZoneCount == 1 ? "only zone A" : "the zones A to " + zone_letter(basin.ZoneCount);
    return {PlotRefusal::Kind::NotOffered,
            fmt::format("The plot '{}' cannot show the zone that was asked for: the basin has {}. Choose one "
                        "that it has.",
                        title, zones)};
}

/// Whether the head of a plot marks a run in no-snow mode.
bool marks_no_snow(PlotNumber plot) {
    return plot == PlotNumber::Runoff || plot == PlotNumber::RunoffComponents ||
           plot == PlotNumber::WaterEquivalent;
}

void set_run_kind(PlotHead& head, const RunState& run) {
    head.run_kind = head.step > 0 ? k_step_title : run.RunTitle;
    const bool is_forecast = head.step == 0 && run.RunKind < k_melt_season_simulation;
    head.update_interval = is_forecast ? run.UpdateInterval : 0;
}

PlotHead plot_head(PlotNumber plot, int zone, const PlotSources& sources) {
    const BasinState& basin = sources.basin;
    PlotHead head;
    head.title = plot_title(plot, sources);
    head.subtitle = path_text(basin.Basin_File) + " (" + basin.Current_Sim_Name + ")";
    head.period = plot_entry(plot).period;
    head.export_zone_label = zone_label(plot, zone, basin);
    if (!shows_runoff(plot)) head.zone_label = head.export_zone_label;
    head.basin_name = basin.basin_name;
    head.step = reported_climate_step(basin, sources.run);
    head.scenario_line = basin.Current_Sim_Name;
    if (head.step > 0) head.scenario_line += ", " + sources.run.ScenarioName + " Scenario";
    if (shows_runoff(plot)) set_run_kind(head, sources.run);
    head.no_snow = sources.run.NoSnow && marks_no_snow(plot);
    return head;
}

Plot empty_plot(PlotNumber number, int zone, const PlotSources& sources) {
    Plot plot;
    plot.number = number;
    if (zone_list(number, sources.basin) != ZoneList::None) plot.zone = zone;
    plot.head = plot_head(number, zone, sources);
    return plot;
}

PlotBuild begin_build(BasinDatabase& database, const PlotRequest& request, int zone,
                      const PlotSources& sources) {
    const BasinState& basin = sources.basin;
    const bool all_zones = zone > basin.ZoneCount;
    return {.database = database,
            .sources = sources,
            .melt_stop = request.melt_stop,
            .step = reported_climate_step(basin, sources.run),
            .first_zone = all_zones ? 1 : zone,
            .last_zone = all_zones ? basin.ZoneCount : zone,
            .all_zones = all_zones,
            .period = report_period(basin, sources.run).covered(),
            .plot = empty_plot(request.plot, zone, sources)};
}

void select(PlotBuild& build) {
    switch (build.plot.number) {
        case PlotNumber::Runoff:
        case PlotNumber::RunoffComparison: return select_runoff(build);
        case PlotNumber::DepletionOverMelt: return select_depletion_over_melt(build);
        case PlotNumber::AccumulatedMelt: return select_accumulated_melt(build);
        case PlotNumber::RunoffComponents: return select_runoff_components(build);
        case PlotNumber::CoverComparison: return select_cover_comparison(build);
        case PlotNumber::DepletionCutoff: return select_depletion_cutoff(build);
        case PlotNumber::ChangedAccumulatedMelt: return select_changed_accumulated_melt(build);
        case PlotNumber::DepletionComparison: return select_depletion_comparison(build);
        case PlotNumber::WaterEquivalent: return select_water_equivalent(build);
        default: return select_zone_series(build);
    }
}

PlotRefusal unable_to_plot(const std::string& zone_label) {
    return {PlotRefusal::Kind::Unable,
            "Unable to plot " + zone_label + ".  Plotting error, missing or invalid data"};
}

}  // namespace

PlotOutcome select_plot(BasinDatabase& database, const PlotRequest& request, const PlotSources& sources) {
    if (auto refusal = plot_refusal(request.plot, sources)) return *refusal;
    const std::optional<int> zone = offered_zone(request, sources.basin);
    if (!zone) return zone_refusal(request.plot, request.zone.value_or(0), sources);
    PlotBuild build = begin_build(database, request, *zone, sources);
    // The surface shows one text for all of these, which says that no plot stands and why.
    try {
        select(build);
        name_curves(build.plot);
        return std::move(build.plot);
    } catch (const BuildFault&) {
    } catch (const Fault&) {
    } catch (const StoreError&) {
    }
    return unable_to_plot(zone_label(request.plot, *zone, sources.basin));
}

}  // namespace nivora
