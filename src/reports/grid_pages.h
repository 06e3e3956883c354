// Printed grids: a sheet of rows and columns laid out on pages, between a head and a foot in print mark-up.
#pragma once

#include "reports/printed_page.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

enum class PrintAlign { Left, Centre, Right };

/// A run of text of one style on a line of mark-up.
struct MarkedRun {
    std::string text = {};
    PrintAlign align = PrintAlign::Left;
    bool bold = false;
    bool underline = false;

    bool operator==(const MarkedRun&) const = default;
};
using MarkedLine = std::vector<MarkedRun>;

/// Reads mark-up: /n a new line, /c /r /l the alignment of what follows, /fb1 /fb0 bold on and off, /fu1 /fu0
/// underline, /p the page's number, // a slash; a slash before anything else stands for itself, and a line
/// end in the text is a new line. Alignment goes back to the left on a new line, the style stays.
[[nodiscard]] std::vector<MarkedLine> read_mark_up(std::string_view mark_up, int page);

/// A text that mark-up shows as it stands, such as a name with a slash.
[[nodiscard]] std::string mark_up_text(std::string_view plain);

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
/// wide as their widest text. A sheet that is wider than the page goes on to the right on further pages,
/// which follow those of its first columns; each page repeats the column heads. A cell that is wider than the
/// page is broken over lines. Nothing lies outside the margins.
[[nodiscard]] PrintedJob lay_out_sheets(const PagedDevice& device, std::span<const PrintedSheet> sheets,
                                        const std::string& name);

/// The question before a large print: more than two pages of 50 rows; nothing before a smaller one.
///
/// @param rows     of the whole sheet
/// @param selected the rows of a selected block, which is printed alone; nothing where none is selected
[[nodiscard]] std::optional<Message> large_print_question(std::size_t rows,
                                                          std::optional<std::size_t> selected);

}  // namespace nivora
