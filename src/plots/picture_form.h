// What a picture file is: its form, its size, and what draws it.
#pragma once

#include "plots/surface.h"

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
[[nodiscard]] inline bool is_possible(const PictureSize& size) {
    const auto fits = [](int pixels) { return pixels >= 1 && pixels <= k_most_pixels; };
    return fits(size.width) && fits(size.height) && size.dpi >= k_least_dpi && size.dpi <= k_most_dpi;
}

/// The surface of a size in points: at 192 dpi it has half as many points as pixels.
[[nodiscard]] inline SurfaceSize surface_size(const PictureSize& size) {
    return {size.width * k_points_an_inch / size.dpi, size.height * k_points_an_inch / size.dpi};
}

enum class PictureForm { Png, Svg, Pdf, Bmp };

/// The form that a file name's ending asks for, with or without its point and in any case of letters; nothing
/// for any other ending.
[[nodiscard]] std::optional<PictureForm> picture_form(std::string_view ending);

/// What a picture shows.
struct Drawing {
    std::string title;  ///< of an SVG or PDF file
    std::function<void(Surface&)> draw;
};

}  // namespace nivora
