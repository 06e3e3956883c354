// The rules of a custom time lag distribution.
// Equations and rules: docs/model.md, section 6.
#pragma once

#include "base/dialogs.h"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace nivora {

/// The most days over which a day's input may spread.
inline constexpr int k_most_lag_days = 6;

/// The message for a number of days outside 0 to 6; nothing for a valid one.
[[nodiscard]] std::optional<Message> lag_day_count_problem(double days);

/// The sum of shares in Single steps, as the total label shows it.
///
/// @param shares the boxes' texts from the current day on; an empty one counts as 0
[[nodiscard]] std::string lag_total_text(std::span<const std::string> shares);

/// The message for a total that is neither 0 nor exactly 1; nothing for a valid one.
[[nodiscard]] std::optional<Message> lag_total_problem(const std::string& total_text);

/// The distribution of the accepted boxes: index 0 the number of days, 1 to N the shares. A total of
/// 0 means no distribution, whatever the number of days.
[[nodiscard]] std::array<float, 8> lag_distribution(double days, std::span<const std::string> shares);

/// The shares as a run uses them, rounded to 5 decimals, oldest input first;
/// empty if there is no distribution.
[[nodiscard]] std::vector<double> lag_weights(const std::array<float, 8>& distribution);

}  // namespace nivora
