// Second and third pass of step 5: the adjusted curve dated by the degree days of the changed climate, and
// made into a cover for every day.
#pragma once

#include "climate/summer_cursor.h"
#include "engine/sim_results.h"

#include <optional>

namespace nivora {

/// A cover that is held to the summer's end although the zone's curve comes to an end: the day without snow
/// falls on the day that the last day with snow has taken.
struct HeldCover {
    DayCount from = 0;   ///< the day that both fall on
    float cover = 0.0F;  ///< what is held, above 0.01
};

/// Gives the values of a zone's curve new dates: writes `MDCexclWAnew` and `MeltOffset`, and `SCAclimWA` on
/// the days that a value falls on. The other days keep their 0; a cover of 0 is written as 0.0001 to tell it
/// from them. If several values fall on one day, the first counts, which may keep the curve from ending.
///
/// Intended: a depth that the zone's degree days never reach is written to the first day of the next zone; in
/// the last zone it is not written.
///
/// @param rows of the summer, all zones, zone by zone
/// @param summer_end the last day of the simulation
/// @return the cover that is held for that reason
std::optional<HeldCover> date_curve(SimResults& results, std::span<const std::uint32_t> rows, int zone,
                                    DayCount summer_end);

/// Fills a zone's `SCAclimWAMA`, with which step 6 runs: holds the last value over the days without one, and
/// ends the curve with 0.01 on the first day at or below it.
void close_cover(SimResults& results, std::span<const std::uint32_t> rows, int zone);

}  // namespace nivora
