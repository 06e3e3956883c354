#include "engine/snow_melt.h"
#include "plots/melt_curves.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace nivora {
namespace {

constexpr int k_changed_summer = 6;
/// What is left of the water equivalent when the curve ends.
constexpr double k_least_rest = 0.01;

constexpr std::size_t k_precipitation = 0;
constexpr std::size_t k_rain = 1;
constexpr std::size_t k_new_melt_runoff = 2;
constexpr std::size_t k_zonal_melt = 3;

/// What came down on a zone in winter and what ran off; each a sum as a Single.
struct WinterRecord {
    float precipitation = 0.0F;
    float rain = 0.0F;
    float new_snow_melt = 0.0F;
    float zonal_melt = 0.0F;
};

/// The days of the simulation, of its winter and of the melt season after it.
struct WinterDays {
    Period simulation;
    Period winter;
    Period summer;
};

/// @throws BuildFault if the simulation lacks a date or has no winter
WinterDays winter_days(const PlotBuild& build) {
    const BasinState& basin = build.sources.basin;
    const Simulation* simulation = basin.current_simulation();
    if (simulation == nullptr || !simulation->start || !simulation->end)
        throw BuildFault("the simulation has no period");
    const Period whole{*simulation->start, *simulation->end};
    std::optional<DayCount> last = build.period.start - 1;
    if (build.step != k_changed_summer)
        last = winter_end(whole.start, melt_season_start_month(basin.latitude_text));
    if (!last || *last < whole.start) throw BuildFault("the simulation has no winter");
    return {.simulation = whole, .winter = {whole.start, *last}, .summer = {*last + 1, build.period.end}};
}

DailyRows rows_of(PlotBuild& build, const Period& days, std::initializer_list<std::string_view> fields) {
    build.period = days;
    return read_plot_rows(build, k_sim_results, fields);
}

/// The sum of a field. @throws Fault if a value is missing
float sum_of(const DailyRows& rows, std::size_t field) {
    double sum = 0.0;
    for (std::size_t row = 0; row < rows.size(); ++row) sum += as_double(required_value(rows, field, row));
    return to_single(sum);
}

WinterRecord winter_record(PlotBuild& build, const Period& winter) {
    const char* precipitation = build.step == k_changed_summer ? "PrecipCC" : "Precip";
    const DailyRows rows = rows_of(build, winter, {precipitation, "Cpr", "M1S", "ZonalMelt"});
    return {.precipitation = sum_of(rows, k_precipitation),
            .rain = sum_of(rows, k_rain),
            .new_snow_melt = sum_of(rows, k_new_melt_runoff),
            .zonal_melt = sum_of(rows, k_zonal_melt)};
}

float less(float total, float part) { return to_single(as_double(total) - as_double(part)); }

/// A stack over the whole winter: what left the snow from the top, what is left of it at the bottom.
void add_bars(Plot& plot, const WinterRecord& record, const Period& winter) {
    const float x1 = to_single(static_cast<double>(winter.start));
    const float x2 = to_single(static_cast<double>(winter.end));
    float top = record.precipitation;
    const auto add = [&](const char* name, float bottom) {
        const int line = static_cast<int>(plot.bars.size()) + 1;
        plot.bars.push_back({.name = name, .line = line, .x1 = x1, .x2 = x2, .bottom = bottom, .top = top});
        top = bottom;
    };
    add("Rain", less(top, record.rain));
    add("New snow, M*(1-S}", less(top, record.new_snow_melt));
    add("Zonal melt, M*S", less(top, record.zonal_melt));
    add("Snow Cover", 0.0F);
}

/// What is left of the whole melt after each day, until next to nothing is.
std::vector<PlotPoint> rest_of_melt(const std::vector<PlotPoint>& melt, float whole) {
    std::vector<PlotPoint> rest;
    for (const PlotPoint& point : melt) {
        rest.push_back({point.x, less(whole, point.y)});
        if (rest.size() > 1 && as_double(rest.back().y) <= k_least_rest) break;
    }
    return rest;
}

void add_rest_curve(PlotBuild& build, const Period& summer) {
    constexpr int k_line = 5;
    const DailyRows rows = rows_of(build, summer, {"ZonalMelt", "NewMelt", "SCA", "AZMexclWA"});
    const MeltCurves melt = Accumulate_Melt(melt_days(rows), build.step, build.melt_stop);
    build.plot.melt_total = melt.excluding.back().y;
    add_zone_curve(build, build.step == k_changed_summer ? "AZMexclWA (" : "AZMexcl (",
                   rest_of_melt(melt.excluding, build.plot.melt_total));
    PlotCurve& curve = build.plot.curves.back();
    curve.line = k_line;
    curve.mode = CurveMode::Fifth;
}

}  // namespace

void select_water_equivalent(PlotBuild& build) {
    const WinterDays days = winter_days(build);
    Plot& plot = build.plot;
    plot.y_label = depth_label(build.sources.basin.Units_Code);
    const WinterRecord record = winter_record(build, days.winter);
    plot.bars_total = record.precipitation;
    add_bars(plot, record, days.winter);
    add_rest_curve(build, days.summer);
    plot.frame = {.x_min = to_single(static_cast<double>(days.simulation.start)),
                  .x_max = to_single(static_cast<double>(days.simulation.end)),
                  .y_min = 0.0F,
                  .y_max = std::max(plot.bars_total, plot.melt_total)};
}

}  // namespace nivora
