// The texts of a run's summary: its caption and the labels of its six statistics.
#pragma once

#include "engine/run_state.h"

#include <array>
#include <optional>
#include <string>

namespace nivora {

/// The names of the six statistics, all but the last two with their unit: measured volume, average measured,
/// computed volume, average computed, volume difference, coefficient of determination.
[[nodiscard]] std::array<std::string, 6> statistics_names(Units units);

/// The labels of measured volume, average measured, computed volume, average computed, volume difference and
/// coefficient of determination; the first four with their unit.
[[nodiscard]] std::array<std::string, 6> statistics_labels(Units units);

/// The six statistics in the order of their labels; nothing for those that a fault prevented.
[[nodiscard]] std::array<std::optional<float>, 6> statistics_values(const RunState& run);

/// "Statistics, " and the run's title, with the interval of a forecast and the mark of no-snow mode.
[[nodiscard]] std::string statistics_caption(const RunState& run);

/// The status line of the results table: simulation and time of the results,
/// and whether the inputs have changed since.
[[nodiscard]] std::string results_status(const BasinState& basin, const RunState& run);

/// The status line of the statistics window: period and notes of the run in a few words, or why the
/// statistics are out of date.
///
/// @param shown the time of the run whose statistics are shown
/// @param period of that run, with its notes in short form
[[nodiscard]] std::string statistics_status(const BasinState& basin, double shown, const std::string& period);

/// The period of a run with its number of days, and its notes in a few words.
[[nodiscard]] std::string period_summary(const RunState& run);

}  // namespace nivora
