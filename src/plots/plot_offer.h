// Which plots the plot list offers, which zones the zone list offers for them, and what both are called.
#pragma once

#include "engine/run_state.h"
#include "plots/plot.h"
#include "plots/select_plot.h"

#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// The zone list of a plot.
enum class ZoneList {
    None,     ///< the plot is the basin's: plots 1 and 18, and those of a variable given for the basin
    OneZone,  ///< without "All Zones"
    WithAllZones
};

[[nodiscard]] ZoneList zone_list(PlotNumber plot, const BasinState& basin);

/// Whether plot 3 shows daily averages instead of maxima and minima. As in a run, averages are taken if the
/// kind of temperatures is not given.
[[nodiscard]] bool shows_average_temperatures(const BasinState& basin);

/// The text of a plot in the list, which is its title: "Average Temperature (Tavg)" and "CompClim" where the
/// simulation and the climate step ask for them.
[[nodiscard]] std::string plot_title(PlotNumber plot, const PlotSources& sources);

/// Why a plot can't be picked now; nothing if it can. Steps 4 and 5 of an evaluation refuse all.
[[nodiscard]] std::optional<PlotRefusal> plot_refusal(PlotNumber plot, const PlotSources& sources);

/// The zone of a fresh pick: all zones if the list offers them, otherwise zone 1.
[[nodiscard]] int picked_zone(PlotNumber plot, const BasinState& basin);

/// The text of a zone in the zone list of a plot: "Zone A", "Zone A (Basinwide)", "All Zones"; "Basinwide" if
/// the plot has no zone list.
[[nodiscard]] std::string zone_label(PlotNumber plot, int zone, const BasinState& basin);

}  // namespace nivora
