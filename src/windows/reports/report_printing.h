// Printing of a report file from the windows of reports.
#pragma once

#include "session/report_file.h"
#include "widgets/nivora_window.h"

namespace nivora {

/// Prints a report file in front of a window.
///
/// @param page_breaks false leaves out the heads of tables on the pages that continue one
void print_report_file(const WindowContext& context, QWidget* window, const ReportFile& file,
                       bool page_breaks);

}  // namespace nivora
