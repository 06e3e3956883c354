#include "session/simulation_list.h"

#include "base/text.h"
#include "prep/sim_options.h"
#include "prep/simulation_copies.h"
#include "prep/simulation_grid.h"
#include "prep/simulation_names.h"
#include "session/availability.h"
#include "session/listed_runs.h"
#include "session/main_window_rules.h"
#include "store/basin_marks.h"
#include "store/transactions.h"

namespace nivora {

bool name_new_simulation(Session& session) {
    BasinDatabase database{session.basin.Work_File, Access::ReadWrite};
    HeldTransaction transaction{database};
    const auto name = Add_Simulation_Name(database, session.dialogs, {});
    if (!name) return false;
    transaction.commit();
    // The parameter table of an overwritten simulation is already deleted, even if the user cancels.
    if (find_simulation(session.basin, *name)) mark_input_changed(session.basin);
    session.prep.working_record = new_simulation_record(session.basin, *name);
    session.prep.SimOptions_Mode = SimOptionsMode::Add;
    return true;
}

void delete_simulation_row(Session& session, std::size_t row) {
    {
        BasinDatabase database{session.basin.Work_File, Access::ReadWrite};
        Delete_Simulation({session.basin, session.prep, session.dialogs}, database, row);
    }
    Repaint_Sim_Grid(session);
    session.basin.current_row.reset();
    session.basin.Current_Sim_Name = k_no_simulation;
    simulation_was_deleted(session);
}

std::optional<std::vector<std::string>> duplicate_simulation_row(Session& session, std::size_t row) {
    SimulationCopy copy;
    {
        const PrepContext context{session.basin, session.prep, session.dialogs};
        BasinDatabase database{session.basin.Work_File, Access::ReadWrite};
        const auto name = ask_copy_name(database, context, row);
        if (!name) return std::nullopt;
        copy = duplicate_simulation(context, database, row, *name);
    }
    Repaint_Sim_Grid(session);
    choose_simulation_row(session, copy.row);
    simulation_was_renamed(session);
    return copy.scenarios;
}

std::optional<std::string> rename_simulation_row(Session& session, std::size_t row) {
    const std::string former = session.basin.simulations.at(row).name;
    {
        const PrepContext context{session.basin, session.prep, session.dialogs};
        BasinDatabase database{session.basin.Work_File, Access::ReadWrite};
        const auto name = ask_new_name(database, context, row);
        if (!name) return std::nullopt;
        rename_simulation(context, database, row, *name);
        if (same_name(session.run.LastRunSimulation, former)) session.run.LastRunSimulation = *name;
        session.runs.rename(open_basin_name(session.basin), former, *name);
    }
    simulation_was_renamed(session);
    return former;
}

void definition_was_closed(Session& session, bool accepted, std::optional<std::size_t> row_before) {
    Repaint_Sim_Grid(session);
    // A definition that was refused in the end may still have added or changed its row.
    const auto row = session.basin.current_row;
    if (!row || (!accepted && row == row_before)) return;
    choose_simulation_row(session, *row);
    edited_simulation(session);
}

void Repaint_Sim_Grid(Session& session) { simulations_have_changed(session); }

void edited_simulation(Session& session) { simulation_was_edited(session); }

}  // namespace nivora
