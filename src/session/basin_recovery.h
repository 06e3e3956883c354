// What happens at a start with the recovery state of a program that did not end properly.
#pragma once

#include "session/recovery_state.h"
#include "session/session.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace nivora {

/// The buttons of the question about a recovery state, by index.
enum class RecoveryAnswer { Recover, SaveCopy, Discard };

/// What was decided about the recovery state that a start finds.
struct RecoveryDecision {
    enum class Next {
        Start,     ///< nothing is left to recover
        Recover,   ///< open `state`, whose working file is checked and complete
        SaveCopy,  ///< the same, then save it under `copy` and start as usual
        End        ///< the user decides at the next start
    };
    Next next = Next::Start;
    RecoveryState state = {};
    std::filesystem::path copy = {};
};

/// Asks before a save replaces changes of another program in the user's file.
///
/// @param known what the file held when it was opened or saved
/// @param advice a sentence: what the user can do after a No
/// @return whether there are no such changes, or they may go
[[nodiscard]] bool may_replace_changes(Dialogs& dialogs, const std::filesystem::path& file,
                                       const std::optional<FileContent>& known, std::string_view advice);

/// Reads the recovery state and asks what becomes of it. Writes nothing but what the user chose: a state that
/// can't be used is moved aside with its working file, after a message; a discarded one is removed.
///
/// @param session with the paths of program folder and working file; its basin is not changed
[[nodiscard]] RecoveryDecision decide_recovery(Session& session, const std::filesystem::path& recovery_file);

/// Stores the changes of the daily editor in the working file, unless they are in it already, and leaves out
/// damaged results.
///
/// @return whether the results of the last run in the file are still those that the state knows
/// @throws StoreError, FileError
bool complete_work_file(const RecoveryState& state, const std::filesystem::path& work_file);

/// Puts the boxes and grids of a state into a basin that was read from the working file.
///
/// @param current whether the working file is in the state in which the recovery state was taken. Otherwise
///                simulations whose table was deleted later are left out, and zones that were made later
///                stay.
void take_boxes_and_grids(const RecoveryState& state, BasinState& basin, BasinDatabase& work, bool current);

/// What differs between a recovered basin and its file, a line for each; nothing if they are equal.
/// @throws StoreError if the working file can't be read
[[nodiscard]] std::vector<std::string> recovery_differences(const RecoveryState& state,
                                                            const std::filesystem::path& work_file);

}  // namespace nivora
