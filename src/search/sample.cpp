#include "search/sample.h"

#include <algorithm>
#include <cmath>

namespace nivora {
namespace {

constexpr std::size_t k_runs_at_once = 1024;

std::vector<StudyWorker> workers_of(const StudyProblem& problem, const StudyPool& pool) {
    std::vector<StudyWorker> workers;
    for (unsigned thread = 0; thread < pool.threads(); ++thread) workers.emplace_back(problem);
    return workers;
}

/// Days of a case whose bands are made together.
struct DayPart {
    std::size_t index;  ///< of the case
    std::size_t first;
    std::size_t count;
};

std::vector<DayPart> parts_of(const StudyProblem& problem, std::size_t runs, std::size_t most_bytes) {
    const std::size_t at_once = std::max<std::size_t>(1, most_bytes / sizeof(double) / runs);
    std::vector<DayPart> parts;
    for (std::size_t index = 0; index < problem.cases().size(); ++index) {
        const std::size_t days = problem.cases()[index].basin->measured.dates.size();
        for (std::size_t first = 0; first < days; first += at_once)
            parts.push_back({index, first, std::min(at_once, days - first)});
    }
    return parts;
}

/// @param values of a day, in any order; those that are missing do not count
DayBand band_of(std::span<double> values) {
    const auto behind = std::partition(values.begin(), values.end(), [](double q) { return !is_missing(q); });
    std::sort(values.begin(), behind);
    const std::span<const double> known{values.begin(), behind};
    DayBand band;
    for (std::size_t i = 0; i < k_band_shares.size(); ++i)
        band.quantiles.at(i) = known.empty() ? as_double(k_missing) : quantile_of(known, k_band_shares.at(i));
    return band;
}

void count_within(const StudyProblem& problem, FlowBands& bands) {
    for (std::size_t index = 0; index < bands.days.size(); ++index) {
        const auto& measured = problem.cases()[index].basin->measured.measured;
        for (std::size_t day = 0; day < measured.size(); ++day) {
            if (is_missing(measured[day])) continue;
            ++bands.measured_days;
            const auto& quantiles = bands.days[index][day].quantiles;
            if (measured[day] >= quantiles.front() && measured[day] <= quantiles.back()) ++bands.within;
        }
    }
}

}  // namespace

SampleDesign::SampleDesign(std::size_t dimensions, unsigned seed, bool sensitivity)
    : dimensions_(dimensions),
      group_(sensitivity ? dimensions + 2 : 1),
      sequence_(sensitivity ? 2 * dimensions : dimensions, seed) {}

std::vector<double> SampleDesign::point(std::size_t index) const {
    if (group_ == 1) return sequence_.point(index);
    const std::vector<double> both = sequence_.point(index / group_);
    const auto middle = both.begin() + static_cast<std::ptrdiff_t>(dimensions_);
    const std::size_t place = index % group_;
    if (place == 1) return {middle, both.end()};
    std::vector<double> point{both.begin(), middle};
    if (place > 1) point[place - 2] = both[dimensions_ + place - 2];
    return point;
}

RunSpan part_of(std::size_t pieces, const SampleShare& share) {
    // In two steps, so that no product is too large for a whole number.
    const auto first_of = [&](std::size_t part) {
        return pieces / share.parts * part + std::min(part, pieces % share.parts);
    };
    return {first_of(share.number - 1), first_of(share.number)};
}

RunSpan runs_of(const SampleDesign& design, std::size_t runs, const SampleShare& share) {
    const RunSpan groups = part_of(runs / design.group(), share);
    return {groups.first * design.group(), groups.behind * design.group()};
}

void run_sample(const StudyProblem& problem, const SampleDesign& design, const RunSpan& span, StudyPool& pool,
                const SearchWatch& watch, const std::function<void(const SampleRun&)>& take) {
    std::vector<StudyWorker> workers = workers_of(problem, pool);
    std::vector<SampleRun> runs;
    for (std::size_t first = span.first; first < span.behind && !watch.stops(); first += k_runs_at_once) {
        runs.assign(std::min(k_runs_at_once, span.behind - first), {});
        pool.work(runs.size(), [&](unsigned thread, std::size_t i) {
            SampleRun& run = runs[i];
            run.index = first + i;
            run.numbers = problem.numbers_at(design.point(run.index));
            StudyWorker& worker = workers[thread];
            run.values = worker.run(run.numbers)
                             ? worker.values(problem.fit_days())
                             : std::vector<std::optional<double>>(problem.objectives().size());
        });
        for (const SampleRun& run : runs) take(run);
        watch.progress(first + runs.size() - span.first);
    }
}

double quantile_of(std::span<const double> sorted, double share) {
    const double place = share * static_cast<double>(sorted.size() - 1);
    const auto below = static_cast<std::size_t>(place);
    if (below + 1 >= sorted.size()) return sorted.back();
    const double part = place - static_cast<double>(below);
    return sorted[below] + part * (sorted[below + 1] - sorted[below]);
}

FlowBands flow_bands(const StudyProblem& problem, const SampleDesign& design,
                     const std::vector<std::size_t>& kept, StudyPool& pool, const SearchWatch& watch,
                     std::size_t most_bytes) {
    FlowBands bands;
    for (const StudyCase& one : problem.cases()) bands.days.emplace_back(one.basin->measured.dates.size());
    std::vector<StudyWorker> workers = workers_of(problem, pool);
    std::vector<double> flows;  // by day, then by run
    std::size_t done = 0;
    for (const DayPart& part : parts_of(problem, kept.size(), most_bytes)) {
        flows.resize(part.count * kept.size());
        for (std::size_t first = 0; first < kept.size(); first += k_runs_at_once) {
            if (watch.stops()) return {.days = {}, .stopped = true};
            const std::size_t count = std::min(k_runs_at_once, kept.size() - first);
            pool.work(count, [&](unsigned thread, std::size_t i) {
                const std::size_t run = first + i;
                const bool ran = workers[thread].run(problem.numbers_at(design.point(kept[run])));
                const auto flow = ran ? workers[thread].flow(part.index) : std::span<const double>{};
                for (std::size_t day = 0; day < part.count; ++day)
                    flows[day * kept.size() + run] = ran ? flow[part.first + day] : as_double(k_missing);
            });
            done += count;
            watch.progress(done);
        }
        pool.work(part.count, [&](unsigned /*thread*/, std::size_t day) {
            bands.days[part.index][part.first + day] =
                band_of({flows.data() + day * kept.size(), kept.size()});
        });
    }
    count_within(problem, bands);
    return bands;
}

std::vector<Sensitivity> sensitivities(std::span<const std::optional<double>> values,
                                       std::size_t dimensions) {
    const std::size_t group = dimensions + 2;
    std::vector<std::vector<double>> whole;
    for (std::size_t first = 0; first + group <= values.size(); first += group) {
        std::vector<double> one;
        for (std::size_t i = 0; i < group; ++i) {
            if (values[first + i]) one.push_back(*values[first + i]);
        }
        if (one.size() == group) whole.push_back(std::move(one));
    }
    if (whole.size() < 2 || dimensions == 0) return {};
    const auto count = static_cast<double>(whole.size());
    double sum = 0.0;
    for (const auto& one : whole) sum += one[0] + one[1];
    const double mean = sum / (2.0 * count);
    double variance = 0.0;
    for (const auto& one : whole)
        variance += (one[0] - mean) * (one[0] - mean) + (one[1] - mean) * (one[1] - mean);
    variance /= 2.0 * count - 1.0;
    if (!(variance > 0.0)) return {};
    std::vector<Sensitivity> indices(dimensions);
    for (std::size_t i = 0; i < dimensions; ++i) {
        double from_b = 0.0;
        double from_a = 0.0;
        for (const auto& one : whole) {
            from_b += (one[1] - one[i + 2]) * (one[1] - one[i + 2]);
            from_a += (one[0] - one[i + 2]) * (one[0] - one[i + 2]);
        }
        indices[i] = {.first_order = 1.0 - from_b / (2.0 * count * variance),
                      .total = from_a / (2.0 * count * variance)};
    }
    return indices;
}

}  // namespace nivora
