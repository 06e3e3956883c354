// Printed grids: a sheet of rows and columns laid out on pages, between a head and a foot in print mark-up.
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

/// What one grid prints.
struct PrintedSheet {
    std::string header = {};   ///< mark-up, above every page
    std::string heading = {};  ///< mark-up, above the rows of the first page
    std::vector<SheetColumn> columns = {};
    std::vector<std::vector<std::string>> rows =
        {};                       ///< a text for each column; a short row ends with blanks
    std::size_t key_columns = 0;  ///< the first columns, repeated where a sheet goes on to the right
    std::string legend = {};      ///< mark-up, below the last row
    std::string footer = {};      ///< mark-up, at the foot of every page
};

/// Lays sheets out behind each other, each from a page of its own, with pages counted through. Columns are as
/// wide as their widest text; where the page is too narrow for that, heads of several words are broken. A
/// sheet that is wider than the page goes on to the right on further pages, which follow those of its first
/// columns; each page repeats the column heads. A cell that is wider than the page is broken over lines.
/// Nothing lies outside the margins.
[[nodiscard]] PrintedJob lay_out_sheets(const PagedDevice& device, std::span<const PrintedSheet> sheets,
                                        const std::string& name);

/// The question before a large print: more than two pages of 50 rows; nothing before a smaller one.
///
/// @param rows     of the whole sheet
/// @param selected the rows of a selected block, which is printed alone; nothing where none is selected
[[nodiscard]] std::optional<Message> large_print_question(std::size_t rows,
                                                          std::optional<std::size_t> selected);

}  // namespace nivora
