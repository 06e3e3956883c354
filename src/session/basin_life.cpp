#include "session/basin_life.h"

#include "base/durable_file.h"
#include "base/number_text.h"
#include "base/text.h"
#include "prep/daily_records.h"
#include "session/availability.h"
#include "session/basin_import.h"
#include "session/basin_rows.h"
#include "session/main_window_rules.h"
#include "store/basin_copy.h"
#include "store/monthly_table.h"
#include "store/table_io.h"
#include "store/transactions.h"
#include "store/work_file_state.h"

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr const char* k_not_saved = "The basin was not saved";

/// Whether the content of a file is the reason for an error, and not for example a missing permission.
bool is_of_another_format(StoreFault fault) {
    switch (fault) {
        case StoreFault::Newer:
        case StoreFault::Busy:
        case StoreFault::ReadOnly: return false;
        default: return true;
    }
}

/// Whether the text of an error says more than that the format of the file is not recognized.
bool has_reason(StoreFault fault) { return !is_of_another_format(fault) || fault == StoreFault::Damaged; }

/// Shows what could not be written: a box or cell, which gets the cursor, or the error of the store.
void grids_refused(Session& session, const StoreError& error) {
    const auto field = unstorable_field(session.basin);
    session.dialogs.stop("Missing/invalid simulation data\n" + (field ? field->complaint : error.what()));
    if (field) session.desktop.go_to_field(*field);
}

/// Writes the tables in order; false, after a message, with the tables before the faulty one written.
bool write_grids(BasinDatabase& database, Session& session) {
    const BasinState& basin = session.basin;
    try {
        store_boxes(database, basin);
        store_simulations(database, basin);
        store_zones(database, basin);
        return true;
    } catch (const StoreError& error) {
        grids_refused(session, error);
        return false;
    }
}

void tell_results_left_out(Dialogs& dialogs, const fs::path& file) {
    dialogs.message({.text = "The results of the last run in the file " + path_text(file) +
                             " are damaged, and were not opened. All other tables are sound. Run the "
                             "simulation again to compute its results.",
                     .title = "The results are damaged",
                     .icon = Icon::Warning});
}

}  // namespace

BasinLife::BasinLife(Session& session, fs::path work_folder)
    : session_(session), template_file_(work_folder / "null.mdb"), recovery_(work_folder / "recovery.state") {
    session_.file_names.begin_in(work_folder);
    session_.basin.App_Path = work_folder;
    session_.basin.Work_File = work_folder / "new.mdb";
    session_.basin.Basin_File = template_file_;
}

bool BasinLife::has_template_name() const { return session_.basin.Basin_File == template_file_; }

/// Without a template the basin of the last start stays; false, after a message,
/// if that is damaged or missing, too.
bool BasinLife::keep_last_work() {
    try {
        copy_into_work_file(session_.basin.Work_File, session_.basin.Work_File);
    } catch (const StoreError& error) {
        unrecognized(session_.basin.Basin_File, error);
        return false;
    } catch (const FileError&) {
        // In a read-only folder the basin can still be read.
    }
    return true;
}

bool BasinLife::start() {
    remove_leftovers(recovery_.file());  // of a program that was killed while it wrote
    for (;;) {
        const RecoveryDecision decision = decide_recovery(session_, recovery_.file());
        if (decision.next == RecoveryDecision::Next::End) return false;
        if (decision.next == RecoveryDecision::Next::Start) break;
        if (!read_recovered(decision.state)) return false;
        if (decision.next == RecoveryDecision::Next::Recover) {
            show_recovered(decision.state);
            started_ = true;
            return true;
        }
        const bool saved = save_recovered_copy(decision.copy);
        clear_basin();
        if (saved) break;
    }
    started_ = start_blank();
    return started_;
}

/// Reads the basin of a recovery state; false, after a message, if it can't be read. The state then stays.
bool BasinLife::read_recovered(const RecoveryState& state) {
    BasinState& basin = session_.basin;
    constexpr const char* k_title = "The basin was not recovered";
    constexpr const char* k_stays = " The changes are kept. Nivora ends, and asks again at its next start.";
    try {
        const bool current = change_counter(basin.Work_File) == state.change_counter;
        recovered_results_ = complete_work_file(state, basin.Work_File);
        BasinDatabase work{basin.Work_File, Access::ReadOnly};
        // An earlier recovery may have left out damaged results.
        recovered_results_ = recovered_results_ && work.has_table(k_sim_results);
        read_basin(work, basin);
        take_boxes_and_grids(state, basin, work, current);
        session_.prep.record = Scan_Physical_Data(work);
        return true;
    } catch (const std::runtime_error& error) {  // of the store or of the files
        session_.dialogs.stop(error.what() + std::string{k_stays}, k_title);
    }
    return false;
}

/// Saves the basin that was read under another name; false after a message. The state goes when it is saved.
bool BasinLife::save_recovered_copy(const fs::path& copy) {
    if (!Save_Grids(session_.basin.Work_File) || !copy_to(copy)) return false;
    update_recent_files(session_.settings, path_text(copy));
    return true;
}

/// Shows the basin that was read as it was before the crash. Its state stays until it has its own.
void BasinLife::show_recovered(const RecoveryState& state) {
    BasinState& basin = session_.basin;
    basin.New_Basin = !state.basin_file;
    if (state.basin_file) {
        basin.Basin_File = path_from_utf8(*state.basin_file);
        update_recent_files(session_.settings, *state.basin_file);
    }
    known_content_ = state.known_content;
    const bool edited = !state.daily_edits.empty();
    mark_recovered(basin, {.Input_Changed = state.Input_Changed || edited,
                           .Output_Valid = state.Output_Valid && recovered_results_,
                           .results_outdated = state.results_outdated,
                           .results_time = state.results_time});
    if (basin.Output_Valid) session_.run = state.run;
    session_.run.NoSnow = state.run.NoSnow;
    session_.run.LagDistribution = state.run.LagDistribution;
    basin_was_recovered(session_);
    if (!basin.simulations.empty()) {
        const auto row = static_cast<std::size_t>(state.current_row.value_or(0));
        choose_simulation_row(session_, std::min(row, basin.simulations.size() - 1));
    }
    session_.desktop.refresh_main_window();
}

void BasinLife::keep_recovery() {
    if (!started_) return;
    BasinState basin = session_.basin;
    session_.desktop.put_typed_cell(basin);
    if (session_.prep.note_typed) session_.prep.note_typed();
    if (!basin.Basin_Changed && session_.prep.daily_edits.empty()) {
        // After the answer No the state stays until another basin takes the working file.
        if (!declined_) static_cast<void>(recovery_.remove());  // the next call tries again
        return;
    }
    RecoveryState state = recovery_state(basin, session_.run, known_content_);
    state.change_counter = change_counter(basin.Work_File);
    recovery_.keep(state, session_.prep.daily_edits);
}

void BasinLife::end() {
    started_ = false;
    static_cast<void>(recovery_.remove());  // one that stays is asked about at the next start
}

/// Before another basin takes the working file: with that, the state would bring back a mixture of two
/// basins.
/// @throws FileError
void BasinLife::remove_recovery() {
    if (recovery_.remove()) return;
    throw FileError("The file '" + path_text(recovery_.file()) +
                    "' can't be removed. It holds unsaved changes of the open basin.");
}

/// False, after a message, if there is no working file and none can be written, such as on a full disk.
bool BasinLife::start_blank() {
    bool blank = false;
    try {
        copy_template(template_file_, session_.basin.Work_File);
        blank = true;
    } catch (const StoreError&) {
    } catch (const FileError& error) {
        std::error_code unknown;
        if (fs::exists(template_file_, unknown) && !fs::exists(session_.basin.Work_File, unknown)) {
            session_.dialogs.stop(error.what() + std::string{" Nivora can't work without this file."},
                                  "Nivora cannot run");
            return false;
        }
    }
    if (blank || keep_last_work()) Open_DB(session_.basin.Work_File);
    program_was_started(session_);
    session_.basin.New_Basin = true;
    mark_unchanged(session_.basin);
    session_.desktop.refresh_main_window();
    return true;
}

/// Copies the blank template over the working file; creates a missing template. False after a message.
bool BasinLife::copy_blank() {
    constexpr const char* k_title = "No new basin was created";
    constexpr const char* k_stays = " No new basin was created. The open basin is unchanged.";
    std::error_code unknown;  // the copy reports a name that cannot be looked up
    const bool missing = !fs::exists(fs::symlink_status(template_file_, unknown));
    try {
        if (missing) BasinDatabase::create_template(template_file_);
        remove_recovery();
        copy_template(template_file_, session_.basin.Work_File);
        return true;
    } catch (const StoreError& error) {
        const bool damaged = !missing && is_of_another_format(error.fault());
        session_.dialogs.stop(
            error.what() + std::string{k_stays} +
                (damaged ? " Remove that file and choose New again: Nivora then creates a new one." : ""),
            k_title);
    } catch (const FileError& error) {
        session_.dialogs.stop(error.what() + std::string{k_stays}, k_title);
    }
    return false;
}

void BasinLife::clear_basin() {
    BasinState& basin = session_.basin;
    const fs::path work_file = basin.Work_File;
    const fs::path program_folder = basin.App_Path;
    basin = BasinState{};
    basin.App_Path = program_folder;
    basin.Work_File = work_file;
    basin.Basin_File = template_file_;
    known_content_.reset();
}

/// Clears everything and shows the content of the working file as a basin without a name.
void BasinLife::become_fresh() {
    BasinState& basin = session_.basin;
    session_.desktop.leave_basin();
    window_was_reset(session_);
    clear_basin();
    declined_.reset();
    Open_DB(basin.Work_File);
    basin.New_Basin = true;
    mark_output_invalid(basin);
    mark_unchanged(basin);
    basin_is_new(session_);
    session_.desktop.refresh_main_window();
}

bool BasinLife::new_basin() {
    if (!Save_Prompt()) return false;
    if (!copy_blank()) {
        keep_declined();
        return false;
    }
    become_fresh();
    return true;
}

void BasinLife::open() {
    if (!Save_Prompt()) return;
    const auto name = session_.file_names.GetFileName(FileKind::OpenBasin, session_.basin.Basin_File);
    if (!name) return keep_declined();
    if (refuses_reserved(*name)) return keep_declined();
    open_file(*name);
}

/// Whether a file is one of the program's own, after a message.
bool BasinLife::refuses_reserved(const fs::path& file) {
    if (!is_reserved_name(file) && !is_program_file(session_.basin.App_Path, file)) return false;
    session_.dialogs.stop(path_text(file) + " is a reserved file name used by Nivora!", "Invalid file name");
    return true;
}

void BasinLife::open_named(const fs::path& file) {
    // A name that leads nowhere costs no question about unsaved changes.
    if (const auto problem = named_file_problem(file)) {
        session_.dialogs.message(*problem);
        return;
    }
    if (refuses_reserved(file) || !Save_Prompt()) return;
    open_file(file);
}

void BasinLife::open_recent(std::size_t entry) {
    // A first save at the question adds a name to the list, so that the entries after it move.
    const std::string name = session_.settings.recent_files.at(entry - 1);
    if (!Save_Prompt()) return;
    const fs::path file = path_from_utf8(name);
    std::error_code unreadable;
    if (!fs::exists(file, unreadable)) {
        session_.dialogs.message({.text = "The file selected from the recent files list, '" + name +
                                          "' has been moved or deleted.",
                                  .title = "File not found"});
        return keep_declined();
    }
    open_file(file);
}

/// If a command ends early, nothing is lost: changes that the user chose to lose are unsaved as before, and
/// the next question asks about them again.
void BasinLife::keep_declined() {
    if (!declined_) return;
    restore_marks(session_.basin, *declined_);
    declined_.reset();
}

void BasinLife::unrecognized(const fs::path& file, const StoreError& error) {
    std::string text = "The file you have selected, " + path_text(file) + ", has an unrecognized format";
    if (has_reason(error.fault())) text += std::string{". "} + error.what();
    session_.dialogs.stop(text, "Error encountered while reading this basin database");
}

void BasinLife::open_file(const fs::path& file) {
    BasinState& basin = session_.basin;
    // Read before the copy, so that a write of another program in between counts as a change.
    const auto content = file_content(file);
    bool results_left_out = false;
    try {
        remove_recovery();
        results_left_out = copy_into_work_file(file, basin.Work_File);
    } catch (const StoreError& error) {
        unrecognized(file, error);
        if (copy_blank()) return become_fresh();
        return keep_declined();
    } catch (const FileError& error) {
        session_.dialogs.stop(std::string{error.what()} + " The file you have selected, " + path_text(file) +
                                  " was not opened. The open basin is unchanged.",
                              "The basin was not opened");
        return keep_declined();
    }
    session_.desktop.leave_basin();
    basin.Basin_File = file;
    if (!Open_DB(basin.Work_File)) {
        // The working file holds a basin that cannot be read, and no longer the previous one.
        static_cast<void>(copy_blank());
        return become_fresh();
    }
    known_content_ = content;
    declined_.reset();
    basin.New_Basin = false;
    mark_opened(basin);
    Refill_Main_Window();
    session_.desktop.refresh_main_window();
    if (results_left_out) tell_results_left_out(session_.dialogs, file);
}

bool BasinLife::Open_DB(const fs::path& path) {
    BasinState& basin = session_.basin;
    try {
        BasinDatabase database{path, Access::ReadWrite};
        HeldTransaction transaction{database};
        Ensure_Monthly_Table(database);
        transaction.commit();
        read_basin(database, basin);
        session_.prep.record = Scan_Physical_Data(database);
    } catch (const StoreError& error) {
        unrecognized(basin.Basin_File, error);
        return false;
    }
    basin_was_read(session_);
    if (basin.simulations.empty()) return true;
    mark_unchanged(basin);
    update_recent_files(session_.settings, path_text(basin.Basin_File));
    return true;
}

bool BasinLife::copy_to(const fs::path& file) {
    // After a crash between the write and the removal of the state, an older state would look like unsaved
    // changes of what was just saved.
    keep_recovery();
    finish_recovery();
    try {
        known_content_ = copy_over_user_file(session_.basin.Work_File, file);
        static_cast<void>(recovery_.remove());  // one that stays differs in nothing from the saved file
        return true;
    } catch (const FileError& error) {
        session_.dialogs.stop(
            std::string{error.what()} + " The basin was not saved; what the file held before is unchanged.",
            k_not_saved);
        return false;
    }
}

/// Asks before a save replaces changes of another program in the user's file; false if these are to stay.
bool BasinLife::may_overwrite() {
    return may_replace_changes(session_.dialogs, session_.basin.Basin_File, known_content_,
                               "Save As keeps your work under another name.");
}

/// The first save gives a basin its name, from whichever command.
void BasinLife::become_named(const fs::path& file) {
    session_.basin.Basin_File = file;
    session_.basin.New_Basin = false;
    basin_was_named(session_);
    update_recent_files(session_.settings, path_text(file));
    session_.desktop.refresh_main_window();
}

/// Saves after the answer Yes; true if the basin was saved.
bool BasinLife::save_for_question() {
    BasinState& basin = session_.basin;
    if (!has_template_name())
        return Save_Grids(basin.Work_File) && may_overwrite() && copy_to(basin.Basin_File);
    const auto name = session_.file_names.GetFileName(FileKind::SaveQuestion, basin.Basin_File);
    if (!name || !Save_Grids(basin.Work_File) || !copy_to(*name)) return false;
    become_named(*name);
    return true;
}

bool BasinLife::Save_Prompt() {
    BasinState& basin = session_.basin;
    session_.desktop.commit_edits();
    declined_.reset();
    if (!basin.Basin_Changed) return true;
    const std::string text = has_template_name() ? "Create database containing these data?"
                                                 : "Save changes to " + path_text(basin.Basin_File);
    const Answer answer =
        session_.dialogs.message({.text = text, .title = "Save Data?", .buttons = Buttons::YesNoCancel});
    if (answer == Answer::Cancel) return false;
    if (answer == Answer::Yes && (session_.desktop.refuses_typed_box() || !save_for_question())) return false;
    if (answer == Answer::No) declined_ = unsaved_marks(basin);
    mark_saved(basin);
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
        HeldTransaction transaction{database};
        const bool whole = write_grids(database, session_);
        transaction.commit();  // rows written before a fault stay; the grids still hold the rest
        return whole;
    } catch (const StoreError& error) {
        grids_refused(session_, error);
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
    if (!zones_given() || !Save_Grids(basin.Work_File) || !may_overwrite() || !copy_to(basin.Basin_File))
        return;
    const auto selected = basin.current_row;
    keep_results_outdated(basin);
    window_was_reset(session_);
    if (!Open_DB(basin.Work_File)) return;
    basin.New_Basin = false;
    Refill_Main_Window();
    if (selected && *selected < basin.simulations.size()) select_simulation(basin, *selected);
    session_.desktop.refresh_main_window();
}

void BasinLife::save_as() {
    BasinState& basin = session_.basin;
    if (!zones_given() || !Save_Grids(basin.Work_File)) return;
    const auto name = session_.file_names.GetFileName(FileKind::SaveAs, basin.Basin_File);
    if (!name || !copy_to(*name)) return;
    session_.desktop.close_plots();
    keep_results_outdated(basin);
    window_was_reset(session_);
    basin.Basin_File = *name;
    if (!Open_DB(basin.Work_File)) return;
    basin.New_Basin = false;
    Refill_Main_Window();
    runs_are_possible(session_);
    mark_output_invalid(basin);
    session_.desktop.refresh_main_window();
}

bool BasinLife::import_file() { return import_basin(session_); }

void BasinLife::imported() {
    BasinState& basin = session_.basin;
    session_.desktop.close_plots();
    basin_was_imported(session_);
    const auto selected = basin.current_row;  // the imported simulation, or the one from before a Cancel
    Refill_Main_Window();
    if (selected && *selected < basin.simulations.size()) select_simulation(basin, *selected);
    mark_input_changed(basin);
    mark_output_invalid(basin);
    session_.desktop.refresh_main_window();
}

bool BasinLife::may_exit() { return Save_Prompt(); }

void BasinLife::Refill_Main_Window() {
    BasinState& basin = session_.basin;
    if (!trimmed(basin.zones_text).empty())
        basin.ZoneCount = to_integer16(leading_number(basin.zones_text)).value_or(1);
    if (!basin.simulations.empty()) select_simulation(basin, 0);
    mark_inputs_unchanged(basin);
    basin_is_shown(session_);
}

}  // namespace nivora
