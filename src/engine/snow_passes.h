// Passes over days of a zone whose values were looked at before: the parts of the snow stage that take
// nothing from the day before. Equations and rules: docs/model.md, section 3.
#pragma once

#include "engine/snow_row.h"

#include <cstddef>

namespace nivora {

// The ranges in which the passes give the bits of the rows.
inline constexpr float k_largest_depth = 1.0e6F;
inline constexpr float k_largest_degree_days = 1.0e9F;

/// The inputs of a zone's snow, from the first day of a pass on.
struct SnowInputs {
    const float* degree_days;
    const float* factor;
    const float* precipitation;
    const float* critical;
    const float* rain_switch;
    const float* cover;
};

/// The same inputs some days later.
[[nodiscard]] inline SnowInputs later(const SnowInputs& in, std::size_t days) {
    return {.degree_days = in.degree_days + days,
            .factor = in.factor + days,
            .precipitation = in.precipitation + days,
            .critical = in.critical + days,
            .rain_switch = in.rain_switch + days,
            .cover = in.cover + days};
}

inline void pass_potential_melt(const SnowInputs& in, std::size_t count, float* at) {
    for (std::size_t i = 0; i < count; ++i)
        at[i] = potential_melt<PlainSteps>(in.degree_days[i], in.factor[i]);
}

inline void pass_rain(const SnowInputs& in, std::size_t count, float* rain) {
    for (std::size_t i = 0; i < count; ++i) {
        const float wet = kept_if(is_wet(in.precipitation[i]), in.precipitation[i]);
        const float warm = kept_if(in.degree_days[i] >= in.critical[i], wet);
        rain[i] = chosen(in.rain_switch[i] == 0.0F, rain_beside_snow<PlainSteps>(warm, in.cover[i]), warm);
    }
}

/// What falls on the store of new snow.
template <bool Winter>
void pass_new_snow(const SnowInputs& in, std::size_t count, double* fallen) {
    for (std::size_t i = 0; i < count; ++i) {
        const float wet = kept_if(is_wet(in.precipitation[i]), in.precipitation[i]);
        const float cold = kept_if(!(in.degree_days[i] >= in.critical[i]), wet);
        fallen[i] = new_snow(cold, in.cover[i], Winter);
    }
}

}  // namespace nivora
