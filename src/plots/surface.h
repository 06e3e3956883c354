// What a plot is drawn on: a picture, a page or, in tests, a record of the calls.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace nivora {

inline constexpr double k_points_an_inch = 96.0;

/// A place on a surface, from its top left corner, in points of 1/96 inch.
struct SurfacePoint {
    double x = 0.0;
    double y = 0.0;  ///< grows downward
};

struct SurfaceSize {
    double width = 0.0;
    double height = 0.0;
};

struct SurfaceRectangle {
    double left = 0.0;
    double top = 0.0;
    double width = 0.0;
    double height = 0.0;
};

/// Red in the lowest byte, then green, then blue.
using Colour = std::int32_t;

inline constexpr Colour k_black = 0;
inline constexpr Colour k_white = 0xFFFFFF;

/// How a line is drawn.
struct Pen {
    Colour colour = k_black;
    std::int32_t style = 0;  ///< 0 solid, 1 dash, 2 dot, 3 dash-dot, 4 dash-dot-dot
    std::int32_t width = 1;  ///< points; a line wider than 1 is solid
};

inline constexpr std::int32_t k_solid_fill = 0;
inline constexpr std::int32_t k_no_fill = 1;

/// How an area is filled.
struct Fill {
    Colour colour = k_black;
    /// 0 solid, 1 transparent, 2 horizontal, 3 vertical, 4 upward diagonal, 5 downward diagonal, 6 cross,
    /// 7 diagonal cross
    std::int32_t style = k_solid_fill;
};

/// A proportional font without serifs.
struct PlotFont {
    double size = 10.0;  ///< typographic points, 1/72 inch
    bool bold = false;
};

/// A surface has no state: pen, font and fill travel with each call. Nothing is drawn beyond its edges.
class Surface {
public:
    Surface() = default;
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;
    virtual ~Surface() = default;

    [[nodiscard]] virtual SurfaceSize size() const = 0;
    /// The extent of a text: its advance, and the height of a line of its font.
    [[nodiscard]] virtual SurfaceSize text_size(std::string_view text, const PlotFont& font) const = 0;

    /// A line through two or more points. A line of two points that is horizontal or vertical is crisp, any
    /// other one is antialiased.
    virtual void line(std::span<const SurfacePoint> points, const Pen& pen) = 0;
    /// A text whose top left corner is at a point.
    virtual void text(SurfacePoint top_left, std::string_view text, const PlotFont& font, Colour colour) = 0;
    virtual void rectangle(const SurfaceRectangle& rectangle, const std::optional<Pen>& outline,
                           const std::optional<Fill>& fill) = 0;
    virtual void circle(SurfacePoint centre, double radius, const Pen& pen) = 0;
    /// A single dot of the size of a pen's width.
    virtual void dot(SurfacePoint at, Colour colour) = 0;
    /// Fills a closed polygon that may touch itself, without an outline.
    virtual void fill_band(std::span<const SurfacePoint> outline, const Fill& fill) = 0;
};

}  // namespace nivora
