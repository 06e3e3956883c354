// Accumulated zonal melt of the present and the changed climate, on the dates of the present depletion curve.
#pragma once

#include "engine/sim_results.h"

#include <span>

namespace nivora {

/// Accumulates a depletion curve weighted by the snow cover of the day, over one zone's rows in date order:
/// `AZMincl` of `MDCincl` and `AZMexcl` of `MDCexcl`.
void accumulate_zonal_melt(SimResults& results, std::span<const std::uint32_t> rows);

/// Derives `AZMwork` and `AZMexclWA` of one zone's summer, in date order.
void Climate_Depletion_Curves(SimResults& results, std::span<const std::uint32_t> rows);

}  // namespace nivora
