// The mark-up of the texts around a printed grid.
#pragma once

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

/// Reads mark-up: /n is a new line, /c /r /l set the alignment of the text that follows, /fb1 /fb0 switch
/// bold on and off, /fu1 /fu0 underline, /p is the page number and // a slash. A slash before anything else
/// is a slash, and a line end is a new line. A new line is left aligned and keeps the style.
[[nodiscard]] std::vector<MarkedLine> read_mark_up(std::string_view mark_up, std::size_t page);

/// Mark-up that shows a text as it is, such as a name with a slash: a line end begins a new line, any other
/// control character is a blank.
[[nodiscard]] std::string mark_up_text(std::string_view plain);

}  // namespace nivora
