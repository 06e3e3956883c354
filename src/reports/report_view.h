// The text of a report file as a window shows it.
#pragma once

#include <string>
#include <string_view>

namespace nivora {

/// The lines of a report file, ended by line feeds alone. The lines that end a page or a block, which hold
/// nothing but the character 12 or 1, are empty.
[[nodiscard]] std::string shown_report_text(std::string_view file);

}  // namespace nivora
