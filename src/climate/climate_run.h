// The six steps of a climate evaluation.
#pragma once

#include "climate/climate_state.h"
#include "engine/run_driver.h"
#include "store/database.h"
#include "store/rows.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// How a step ended.
enum class StepOutcome {
    Refused,    ///< before the results changed; the run keeps its values
    NotRun,     ///< the results were rebuilt, but the scenario failed or the user did not continue
    Suspended,  ///< cancelled or failed, after a message; the step can be repeated
    Done
};

/// The points of step 1 at which the display changes.
enum class StepStage { DatesChecked, ModelStarts };

/// The data and services that the steps work with.
struct ClimateContext {
    RunContext run;
    ClimateState& climate;
    std::filesystem::path report_file;                          ///< of step 5; none is written if empty
    double now = 0.0;                                           ///< date and time of the report
    std::function<void(StepStage)> reached = [](StepStage) {};  ///< called by step 1
};

/// Starts a new evaluation. Displayed results of an earlier one stay until they are replaced.
void begin_climate(ClimateContext context);

/// Why an evaluation cannot start: the period or the initial runoff of the current simulation is invalid, or
/// the winter of the scenario ends before it starts.
[[nodiscard]] std::optional<Message> evaluation_problem(BasinDatabase& database, const BasinState& basin,
                                                        const std::string& scenario);

/// Runs one step, 1 to 6, on the results table in the working file. The steps run in order; a
/// step that was not completed can be repeated. Call end_climate_step after it.
[[nodiscard]] StepOutcome run_climate_step(ClimateContext context, int step);

/// The same in a file that the caller keeps open, so that no other program changes it between two steps.
[[nodiscard]] StepOutcome run_climate_step(BasinDatabase& database, ClimateContext context, int step);

/// Takes the steps of a new evaluation, up to and with the last one, until one fails, as if begin_climate,
/// run_climate_step, end_climate_step and end_climate were called in turn. The results pass from step to step
/// in memory: the file gets those of step 1 and of the last step that was taken.
///
/// @return whether all of them were done
[[nodiscard]] bool run_climate_steps(BasinDatabase& database, ClimateContext context,
                                     const std::string& scenario, int last_step);

/// A scenario that is in no file.
struct MemoryScenario {
    std::string name;
    std::vector<ScenarioRow> rows;  ///< that apply_scenario_rows can apply
    DayCount winter_end = 0;        ///< within the simulation, and before its last day
};

/// Takes the six steps on a table that build_results_in_memory has built, to the bit as run_climate_steps,
/// and neither reads nor writes a file. The file of step 5's report has to be empty.
///
/// @param after called behind each step that was done, with its table
/// @return whether all of them were done; the others have shown why not
/// @throws Fault if a row of the scenario cannot be applied
[[nodiscard]] bool run_climate_steps_in_memory(
    SimResults& results, ClimateContext context, const MemoryScenario& scenario,
    const std::function<void(int step, const SimResults& results)>& after);

/// Shows a message if the step was suspended, and sets the validity marks of the results. A step that did not
/// run changes nothing.
void end_climate_step(ClimateContext context, int step, StepOutcome outcome);

/// Ends an evaluation. If it is not complete its results are not valid.
void end_climate(ClimateContext context, bool aborted);

/// The caption of the Run menu during a step.
[[nodiscard]] std::string climate_step_caption(int step);

/// Sets the working columns of an earlier evaluation to 0, by position.
void Clear_CC_Work_Columns(SimResults& results);

}  // namespace nivora
