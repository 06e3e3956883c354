// Cells on the clipboard, in the tab-separated form that spreadsheet programs read and write.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// Rows of cells. Rows may differ in length.
using CellBlock = std::vector<std::vector<std::string>>;

/// Cells as text: tabs between cells, a line feed after each row. A cell that contains a tab, a line end or a
/// quotation mark is enclosed in quotation marks, and those inside it are doubled.
[[nodiscard]] std::string clipboard_text(const CellBlock& cells);

/// Reads such a text, with line ends of any kind. A line end at the very end does not begin another row. A
/// quotation mark that opens a cell and is not closed right before a tab, a line end or the end of the text
/// is an ordinary character. An empty text has no rows.
[[nodiscard]] CellBlock read_clipboard_text(std::string_view text);

/// Where the rows of a copied block go when it is pasted over a selection.
struct PastePiece {
    std::size_t to_row = 0;  ///< first row of the piece in the grid
    std::size_t rows = 0;    ///< rows of the copied block that go there, from its first
};

/// The pieces in which a block of `copied` rows is pasted over `selected` rows from `first` on, in a grid of
/// `rows`: once, in full height, if the selection is not taller; otherwise repeated over the selection, with
/// the last piece cut short.
[[nodiscard]] std::vector<PastePiece> paste_pieces(std::size_t first, std::size_t selected,
                                                   std::size_t copied, std::size_t rows);

}  // namespace nivora
