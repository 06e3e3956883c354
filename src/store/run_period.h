// The periods over which a simulation may run.
#pragma once

#include "base/calendar.h"

#include <cstdint>

namespace nivora {

/// The longest period of a simulation, in days: a leap year.
inline constexpr std::int64_t k_longest_run = 366;

/// Whether a simulation may run from one day to another, both in it: at least two days and at most 366.
[[nodiscard]] constexpr bool is_run_period(DayCount start, DayCount end) {
    return end > start && end - start + 1 <= k_longest_run;
}

}  // namespace nivora
