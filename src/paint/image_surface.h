// A plot's surface over any paint device of Qt: a picture in memory, an SVG file, a page. Everything here
// needs a QGuiApplication, for its fonts.
#pragma once

#include "plots/surface.h"

#include <QPainter>
#include <QPolygonF>
#include <memory>
#include <vector>

namespace nivora {

/// Draws with a painter that is active. One point of the surface is one unit of the painter.
///
/// On a picture of pixels, straight lines, dots and rectangles take whole pixels at every scale, and no line
/// is thinner than a pixel. Texts have the same extent on every device; sizes of fonts are rounded to whole
/// points of the surface.
class PaintedSurface : public Surface {
public:
    /// Clips the painter at the edges of the surface.
    ///
    /// @param painter must outlive this object; the caller has scaled it, for example by 2 for 192 dpi
    /// @param size    the surface in its points
    PaintedSurface(QPainter& painter, SurfaceSize size);
    ~PaintedSurface() override;

    [[nodiscard]] SurfaceSize size() const override { return size_; }
    [[nodiscard]] SurfaceSize text_size(std::string_view text, const PlotFont& font) const override;
    void line(std::span<const SurfacePoint> points, const Pen& pen) override;
    void text(SurfacePoint top_left, std::string_view text, const PlotFont& font, Colour colour) override;
    void rectangle(const SurfaceRectangle& rectangle, const std::optional<Pen>& outline,
                   const std::optional<Fill>& fill) override;
    void circle(SurfacePoint centre, double radius, const Pen& pen) override;
    void dot(SurfacePoint at, Colour colour) override;
    void fill_band(std::span<const SurfacePoint> outline, const Fill& fill) override;

private:
    struct Face;

    [[nodiscard]] const Face& face(const PlotFont& font) const;
    /// The width of a curve in points.
    [[nodiscard]] double curve_width(const Pen& pen) const;
    /// The width of a straight line in points; whole pixels.
    [[nodiscard]] double straight_width(const Pen& pen) const;
    /// Where a stroke of a width begins whose middle is at a place; between two pixels.
    ///
    /// @param room the surface's extent in the same direction
    [[nodiscard]] double begin_of(double middle, double width, double room) const;
    /// What a straight line covers, half its width beyond both ends.
    [[nodiscard]] SurfaceRectangle straight_box(SurfacePoint from, SurfacePoint to, double width) const;
    /// A point of a curve or a polygon in the units of the painter.
    [[nodiscard]] QPointF place(SurfacePoint point) const;
    [[nodiscard]] QPolygonF polygon(std::span<const SurfacePoint> points) const;

    void fill_box(const SurfaceRectangle& box, Colour colour);
    void straight_line(SurfacePoint from, SurfacePoint to, const Pen& pen);
    void curve(std::span<const SurfacePoint> points, const Pen& pen);
    void stroke_pixels(const SurfaceRectangle& box, const Pen& pen);
    void hatch(std::span<const SurfacePoint> outline, const Fill& fill);

    QPainter& painter_;
    SurfaceSize size_;
    bool pixels_ = false;  ///< whether the device is a picture of pixels
    double grid_ = 0.0;    ///< pixels per point to which straight lines keep; 0 if the device has none
    double shift_ = 0.0;   ///< what is added to the places of curves, points
    mutable std::vector<std::unique_ptr<Face>> faces_;  ///< a cache
};

}  // namespace nivora
