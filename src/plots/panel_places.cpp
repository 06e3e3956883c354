#include "plots/panel_places.h"

#include "plots/draw_data.h"

#include <algorithm>
#include <limits>

namespace nivora {
namespace {

/// The space between a panel and the frame.
constexpr double k_gap = 8.0;

/// What a covered bar and a covered text count in points of a curve.
constexpr std::size_t k_bar_points = 100;
constexpr std::size_t k_text_points = 1'000'000;

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

/// The points of the curves behind a rectangle; with filled bands also those whose band may reach down to it.
std::size_t hidden_points(const Plot& plot, const World& world, const SurfaceRectangle& box) {
    const auto [x1, y2] = world.to_world({box.left, box.top});
    const auto [x2, y1] = world.to_world({box.left + box.width, box.top + box.height});
    const double top = plot.bands.empty() ? y2 : std::numeric_limits<double>::infinity();
    std::size_t hidden = 0;
    for (const PlotCurve& curve : plot.curves) {
        for (const PlotPoint& point : curve.points) {
            const double x = as_double(point.x);
            const double y = as_double(point.y);
            if (x >= x1 && x <= x2 && y >= y1 && y <= top) ++hidden;
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
