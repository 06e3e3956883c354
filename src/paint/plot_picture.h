// A plot as a picture, in memory and in files. Everything here needs a QGuiApplication, for its fonts.
#pragma once

#include "plots/draw_plot.h"
#include "plots/picture_form.h"

#include <QByteArray>
#include <QImage>

namespace nivora {

/// A null image if the size is not possible, or if the system has no room for it.
[[nodiscard]] QImage plot_image(const Plot& plot, const DrawOptions& options, const PictureSize& size);

/// The bytes of a picture file, as drawn_picture makes them.
[[nodiscard]] QByteArray plot_picture(const Plot& plot, const DrawOptions& options, const PictureSize& size,
                                      PictureForm form);

}  // namespace nivora
