// The steps of a row's arithmetic, once for every walk through the table. Why a Single operation may stand in
// the place of a Double one: docs/performance.md.
#pragma once

#include "base/single.h"

#include <bit>

namespace nivora {

/// Steps that report a missing result or one beyond the largest Single by a fault.
struct CheckedSteps {
    static float variable(float result) {
        if (!std::isfinite(result)) throw std::isnan(result) ? null_fault() : overflow_fault();
        return result;
    }
    static float variable(double result) { return to_single(result); }
    static float field(double result) { return to_single_field(result); }
    static double whole(double value) { return std::nearbyint(value); }
};

/// The same steps for values that were looked at before, so that no result is missing or too large.
struct PlainSteps {
    static float variable(float result) { return result; }
    static float variable(double result) { return static_cast<float>(result); }
    static float field(double result) { return static_cast<float>(result); }
    /// To the nearest whole number, to even at a tie: beside 1.5 x 2^52 a Double has no bits for a fraction.
    /// The value is below 2^51. A value that rounds to zero gives zero without a sign.
    static double whole(double value) {
        constexpr double k_no_fractions = 6755399441055744.0;
        return (value + k_no_fractions) - k_no_fractions;
    }
};

/// Whether all values are numbers of at most this size.
[[nodiscard]] inline bool all_within(const float* values, std::size_t count, float size) {
    unsigned wild = 0;
    for (std::size_t i = 0; i < count; ++i) wild |= static_cast<unsigned>(!(std::abs(values[i]) <= size));
    return wild == 0;
}

/// Whether all values lie between 0 and a limit and none is a negative zero: as whole numbers, the bits of
/// such Singles are in the order of their values, and those of all others are larger.
[[nodiscard]] inline bool all_from_zero_to(const float* values, std::size_t count, float limit) {
    const auto largest = std::bit_cast<std::uint32_t>(limit);
    unsigned wild = 0;
    for (std::size_t i = 0; i < count; ++i)
        wild |= static_cast<unsigned>(std::bit_cast<std::uint32_t>(values[i]) > largest);
    return wild == 0;
}

/// The value where the condition holds, else 0. Written with bits, since a compiler makes jumps of some other
/// forms, and a loop with jumps gets no vector instructions.
[[nodiscard]] inline float kept_if(bool condition, float value) {
    return std::bit_cast<float>(std::bit_cast<std::uint32_t>(value) &
                                (0U - static_cast<unsigned>(condition)));
}

/// One of two values, in the same way.
[[nodiscard]] inline float chosen(bool condition, float value, float other) {
    const std::uint32_t mask = 0U - static_cast<unsigned>(condition);
    return std::bit_cast<float>((std::bit_cast<std::uint32_t>(value) & mask) |
                                (std::bit_cast<std::uint32_t>(other) & ~mask));
}

}  // namespace nivora
