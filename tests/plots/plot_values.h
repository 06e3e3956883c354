// Plots written by hand.
#pragma once

#include "plots/plot.h"

#include <initializer_list>
#include <ostream>
#include <vector>

namespace nivora {

inline bool operator==(const PlotPoint& a, const PlotPoint& b) { return a.x == b.x && a.y == b.y; }

inline std::ostream& operator<<(std::ostream& out, const PlotPoint& point) {
    return out << '(' << point.x << ", " << point.y << ')';
}

inline constexpr float k_october_2001 = 37165.0F;  ///< 2001-10-01
inline constexpr float k_october_2002 = 37530.0F;  ///< 2002-10-01

inline PlotFrame frame_of(float x_min, float x_max, float y_min, float y_max) {
    return {.x_min = x_min, .x_max = x_max, .y_min = y_min, .y_max = y_max};
}

inline Plot plot_of(PlotNumber number, const PlotFrame& frame) {
    Plot plot;
    plot.number = number;
    plot.frame = frame;
    return plot;
}

/// Points at x = 1, 2, 3 ...
inline std::vector<PlotPoint> points_of(std::initializer_list<float> values) {
    std::vector<PlotPoint> points;
    float x = 0.0F;
    for (const float y : values) points.push_back({x += 1.0F, y});
    return points;
}

inline PlotCurve curve_of(std::string name, std::vector<PlotPoint> points, int line = 1, int pass = 1) {
    PlotCurve curve;
    curve.name = std::move(name);
    curve.points = std::move(points);
    curve.line = line;
    curve.pass = pass;
    return curve;
}

}  // namespace nivora
