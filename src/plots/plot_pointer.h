// What the pointer does over a plot besides the zoom rectangle: zoom by the wheel, pan, read off a value.
#pragma once

#include "plots/axes.h"
#include "plots/plot.h"
#include "plots/surface.h"
#include "plots/zoom_drag.h"

#include <optional>
#include <string>

namespace nivora {

/// Whether the wheel zooms and pans a plot: those whose x axis counts days, without the bars of plot 23.
[[nodiscard]] bool has_wheel(PlotNumber plot);

/// The frame after turns of the wheel about a place, which stays where it is. It never reaches beyond the
/// whole plot, and gives the whole plot's frame back when it is as wide and as high.
///
/// @param whole the frame of the plot without a zoom
/// @param about a place outside the frame counts as the nearest one on its edge
/// @param notches above 0 to zoom in
[[nodiscard]] PlotFrame wheel_zoomed(const PlotFrame& frame, const PlotFrame& whole, const WorldPoint& about,
                                     double notches);

/// The frame moved along the x axis by tenths of its width, within the whole plot.
///
/// @param notches above 0 to later days
[[nodiscard]] PlotFrame panned(const PlotFrame& frame, const PlotFrame& whole, double notches);

/// A point of a curve near the pointer.
struct NearPoint {
    std::size_t curve = 0;  ///< its place in `curves`
    PlotPoint point;
    SurfacePoint at = {};  ///< where it stands on the surface
};

/// The point that is nearest to a place on a surface, among those drawn and not farther than a distance; of
/// several, the one drawn last, which covers the others.
[[nodiscard]] std::optional<NearPoint> nearest_point(const Plot& plot, SurfaceSize surface, SurfacePoint to,
                                                     double distance);

/// The texts of a point: its series, its date or depth, its value.
struct PointTexts {
    std::string series;
    std::string x;
    std::string y;
};

[[nodiscard]] PointTexts point_texts(const Plot& plot, const NearPoint& near);

}  // namespace nivora
