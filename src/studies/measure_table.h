// The measures of a comparison as a table of names, units, best values and reasons.
#pragma once

#include "base/units.h"
#include "studies/compared_days.h"
#include "studies/measures.h"

#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// The unit of a measure; the words depend on the basin's units.
enum class MeasureUnit { None, Discharge, Percent, Days };

/// A measure, with its value or why it has none.
struct MeasureRow {
    const char* key = "";      ///< for JSON, such as "NSE"
    std::string name = {};     ///< for a table, such as "NSE of logarithms"
    const char* formula = "";  ///< its number in the manual's page of formulas, such as "F2"
    MeasureUnit unit = MeasureUnit::None;
    double best = 0.0;
    std::optional<double> value = {};
    std::string remark = {};  ///< treatment, sign or definition; for a measure without a value the reason
};

/// All measures of a comparison of at least one day, in the order of the manual.
[[nodiscard]] std::vector<MeasureRow> measure_table(const ComparedDays& days, Units units);

/// "", "m³/s", "%", "days"
[[nodiscard]] std::string measure_unit_text(MeasureUnit unit, Units units);

}  // namespace nivora
