#include "engine/runoff_day.h"

#include "engine/runoff_row.h"

#include <algorithm>
#include <utility>

namespace nivora {
namespace {

constexpr double k_seconds_a_day = 86400.0;
constexpr double k_feet_an_inch = 0.0833;  // Intended: a twelfth, cut to four decimals.
constexpr double k_metres_a_centimetre = 0.01;
constexpr double k_square_feet_a_square_mile = 27878400.0;
constexpr double k_square_metres_a_square_kilometre = 1000000.0;
constexpr double k_smallest_share = 0.01;
constexpr double k_high_flow_factor = 4.0;

/// Whether the step keeps climate sums, and for this zone: they are kept for nine zones only.
bool keeps_climate_sums(const RunState& run, std::size_t zone) {
    return run.ClimateStep >= 1 && run.ClimateStep <= 3 && zone <= k_climate_zones;
}

void add_climate_sums(std::array<float, 5>& sums, float zonal_melt, float new_melt, float rain) {
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

std::array<float, 5>& climate_sums(RunState& run, std::size_t zone) {
    return run.ClimateSums[zone][static_cast<std::size_t>(run.ClimateStep)];
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
        assign_field(columns.zonal_melt[row], snow_cover_melt(columns.cover[row], columns.degree_days[row],
                                                              columns.degree_day_factor[row]));
        const float melt = columns.zonal_melt[row];
        const float fresh = columns.runoff_melt[row];
        const float rain = columns.rain[row];
        if (keeps_climate_sums(run, zone)) add_climate_sums(climate_sums(run, zone), melt, fresh, rain);
        const double depth =
            runoff_depth(columns.rain_coefficient[row], fresh, rain, columns.snow_coefficient[row], melt);
        assign_if_number(input.flow, input.flow + basin.depth_to_flow[zone] * depth);
    }
    return input;
}

FullTableInputs::FullTableInputs(const StepColumns& columns, const RunoffBasin& basin, const RunRows& rows,
                                 RunState& run)
    : columns_(columns), basin_(basin), run_(run), days_(rows.days_of_full_table) {
    if (days_ == 0 || columns.zonal_melt.size() != basin.zones * days_) return;
    flows_.assign(days_, 0.0);
    heavy_.assign(days_, 0);
    former_melt_.assign(columns.zonal_melt.begin(), columns.zonal_melt.end());
    former_sums_ = run.ClimateSums;
    for (std::size_t zone = 1; zone <= basin.zones; ++zone) work_zone(zone);
    // A term that is missing or too large makes the sum of its day so, and no later term makes it finite
    // again.
    computed_ = std::all_of(flows_.begin(), flows_.end(), [](double flow) { return std::isfinite(flow); });
    if (!computed_) undo();
}

bool FullTableInputs::computed() const { return computed_; }

void FullTableInputs::work_zone(std::size_t zone) {
    const std::size_t first = (zone - 1) * days_;
    const float* cover = columns_.cover.data() + first;
    const float* degree_days = columns_.degree_days.data() + first;
    const float* factor = columns_.degree_day_factor.data() + first;
    const float* fresh = columns_.runoff_melt.data() + first;
    const float* rain = columns_.rain.data() + first;
    const float* rain_coefficient = columns_.rain_coefficient.data() + first;
    const float* snow_coefficient = columns_.snow_coefficient.data() + first;
    const float* precipitation = columns_.precipitation.data() + first;
    float* melt = columns_.zonal_melt.data() + first;
    double* flow = flows_.data();
    std::uint32_t* heavy = heavy_.data();
    const double depth_to_flow = basin_.depth_to_flow[zone];
    const float threshold = basin_.threshold;
    const std::size_t days = days_;
    for (std::size_t day = 0; day < days; ++day)
        melt[day] = static_cast<float>(snow_cover_melt(cover[day], degree_days[day], factor[day]));
    for (std::size_t day = 0; day < days; ++day) {
        flow[day] += depth_to_flow * runoff_depth(rain_coefficient[day], fresh[day], rain[day],
                                                  snow_coefficient[day], melt[day]);
    }
    for (std::size_t day = 0; day < days; ++day)
        heavy[day] |= static_cast<std::uint32_t>(precipitation[day] >= threshold);
    if (keeps_climate_sums(run_, zone)) sum_climate(zone);
}

void FullTableInputs::sum_climate(std::size_t zone) {
    auto& sums = climate_sums(run_, zone);
    for (std::size_t row = (zone - 1) * days_; row < zone * days_; ++row)
        add_climate_sums(sums, columns_.zonal_melt[row], columns_.runoff_melt[row], columns_.rain[row]);
}

void FullTableInputs::undo() {
    std::copy(former_melt_.begin(), former_melt_.end(), columns_.zonal_melt.begin());
    run_.ClimateSums = former_sums_;
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

bool Recession::prepare_day(double x, double y) {
    assign_if_number(x_, x);
    assign_if_number(y_, y);
    double base = Q;
    if (high_flow_days_ > 0) {
        assign_if_number(base, Q * k_high_flow_factor);
        --high_flow_days_;
    }
    assign_if_number(share_, 1.0 - x_ * std::pow(base, -y_));
    if (share_ > 0.0) return false;
    share_ = k_smallest_share;
    return !std::exchange(limited_, true);
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
