#include "plots/melt_curves.h"

#include <utility>

namespace nivora {
namespace {

constexpr std::size_t k_sum_at = 0;
constexpr std::size_t k_cover = 1;
constexpr std::size_t k_new_melt = 2;

struct DepletionCurves {
    std::vector<PlotPoint> including;
    std::vector<PlotPoint> excluding;
};

/// The cover over the melt, with and without new snow, to the first day without snow after snow was seen.
DepletionCurves depletion_curves(const DailyRows& rows) {
    DepletionCurves curves;
    float new_melt = 0.0F;
    bool snow_seen = false;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        check_year_points(row + 1);
        const float melt = required_value(rows, k_sum_at, row);
        const float cover = required_value(rows, k_cover, row);
        new_melt = to_single(as_double(new_melt) + as_double(required_value(rows, k_new_melt, row)));
        curves.including.push_back({melt, cover});
        curves.excluding.push_back({to_single(as_double(melt) - as_double(new_melt)), cover});
        if (snow_seen && cover == 0.0F) break;
        if (cover > 0.0F) snow_seen = true;
    }
    return curves;
}

}  // namespace

void select_depletion_over_melt(PlotBuild& build) {
    const DailyRows rows = read_plot_rows(build, k_sim_results, {"SumAT", "SCA", "NewMelt"});
    const std::vector<double>& melt = rows.fields[k_sum_at];
    const std::vector<double>& cover = rows.fields[k_cover];
    Plot& plot = build.plot;
    label_depletion(build);
    set_frame(plot, least(melt), largest(melt), least(cover), largest(cover));
    DepletionCurves curves = depletion_curves(rows);
    plot.frame.x_min = 0.0F;
    plot.frame.x_max = curves.including.back().x;
    plot.frame.legend_rows = 1.0F;
    add_zone_curve(build, "MDC_incl", std::move(curves.including));
    add_zone_curve(build, "MDC_excl", std::move(curves.excluding));
}

}  // namespace nivora
