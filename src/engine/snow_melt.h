// Second stage of a run: rain and new snow, the store of new snow and its melt,
// and the modified depletion curves.
// Equations and rules: docs/model.md, section 3.
#pragma once

#include "base/dialogs.h"
#include "engine/basin_inputs.h"
#include "engine/run_state.h"
#include "engine/sim_results.h"

#include <optional>
#include <string_view>

namespace nivora {

/// First month of the melt season, which lasts six months: April in the north, October in the south.
///
/// @param latitude_text decimal degrees; below 0 is the southern hemisphere,
/// anything else or nothing the northern
[[nodiscard]] int melt_season_start_month(std::string_view latitude_text);
[[nodiscard]] bool in_melt_season(int month, int start_month);
/// The last day of the winter that a run starts in: the day before the next first day of the melt season.
/// Nothing for a run that starts in the melt season, which has no winter.
[[nodiscard]] std::optional<DayCount> winter_end(DayCount run_start, int start_month);

/// Walks the rows of the period zone by zone, day by day. Zones don't interact.
///
/// Writes `SumAT`, `aT`, `Cpr`, `SnowOnStore` (the store before the day's melt), `NewMelt` and `M1S`; in a
/// plain run and in climate step 3 also the modified depletion curves `MDCincl` and `MDCexcl`. Leaves
/// `MeltSeasonStart`, `SnowStore`, the `EndingStores` of its climate step and, in climate steps 1 to 3,
/// `WinterPrecip`.
///
/// A fault is shown and ends the stage; the rows before it are written.
/// Intended: the run continues, and the next stage reads the empty fields.
void Snow_Melt(SimResults& results, const RunRows& rows, const BasinInputs& inputs, RunState& run,
               Dialogs& dialogs);

}  // namespace nivora
