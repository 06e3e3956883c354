// Where a panel stands in a plot until the user moves it: where it hides the least.
#pragma once

#include "plots/draw_plot.h"
#include "plots/placed_text.h"

#include <span>
#include <vector>

namespace nivora {

/// A place inside the frame: at its left or right edge or in the middle, at the top, the bottom or between.
struct PanelSpot {
    enum class Column { Left, Middle, Right };
    enum class Row { Top, Middle, Bottom };
    Column column = Column::Right;
    Row row = Row::Top;
};

/// The rectangle of a panel at the spot where it hides the fewest points; the first of several.
///
/// @param spots in the order of preference
/// @param taken what the panel must not cover: texts, the other panel
[[nodiscard]] SurfaceRectangle panel_place(const Surface& surface, const Plot& plot, SurfaceSize panel,
                                           std::span<const PanelSpot> spots,
                                           const std::vector<SurfaceRectangle>& taken);

}  // namespace nivora
