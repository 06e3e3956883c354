// What is saved and what is still valid of the open basin. These functions are the only ones that set the
// marks `Basin_Changed`, `Input_Changed`, `Output_Valid` and those of outdated results;
// anything may read them.
#pragma once

#include "store/basin_store.h"

namespace nivora {

/// Something differs from the basin's file, and no result depends on it.
void mark_basin_changed(BasinState& basin);

/// An input differs from the last run: the basin differs from its file, and the results are out of date.
void mark_input_changed(BasinState& basin);

/// An input was edited that does not reach the basin before it is accepted.
void mark_input_edited(BasinState& basin);

/// The results are no longer those of a completed run on the present inputs.
void mark_output_invalid(BasinState& basin);

/// A run or a climate step has written the table `SimResults`.
void mark_results_stored(BasinState& basin);

/// A run or a climate step reached its end: its results belong to the present inputs.
void mark_results_current(BasinState& basin);

/// The model of climate step 1 has run, whatever its outcome.
void mark_evaluation_started(BasinState& basin);

/// The basin is as its file has it.
void mark_unchanged(BasinState& basin);
void mark_inputs_unchanged(BasinState& basin);

/// The user saved the changes, or chose to lose them. Results that were out of date stay so.
void mark_saved(BasinState& basin);

/// The same before the basin is read again from what was saved.
void keep_results_outdated(BasinState& basin);

/// A basin was read from its file: its results belong to no run of this session.
void mark_opened(BasinState& basin);

/// What was still valid of a basin that is open again after a crash.
struct RecoveredMarks {
    bool Input_Changed = false;
    bool Output_Valid = false;
    bool results_outdated = false;
    std::optional<double> results_time = {};
};
/// A basin is open again after a crash: it differs from its file.
void mark_recovered(BasinState& basin, const RecoveredMarks& marks);

/// A program without a user shows results that it found in a file: whether there are any, and whether they
/// are to count as made before the inputs changed.
void mark_results_found(BasinState& basin, bool found, bool inputs_changed = false);

/// The marks of unsaved changes, to be restored if a command that would discard them ends half-way.
struct UnsavedMarks {
    bool Basin_Changed = false;
    bool Input_Changed = false;
};
[[nodiscard]] UnsavedMarks unsaved_marks(const BasinState& basin);
void restore_marks(BasinState& basin, const UnsavedMarks& marks);

/// All marks as they are before an edit or after it.
struct EditMarks {
    std::uint64_t marks = 0;
    bool Basin_Changed = false;
    bool Input_Changed = false;
    bool Output_Valid = false;
    bool results_outdated = false;
};
[[nodiscard]] EditMarks edit_marks(const BasinState& basin);

/// An edit was taken back, or made again: if nothing was marked since, the marks are again what they were on
/// the other side of it.
///
/// @param left the marks as the edit left them. @param before as it found them
/// @return false if a basin that was saved or run meanwhile now differs from that state, and the caller has
/// to mark the change as a new one
[[nodiscard]] bool unmark_edit(BasinState& basin, const EditMarks& left, const EditMarks& before);

/// Whether inputs have changed since the last run, also before a save.
[[nodiscard]] bool inputs_changed_since_run(const BasinState& basin);

}  // namespace nivora
