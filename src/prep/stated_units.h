// Units in which a file may give the values of a field, and their conversion into those of the basin.
#pragma once

#include "base/units.h"

#include <optional>
#include <string>
#include <string_view>

namespace nivora {

/// A conversion of values: (value + before) * multiply / divide + after. The default changes nothing.
struct UnitConversion {
    double before = 0.0;
    double multiply = 1.0;
    double divide = 1.0;
    double after = 0.0;

    /// Whether values stay as they are, to the bit.
    [[nodiscard]] bool is_identity() const;
    [[nodiscard]] double of(double value) const { return (value + before) * multiply / divide + after; }
};

/// The conversion of values of a field from a unit into the basin's own.
///
/// Depths (`cm`, `mm`, `m`, `in`, `inches`), discharges (`m³/s`, `m3/s`, `l/s`, `ft³/s`, `ft3/s`, `cms`,
/// `cfs`), temperatures (`°C`, `C`, `°F`, `F`, `K`), fractions (`fraction`, `%`, `percent`), lag times
/// (`hours`, `h`, `days`), lapse rates (`°C/100m`, `°C/km`, `°F/1000ft`) and degree-day factors (`cm/°C/day`,
/// `mm/°C/day`, `in/°F/day`), without regard to case and blanks. The critical temperature counts from the
/// degree-day base, so that it is converted as a difference, and K is none of its units. The basin's own
/// words for a unit, those of daily_unit, are understood for every field.
///
/// @param field  of a daily table or of the monthly averages
/// @return nothing if the field can't be given in that unit
[[nodiscard]] std::optional<UnitConversion> unit_conversion(std::string_view field, std::string_view unit,
                                                            Units basin_units);

/// The units of a field, joined by commas, for a message: "cm, mm, m, in"; empty if values of it can't be
/// converted.
[[nodiscard]] std::string units_of_field(std::string_view field);

}  // namespace nivora
