// Days of the tests as day counts.
#pragma once

#include "base/calendar.h"

namespace nivora {

/// The day count of an existing date.
[[nodiscard]] inline DayCount day(int year, int month, int day_of_month) {
    return day_count({year, month, day_of_month}).value();
}

}  // namespace nivora
