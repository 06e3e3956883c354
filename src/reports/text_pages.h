// A running text laid out on pages, such as a topic of the help.
#pragma once

#include "reports/printed_page.h"

#include <string>

namespace nivora {

struct TextPrint {
    std::string text = {};   ///< paragraphs that end with LF
    std::string title = {};  ///< at the head of each page
    std::string name = {};   ///< of the print job
    PrintFont font = {};
};

/// Lays out a text between the margins and breaks lines that are too wide. Each page has the title and a rule
/// at its head and "Page 1 of 3" at its foot.
[[nodiscard]] PrintedJob lay_out_text(const PagedDevice& device, const TextPrint& print);

}  // namespace nivora
