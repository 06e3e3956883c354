#include "widgets/grid_sheet.h"

#include "widgets/qt_text.h"

#include <algorithm>

namespace nivora {
namespace {

/// A unit that is longer would widen its column; it is an explanation rather than a unit.
constexpr qsizetype k_unit_characters = 10;

CellRange whole(const GridView& grid) {
    return {0, 0, grid.cells().rowCount() - 1, grid.cells().columnCount() - 1};
}

SheetColumn column_of(const GridModel& cells, int row, int column) {
    SheetColumn printed;
    printed.head = from_qt(cells.header(column));
    const QString unit = cells.unit(column);
    if (!unit.isEmpty() && unit.size() <= k_unit_characters) printed.head += "\n" + from_qt(unit);
    const CellFormat::Kind kind = cells.format(row, column).kind;
    const bool number = kind == CellFormat::Kind::Number || kind == CellFormat::Kind::Integer;
    printed.align = number ? PrintAlign::Right : PrintAlign::Left;
    return printed;
}

/// The first column, then the others of a block that are shown.
std::vector<int> printed_columns(const GridView& grid, const CellRange& range) {
    std::vector<int> columns{0};
    for (int column = std::max(1, range.first_column); column <= range.last_column; ++column) {
        if (!grid.isColumnHidden(column)) columns.push_back(column);
    }
    return columns;
}

}  // namespace

std::optional<CellRange> selected_block(const GridView& grid) {
    if (!grid.selectionModel()->hasSelection()) return std::nullopt;
    const CellRange range = grid.block();
    if (range.rows() * range.columns() <= 1) return std::nullopt;
    return range;
}

PrintedSheet sheet_of(const GridView& grid, const std::optional<CellRange>& block) {
    const GridModel& cells = grid.cells();
    if (cells.columnCount() == 0) return sheet_of(cells, 0, -1, {});
    const CellRange range = block.value_or(whole(grid));
    return sheet_of(cells, range.first_row, range.last_row, printed_columns(grid, range));
}

PrintedSheet sheet_of(const GridModel& cells, int first_row, int last_row, const std::vector<int>& columns) {
    PrintedSheet sheet;
    sheet.key_columns = 1;
    sheet.columns.reserve(columns.size());
    for (const int column : columns) sheet.columns.push_back(column_of(cells, first_row, column));
    sheet.rows.reserve(static_cast<std::size_t>(std::max(0, last_row - first_row + 1)));
    for (int row = first_row; row <= last_row; ++row) {
        auto& texts = sheet.rows.emplace_back();
        texts.reserve(columns.size());
        for (const int column : columns) texts.push_back(from_qt(cells.text(row, column)));
    }
    return sheet;
}

std::optional<Message> large_print_question(const GridView& grid) {
    std::optional<std::size_t> selected;
    if (const auto block = selected_block(grid)) selected = static_cast<std::size_t>(block->rows());
    return large_print_question(static_cast<std::size_t>(grid.cells().rowCount()), selected);
}

}  // namespace nivora
