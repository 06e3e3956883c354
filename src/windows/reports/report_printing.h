// Printing of a report file from the windows of reports.
#pragma once

#include "session/report_file.h"
#include "widgets/nivora_window.h"

namespace nivora {

/// Prints a report file; dialogs show in front of the window.
///
/// @param page_breaks false leaves out the table head on pages that continue a table
void print_report_file(const WindowContext& context, QWidget* window, const ReportFile& file,
                       bool page_breaks);

}  // namespace nivora
