#include "windows/reports/report_printing.h"

#include "reports/print_texts.h"
#include "reports/report_pages.h"
#include "widgets/printing.h"

namespace nivora {

void print_report_file(const WindowContext& context, QWidget* window, const ReportFile& file,
                       bool page_breaks) {
    context.printing.print_report(
        window, {.text = file.text, .name = k_print_job_name, .No_Table_Head = !page_breaks});
}

}  // namespace nivora
