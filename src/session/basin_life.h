// The life of a basin file: new, open, save, save as, exit, and the question about unsaved changes.
#pragma once

#include "base/file_content.h"
#include "session/basin_recovery.h"
#include "session/recovery_keeper.h"
#include "session/session.h"
#include "store/basin_marks.h"

#include <filesystem>
#include <optional>
#include <string>

namespace nivora {

/// The commands of the File menu, on the session's basin. The program changes only the working file;
/// the user's file changes when the whole working file is copied over it.
class BasinLife {
public:
    /// @param work_folder the folder of the template and the working file
    BasinLife(Session& session, std::filesystem::path work_folder);

    /// Copies the template over the working file and opens it when the program starts. If it cannot be
    /// copied, the basin is that of the existing working file, with no simulation selected. Unsaved changes
    /// of a program that did not end properly come first: the user decides what becomes of them.
    ///
    /// @return false if the program is to end, because that decision is left to the next start, or because no
    /// working file can be written
    bool start();

    /// Hands the unsaved changes to the recovery state, to be called every few seconds and after each
    /// command. Without unsaved changes it removes the state.
    void keep_recovery();
    /// Waits until the recovery state is on the disk.
    void finish_recovery() { recovery_.finish(); }
    /// Why the unsaved changes are not kept at present; empty if they are.
    [[nodiscard]] std::string recovery_fault() { return recovery_.fault(); }
    /// The program ends as its user wants it: nothing is left to recover.
    void end();

    /// Creates a missing template. @return false if the user cancelled, or, after a message, if there is no
    /// blank basin; the open one is then unchanged
    bool new_basin();
    void open();
    /// Opens an entry of the recent list, 1 the newest.
    void open_recent(std::size_t entry);
    /// Opens a file that was named at the start of the program or of a second copy of it.
    void open_named(const std::filesystem::path& file);
    void save();
    void save_as();
    /// Imports a legacy file into the basin. @return whether to add its simulation through its window; the
    /// caller then calls imported()
    [[nodiscard]] bool import_file();
    /// Updates the main window after an import. The imported simulation stays selected,
    /// or after a Cancel the one before.
    void imported();
    /// Asks the questions of Exit. @return whether the program may end
    [[nodiscard]] bool may_exit();

    /// Reads a basin file into the session. @return false, after a message, if its format is not recognized
    bool Open_DB(const std::filesystem::path& path);

    /// Asks about unsaved changes. @return false if the user cancelled or the basin could not be saved, so
    /// that nothing is lost
    [[nodiscard]] bool Save_Prompt();

    /// Writes the basin's boxes, the simulation grid and the zone grid into a file.
    /// @return false after a message
    [[nodiscard]] bool Save_Grids(const std::filesystem::path& path);

    /// Updates the main window after a basin was opened or saved.
    void Refill_Main_Window();

    [[nodiscard]] bool has_template_name() const;

private:
    [[nodiscard]] bool start_blank();
    void remove_recovery();
    [[nodiscard]] bool read_recovered(const RecoveryState& state);
    [[nodiscard]] bool save_recovered_copy(const std::filesystem::path& copy);
    void show_recovered(const RecoveryState& state);
    void clear_basin();
    [[nodiscard]] bool zones_given();
    [[nodiscard]] bool save_for_question();
    [[nodiscard]] bool may_overwrite();
    void keep_declined();
    void open_file(const std::filesystem::path& file);
    [[nodiscard]] bool refuses_reserved(const std::filesystem::path& file);
    [[nodiscard]] bool copy_blank();
    void become_fresh();
    void become_named(const std::filesystem::path& file);
    [[nodiscard]] bool keep_last_work();
    void unrecognized(const std::filesystem::path& file, const StoreError& error);
    bool copy_to(const std::filesystem::path& file);

    Session& session_;
    std::filesystem::path template_file_;
    std::optional<FileContent> known_content_;  ///< of the user's file when it was last opened or saved
    std::optional<UnsavedMarks> declined_;      ///< the marks for which the last answer was No
    RecoveryKeeper recovery_;
    bool started_ = false;            ///< the basin in memory and the working file belong together
    bool recovered_results_ = false;  ///< the results of the recovered basin are those of its last run
};

}  // namespace nivora
