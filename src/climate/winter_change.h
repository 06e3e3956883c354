// First pass of step 5: what the changed winter left in a zone, and the depletion curve moved or stretched by
// it.
#pragma once

#include "climate/summer_cursor.h"
#include "engine/run_state.h"
#include "engine/sim_results.h"

#include <array>
#include <optional>

namespace nivora {

/// ShiftDays of a zone whose winter deficit was never covered.
inline constexpr int k_never_covered = -1;

/// The winter of a zone under both climates; depths in cm or inches.
struct ZoneWinter {
    float P = 0.0F;              ///< precipitation, present climate
    float P_changed = 0.0F;      ///< precipitation, changed climate
    float input = 0.0F;          ///< total zonal input i, present climate
    float input_changed = 0.0F;  ///< total zonal input i', changed climate
};

/// @throws Fault for a zone beyond the nine that the sums have room for
[[nodiscard]] ZoneWinter zone_winter(const RunState& run, int zone);

/// The water that the changed winter left in store beyond what the present one leaves; below 0 is a deficit.
[[nodiscard]] float winter_change(const ZoneWinter& winter);

/// The stored water of the changed winter as a multiple of the present one's.
///
/// @param before the gain of the zone before, 0 for the first
/// @return the gain; intended: `before`, if the present winter stores nothing
[[nodiscard]] float winter_gain(const ZoneWinter& winter, float before);

/// How far into the summer of the present climate a winter deficit reaches.
struct WinterShift {
    /// 0 where the first day covers the deficit, 2 where the second does and so on, never 1; -1 where no day
    /// does, or where the melt that does is 0.
    int ShiftDays = 1;
    std::optional<DayCount> cut_day;  ///< the day whose accumulated melt covers the deficit
    float melt = 0.0F;                ///< accumulated zonal melt on the cut day
    float prior_melt = 0.0F;          ///< the same on the day before, 0 on the first day
};

/// Walks a zone's days with the reader until the accumulated melt covers the deficit. The reader is left on
/// the cut day; where there is none, on the next zone's first day or on the last row of all.
[[nodiscard]] WinterShift find_shift(const SimResults& results, SummerCursor& reader, int zone,
                                     float deficit);

/// Writes `SCAclim` and `MDCexclWA` of a zone: with a gain of 1 or more the curve is stretched on its dates,
/// else it is moved so that its day behind the reader's becomes the first.
///
/// Intended: the loop ends with the reader, so that the zone's last days keep their values, also its last day
/// if nothing is moved. In the last zone a reader on the last day stays there, and one day is written, even
/// if the snow should be gone.
///
/// @param reader stands as find_shift left it
void adjust_curve(SimResults& results, SummerCursor& reader, SummerCursor writer, int zone, float gain);

}  // namespace nivora
