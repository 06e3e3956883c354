#include "plots/draw_data.h"

#include "plots/curve_walk.h"

#include <algorithm>
#include <utility>

namespace nivora {
namespace {

/// A straight edge that keeps the points on one side of it.
struct ClipEdge {
    bool vertical = false;
    double at = 0.0;
    bool keep_larger = false;

    [[nodiscard]] bool keeps(SurfacePoint point) const {
        constexpr double k_rounding =
            1e-6;  // Points on an edge of the frame may be off by their last digits.
        const double beyond = (vertical ? point.x : point.y) - at;
        return keep_larger ? beyond >= -k_rounding : beyond <= k_rounding;
    }

    /// Where the line from a to b, one of which is kept, crosses the edge.
    [[nodiscard]] SurfacePoint crossing(SurfacePoint a, SurfacePoint b) const {
        const double share = vertical ? (at - a.x) / (b.x - a.x) : (at - a.y) / (b.y - a.y);
        const double part = std::clamp(share, 0.0, 1.0);
        if (vertical) return {at, a.y + (b.y - a.y) * part};
        return {a.x + (b.x - a.x) * part, at};
    }
};

std::vector<SurfacePoint> clipped_at(const std::vector<SurfacePoint>& polygon, const ClipEdge& edge) {
    std::vector<SurfacePoint> kept;
    kept.reserve(polygon.size() + 4);
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const SurfacePoint from = polygon[i == 0 ? polygon.size() - 1 : i - 1];
        const SurfacePoint to = polygon[i];
        if (edge.keeps(from) != edge.keeps(to)) kept.push_back(edge.crossing(from, to));
        if (edge.keeps(to)) kept.push_back(to);
    }
    return kept;
}

std::vector<SurfacePoint> points_on(const World& world, const std::vector<PlotPoint>& points) {
    std::vector<SurfacePoint> places;
    places.reserve(points.size());
    for (const PlotPoint& point : points)
        places.push_back(world.to_surface(as_double(point.x), as_double(point.y)));
    return places;
}

/// The curve that bounds a band from below, from right to left; the x axis under the first band.
std::vector<SurfacePoint> lower_edge(const Plot& plot, const World& world, std::size_t curve) {
    if (curve > 0) {
        std::vector<SurfacePoint> edge = points_on(world, plot.curves[curve - 1].points);
        std::reverse(edge.begin(), edge.end());
        return edge;
    }
    const std::vector<PlotPoint>& upper = plot.curves[curve].points;
    return points_on(world, {{upper.back().x, 0.0F}, {upper.front().x, 0.0F}});
}

void fill_band(Surface& surface, const Plot& plot, const World& world, const PlotBand& band,
               const LineAttribute& line) {
    const auto curve = static_cast<std::size_t>(band.band - 1);
    if (!band.filled || line.fill == k_no_fill || curve >= plot.curves.size()) return;
    if (plot.curves[curve].points.empty()) return;
    std::vector<SurfacePoint> outline = points_on(world, plot.curves[curve].points);
    const std::vector<SurfacePoint> lower = lower_edge(plot, world, curve);
    outline.insert(outline.end(), lower.begin(), lower.end());
    outline = clipped(std::move(outline), frame_rectangle(world, plot.frame));
    if (outline.size() > 2) surface.fill_band(outline, {line.colour, line.fill});
}

void draw_curve(Surface& surface, const CurveStrokes& strokes, const World& world, const Pen& pen) {
    for (const std::vector<PlotPoint>& stroke : strokes.lines) surface.line(points_on(world, stroke), pen);
    for (const PlotPoint& dot : strokes.dots)
        surface.dot(world.to_surface(as_double(dot.x), as_double(dot.y)), pen.colour);
}

}  // namespace

std::vector<SurfacePoint> clipped(std::vector<SurfacePoint> polygon, const SurfaceRectangle& rectangle) {
    const double right = rectangle.left + rectangle.width;
    const double bottom = rectangle.top + rectangle.height;
    for (const ClipEdge edge : {ClipEdge{true, rectangle.left, true}, ClipEdge{true, right, false},
                                ClipEdge{false, rectangle.top, true}, ClipEdge{false, bottom, false}})
        polygon = clipped_at(polygon, edge);
    return polygon;
}

SurfaceRectangle frame_rectangle(const World& world, const PlotFrame& frame) {
    const SurfacePoint top_left = world.to_surface(as_double(frame.x_min), as_double(frame.y_max));
    const SurfacePoint bottom_right = world.to_surface(as_double(frame.x_max), as_double(frame.y_min));
    return {top_left.x, top_left.y, bottom_right.x - top_left.x, bottom_right.y - top_left.y};
}

std::optional<SurfaceRectangle> visible_bar(const World& world, const PlotFrame& frame, const PlotBar& bar) {
    const float x1 = std::max(bar.x1, frame.x_min);
    const float x2 = std::min(bar.x2, frame.x_max);
    const float bottom = std::max(bar.bottom, frame.y_min);
    const float top = std::min(bar.top, frame.y_max);
    if (!(x2 > x1) || !(top > bottom)) return std::nullopt;
    return frame_rectangle(world, {.x_min = x1, .x_max = x2, .y_min = bottom, .y_max = top});
}

void draw_fills(Surface& surface, const Plot& plot, const World& world, const LineTable& lines) {
    const auto row = [&](int line) { return lines.at(static_cast<std::size_t>(line - 1)); };
    for (const PlotBand& band : plot.bands) fill_band(surface, plot, world, band, row(band.line));
    for (const PlotBar& bar : plot.bars) {
        const LineAttribute line = row(bar.line);
        const auto box = visible_bar(world, plot.frame, bar);
        if (box) surface.rectangle(*box, Pen{line.colour, 0, 1}, Fill{line.colour, line.fill});
    }
}

void draw_curves(Surface& surface, const Plot& plot, const PlotAxes& axes, const World& world,
                 const DrawOptions& options) {
    const double across = world.across();
    const double radius = across > 0.0 ? as_double(data_point_radius(axes.transform)) / across : 0.0;
    for (const PlotCurve& curve : plot.curves) {
        const CurveStrokes strokes = walk_curve(curve, plot.frame);
        const Pen pen = curve_pen(plot, curve, options.lines);
        draw_curve(surface, strokes, world, pen);
        if (!options.data_points) continue;
        for (const PlotPoint& point : strokes.circles)
            surface.circle(world.to_surface(as_double(point.x), as_double(point.y)), radius,
                           {pen.colour, 0, pen.width});
    }
}

}  // namespace nivora
