#include "search/low_discrepancy.h"

#include <pagmo/utils/discrepancy.hpp>

#include <cmath>
#include <limits>
#include <random>
#include <stdexcept>

namespace nivora {

LowDiscrepancy::LowDiscrepancy(std::size_t dimensions, unsigned seed) : shift_(dimensions) {
    std::mt19937_64 chance{seed};
    // Not std::uniform_real_distribution, whose numbers a standard library may choose in its own way.
    for (double& shift : shift_) shift = static_cast<double>(chance() >> 11) * 0x1.0p-53;
}

std::vector<double> LowDiscrepancy::point(std::size_t index) const {
    if (shift_.empty()) return {};
    if (index >= std::numeric_limits<unsigned>::max())
        throw std::length_error{"too many points of a sequence"};
    // The first point of the sequence is the corner at 0 in all coordinates.
    pagmo::halton sequence{static_cast<unsigned>(shift_.size()), static_cast<unsigned>(index) + 1};
    std::vector<double> point = sequence();
    for (std::size_t i = 0; i < point.size(); ++i) {
        point[i] += shift_[i];
        if (point[i] >= 1.0) point[i] -= 1.0;
    }
    return point;
}

}  // namespace nivora
