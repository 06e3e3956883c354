// The discharge of a basin for many sets of numbers, as fast as it can be had.
#pragma once

#include "engine/flow_run.h"
#include "studies/evaluator.h"
#include "studies/free_range.h"

#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace nivora {

/// Computes the discharge for a number for each free range: to the bit what `Evaluator` gives for the same
/// adjustments. Columns that no range touches are read from the shared basin. Inputs that the quick way
/// leaves out, with missing or wild values, go through the stages. One thread at a time.
class FlowEvaluator {
public:
    FlowEvaluator(std::shared_ptr<const StudyBasin> basin, std::vector<FreeRange> ranges);

    [[nodiscard]] const StudyBasin& basin() const { return *basin_; }

    /// @param numbers one for each range, in their order
    /// @return m³/s or ft³/s by day of `StudyBasin::measured`, until the next call; empty where the run would
    /// have
    ///         stopped or complained
    [[nodiscard]] std::span<const double> flow(std::span<const double> numbers);

private:
    /// A column with changes of its own.
    struct Changed {
        StudyVariable variable;
        std::size_t rows;  ///< that the model reads
        std::vector<float> single;
        std::vector<double> twofold;
    };

    void add_column(StudyVariable variable);
    void point_to(Changed& changed);
    [[nodiscard]] bool change_columns(std::span<const double> numbers);
    void change_rows(Changed& changed, const Adjustment& adjustment);
    [[nodiscard]] std::span<const double> flow_of_stages(std::span<const double> numbers);

    std::shared_ptr<const StudyBasin> basin_;
    std::vector<FreeRange> ranges_;
    std::size_t days_;  ///< of a full table; 0 for any other, which the stages work
    FlowColumns columns_;
    std::vector<Changed> changed_;
    std::optional<FlowRun> quick_;
    Evaluator stages_;
    Evaluation evaluation_;
};

}  // namespace nivora
