// What the last run of a basin left in memory, for a program that did not make that run itself.
#pragma once

#include "engine/run_state.h"
#include "store/database.h"

#include <optional>
#include <string>

namespace nivora {

/// What a repeated run left.
struct RepeatedRun {
    std::optional<RunState> run;  ///< nothing where it did not reach its end
    std::string reason;           ///< why not, as the run said it
};

/// Repeats the run of the current simulation, or the steps of its climate evaluation up to `ClimateStep`, on
/// a private copy of the basin. Questions are answered so that the run goes on.
///
/// @param basin with the simulation selected
/// @param asked kind, interval, climate step, scenario and No Snow mode of the run
/// @throws StoreError, FileError where the copy can't be made
[[nodiscard]] RepeatedRun repeat_run(BasinDatabase& database, const BasinState& basin, const RunState& asked);

}  // namespace nivora
