// Rules that hold for any input, tried on random input.
#pragma once

#include "tests/support/printed_seed.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace nivora {

/// Adds random numbers to a test, and trials that stop at the first failure and say how to repeat it.
template <typename Base>
class RandomTrials : public Base {
protected:
    /// Runs a trial this number of times, with a new seed.
    template <typename Trial>
    void try_often(int trials, Trial&& trial) {
        const std::uint32_t seed = printed_seed();
        random.seed(seed);
        for (int i = 1; i <= trials && !testing::Test::HasFailure(); ++i) {
            SCOPED_TRACE("NIVORA_TEST_SEED=" + std::to_string(seed) + ", trial " + std::to_string(i));
            trial();
        }
    }

    double between(double low, double high) { return std::uniform_real_distribution{low, high}(random); }
    int whole_between(int low, int high) { return std::uniform_int_distribution{low, high}(random); }
    bool by_chance(double share) { return between(0.0, 1.0) < share; }

    std::mt19937 random;
};

}  // namespace nivora
