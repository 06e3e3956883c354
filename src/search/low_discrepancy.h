// Points that fill the unit cube evenly, by number: the Halton sequence, shifted by a seed.
//
// Halton, J. H. (1960): On the efficiency of certain quasi-random sequences of points in evaluating
// multi-dimensional integrals. Numerische Mathematik 2, 84-90.
#pragma once

#include <cstddef>
#include <vector>

namespace nivora {

/// The points of a sequence; each has its own shift around the cube, which the seed gives, so that two seeds
/// give two samples.
class LowDiscrepancy {
public:
    LowDiscrepancy(std::size_t dimensions, unsigned seed);

    /// @param index from 0
    [[nodiscard]] std::vector<double> point(std::size_t index) const;

private:
    std::vector<double> shift_;
};

}  // namespace nivora
