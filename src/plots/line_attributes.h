// The attributes of plot lines, which the user chooses for each line.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace nivora {

inline constexpr std::size_t k_plot_lines = 16;

/// Style, colour, width and fill of a plot line.
struct LineAttribute {
    std::int32_t style = 0;   ///< 0 solid, 1 dash, 2 dot, 3 dash-dot, 4 dash-dot-dot
    std::int32_t colour = 0;  ///< red in the lowest byte, then green, then blue
    std::int32_t width = 1;   ///< pixels; a line wider than 1 is drawn solid
    std::int32_t fill = 0;    ///< 0 solid, 1 transparent, 2 to 7 hatched

    bool operator==(const LineAttribute&) const = default;
};

using LineTable = std::array<LineAttribute, k_plot_lines>;

/// The default lines; line 1 first.
[[nodiscard]] LineTable default_lines();

}  // namespace nivora
