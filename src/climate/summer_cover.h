// Second and third pass of step 5: the adjusted curve dated by the degree days of the changed climate, and
// made into a cover for every day.
#pragma once

#include "climate/summer_cursor.h"
#include "engine/sim_results.h"

namespace nivora {

/// Dates a zone's curve anew: writes `MDCexclWAnew` and `MeltOffset`, and `SCAclimWA` on the days that a
/// value falls on. The other days keep the 0 that they have; a cover of 0 is written as 0.0001, which tells
/// it from them.
///
/// A depth that the zone's degree days never reach lands on the first day of the next zone; in the last zone
/// it lands nowhere. Both are meant.
///
/// @param rows of the summer, all zones, zone by zone
/// @param summer_end the last day of the simulation
void date_curve(SimResults& results, std::span<const std::uint32_t> rows, int zone, DayCount summer_end);

/// Fills a zone's `SCAclimWAMA`, with which step 6 runs: holds the last value over the days without one, and
/// ends the curve with 0.01 on the first day at or below it.
void close_cover(SimResults& results, std::span<const std::uint32_t> rows, int zone);

}  // namespace nivora
