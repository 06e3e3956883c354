#include "plots/zoom_drag.h"

#include <cmath>
#include <utility>

namespace nivora {
namespace {

/// A corner of the rectangle: on a whole number, to even at a half, except on the depths of plot 14.
WorldPoint corner(PlotNumber plot, const WorldPoint& at) {
    return {plot == PlotNumber::DepletionOverMelt ? at.x : std::nearbyint(at.x), at.y};
}

bool has_area(const WorldRectangle& rectangle) {
    return std::abs((rectangle.x2 - rectangle.x1) * (rectangle.y2 - rectangle.y1)) > 0.0;
}

}  // namespace

std::optional<WorldRectangle> ZoomDrag::band() const {
    if (stage_ < 2) return std::nullopt;
    return WorldRectangle{.x1 = start_.x, .x2 = last_.x, .y1 = start_.y, .y2 = last_.y};
}

void ZoomDrag::arm() {
    armed_ = true;
    stage_ = 0;
}

void ZoomDrag::press(PlotNumber plot, const WorldPoint& at) {
    if (!armed_) return;
    stage_ = 1;
    start_ = corner(plot, at);
}

std::optional<WorldRectangle> ZoomDrag::move(const WorldPoint& to) {
    if (stage_ > 0) {
        stage_ = 2;
        last_ = to;
    }
    return band();
}

std::optional<WorldRectangle> ZoomDrag::release(PlotNumber plot, const WorldPoint& at) {
    if (!dragging()) return std::nullopt;
    const WorldPoint end = corner(plot, at);
    escape();
    const WorldRectangle rectangle{.x1 = start_.x, .x2 = end.x, .y1 = start_.y, .y2 = end.y};
    if (!has_area(rectangle)) return std::nullopt;
    return rectangle;
}

bool ZoomDrag::escape() {
    stage_ = 0;
    return std::exchange(armed_, false);
}

bool ZoomDrag::interrupt() { return dragging() && escape(); }

}  // namespace nivora
