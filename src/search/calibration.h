// The search for the numbers that make a simulation meet the measured discharge best. The methods are
// pagmo's: CMA-ES for one objective, NSGA-II for several.
#pragma once

#include "search/study_journal.h"
#include "search/study_problem.h"
#include "studies/study_pool.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace nivora {

/// How a search goes. The same numbers give the same result, with any number of threads.
struct SearchOptions {
    std::size_t evaluations = 5000;  ///< at most; at least 1
    unsigned seed = 1;
};

/// A set of numbers that was found, one for each range.
struct FoundSet {
    std::vector<double> numbers;
    std::vector<std::optional<double>> fit;    ///< measures on the fit days, by objective
    std::vector<std::optional<double>> check;  ///< measures on the check days; nothing without such days
};

/// What a search found.
struct FoundSets {
    /// One objective: the best set. Several: the front of compromises, none better than another in all
    /// objectives, from the best to the worst in the first one. Empty where no run had the measures.
    std::vector<FoundSet> sets;
    FoundSet unchanged;           ///< the simulation as it is; a range that sets values has no number
    std::size_t evaluations = 0;  ///< that were computed or taken from the journal
    std::size_t failed = 0;       ///< of these, those that gave no measure
    bool stopped = false;         ///< whether the user stopped it: the sets are the best so far
};

/// What a search asks and tells while it works; called from several threads.
struct SearchWatch {
    std::function<bool()> stops = [] { return false; };
    std::function<void(std::size_t done)> progress = [](std::size_t) {};
};

/// The number of lanes of the journal of a search.
[[nodiscard]] std::size_t search_lanes(const StudyProblem& problem, const SearchOptions& options);

/// The costs of one lane's evaluations, which depend on no other lane: with those of all lanes in its journal
/// a search computes nothing again, wherever the lanes were walked.
///
/// @param lane from 0 @return fewer costs where the watch stopped it
[[nodiscard]] StudyJournal::Costs lane_costs(const StudyProblem& problem, const SearchOptions& options,
                                             std::size_t lane, StudyPool& pool, const SearchWatch& watch);

/// @throws FileError where the journal cannot be written
[[nodiscard]] FoundSets search(const StudyProblem& problem, const SearchOptions& options, StudyPool& pool,
                               StudyJournal& journal, const SearchWatch& watch);

}  // namespace nivora
