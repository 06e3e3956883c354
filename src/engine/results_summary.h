// What the summary of a run shows: its caption and the labels of its six statistics.
#pragma once

#include "engine/run_state.h"

#include <array>
#include <string>

namespace nivora {

/// The labels of measured volume, average measured, computed volume, average computed, volume difference and
/// coefficient of determination; the first four with their unit.
[[nodiscard]] std::array<std::string, 6> statistics_labels(int units_code);

/// The six statistics in the order of their labels.
[[nodiscard]] std::array<float, 6> statistics_values(const RunState& run);

/// "Statistics, " and the run's title, with the interval of a forecast and the mark of no-snow mode.
[[nodiscard]] std::string statistics_caption(const RunState& run);

}  // namespace nivora
