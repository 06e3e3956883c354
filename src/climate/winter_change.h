// First pass of step 5: the water stored by the changed winter in a zone, and the depletion curve moved or
// stretched by it.
#pragma once

#include "climate/summer_cursor.h"
#include "engine/run_state.h"
#include "engine/sim_results.h"

#include <array>
#include <optional>

namespace nivora {

/// ShiftDays of a zone whose winter deficit is never covered.
inline constexpr int k_never_covered = -1;

/// The winter of a zone under both climates; depths in cm or inches.
struct ZoneWinter {
    float P = 0.0F;              ///< precipitation, present climate
    float P_changed = 0.0F;      ///< precipitation, changed climate
    float input = 0.0F;          ///< total zonal input i, present climate
    float input_changed = 0.0F;  ///< total zonal input i', changed climate
};

/// @throws Fault for a zone above 9, for which no sums are kept
[[nodiscard]] ZoneWinter zone_winter(const RunState& run, int zone);

/// The water stored by the changed winter minus that of the present one; negative for a deficit.
[[nodiscard]] float winter_change(const ZoneWinter& winter);

/// The gain: stored water of the changed winter divided by that of the present one.
///
/// @param before the gain of the zone before, 0 for the first
/// @return the gain; intended: `before`, if the present winter stores nothing
[[nodiscard]] float winter_gain(const ZoneWinter& winter, float before);

/// How long the melt of the present summer takes to cover a winter deficit.
struct WinterShift {
    /// 0 if the first day covers the deficit, 2 if the second day does and so on, never 1; -1 if no day does,
    /// or if the melt of that day is 0.
    int ShiftDays = 1;
    std::optional<DayCount> cut_day;  ///< the day whose accumulated melt covers the deficit
    float melt = 0.0F;                ///< accumulated zonal melt on the cut day
    float prior_melt = 0.0F;          ///< the same on the day before, 0 on the first day
};

/// Moves the reader over a zone's days until the accumulated melt covers the deficit. The reader ends on the
/// cut day; without one, on the next zone's first day or on the last row of all.
[[nodiscard]] WinterShift find_shift(const SimResults& results, SummerCursor& reader, int zone,
                                     float deficit);

/// Writes `SCAclim` and `MDCexclWA` of a zone: with a gain of 1 or more the curve is stretched on its dates,
/// otherwise it is moved so that the day after the reader's becomes its first day.
///
/// Intended: the loop ends with the reader, so that the zone's last days keep their values, also its last day
/// if nothing is moved. In the last zone a reader on the last day stays there, and one day is written, even
/// if the snow should be gone.
///
/// @param reader as find_shift left it
void adjust_curve(SimResults& results, SummerCursor& reader, SummerCursor writer, int zone, float gain);

}  // namespace nivora
