#include "plots/plot_build.h"
#include "plots/run_summary.h"

#include <algorithm>

namespace nivora {
namespace {

constexpr std::size_t k_measured = 0;
constexpr std::size_t k_computed = 1;
constexpr std::size_t k_computed_present = 2;
constexpr int k_winter_of_changed_climate = 2;
constexpr int k_summer_of_present_climate = 3;

/// The two hydrographs of a plot: their fields and their names.
struct Hydrographs {
    std::size_t first = k_measured;
    std::size_t second = k_computed;
    const char* first_name = "Measured Runoff";
    const char* second_name = "Computed Runoff";
};

Hydrographs hydrographs(PlotNumber plot, int step) {
    Hydrographs shown;
    if (plot == PlotNumber::RunoffComparison) {
        shown.first = k_computed_present;
        shown.first_name = "Simulated Runoff, Present Climate";
        shown.second_name = "Simulated Runoff, Changed Climate";
        return shown;
    }
    if (step == k_summer_of_present_climate) shown.second = k_computed_present;
    if (step == k_winter_of_changed_climate) shown.second_name = "CompClim Runoff";
    return shown;
}

/// The frame from 0 to the larger maximum of the first hydrograph and of the computed discharge.
///
/// Intended: at step 3, too, where the second curve is the discharge of the present climate and is cut where
/// it is higher. A table without any computed discharge leaves the maximum of the first hydrograph.
void set_runoff_frame(Plot& plot, const DailyRows& rows, const std::vector<double>& first) {
    set_frame(plot, first_day(rows), last_day(rows), least(first), largest(first));
    const std::vector<double>& computed = rows.fields[k_computed];
    const bool any_computed =
        std::any_of(computed.begin(), computed.end(), [](double value) { return !is_missing(value); });
    if (any_computed) plot.frame.y_max = std::max(plot.frame.y_max, largest(computed));
    plot.frame.y_min = 0.0F;
    plot.frame.legend_rows = 1.0F;
}

void add_hydrograph(Plot& plot, const DailyRows& rows, const std::vector<double>& values, const char* name) {
    PlotCurve& curve = plot.curves.emplace_back();
    curve.name = name;
    curve.line = static_cast<int>(plot.curves.size());
    for (std::size_t row = 0; row < rows.size(); ++row) {
        curve.points.push_back(
            {to_single(static_cast<double>(rows.date[row])), to_single_field(values[row])});
    }
}

}  // namespace

void select_runoff(PlotBuild& build) {
    const DailyRows rows = read_plot_rows(build, k_sim_results, {"ActualQ", "DailyQ", "DailyQPresent"});
    Plot& plot = build.plot;
    const Hydrographs shown = hydrographs(plot.number, build.step);
    const Units units = build.sources.basin.Units_Code;
    set_runoff_frame(plot, rows, rows.fields[shown.first]);
    plot.y_label = runoff_label(units);
    add_hydrograph(plot, rows, rows.fields[shown.first], shown.first_name);
    add_hydrograph(plot, rows, rows.fields[shown.second], shown.second_name);
    // Intended: a missing value is a gap in the first hydrograph, and 0 in the second.
    for (PlotPoint& point : plot.curves.back().points) {
        if (is_missing(point.y)) point.y = 0.0F;
    }
    plot.summary = run_summary(plot.number, units, build.sources.run);
}

}  // namespace nivora
