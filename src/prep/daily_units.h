// The units of the daily variables, parameters and results.
#pragma once

#include "base/units.h"

#include <string>
#include <string_view>

namespace nivora {

/// The unit of a field of the daily tables in a basin's units, such as "cm" or "°C per 100 m"; for a field
/// without a unit, what its numbers mean, such as "a fraction, 0 to 1". The same for a field of the changed
/// climate. Empty for a field of no daily table.
[[nodiscard]] std::string daily_unit(std::string_view field, Units units);

}  // namespace nivora
