// The shapes of painted lines: dashes, lines with far more points than pixels, and the lines of a hatched
// area.
#pragma once

#include "plots/surface.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace nivora {

/// Lengths of the strokes and gaps of a line style in turn, in points of the surface; empty for a solid line.
[[nodiscard]] std::span<const double> dashes_of(std::int32_t style);

/// A line that looks the same with fewer points: of neighbours in the same column of pixels, the first, the
/// highest, the lowest and the last are kept in their order.
///
/// @param columns columns of pixels per point of the surface, above 0
[[nodiscard]] std::vector<SurfacePoint> thinned(std::span<const SurfacePoint> points, double columns);

/// The distance between the lines of a hatched area, points of the surface.
inline constexpr double k_hatch_distance = 6.0;

struct HatchLine {
    SurfacePoint from;
    SurfacePoint to;
};

/// The lines of a fill style inside a closed polygon, none for styles without lines. Their places do not
/// depend on the polygon, so that areas of the same style meet without a seam.
[[nodiscard]] std::vector<HatchLine> hatch_lines(std::span<const SurfacePoint> outline, std::int32_t style);

}  // namespace nivora
