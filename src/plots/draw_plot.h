// Drawing of a plot on a surface: head, frame, curves, and the two panels where they belong into the picture.
#pragma once

#include "plots/axes.h"
#include "plots/line_attributes.h"
#include "plots/plot.h"
#include "plots/surface.h"

#include <optional>

namespace nivora {

/// What a plot is drawn with besides its own values.
struct DrawOptions {
    LineTable lines = default_lines();
    GridMode grid = GridMode::Vertical;
    bool data_points = false;
    double now = 0.0;                                ///< date and time; the date stands on the plot
    bool legend = false;                             ///< painted into the picture
    bool summary = false;                            ///< painted into the picture, if the plot has one
    std::optional<SurfacePoint> legend_place = {};   ///< top left corner; nothing for its default place
    std::optional<SurfacePoint> summary_place = {};  ///< top left corner; nothing for its default place
};

/// Clears the surface and draws a plot.
void draw(Surface& surface, const Plot& plot, const DrawOptions& options);

/// Clears the surface and says that there is no plot.
void draw_refusal(Surface& surface, const PlotRefusal& refusal);

/// The rectangles of the legend and of the run summary on a surface: sizes by their texts, places by the
/// options or by default.
[[nodiscard]] SurfaceRectangle legend_rectangle(const Surface& surface, const Plot& plot,
                                                const DrawOptions& options);
[[nodiscard]] SurfaceRectangle summary_rectangle(const Surface& surface, const Plot& plot,
                                                 const DrawOptions& options);

}  // namespace nivora
