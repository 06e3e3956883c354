// The line that ends each page of a report.
#pragma once

#include "base/version.h"
#include "reports/report_lines.h"

namespace nivora {

/// The version that reports bear: that of the program.
inline constexpr const char* k_report_version = k_version;

/// Writes "NVR, Version 1.10", "Page" and a page's number at their columns: the version's number stands at
/// column 37, "Page" at 65 and the page's number at 78. The line is not ended.
void write_version_columns(ReportLines& lines, std::size_t page);

/// Writes date and time, "NVR, Version 1.10", "Page" and its number, then a form feed on a line of its own,
/// and counts the page. The line fits 80 columns.
///
/// @param page the number of the page that ends here; the next one's afterwards
/// @param now  date with time part
void write_page_head(ReportLines& lines, int& page, double now);

}  // namespace nivora
