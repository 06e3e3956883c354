#include "windows/plots/colour_field.h"

#include "paint/image_surface.h"

#include <QImage>
#include <QPainter>
#include <array>
#include <functional>

namespace nivora {
namespace {

/// Draws a frame of one point inside a rectangle, at every density of the screen. A pen of one point would
/// leave out half a point at the right and below.
void draw_frame(QPainter& painter, const QRect& box, const QColor& colour) {
    painter.fillRect(box.left(), box.top(), box.width(), 1, colour);
    painter.fillRect(box.left(), box.bottom(), box.width(), 1, colour);
    painter.fillRect(box.left(), box.top(), 1, box.height(), colour);
    painter.fillRect(box.right(), box.top(), 1, box.height(), colour);
}

/// Paints a widget as plots are painted, on white, with a thin frame around it.
void paint_framed(QWidget& widget, const std::function<void(Surface&)>& draw) {
    const double pixels = widget.devicePixelRatioF();
    QImage image((QSizeF(widget.size()) * pixels).toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        painter.scale(pixels, pixels);
        PaintedSurface surface(painter, {.width = static_cast<double>(widget.width()),
                                         .height = static_cast<double>(widget.height())});
        draw(surface);
    }
    image.setDevicePixelRatio(pixels);
    QPainter painter(&widget);
    painter.drawImage(QPoint(0, 0), image);
    draw_frame(painter, widget.rect(), widget.palette().color(QPalette::Mid));
}

}  // namespace

ColourField::ColourField(const QString& name, QWidget* parent) : QAbstractButton(parent) {
    setObjectName(name);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ColourField::show_fill(const Fill& fill) {
    fill_ = fill;
    update();
}

QSize ColourField::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 12, fontMetrics().lineSpacing() * 2};
}

void ColourField::paintEvent(QPaintEvent* /*event*/) {
    paint_framed(*this, [this](Surface& surface) {
        const SurfaceSize size = surface.size();
        surface.rectangle({.left = 0.0, .top = 0.0, .width = size.width, .height = size.height}, std::nullopt,
                          fill_);
    });
    if (!hasFocus()) return;
    // Two lines, one of which is visible on every colour.
    QPainter painter(this);
    draw_frame(painter, rect().adjusted(1, 1, -1, -1), Qt::white);
    draw_frame(painter, rect().adjusted(2, 2, -2, -2), Qt::black);
}

LineSample::LineSample(const QString& name, QWidget* parent) : QWidget(parent) {
    setObjectName(name);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void LineSample::show_pen(const Pen& pen) {
    pen_ = pen;
    update();
}

QSize LineSample::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 24, fontMetrics().lineSpacing() * 2};
}

void LineSample::paintEvent(QPaintEvent* /*event*/) {
    paint_framed(*this, [this](Surface& surface) {
        const SurfaceSize size = surface.size();
        const double middle = size.height / 2.0;
        const std::array<SurfacePoint, 2> across{{{.x = 0.0, .y = middle}, {.x = size.width, .y = middle}}};
        surface.line(across, pen_);
    });
}

}  // namespace nivora
