#include "search/study_problem.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace nivora {

StudyProblem::StudyProblem(std::vector<StudyCase> cases, std::vector<const Objective*> objectives)
    : cases_(std::move(cases)), objectives_(std::move(objectives)) {
    fit_ = days_of(&StudyCase::fit);
    check_ = days_of(&StudyCase::check);
    for (std::size_t i = 0; i < ranges().size(); ++i) {
        if (ranges()[i].low < ranges()[i].high) wide_.push_back(i);
    }
}

StudyDays StudyProblem::days_of(std::optional<Period> StudyCase::*period) const {
    StudyDays used;
    for (const StudyCase& one : cases_) {
        auto& days = used.days.emplace_back();
        if (!(one.*period)) continue;
        const DailyDischarge& series = one.basin->measured;
        for (std::size_t day = 0; day < series.dates.size(); ++day) {
            if (series.dates[day] < (one.*period)->start || series.dates[day] > (one.*period)->end) continue;
            if (is_missing(series.measured[day])) {
                ++used.missing;
                continue;
            }
            days.push_back(day);
            used.measured.push_back(series.measured[day]);
        }
    }
    return used;
}

std::vector<double> StudyProblem::numbers_at(std::span<const double> point) const {
    std::vector<double> numbers;
    for (const FreeRange& range : ranges()) numbers.push_back(range.low);
    for (std::size_t i = 0; i < wide_.size(); ++i) {
        const FreeRange& range = ranges()[wide_[i]];
        numbers[wide_[i]] =
            std::clamp(range.low + (range.high - range.low) * point[i], range.low, range.high);
    }
    return numbers;
}

std::vector<double> StudyProblem::unchanged_point() const {
    std::vector<double> point;
    for (const std::size_t index : wide_) {
        const FreeRange& range = ranges()[index];
        if (range.action == AdjustAction::Set) {
            point.push_back(0.5);
            continue;
        }
        const double neutral = range.action == AdjustAction::Multiply ? 1.0 : 0.0;
        point.push_back(std::clamp((neutral - range.low) / (range.high - range.low), 0.0, 1.0));
    }
    return point;
}

StudyWorker::StudyWorker(const StudyProblem& problem) : problem_(problem), flows_(problem.cases().size()) {
    for (const StudyCase& one : problem.cases()) evaluators_.emplace_back(one.basin, one.ranges);
}

bool StudyWorker::run(std::span<const double> numbers) {
    for (std::size_t i = 0; i < evaluators_.size(); ++i) {
        flows_[i] = evaluators_[i].flow(numbers);
        if (flows_[i].empty()) return false;
    }
    return true;
}

std::vector<std::optional<double>> StudyWorker::values(const StudyDays& days) {
    std::vector<std::optional<double>> values(problem_.objectives().size());
    computed_.clear();
    for (std::size_t i = 0; i < flows_.size(); ++i) {
        for (const std::size_t day : days.days[i]) computed_.push_back(flows_[i][day]);
    }
    const bool complete =
        std::none_of(computed_.begin(), computed_.end(), [](double q) { return is_missing(q); });
    if (computed_.empty() || !complete) return values;
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = problem_.objectives()[i]->value(days.measured, computed_);
    return values;
}

}  // namespace nivora
