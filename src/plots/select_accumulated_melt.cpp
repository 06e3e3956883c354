#include "plots/melt_curves.h"

#include <utility>

namespace nivora {

void select_accumulated_melt(PlotBuild& build) {
    const DailyRows rows = read_plot_rows(build, k_sim_results, {"ZonalMelt", "NewMelt", "SCA", "AZMexclWA"});
    const std::vector<double>& melt = rows.fields[0];
    Plot& plot = build.plot;
    plot.y_label = depth_label(build.sources.basin.Units_Code);
    set_frame(plot, first_day(rows), last_day(rows), least(melt), total(melt));
    MeltCurves curves = Accumulate_Melt(melt_days(rows), build.step, build.melt_stop);
    check_year_points(curves.including.size());
    // Intended: the frame ends at the last day itself, a day before that of the other plots.
    plot.frame.x_max = last_day(rows);
    const double sum = as_double(plot.frame.y_max);
    plot.frame.y_max = to_single(sum + sum / 20.0);
    plot.frame.legend_rows = 1.0F;
    add_zone_curve(build, "AZM_incl", std::move(curves.including));
    add_zone_curve(build, "AZM_excl", std::move(curves.excluding));
}

}  // namespace nivora
