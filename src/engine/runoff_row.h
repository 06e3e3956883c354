// The arithmetic of one row of the discharge stage, for every walk through the rows.
// Equations and rules: docs/model.md, section 4.
#pragma once

#include "base/single.h"

namespace nivora {

/// M_snow = SCA x a x T+, before it is rounded into its field.
[[nodiscard]] inline double snow_cover_melt(float cover, float degree_days, float degree_day_factor) {
    return as_double(cover) * (as_double(degree_days) * as_double(degree_day_factor));
}

/// The depth of water of a zone that runs off.
[[nodiscard]] inline double runoff_depth(float rain_coefficient, float fresh, float rain,
                                         float snow_coefficient, float melt) {
    return as_double(rain_coefficient) * (as_double(fresh) + as_double(rain)) +
           as_double(snow_coefficient) * as_double(melt);
}

}  // namespace nivora
