// What stands inside the frame of a plot: fills, bars and curves.
#pragma once

#include "plots/draw_plot.h"

#include <vector>

namespace nivora {

/// The part of a polygon inside a rectangle, corners clockwise or not; it may touch itself along the edges.
[[nodiscard]] std::vector<SurfacePoint> clipped(std::vector<SurfacePoint> polygon,
                                                const SurfaceRectangle& rectangle);

/// The frame on a surface.
[[nodiscard]] SurfaceRectangle frame_rectangle(const World& world, const PlotFrame& frame);

/// A bar on a surface, clipped at the frame; nothing if no part of it is visible.
[[nodiscard]] std::optional<SurfaceRectangle> visible_bar(const World& world, const PlotFrame& frame,
                                                          const PlotBar& bar);

/// The bands of plot 16 and the bars of plot 23.
void draw_fills(Surface& surface, const Plot& plot, const World& world, const LineTable& lines);

void draw_curves(Surface& surface, const Plot& plot, const PlotAxes& axes, const World& world,
                 const DrawOptions& options);

}  // namespace nivora
