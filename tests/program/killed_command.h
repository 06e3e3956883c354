// A command of the File menu in a child process that is killed on the way, and a check of what it leaves.
#pragma once

#include "base/scripted_dialogs.h"
#include "session/basin_life.h"
#include "tests/support/temporary_folder.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace nivora {

enum class FileCommand { Save, SaveAs, Open };
[[nodiscard]] const char* command_name(FileCommand command);

/// When the child is killed.
enum class KillPoint {
    SystemCall,  ///< before its n-th system call: every state of the files between two calls
    Moment       ///< after n microseconds, which can fall into the middle of a long write
};

struct KilledRun {
    bool finished = false;   ///< the command ended before the kill
    bool possible = true;    ///< false if this machine does not let a process trace another one
    std::int64_t calls = 0;  ///< the system calls that were let through
};

/// What the user's file holds after a kill.
enum class Found { Old, New, Broken };

/// A program folder, a user's basin of about a given size, and the same basin after a change.
class KillGround {
public:
    explicit KillGround(std::uintmax_t about_bytes);

    /// Restores the state before each command: the working file holds the changed basin,
    /// the user's file the old one.
    void prepare(FileCommand command);
    /// Runs the command in a child and kills it. `point` counts from the start of the command itself.
    KilledRun kill_during(FileCommand command, KillPoint kind, std::int64_t point);
    /// How many system calls, and how many microseconds, the command takes if it is not killed.
    std::int64_t calls_of(FileCommand command);
    std::int64_t microseconds_of(FileCommand command);

    /// What the user's file holds, row by row; `why` says what is wrong with a broken one.
    [[nodiscard]] Found look(FileCommand command, std::string& why) const;
    /// The files that do not belong in the folders after the program has started
    /// and the user's file was opened again.
    [[nodiscard]] std::string leftovers_after_next_start() const;
    /// Whether the working file, which a killed command may leave changed or unchanged, is complete.
    [[nodiscard]] bool working_file_is_whole(std::string& why) const;

    /// The files that do not belong there right after the kill.
    [[nodiscard]] std::string leftovers() const;

    /// Restores only the user's files, for a test that has them on another disk.
    void prepare_documents() const;
    /// Saves in this process. @return whether the user was told that the basin was not saved
    bool save_is_told_to_fail();
    [[nodiscard]] const std::filesystem::path& documents() const { return documents_; }

    [[nodiscard]] std::uintmax_t size() const { return old_bytes_.size(); }

private:
    void do_command(FileCommand command);
    [[nodiscard]] std::filesystem::path target(FileCommand command) const;

    TemporaryFolder folder_;
    std::filesystem::path program_;
    std::filesystem::path documents_;
    std::filesystem::path user_file_;
    std::filesystem::path old_;
    std::filesystem::path new_work_;
    ScriptedDialogs dialogs_;
    Desktop desktop_;
    Session session_{dialogs_, desktop_};
    std::unique_ptr<BasinLife> life_;
    std::string old_bytes_;
    std::uint64_t new_rows_ = 0;
};

/// A digest of all rows of all tables of a basin file, whatever pages they are on; nothing if the file is not
/// a complete basin, and `why` says so.
[[nodiscard]] std::optional<std::uint64_t> rows_number(const std::filesystem::path& file, std::string& why);

}  // namespace nivora
