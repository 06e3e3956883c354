// Results of whole runs, compared to the last bit with stored ones.
//
// NIVORA_RENEW_GOLDEN=1 in the environment rewrites the stored files. A test that does so still fails, so
// that a renewal is never overlooked.
#pragma once

#include "base/durable_file.h"
#include "base/number_text.h"
#include "engine/sim_results.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <bit>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace nivora {

/// FNV-1a over the bits of a column; every missing value has the same bits, whatever made it.
template <typename Value>
[[nodiscard]] std::uint64_t column_checksum(const std::vector<Value>& column) {
    std::uint64_t sum = 0xCBF29CE484222325ULL;
    for (const Value value : column) {
        const auto wide = static_cast<double>(value);
        const auto bits = std::bit_cast<std::uint64_t>(is_missing(wide) ? as_double(k_missing) : wide + 0.0);
        for (unsigned shift = 0; shift < 64; shift += 8)
            sum = (sum ^ ((bits >> shift) & 0xFFU)) * 0x100000001B3ULL;
    }
    return sum;
}

/// A line for each column of a results table, with its checksum.
[[nodiscard]] inline std::string column_checksums(const SimResults& results) {
    std::string text;
    SimResults::visit_named(results, [&](const char* name, const auto& column) {
        text += fmt::format("{:14}{:016x}\n", name, column_checksum(column));
    });
    return text;
}

[[nodiscard]] inline std::string first_difference(const std::string& kept, const std::string& computed) {
    std::istringstream a{kept};
    std::istringstream b{computed};
    std::string line_a;
    std::string line_b;
    for (int number = 1;; ++number) {
        const bool more_a = static_cast<bool>(std::getline(a, line_a));
        const bool more_b = static_cast<bool>(std::getline(b, line_b));
        if (!more_a && !more_b) return "none";
        if (more_a != more_b || line_a != line_b) {
            return fmt::format("line {}:\n  kept     {}\n  computed {}", number,
                               more_a ? line_a : "(no line)", more_b ? line_b : "(no line)");
        }
    }
}

/// Compares a text with a stored one, a file of tests/golden/kept.
inline void expect_golden(const std::string& file, const std::string& computed) {
    const auto kept_file = std::filesystem::path{NIVORA_SOURCE_DIR} / "tests/golden/kept" / file;
    if (std::getenv("NIVORA_RENEW_GOLDEN") != nullptr) {
        write_whole_file(kept_file, computed);
        FAIL() << "renewed " << kept_file;
    }
    const std::string kept = read_whole_file(kept_file, 1U << 24U);
    EXPECT_TRUE(kept == computed) << "first difference, " << first_difference(kept, computed);
}

}  // namespace nivora
