// The text of reports laid out on pages, and as the text file that a print to a file makes.
#pragma once

#include "reports/printed_page.h"

#include <string>
#include <string_view>

namespace nivora {

struct ReportPrint {
    std::string text = {};       ///< as ReportGenerator makes it: lines that end with CR LF or LF
    std::string name = {};       ///< of the print job
    bool No_Table_Head = false;  ///< "without page breaks": tables follow each other, no head is repeated
};

/// Lays reports out on pages of a device that was set up. Lines are set in the font of reports, smaller where
/// the widest line needs it. A line that is a form feed is an empty one, behind which the next eleven lines
/// are the head for pages that follow; a line with character 1 ends a table and is not printed. A page ends
/// between tables where it can. The last page is not followed by another head.
[[nodiscard]] PrintedJob lay_out_report(const PagedDevice& device, const ReportPrint& print);

/// The text that a print to a text file writes: form feeds and marks are empty lines, and after every third
/// mark follow a line of 92 "=" and two empty lines. Lines end with CR LF.
[[nodiscard]] std::string report_text_file(std::string_view text);

}  // namespace nivora
