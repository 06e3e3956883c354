// The six steps of a climate evaluation.
#pragma once

#include "climate/climate_state.h"
#include "engine/run_driver.h"
#include "store/database.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace nivora {

/// How a step ended.
enum class StepOutcome {
    Refused,    ///< before the results were touched; the run's values are those before it
    NotRun,     ///< the results are built anew, but the scenario failed or the user did not go on
    Suspended,  ///< cancelled or failed, which was said; it can be taken again
    Done
};

/// The places in step 1 at which what the user sees changes.
enum class StepStage { DatesChecked, ModelStarts };

/// What the steps work on.
struct ClimateContext {
    RunContext run;
    ClimateState& climate;
    std::filesystem::path report_file;                          ///< where step 5 writes its report
    double now = 0.0;                                           ///< date and time of the report
    std::function<void(StepStage)> reached = [](StepStage) {};  ///< told by step 1
};

/// Starts afresh. What is shown of the results of an earlier evaluation stays until they are replaced.
void begin_climate(ClimateContext context);

/// What keeps an evaluation from its first step: the period or the initial runoff of the current simulation,
/// or a winter end of the scenario before its start.
[[nodiscard]] std::optional<Message> evaluation_problem(BasinDatabase& database, const BasinState& basin,
                                                        const std::string& scenario);

/// Runs one step, 1 to 6, on the results table in the working file. The steps are taken in their order; a
/// step that was not done may be taken again. end_climate_step comes after it.
[[nodiscard]] StepOutcome run_climate_step(ClimateContext context, int step);

/// The same in a file that the caller has open, so that nobody changes it between two steps.
[[nodiscard]] StepOutcome run_climate_step(BasinDatabase& database, ClimateContext context, int step);

/// Says so where the step was suspended, and marks what the results are worth now. A step that came to no
/// run leaves all as it is.
void end_climate_step(ClimateContext context, int step, StepOutcome outcome);

/// Ends an evaluation: results of an unfinished one are not valid.
void end_climate(ClimateContext context, bool aborted);

/// What the caption of the Run menu says meanwhile.
[[nodiscard]] std::string climate_step_caption(int step);

/// Sets 0 into the working columns of an earlier evaluation, by position.
void Clear_CC_Work_Columns(SimResults& results);

}  // namespace nivora
