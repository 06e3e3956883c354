#include "paint/image_surface.h"

#include "paint/line_shapes.h"
#include "paint/print_fonts.h"
#include "paint/qt_text.h"

#include <QFontMetricsF>
#include <QPaintEngine>
#include <QPolygonF>
#include <algorithm>
#include <cmath>

namespace nivora {

struct PaintedSurface::Face {
    PlotFont wanted;
    QFont font;
    QFontMetricsF metrics;
};

namespace {

constexpr const char* k_family = "Arial";
constexpr double k_typographic_points_an_inch = 72.0;

/// A long path of many strokes takes Qt a time that grows with the square of their number.
constexpr qsizetype k_strokes_a_path = 32;

QColor qt_colour(Colour colour) {
    return {colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF};  // NOLINT(hicpp-signed-bitwise)
}

/// The lengths of the dashes of a straight pen; none if its line is solid.
std::span<const double> straight_dashes(const Pen& pen) {
    if (pen.width > 1) return {};
    return straight_dashes_of(pen.style);
}

QPen qt_pen(const Pen& pen, double width, std::span<const double> dashes) {
    QPen result(qt_colour(pen.colour));
    result.setWidthF(width);
    result.setJoinStyle(Qt::RoundJoin);
    if (dashes.empty()) {
        result.setCapStyle(Qt::RoundCap);
        return result;
    }
    result.setCapStyle(Qt::FlatCap);
    QList<qreal> pattern;
    for (const double length : dashes) pattern.append(length / width);
    result.setDashPattern(pattern);
    return result;
}

QPen qt_pen(const Pen& pen, double width) {
    return qt_pen(pen, width, pen.width > 1 ? std::span<const double>{} : dashes_of(pen.style));
}

/// A font whose texts have the same extent on every device. Qt takes no fractions of a painter's unit for its
/// size.
QFont plot_font(const PlotFont& font) {
    QFont result = print_font({.family = k_family, .points = font.size, .fixed_pitch = false}, font.bold);
    const double height = font.size * k_points_an_inch / k_typographic_points_an_inch;
    result.setPixelSize(std::max(1, static_cast<int>(std::lround(height))));
    // Coloured edges of letters look wrong in print.
    result.setStyleStrategy(
        static_cast<QFont::StyleStrategy>(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    return result;
}

/// Draws a wide line piece by piece, whose dashes go on from piece to piece.
void draw_pieces(QPainter& painter, const QPolygonF& points, QPen pen) {
    const bool dashed = pen.style() == Qt::CustomDashLine;
    double length = 0.0;
    for (qsizetype begin = 0; begin + 1 < points.size(); begin += k_strokes_a_path) {
        const qsizetype strokes = std::min(k_strokes_a_path, points.size() - 1 - begin);
        if (dashed) {
            pen.setDashOffset(length / pen.widthF());
            painter.setPen(pen);
            for (qsizetype i = begin; i < begin + strokes; ++i)
                length += QLineF(points[i], points[i + 1]).length();
        }
        painter.drawPolyline(points.constData() + begin, static_cast<int>(strokes + 1));
    }
}

/// Draws a wide line that has hardly anything but steep strokes as several lines of one pixel, side by side,
/// which takes a fraction of the time.
void draw_side_by_side(QPainter& painter, const QPolygonF& points, const Pen& pen, double width,
                       double pixels) {
    painter.setPen(qt_pen(pen, 0.999 / pixels));
    const long lines = std::lround(width * pixels);
    for (long line = 0; line < lines; ++line) {
        const double beside = (static_cast<double>(line) - static_cast<double>(lines - 1) / 2.0) / pixels;
        painter.drawPolyline(points.translated(beside, beside));
    }
}

}  // namespace

PaintedSurface::PaintedSurface(QPainter& painter, SurfaceSize size) : painter_(painter), size_(size) {
    const QTransform transform = painter.deviceTransform();
    const QPaintEngine::Type engine = painter.paintEngine()->type();
    const bool upright = transform.type() <= QTransform::TxScale && transform.m11() > 0.0 &&
                         std::abs(transform.m11() - transform.m22()) < 1e-9;
    pixels_ = engine == QPaintEngine::Raster && upright;
    if (pixels_) {
        grid_ = transform.m11();
        // A straight line of an odd number of pixels has its middle in a pixel. Curves are moved there, too,
        // so that one along an axis covers it.
        if (std::lround(grid_) % 2 == 1) shift_ = 0.5 / grid_;
    } else if (engine == QPaintEngine::SVG) {
        grid_ = 1.0;  // as it is shown at its own size
    }
    painter_.setClipRect(QRectF(0.0, 0.0, size.width, size.height), Qt::IntersectClip);
    painter_.setRenderHint(QPainter::TextAntialiasing);
}

PaintedSurface::~PaintedSurface() = default;

const PaintedSurface::Face& PaintedSurface::face(const PlotFont& font) const {
    for (const auto& known : faces_) {
        if (known->wanted.size == font.size && known->wanted.bold == font.bold) return *known;
    }
    const QFont qt_font = plot_font(font);
    faces_.push_back(std::make_unique<Face>(Face{font, qt_font, QFontMetricsF(qt_font, painter_.device())}));
    return *faces_.back();
}

SurfaceSize PaintedSurface::text_size(std::string_view text, const PlotFont& font) const {
    const QFontMetricsF& metrics = face(font).metrics;
    return {metrics.horizontalAdvance(qt_text(text)), metrics.height()};
}

void PaintedSurface::text(SurfacePoint top_left, std::string_view text, const PlotFont& font, Colour colour) {
    const Face& letters = face(font);
    painter_.setFont(letters.font);
    painter_.setPen(qt_colour(colour));
    painter_.drawText(QPointF(top_left.x, top_left.y + letters.metrics.ascent()), qt_text(text));
}

double PaintedSurface::curve_width(const Pen& pen) const {
    const double width = std::max(1, pen.width);
    return pixels_ ? std::max(width, 1.0 / grid_) : width;
}

double PaintedSurface::straight_width(const Pen& pen) const {
    const double width = std::max(1, pen.width);
    return grid_ > 0.0 ? std::max(1.0, std::round(width * grid_)) / grid_ : width;
}

double PaintedSurface::begin_of(double middle, double width, double room) const {
    if (grid_ == 0.0) return middle - width / 2.0;
    const double begin = std::floor((middle - width / 2.0) * grid_ + 0.5);
    // A line at the right or lower edge is moved into the surface.
    const bool inside = middle >= 0.0 && middle <= room;
    const double last = std::round((room - width) * grid_);
    return (inside ? std::max(0.0, std::min(begin, last)) : begin) / grid_;
}

SurfaceRectangle PaintedSurface::straight_box(SurfacePoint from, SurfacePoint to, double width) const {
    const double left = begin_of(std::min(from.x, to.x), width, size_.width);
    const double top = begin_of(std::min(from.y, to.y), width, size_.height);
    const double right = begin_of(std::max(from.x, to.x), width, size_.width) + width;
    const double bottom = begin_of(std::max(from.y, to.y), width, size_.height) + width;
    return {left, top, right - left, bottom - top};
}

QPointF PaintedSurface::place(SurfacePoint point) const { return {point.x + shift_, point.y + shift_}; }

QPolygonF PaintedSurface::polygon(std::span<const SurfacePoint> points) const {
    QPolygonF places;
    places.reserve(static_cast<qsizetype>(points.size()));
    for (const SurfacePoint& point : points) places.append(place(point));
    return places;
}

void PaintedSurface::fill_box(const SurfaceRectangle& box, Colour colour) {
    painter_.setRenderHint(QPainter::Antialiasing, false);
    painter_.fillRect(QRectF(box.left, box.top, box.width, box.height), qt_colour(colour));
}

void PaintedSurface::line(std::span<const SurfacePoint> points, const Pen& pen) {
    if (points.size() < 2) return;
    const SurfacePoint from = points.front();
    const SurfacePoint to = points.back();
    if (points.size() == 2 && (from.x == to.x || from.y == to.y)) {
        straight_line(from, to, pen);
    } else {
        curve(points, pen);
    }
}

void PaintedSurface::straight_line(SurfacePoint from, SurfacePoint to, const Pen& pen) {
    const double width = straight_width(pen);
    const SurfaceRectangle box = straight_box(from, to, width);
    if (pixels_) {
        stroke_pixels(box, pen);
        return;
    }
    const std::span<const double> dashes = straight_dashes(pen);
    QPen qpen = qt_pen(pen, width, dashes);
    if (dashes.empty()) qpen.setCapStyle(Qt::SquareCap);
    painter_.setPen(qpen);
    const double half = width / 2.0;
    painter_.drawLine(QPointF(box.left + half, box.top + half),
                      QPointF(box.left + box.width - half, box.top + box.height - half));
}

/// Fills the box of a straight line, or the dashes in it, which are whole pixels long. Lines of one pixel are
/// what Qt dashes fast, also for the hundreds of grid lines of a long record.
void PaintedSurface::stroke_pixels(const SurfaceRectangle& box, const Pen& pen) {
    const std::span<const double> dashes = straight_dashes(pen);
    if (dashes.empty()) {
        fill_box(box, pen.colour);
        return;
    }
    QList<qreal> pattern;
    for (const double length : dashes) pattern.append(std::max(1.0, std::round(length * grid_)));
    QPen qpen(qt_colour(pen.colour));
    qpen.setCosmetic(true);
    qpen.setDashPattern(pattern);
    painter_.setRenderHint(QPainter::Antialiasing, false);
    painter_.setPen(qpen);

    const double half = 0.5 / grid_;
    const QPointF first(box.left + half, box.top + half);
    const QPointF last(box.left + box.width - half, box.top + box.height - half);
    const bool across = box.width >= box.height;
    const long lines = std::lround((across ? box.height : box.width) * grid_);
    for (long line = 0; line < lines; ++line) {
        const double beside = static_cast<double>(line) / grid_;
        if (across) {
            painter_.drawLine(QPointF(first.x(), first.y() + beside), QPointF(last.x(), first.y() + beside));
        } else {
            painter_.drawLine(QPointF(first.x() + beside, first.y()), QPointF(first.x() + beside, last.y()));
        }
    }
}

void PaintedSurface::curve(std::span<const SurfacePoint> points, const Pen& pen) {
    QPolygonF places = polygon(points);
    if (pixels_) places = thinned(places, grid_);
    const bool dense = 2 * places.size() < static_cast<qsizetype>(points.size());

    const double width = curve_width(pen);
    const QPen qpen = qt_pen(pen, width);
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setBrush(Qt::NoBrush);
    painter_.setPen(qpen);
    const bool wide = pixels_ && width * grid_ > 1.0;
    if (wide && dense) {
        draw_side_by_side(painter_, places, pen, width, grid_);
    } else if (wide) {
        draw_pieces(painter_, places, qpen);
    } else {
        painter_.drawPolyline(places);
    }
}

void PaintedSurface::rectangle(const SurfaceRectangle& rectangle, const std::optional<Pen>& outline,
                               const std::optional<Fill>& fill) {
    const SurfacePoint top_left{rectangle.left, rectangle.top};
    const SurfacePoint bottom_right{rectangle.left + rectangle.width, rectangle.top + rectangle.height};
    const SurfacePoint top_right{bottom_right.x, top_left.y};
    const SurfacePoint bottom_left{top_left.x, bottom_right.y};
    if (fill && fill->style == k_solid_fill) {
        fill_box(outline ? straight_box(top_left, bottom_right, straight_width(*outline))
                         : straight_box(top_left, bottom_right, 0.0),
                 fill->colour);
    } else if (fill) {
        const std::array corners{top_left, top_right, bottom_right, bottom_left};
        hatch(corners, *fill);
    }
    if (!outline) return;
    straight_line(top_left, top_right, *outline);
    straight_line(bottom_left, bottom_right, *outline);
    straight_line(top_left, bottom_left, *outline);
    straight_line(top_right, bottom_right, *outline);
}

void PaintedSurface::circle(SurfacePoint centre, double radius, const Pen& pen) {
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setBrush(Qt::NoBrush);
    painter_.setPen(qt_pen({pen.colour, 0, pen.width}, curve_width(pen)));
    painter_.drawEllipse(place(centre), radius, radius);
}

void PaintedSurface::dot(SurfacePoint at, Colour colour) {
    fill_box(straight_box(at, at, straight_width({})), colour);
}

void PaintedSurface::fill_band(std::span<const SurfacePoint> outline, const Fill& fill) {
    if (outline.size() < 3) return;
    if (fill.style != k_solid_fill) {
        hatch(outline, fill);
        return;
    }
    painter_.setRenderHint(QPainter::Antialiasing);
    // Without a thin edge of its colour, the paper would shine through between two antialiased areas.
    painter_.setPen(qt_pen({fill.colour, 0, 1}, pixels_ ? 1.0 / grid_ : 0.5));
    painter_.setBrush(qt_colour(fill.colour));
    painter_.drawPolygon(polygon(outline), Qt::WindingFill);
}

/// Qt's own hatches are pictures of pixels, which neither grow with the scale nor reach an SVG file.
void PaintedSurface::hatch(std::span<const SurfacePoint> outline, const Fill& fill) {
    const Pen pen{fill.colour, 0, 1};
    QList<QLineF> diagonals;
    for (const HatchLine& line : hatch_lines(outline, fill.style)) {
        if (line.from.x == line.to.x || line.from.y == line.to.y) {
            straight_line(line.from, line.to, pen);
        } else {
            diagonals.append({place(line.from), place(line.to)});
        }
    }
    if (diagonals.empty()) return;
    QPen qpen = qt_pen(pen, curve_width(pen));
    qpen.setCapStyle(Qt::FlatCap);
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setPen(qpen);
    painter_.drawLines(diagonals);
}

}  // namespace nivora
