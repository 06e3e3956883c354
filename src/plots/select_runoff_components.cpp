#include "plots/melt_curves.h"

#include <array>
#include <utility>
#include <vector>

namespace nivora {
namespace {

constexpr std::size_t k_zonal_melt = 0;
constexpr std::size_t k_new_melt = 1;
constexpr std::size_t k_cover = 2;
constexpr std::size_t k_rain = 4;
constexpr std::size_t k_new_melt_runoff = 5;
constexpr std::size_t k_precipitation = 6;

constexpr std::size_t k_bands = 3;
constexpr std::array<const char*, k_bands> k_band_names{"Initial Snow", "New Snow", "P(rain)"};

using ComponentCurves = std::array<std::vector<PlotPoint>, k_bands>;

void add_to(float& sum, double value) { sum = to_single(as_double(sum) + value); }

/// The running sums of initial snow, of new snow on it and of rain on both. New snow melts on the snow
/// covered part and, as runoff from there, on the other.
ComponentCurves component_curves(const DailyRows& rows) {
    ComponentCurves curves;
    float initial_snow = 0.0F;
    float new_snow_on_snow = 0.0F;
    float new_snow_on_ground = 0.0F;
    float rain = 0.0F;
    const auto value = [&](std::size_t field, std::size_t row) {
        return as_double(required_value(rows, field, row));
    };
    for (std::size_t row = 0; row < rows.size(); ++row) {
        add_to(initial_snow, value(k_zonal_melt, row));
        add_to(new_snow_on_snow, value(k_new_melt, row) * value(k_cover, row));
        add_to(new_snow_on_ground, value(k_new_melt_runoff, row));
        add_to(rain, value(k_rain, row));
        const float with_new_snow =
            to_single(as_double(new_snow_on_snow) + as_double(initial_snow) + as_double(new_snow_on_ground));
        const float with_rain = to_single(as_double(rain) + as_double(with_new_snow));
        const float x = day_of(rows, row);
        curves[0].push_back({x, initial_snow});
        curves[1].push_back({x, with_new_snow});
        curves[2].push_back({x, with_rain});
    }
    return curves;
}

/// The band below a curve; `below` is the last value of the curve under it.
PlotBand band_of(int number, float below, float top) {
    PlotBand band{.band = number, .line = number};
    band.filled = as_double(top) - as_double(below) > 0.0;
    if (band.filled) band.seed_y = to_single((as_double(top) + as_double(below)) / 2.0);
    return band;
}

}  // namespace

void select_runoff_components(PlotBuild& build) {
    const DailyRows rows = read_plot_rows(
        build, k_sim_results, {"ZonalMelt", "NewMelt", "SCA", "AZMexclWA", "Cpr", "M1S", "Precip"});
    const std::vector<double>& precipitation = rows.fields[k_precipitation];
    Plot& plot = build.plot;
    plot.y_label = depth_label(build.sources.basin.Units_Code);
    set_frame(plot, first_day(rows), last_day(rows), least(precipitation), total(precipitation));
    check_year_points(rows.size());
    // What the walk of accumulated melt cannot do without, this plot requires as well.
    static_cast<void>(Accumulate_Melt(melt_days(rows), build.step, build.melt_stop));
    ComponentCurves curves = component_curves(rows);
    plot.frame.y_min = 0.0F;
    plot.frame.y_max = curves.back().back().y;
    float below = 0.0F;
    for (std::size_t i = 0; i < k_bands; ++i) {
        const float top = curves[i].back().y;
        plot.bands.push_back(band_of(static_cast<int>(i) + 1, below, top));
        below = top;
        add_zone_curve(build, k_band_names[i], std::move(curves[i]));
    }
}

}  // namespace nivora
