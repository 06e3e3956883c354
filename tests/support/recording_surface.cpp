#include "tests/support/recording_surface.h"

#include "base/text.h"

#include <fmt/format.h>

#include <cmath>

namespace nivora {
namespace {

constexpr double k_units_a_point = 96.0 / 72.0;
constexpr double k_letter_width = 0.6;

std::string number(double value) { return fmt::format("{:.1f}", std::nearbyint(value * 10.0) / 10.0 + 0.0); }

std::string place(SurfacePoint point) { return number(point.x) + "," + number(point.y); }

std::string places(std::span<const SurfacePoint> points) {
    std::string text;
    for (const SurfacePoint& point : points) text += " " + place(point);
    return text;
}

/// "#800000" for dark red, with red first.
std::string colour_text(Colour colour) {
    constexpr Colour k_byte = 0xFF;
    return fmt::format("#{:02X}{:02X}{:02X}", colour & k_byte, (colour >> 8) & k_byte,
                       (colour >> 16) & k_byte);
}

std::string pen_text(const Pen& pen) {
    return fmt::format("pen {} style {} width {}", colour_text(pen.colour), pen.style, pen.width);
}

std::string fill_text(const Fill& fill) {
    return fmt::format("fill {} style {}", colour_text(fill.colour), fill.style);
}

}  // namespace

SurfaceSize RecordingSurface::text_size(std::string_view text, const PlotFont& font) const {
    const double height = font.size * k_units_a_point;
    return {k_letter_width * height * static_cast<double>(character_count(text)), height};
}

void RecordingSurface::line(std::span<const SurfacePoint> points, const Pen& pen) {
    calls_.push_back("line " + pen_text(pen) + ":" + places(points));
}

void RecordingSurface::text(SurfacePoint top_left, std::string_view text, const PlotFont& font,
                            Colour colour) {
    calls_.push_back(fmt::format("text {} {}{} {} \"{}\"", place(top_left), number(font.size),
                                 font.bold ? " bold" : "", colour_text(colour), text));
}

void RecordingSurface::rectangle(const SurfaceRectangle& rectangle, const std::optional<Pen>& outline,
                                 const std::optional<Fill>& fill) {
    calls_.push_back(fmt::format("rectangle {} {}x{}{}{}", place({rectangle.left, rectangle.top}),
                                 number(rectangle.width), number(rectangle.height),
                                 outline ? " " + pen_text(*outline) : "",
                                 fill ? " " + fill_text(*fill) : ""));
}

void RecordingSurface::circle(SurfacePoint centre, double radius, const Pen& pen) {
    calls_.push_back("circle " + place(centre) + " radius " + number(radius) + " " + pen_text(pen));
}

void RecordingSurface::dot(SurfacePoint at, Colour colour) {
    calls_.push_back("dot " + place(at) + " " + colour_text(colour));
}

void RecordingSurface::fill_band(std::span<const SurfacePoint> outline, const Fill& fill) {
    calls_.push_back("band " + fill_text(fill) + ":" + places(outline));
}

std::vector<std::string> RecordingSurface::calls(std::string_view word) const {
    std::vector<std::string> found;
    for (const std::string& call : calls_) {
        if (call.substr(0, call.find(' ')) == word) found.push_back(call);
    }
    return found;
}

std::string RecordingSurface::record() const {
    std::string text;
    for (const std::string& call : calls_) text += call + '\n';
    return text;
}

}  // namespace nivora
