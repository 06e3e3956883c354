#include "engine/results_store.h"

#include "store/table_io.h"

#include <SQLiteCpp/Statement.h>

namespace nivora {
namespace {

std::string insert_statement(const TableSchema& table) {
    std::string places;
    for (std::size_t i = 0; i < table.fields.size(); ++i) places += i == 0 ? "?" : ", ?";
    return "INSERT INTO " + quoted_name(table.name) + " VALUES (" + places + ")";
}

}  // namespace

ResultsReplacement::ResultsReplacement(BasinDatabase& database)
    : database_(database), transaction_(database) {
    if (database.has_table(k_sim_results)) database.drop_table(k_sim_results);
    database.create_table(sim_results_table());
}

void ResultsReplacement::commit(const SimResults& results) {
    guarded([&] {
        SQLite::Statement insert{database_.sql(), insert_statement(sim_results_table())};
        for (std::size_t row = 0; row < results.size(); ++row) {
            int position = 1;
            SimResults::visit(results,
                              [&](const auto& column) { bind_value(insert, position++, column[row]); });
            insert.exec();
            insert.reset();
        }
        transaction_.commit();
    });
}

SimResults load_results(BasinDatabase& database) {
    return guarded([&] {
        SimResults results;
        const TableSchema table = sim_results_table();
        const std::string name = quoted_name(database.existing_table(table.name));
        SQLite::Statement query{database.sql(),
                                "SELECT " + field_list(table) + " FROM " + name + " ORDER BY rowid"};
        while (query.executeStep()) {
            int position = 0;
            SimResults::visit(results,
                              [&](auto& column) { read_value(query, position++, column.emplace_back()); });
        }
        return results;
    });
}

}  // namespace nivora
