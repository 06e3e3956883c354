// A plot's surface over any paint device of Qt: a picture in memory, an SVG file, a page. Everything here
// needs a QGuiApplication, for its fonts.
#pragma once

#include "plots/surface.h"

#include <QImage>
#include <QPainter>

namespace nivora {

/// Draws with a painter that is active. One point of the surface is one unit of the painter.
class PaintedSurface : public Surface {
public:
    /// @param painter must outlive this object; the caller has scaled it, for example by 2 for 192 dpi
    /// @param size    the surface in its points
    PaintedSurface(QPainter& painter, SurfaceSize size);

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
    QPainter& painter_;
    SurfaceSize size_;
};

}  // namespace nivora
