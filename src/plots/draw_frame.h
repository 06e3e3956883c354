// The frame of a plot with ticks, grid and axis labels.
#pragma once

#include "plots/axes.h"
#include "plots/placed_text.h"
#include "plots/plot.h"

#include <vector>

namespace nivora {

/// @param head the texts that stand above the frame
void draw_frame(Surface& surface, const Plot& plot, const PlotAxes& axes,
                const std::vector<PlacedText>& head);

}  // namespace nivora
