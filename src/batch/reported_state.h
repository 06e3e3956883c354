// The state of a program that has made a run, as the options of a command describe that run: for commands
// that show results which stand in a basin already.
#pragma once

#include "engine/batch_dialogs.h"
#include "session/session.h"
#include "store/daily_table.h"

#include <optional>
#include <string>

namespace nivora {

/// How the results in a basin were made.
struct ReportedRun {
    bool year_round = false;
    std::optional<std::string> forecast_days;
    bool no_snow = false;
    int step = 0;          ///< of a climate evaluation; 0 a plain run
    std::string scenario;  ///< of the evaluation
};

/// Sets the kind of run; false after the message of a refused interval.
[[nodiscard]] bool take_kind(RunState& run, const ReportedRun& options, BatchDialogs& dialogs);

/// The days that a step of an evaluation computes, or why it has none.
struct StepPeriod {
    std::optional<Period> period;
    std::string problem;
};
[[nodiscard]] StepPeriod step_period(const BasinState& basin, const ScenarioIndexRow& scenario, int step);

/// Sets a climate step as the one that was taken last.
void take_step(RunState& run, int step, const ScenarioIndexRow& scenario, const Period& period);

/// Whether the results table has a row of a period. @throws StoreError
[[nodiscard]] bool has_results(BasinDatabase& database, const Period& period);

/// Computes the statistics of the results from `RunStart` to `RunEnd`. What cannot be computed stays missing.
/// @throws StoreError if the results can't be read
void take_statistics(BasinDatabase& database, RunState& run);

}  // namespace nivora
