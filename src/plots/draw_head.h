// The texts above the frame of a plot.
#pragma once

#include "plots/placed_text.h"
#include "plots/plot.h"

#include <vector>

namespace nivora {

/// Where the frame lies on every surface, as shares of its width and height: a tenth of the range of x on
/// either side, an eighth of the range of y above.
inline constexpr double k_frame_left = 0.1 / 1.2;
inline constexpr double k_frame_right = 1.1 / 1.2;
inline constexpr double k_frame_top = 0.125 / 1.2;
inline constexpr double k_frame_bottom = 1.125 / 1.2;

/// Title, subtitle, period, zone, scenario and the right column. No text overlaps another one: where a place
/// is taken the text stands below it.
[[nodiscard]] std::vector<PlacedText> head_texts(const Surface& surface, const Plot& plot, double now);

/// The lines of a refusal, centred at the top.
[[nodiscard]] std::vector<PlacedText> refusal_texts(const Surface& surface, const PlotRefusal& refusal);

}  // namespace nivora
