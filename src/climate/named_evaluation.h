// A climate evaluation of a scenario by its name, in a basin file that is opened for it alone.
#pragma once

#include "climate/climate_run.h"
#include "engine/batch_dialogs.h"
#include "store/rows.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

namespace nivora {

/// Which scenario of which simulation to evaluate, and how far.
struct NamedEvaluation {
    std::filesystem::path basin = {};
    std::string simulation = {};          ///< in upper or lower case
    std::string scenario = {};            ///< in upper or lower case
    std::filesystem::path report = {};    ///< of step 5; none is written if empty
    int last_step = k_climate_steps;      ///< 1 to 6
    std::chrono::milliseconds wait = {};  ///< for another program that works on the basin
};

/// What an evaluation fills.
struct EvaluationContext {
    BasinState& basin;
    RunState& run;
    ClimateState& climate;
    BatchDialogs& dialogs;
};

/// The current simulation's scenario of that name, in any case, as it is stored; reported if there is none.
[[nodiscard]] std::optional<ScenarioIndexRow> stored_scenario(BasinDatabase& database,
                                                              const BasinState& basin,
                                                              const std::string& scenario,
                                                              BatchDialogs& dialogs);

/// Opens the basin, makes all checks, takes the steps of a new evaluation and stores the table. Boxes with a
/// proposal are answered with it.
///
/// @return whether all steps that were asked for were done; the others have been reported
/// @throws StoreError if the basin can't be read; FileError for the report
[[nodiscard]] bool evaluate_by_name(const NamedEvaluation& named, EvaluationContext context);

}  // namespace nivora
