// Texts measured in the font of a print, and broken over lines where they are too wide.
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

    /// Of a text on one line, twips.
    [[nodiscard]] double width(std::string_view text, bool bold) const;
    /// Of the widest line of a text. That of a line of thousands of letters, which is broken anyway, is an
    /// upper bound.
    [[nodiscard]] double widest_line(std::string_view text, bool bold) const;

private:
    const PagedDevice& device_;
    PrintFont font_;
};

/// The lines of a text, each no wider than a width: broken at blanks, within a word that is too wide by
/// itself. A line holds at least one character.
[[nodiscard]] std::vector<std::string> wrapped(const LineMeasure& measure, std::string_view text,
                                               double width, bool bold);

}  // namespace nivora
