// Accumulated melt of a zone, on which plots 15, 16 and 23 rest.
#pragma once

#include "plots/plot.h"
#include "plots/select_plot.h"

#include <span>

namespace nivora {

/// One day of the walk. Depths in cm or inches.
struct MeltDay {
    DayCount date = 0;
    float zonal_melt = k_missing;
    float new_melt = k_missing;
    float cover = k_missing;         ///< `SCA`
    float changed_melt = k_missing;  ///< `AZMexclWA`, which stands for the second curve at step 6
};

/// Accumulated melt including new snow, and excluding it.
struct MeltCurves {
    std::vector<PlotPoint> including;
    std::vector<PlotPoint> excluding;
};

/// @throws Fault if a value is missing or a sum is beyond the largest Single
[[nodiscard]] MeltCurves Accumulate_Melt(std::span<const MeltDay> days, int climate_step, MeltStop stop);

}  // namespace nivora
