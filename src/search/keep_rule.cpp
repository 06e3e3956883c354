#include "search/keep_rule.h"

#include "base/number_text.h"
#include "base/text.h"

#include <fmt/format.h>

#include <algorithm>

namespace nivora {
namespace {

std::size_t place_of(const StudyProblem& problem, const Objective* objective) {
    const auto& all = problem.objectives();
    return static_cast<std::size_t>(std::find(all.begin(), all.end(), objective) - all.begin());
}

}  // namespace

std::variant<KeepRule, std::string> read_keep_rule(std::string_view text) {
    const std::size_t sign = text.find_first_of("<>");
    if (sign == std::string_view::npos) return fmt::format("'{}' is not a rule such as KGE>0.7", text);
    const Objective* objective = find_objective(text.substr(0, sign));
    const auto limit = exact_number(text.substr(sign + 1));
    if (objective == nullptr) return fmt::format("'{}' is not a measure", trimmed(text.substr(0, sign)));
    if (!limit) return fmt::format("'{}' is not a number", trimmed(text.substr(sign + 1)));
    return KeepRule{objective, text[sign] == '>', *limit};
}

bool keeps_run(const StudyProblem& problem, const std::vector<KeepRule>& rules,
               const std::vector<std::optional<double>>& values) {
    const bool any =
        std::any_of(values.begin(), values.end(), [](const auto& value) { return value.has_value(); });
    return any && std::all_of(rules.begin(), rules.end(), [&](const KeepRule& rule) {
               const auto& value = values[place_of(problem, rule.objective)];
               return value && rule.keeps(*value);
           });
}

}  // namespace nivora
