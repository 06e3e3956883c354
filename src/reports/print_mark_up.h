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

/// Reads mark-up: /n a new line, /c /r /l the alignment of what follows, /fb1 /fb0 bold on and off, /fu1 /fu0
/// underline, /p the page's number, // a slash; a slash before anything else stands for itself, and a line
/// end in the text is a new line. Alignment goes back to the left on a new line, the style stays.
[[nodiscard]] std::vector<MarkedLine> read_mark_up(std::string_view mark_up, std::size_t page);

/// A text that mark-up shows as it stands, such as a name with a slash.
[[nodiscard]] std::string mark_up_text(std::string_view plain);

}  // namespace nivora
