// The plots as data: what each is called, which table and zones it shows.
#pragma once

#include "plots/plot.h"
#include "store/rows.h"

#include <optional>

namespace nivora {

/// The table whose rows a plot shows.
enum class PlotTable {
    Variables,   ///< `PhysicalData`
    Parameters,  ///< the parameter table of the simulation
    Results      ///< `SimResults`
};

/// Which zones a plot can show.
enum class PlotZones {
    Basin,    ///< rows of zone 1 alone, which hold the basin's values
    OneZone,  ///< one at a time
    AnyZones  ///< one or all
};

struct PlotEntry {
    PlotNumber number = PlotNumber::Runoff;
    const char* title = "";
    PlotTable table = PlotTable::Results;
    PlotZones zones = PlotZones::AnyZones;
    PeriodLine period = PeriodLine::ToDayBefore;
    /// The distribution of its variable, which may be given once for the basin; null if it is always by zone.
    std::optional<Distribution> Simulation::*distribution = nullptr;
};

/// The entry of a plot. Position 17 of the list has no plot, only its row of dashes as title.
[[nodiscard]] const PlotEntry& plot_entry(PlotNumber plot);

/// Whether all values of a plot's variable are those of the basin. A blank distribution counts as by zone.
[[nodiscard]] bool is_basinwide(const PlotEntry& entry, const Simulation* simulation);

}  // namespace nivora
