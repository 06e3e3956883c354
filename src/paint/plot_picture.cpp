#include "paint/plot_picture.h"

#include "base/dialogs.h"
#include "base/text.h"
#include "paint/image_surface.h"
#include "paint/qt_text.h"

#include <QBuffer>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace nivora {
namespace {

constexpr double k_points_an_inch = 96.0;
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

Drawing drawing_of(const Plot& plot, const DrawOptions& options) {
    return {.title = plot.head.title, .draw = [&](Surface& surface) { draw(surface, plot, options); }};
}

QByteArray image_file(const QImage& image, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (image.isNull() || !image.save(&buffer, format)) return {};
    return bytes;
}

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

bool is_possible(const PictureSize& size) {
    const auto fits = [](int pixels) { return pixels >= 1 && pixels <= k_most_pixels; };
    return fits(size.width) && fits(size.height) && size.dpi >= k_least_dpi && size.dpi <= k_most_dpi;
}

std::optional<PictureForm> picture_form(std::string_view ending) {
    constexpr std::array<std::pair<std::string_view, PictureForm>, 4> k_forms{{{"png", PictureForm::Png},
                                                                               {"svg", PictureForm::Svg},
                                                                               {"pdf", PictureForm::Pdf},
                                                                               {"bmp", PictureForm::Bmp}}};
    if (ending.starts_with('.')) ending.remove_prefix(1);
    const auto form = std::find_if(k_forms.begin(), k_forms.end(),
                                   [&](const auto& known) { return same_name(known.first, ending); });
    return form == k_forms.end() ? std::nullopt : std::optional{form->second};
}

SurfaceSize surface_size(const PictureSize& size) {
    return {size.width * k_points_an_inch / size.dpi, size.height * k_points_an_inch / size.dpi};
}

QImage plot_image(const Plot& plot, const DrawOptions& options, const PictureSize& size) {
    return drawn_image(drawing_of(plot, options), size);
}

QByteArray plot_picture(const Plot& plot, const DrawOptions& options, const PictureSize& size,
                        PictureForm form) {
    return drawn_picture(drawing_of(plot, options), size, form);
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
