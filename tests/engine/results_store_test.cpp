#include "engine/results_store.h"

#include "tests/support/printed_seed.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <type_traits>

namespace nivora {
namespace {

/// Few values, so that most are the same as in the row before: missing, both zeros, numbers.
template <typename Value>
Value drawn_value(std::mt19937& random) {
    const auto choice = random() % 6;
    if constexpr (std::is_floating_point_v<Value>) {
        if (choice == 0) return static_cast<Value>(k_missing);
        if (choice == 1) return static_cast<Value>(-0.0);
        if (choice < 4) return static_cast<Value>(0.0);
    }
    return static_cast<Value>(choice);
}

TEST(ResultsStore, EachRowKeepsItsOwnValuesAfterEqualAndMissingOnes) {
    std::mt19937 random{printed_seed()};
    SimResults results;
    results.resize(400);
    SimResults::visit(results, [&](auto& column) {
        for (auto& value : column) value = drawn_value<std::decay_t<decltype(value)>>(random);
    });
    const TemporaryFolder folder;
    BasinDatabase::create_template(folder / "basin.mdb");
    BasinDatabase database{folder / "basin.mdb", Access::ReadWrite};
    ResultsReplacement{database}.commit(results);

    // The file holds no negative zero.
    SimResults::visit(results, [](auto& column) {
        for (auto& value : column) value = value == 0 ? 0 : value;
    });
    const SimResults stored = load_results(database);
    ASSERT_EQ(stored.size(), results.size());
    std::vector<std::vector<double>> expected;
    SimResults::visit(results,
                      [&](const auto& column) { expected.emplace_back(column.begin(), column.end()); });
    std::size_t field = 0;
    SimResults::visit(stored, [&](const auto& column) {
        for (std::size_t row = 0; row < column.size(); ++row) {
            const double value = static_cast<double>(column[row]);
            const double wanted = expected[field][row];
            EXPECT_TRUE(is_missing(wanted) ? is_missing(value)
                                           : std::memcmp(&value, &wanted, sizeof value) == 0)
                << "field " << field << ", row " << row << ": " << value << " for " << wanted;
        }
        ++field;
    });
}

}  // namespace
}  // namespace nivora
