// Texts with their places on a surface, none of them cut at an edge.
#pragma once

#include "plots/surface.h"

#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// The space between a text and the edge of its surface.
inline constexpr double k_text_edge = 3.0;

struct PlacedText {
    std::string text;
    PlotFont font;
    Colour colour = k_black;
    SurfaceRectangle box = {};
};

/// A text with its top left corner at a place, or as near to it as the edges of the surface allow.
[[nodiscard]] PlacedText place_text(const Surface& surface, std::string text, const PlotFont& font,
                                    SurfacePoint top_left);

void draw_text(Surface& surface, const PlacedText& text);

[[nodiscard]] bool overlap(const SurfaceRectangle& a, const SurfaceRectangle& b);

/// The rectangle moved into the surface; one that is larger has its top left corner in the surface's.
[[nodiscard]] SurfaceRectangle moved_inside(SurfaceRectangle box, SurfaceSize size);

/// The font, smaller on a small surface, so that the lines above the frame have room there as far as
/// possible.
[[nodiscard]] PlotFont fitted_font(const Surface& surface, PlotFont font);

/// The font, or the largest one below it in steps of half a point, in which a text is narrower than a width;
/// the smallest font of a plot if there is none.
[[nodiscard]] PlotFont shrunk_font(const Surface& surface, std::string_view text, PlotFont font,
                                   double width);

/// The text, or its end after "..." if it is wider than a width; empty if not even that fits.
[[nodiscard]] std::string shortened(const Surface& surface, std::string_view text, const PlotFont& font,
                                    double width);

/// The lines of a text that are no wider than a width, broken at blanks.
[[nodiscard]] std::vector<std::string> broken_lines(const Surface& surface, std::string_view text,
                                                    const PlotFont& font, double width);

}  // namespace nivora
