// A plot as a picture, in memory and in files. Everything here needs a QGuiApplication, for its fonts.
#pragma once

#include "plots/draw_plot.h"

#include <QByteArray>
#include <QImage>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace nivora {

/// Pixels of a picture, and how many of them make an inch.
struct PictureSize {
    int width = 1600;
    int height = 900;
    double dpi = 96.0;
};

/// The largest width and height of a picture, and the limits of its resolution.
inline constexpr int k_most_pixels = 20'000;
inline constexpr double k_least_dpi = 10.0;
inline constexpr double k_most_dpi = 2400.0;

/// Whether width, height and resolution are within the limits.
[[nodiscard]] bool is_possible(const PictureSize& size);

enum class PictureForm { Png, Svg, Pdf, Bmp };

/// The form that a file name's ending asks for, with or without its point and in any case of letters; nothing
/// for any other ending.
[[nodiscard]] std::optional<PictureForm> picture_form(std::string_view ending);

/// The surface of a size in points: at 192 dpi it has half as many points as pixels.
[[nodiscard]] SurfaceSize surface_size(const PictureSize& size);

/// A null image if the size is not possible, or if the system has no room for it.
[[nodiscard]] QImage plot_image(const Plot& plot, const DrawOptions& options, const PictureSize& size);

/// The bytes of a picture file; empty if the size is not possible, or if the system refuses to make them. The
/// file tells its resolution. In an SVG file texts stay texts, without their font; a PDF file has one page
/// of the picture's size, with its fonts.
[[nodiscard]] QByteArray plot_picture(const Plot& plot, const DrawOptions& options, const PictureSize& size,
                                      PictureForm form);

/// What any other picture shows.
struct Drawing {
    std::string title;  ///< of an SVG or PDF file
    std::function<void(Surface&)> draw;
};

/// The bytes of a picture file of a drawing, like plot_picture.
[[nodiscard]] QByteArray drawn_picture(const Drawing& drawing, const PictureSize& size, PictureForm form);

}  // namespace nivora
