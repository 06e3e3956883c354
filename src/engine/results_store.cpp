#include "engine/results_store.h"

#include "store/table_io.h"

#include <cstring>

namespace nivora {
namespace {

/// Unlike ==, the same missing values are equal, and the two zeros are not.
template <typename Value>
bool same_bytes(const Value& a, const Value& b) {
    return std::memcmp(&a, &b, sizeof(Value)) == 0;
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
            if (row == 0 || !same_bytes(column[row], column[row - 1])) writer.set(position, column[row]);
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
