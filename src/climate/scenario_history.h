// The edits of the rows of scenarios in one window, which can be taken back.
#pragma once

#include "base/undo_steps.h"
#include "climate/scenario_definitions.h"
#include "store/basin_marks.h"

#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// The edits since the window was opened. A scenario whose rows are not as an edit left them, since it was
/// deleted and made anew for example, lets all edits be forgotten.
class ScenarioHistory {
public:
    /// Rows of a scenario are about to change.
    ///
    /// @param joined the change belongs to the last one, which it completes
    void begin(const Scenario& scenario, const BasinState& basin, bool joined = false);
    /// They have changed, and the basin is marked.
    void end(const Scenario& scenario, const BasinState& basin);
    void forget();

    [[nodiscard]] bool can_undo() const { return steps_.to_undo() != nullptr; }
    [[nodiscard]] bool can_redo() const { return steps_.to_redo() != nullptr; }
    /// Whether an edit is made and not undone.
    [[nodiscard]] bool changed() const { return !steps_.at_beginning(); }

    /// A reversed edit: which of the scenarios it changed, and its first row.
    struct Reversed {
        std::size_t scenario = 0;
        int row = 0;
    };
    /// Takes the newest edit back, or makes the last undone one again, with its mark.
    /// @return nothing if there is no such edit
    std::optional<Reversed> undo(std::vector<Scenario>& scenarios, BasinState& basin);
    std::optional<Reversed> redo(std::vector<Scenario>& scenarios, BasinState& basin);

private:
    struct Step {
        std::string scenario;
        std::vector<ScenarioRow> before;
        std::vector<ScenarioRow> after;
        EditMarks marks_before;
        EditMarks marks_after;

        [[nodiscard]] std::size_t bytes() const {
            return sizeof(Step) + scenario.size() + (before.size() + after.size()) * sizeof(ScenarioRow);
        }
    };
    [[nodiscard]] std::optional<Reversed> reverse(std::vector<Scenario>& scenarios, BasinState& basin,
                                                  Step* step, bool redo);

    UndoSteps<Step> steps_;
    std::optional<Step> begun_;
    bool joined_ = false;
};

}  // namespace nivora
