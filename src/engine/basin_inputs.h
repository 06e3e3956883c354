// The numbers that a run takes from the boxes and grids of the open basin.
#pragma once

#include "store/basin_store.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace nivora {

/// The inputs of a run that are not daily values. A box without a number counts as 0.
struct BasinInputs {
    std::size_t zones = 1;
    std::vector<double> areas;         ///< km² or mi² by zone; index 0 is not used
    std::vector<double> elevations;    ///< m or ft by zone; index 0 is not used
    double reference_elevation = 0.0;  ///< m or ft
    double basin_area = 0.0;           ///< km² or mi²
    int melt_season_start = 4;         ///< month, 1 to 12

    // From the current simulation
    std::optional<Units> units;
    std::optional<DayCount> start;
    std::optional<DayCount> end;
    bool temperature_max_min = false;
    bool temperature_basinwide = false;
    bool precipitation_basinwide = false;
    bool lapse_rate_basinwide = false;
    bool critical_temperature_basinwide = false;
    bool runoff_coefficients_basinwide = false;
    /// Daily precipitation from which rain counts as heavy, cm or inches.
    std::optional<float> precipitation_threshold;
};

[[nodiscard]] BasinInputs basin_inputs(const BasinState& basin);

/// Gives the current simulation the default threshold, 6.0 cm or 2.36 inches by its units, if it has none.
/// This changes the basin.
/// @return the threshold
float settle_precipitation_threshold(BasinState& basin);

}  // namespace nivora
