#include "base/durable_file.h"
#include "batch/commands.h"
#include "store/basin_opening.h"
#include "store/basin_salvage.h"

#include <fmt/format.h>

#include <ostream>

namespace nivora {
namespace {

constexpr int k_most_faults_of_structure = 100;

/// The rows can be compared only if the structure that holds them is sound.
std::vector<BasinDamage> all_damage(BasinDatabase& database) {
    std::vector<BasinDamage> damage = structure_damage(database, k_most_faults_of_structure);
    return damage.empty() ? content_damage(database) : damage;
}

}  // namespace

int check_command(const std::filesystem::path& basin, std::chrono::milliseconds wait, BatchDialogs& dialogs,
                  std::ostream& out) {
    try {
        const OpenBasin open = open_to_read(basin, wait, Check::Nothing);
        const auto damage = all_damage(open.database());
        for (const BasinDamage& entry : damage)
            out << (entry.table.empty() ? "The file" : entry.table) << ": " << entry.what << '\n';
        if (damage.empty()) {
            out << fmt::format("The basin {} is sound.\n", path_text(basin));
            return k_done;
        }
        dialogs.report_problem("The basin is not sound",
                               fmt::format("Faults found in the file '{}': {}. They are listed above.",
                                           path_text(basin), damage.size()));
    } catch (const StoreError& error) {
        dialogs.report_problem("The basin can't be read", error.what());
    }
    return k_failed;
}

int salvage_command(const std::filesystem::path& damaged, const std::filesystem::path& made,
                    BatchDialogs& dialogs, std::ostream& out) {
    try {
        bool whole = true;
        for (const SalvagedTable& table : salvage_basin(damaged, made)) {
            out << fmt::format("{}: {} rows\n", table.name, table.rows);
            for (const std::string& loss : table.losses) out << "    not copied: " << loss << '\n';
            whole = whole && table.losses.empty();
        }
        // A row that was copied under a wrong day shows up as missing, or as a duplicate.
        const OpenBasin open = open_to_read(made, k_usual_wait, Check::All);
        for (const BasinDamage& entry : content_damage(open.database())) {
            out << entry.table << ": " << entry.what << '\n';
            whole = false;
        }
        if (whole) return k_done;
        dialogs.report_problem(
            "Not everything was copied",
            fmt::format("The list above says what is missing from the file '{}' and what is wrong in it.",
                        path_text(made)));
    } catch (const StoreError& error) {
        dialogs.report_problem("Nothing was salvaged", error.what());
    } catch (const FileError& error) {
        dialogs.report_problem("Nothing was salvaged", error.what());
    }
    return k_failed;
}

}  // namespace nivora
