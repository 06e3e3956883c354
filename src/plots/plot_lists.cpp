#include "plots/plot_lists.h"

#include "plots/plot_catalogue.h"
#include "reports/report_period.h"
#include "store/basin_store.h"

namespace nivora {
namespace {

/// The step whose plots depend on results alone, as those of steps 4 and 5 do.
constexpr int k_summer_of_changed_climate = 3;

bool refuses_all_plots(int step) { return step == 4 || step == 5; }

bool is_offered(PlotNumber plot, const PlotSources& sources) { return !plot_refusal(plot, sources); }

/// Whether a plot of the list can be chosen during steps 4 and 5, of which no present runoff is kept.
bool is_listed(PlotNumber plot, const PlotSources& sources) {
    if (plot == PlotNumber::Runoff) return false;
    RunState run = sources.run;
    run.ClimateStep = k_summer_of_changed_climate;
    return is_offered(plot, {sources.basin, run, sources.results_current});
}

ZoneListEntry zone_entry(std::optional<PlotNumber> picked, int zone, ZoneList list, const BasinState& basin) {
    ZoneListEntry entry;
    const bool all = zone > basin.ZoneCount;
    if (picked && list != ZoneList::None) entry.text = zone_label(*picked, zone, basin);
    if (!picked || list == ZoneList::None || all)
        entry.text = all ? "All Zones" : "Zone " + zone_letter(zone);
    if (list == ZoneList::OneZone) {
        entry.enabled = zone == 1 || basin.ZoneCount > 1;
        entry.visible = !all;
    }
    return entry;
}

}  // namespace

std::vector<PlotListEntry> plot_list(const PlotSources& sources) {
    const bool refused = refuses_all_plots(reported_climate_step(sources.basin, sources.run));
    std::vector<PlotListEntry> entries;
    for (int number = 1; number <= k_last_plot; ++number) {
        const auto plot = static_cast<PlotNumber>(number);
        entries.push_back({.text = plot_title(plot, sources),
                           .enabled = refused ? is_listed(plot, sources) : is_offered(plot, sources),
                           .dashes = plot == PlotNumber::Dashes});
    }
    return entries;
}

ZoneListState zone_list_state(std::optional<PlotNumber> picked, const BasinState& basin) {
    const ZoneList list = picked ? zone_list(*picked, basin) : ZoneList::None;
    ZoneListState state;
    state.enabled = list != ZoneList::None;
    for (int zone = 1; zone <= basin.ZoneCount + 1; ++zone)
        state.entries.push_back(zone_entry(picked, zone, list, basin));
    return state;
}

PlotTools plot_tools(std::optional<PlotNumber> standing) {
    if (!standing) return {};
    const bool bars = *standing == PlotNumber::WaterEquivalent;
    return {.zoom = !bars, .x_maximum = !bars, .y_maximum = true, .output = true};
}

}  // namespace nivora
