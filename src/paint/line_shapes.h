// The shapes of painted lines: dashes, lines with far more points than pixels, and the lines of a hatched
// area.
#pragma once

#include "plots/surface.h"

#include <QPolygonF>
#include <cstdint>
#include <span>
#include <vector>

namespace nivora {

/// Lengths of the strokes and gaps of a line style in turn, in points of the surface; empty for a solid line.
[[nodiscard]] std::span<const double> dashes_of(std::int32_t style);

/// The same for horizontal and vertical lines. They are crisp, so that smaller dots are enough; grid lines
/// stay behind the curves.
[[nodiscard]] std::span<const double> straight_dashes_of(std::int32_t style);

/// A line that looks the same with fewer points: more than four neighbours in the same column of pixels
/// become one stroke through the middle of the column, from the highest to the lowest. It begins at the end
/// that is nearer to the point before.
///
/// @param columns columns of pixels per unit of x, above 0
[[nodiscard]] QPolygonF thinned(const QPolygonF& points, double columns);

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
