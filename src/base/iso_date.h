// Dates as command lines and texts for programs write them.
#pragma once

#include "base/calendar.h"

#include <optional>
#include <string_view>

namespace nivora {

/// Reads a date of the form yyyy-mm-dd and of no other. Blanks around it are ignored.
///
/// @return nothing if the text is not such a date or its year is outside 1900 to 2300
[[nodiscard]] std::optional<DayCount> read_iso_date(std::string_view text);

}  // namespace nivora
