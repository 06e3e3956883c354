// Seeds for tests with random values: new in every run, and printed, so that a failure can be reproduced.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

namespace nivora {

/// A new seed, or the one in the environment variable NIVORA_TEST_SEED; printed in either case.
[[nodiscard]] inline std::uint32_t printed_seed() {
    const char* wanted = std::getenv("NIVORA_TEST_SEED");
    const auto seed = wanted != nullptr ? static_cast<std::uint32_t>(std::stoul(wanted))
                                        : static_cast<std::uint32_t>(std::random_device{}());
    std::cout << "NIVORA_TEST_SEED=" << seed << '\n';
    return seed;
}

}  // namespace nivora
