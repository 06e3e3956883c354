#include "plots/label_place.h"

#include <algorithm>

namespace nivora {
namespace {

/// A label along one axis.
struct Span {
    double begin = 0.0;
    bool beside = true;  ///< whether it leaves the place free
};

Span span_about(double room, double length, double about) {
    const double after = about + k_label_gap;
    if (after >= 0.0 && after + length <= room) return {after};
    const double before = about - k_label_gap - length;
    if (before >= 0.0 && about - k_label_gap <= room) return {before};
    return {std::clamp(about - length / 2.0, 0.0, std::max(0.0, room - length)), false};
}

}  // namespace

std::optional<SurfacePoint> label_place(SurfaceSize surface, SurfaceSize label, SurfacePoint about) {
    if (label.width > surface.width || label.height > surface.height) return std::nullopt;
    const Span across = span_about(surface.width, label.width, about.x);
    const Span down = span_about(surface.height, label.height, about.y);
    if (!across.beside && !down.beside) return std::nullopt;
    return SurfacePoint{across.begin, down.begin};
}

}  // namespace nivora
