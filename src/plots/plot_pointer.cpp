#include "plots/plot_pointer.h"

#include "base/number_text.h"
#include "base/single.h"
#include "base/text.h"
#include "plots/plot_boxes.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace nivora {
namespace {

constexpr double k_zoom_per_notch = 1.25;
constexpr double k_pan_per_notch = 0.1;
constexpr double k_least_days = 1.0;
/// Below this share of the whole plot's height an axis has no digits left to label.
constexpr double k_least_height_share = 1.0e-3;
/// A Single day has eight bits for its fraction, so that steps there and back miss the frame by a little.
constexpr double k_rounding_share = 1.0e-4;

/// The ends of an axis, in Double.
struct Range {
    double least = 0.0;
    double most = 0.0;

    [[nodiscard]] double width() const { return most - least; }
};

Range x_range(const PlotFrame& frame) { return {as_double(frame.x_min), as_double(frame.x_max)}; }
Range y_range(const PlotFrame& frame) { return {as_double(frame.y_min), as_double(frame.y_max)}; }

/// The range with its width times a factor, about a place.
Range scaled(const Range& range, double about, double factor) {
    const double place = std::clamp(about, range.least, range.most);
    return {place - (place - range.least) * factor, place + (range.most - place) * factor};
}

/// The range moved into a wider one, or that one.
Range moved_into(const Range& range, const Range& whole) {
    if (range.width() >= whole.width()) return whole;
    const double least = std::clamp(range.least, whole.least, whole.most - range.width());
    return {least, least + range.width()};
}

/// A dragged zoom may reach beyond the whole plot: then it is the limit as well.
Range hull(const Range& a, const Range& b) { return {std::min(a.least, b.least), std::max(a.most, b.most)}; }

bool reaches(const Range& range, const Range& whole) {
    return range.width() >= whole.width() * (1.0 - k_rounding_share);
}

PlotFrame with_ranges(PlotFrame frame, const Range& x, const Range& y) {
    frame.x_min = static_cast<float>(x.least);
    frame.x_max = static_cast<float>(x.most);
    frame.y_min = static_cast<float>(y.least);
    frame.y_max = static_cast<float>(y.most);
    return frame;
}

bool is_inside(const PlotPoint& point, const PlotFrame& frame) {
    return point.x >= frame.x_min && point.x <= frame.x_max && point.y >= frame.y_min &&
           point.y <= frame.y_max;
}

}  // namespace

bool has_wheel(PlotNumber plot) {
    return !has_number_axis(plot) && plot != PlotNumber::WaterEquivalent && plot != PlotNumber::Dashes;
}

PlotFrame wheel_zoomed(const PlotFrame& frame, const PlotFrame& whole, const WorldPoint& about,
                       double notches) {
    const double factor = std::pow(k_zoom_per_notch, -notches);
    const Range x = scaled(x_range(frame), about.x, factor);
    const Range y = scaled(y_range(frame), about.y, factor);
    const bool too_near =
        x.width() < k_least_days || y.width() < y_range(whole).width() * k_least_height_share;
    if (factor < 1.0 && too_near) return frame;
    if (factor > 1.0 && reaches(x, x_range(whole)) && reaches(y, y_range(whole))) return whole;
    return with_ranges(frame, moved_into(x, hull(x_range(whole), x_range(frame))),
                       moved_into(y, hull(y_range(whole), y_range(frame))));
}

PlotFrame panned(const PlotFrame& frame, const PlotFrame& whole, double notches) {
    Range x = x_range(frame);
    const double shift = x.width() * k_pan_per_notch * notches;
    x = moved_into({x.least + shift, x.most + shift}, hull(x_range(whole), x));
    return with_ranges(frame, x, y_range(frame));
}

std::optional<NearPoint> nearest_point(const Plot& plot, SurfaceSize surface, SurfacePoint to,
                                       double distance) {
    if (has_no_data(plot)) return std::nullopt;
    const World world{lay_out_axes(plot, GridMode::None).transform, surface};
    std::optional<NearPoint> nearest;
    double least = distance;
    for (std::size_t curve = 0; curve < plot.curves.size(); ++curve) {
        for (const PlotPoint& point : plot.curves[curve].points) {
            if (!is_inside(point, plot.frame)) continue;
            const SurfacePoint at = world.to_surface(as_double(point.x), as_double(point.y));
            const double away = std::hypot(at.x - to.x, at.y - to.y);
            if (!(away <= least)) continue;
            least = away;
            nearest = NearPoint{curve, point, at};
        }
    }
    return nearest;
}

PointTexts point_texts(const Plot& plot, const NearPoint& near) {
    const PlotCurve& curve = plot.curves.at(near.curve);
    return {.series = std::string{trimmed(curve.heading.empty() ? curve.name : curve.heading)},
            .x = x_text(plot, as_double(near.point.x)),
            .y = single_text(near.point.y)};
}

}  // namespace nivora
