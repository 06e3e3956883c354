// The next missing value of a column, and the next cell of a table that is as somebody wants it.
#pragma once

#include "widgets/grid_model.h"

#include <functional>
#include <optional>

namespace nivora {

struct FoundRow {
    int row = 0;
    bool wrapped = false;  ///< the search went on at the other end of the column
};

/// The next row after `from`, or before it, in which a column of numbers has none. At the end of the column
/// the search goes on at its other end, once, up to `from` itself; nothing if no number is missing.
[[nodiscard]] std::optional<FoundRow> next_missing(const GridModel& cells, int column, int from,
                                                   bool forward);

struct FoundCell {
    int row = 0;
    int column = 0;
    bool wrapped = false;  ///< the search went on at the other end of the table
};

/// The next cell that `wanted` accepts, row by row, likewise up to the cell at which the search begins.
[[nodiscard]] std::optional<FoundCell> next_cell(const GridModel& cells, int row, int column, bool forward,
                                                 const std::function<bool(int row, int column)>& wanted);

}  // namespace nivora
