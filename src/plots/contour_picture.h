// A quantity that depends on two others as contour lines, or as a curve where only one of them changes.
#pragma once

#include "plots/surface.h"

#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// What the values are, which decides their labels and the steps between lines.
enum class ContourValues { Numbers, Days };

struct ContourAxis {
    std::string name;
    std::vector<double> places;  ///< ascending
};

struct ContourPicture {
    std::string title;
    std::string subtitle;
    ContourAxis x;
    ContourAxis y;
    std::vector<double> values;  ///< row by row of y, place by place of x; NaN leaves a gap
    ContourValues kind = ContourValues::Numbers;
    std::optional<double> marked_value = {};  ///< drawn as a line of its own
    std::string marked_name = {};
    std::optional<SurfacePoint> marked_point = {};  ///< a circle, in the units of the axes
};

/// A line along which the values are alike.
struct ContourLine {
    double value = 0.0;
    std::vector<SurfacePoint> points;  ///< in the units of the axes
};

/// Whether there is a value, and an axis with more than one place.
[[nodiscard]] bool can_be_drawn(const ContourPicture& picture);

/// Round values between the least and the greatest one; whole days for days.
[[nodiscard]] std::vector<double> contour_levels(double least, double greatest, ContourValues kind);

/// The lines of a value, by marching squares. A cell with a missing corner has none.
[[nodiscard]] std::vector<ContourLine> contour_lines(const ContourPicture& picture, double value);

/// Draws on all of a surface, in black and grey.
///
/// @param picture that can be drawn
void draw_contours(Surface& surface, const ContourPicture& picture);

}  // namespace nivora
