// The line that ends each page of a report.
#pragma once

#include "base/version.h"
#include "reports/report_lines.h"

namespace nivora {

/// The version in reports: that of the program.
inline constexpr const char* k_report_version = k_version;

/// Writes "NVR, Version 1.10" with the number at column 37, "Page" at 65 and the page number at 78. Does not
/// end the line.
void write_version_columns(ReportLines& lines, std::size_t page);

/// Writes date and time and the version columns, then a form feed on a line of its own, and counts the page.
/// The line fits 80 columns.
///
/// @param page the number of the page that ends here; counted up
/// @param now  date with time part
void write_page_head(ReportLines& lines, int& page, double now);

}  // namespace nivora
