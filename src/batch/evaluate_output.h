// The measures of a comparison as text and as JSON.
#pragma once

#include "base/units.h"
#include "studies/measure_table.h"

#include <iosfwd>
#include <string>

namespace nivora {

/// A comparison whose measures are printed.
struct PrintedComparison {
    std::string basin;
    std::string simulation;
    Period period;
    MonthSet months = all_months();
    bool fresh = false;  ///< of a fresh run, not of stored results
    Units units = Units::Metric;
    ComparedDays days;
};

void print_measures(const PrintedComparison& comparison, std::ostream& out);
void print_measures_json(const PrintedComparison& comparison, std::ostream& out);

/// "4-9", "1-3,10-12"; "all" for all twelve.
[[nodiscard]] std::string months_text(const MonthSet& months);

}  // namespace nivora
