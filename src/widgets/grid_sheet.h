// What a grid shows, as a sheet that is printed.
#pragma once

#include "reports/grid_pages.h"
#include "widgets/grid_view.h"

namespace nivora {

/// The selected block that a print is limited to; nothing if no more than the active cell is selected.
[[nodiscard]] std::optional<CellRange> selected_block(const GridView& grid);

/// A block of a grid, or all of it, without hidden columns. The first column, which names the rows, is
/// printed in either case. Numbers are right-aligned; a short unit is printed below its column's header.
[[nodiscard]] PrintedSheet sheet_of(const GridView& grid, const std::optional<CellRange>& block = {});

/// Columns of a table, in this order, from one row to another.
[[nodiscard]] PrintedSheet sheet_of(const GridModel& cells, int first_row, int last_row,
                                    const std::vector<int>& columns);

/// The question before a large print of a grid; nothing before a smaller one.
[[nodiscard]] std::optional<Message> large_print_question(const GridView& grid);

}  // namespace nivora
