#include "store/basin_marks.h"

#include <atomic>

namespace nivora {
namespace {

/// A number that no state of the marks had before, of any basin of the program: a copy of a basin is marked
/// beside it.
void note_change(BasinState& basin) {
    static std::atomic<std::uint64_t> last{0};
    basin.marks = ++last;
}

}  // namespace

void mark_basin_changed(BasinState& basin) {
    note_change(basin);
    basin.Basin_Changed = true;
}

void mark_input_changed(BasinState& basin) {
    note_change(basin);
    basin.Basin_Changed = true;
    basin.Input_Changed = true;
}

void mark_input_edited(BasinState& basin) {
    note_change(basin);
    basin.Input_Changed = true;
}

void mark_output_invalid(BasinState& basin) {
    note_change(basin);
    basin.Output_Valid = false;
}

void mark_results_stored(BasinState& basin) {
    note_change(basin);
    basin.results_time = local_now();
}

void mark_results_current(BasinState& basin) {
    note_change(basin);
    basin.Input_Changed = false;
    basin.results_outdated = false;
    basin.Output_Valid = true;
}

void mark_evaluation_started(BasinState& basin) {
    mark_input_changed(basin);
    basin.Output_Valid = true;
}

void mark_unchanged(BasinState& basin) {
    note_change(basin);
    basin.Basin_Changed = false;
    basin.Input_Changed = false;
}

void mark_inputs_unchanged(BasinState& basin) {
    note_change(basin);
    basin.Input_Changed = false;
}

void keep_results_outdated(BasinState& basin) {
    note_change(basin);
    if (basin.Input_Changed) basin.results_outdated = true;
}

void mark_saved(BasinState& basin) {
    keep_results_outdated(basin);
    mark_unchanged(basin);
}

void mark_opened(BasinState& basin) {
    note_change(basin);
    basin.Basin_Changed = false;
    basin.Output_Valid = false;
    basin.results_outdated = false;
    basin.results_time.reset();
}

void mark_recovered(BasinState& basin, const RecoveredMarks& marks) {
    note_change(basin);
    basin.Basin_Changed = true;
    basin.Input_Changed = marks.Input_Changed;
    basin.Output_Valid = marks.Output_Valid;
    basin.results_outdated = marks.results_outdated;
    basin.results_time = marks.results_time;
}

void mark_results_found(BasinState& basin, bool found, bool inputs_changed) {
    note_change(basin);
    basin.Output_Valid = found;
    basin.Input_Changed = inputs_changed;
}

UnsavedMarks unsaved_marks(const BasinState& basin) { return {basin.Basin_Changed, basin.Input_Changed}; }

void restore_marks(BasinState& basin, const UnsavedMarks& marks) {
    note_change(basin);
    basin.Basin_Changed = marks.Basin_Changed;
    basin.Input_Changed = marks.Input_Changed;
}

EditMarks edit_marks(const BasinState& basin) {
    return {basin.marks, basin.Basin_Changed, basin.Input_Changed, basin.Output_Valid,
            basin.results_outdated};
}

bool unmark_edit(BasinState& basin, const EditMarks& left, const EditMarks& before) {
    if (basin.marks != left.marks) return false;
    basin.marks = before.marks;
    basin.Basin_Changed = before.Basin_Changed;
    basin.Input_Changed = before.Input_Changed;
    basin.Output_Valid = before.Output_Valid;
    basin.results_outdated = before.results_outdated;
    return true;
}

bool inputs_changed_since_run(const BasinState& basin) {
    return basin.Input_Changed || basin.results_outdated;
}

}  // namespace nivora
