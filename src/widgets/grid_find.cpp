#include "widgets/grid_find.h"

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

}  // namespace nivora
