// What the plot window's two lists show, and which of its tools can be used, for a pick.
#pragma once

#include "plots/plot_offer.h"

#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// An entry of the plot list. Its place in the list, from 1, is the number of its plot.
struct PlotListEntry {
    std::string text;
    bool enabled = false;
    bool dashes = false;  ///< the row of dashes, which is no plot
};

/// The 23 entries of the plot list. During steps 4 and 5 of an evaluation the plots keep the state that they
/// have beside those steps, so that a pick can be made and its message tells why there is no plot.
[[nodiscard]] std::vector<PlotListEntry> plot_list(const PlotSources& sources);

/// An entry of the zone list.
struct ZoneListEntry {
    std::string text;
    bool enabled = true;
    bool visible = true;
};

/// The zone list: an entry for each zone, and "All Zones" as the last.
struct ZoneListState {
    std::vector<ZoneListEntry> entries;
    bool enabled = false;
};

/// @param picked nothing before the first pick
[[nodiscard]] ZoneListState zone_list_state(std::optional<PlotNumber> picked, const BasinState& basin);

/// Which of the window's tools can be used.
struct PlotTools {
    bool zoom = false;       ///< Zoom In and Zoom Out
    bool x_maximum = false;  ///< the box of the largest x
    bool y_maximum = false;  ///< the box of the largest y
    bool output = false;     ///< Save, Copy and Print
};

/// @param standing the plot that stands; nothing if none does
[[nodiscard]] PlotTools plot_tools(std::optional<PlotNumber> standing);

}  // namespace nivora
