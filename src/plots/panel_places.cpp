#include "plots/panel_places.h"

#include "plots/draw_data.h"

#include <algorithm>
#include <array>
#include <limits>

namespace nivora {
namespace {

/// The space between a panel and the frame.
constexpr double k_gap = 8.0;

/// What a covered bar and a covered text count in points of a curve.
constexpr std::size_t k_bar_points = 100;
constexpr std::size_t k_text_points = 1'000'000;

constexpr float k_largest_single = std::numeric_limits<float>::max();

double place_between(int share, double from, double length, double panel) {
    if (share == 0) return from + k_gap;
    return share == 1 ? from + (length - panel) / 2.0 : from + length - k_gap - panel;
}

/// A spot at the top stands below the texts that reach into the frame there.
SurfaceRectangle spot_rectangle(const PanelSpot& spot, const SurfaceRectangle& frame, SurfaceSize panel,
                                const std::vector<SurfaceRectangle>& taken) {
    SurfaceRectangle box{
        .left = place_between(static_cast<int>(spot.column), frame.left, frame.width, panel.width),
        .top = place_between(static_cast<int>(spot.row), frame.top, frame.height, panel.height),
        .width = panel.width,
        .height = panel.height};
    if (spot.row != PanelSpot::Row::Top) return box;
    for (std::size_t step = 0; step < taken.size(); ++step) {
        const auto above = std::find_if(taken.begin(), taken.end(),
                                        [&](const SurfaceRectangle& other) { return overlap(other, box); });
        if (above == taken.end()) break;
        box.top = above->top + above->height + k_gap / 2.0;
    }
    return box;
}

/// A rectangle in the units of the axes.
struct WorldBox {
    double x1 = 0.0;
    double x2 = 0.0;
    double y1 = 0.0;
    double y2 = 0.0;
};

/// Whether the line between two points passes through a box.
bool crosses(const PlotPoint& a, const PlotPoint& b, const WorldBox& box) {
    const auto [left, right] = std::minmax({as_double(a.x), as_double(b.x)});
    const auto [low, high] = std::minmax({as_double(a.y), as_double(b.y)});
    if (!(right >= box.x1 && left <= box.x2 && high >= box.y1 && low <= box.y2)) return false;
    // It does unless all corners are on one side of it.
    const auto side = [&](double x, double y) {
        return (as_double(b.x) - as_double(a.x)) * (y - as_double(a.y)) -
               (as_double(b.y) - as_double(a.y)) * (x - as_double(a.x));
    };
    const std::array sides{side(box.x1, box.y1), side(box.x1, box.y2), side(box.x2, box.y1),
                           side(box.x2, box.y2)};
    const auto [least, most] = std::minmax_element(sides.begin(), sides.end());
    return *least <= 0.0 && *most >= 0.0;
}

/// The points of the curves whose line from the one before passes behind a rectangle; with filled bands also
/// those above it, as the fill reaches down to it.
std::size_t hidden_points(const Plot& plot, const World& world, const SurfaceRectangle& rectangle) {
    const auto [x1, y2] = world.to_world({rectangle.left, rectangle.top});
    const auto [x2, y1] =
        world.to_world({rectangle.left + rectangle.width, rectangle.top + rectangle.height});
    const WorldBox box{
        .x1 = x1, .x2 = x2, .y1 = y1, .y2 = plot.bands.empty() ? y2 : as_double(k_largest_single)};
    std::size_t hidden = 0;
    for (const PlotCurve& curve : plot.curves) {
        const PlotPoint* former = nullptr;
        for (const PlotPoint& point : curve.points) {
            if (crosses(former != nullptr ? *former : point, point, box)) ++hidden;
            former = is_missing(point.y) ? nullptr : &point;
        }
    }
    return hidden;
}

std::size_t hidden_by(const SurfaceRectangle& box, const Plot& plot, const World& world,
                      const SurfaceRectangle& frame, const std::vector<SurfaceRectangle>& taken) {
    std::size_t hidden = hidden_points(plot, world, box);
    for (const PlotBar& bar : plot.bars) {
        const auto visible = visible_bar(world, plot.frame, bar);
        if (visible && overlap(*visible, box)) hidden += k_bar_points;
    }
    for (const SurfaceRectangle& other : taken) {
        if (overlap(other, box)) hidden += k_text_points;
    }
    const bool below_frame = box.top + box.height > frame.top + frame.height;
    return hidden + (below_frame ? k_text_points : 0);
}

}  // namespace

SurfaceRectangle panel_place(const Surface& surface, const Plot& plot, SurfaceSize panel,
                             std::span<const PanelSpot> spots, const std::vector<SurfaceRectangle>& taken) {
    const World world{lay_out_axes(plot, GridMode::None).transform, surface.size()};
    const SurfaceRectangle frame = frame_rectangle(world, plot.frame);
    SurfaceRectangle best{0.0, 0.0, panel.width, panel.height};
    std::size_t least = std::numeric_limits<std::size_t>::max();
    for (const PanelSpot& spot : spots) {
        const SurfaceRectangle box = moved_inside(spot_rectangle(spot, frame, panel, taken), surface.size());
        const std::size_t hidden = hidden_by(box, plot, world, frame, taken);
        if (hidden >= least) continue;
        best = box;
        least = hidden;
    }
    return best;
}

}  // namespace nivora
