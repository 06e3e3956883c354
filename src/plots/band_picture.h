// The bands of many computed discharges over time, with the measured discharge over them.
#pragma once

#include "base/calendar.h"
#include "plots/surface.h"

#include <array>
#include <string>
#include <vector>

namespace nivora {

/// Quantiles of a day, from the lowest to the highest; the outer and the inner two bound bands, the middle
/// one is the median.
using BandQuantiles = std::array<double, 5>;

/// The days of one simulation, in a panel of their own.
struct BandSeries {
    std::string name;                      ///< above the panel
    std::vector<DayCount> dates;           ///< ascending
    std::vector<double> measured;          ///< by day; NaN leaves a gap
    std::vector<BandQuantiles> quantiles;  ///< by day; a NaN leaves a gap
};

struct BandPicture {
    std::string title;
    std::string subtitle;
    std::string remark;                      ///< below the subtitle
    std::string y_label;                     ///< of all panels
    std::array<std::string, 4> legend = {};  ///< outer band, inner band, median, measured
    std::vector<BandSeries> series;          ///< at least one
};

/// Draws on all of a surface, in black and grey. All panels have the same scale of discharges.
void draw_bands(Surface& surface, const BandPicture& picture);

}  // namespace nivora
