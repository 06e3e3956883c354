// The module: pagmo's methods behind plain functions.
#include "base/version.h"
#include "search/methods.h"

#include <pagmo/algorithm.hpp>
#include <pagmo/algorithms/cmaes.hpp>
#include <pagmo/algorithms/nsga2.hpp>
#include <pagmo/batch_evaluators/member_bfe.hpp>
#include <pagmo/bfe.hpp>
#include <pagmo/population.hpp>
#include <pagmo/problem.hpp>

#include <utility>
#include <vector>

namespace nivora {
namespace {

using Numbers = std::vector<double>;

std::pair<Numbers, Numbers> unit_cube(std::size_t dimensions) {
    return {Numbers(dimensions, 0.0), Numbers(dimensions, 1.0)};
}

Numbers slice(const double* all, std::size_t index, std::size_t width) {
    return {all + index * width, all + (index + 1) * width};
}

/// A climb as pagmo sees it. pagmo copies its problems, and all copies are the same climb.
struct ClimbProblem {
    const NivoraClimb* climb = nullptr;

    [[nodiscard]] Numbers fitness(const Numbers& point) const {
        return {climb->evaluate(climb->context, point.data())};
    }
    [[nodiscard]] std::pair<Numbers, Numbers> get_bounds() const { return unit_cube(climb->dimensions); }
    template <typename Archive>
    void serialize(Archive& /*archive*/, unsigned /*version*/) {}
};

struct GenerationsProblem {
    const NivoraGenerations* search = nullptr;

    [[nodiscard]] Numbers fitness(const Numbers& point) const { return batch_fitness(point); }
    [[nodiscard]] std::pair<Numbers, Numbers> get_bounds() const { return unit_cube(search->dimensions); }
    [[nodiscard]] std::size_t get_nobj() const { return search->objectives; }
    [[nodiscard]] Numbers batch_fitness(const Numbers& points) const {
        const std::size_t count = points.size() / search->dimensions;
        Numbers costs(count * search->objectives);
        search->evaluate(search->context, points.data(), count, costs.data());
        return costs;
    }
    template <typename Archive>
    void serialize(Archive& /*archive*/, unsigned /*version*/) {}
};

void climb(const NivoraClimb& climb) {
    pagmo::population population{pagmo::problem{ClimbProblem{&climb}}, 0U, climb.seed};
    for (std::size_t i = 0; i < climb.members; ++i)
        population.push_back(slice(climb.starts, i, climb.dimensions));
    const pagmo::algorithm method{pagmo::cmaes{climb.generations, -1, -1, -1, -1, climb.first_step,
                                               climb.least_gain, climb.least_step, false, true, climb.seed}};
    static_cast<void>(method.evolve(population));
}

void generations(const NivoraGenerations& search) {
    const pagmo::problem problem{GenerationsProblem{&search}};
    const pagmo::bfe batches{pagmo::member_bfe{}};
    pagmo::population population{problem, 0U, search.seed};
    const Numbers costs =
        batches(problem, Numbers(search.starts, search.starts + search.members * search.dimensions));
    for (std::size_t i = 0; i < search.members; ++i) {
        population.push_back(slice(search.starts, i, search.dimensions),
                             slice(costs.data(), i, search.objectives));
    }
    pagmo::nsga2 method{search.generations, 0.95, 10.0, 1.0 / static_cast<double>(search.dimensions), 50.0,
                        search.seed};
    method.set_bfe(batches);
    static_cast<void>(method.evolve(population));
}

}  // namespace
}  // namespace nivora

extern "C" {

const char* nivora_module_version();
const char* nivora_module_version() { return nivora::k_version; }

void nivora_climb(const NivoraClimb* climb);
void nivora_climb(const NivoraClimb* climb) { nivora::climb(*climb); }

void nivora_generations(const NivoraGenerations* search);
void nivora_generations(const NivoraGenerations* search) { nivora::generations(*search); }
}
