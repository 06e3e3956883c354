// Second and third pass of step 5: new dates for the adjusted curve by the degree days of the changed
// climate, and the snow cover of every day.
#pragma once

#include "climate/summer_cursor.h"
#include "engine/sim_results.h"

#include <optional>

namespace nivora {

/// A cover that stays until the summer's end although the zone's curve ends: the first day without snow falls
/// on the same date as the last day with snow.
struct HeldCover {
    DayCount from = 0;   ///< the date of both
    float cover = 0.0F;  ///< the constant cover, above 0.01
};

/// Moves the values of a zone's curve to new dates: writes `MDCexclWAnew` and `MeltOffset`, and `SCAclimWA`
/// on the days that get a value. The other days keep 0; a cover of 0 is written as 0.0001 to distinguish it.
/// If several values fall on one day, the first counts, which may keep the curve from ending.
///
/// Intended: a depth that the zone's degree days never reach is written to the first day of the next zone; in
/// the last zone it is not written.
///
/// @param rows of the summer, all zones, zone by zone
/// @param summer_end the last day of the simulation
/// @return the cover that seems to stay; an earlier end of the curve may still end it, see still_held
std::optional<HeldCover> date_curve(SimResults& results, std::span<const std::uint32_t> rows, int zone,
                                    DayCount summer_end);

/// Fills a zone's `SCAclimWAMA`, the cover of step 6: repeats the last value on days without one, and ends
/// the curve with 0.01 on the first day at or below that value.
void close_cover(SimResults& results, std::span<const std::uint32_t> rows, int zone);

/// What is left of a held cover after `close_cover`: nothing if the zone has no snow on its last day, because
/// its curve ended before the snow that is held, and otherwise the cover of the last day.
[[nodiscard]] std::optional<HeldCover> still_held(std::optional<HeldCover> held, const SimResults& results,
                                                  std::span<const std::uint32_t> rows, int zone);

}  // namespace nivora
