#include "paint/line_shapes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>
#include <utility>

namespace nivora {
namespace {

constexpr std::array k_dash{8.0, 4.0};
constexpr std::array k_dot{2.0, 3.0};
constexpr std::array k_straight_dot{1.0, 3.0};
constexpr std::array k_dash_dot{9.0, 3.0, 2.0, 3.0};
constexpr std::array k_dash_dot_dot{9.0, 3.0, 2.0, 3.0, 2.0, 3.0};

constexpr double k_diagonal = 0.70710678118654752;

/// Direction at right angles to the lines of a hatching; its length is 1.
struct Normal {
    double x = 0.0;
    double y = 0.0;

    [[nodiscard]] double across(SurfacePoint point) const { return x * point.x + y * point.y; }
    [[nodiscard]] double along(SurfacePoint point) const { return y * point.x - x * point.y; }
    [[nodiscard]] SurfacePoint point(double across, double along) const {
        return {x * across + y * along, y * across - x * along};
    }
};

constexpr Normal k_horizontal{0.0, 1.0};
constexpr Normal k_vertical{1.0, 0.0};
constexpr Normal k_upward{k_diagonal, k_diagonal};  // y grows downward, so that these lines rise to the right
constexpr Normal k_downward{k_diagonal, -k_diagonal};

std::vector<Normal> normals_of(std::int32_t style) {
    switch (style) {
        case 2: return {k_horizontal};
        case 3: return {k_vertical};
        case 4: return {k_upward};
        case 5: return {k_downward};
        case 6: return {k_horizontal, k_vertical};
        case 7: return {k_upward, k_downward};
        default: return {};
    }
}

/// Where an edge of the outline crosses a line of the hatching.
struct Crossing {
    long line = 0;       ///< times the distance of the lines from the origin
    double along = 0.0;  ///< place on that line
    int turn = 0;        ///< 1 or -1 by the side from which the edge comes

    bool operator<(const Crossing& other) const {
        return std::tie(line, along, turn) < std::tie(other.line, other.along, other.turn);
    }
};

/// Adds the crossings of an edge. Its first end belongs to it and its last one does not, so that a line
/// through a corner is crossed once.
void add_crossings(std::vector<Crossing>& crossings, const Normal& normal, SurfacePoint a, SurfacePoint b) {
    const double from = normal.across(a) / k_hatch_distance;
    const double to = normal.across(b) / k_hatch_distance;
    const int turn = to > from ? 1 : -1;
    const auto [low, high] = std::minmax(from, to);
    const double slope = (normal.along(b) - normal.along(a)) / (to - from);
    for (double line = std::ceil(low); line < high; line += 1.0)
        crossings.push_back({std::lround(line), normal.along(a) + slope * (line - from), turn});
}

void add_lines(std::vector<HatchLine>& lines, const Normal& normal, std::span<const SurfacePoint> outline) {
    std::vector<Crossing> crossings;
    for (std::size_t i = 0; i < outline.size(); ++i)
        add_crossings(crossings, normal, outline[i], outline[(i + 1) % outline.size()]);
    std::sort(crossings.begin(), crossings.end());
    int winding = 0;
    double begin = 0.0;
    for (const Crossing& crossing : crossings) {
        if (winding == 0) begin = crossing.along;
        winding += crossing.turn;
        if (winding != 0 || !(crossing.along > begin)) continue;
        const double across = static_cast<double>(crossing.line) * k_hatch_distance;
        lines.push_back({normal.point(across, begin), normal.point(across, crossing.along)});
    }
}

constexpr qsizetype k_most_of_a_column = 4;

void add_column(QPolygonF& kept, const QPolygonF& points, qsizetype begin, qsizetype end, double middle) {
    if (end - begin <= k_most_of_a_column) {
        for (qsizetype i = begin; i < end; ++i) kept.append(points[i]);
        return;
    }
    double first = points[begin].y();
    double last = first;
    for (qsizetype i = begin; i < end; ++i) {
        first = std::min(first, points[i].y());
        last = std::max(last, points[i].y());
    }
    const double before = kept.empty() ? points[begin].y() : kept.constLast().y();
    if (std::abs(last - before) < std::abs(first - before)) std::swap(first, last);
    kept.append(QPointF(middle, first));
    kept.append(QPointF(middle, last));
}

}  // namespace

std::span<const double> dashes_of(std::int32_t style) {
    switch (style) {
        case 1: return k_dash;
        case 2: return k_dot;
        case 3: return k_dash_dot;
        case 4: return k_dash_dot_dot;
        default: return {};
    }
}

std::span<const double> straight_dashes_of(std::int32_t style) {
    if (style == 2) return k_straight_dot;
    return dashes_of(style);
}

QPolygonF thinned(const QPolygonF& points, double columns) {
    QPolygonF kept;
    kept.reserve(points.size());
    for (qsizetype begin = 0; begin < points.size();) {
        const double column = std::floor(points[begin].x() * columns);
        qsizetype end = begin + 1;
        while (end < points.size() && std::floor(points[end].x() * columns) == column) ++end;
        add_column(kept, points, begin, end, (column + 0.5) / columns);
        begin = end;
    }
    return kept;
}

std::vector<HatchLine> hatch_lines(std::span<const SurfacePoint> outline, std::int32_t style) {
    std::vector<HatchLine> lines;
    const bool finite = std::all_of(outline.begin(), outline.end(), [](SurfacePoint point) {
        return std::isfinite(point.x) && std::isfinite(point.y);
    });
    if (!finite) return lines;
    for (const Normal& normal : normals_of(style)) add_lines(lines, normal, outline);
    return lines;
}

}  // namespace nivora
