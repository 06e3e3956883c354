// The two panels of a plot, legend and run summary, painted into its picture.
#pragma once

#include "plots/draw_plot.h"

#include <vector>

namespace nivora {

/// Draws nothing if the plot has no rows for the panel.
void paint_legend(Surface& surface, const Plot& plot, const DrawOptions& options);
void paint_summary(Surface& surface, const Plot& plot, const DrawOptions& options);

/// Where the texts of the legend stand, row by row; empty without a legend.
[[nodiscard]] std::vector<SurfaceRectangle> legend_text_boxes(const Surface& surface, const Plot& plot,
                                                              const DrawOptions& options);

/// Where a row of the run summary stands; a value that was not computed has no width.
struct SummaryRowBoxes {
    SurfaceRectangle caption;
    SurfaceRectangle value;
};

/// Row by row; empty without a summary.
[[nodiscard]] std::vector<SummaryRowBoxes> summary_row_boxes(const Surface& surface, const Plot& plot,
                                                             const DrawOptions& options);

}  // namespace nivora
