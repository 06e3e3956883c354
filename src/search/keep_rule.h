// Which runs of a sample are kept.
#pragma once

#include "search/study_problem.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace nivora {

/// A measure that a run must reach to be kept.
struct KeepRule {
    const Objective* objective = nullptr;
    bool above = true;
    double limit = 0.0;

    [[nodiscard]] bool keeps(double value) const { return above ? value > limit : value < limit; }
};

/// Reads "KGE>0.7" or "RMSE<5". @return the rule, or what is wrong with the text
[[nodiscard]] std::variant<KeepRule, std::string> read_keep_rule(std::string_view text);

/// Whether a run reaches the limits of all rules; without a rule a run is kept that has a discharge at all.
///
/// @param values of the run, by objective of the problem
[[nodiscard]] bool keeps_run(const StudyProblem& problem, const std::vector<KeepRule>& rules,
                             const std::vector<std::optional<double>>& values);

}  // namespace nivora
