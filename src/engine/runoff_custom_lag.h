// The other form of the third stage: discharge with a custom time lag distribution.
// Equations and rules: docs/model.md, section 6.
#pragma once

#include "base/dialogs.h"
#include "engine/runoff_day.h"

namespace nivora {

/// Computes the discharge of every day with the shares of `LagDistribution`,
/// into the first zone's row of the day.
///
/// Intended: it differs from Runoff_Simulation not only in the distribution. `TotalMelt` holds the day's own
/// input, only zone 1's precipitation can start the faster recession, and a forecast is never updated, so
/// that its result equals that of a simulation. Until there are as many days of history as the distribution
/// has shares, the first day's input replaces the missing ones.
///
/// @return false where the user cancelled
[[nodiscard]] bool Runoff_Custom_Lag(SimResults& results, const RunRows& rows, const BasinInputs& inputs,
                                     RunState& run, Dialogs& dialogs);

}  // namespace nivora
