// Other views of a plot: a zoom, and maxima that the user typed.
#pragma once

#include "plots/plot.h"

#include <optional>
#include <variant>

namespace nivora {

/// Two opposite corners of a drag, in the units of the axes.
struct WorldRectangle {
    double x1 = 0.0;
    double x2 = 0.0;
    double y1 = 0.0;
    double y2 = 0.0;
};

/// The plot within a rectangle; the same plot if the rectangle has no area; a refusal if no point lies in it
/// or on its edge.
[[nodiscard]] std::variant<Plot, PlotRefusal> zoom(const Plot& plot, const WorldRectangle& rectangle);

/// Maxima typed by the user; nothing for a box that was not edited.
struct TypedMaxima {
    std::optional<float> x;  ///< a day count, or a depth of melt in plots 14, 20 and 22
    std::optional<float> y;
};

/// The plot with its frame up to typed maxima. One that is not above the frame's minimum is not taken; a
/// zoomed plot keeps its frame.
[[nodiscard]] Plot with_maxima(Plot plot, const TypedMaxima& maxima);

}  // namespace nivora
