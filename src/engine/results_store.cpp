#include "engine/results_store.h"

#include "store/table_io.h"

namespace nivora {

ResultsReplacement::ResultsReplacement(BasinDatabase& database)
    : database_(database), transaction_(database) {
    if (database.has_table(k_sim_results)) database.drop_table(k_sim_results);
    database.create_table(sim_results_table());
}

void ResultsReplacement::commit(const SimResults& results) {
    TableWriter writer{database_, sim_results_table()};
    for (std::size_t row = 0; row < results.size(); ++row) {
        int position = 0;
        SimResults::visit(results, [&](const auto& column) { writer.set(position++, column[row]); });
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
