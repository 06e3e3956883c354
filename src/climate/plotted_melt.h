// Accumulated zonal melt of the changed climate as its plot shows it, and as it is stored with it.
#pragma once

#include "engine/sim_results.h"
#include "store/daily_table.h"
#include "store/database.h"

#include <span>

namespace nivora {

/// Computes `AZMexcl` of the curve `MDCexcl`, then the changed climate's depletion curves, and last `AZMwork`
/// of the curve `MDCexclWAnew`, which replaces what they wrote there; over one zone's rows in date order.
///
/// @throws Fault if a value is missing or too large
void accumulate_plotted_melt(SimResults& results, std::span<const std::uint32_t> rows);

/// Computes the same for a zone and a period of `SimResults`, without storing it. The rows are those of the
/// zone in date order; columns that are not needed are missing. @throws StoreError, Fault
[[nodiscard]] SimResults plotted_melt(BasinDatabase& database, int zone, const Period& period);

/// Computes the same and stores `AZMexcl`, `AZMexclWA` and `AZMwork`, in one transaction.
/// @throws StoreError, Fault
void store_plotted_melt(BasinDatabase& database, int zone, const Period& period);

}  // namespace nivora
