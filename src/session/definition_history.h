// The edits of the main window, which can be taken back: boxes of the definition and cells of both grids.
#pragma once

#include "base/undo_steps.h"
#include "session/basin_rows.h"
#include "store/basin_marks.h"
#include "store/basin_store.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

struct Session;

/// What belongs together as one step although it comes in several edits: the characters typed into a box, or
/// a repair of what was just typed. None joins nothing.
enum class JoinedEdit { None, LastEdit, FirstBox };
/// The characters that are typed into a box.
[[nodiscard]] constexpr JoinedEdit typing_in_box(int box) {
    return static_cast<JoinedEdit>(static_cast<int>(JoinedEdit::FirstBox) + box);
}

/// The edits since the basin was opened. What changes the rows in another way, such as a deleted simulation,
/// is no step: a step whose rows are not as it left them any more is forgotten together with all others.
///
/// The number of zones and the units are fixed once, after a question, and are no edits.
class DefinitionHistory {
public:
    /// The user is about to change something.
    void begin(const Session& session);
    /// The change is made and marked.
    void end(Session& session, JoinedEdit joined = JoinedEdit::None);
    /// What is typed from now on is another step.
    void separate();
    /// Another basin is shown.
    void forget();

    [[nodiscard]] bool can_undo() const { return steps_.to_undo() != nullptr; }
    [[nodiscard]] bool can_redo() const { return steps_.to_redo() != nullptr; }
    /// Whether the newest step is what is being typed into a box.
    [[nodiscard]] bool is_typing_in(int box) const;

    /// Takes the newest edit back, or makes the last undone edit again, with its marks: a basin that was not
    /// changed otherwise is as before the edit also in them.
    ///
    /// @return where it changed something first; nothing if there is no such edit
    [[nodiscard]] std::optional<DefinitionField> undo(Session& session);
    [[nodiscard]] std::optional<DefinitionField> redo(Session& session);

private:
    static constexpr std::size_t k_boxes = 6;

    /// What belongs to the selected simulation beside its row.
    struct Selected {
        std::optional<std::size_t> row;
        Units units = Units::NotFixed;
        std::optional<DayCount> start;
        std::optional<DayCount> end;
        bool reports = false;  ///< whether they can be chosen

        bool operator==(const Selected&) const = default;
    };
    struct Content {
        std::array<std::string, k_boxes> boxes;
        std::vector<Zone> zones;
        std::vector<Simulation> simulations;
        Selected selected;
        EditMarks marks;
    };
    template <typename Row>
    struct ChangedRow {
        std::size_t row = 0;
        Row before;
        Row after;
    };
    struct Step {
        std::vector<ChangedRow<std::string>> boxes;
        std::vector<ChangedRow<Zone>> zones;
        std::vector<ChangedRow<Simulation>> simulations;
        Selected selected_before;
        Selected selected_after;
        EditMarks marks_before;  ///< on the side to which the next undo or redo leads
        EditMarks marks_after;   ///< on the side of the present state, once the step is made or undone
        JoinedEdit joined = JoinedEdit::None;

        [[nodiscard]] std::size_t bytes() const;
        [[nodiscard]] bool empty() const;
    };

    [[nodiscard]] static Content content_of(const Session& session);
    [[nodiscard]] static std::optional<Step> difference(const Content& before, const Content& after);
    [[nodiscard]] std::optional<DefinitionField> reverse(Session& session, Step& step, bool redo);

    UndoSteps<Step> steps_;
    std::optional<Content> begun_;          ///< before the edit that is being made
    std::optional<Content> before_newest_;  ///< to join a further edit with the newest step
};

}  // namespace nivora
