// What a study asks of a set of numbers: how well the discharge of one or more simulations meets the measured
// one.
#pragma once

#include "studies/flow_evaluator.h"
#include "studies/objective.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace nivora {

/// A simulation of a study, with the days that count.
struct StudyCase {
    std::string name = {};  ///< for messages
    std::shared_ptr<const StudyBasin> basin = {};
    std::vector<FreeRange> ranges = {};  ///< the same ones for all cases, with the zones of this basin
    std::optional<Period> fit = {};      ///< days that the search uses; none if not set
    std::optional<Period> check = {};    ///< days that are only reported
};

/// The measured discharge of the days of a use, all cases in their order, and which days these are.
struct StudyDays {
    std::vector<std::vector<std::size_t>> days;  ///< by case: positions in `StudyBasin::measured`
    std::vector<double> measured;                ///< m³/s or ft³/s
    std::int64_t missing = 0;                    ///< days of the periods without a measured discharge
};

/// The problem of a study, which threads share.
class StudyProblem {
public:
    StudyProblem(std::vector<StudyCase> cases, std::vector<const Objective*> objectives);

    [[nodiscard]] const std::vector<StudyCase>& cases() const { return cases_; }
    [[nodiscard]] const std::vector<FreeRange>& ranges() const { return cases_.front().ranges; }
    [[nodiscard]] const std::vector<const Objective*>& objectives() const { return objectives_; }
    [[nodiscard]] const StudyDays& fit_days() const { return fit_; }
    [[nodiscard]] const StudyDays& check_days() const { return check_; }

    /// The numbers of a point of the unit cube that has a coordinate for each range of some width.
    [[nodiscard]] std::vector<double> numbers_at(std::span<const double> point) const;
    /// The number of ranges of some width.
    [[nodiscard]] std::size_t dimensions() const { return wide_.size(); }
    /// The point of the numbers that change nothing, as near as the ranges allow.
    [[nodiscard]] std::vector<double> unchanged_point() const;

private:
    [[nodiscard]] StudyDays days_of(std::optional<Period> StudyCase::*period) const;

    std::vector<StudyCase> cases_;
    std::vector<const Objective*> objectives_;
    StudyDays fit_;
    StudyDays check_;
    std::vector<std::size_t> wide_;
};

/// A thread's way to the discharge of all cases.
class StudyWorker {
public:
    explicit StudyWorker(const StudyProblem& problem);

    /// Computes the discharge of all cases. @return whether all of them have one
    [[nodiscard]] bool run(std::span<const double> numbers);

    /// The discharge of a case after a run, by day of its basin.
    [[nodiscard]] std::span<const double> flow(std::size_t index) const { return flows_[index]; }

    /// The measures of the last run on the fit or the check days, by objective; nothing where the days have
    /// no such measure, or where there are no days.
    [[nodiscard]] std::vector<std::optional<double>> values(const StudyDays& days);

private:
    const StudyProblem& problem_;
    std::vector<FlowEvaluator> evaluators_;
    std::vector<std::span<const double>> flows_;
    std::vector<double> computed_;
};

}  // namespace nivora
