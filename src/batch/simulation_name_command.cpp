#include "base/durable_file.h"
#include "batch/commands.h"
#include "batch/selected_simulation.h"
#include "prep/simulation_copies.h"
#include "store/basin_opening.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <fmt/format.h>

#include <ostream>
#include <span>

namespace nivora {
namespace {

/// Copies the selected simulation and puts the copy at the end of the index. @return what was done
std::string duplicate(BasinDatabase& database, const PrepContext& context, const std::string& name) {
    BasinState& basin = context.basin;
    const std::string copied = basin.Current_Sim_Name;
    HeldTransaction transaction{database};
    const SimulationCopy copy = duplicate_simulation(context, database, *basin.current_row, name);
    add_rows<Simulation>(database, template_table(k_simulation_index),
                         std::span{&basin.simulations.at(copy.row), 1});
    transaction.commit();
    std::string done = fmt::format("Copied '{}' to '{}'", copied, name);
    for (std::size_t i = 0; i < copy.scenarios.size(); ++i)
        done += fmt::format("{} '{}'", i == 0 ? ", with the scenarios" : ",", copy.scenarios[i]);
    return done;
}

std::string rename(BasinDatabase& database, const PrepContext& context, const std::string& name) {
    const std::string former = context.basin.Current_Sim_Name;
    rename_simulation(context, database, *context.basin.current_row, name);
    return fmt::format("Renamed '{}' to '{}'", former, name);
}

}  // namespace

int simulation_name_command(const SimulationNameCommand& command, BatchDialogs& dialogs, std::ostream& out) {
    const char* title = command.copy ? "No simulation was copied" : "No simulation was renamed";
    Desktop no_desktop;
    Session session{dialogs, no_desktop};
    try {
        const OpenBasin basin = open_to_write(command.basin, command.wait);
        BasinDatabase& database = basin.database();
        if (!select_in(session, database, command.basin, command.simulation, dialogs)) return k_failed;
        const PrepContext context{session.basin, session.prep, dialogs};
        const std::size_t row = *session.basin.current_row;
        dialogs.prepare_input(command.name);
        const auto name =
            command.copy ? ask_copy_name(database, context, row) : ask_new_name(database, context, row);
        if (!name) {
            dialogs.report_problem(title, "The basin is unchanged.");
            return k_failed;
        }
        const std::string done =
            command.copy ? duplicate(database, context, *name) : rename(database, context, *name);
        out << fmt::format("{} in {}.\n", done, path_text(command.basin));
        return k_done;
    } catch (const StoreError& error) {
        dialogs.report_problem(title, error.what());
    }
    return k_failed;
}

}  // namespace nivora
