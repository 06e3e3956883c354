// The text file of a grid print to a file.
#pragma once

#include "reports/grid_pages.h"

#include <span>
#include <string>

namespace nivora {

/// Sheets one after another without pages: header, heading, column heads, rows, legend and footer. Columns
/// are as wide as their widest text, with two blanks between them, and all of them share one line. A footer
/// that only numbers pages is left out. UTF-8, lines end with CR LF.
[[nodiscard]] std::string sheet_text_file(std::span<const PrintedSheet> sheets);

}  // namespace nivora
