// A plot as a picture, in memory and in files. Everything here needs a QGuiApplication, for its fonts.
#pragma once

#include "plots/draw_plot.h"

#include <QByteArray>
#include <QImage>
#include <optional>
#include <string>

namespace nivora {

/// Pixels of a picture, and how many of them make an inch.
struct PictureSize {
    int width = 1600;
    int height = 900;
    double dpi = 96.0;
};

/// The largest width and height of a picture.
inline constexpr int k_most_pixels = 20'000;

enum class PictureForm { Png, Svg, Pdf, Bmp };

/// The form that a file name's ending asks for, in any case of letters; nothing for any other ending.
[[nodiscard]] std::optional<PictureForm> picture_form(std::string_view ending);

/// The surface of a size in points: at 192 dpi it has half as many points as pixels.
[[nodiscard]] SurfaceSize surface_size(const PictureSize& size);

[[nodiscard]] QImage plot_image(const Plot& plot, const DrawOptions& options, const PictureSize& size);

/// The bytes of a picture file; empty if the system refuses to make them.
[[nodiscard]] QByteArray plot_picture(const Plot& plot, const DrawOptions& options, const PictureSize& size,
                                      PictureForm form);

}  // namespace nivora
