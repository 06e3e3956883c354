// The choice of a plot's data: reads the rows, returns the plot.
#pragma once

#include "engine/run_state.h"
#include "plots/plot.h"
#include "store/database.h"

#include <variant>

namespace nivora {

/// Where the walk of accumulated melt ends (plots 15, 16 and 23).
enum class MeltStop {
    FirstDryDay,  ///< at the first day without melt after melt was seen
    Season        ///< at the day after the last one with melt
};

/// What the user picked.
struct PlotRequest {
    PlotNumber plot = PlotNumber::Runoff;
    std::optional<int> zone;  ///< from 1; zone count + 1 for all; nothing for the zone of a fresh pick
    MeltStop melt_stop = MeltStop::FirstDryDay;
};

/// What a plot takes besides the file.
struct PlotSources {
    const BasinState& basin;       ///< with the simulation selected
    const RunState& run;           ///< the last run, its climate step, period and statistics
    bool results_current = false;  ///< whether `SimResults` belongs to the current simulation
};

using PlotOutcome = std::variant<Plot, PlotRefusal>;

/// Selects the data of a plot. Never throws for what is in the file: a build that fails is a refusal.
///
/// Plot 21 computes `AZMexcl` and `AZMwork` anew for its curves; it is the caller who stores them
/// (store_plotted_melt).
[[nodiscard]] PlotOutcome select_plot(BasinDatabase& database, const PlotRequest& request,
                                      const PlotSources& sources);

}  // namespace nivora
