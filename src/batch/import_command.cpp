#include "base/durable_file.h"
#include "base/number_text.h"
#include "base/text.h"
#include "batch/commands.h"
#include "prep/legacy_import.h"
#include "prep/simulation_grid.h"
#include "session/main_window_rules.h"
#include "store/basin_copy.h"
#include "store/basin_opening.h"
#include "store/scenario_placeholder.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <fmt/format.h>

#include <algorithm>
#include <ostream>

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t k_largest_file = 64U << 20U;
constexpr const char* k_title = "Import failed";

std::optional<Distribution> distribution(bool by_zone) {
    return by_zone ? Distribution::ByZone : Distribution::Basinwide;
}

std::optional<float> single_cell(std::optional<double> value) {
    if (!value) return std::nullopt;
    return static_cast<float>(*value);
}

void apply_options(const ImportCommand& command, Simulation& simulation) {
    simulation.temperature_values = static_cast<std::int16_t>(command.max_min ? 1 : 0);
    simulation.temperature = distribution(command.by_zone.temperature);
    simulation.precipitation = distribution(command.by_zone.precipitation);
    simulation.lapse_rate = distribution(command.by_zone.lapse_rate);
    simulation.runoff_coefficients = distribution(command.by_zone.coefficients);
    simulation.critical_temperature = distribution(command.by_zone.critical_temperature);
    simulation.recession = distribution(command.by_zone.recession);
    simulation.initial_runoff = single_cell(command.initial_runoff);
    if (command.rain_threshold) simulation.precipitation_threshold = single_cell(*command.rain_threshold);
    // The parameter table holds x and y; the index does not keep the two cells.
    simulation.initial_x.reset();
    simulation.initial_y.reset();
}

/// Whether a simulation may have these options; shows the first that is not allowed.
bool options_acceptable(const ImportCommand& command, BatchDialogs& dialogs) {
    Simulation wanted;
    apply_options(command, wanted);
    std::optional<Message> problem = max_min_problem(wanted);
    if (!problem && command.latitude) problem = latitude_problem(*command.latitude);
    if (problem) {
        dialogs.message(*problem);
        return false;
    }
    if (command.initial_runoff && *command.initial_runoff < 0.0) {
        dialogs.stop(
            fmt::format("The initial runoff is {}. A runoff cannot be below 0: give the discharge of the day "
                        "before the simulation starts.",
                        double_text(*command.initial_runoff)),
            "Invalid initial runoff");
        return false;
    }
    return true;
}

/// Puts a simulation into the index: in the place of one of the same name, or after the others.
void store_simulation(BasinDatabase& database, const Simulation& simulation) {
    const TableSchema table = template_table(k_simulation_index);
    auto rows = read_table<Simulation>(database, table);
    const auto same = std::find_if(rows.begin(), rows.end(), [&](const Simulation& row) {
        return same_name(row.name, simulation.name);
    });
    if (same == rows.end()) {
        rows.push_back(simulation);
    } else {
        *same = simulation;
    }
    clear_table(database, k_simulation_index);
    add_rows<Simulation>(database, table, rows);
}

void store_latitude(BasinDatabase& database, double latitude) {
    BasinDescription basin = read_basin_description(database);
    basin.latitude = latitude;
    write_basin_description(database, basin);
}

/// The new simulation, or nothing if the import was refused and the basin is unchanged.
std::optional<Simulation> import_into(BasinDatabase& database, const LegacyFile& file,
                                      const ImportCommand& command, BatchDialogs& dialogs) {
    const std::string offered = offered_simulation_name(path_text(command.file.filename()));
    if (command.name) dialogs.prepare_input(*command.name);
    HeldTransaction transaction{database};
    auto record = import_legacy(database, file, offered, dialogs);
    if (!record) return std::nullopt;
    apply_options(command, record->definition);
    store_simulation(database, record->definition);
    ensure_scenario_placeholder(database, record->definition.name);
    if (command.latitude) store_latitude(database, *command.latitude);
    transaction.commit();
    return record->definition;
}

/// The same into a new basin, which gets its name once it is complete.
std::optional<Simulation> import_into_new(const LegacyFile& file, const ImportCommand& command,
                                          BatchDialogs& dialogs) {
    const PartFile beside{command.basin};
    BasinDatabase::create_template(beside.path());
    std::optional<Simulation> imported;
    {
        BasinDatabase database{beside.path(), Access::ReadWrite};
        imported = import_into(database, file, command, dialogs);
    }
    if (imported) move_basin_to_new_name(beside.path(), command.basin);
    return imported;
}

std::optional<LegacyFile> read_file(const fs::path& path, BatchDialogs& dialogs) {
    try {
        return read_legacy_file(read_whole_file(path, k_largest_file));
    } catch (const LegacyFileError& error) {
        dialogs.report_problem(k_title, fmt::format("The file '{}' can't be read as a legacy data file. {}.",
                                                    path_text(path), error.what()));
    } catch (const FileError& error) {
        dialogs.report_problem(k_title, error.what());
    }
    return std::nullopt;
}

}  // namespace

int import_command(const ImportCommand& command, BatchDialogs& dialogs, std::ostream& out) {
    if (!options_acceptable(command, dialogs)) return k_failed;
    const auto file = read_file(command.file, dialogs);
    if (!file) return k_failed;
    try {
        std::optional<Simulation> imported;
        if (fs::exists(fs::symlink_status(command.basin))) {
            const OpenBasin basin = open_to_write(command.basin, command.wait);
            imported = import_into(basin.database(), *file, command, dialogs);
        } else {
            imported = import_into_new(*file, command, dialogs);
        }
        if (!imported) {
            dialogs.report_problem(k_title, "Nothing was imported. The basin is unchanged.");
            return k_failed;
        }
        out << fmt::format("Imported '{}' into {}: {} zones, {} days from {} to {}.\n", imported->name,
                           path_text(command.basin), file->zones.size(), file->end - file->start + 1,
                           iso_date_text(file->start), iso_date_text(file->end));
        return k_done;
    } catch (const StoreError& error) {
        dialogs.report_problem(k_title, error.what());
    } catch (const FileError& error) {
        dialogs.report_problem(k_title, error.what());
    }
    return k_failed;
}

}  // namespace nivora
