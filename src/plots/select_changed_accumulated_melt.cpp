#include "climate/plotted_melt.h"
#include "plots/melt_curves.h"

#include <algorithm>
#include <vector>

namespace nivora {
namespace {

std::vector<PlotPoint> melt_points(const SimResults& results, const std::vector<float>& melt) {
    std::vector<PlotPoint> points;
    points.reserve(melt.size());
    for (std::size_t row = 0; row < melt.size(); ++row)
        points.push_back(
            {to_single(static_cast<double>(results.Date[row])), to_single(as_double(melt[row]))});
    return points;
}

}  // namespace

void select_changed_accumulated_melt(PlotBuild& build) {
    // One reading for frame and curves: another program may change the file between two.
    const SimResults results = plotted_melt(build.database, build.first_zone, build.period);
    const std::vector<double> days{results.Date.begin(), results.Date.end()};
    const std::vector<double> cover{results.SCA.begin(), results.SCA.end()};
    Plot& plot = build.plot;
    plot.y_label = depth_label(build.sources.basin.Units_Code);
    set_frame(plot, least(days), largest(days), least(cover), largest(cover));
    // Intended: each curve bears the name of the column before its own.
    add_zone_curve(build, "AZMincl", melt_points(results, results.AZMexcl));
    add_zone_curve(build, "AZMexcl", melt_points(results, results.AZMexclWA));
    add_zone_curve(build, "AZMexclWA", melt_points(results, results.AZMwork));
    // Intended: the least and the largest cover are the bounds of the melt, too, until a curve ends above.
    for (const PlotCurve& curve : plot.curves)
        plot.frame.y_max = std::max(plot.frame.y_max, curve.points.back().y);
}

}  // namespace nivora
