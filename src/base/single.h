// The 32-bit and 16-bit steps of the arithmetic: rounding to a Single, to a 16-bit Integer and to decimals.
// Equations and rules: docs/model.md, section 13.
#pragma once

#include "base/fault.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace nivora {

/// The missing value in memory; in the basin file it is Null.
inline constexpr float k_missing = std::numeric_limits<float>::quiet_NaN();

/// A Single in an expression, which is computed in Double.
[[nodiscard]] constexpr double as_double(float value) { return static_cast<double>(value); }

[[nodiscard]] inline bool is_missing(double value) { return std::isnan(value); }
[[nodiscard]] inline bool is_missing(float value) { return std::isnan(value); }

/// Rounds a result into a Single variable, to nearest and to even at a tie.
///
/// @throws Fault 94 if the value is missing, 6 if it is beyond the largest Single
[[nodiscard]] inline float to_single(double value) {
    const auto rounded = static_cast<float>(value);
    if (!std::isfinite(rounded)) throw std::isnan(value) ? null_fault() : overflow_fault();
    return rounded;
}

/// Rounds a result into a Single field: as to_single, but a missing value stays missing.
[[nodiscard]] inline float to_single_field(double value) {
    const auto rounded = static_cast<float>(value);
    if (std::isinf(rounded)) throw overflow_fault();
    return rounded;
}

/// A field's value for a variable that can't be missing. @throws Fault 94 if the value is missing
template <typename Number>
[[nodiscard]] Number required(Number value) {
    if (std::isnan(value)) throw null_fault();
    return value;
}

/// Rounds to a number of decimals, ties to even. `decimals` is 0 to 9; the result is never a negative zero.
///
/// A Single has 24 bits and 10^5 has 12 odd ones, so that at 5 decimals the scaled value is exact and a tie
/// is a true tie.
[[nodiscard]] inline double round_half_even(double value, int decimals) {
    constexpr std::array k_powers{1.0e0, 1.0e1, 1.0e2, 1.0e3, 1.0e4, 1.0e5, 1.0e6, 1.0e7, 1.0e8, 1.0e9};
    const double scale = k_powers.at(static_cast<std::size_t>(decimals));
    return std::nearbyint(value * scale) / scale + 0.0;
}

/// Rounds to a 16-bit Integer, ties to even; nothing if it does not fit.
[[nodiscard]] inline std::optional<std::int16_t> to_integer16(double value) {
    const double rounded = std::nearbyint(value);
    if (!(rounded >= -32768.0 && rounded <= 32767.0)) return std::nullopt;
    return static_cast<std::int16_t>(rounded);
}

}  // namespace nivora
