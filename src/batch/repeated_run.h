// The last run of a basin repeated, for results of it that are not in the basin.
#pragma once

#include "engine/run_state.h"
#include "store/database.h"

#include <optional>
#include <string>

namespace nivora {

struct RepeatedRun {
    std::optional<RunState> run;  ///< nothing if it did not reach its end
    std::string reason;           ///< why not: the last message of the run
};

/// Repeats the run of the current simulation in memory, or the steps of its climate evaluation up to
/// `ClimateStep` on a private copy of the basin. The file is only read. Its questions are answered so that it
/// goes on.
///
/// @param basin with the simulation selected
/// @param asked kind, interval, climate step, scenario and No Snow mode of the run
/// @throws StoreError, FileError if the copy for an evaluation cannot be made
[[nodiscard]] RepeatedRun repeat_run(BasinDatabase& database, const BasinState& basin, const RunState& asked);

}  // namespace nivora
