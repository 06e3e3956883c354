#include "plots/placed_text.h"

#include "base/text.h"

#include <algorithm>
#include <cmath>

namespace nivora {
namespace {

constexpr double k_smallest_font = 6.0;
constexpr double k_font_step = 0.5;

/// Fonts have their full size from this size of the surface on.
constexpr SurfaceSize k_full_size{700.0, 420.0};
constexpr double k_least_share = 0.6;
constexpr double k_smallest_fitted_font = 5.0;

double width_of(const Surface& surface, std::string_view text, const PlotFont& font) {
    return surface.text_size(text, font).width;
}

/// The nearest place to `place` at which `length` lies between `edge` and `room` - `edge`.
double moved_inside(double place, double length, double room, double edge) {
    return std::max(std::min(place, room - edge - length), std::min(edge, std::max(room - length, 0.0)));
}

/// The last `count` characters.
std::string_view last_characters(std::string_view text, std::size_t count) {
    const std::size_t all = character_count(text);
    return text.substr(first_characters(text, all - std::min(count, all)).size());
}

}  // namespace

PlacedText place_text(const Surface& surface, std::string text, const PlotFont& font, SurfacePoint top_left) {
    const SurfaceSize extent = surface.text_size(text, font);
    const SurfaceSize room = surface.size();
    const SurfaceRectangle box{.left = moved_inside(top_left.x, extent.width, room.width, k_text_edge),
                               .top = moved_inside(top_left.y, extent.height, room.height, k_text_edge),
                               .width = extent.width,
                               .height = extent.height};
    return {.text = std::move(text), .font = font, .box = box};
}

void draw_text(Surface& surface, const PlacedText& text) {
    if (!text.text.empty()) surface.text({text.box.left, text.box.top}, text.text, text.font, text.colour);
}

bool overlap(const SurfaceRectangle& a, const SurfaceRectangle& b) {
    // Boxes that touch do not overlap, whatever the last digits of their edges are.
    constexpr double k_touching = 0.01;
    const auto meet = [](double from, double length, double other_from, double other_length) {
        return from + length > other_from + k_touching && other_from + other_length > from + k_touching;
    };
    return meet(a.left, a.width, b.left, b.width) && meet(a.top, a.height, b.top, b.height);
}

SurfaceRectangle moved_inside(SurfaceRectangle box, SurfaceSize size) {
    box.left = moved_inside(box.left, box.width, size.width, 0.0);
    box.top = moved_inside(box.top, box.height, size.height, 0.0);
    return box;
}

PlotFont fitted_font(const Surface& surface, PlotFont font) {
    const SurfaceSize size = surface.size();
    const double share = std::min(size.width / k_full_size.width, size.height / k_full_size.height);
    if (share >= 1.0) return font;
    const double steps = std::floor(font.size * std::max(share, k_least_share) / k_font_step);
    font.size = std::max(k_smallest_fitted_font, steps * k_font_step);
    return font;
}

PlotFont shrunk_font(const Surface& surface, std::string_view text, PlotFont font, double width) {
    while (font.size > k_smallest_font && width_of(surface, text, font) >= width) font.size -= k_font_step;
    return font;
}

std::string shortened(const Surface& surface, std::string_view text, const PlotFont& font, double width) {
    if (width_of(surface, text, font) <= width) return std::string{text};
    const auto ending = [&](std::size_t count) { return "..." + std::string{last_characters(text, count)}; };
    std::size_t fitting = 0;
    for (std::size_t too_many = character_count(text); fitting + 1 < too_many;) {
        const std::size_t middle = fitting + (too_many - fitting) / 2;
        (width_of(surface, ending(middle), font) <= width ? fitting : too_many) = middle;
    }
    return fitting == 0 ? std::string{} : ending(fitting);
}

std::vector<std::string> broken_lines(const Surface& surface, std::string_view text, const PlotFont& font,
                                      double width) {
    std::vector<std::string> lines;
    std::string line;
    while (!text.empty()) {
        const std::size_t blank = std::min(text.find(' ', 1), text.size());
        const std::string longer = line + std::string{text.substr(0, blank)};
        if (!line.empty() && width_of(surface, trimmed(longer), font) > width) {
            lines.emplace_back(trimmed(line));
            line = text.substr(0, blank);
        } else {
            line = longer;
        }
        text.remove_prefix(blank);
    }
    if (!trimmed(line).empty()) lines.push_back(shortened(surface, trimmed(line), font, width));
    return lines;
}

}  // namespace nivora
