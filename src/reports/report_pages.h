// The text of reports laid out on pages, and as the text file of a print to a file.
#pragma once

#include "reports/printed_page.h"

#include <string>
#include <string_view>

namespace nivora {

struct ReportPrint {
    std::string text = {};       ///< as ReportGenerator makes it: lines that end with CR LF or LF
    std::string name = {};       ///< of the print job
    bool No_Table_Head = false;  ///< "without page breaks": tables follow one another, no head is repeated
};

/// Lays out reports on the pages of a device that was set up, in the font of reports, which shrinks until the
/// widest line fits. A line that is a form feed is printed as an empty one; the eleven lines after it are the
/// head of the pages that follow. A line with character 1 ends a table and is not printed. If possible, pages
/// end between tables; without page breaks they end only where they are full. No head follows the last page.
[[nodiscard]] PrintedJob lay_out_report(const PagedDevice& device, const ReportPrint& print);

/// The text file of a print to a file: form feeds and marks are empty lines, and a line of 92 "=" and two
/// empty lines follow every third mark. Lines end with CR LF.
[[nodiscard]] std::string report_text_file(std::string_view text);

}  // namespace nivora
