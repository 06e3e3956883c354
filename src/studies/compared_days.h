// The days on which a measured and a computed daily discharge are compared.
#pragma once

#include "base/calendar.h"
#include "store/daily_table.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace nivora {

/// A measured and a computed discharge day by day, in date order; m³/s or ft³/s, NaN for a missing value.
struct DailyDischarge {
    std::vector<DayCount> dates = {};
    std::vector<double> measured = {};
    std::vector<double> computed = {};
};

/// Calendar months, index 1 to 12; index 0 is not used.
using MonthSet = std::array<bool, 13>;

[[nodiscard]] constexpr MonthSet all_months() {
    MonthSet months{};
    for (std::size_t month = 1; month < months.size(); ++month) months.at(month) = true;
    return months;
}

/// How many days of a comparison lack what. A day that lacks both counts in both, and once in `left_out`.
struct MissingDays {
    std::int64_t asked = 0;     ///< days of the period in the months
    std::int64_t measured = 0;  ///< of these, days without a measured discharge
    std::int64_t computed = 0;  ///< days without a computed discharge
    std::int64_t left_out = 0;  ///< days without one of the two
};

/// Days that have both values, in date order, and how many were left out.
struct ComparedDays : DailyDischarge {
    MissingDays missing = {};
};

/// The days of a period in some months on which both values are known. A day that the series does not have
/// lacks both; of several rows of one day the first counts.
[[nodiscard]] ComparedDays compared_days(const DailyDischarge& series, const Period& period,
                                         const MonthSet& months);

}  // namespace nivora
