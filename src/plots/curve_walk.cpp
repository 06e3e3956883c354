#include "plots/curve_walk.h"

#include <algorithm>
#include <cstddef>

namespace nivora {
namespace {

/// An x that falls by more than this ends a curve.
constexpr double k_step_back = 0.0001;

/// Whether a point lies in the frame or on its edge; a missing one does not.
bool lies_inside(const PlotPoint& point, const PlotFrame& frame) {
    return point.x >= frame.x_min && point.x <= frame.x_max && point.y >= frame.y_min &&
           point.y <= frame.y_max;
}

bool steps_back(const PlotPoint& former, const PlotPoint& point) {
    return as_double(point.x) + k_step_back < as_double(former.x);
}

/// Gathers the points that the pen passes.
class Chain {
public:
    explicit Chain(CurveStrokes& strokes) : strokes_(strokes) {}

    void add(const PlotPoint& point) { points_.push_back(point); }

    /// Lifts the pen.
    void end() {
        if (points_.size() == 1) strokes_.dots.push_back(points_.front());
        if (points_.size() > 1) strokes_.lines.push_back(points_);
        points_.clear();
    }

private:
    CurveStrokes& strokes_;
    std::vector<PlotPoint> points_;
};

}  // namespace

/// A curve is clipped point by point: no line runs from a point inside to the edge of the frame. Between two
/// zeros there is no line, so that a dry spell leaves the axis free.
CurveStrokes walk_curve(const PlotCurve& curve, const PlotFrame& frame) {
    CurveStrokes strokes;
    Chain chain{strokes};
    const std::vector<PlotPoint>& points = curve.points;
    const auto first = std::find_if(points.begin(), points.end(),
                                    [&](const PlotPoint& point) { return point.x >= frame.x_min; });
    for (auto point = first; point != points.end() && !(point->x > frame.x_max); ++point) {
        const PlotPoint* former = point == first ? nullptr : &*(point - 1);
        if (former != nullptr && steps_back(*former, *point)) break;
        if (!lies_inside(*point, frame)) {
            chain.end();
            continue;
        }
        if (former != nullptr && former->y == 0.0F && point->y == 0.0F) chain.end();
        chain.add(*point);
        strokes.circles.push_back(*point);
    }
    chain.end();
    return strokes;
}

Pen curve_pen(const Plot& plot, const PlotCurve& curve, const LineTable& lines) {
    const auto row = [&](int line) { return lines.at(static_cast<std::size_t>(line - 1)); };
    const LineAttribute own = row(curve.line);
    switch (curve.mode) {
        case CurveMode::Solid: return {.colour = own.colour, .style = 0, .width = 1};
        case CurveMode::Dotted: return {.colour = own.colour, .style = 2, .width = 1};
        case CurveMode::Fifth: return {.colour = row(5).colour, .style = 0, .width = row(5).width};
        case CurveMode::Own: break;
    }
    // The outline of a band that has a fill stays apart from the fill's own lines.
    const bool outline = plot.number == PlotNumber::RunoffComponents && own.fill != k_no_fill;
    return {.colour = own.colour, .style = outline ? 1 : own.style, .width = own.width};
}

float data_point_radius(const Transform& transform) {
    return static_cast<float>(as_double(transform.ScaleWidth) / 200.0 * 0.5);
}

}  // namespace nivora
