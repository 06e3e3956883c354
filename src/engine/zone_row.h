// The arithmetic of one row of the zone inputs, for every walk through the rows.
// Equations and rules: docs/model.md, section 2.
#pragma once

#include "engine/single_steps.h"

#include <cstddef>

namespace nivora {

/// Below these no degree day can overflow or reach the limit of `PlainSteps::whole`.
inline constexpr float k_largest_input = 1.0e6F;
inline constexpr float k_largest_lapse_step = 1.0e3F;

inline constexpr double k_degree_day_scale = 1.0e5;  // for five decimals

template <typename Steps>
float mean_of(float maximum, float minimum) {
    return Steps::variable((as_double(maximum) + as_double(minimum)) / 2.0);
}

/// T+ = max(0, T + steps x lapse rate - base), a Single that is rounded to 5 decimals, ties to even;
/// missing if an input is missing. Adding zero takes the sign from a zero.
template <typename Steps>
float carried_degree_days(double degree_base, float temperature, float steps, float lapse_rate) {
    const double carried = as_double(temperature) + as_double(steps) * as_double(lapse_rate) - degree_base;
    const double scaled = as_double(Steps::field(carried)) * k_degree_day_scale;
    const float degree_days = Steps::field(Steps::whole(scaled) / k_degree_day_scale + 0.0);
    return degree_days < 0.0F ? 0.0F : degree_days;
}

/// T+ of a zone that has a temperature of its own.
template <typename Steps>
float own_degree_days(double degree_base, float temperature) {
    const float degree_days = Steps::field(as_double(temperature) - degree_base);
    return degree_days < 0.0F ? 0.0F : degree_days;
}

/// What a zone's degree days are made of, from the first day of a pass on. No value is missing or so large
/// that a step could fail.
struct DegreeDayInputs {
    const float* temperature;  ///< of the zone, or of the station where it is carried
    const float* lapse_rate;
    float lapse_steps;
    double degree_base;
    bool carried;  ///< whether the temperature is carried from the station to the zone
};

/// The same inputs some days later.
[[nodiscard]] inline DegreeDayInputs later(const DegreeDayInputs& in, std::size_t days) {
    DegreeDayInputs moved = in;
    moved.temperature += days;
    moved.lapse_rate += days;
    return moved;
}

inline void pass_degree_days(const DegreeDayInputs& in, std::size_t count, float* degree_days) {
    if (in.carried) {
        for (std::size_t i = 0; i < count; ++i) {
            degree_days[i] = carried_degree_days<PlainSteps>(in.degree_base, in.temperature[i],
                                                             in.lapse_steps, in.lapse_rate[i]);
        }
    } else {
        for (std::size_t i = 0; i < count; ++i)
            degree_days[i] = own_degree_days<PlainSteps>(in.degree_base, in.temperature[i]);
    }
}

/// Mean temperatures of days whose extremes are neither missing nor too large.
inline void pass_mean(const float* maximum, const float* minimum, std::size_t count, float* mean) {
    for (std::size_t i = 0; i < count; ++i) mean[i] = mean_of<PlainSteps>(maximum[i], minimum[i]);
}

}  // namespace nivora
