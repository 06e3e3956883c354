#include "paint/plot_picture.h"

#include "paint/drawn_picture.h"

namespace nivora {
namespace {

Drawing drawing_of(const Plot& plot, const DrawOptions& options) {
    return {.title = plot.head.title, .draw = [&](Surface& surface) { draw(surface, plot, options); }};
}

}  // namespace

QImage plot_image(const Plot& plot, const DrawOptions& options, const PictureSize& size) {
    return drawn_image(drawing_of(plot, options), size);
}

QByteArray plot_picture(const Plot& plot, const DrawOptions& options, const PictureSize& size,
                        PictureForm form) {
    return drawn_picture(drawing_of(plot, options), size, form);
}

}  // namespace nivora
