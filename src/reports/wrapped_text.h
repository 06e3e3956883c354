// Texts measured in the font of a print, and broken into lines if they are too wide.
#pragma once

#include "reports/printed_page.h"

#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// The widths of texts in one font on one device.
class LineMeasure {
public:
    LineMeasure(const PagedDevice& device, PrintFont font);

    /// The width of a text on one line, twips.
    [[nodiscard]] double width(std::string_view text, bool bold) const;
    /// The width of the widest line of a text. For a line of thousands of characters, which is broken anyway,
    /// it is an upper bound.
    [[nodiscard]] double widest_line(std::string_view text, bool bold) const;

private:
    const PagedDevice& device_;
    PrintFont font_;
};

/// Breaks a text into lines that are no wider than a width: at blanks, or within a word that is too wide by
/// itself. A line has at least one character.
[[nodiscard]] std::vector<std::string> wrapped(const LineMeasure& measure, std::string_view text,
                                               double width, bool bold);

}  // namespace nivora
