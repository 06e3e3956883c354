#include "paint/plot_print.h"

#include "base/durable_file.h"
#include "paint/image_surface.h"
#include "paint/qt_text.h"

#include <QImage>
#include <QPagedPaintDevice>
#include <QPainter>
#include <algorithm>

namespace nivora {
namespace {

/// A point of a surface is 1/96 inch.
constexpr double k_twips_a_point = k_twips_an_inch / 96.0;
constexpr int k_least_room = k_twips_an_inch;

/// A surface on which nothing is drawn.
class MeasuredSurface {
public:
    explicit MeasuredSurface(SurfaceSize size) : painter_(&image_), surface_(painter_, size) {}

    [[nodiscard]] const Surface& surface() const { return surface_; }

private:
    QImage image_{1, 1, QImage::Format_RGB32};
    QPainter painter_;
    PaintedSurface surface_;
};

SurfaceSize room_of(const PageMetrics& page) {
    return {page.usable_width() / k_twips_a_point, page.usable_height() / k_twips_a_point};
}

bool fits(SurfaceSize size, SurfaceSize room) {
    constexpr double k_rounding = 1e-6;
    return size.width <= room.width + k_rounding && size.height <= room.height + k_rounding;
}

/// The place of a panel whose room around it is divided on a larger surface as it is on a smaller one.
SurfacePoint moved(const SurfaceRectangle& panel, SurfaceSize from, SurfaceSize to) {
    const auto share = [](double begin, double length, double all, double new_all) {
        const double room = all - length;
        return room > 0.0 ? begin / room * (new_all - length) : begin;
    };
    return {share(panel.left, panel.width, from.width, to.width),
            share(panel.top, panel.height, from.height, to.height)};
}

/// The options of a plot for a surface of another shape.
DrawOptions fitted(const PlotPrint& print, SurfaceSize surface) {
    const MeasuredSurface shown{print.size};
    DrawOptions options = print.options;
    if (options.legend) {
        const auto legend = legend_rectangle(shown.surface(), print.plot, print.options);
        options.legend_place = moved(legend, print.size, surface);
    }
    if (options.summary) {
        const auto summary = summary_rectangle(shown.surface(), print.plot, print.options);
        options.summary_place = moved(summary, print.size, surface);
    }
    return options;
}

}  // namespace

DrawOptions with_panels(const Plot& plot, DrawOptions options, SurfaceSize size, bool summary) {
    const MeasuredSurface shown{size};
    const auto place = [](const SurfaceRectangle& panel) { return SurfacePoint{panel.left, panel.top}; };
    options.legend = true;
    options.summary = summary;
    options.legend_place = place(legend_rectangle(shown.surface(), plot, options));
    if (summary) options.summary_place = place(summary_rectangle(shown.surface(), plot, options));
    return options;
}

std::optional<Message> plot_page_refusal(const PageMetrics& page) {
    if (page.usable_width() >= k_least_room && page.usable_height() >= k_least_room) return std::nullopt;
    return Message{.text =
                       "The margins leave no room for a plot on the page.\nClick File/Page Setup on the "
                       "main window menu to change your margin definition.",
                   .title = "Nivora margin definition error",
                   .icon = Icon::Stop};
}

std::optional<Message> plot_overflow_question(const PageMetrics& page, SurfaceSize size) {
    if (fits(size, room_of(page))) return std::nullopt;
    return Message{
        .text =
            "The image is too large to fit on the current printer page-area.  The plot will be compressed to "
            "fit the available area \n"
            "defined by the printer's margins.  To avoid automatic compression, reduce the size of your plot "
            "window by 'resizing' it or\n"
            "enlarge the printable area by reducing the size of your printer's page margins (File/Page Setup "
            "on the main window).\n\n"
            "Click 'OK' to produce a compressed image.",
        .title = "Nivora graphics print overflow",
        .buttons = Buttons::OkCancel};
}

PlotPlace plot_place(const PageMetrics& page, SurfaceSize size) {
    PlotPlace place{
        .left = static_cast<double>(page.left), .top = static_cast<double>(page.top), .surface = size};
    const SurfaceSize room = room_of(page);
    if (fits(size, room)) return place;
    place.scale = std::min(room.width / size.width, room.height / size.height);
    place.surface = {room.width / place.scale, room.height / place.scale};
    return place;
}

bool paint_plot(PaintedDevice& device, const PlotPrint& print) {
    const PlotPlace place = plot_place(device.page(), print.size);
    const DrawOptions options = place.scale < 1.0 ? fitted(print, place.surface) : print.options;
    QPainter painter;
    if (!painter.begin(&device.device())) return false;
    painter.translate(place.left * device.across(), place.top * device.down());
    painter.scale(k_twips_a_point * place.scale * device.across(),
                  k_twips_a_point * place.scale * device.down());
    {
        PaintedSurface surface{painter, place.surface};
        draw(surface, print.plot, options);
    }
    return painter.end();
}

std::optional<Message> write_plot_pdf(const std::filesystem::path& file, const PageSetup& setup,
                                      const PlotPrint& print,
                                      const std::vector<std::filesystem::path>& never) {
    return write_pdf(
        file, setup, print.plot.head.title,
        [&](PaintedDevice& device) -> std::optional<Message> {
            if (paint_plot(device, print)) return std::nullopt;
            return Message{
                .text = "The plot cannot be drawn into '" + path_text(file) + "'. The file was not written.",
                .icon = Icon::Stop};
        },
        never);
}

}  // namespace nivora
