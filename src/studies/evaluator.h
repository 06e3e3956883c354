// Many runs of one simulation in memory, each with changes of its own, for studies.
#pragma once

#include "base/dialogs.h"
#include "engine/run_driver.h"
#include "engine/sim_results.h"
#include "studies/adjustments.h"
#include "studies/compared_days.h"

#include <memory>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace nivora {

/// What all evaluations of a study read and none changes, so that threads share it.
struct StudyBasin {
    BasinState basin;         ///< with the simulation selected and its threshold set
    RunState run;             ///< as a run has it before its first stage
    BasinInputs inputs;       ///< of `basin`
    SimResults table;         ///< as a run builds it
    RunRows rows;             ///< of the whole period
    RowOrder flow_rows;       ///< zone 1's rows in date order, which hold the discharge
    DailyDischarge measured;  ///< of these rows, with an empty computed discharge
};

/// Reads the current simulation of a basin, as a run does, without a change of the file.
///
/// @param request update interval, No Snow mode and lag distribution
/// @return the basin, or why it cannot run
/// @throws StoreError
[[nodiscard]] std::variant<std::shared_ptr<const StudyBasin>, Message> read_study_basin(
    BasinDatabase& database, const BasinState& basin, const RunRequest& request);

/// What an evaluation computed.
struct Evaluation {
    std::vector<double> computed;  ///< m³/s or ft³/s, by day of `StudyBasin::measured`; NaN where it has none
    bool reached_end = false;      ///< all stages were completed
    std::vector<Message>
        messages;  ///< what a run would have shown; questions were answered so that it goes on

    /// Whether the stages had nothing to say against the inputs: a study does not use other discharges.
    [[nodiscard]] bool is_sound() const;
};

/// Computes the discharge of a basin under changes of its inputs: to the bit that of a run of a basin whose
/// tables were edited so. It has working columns of its own and is used by one thread at a time; the result
/// depends on nothing but the basin and the adjustments.
class Evaluator {
public:
    explicit Evaluator(std::shared_ptr<const StudyBasin> basin);

    [[nodiscard]] const StudyBasin& basin() const { return *basin_; }

    /// @param adjustments applied in their order
    [[nodiscard]] Evaluation evaluate(std::span<const Adjustment> adjustments);

private:
    std::shared_ptr<const StudyBasin> basin_;
    SimResults table_;  ///< keeps its memory from evaluation to evaluation
};

}  // namespace nivora
