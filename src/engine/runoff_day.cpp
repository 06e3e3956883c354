#include "engine/runoff_day.h"

#include <algorithm>

namespace nivora {
namespace {

constexpr double k_seconds_a_day = 86400.0;
constexpr double k_feet_an_inch = 0.0833;  // Intended: a twelfth, cut to four decimals.
constexpr double k_metres_a_centimetre = 0.01;
constexpr double k_square_feet_a_square_mile = 27878400.0;
constexpr double k_square_metres_a_square_kilometre = 1000000.0;
constexpr double k_smallest_share = 0.01;
constexpr double k_high_flow_factor = 4.0;

constexpr const char* k_recession_text =
    " Present x, y recession coefficient values result in k => 1 which was replaced by the limit k = 0.99 in "
    "order to avoid impossible results.  The user is advised to select new x and y values to keep k < 1. ";

void add_climate_sums(RunState& run, std::size_t zone, float zonal_melt, float new_melt, float rain) {
    if (run.ClimateStep < 1 || run.ClimateStep > 3) return;
    if (zone > k_climate_zones) return;  // sums are kept for nine zones only; the run continues
    auto& sums = run.ClimateSums[zone][static_cast<std::size_t>(run.ClimateStep)];
    const auto add = [](float& sum, double value) {
        const auto result = static_cast<float>(as_double(sum) + value);
        if (std::isfinite(result)) sum = result;
    };
    const double melt = as_double(zonal_melt);
    const double fresh = as_double(new_melt);
    const double wet = as_double(rain);
    add(sums[1], melt + fresh + wet);
    add(sums[2], melt);
    add(sums[3], wet);
    add(sums[4], fresh);
}

}  // namespace

RunoffBasin runoff_basin(const BasinInputs& inputs) {
    RunoffBasin constants;
    constants.zones = inputs.zones;
    const bool english = inputs.units == Units::English;
    const double depth = (english ? k_feet_an_inch : k_metres_a_centimetre) / k_seconds_a_day;
    const double area_factor = english ? k_square_feet_a_square_mile : k_square_metres_a_square_kilometre;
    constants.areas.assign(constants.zones + 1, 0.0F);
    constants.depth_to_flow.assign(constants.zones + 1, 0.0);
    for (std::size_t zone = 1; zone <= constants.zones; ++zone) {
        const auto rounded = static_cast<float>(inputs.areas[zone]);
        if (std::isfinite(rounded)) constants.areas[zone] = rounded;
        constants.depth_to_flow[zone] = as_double(constants.areas[zone]) * area_factor * depth;
    }
    const auto basin_area = static_cast<float>(inputs.basin_area);
    if (std::isfinite(basin_area)) constants.basin_area = basin_area;
    constants.threshold = inputs.precipitation_threshold.value_or(0.0F);
    return constants;
}

DayInput day_input(const StepColumns& columns, const RunoffBasin& basin, DayRows rows, RunState& run) {
    DayInput input;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::size_t row = rows[i];
        const std::size_t zone = i + 1;
        if (columns.precipitation[row] >= basin.threshold) input.heavy_rain = true;
        assign_field(columns.zonal_melt[row],
                     as_double(columns.cover[row]) *
                         (as_double(columns.degree_days[row]) * as_double(columns.degree_day_factor[row])));
        const float melt = columns.zonal_melt[row];
        const float fresh = columns.runoff_melt[row];
        const float rain = columns.rain[row];
        add_climate_sums(run, zone, melt, fresh, rain);
        const double depth = as_double(columns.rain_coefficient[row]) * (as_double(fresh) + as_double(rain)) +
                             as_double(columns.snow_coefficient[row]) * as_double(melt);
        assign_if_number(input.flow, input.flow + basin.depth_to_flow[zone] * depth);
    }
    return input;
}

bool is_heavy_on_average(const StepColumns& columns, const RunoffBasin& basin, DayRows rows, double& share) {
    double sum = 0.0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::size_t row = rows[i];
        if (!(columns.degree_days[row] >= columns.critical_temperature[row])) continue;
        if (columns.rain_switch[row] == 0.0F) {
            assign_if_number(share, 1.0 - as_double(columns.cover[row]));
        } else {
            share = 1.0;
        }
        assign_if_number(sum,
                         sum + share * as_double(basin.areas[i + 1]) * as_double(columns.precipitation[row]));
    }
    assign_if_number(sum, sum / as_double(basin.basin_area));
    const auto mean = static_cast<float>(sum);
    return std::isfinite(mean) && mean >= basin.threshold;
}

bool Recession::prepare_day(double x, double y, Dialogs& dialogs) {
    assign_if_number(x_, x);
    assign_if_number(y_, y);
    double base = Q;
    if (high_flow_days_ > 0) {
        assign_if_number(base, Q * k_high_flow_factor);
        --high_flow_days_;
    }
    assign_if_number(share_, 1.0 - x_ * std::pow(base, -y_));
    if (share_ > 0.0) return true;
    share_ = k_smallest_share;
    if (told_) return true;
    told_ = true;
    return dialogs.message({.text = k_recession_text, .buttons = Buttons::OkCancel}) == Answer::Ok;
}

std::vector<DayRows> days_of(const RowOrder& rows, std::size_t zones) {
    std::vector<DayRows> days;
    days.reserve(rows.size() / zones + 1);
    for (std::size_t first = 0; first < rows.size(); first += zones) {
        days.push_back(DayRows{rows}.subspan(first, std::min(zones, rows.size() - first)));
    }
    return days;
}

}  // namespace nivora
