// The walk along a curve: which points are joined, which stand alone, which bear a circle.
#pragma once

#include "plots/axes.h"
#include "plots/line_attributes.h"
#include "plots/plot.h"
#include "plots/surface.h"

#include <vector>

namespace nivora {

/// What is drawn of a curve inside the frame.
struct CurveStrokes {
    std::vector<std::vector<PlotPoint>> lines;  ///< each of two points or more
    std::vector<PlotPoint> dots;
    std::vector<PlotPoint> circles;  ///< the points that bear one when data points are shown
};

[[nodiscard]] CurveStrokes walk_curve(const PlotCurve& curve, const PlotFrame& frame);

/// Colour, style and width of a curve under a line table.
[[nodiscard]] Pen curve_pen(const Plot& plot, const PlotCurve& curve, const LineTable& lines);

/// The radius of a data point, in units of the x axis.
[[nodiscard]] float data_point_radius(const Transform& transform);

}  // namespace nivora
