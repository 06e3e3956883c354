#include "paint/drawn_picture.h"

#include "base/dialogs.h"
#include "paint/image_surface.h"
#include "paint/qt_text.h"

#include <QBuffer>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <cmath>

namespace nivora {
namespace {

constexpr double k_typographic_points_an_inch = 72.0;
constexpr double k_inches_a_metre = 1.0 / 0.0254;
constexpr int k_pdf_dots_an_inch = 1200;

bool paint(QPaintDevice& device, double scale, const Drawing& drawing, const PictureSize& size) {
    QPainter painter;
    if (!painter.begin(&device)) return false;
    painter.scale(scale, scale);
    {
        PaintedSurface surface{painter, surface_size(size)};
        drawing.draw(surface);
    }
    return painter.end();
}

QByteArray image_file(const QImage& image, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (image.isNull() || !image.save(&buffer, format)) return {};
    return bytes;
}

QByteArray svg_file(const Drawing& drawing, const PictureSize& size) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    const SurfaceSize points = surface_size(size);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setResolution(static_cast<int>(std::lround(size.dpi)));
    generator.setSize(QSize(size.width, size.height));
    generator.setViewBox(QRectF(0.0, 0.0, points.width, points.height));
    generator.setTitle(qt_text(drawing.title).toHtmlEscaped());
    generator.setDescription(qt_text(k_program_title));
    return paint(generator, 1.0, drawing, size) ? bytes : QByteArray{};
}

QByteArray pdf_file(const Drawing& drawing, const PictureSize& size) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    {
        const SurfaceSize points = surface_size(size);
        const QSizeF paper =
            QSizeF(points.width, points.height) * (k_typographic_points_an_inch / k_points_an_inch);
        QPdfWriter writer(&buffer);
        writer.setResolution(k_pdf_dots_an_inch);
        writer.setPageLayout(QPageLayout(QPageSize(paper, QPageSize::Point, {}, QPageSize::ExactMatch),
                                         QPageLayout::Portrait, {}));
        writer.setTitle(qt_text(drawing.title));
        writer.setCreator(qt_text(k_program_title));
        if (!paint(writer, k_pdf_dots_an_inch / k_points_an_inch, drawing, size)) return {};
    }
    return bytes;
}

}  // namespace

QImage drawn_image(const Drawing& drawing, const PictureSize& size) {
    if (!is_possible(size)) return {};
    QImage image(size.width, size.height, QImage::Format_RGB32);
    if (image.isNull()) return {};
    image.fill(Qt::white);
    if (!paint(image, size.dpi / k_points_an_inch, drawing, size)) return {};
    const int dots_a_metre = static_cast<int>(std::lround(size.dpi * k_inches_a_metre));
    image.setDotsPerMeterX(dots_a_metre);
    image.setDotsPerMeterY(dots_a_metre);
    return image;
}

QByteArray drawn_picture(const Drawing& drawing, const PictureSize& size, PictureForm form) {
    if (!is_possible(size)) return {};
    switch (form) {
        case PictureForm::Png: return image_file(drawn_image(drawing, size), "PNG");
        case PictureForm::Bmp: return image_file(drawn_image(drawing, size), "BMP");
        case PictureForm::Svg: return svg_file(drawing, size);
        case PictureForm::Pdf: return pdf_file(drawing, size);
    }
    return {};
}

}  // namespace nivora
