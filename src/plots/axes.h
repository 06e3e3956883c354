// The frame of a plot in its own units: transform, ticks, grid lines and head lines. Nothing here depends on
// fonts or on the size of a surface.
#pragma once

#include "plots/plot.h"
#include "plots/surface.h"

#include <string>
#include <utility>
#include <vector>

namespace nivora {

/// The world coordinates of a surface's edges; the height is negative, so that y grows upward.
struct Transform {
    float ScaleLeft = 0.0F;
    float ScaleTop = 1.0F;
    float ScaleWidth = 1.0F;
    float ScaleHeight = -1.0F;
};

/// World coordinates of a surface of a given size, in both directions.
class World {
public:
    World(const Transform& transform, SurfaceSize size) : transform_(transform), size_(size) {}

    [[nodiscard]] SurfacePoint to_surface(double x, double y) const;
    /// The x and y of a place on the surface.
    [[nodiscard]] std::pair<double, double> to_world(SurfacePoint at) const;
    /// World units per point, across and down; both positive.
    [[nodiscard]] double across() const;
    [[nodiscard]] double down() const;

private:
    Transform transform_;
    SurfaceSize size_;
};

/// Which grid lines are drawn.
enum class GridMode { Vertical = 0, Horizontal = 1, Both = 2, None = 3 };

enum class XAxisKind { Days, Months, Number };

struct XTick {
    float x = 0.0F;
    bool line = true;  ///< a tick is drawn there; its label is drawn in any case
    std::string label;
    float at = 0.0F;  ///< the x on which the label is centred
};

struct YTick {
    float y = 0.0F;
    std::string label;  ///< with two blanks at its end
};

/// Frame, ticks and grid of a plot. Without a range it has neither ticks nor grid.
struct PlotAxes {
    Transform transform;
    bool no_data = false;
    XAxisKind x_kind = XAxisKind::Days;
    float x_step = 0.0F;  ///< days between ticks, 1 for months, or the step of a number axis
    std::vector<XTick> x_ticks;
    float y_step = 0.0F;
    std::vector<YTick> y_ticks;
    std::vector<float> grid_x;
    std::vector<float> grid_y;
};

[[nodiscard]] PlotAxes lay_out_axes(const Plot& plot, GridMode grid);

/// The month of a day in three letters, in English everywhere.
[[nodiscard]] std::string month_text(double day);

/// The text in the top left corner: first and last day of the frame; empty if the plot has none.
[[nodiscard]] std::string period_text(const Plot& plot);

/// The texts of the right column from the top: step, present date, run kind, updating, no-snow mode.
///
/// @param now date and time
[[nodiscard]] std::vector<std::string> right_column(const Plot& plot, double now);

}  // namespace nivora
