// The next missing value of a column.
#pragma once

#include "widgets/grid_model.h"

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

}  // namespace nivora
