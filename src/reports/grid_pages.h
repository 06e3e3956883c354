// Printed grids: rows and columns laid out on pages, with a header and a footer in print mark-up.
#pragma once

#include "reports/print_mark_up.h"
#include "reports/printed_page.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

struct SheetColumn {
    std::string head = {};  ///< may have several lines
    PrintAlign align = PrintAlign::Left;
};

/// The print of one grid.
struct PrintedSheet {
    std::string header = {};   ///< mark-up, at the head of every page
    std::string heading = {};  ///< mark-up, above the rows on the first page
    std::vector<SheetColumn> columns = {};
    /// A text for each column. The columns that a short row lacks are empty.
    std::vector<std::vector<std::string>> rows = {};
    std::size_t key_columns = 0;  ///< the first columns, repeated on the pages of further columns
    std::string legend = {};      ///< mark-up, below the last row
    std::string footer = {};      ///< mark-up, at the foot of every page
};

/// Lays out sheets one after another. Each begins on a new page, and page numbers run on over all sheets.
/// Columns are as wide as their widest text; if the page is too narrow for that, heads of several words are
/// broken. If the columns do not fit the page, the others follow on further pages, after all rows of the
/// first ones. Each page repeats the column heads. A cell that is wider than the page is broken into lines.
/// Nothing is placed outside the margins.
[[nodiscard]] PrintedJob lay_out_sheets(const PagedDevice& device, std::span<const PrintedSheet> sheets,
                                        const std::string& name);

/// The question before a print of more than two pages of 50 rows; nothing before a smaller one.
///
/// @param rows     of the whole sheet
/// @param selected the rows of the selected block, the only ones to print; nothing without a selection
[[nodiscard]] std::optional<Message> large_print_question(std::size_t rows,
                                                          std::optional<std::size_t> selected);

}  // namespace nivora
