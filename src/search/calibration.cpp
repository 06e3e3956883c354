#include "search/calibration.h"

#include "search/low_discrepancy.h"
#include "search/methods.h"

#include <algorithm>
#include <cmath>
#include <mutex>
#include <utility>

namespace nivora {
namespace {

/// The cost of a run without the measure. Finite, since the methods compute with costs.
constexpr double k_failed_cost = 1.0e30;
constexpr std::size_t k_evaluations_a_lane = 1000;
constexpr std::size_t k_most_lanes = 16;
constexpr std::size_t k_most_in_population = 100;
constexpr double k_first_step = 0.25;  // of the width of a range
constexpr double k_least_gain = 1.0e-9;
constexpr double k_least_step = 1.0e-9;

using Point = std::vector<double>;
using Costs = std::vector<double>;

/// Ends the work of a method that cannot be asked to end.
struct EndOfLane {};

/// A point that was evaluated.
struct Rated {
    Point point;
    Costs costs;
};

bool failed(const Costs& costs) {
    return std::any_of(costs.begin(), costs.end(), [](double cost) { return cost >= k_failed_cost; });
}

/// Whether costs are better than others in one objective and worse in none.
bool dominates(const Costs& costs, const Costs& others) {
    bool better = false;
    for (std::size_t i = 0; i < costs.size(); ++i) {
        if (costs[i] > others[i]) return false;
        better = better || costs[i] < others[i];
    }
    return better;
}

/// The points that no other one dominates, in the order in which they came.
class Front {
public:
    void add(const Point& point, const Costs& costs) {
        if (failed(costs)) return;
        const bool beaten = std::any_of(rated_.begin(), rated_.end(), [&](const Rated& rated) {
            return rated.costs == costs || dominates(rated.costs, costs);
        });
        if (beaten) return;
        std::erase_if(rated_, [&](const Rated& rated) { return dominates(costs, rated.costs); });
        rated_.push_back({point, costs});
    }
    [[nodiscard]] const std::vector<Rated>& rated() const { return rated_; }

private:
    std::vector<Rated> rated_;
};

/// What all lanes of a search share.
struct Shared {
    const StudyProblem& problem;
    const SearchOptions& options;
    StudyJournal& journal;
    const SearchWatch& watch;
    std::atomic<std::size_t> done{0};
    std::atomic<std::size_t> failures{0};
    std::atomic<bool> stopped{false};

    [[nodiscard]] Costs costs_of(StudyWorker& worker, const Point& point) const {
        Costs costs(problem.objectives().size(), k_failed_cost);
        if (!worker.run(problem.numbers_at(point))) return costs;
        const auto values = worker.values(problem.fit_days());
        for (std::size_t i = 0; i < costs.size(); ++i) {
            if (!values[i] || !std::isfinite(*values[i])) return Costs(costs.size(), k_failed_cost);
            costs[i] = std::min(problem.objectives()[i]->cost(*values[i]), k_failed_cost / 10.0);
        }
        return costs;
    }

    void count(const Costs& costs) {
        if (failed(costs)) ++failures;
        watch.progress(++done);
    }

    void throw_if_stopped() {
        if (!stopped && watch.stops()) stopped = true;
        if (stopped) throw EndOfLane{};
    }
};

/// A lane of a search with one objective: a sequence of evaluations that depends on nothing outside it.
class Lane {
public:
    Lane(Shared& shared, std::size_t number, std::size_t budget)
        : shared_(shared),
          number_(number),
          budget_(budget),
          worker_(shared.problem),
          starts_(shared.problem.dimensions(), shared.options.seed + static_cast<unsigned>(number) * 7919U) {}

    [[nodiscard]] const Front& front() const { return front_; }

    double evaluate(const Point& point) {
        if (used_ == budget_) throw EndOfLane{};
        shared_.throw_if_stopped();
        auto costs = shared_.journal.next(number_);
        if (!costs) {
            costs = shared_.costs_of(worker_, point);
            shared_.journal.keep(number_, *costs);
        }
        ++used_;
        front_.add(point, *costs);
        shared_.count(*costs);
        return costs->front();
    }

    void work();

private:
    void climb(std::size_t members, unsigned round);

    Shared& shared_;
    std::size_t number_;
    std::size_t budget_;
    std::size_t used_ = 0;
    StudyWorker worker_;
    LowDiscrepancy starts_;
    std::size_t next_start_ = 0;
    Front front_;
};

/// One climb from a new start. The best of the first points is where it begins.
void Lane::climb(std::size_t members, unsigned round) {
    const std::size_t dimensions = shared_.problem.dimensions();
    Point starts;
    if (number_ == 0 && round == 0) starts = shared_.problem.unchanged_point();
    while (starts.size() < members * dimensions) {
        const Point start = starts_.point(next_start_++);
        starts.insert(starts.end(), start.begin(), start.end());
    }
    const NivoraClimb climb{
        .dimensions = dimensions,
        .members = members,
        .starts = starts.data(),
        .generations = static_cast<unsigned>((budget_ - used_) / members + 1),
        .first_step = k_first_step,
        .least_gain = k_least_gain,
        .least_step = k_least_step,
        .seed = shared_.options.seed + static_cast<unsigned>(number_) * 104729U + round * 1299709U,
        .evaluate =
            [](void* lane, const double* point) {
                auto& own = *static_cast<Lane*>(lane);
                return own.evaluate({point, point + own.shared_.problem.dimensions()});
            },
        .context = this};
    search_methods().climb(&climb);
}

void Lane::work() {
    const auto dimensions = static_cast<double>(shared_.problem.dimensions());
    const auto members = std::max<std::size_t>(8, 4 + static_cast<std::size_t>(3.0 * std::log(dimensions)));
    try {
        for (unsigned round = 0; used_ < budget_; ++round) climb(members, round);
    } catch (const EndOfLane&) {
        // its budget is used, or the user stopped the search
    }
}

/// The search with several objectives, whose runs of a generation are shared out to the threads.
class Generations {
public:
    Generations(Shared& shared, StudyPool& pool) : shared_(shared), pool_(pool) {
        for (unsigned thread = 0; thread < pool.threads(); ++thread) workers_.emplace_back(shared.problem);
    }

    /// @param points one after another @return their costs, one after another
    Costs evaluate(const Point& points) {
        const std::size_t dimensions = shared_.problem.dimensions();
        const std::size_t count = points.size() / dimensions;
        std::vector<Rated> batch(count);
        std::size_t known = 0;
        shared_.throw_if_stopped();
        for (std::size_t i = 0; i < count; ++i) {
            const auto first = points.begin() + static_cast<std::ptrdiff_t>(i * dimensions);
            batch[i].point.assign(first, first + static_cast<std::ptrdiff_t>(dimensions));
            if (known < i) continue;
            if (auto costs = shared_.journal.next(0)) {
                batch[i].costs = std::move(*costs);
                ++known;
            }
        }
        pool_.work(count - known, [&](unsigned thread, std::size_t index) {
            Rated& rated = batch[known + index];
            rated.costs = shared_.costs_of(workers_[thread], rated.point);
        });
        Costs all;
        for (std::size_t i = 0; i < count; ++i) {
            if (i >= known) shared_.journal.keep(0, batch[i].costs);
            front_.add(batch[i].point, batch[i].costs);
            shared_.count(batch[i].costs);
            all.insert(all.end(), batch[i].costs.begin(), batch[i].costs.end());
        }
        return all;
    }

    void work();
    [[nodiscard]] const Front& front() const { return front_; }

private:
    Shared& shared_;
    StudyPool& pool_;
    std::vector<StudyWorker> workers_;
    Front front_;
};

void Generations::work() {
    const SearchOptions& options = shared_.options;
    // A multiple of four, as the method asks.
    const std::size_t members =
        std::clamp<std::size_t>(options.evaluations / 20, 8, k_most_in_population) / 4 * 4;
    const auto generations =
        static_cast<unsigned>(std::max<std::size_t>(1, options.evaluations / members) - 1);
    const LowDiscrepancy sequence{shared_.problem.dimensions(), options.seed};
    Point starts = shared_.problem.unchanged_point();
    for (std::size_t i = 1; i < members; ++i) {
        const Point start = sequence.point(i);
        starts.insert(starts.end(), start.begin(), start.end());
    }
    const NivoraGenerations search{
        .dimensions = shared_.problem.dimensions(),
        .objectives = shared_.problem.objectives().size(),
        .members = members,
        .starts = starts.data(),
        .generations = generations,
        .seed = options.seed,
        .evaluate =
            [](void* context, const double* points, std::size_t count, double* costs) {
                auto& own = *static_cast<Generations*>(context);
                const Costs all = own.evaluate({points, points + count * own.shared_.problem.dimensions()});
                std::copy(all.begin(), all.end(), costs);
            },
        .context = this};
    try {
        search_methods().generations(&search);
    } catch (const EndOfLane&) {
        // the user stopped the search
    }
}

/// The evaluations of a lane of so many.
std::size_t lane_budget(const SearchOptions& options, std::size_t lanes, std::size_t number) {
    const std::size_t rest = number < options.evaluations % lanes ? 1 : 0;
    return options.evaluations / lanes + rest;
}

FoundSet found_set(StudyWorker& worker, const StudyProblem& problem, const Point& point) {
    FoundSet set{.numbers = problem.numbers_at(point), .fit = {}, .check = {}};
    const bool ran = worker.run(set.numbers);
    const std::vector<std::optional<double>> none(problem.objectives().size());
    set.fit = ran ? worker.values(problem.fit_days()) : none;
    set.check = ran ? worker.values(problem.check_days()) : none;
    return set;
}

/// The simulation as it is. The number that changes nothing is missing where a range sets values.
FoundSet unchanged_set(const StudyProblem& problem) {
    std::vector<StudyCase> cases = problem.cases();
    for (StudyCase& one : cases) one.ranges.clear();
    const StudyProblem plain{std::move(cases), problem.objectives()};
    StudyWorker worker{plain};
    FoundSet set = found_set(worker, plain, {});
    for (const FreeRange& range : problem.ranges()) {
        const bool sets = range.action == AdjustAction::Set;
        set.numbers.push_back(sets ? as_double(k_missing)
                                   : (range.action == AdjustAction::Multiply ? 1.0 : 0.0));
    }
    return set;
}

}  // namespace

std::size_t search_lanes(const StudyProblem& problem, const SearchOptions& options) {
    if (problem.objectives().size() > 1 || problem.dimensions() == 0) return 1;
    return std::clamp<std::size_t>(options.evaluations / k_evaluations_a_lane, 1, k_most_lanes);
}

StudyJournal::Costs lane_costs(const StudyProblem& problem, const SearchOptions& options, std::size_t lane,
                               StudyPool& pool, const SearchWatch& watch) {
    const std::size_t lanes = search_lanes(problem, options);
    StudyJournal journal{std::vector<StudyJournal::Costs>(lanes)};
    Shared shared{problem, options, journal, watch};
    if (problem.dimensions() == 0) return {};
    if (problem.objectives().size() > 1) {
        Generations{shared, pool}.work();
    } else {
        Lane{shared, lane, lane_budget(options, lanes, lane)}.work();
    }
    return journal.kept(lane);
}

FoundSets search(const StudyProblem& problem, const SearchOptions& options, StudyPool& pool,
                 StudyJournal& journal, const SearchWatch& watch) {
    Shared shared{problem, options, journal, watch};
    Front front;
    StudyWorker worker{problem};
    if (problem.dimensions() == 0) {
        const Costs costs = shared.costs_of(worker, {});
        front.add({}, costs);
        shared.count(costs);
    } else if (problem.objectives().size() > 1) {
        Generations generations{shared, pool};
        generations.work();
        front = generations.front();
    } else {
        const std::size_t count = search_lanes(problem, options);
        std::vector<Front> fronts(count);
        pool.work(count, [&](unsigned /*thread*/, std::size_t number) {
            Lane lane{shared, number, lane_budget(options, count, number)};
            lane.work();
            fronts[number] = lane.front();
        });
        for (const Front& one : fronts) {
            for (const Rated& rated : one.rated()) front.add(rated.point, rated.costs);
        }
    }
    journal.flush();

    FoundSets found;
    std::vector<Rated> rated = front.rated();
    std::stable_sort(rated.begin(), rated.end(),
                     [](const Rated& a, const Rated& b) { return a.costs < b.costs; });
    for (const Rated& one : rated) found.sets.push_back(found_set(worker, problem, one.point));
    found.unchanged = unchanged_set(problem);
    found.evaluations = shared.done;
    found.failed = shared.failures;
    found.stopped = shared.stopped;
    return found;
}

}  // namespace nivora
