// Seeds for tests over random values: new ones at every run, and printed, so that a failure can be had again.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

namespace nivora {

/// A new seed, or the one that the environment variable NIVORA_TEST_SEED states; prints it either way.
[[nodiscard]] inline std::uint32_t printed_seed() {
    const char* wanted = std::getenv("NIVORA_TEST_SEED");
    const auto seed = wanted != nullptr ? static_cast<std::uint32_t>(std::stoul(wanted))
                                        : static_cast<std::uint32_t>(std::random_device{}());
    std::cout << "NIVORA_TEST_SEED=" << seed << '\n';
    return seed;
}

}  // namespace nivora
