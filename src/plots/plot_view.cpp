#include "plots/plot_view.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>
#include <utility>

namespace nivora {
namespace {

/// A corner as a Single; the largest one if it is beyond that.
float stored(double value) {
    constexpr double k_largest = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(value, -k_largest, k_largest));
}

/// The part of a plot's frame that a rectangle asks for.
///
/// On an axis that counts days a corner is a whole day, in plots 20 and 22 a whole depth. Only temperatures
/// may be below 0.
PlotFrame zoomed_frame(const Plot& plot, const WorldRectangle& rectangle) {
    const auto x_of = [&](double x) {
        return stored(plot.number == PlotNumber::DepletionOverMelt ? x : std::nearbyint(x) + 0.0);
    };
    const auto y_of = [&](double y) {
        return stored(plot.number == PlotNumber::Temperatures || y > 0.0 ? y : 0.0);
    };
    PlotFrame frame = plot.frame;
    std::tie(frame.x_min, frame.x_max) = std::minmax({x_of(rectangle.x1), x_of(rectangle.x2)});
    std::tie(frame.y_min, frame.y_max) = std::minmax({y_of(rectangle.y1), y_of(rectangle.y2)});
    return frame;
}

bool has_area(const PlotFrame& frame) { return frame.x_max > frame.x_min && frame.y_max > frame.y_min; }

bool has_points(const Plot& plot, const PlotFrame& frame) {
    const auto inside = [&](const PlotPoint& point) {
        return point.x >= frame.x_min && point.x <= frame.x_max && point.y >= frame.y_min &&
               point.y <= frame.y_max;
    };
    return std::any_of(plot.curves.begin(), plot.curves.end(), [&](const PlotCurve& curve) {
        return std::any_of(curve.points.begin(), curve.points.end(), inside);
    });
}

bool is_finite_above(std::optional<float> maximum, float minimum) {
    return maximum && std::isfinite(*maximum) && *maximum > minimum;
}

}  // namespace

std::variant<Plot, PlotRefusal> zoom(const Plot& plot, const WorldRectangle& rectangle) {
    if (plot.number == PlotNumber::WaterEquivalent) return plot;  // It has no zoom.
    const PlotFrame frame = zoomed_frame(plot, rectangle);
    if (!has_area(frame)) return plot;
    if (!has_points(plot, frame)) return PlotRefusal{PlotRefusal::Kind::Zoom, "No points in the zoom area"};
    Plot zoomed = plot;
    zoomed.frame = frame;
    zoomed.bands.clear();  // Intended: a part of plot 16 shows the lines alone.
    zoomed.zoomed = true;
    return zoomed;
}

Plot with_maxima(Plot plot, const TypedMaxima& maxima) {
    if (plot.zoomed) return plot;
    const bool water_equivalent = plot.number == PlotNumber::WaterEquivalent;
    if (!water_equivalent && is_finite_above(maxima.x, plot.frame.x_min)) plot.frame.x_max = *maxima.x;
    if (!is_finite_above(maxima.y, plot.frame.y_min)) return plot;
    // The bars of plot 23 stay whole.
    plot.frame.y_max = water_equivalent ? std::max(*maxima.y, plot.bars_total) : *maxima.y;
    return plot;
}

}  // namespace nivora
