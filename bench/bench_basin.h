// A generated basin of any size for the benchmarks, in memory or in a file.
#pragma once

#include "base/scripted_dialogs.h"
#include "engine/run_driver.h"
#include "engine/sim_results.h"
#include "prep/prep_state.h"

#include <filesystem>

namespace nivora {

/// A basin with so many zones and one simulation of so many days from 1 October 1990 on.
[[nodiscard]] BasinState bench_basin(int zones, int days);

/// The results table of that simulation, as built before the stages.
[[nodiscard]] SimResults bench_results(int zones, int days);

/// The run values at the start of a year-round simulation of it.
[[nodiscard]] RunState bench_run(int days);

/// Runs the four computing stages, which write all their columns.
void run_stages(SimResults& results, BasinState& basin, RunState& run, Dialogs& dialogs);

/// Writes a basin file with so many years of daily variables and one simulation over the last 366 days.
void write_bench_basin(const std::filesystem::path& path, int zones, int years);

}  // namespace nivora
