// The life of a basin file: new, open, save, save as, exit, and the question before a loss of changes.
#pragma once

#include "base/file_content.h"
#include "session/session.h"
#include "store/basin_marks.h"

#include <filesystem>
#include <optional>
#include <string>

namespace nivora {

/// The commands of the File menu, on the session's basin. The program works in the working file alone; the
/// user's file changes only when the whole working file is copied over it.
class BasinLife {
public:
    /// @param program_folder where the template and the working file lie
    BasinLife(Session& session, std::filesystem::path program_folder);

    /// The file work of the start: template over the working file, and that opened. What can't be copied is
    /// passed over: the basin is then whatever the working file already was, with no simulation selected.
    void start();

    /// Makes a missing template anew. @return false where the user cancelled, or after a message where there
    /// is no way to a blank basin; the open one is then as it was
    bool new_basin();
    void open();
    /// Opens an entry of the recent list, 1 the newest.
    void open_recent(std::size_t entry);
    void save();
    void save_as();
    /// Brings a legacy file into the basin. @return whether its simulation is to be added through its window,
    /// after which the caller calls imported()
    [[nodiscard]] bool import_file();
    /// Brings the main window in line with an import; the selected simulation stays the imported one, or
    /// after a Cancel that from before.
    void imported();
    /// Asks what Exit asks. @return whether the program may end
    [[nodiscard]] bool may_exit();

    /// Reads a basin file into the session. @return false where the file has an unrecognized format, which
    /// was shown
    bool Open_DB(const std::filesystem::path& path);

    /// Asks about unsaved changes. @return false where the user cancelled, and where what was to be saved
    /// could not be, so that nothing is lost
    [[nodiscard]] bool Save_Prompt();

    /// Writes the basin's boxes, the simulation grid and the zone grid into a file. @return false after a
    /// message
    [[nodiscard]] bool Save_Grids(const std::filesystem::path& path);

    /// Brings the main window in line with a basin that was opened or saved.
    void Refill_Main_Window();

    [[nodiscard]] bool has_template_name() const;

private:
    [[nodiscard]] bool zones_given();
    [[nodiscard]] bool save_for_question();
    [[nodiscard]] bool may_overwrite();
    void keep_declined();
    void open_file(const std::filesystem::path& file);
    [[nodiscard]] bool copy_blank();
    void become_fresh();
    void become_named(const std::filesystem::path& file);
    [[nodiscard]] bool keep_last_work();
    void unrecognized(const std::filesystem::path& file, const StoreError& error);
    bool copy_to(const std::filesystem::path& file);

    Session& session_;
    std::filesystem::path template_file_;
    std::optional<FileContent> known_content_;  ///< of the user's file, as it was opened or saved last
    std::optional<UnsavedMarks> declined_;      ///< by the last question, where its answer was No
};

}  // namespace nivora
