#include "widgets/grid_find.h"

#include <cstdint>

namespace nivora {

std::optional<FoundRow> next_missing(const GridModel& cells, int column, int from, bool forward) {
    const int rows = cells.rowCount();
    for (int step = 1; step <= rows; ++step) {
        const int at = forward ? from + step : from - step;
        const bool wrapped = at < 0 || at >= rows;
        const int row = (at + rows) % rows;
        if (cells.lacks_number(row, column)) return FoundRow{row, wrapped};
    }
    return std::nullopt;
}

std::optional<FoundCell> next_cell(const GridModel& cells, int row, int column, bool forward,
                                   const std::function<bool(int row, int column)>& wanted) {
    const std::int64_t columns = cells.columnCount();
    const std::int64_t all = cells.rowCount() * columns;
    const std::int64_t from = row * columns + column;
    for (std::int64_t step = 1; step <= all; ++step) {
        const std::int64_t at = forward ? from + step : from - step;
        const bool wrapped = at < 0 || at >= all;
        const std::int64_t place = (at + all) % all;
        const FoundCell cell{static_cast<int>(place / columns), static_cast<int>(place % columns), wrapped};
        if (wanted(cell.row, cell.column)) return cell;
    }
    return std::nullopt;
}

}  // namespace nivora
