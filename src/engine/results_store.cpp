#include "engine/results_store.h"

#include "store/table_io.h"

#include <bit>
#include <concepts>
#include <cstdint>

namespace nivora {
namespace {

/// Unlike ==, missing values are equal to each other, and the two zeros are not.
bool same_bits(float a, float b) {
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}
bool same_bits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}
template <std::integral Whole>
bool same_bits(Whole a, Whole b) {
    return a == b;
}

}  // namespace

ResultsReplacement::ResultsReplacement(BasinDatabase& database)
    : database_(database), transaction_(database) {
    if (database.has_table(k_sim_results)) database.drop_table(k_sim_results);
    database.create_table(sim_results_table());
}

void ResultsReplacement::commit(const SimResults& results) {
    TableWriter writer{database_, sim_results_table()};
    for (std::size_t row = 0; row < results.size(); ++row) {
        int position = 0;
        SimResults::visit(results, [&](const auto& column) {
            // Most parameters, and what is missing, stay the same from day to day.
            if (row == 0 || !same_bits(column[row], column[row - 1])) writer.set(position, column[row]);
            ++position;
        });
        writer.add();
    }
    transaction_.commit();
}

SimResults load_results(BasinDatabase& database) {
    SimResults results;
    TableReader reader{database, sim_results_table()};
    while (reader.next()) {
        int position = 0;
        SimResults::visit(results, [&](auto& column) { reader.read(position++, column.emplace_back()); });
    }
    return results;
}

}  // namespace nivora
