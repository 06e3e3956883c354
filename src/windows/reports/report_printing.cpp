#include "windows/reports/report_printing.h"

#include "base/durable_file.h"

namespace nivora {

void print_report_file(const WindowContext& context, QWidget* /*window*/, const ReportFile& file,
                       bool /*page_breaks*/) {
    context.session.dialogs.message({.text = "Printing is not in this version yet.  The reports are in the "
                                             "file " +
                                             path_text(file.path) + ".",
                                     .title = "Reports"});
}

}  // namespace nivora
