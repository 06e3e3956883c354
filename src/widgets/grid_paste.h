// Which cells a paste changes, and what it has to leave out.
#pragma once

#include "widgets/grid_model.h"

#include <optional>
#include <vector>

namespace nivora {

/// A block of cells, counted from 0, including both ends.
struct CellRange {
    int first_row = 0;
    int first_column = 0;
    int last_row = -1;
    int last_column = -1;

    [[nodiscard]] int rows() const { return last_row - first_row + 1; }
    [[nodiscard]] int columns() const { return last_column - first_column + 1; }
};

/// The cells of a paste, checked before any of them is changed.
struct PastePlan {
    std::vector<CellText> cells;  ///< that are accepted
    int refused = 0;              ///< that are refused
    CellText first_refused;       ///< the first of these
    int cut_off_rows = 0;         ///< of the block, for which the grid has no room
    int cut_off_columns = 0;      ///< columns of the block, likewise
};

/// Checks which of the texts their cells can hold.
[[nodiscard]] PastePlan checked_paste(const GridModel& cells, std::vector<CellText> texts);

/// A block that is pasted from the first cell of the target on, repeated if the target is taller.
[[nodiscard]] PastePlan plan_paste(const GridModel& cells, const CellBlock& copied, const CellRange& target);

/// The question before a paste that can't be accepted as a whole: how many cells are left out, where the
/// first is and why. Yes pastes the others; if there are none the message has no Yes.
[[nodiscard]] std::optional<Message> paste_question(const GridModel& cells, const PastePlan& plan);

}  // namespace nivora
