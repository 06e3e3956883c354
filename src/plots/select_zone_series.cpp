#include "plots/plot_build.h"
#include "plots/plot_catalogue.h"
#include "plots/plot_offer.h"

#include <array>
#include <utility>

namespace nivora {
namespace {

constexpr float k_longest_lag = 50.0F;

/// What plots 2 to 13 differ in, besides the temperatures: the field, and how the y axis is labelled.
struct SeriesEntry {
    PlotNumber plot = PlotNumber::SnowCover;
    const char* field = "";
    std::string (*unit_label)(Units units) = nullptr;  ///< null for a label that is the same in all units
    const char* label = "";
};

constexpr std::array<SeriesEntry, 11> k_series{{
    {PlotNumber::SnowCover, "SCA", nullptr, "S"},
    {PlotNumber::DegreeDays, "ZoneDD", temperature_label},
    {PlotNumber::Precipitation, "Precip", depth_label},
    {PlotNumber::CriticalTemperature, "Tcrit", temperature_label},
    {PlotNumber::LagTime, "LagTime", nullptr, " (Hours) "},
    {PlotNumber::LapseRate, "LapseRate", lapse_rate_label},
    {PlotNumber::DegreeDayFactors, "An", degree_day_label},
    {PlotNumber::SnowCoefficients, "Cs", nullptr, "Cs"},
    {PlotNumber::RainCoefficients, "Cr", nullptr, "Cr"},
    {PlotNumber::RainArea, "RCA", nullptr, "RCA"},
    {PlotNumber::PotentialMelt, "SumAT", depth_label},
}};

const SeriesEntry& series_of(PlotNumber plot) {
    for (const SeriesEntry& entry : k_series) {
        if (entry.plot == plot) return entry;
    }
    throw BuildFault("the plot is not a series of zones");
}

std::string table_of(PlotNumber plot, const BasinState& basin) {
    switch (plot_entry(plot).table) {
        case PlotTable::Variables: return k_physical_data;
        case PlotTable::Parameters: return basin.Current_Sim_Name;
        case PlotTable::Results: break;
    }
    return k_sim_results;
}

/// Gives fixed bounds to the plots that have them; the others keep those of their data.
void fix_y_bounds(PlotNumber plot, PlotFrame& frame) {
    switch (plot) {
        case PlotNumber::LagTime: frame.y_min = 0.0F, frame.y_max = k_longest_lag; return;
        case PlotNumber::DegreeDayFactors:
        case PlotNumber::SnowCoefficients:
        case PlotNumber::RainCoefficients:
        case PlotNumber::RainArea: frame.y_min = 0.0F, frame.y_max = 1.0F; return;
        case PlotNumber::PotentialMelt: frame.y_min = 0.0F; return;
        default: return;
    }
}

/// Names the curve of a pass after its quantity where a single zone is shown.
void name_single_curve(PlotBuild& build, const char* quantity) {
    if (!build.all_zones) build.plot.curves.back().name = quantity + build.plot.y_label;
}

void select_average_temperatures(PlotBuild& build) {
    const DailyRows rows = read_plot_rows(build, k_physical_data, {"Tavg"});
    set_frame(build.plot, first_day(rows), last_day(rows), least(rows.fields[0]), largest(rows.fields[0]));
    add_zone_curves(build, rows, 0, 1, CurveMode::Own);
    name_single_curve(build, "Average Daily T");
}

void select_extreme_temperatures(PlotBuild& build) {
    const DailyRows rows = read_plot_rows(build, k_physical_data, {"Tmax", "Tmin"});
    set_frame(build.plot, first_day(rows), last_day(rows), least(rows.fields[1]), largest(rows.fields[0]));
    add_zone_curves(build, rows, 0, 1, CurveMode::Own);
    name_single_curve(build, "Maximum Daily T");
    add_zone_curves(build, rows, 1, 2, CurveMode::Solid);
    name_single_curve(build, "Minimum Daily T");
    if (build.all_zones) return;
    // Two curves of one zone must not share its line.
    build.plot.curves[0].line = 1;
    build.plot.curves[1].line = 2;
}

void select_temperatures(PlotBuild& build) {
    build.plot.y_label = temperature_label(build.sources.basin.Units_Code);
    if (shows_average_temperatures(build.sources.basin)) {
        select_average_temperatures(build);
    } else {
        select_extreme_temperatures(build);
    }
}

}  // namespace

void select_zone_series(PlotBuild& build) {
    Plot& plot = build.plot;
    if (plot.number == PlotNumber::Temperatures) return select_temperatures(build);
    const BasinState& basin = build.sources.basin;
    const SeriesEntry& series = series_of(plot.number);
    plot.y_label = series.unit_label != nullptr ? series.unit_label(basin.Units_Code) : series.label;
    const DailyRows rows = read_plot_rows(build, table_of(plot.number, basin), {series.field});
    const std::vector<double>& values = rows.fields[0];
    set_frame(plot, first_day(rows), last_day(rows), least(values), largest(values));
    fix_y_bounds(plot.number, plot.frame);
    add_zone_curves(build, rows, 0, 1, CurveMode::Own);
    if (plot.number == PlotNumber::DegreeDays) name_single_curve(build, "Zone Degree Days");
}

}  // namespace nivora
