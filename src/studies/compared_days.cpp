#include "studies/compared_days.h"

#include "base/single.h"

namespace nivora {

ComparedDays compared_days(const DailyDischarge& series, const Period& period, const MonthSet& months) {
    ComparedDays days;
    std::size_t row = 0;
    for (DayCount date = period.start; date <= period.end; ++date) {
        while (row < series.dates.size() && series.dates[row] < date) ++row;
        if (!months.at(static_cast<std::size_t>(civil_date(date).month))) continue;
        ++days.missing.asked;
        const bool there = row < series.dates.size() && series.dates[row] == date;
        const bool measured = there && !is_missing(series.measured[row]);
        const bool computed = there && !is_missing(series.computed[row]);
        if (!measured) ++days.missing.measured;
        if (!computed) ++days.missing.computed;
        if (!measured || !computed) {
            ++days.missing.left_out;
            continue;
        }
        days.dates.push_back(date);
        days.measured.push_back(series.measured[row]);
        days.computed.push_back(series.computed[row]);
    }
    return days;
}

}  // namespace nivora
