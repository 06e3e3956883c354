// Many runs over the ranges of a study: their measures, the bands of their discharge, and how much each range
// matters.
#pragma once

#include "search/calibration.h"
#include "search/low_discrepancy.h"
#include "search/study_problem.h"
#include "studies/study_pool.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace nivora {

/// The points of a sample, by number. A point depends on its number, the seed and the ranges alone, so that
/// parts of a sample can be computed anywhere and in any order.
class SampleDesign {
public:
    /// @param sensitivity whether the points stand in groups, of which sensitivity indices are made
    SampleDesign(std::size_t dimensions, unsigned seed, bool sensitivity);

    [[nodiscard]] std::vector<double> point(std::size_t index) const;
    /// The points of a group: A, B, and for each dimension A with that coordinate of B. 1 without groups.
    [[nodiscard]] std::size_t group() const { return group_; }

private:
    std::size_t dimensions_;
    std::size_t group_;
    LowDiscrepancy sequence_;
};

/// A part of a sample: the third of sixteen and so on. Parts are whole groups, as equal as they can be.
struct SampleShare {
    std::size_t number = 1;  ///< 1 to `parts`
    std::size_t parts = 1;
};

/// Run numbers from the first up to, not including, the last.
struct RunSpan {
    std::size_t first = 0;
    std::size_t behind = 0;
};
/// The pieces of a part, of a number of pieces that are all alike.
[[nodiscard]] RunSpan part_of(std::size_t pieces, const SampleShare& share);
[[nodiscard]] RunSpan runs_of(const SampleDesign& design, std::size_t runs, const SampleShare& share);

/// One run of a sample.
struct SampleRun {
    std::size_t index = 0;
    std::vector<double> numbers;  ///< by range
    std::vector<std::optional<double>>
        values;  ///< measures by objective on the fit days; nothing where there is none
};

/// Computes runs and hands them over in their order. Ends early where the watch stops it, behind the last run
/// that was handed over.
void run_sample(const StudyProblem& problem, const SampleDesign& design, const RunSpan& span, StudyPool& pool,
                const SearchWatch& watch, const std::function<void(const SampleRun&)>& take);

inline constexpr std::array<double, 5> k_band_shares{0.05, 0.25, 0.50, 0.75, 0.95};

/// The spread of a day's discharge over runs, m³/s or ft³/s.
struct DayBand {
    std::array<double, k_band_shares.size()> quantiles{};
};

/// The bands of all days of all cases, in their order.
struct FlowBands {
    std::vector<std::vector<DayBand>> days;  ///< by case, by day of `StudyBasin::measured`
    std::size_t measured_days = 0;
    std::size_t within = 0;  ///< measured days from the 5 % to the 95 % quantile
    bool stopped = false;    ///< the user stopped it, and there are no bands
};

/// @param kept      the numbers of at least one run, each of which has a discharge
/// @param most_bytes of discharges that are kept at once; with more, the runs are computed again for each
/// part of the
///        days, so that quantiles are exact
[[nodiscard]] FlowBands flow_bands(const StudyProblem& problem, const SampleDesign& design,
                                   const std::vector<std::size_t>& kept, StudyPool& pool,
                                   const SearchWatch& watch, std::size_t most_bytes = std::size_t{96} << 20);

/// The quantile of sorted values, with a straight line between neighbours. @param share 0 to 1
[[nodiscard]] double quantile_of(std::span<const double> sorted, double share);

/// How much of a measure's variance comes from one range.
struct Sensitivity {
    double first_order = 0.0;  ///< by this range alone
    double total = 0.0;        ///< with all that it does together with others
};

/// Sensitivity indices from whole groups, by the estimators of Jansen, M. J. W. (1999): Analysis of variance
/// designs for model output. Computer Physics Communications 117, 35-43.
///
/// @param values of a measure, group by group; groups with a missing value do not count
/// @return by dimension; empty where fewer than two groups count or the measure does not vary
[[nodiscard]] std::vector<Sensitivity> sensitivities(std::span<const std::optional<double>> values,
                                                     std::size_t dimensions);

}  // namespace nivora
