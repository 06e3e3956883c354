#include "plots/plot_build.h"

namespace nivora {

void select_cover_comparison(PlotBuild& build) {
    constexpr std::size_t k_present = 0;
    constexpr std::size_t k_changed = 1;
    const DailyRows rows = read_plot_rows(build, k_sim_results, {"SCA", "SCAclimWAMA"});
    Plot& plot = build.plot;
    plot.y_label = std::string{"S"};
    // Intended: by the present cover alone; a changed one above it is cut.
    const std::vector<double>& present = rows.fields[k_present];
    set_frame(plot, first_day(rows), last_day(rows), least(present), largest(present));
    const int zones = build.last_zone - build.first_zone + 1;
    if (zones == 1) plot.frame.legend_rows = 1.0F;
    const std::size_t limit = k_year_points * static_cast<std::size_t>(zones);
    add_zone_curves(build, rows, k_present, 1, CurveMode::Solid, limit);
    add_zone_curves(build, rows, k_changed, 2, CurveMode::Dotted, limit);
}

}  // namespace nivora
