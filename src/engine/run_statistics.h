// Last stage of a run: volumes, their difference, and the coefficient of determination.
// Equations and rules: docs/model.md, section 9.
#pragma once

#include "base/dialogs.h"
#include "engine/run_state.h"
#include "engine/sim_results.h"

#include <optional>
#include <span>

namespace nivora {

// The steps of the statistics, for daily series from anywhere.

/// The mean of the values that are not missing. @throws Fault 94 if there is none
[[nodiscard]] float single_mean(std::span<const double> values);
/// 10^6 m³ or 10^6 ft³ that a daily discharge brings on the days on which it is not missing. @throws Fault 94
[[nodiscard]] float discharge_volume(std::span<const double> discharge);
/// Dv in percent, positive where the model computes too little; nothing if the measured volume is 0.
[[nodiscard]] std::optional<float> volume_difference(float measured_volume, float computed_volume);
/// R² of two series over the same days, at least one, with sums in Single; nothing if the measured discharge
/// is constant.
///
/// @param mean of the measured discharge
/// @throws Fault 94 if a value is missing, 6 if a sum is beyond the largest Single
[[nodiscard]] std::optional<float> determination(std::span<const double> measured,
                                                 std::span<const double> computed, float mean);

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
