// Accumulated zonal melt of the present and the changed climate, on the dates of the present depletion curve.
#pragma once

#include "engine/sim_results.h"

#include <span>

namespace nivora {

/// Accumulates the rises of a depletion curve, each weighted by the snow cover of its day, over one zone's
/// rows in date order. @throws Fault if a value is missing or too large
void accumulate_melt(Column cover, Column depth, FieldColumn melt, std::span<const std::uint32_t> rows);

/// Accumulates both depletion curves of the present climate: `AZMincl` of `MDCincl` and `AZMexcl` of
/// `MDCexcl`.
void accumulate_zonal_melt(SimResults& results, std::span<const std::uint32_t> rows);

/// Derives `AZMwork` and `AZMexclWA` of one zone's summer, in date order.
void Climate_Depletion_Curves(SimResults& results, std::span<const std::uint32_t> rows);

}  // namespace nivora
