#include "plots/plot_build.h"

#include <array>
#include <limits>
#include <span>

namespace nivora {
namespace {

/// A bound as a Single. @throws BuildFault beyond the largest one
float bound(double value) {
    try {
        return to_single(value);
    } catch (const Fault& fault) {
        throw BuildFault(fault.what());
    }
}

/// Takes the values that are not missing into a bound, one by one. @throws BuildFault if all are missing
template <typename Take>
float bound_of(const std::vector<double>& values, Take take) {
    bool found = false;
    double result = 0.0;
    for (const double value : values) {
        if (is_missing(value)) continue;
        result = found ? take(result, value) : value;
        found = true;
    }
    if (!found) throw BuildFault("all values are missing");
    return bound(result);
}

const char* by_units(Units units, const char* metric, const char* english) {
    return units == Units::English ? english : metric;
}

}  // namespace

DailyRows read_plot_rows(PlotBuild& build, std::string_view table,
                         std::initializer_list<std::string_view> fields) {
    DailyRows rows = read_daily_rows(build.database, table, std::span{fields.begin(), fields.size()},
                                     build.first_zone, build.last_zone, build.period);
    if (rows.size() == 0) throw BuildFault("the period has no rows");
    return rows;
}

float least(const std::vector<double>& values) {
    return bound_of(values, [](double a, double b) { return b < a ? b : a; });
}

float largest(const std::vector<double>& values) {
    return bound_of(values, [](double a, double b) { return b > a ? b : a; });
}

float total(const std::vector<double>& values) {
    return bound_of(values, [](double a, double b) { return a + b; });
}

float first_day(const DailyRows& rows) { return least({rows.date.begin(), rows.date.end()}); }

float last_day(const DailyRows& rows) { return largest({rows.date.begin(), rows.date.end()}); }

void set_frame(Plot& plot, float min_x, float max_x, float min_y, float max_y) {
    const float end = bound(as_double(max_x) + 1.0);
    plot.frame = {.x_min = min_x,
                  .x_max = end,
                  .y_min = min_y,
                  .y_max = max_y,
                  .queried = std::array{min_x, end, max_y}};
}

std::string zone_name(int zone) { return "Zone " + zone_letter(zone); }

void add_zone_curves(PlotBuild& build, const DailyRows& rows, std::size_t y, int pass, CurveMode mode,
                     std::size_t limit) {
    const std::vector<double>& values = rows.fields.at(y);
    PlotCurve* curve = nullptr;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const int zone = rows.zone[row];
        if (curve == nullptr || curve->zone != zone) {
            curve = &build.plot.curves.emplace_back();
            curve->name = zone_name(zone);
            curve->zone = zone;
            curve->pass = pass;
            curve->line = zone;
            curve->mode = mode;
        }
        curve->points.push_back(
            {to_single(static_cast<double>(rows.date[row])), to_single_field(values[row])});
        if (limit > 0 && curve->points.size() > limit) throw BuildFault("a curve has too many points");
    }
}

std::string temperature_label(Units units) { return by_units(units, " (°C)", " (°F)"); }
std::string depth_label(Units units) { return by_units(units, " (cm)", " (in)"); }
std::string lapse_rate_label(Units units) { return by_units(units, " (°C/100m)", " (°F/1000ft)"); }
std::string degree_day_label(Units units) { return by_units(units, "(cm/°C·d)", "(in/(°F-32)·d)"); }

// Intended: "f³" with a blank at the end, not "ft³".
std::string runoff_label(Units units) { return by_units(units, " (m³/s)", " (f³/s) "); }

}  // namespace nivora
