#include "session/basin_life.h"

#include "base/durable_file.h"
#include "base/number_text.h"
#include "base/text.h"
#include "prep/daily_records.h"
#include "session/basin_import.h"
#include "session/basin_rows.h"
#include "store/basin_copy.h"
#include "store/monthly_table.h"
#include "store/table_io.h"

namespace nivora {
namespace {

namespace fs = std::filesystem;

void grids_refused(Dialogs& dialogs) { dialogs.stop("Missing/invalid simulation data"); }

/// Writes table after table; false after a message, with the tables before the faulty one written.
bool write_grids(BasinDatabase& database, const BasinState& basin, Dialogs& dialogs) {
    try {
        store_boxes(database, basin);
        store_simulations(database, basin);
        store_zones(database, basin);
        return true;
    } catch (const StoreError&) {
        grids_refused(dialogs);
        return false;
    }
}

}  // namespace

BasinLife::BasinLife(Session& session, fs::path program_folder)
    : session_(session),
      file_names_(session.dialogs, program_folder),
      template_file_(program_folder / "null.mdb") {
    session_.basin.App_Path = program_folder;
    session_.basin.Work_File = program_folder / "new.mdb";
    session_.basin.Basin_File = template_file_;
}

bool BasinLife::has_template_name() const { return session_.basin.Basin_File == template_file_; }

void BasinLife::start() {
    try {
        copy_template(template_file_, session_.basin.Work_File);
    } catch (const StoreError&) {
        // A missing template leaves the basin that the last start worked on.
    } catch (const FileError&) {
    }
    Open_DB(session_.basin.Work_File);
    session_.shell.save = false;
    session_.shell.save_as = true;
    session_.basin.New_Basin = true;
    session_.basin.Basin_Changed = false;
    session_.basin.Input_Changed = false;
    session_.desktop.refresh_main_window();
}

void BasinLife::reset_window() {
    session_.shell = ShellState{};
    session_.shell.melt_season = !session_.run.NoSnow;
}

void BasinLife::open_fresh() {
    BasinState& basin = session_.basin;
    reset_window();
    const fs::path work_file = basin.Work_File;
    const fs::path program_folder = basin.App_Path;
    basin = BasinState{};
    basin.App_Path = program_folder;
    basin.Work_File = work_file;
    basin.Basin_File = template_file_;
    session_.run.results_enabled = false;
    try {
        copy_template(template_file_, work_file);
        Open_DB(work_file);
    } catch (const StoreError& error) {
        session_.dialogs.stop(error.what());
    } catch (const FileError& error) {
        session_.dialogs.stop(error.what());
    }
    basin.New_Basin = true;
    basin.Output_Valid = false;
    basin.Basin_Changed = false;
    basin.Input_Changed = false;
    session_.shell = ShellState{};
    session_.shell.melt_season = !session_.run.NoSnow;
    session_.shell.save_as = false;
    session_.desktop.refresh_main_window();
}

bool BasinLife::new_basin() {
    if (!Save_Prompt()) return false;
    open_fresh();
    return true;
}

void BasinLife::open() {
    if (!Save_Prompt()) return;
    const auto name = file_names_.GetFileName(FileKind::OpenBasin, session_.basin.Basin_File);
    if (!name) return;
    if (is_reserved_name(*name)) {
        session_.dialogs.stop(path_text(*name) + " is a reserved file name used by Nivora!",
                              "Invalid file name");
        return;
    }
    open_file(*name);
}

void BasinLife::open_recent(std::size_t entry) {
    if (!Save_Prompt()) return;
    const std::string name = session_.settings.recent_files.at(entry - 1);
    session_.basin.Basin_File = path_from_utf8(name);
    std::error_code unreadable;
    if (!fs::exists(session_.basin.Basin_File, unreadable)) {
        session_.dialogs.message({.text = "The file selected from the recent files list, '" + name +
                                          "' has been moved or deleted.",
                                  .title = "File not found"});
        // The basin bears the missing file's name from now on; it is meant so, and the window says it.
        session_.desktop.refresh_main_window();
        return;
    }
    open_file(session_.basin.Basin_File);
}

void BasinLife::unrecognized() {
    session_.dialogs.stop("The file you have selected, " + path_text(session_.basin.Basin_File) +
                              ", has an unrecognized format",
                          "Error encountered while reading this basin database");
}

void BasinLife::open_file(const fs::path& file) {
    session_.basin.Basin_File = file;
    bool opened = false;
    try {
        copy_into_work_file(file, session_.basin.Work_File);
        opened = Open_DB(session_.basin.Work_File);
    } catch (const StoreError&) {
        unrecognized();
    } catch (const FileError& error) {
        session_.dialogs.stop(error.what());
    }
    if (!opened) {
        open_fresh();
        return;
    }
    session_.basin.New_Basin = false;
    Refill_Main_Window();
    session_.basin.Output_Valid = false;
    session_.desktop.refresh_main_window();
}

bool BasinLife::Open_DB(const fs::path& path) {
    BasinState& basin = session_.basin;
    try {
        BasinDatabase database{path, Access::ReadWrite};
        database.in_transaction([&] {
            Ensure_Monthly_Table(database);
            return true;
        });
        read_basin(database, basin);
        session_.prep.record = Scan_Physical_Data(database);
    } catch (const StoreError&) {
        unrecognized();
        return false;
    }
    ShellState& shell = session_.shell;
    shell.units_list_shown = basin.Units_Code == k_units_not_fixed;
    if (basin.simulations.empty()) return true;
    basin.Basin_Changed = false;
    basin.Input_Changed = false;
    update_recent_files(session_.settings, path_text(basin.Basin_File));
    shell.save_as = true;
    shell.simulation_definition = true;
    shell.variables_of_record = true;
    shell.variables_of_simulation = true;
    shell.parameters = true;
    shell.scenario_definition = true;
    shell.graphics = true;
    shell.reports = true;
    return true;
}

bool BasinLife::copy_to(const fs::path& file) {
    try {
        copy_over_user_file(session_.basin.Work_File, file);
        return true;
    } catch (const FileError& error) {
        session_.dialogs.stop(
            std::string{error.what()} + " The basin was not saved; what the file held before is unchanged.",
            "The basin was not saved");
        return false;
    }
}

/// The question, and what follows from its answer; true where the caller may go on.
bool BasinLife::save_under_new_name() {
    BasinState& basin = session_.basin;
    if (has_template_name()) {
        const auto name = file_names_.GetFileName(FileKind::SaveQuestion, basin.Basin_File);
        if (!name) return false;
        if (!Save_Grids(basin.Work_File)) return false;
        basin.Basin_File = *name;
    } else if (!Save_Grids(basin.Work_File)) {
        return false;
    }
    // A copy that fails counts as done, as it always did; the user hears of it.
    copy_to(basin.Basin_File);
    return true;
}

bool BasinLife::Save_Prompt() {
    BasinState& basin = session_.basin;
    session_.desktop.commit_edits();
    if (!basin.Basin_Changed) return true;
    const std::string text = has_template_name() ? "Create database containing these data?"
                                                 : "Save changes to " + path_text(basin.Basin_File);
    const Answer answer =
        session_.dialogs.message({.text = text, .title = "Save Data?", .buttons = Buttons::YesNoCancel});
    if (answer == Answer::Cancel) return false;
    if (answer == Answer::Yes && !save_under_new_name()) return false;
    basin.Basin_Changed = false;
    basin.Input_Changed = false;
    return true;
}

bool BasinLife::Save_Grids(const fs::path& path) {
    const BasinState& basin = session_.basin;
    if (basin.simulations.empty()) {
        session_.dialogs.stop("You must define at least 1 simulation before saving!", "Error during save");
        return false;
    }
    try {
        BasinDatabase database{path, Access::ReadWrite};
        bool whole = false;
        database.in_transaction([&] {
            whole = write_grids(database, basin, session_.dialogs);
            return true;  // what was written until a fault stays; the grids still hold the rest
        });
        return whole;
    } catch (const StoreError&) {
        grids_refused(session_.dialogs);
        return false;
    }
}

bool BasinLife::zones_given() {
    session_.desktop.commit_edits();
    if (!trimmed(session_.basin.zones_text).empty()) return true;
    session_.dialogs.stop("A basin database cannot be created until the number of zones has been specified",
                          "Missing data");
    return false;
}

void BasinLife::save() {
    BasinState& basin = session_.basin;
    if (!zones_given() || !Save_Grids(basin.Work_File) || !copy_to(basin.Basin_File)) return;
    const auto selected = basin.current_row;
    const bool output_valid = basin.Output_Valid;
    reset_window();
    if (!Open_DB(basin.Work_File)) return;
    basin.New_Basin = false;
    Refill_Main_Window();
    if (selected && *selected < basin.simulations.size()) select_simulation(basin, *selected);
    basin.Output_Valid = output_valid;
    session_.desktop.refresh_main_window();
}

void BasinLife::save_as() {
    BasinState& basin = session_.basin;
    if (!zones_given() || !Save_Grids(basin.Work_File)) return;
    const auto name = file_names_.GetFileName(FileKind::SaveAs, basin.Basin_File);
    if (!name || !copy_to(*name)) return;
    reset_window();
    // The list of recent files learns of the name the basin had until now, not of the new one; it is meant
    // so.
    if (!Open_DB(basin.Work_File)) return;
    basin.New_Basin = false;
    basin.Basin_File = *name;
    Refill_Main_Window();
    session_.shell.run_simulation = true;
    session_.shell.run_forecast = true;
    session_.shell.run_climate = !session_.run.NoSnow;
    basin.Output_Valid = false;
    session_.desktop.refresh_main_window();
}

bool BasinLife::import_file() { return import_basin(session_, file_names_); }

void BasinLife::imported() {
    BasinState& basin = session_.basin;
    session_.shell.units_list_shown = basin.Units_Code == k_units_not_fixed;
    const auto selected = basin.current_row;  // the imported simulation, or the one from before a Cancel
    Refill_Main_Window();
    if (selected && *selected < basin.simulations.size()) select_simulation(basin, *selected);
    basin.Basin_Changed = true;
    basin.Input_Changed = true;
    basin.Output_Valid = false;
    session_.desktop.refresh_main_window();
}

bool BasinLife::may_exit() { return Save_Prompt(); }

void BasinLife::Refill_Main_Window() {
    BasinState& basin = session_.basin;
    ShellState& shell = session_.shell;
    shell.save = !basin.New_Basin;
    shell.save_as = true;
    const bool zones_fixed = !trimmed(basin.zones_text).empty();
    if (zones_fixed) {
        shell.zones_box_shown = false;
        shell.zones_fixed_shown = true;
        shell.zones_label_shown = true;
        shell.variables = true;
        shell.tools_menu = true;
        basin.ZoneCount = to_integer16(leading_number(basin.zones_text)).value_or(1);
    }
    const bool any = !basin.simulations.empty();
    if (any) {
        select_simulation(basin, 0);
        shell.run_simulation = true;
        shell.run_forecast = true;
        shell.run_climate = !session_.run.NoSnow;
        shell.long_term_averages = true;
        shell.graphics = true;
    }
    basin.Input_Changed = false;
    shell.delete_simulation = any;
    shell.edit_simulation = any;
}

}  // namespace nivora
