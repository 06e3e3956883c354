#include "search/low_discrepancy.h"

#include <random>

namespace nivora {
namespace {

unsigned next_prime(unsigned number) {
    for (unsigned candidate = number + 1;; ++candidate) {
        bool prime = candidate > 1;
        for (unsigned divisor = 2; divisor * divisor <= candidate && prime; ++divisor)
            prime = candidate % divisor != 0;
        if (prime) return candidate;
    }
}

/// The digits of a number in a base, mirrored at the point: 6 in base 2, 110, becomes 0.011.
double mirrored_digits(std::size_t number, unsigned base) {
    double mirrored = 0.0;
    double place = 1.0 / base;
    for (; number > 0; number /= base, place /= base) mirrored += place * static_cast<double>(number % base);
    return mirrored;
}

}  // namespace

LowDiscrepancy::LowDiscrepancy(std::size_t dimensions, unsigned seed) : shift_(dimensions) {
    std::mt19937_64 chance{seed};
    // Not std::uniform_real_distribution, whose numbers a standard library may choose in its own way.
    for (double& shift : shift_) shift = static_cast<double>(chance() >> 11) * 0x1.0p-53;
}

std::vector<double> LowDiscrepancy::point(std::size_t index) const {
    std::vector<double> point;
    unsigned base = 1;
    for (const double shift : shift_) {
        base = next_prime(base);
        // The first point of the sequence is the corner at 0 in all coordinates.
        const double coordinate = mirrored_digits(index + 1, base) + shift;
        point.push_back(coordinate >= 1.0 ? coordinate - 1.0 : coordinate);
    }
    return point;
}

}  // namespace nivora
