// The ranges of daily variables and parameters that the model can use.
#pragma once

#include <span>
#include <string_view>

namespace nivora {

/// Both ends belong to the range.
struct FieldRange {
    std::string_view field;
    double least = 0.0;
    double most = 0.0;

    [[nodiscard]] bool holds(double value) const { return value >= least && value <= most; }
};

/// The end of a range that has no end.
inline constexpr double k_no_range_end = 1e30;

[[nodiscard]] std::span<const FieldRange> variable_ranges();
[[nodiscard]] std::span<const FieldRange> parameter_ranges();

/// The range of a field of either kind, by its name as the schema spells it; null if it has none.
[[nodiscard]] const FieldRange* usable_range(std::string_view field);

}  // namespace nivora
