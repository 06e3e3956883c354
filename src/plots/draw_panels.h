// The two panels of a plot, legend and run summary, painted into its picture.
#pragma once

#include "plots/draw_plot.h"

namespace nivora {

/// Draws nothing if the plot has no rows for the panel.
void paint_legend(Surface& surface, const Plot& plot, const DrawOptions& options);
void paint_summary(Surface& surface, const Plot& plot, const DrawOptions& options);

}  // namespace nivora
