// The methods of searches, which a module beside the program brings: it needs a library that takes longer to
// load than most commands take to run.
#pragma once

#include <cstddef>

extern "C" {

/// A climb by CMA-ES in the unit cube. All pointers belong to the caller.
struct NivoraClimb {
    std::size_t dimensions;
    std::size_t members;   ///< of a generation
    const double* starts;  ///< the first points, `members` of them one after another; they are evaluated, too
    unsigned generations;  ///< at most
    double first_step;
    double least_gain;
    double least_step;
    unsigned seed;
    /// @return the cost of a point; it may throw, which ends the climb
    double (*evaluate)(void* context, const double* point);
    void* context;
};

/// Generations by NSGA-II in the unit cube.
struct NivoraGenerations {
    std::size_t dimensions;
    std::size_t objectives;
    std::size_t members;   ///< a multiple of four
    const double* starts;  ///< the first generation
    unsigned generations;  ///< after the first one
    unsigned seed;
    /// Computes the costs of points one after another, for each point its objectives; it may throw, which
    /// ends the search.
    void (*evaluate)(void* context, const double* points, std::size_t count, double* costs);
    void* context;
};

/// The functions of the module, by the names `nivora_climb` and `nivora_generations`.
using NivoraClimbFunction = void (*)(const NivoraClimb*);
using NivoraGenerationsFunction = void (*)(const NivoraGenerations*);
}

namespace nivora {

struct SearchMethods {
    NivoraClimbFunction climb;
    NivoraGenerationsFunction generations;
};

/// Loads the module at the first call; it stays loaded.
/// @throws FileError where it can't be loaded
[[nodiscard]] const SearchMethods& search_methods();

}  // namespace nivora
