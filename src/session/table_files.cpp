#include "session/table_files.h"

#include "base/output_file.h"
#include "base/text.h"
#include "prep/table_export.h"
#include "store/basin_marks.h"
#include "store/schema.h"

namespace nivora {
namespace {

constexpr const char* k_results = "SimResults";

}  // namespace

std::vector<ChosenTable> loadable_tables(const BasinState& basin) {
    std::vector<ChosenTable> tables{{k_physical_data, "Daily variables"},
                                    {k_basin_averages, "Long-term monthly averages"}};
    tables.reserve(tables.size() + basin.simulations.size());
    for (const Simulation& simulation : basin.simulations)
        tables.push_back({simulation.name, "Parameters of " + simulation.name});
    return tables;
}

std::vector<ChosenTable> writable_tables(const BasinState& basin) {
    std::vector<ChosenTable> tables = loadable_tables(basin);
    try {
        BasinDatabase database{basin.Work_File, Access::ReadOnly};
        std::erase_if(tables, [&](const ChosenTable& each) { return !database.has_table(each.name); });
    } catch (const StoreError&) {
        // The export of a table says what is wrong with the file.
    }
    if (basin.Output_Valid) tables.push_back({k_results, "Results of the last run"});
    return tables;
}

Units units_of_table(const BasinState& basin, const std::string& table) {
    if (const auto row = find_simulation(basin, table))
        return basin.simulations[*row].units.value_or(basin.basin_units);
    return same_name(table, k_results) ? basin.Units_Code : basin.basin_units;
}

std::string unreadable_table(const BasinState& basin, const std::filesystem::path& file) {
    std::error_code fault;
    if (!std::filesystem::is_regular_file(file, fault))
        return "This is no file with a table: choose a file with rows of text.";
    if (same_file(file, basin.Work_File) || (!basin.Basin_File.empty() && same_file(file, basin.Basin_File)))
        return "This is the open basin itself. Choose a file with rows of text.";
    return {};
}

bool results_may_be_lost(Session& session) {
    if (!session.basin.Output_Valid) return true;
    return session.dialogs.message(
               {.text = "After these changes to your database are recorded, "
                        "plots and reports using computed values\n"
                        "will be disabled pending another successful model 'run'.  Save changes?",
                .title =
                    "Database changes disable all model output (plots, reports) that utilize computed values",
                .buttons = Buttons::YesNo}) == Answer::Yes;
}

void table_was_loaded(Session& session) {
    mark_output_invalid(session.basin);
    session.run.ClimateStep = 0;
    mark_input_changed(session.basin);
}

void write_table(const BasinState& basin, const std::string& table, bool with_units,
                 const std::filesystem::path& file) {
    BasinDatabase database{basin.Work_File, Access::ReadOnly};
    const std::string stored = database.existing_table(table);
    OutputFile target{file, {basin.Work_File, basin.Basin_File}};
    const auto units = with_units ? std::optional{units_of_table(basin, table)} : std::nullopt;
    write_csv(database, stored, units, [&](std::string_view piece) { target.write(piece); });
    target.finish();
}

}  // namespace nivora
