// The text of a report file on the screen.
#pragma once

#include <string>
#include <string_view>

namespace nivora {

/// The lines of a report file, each ended by a line feed. The lines that end a page or a block, which consist
/// of the character 12 or 1, are empty. The sign of a difference is the letter that a print shows.
[[nodiscard]] std::string shown_report_text(std::string_view file);

}  // namespace nivora
