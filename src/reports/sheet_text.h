// Printed grids as the text file that a print to a file makes.
#pragma once

#include "reports/grid_pages.h"

#include <span>
#include <string>

namespace nivora {

/// Sheets behind each other: header, heading, column heads, rows, legend and footer, without pages. Columns
/// are as wide as their widest text, with two blanks between them, and are never continued below. A footer
/// that only numbers pages is left out. UTF-8, lines end with CR LF.
[[nodiscard]] std::string sheet_text_file(std::span<const PrintedSheet> sheets);

}  // namespace nivora
