// The run and the days that reports show.
#pragma once

#include "engine/run_state.h"
#include "store/basin_store.h"
#include "store/daily_table.h"

#include <optional>
#include <string>

namespace nivora {

/// Whether the current simulation is the one that was run last.
[[nodiscard]] bool is_last_run(const BasinState& basin, const RunState& run);

/// The climate step whose results are reported; 0 for a plain run,
/// and if the results belong to another simulation.
[[nodiscard]] int reported_climate_step(const BasinState& basin, const RunState& run);

/// First and last day; nothing for a date that the simulation lacks.
struct ReportPeriod {
    std::optional<DayCount> start = {};
    std::optional<DayCount> end = {};

    /// The days from the first to the last; an empty period if a date is missing.
    [[nodiscard]] Period covered() const;
};

/// The period of the climate step that was taken last, or of the current simulation.
[[nodiscard]] ReportPeriod report_period(const BasinState& basin, const RunState& run);

/// Why reports have no days to show, and what the user can do about it.
struct PeriodProblem {
    std::string cause;   ///< the rest of a sentence
    std::string remedy;  ///< its beginning
};
/// Nothing if the reports have days to show.
[[nodiscard]] std::optional<PeriodProblem> period_problem(const BasinState& basin, const RunState& run);

}  // namespace nivora
