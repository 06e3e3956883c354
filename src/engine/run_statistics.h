// Last stage of a run: volumes, their difference, and the coefficient of determination.
// Equations and rules: docs/model.md, section 9.
#pragma once

#include "base/dialogs.h"
#include "engine/run_state.h"
#include "engine/sim_results.h"

namespace nivora {

/// Compares computed with measured discharge over the period, on zone 1's rows. Writes the six statistics to
/// `run`, and how many of them were computed.
///
/// Volume = sum of Q x 86400 / 10^6. Dv = (V - V') / V x 100. R² = 1 - sum (Q - Q')² / sum (Q - mean Q)². In
/// climate step 3 the computed discharge is that of the present climate;
/// in step 6 it replaces the measured discharge.
/// Intended: R² keeps its former value if the measured discharge is constant,
/// and Dv if the measured volume is 0.
///
/// @return how many were computed; a fault was shown, and the statistics before it stay
StatisticsReach Run_Statistics(const SimResults& results, const RunRows& rows, RunState& run,
                               Dialogs& dialogs);

}  // namespace nivora
