// The arithmetic of one row of the snow stage, for the walk row by row and the walk through a full table.
// Equations and rules: docs/model.md, section 3.
#pragma once

#include "engine/single_steps.h"

namespace nivora {

/// The largest Single below 0.00001, from which on precipitation counts.
inline constexpr float k_dry = 0.00001F;
static_assert(as_double(k_dry) < 0.00001 &&
              as_double(std::bit_cast<float>(std::bit_cast<std::uint32_t>(k_dry) + 1)) >= 0.00001);
inline constexpr double k_full_cover = 0.999;
inline constexpr double k_least_depletion = 0.0001;
inline constexpr float k_curve_not_started = -1.0F;
inline constexpr float k_curve_finished = -2.0F;

[[nodiscard]] inline double snow_free(float cover) { return 1.0 - as_double(cover); }

[[nodiscard]] inline bool is_full_cover(float cover) { return as_double(cover) > k_full_cover; }

[[nodiscard]] inline bool is_wet(float precipitation) { return precipitation > k_dry; }

/// What falls on the store of new snow. In winter that is only what falls on the snow-free part; the rest
/// belongs to the snowpack.
[[nodiscard]] inline double new_snow(float precipitation, float cover, bool winter) {
    return as_double(precipitation) * (winter ? snow_free(cover) : 1.0);
}

template <typename Steps>
float potential_melt(float degree_days, float degree_day_factor) {
    return Steps::variable(degree_days * degree_day_factor);
}

template <typename Steps>
float sum_of(float sum, float value) {
    return Steps::variable(sum + value);
}

template <typename Steps>
float filled_store(float store, double fallen) {
    return Steps::variable(as_double(store) + fallen);
}

/// The rain that contributes where only the snow-free part does.
template <typename Steps>
float rain_beside_snow(float rain, float cover) {
    return Steps::field(as_double(rain) * snow_free(cover));
}

[[nodiscard]] inline float melt_of_store(float at, float store) { return at > store ? store : at; }

template <typename Steps>
float melted_store(float store, float melt) {
    return Steps::variable(store - melt);
}

template <typename Steps>
float runoff_of_melt(float melt, float cover, bool winter) {
    return Steps::variable(melt * (winter ? 1.0F : Steps::variable(1.0F - cover)));
}

template <typename Steps>
float curve_with_new_melt(float sum_at, float base) {
    return Steps::variable(sum_at - base);
}

template <typename Steps>
float curve_without_new_melt(float sum_at, float new_melt_sum, float base) {
    const float curve = Steps::variable((as_double(sum_at) - as_double(new_melt_sum)) - as_double(base));
    return as_double(curve) < k_least_depletion ? 0.0F : curve;
}

}  // namespace nivora
