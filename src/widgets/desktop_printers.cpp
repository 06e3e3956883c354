#include "widgets/desktop_printers.h"

#include "paint/page_layout.h"
#include "reports/print_texts.h"
#include "widgets/print_dialog.h"
#include "widgets/qt_text.h"

#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>

namespace nivora {
namespace {

/// The length of the field that holds the name of a printer in the settings of a page dialog.
constexpr std::size_t k_name_field = 32;

/// The part of a name that fits the field.
std::u32string field_of(const QString& name) { return name.toStdU32String().substr(0, k_name_field); }

/// Shows the dialog of the system, which has every option of the printer.
bool show_system_dialog(QPrinter& printer, QWidget* window) {
    QPrintDialog dialog(&printer, window);
    dialog.setOptions(QAbstractPrintDialog::PrintCollateCopies);
    return dialog.exec() == QDialog::Accepted;
}

}  // namespace

QStringList printer_names() {
    QStringList names = QPrinterInfo::availablePrinterNames();
    const QString standard = QPrinterInfo::defaultPrinterName();
    if (names.removeAll(standard) > 0) names.prepend(standard);
    return names;
}

int kept_printer(const QStringList& names, const std::string& kept) {
    if (kept.empty()) return -1;
    const QString name = to_qt(kept);
    if (const auto same = names.indexOf(name); same >= 0) return static_cast<int>(same);
    for (int at = 0; at < names.size(); ++at) {
        if (field_of(names.at(at)) == field_of(name)) return at;
    }
    return -1;
}

std::unique_ptr<QPrinter> make_printer(const QString& name, const PageSetup& page) {
    auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    if (!name.isEmpty()) printer->setPrinterName(name);
    printer->setPageLayout(page_of(page));
    printer->setDocName(QString::fromUtf8(k_print_job_name));
    return printer;
}

PrintChoice printer_choice(std::unique_ptr<QPrinter> printer, const QString& name, const PageSetup& page) {
    PrintChoice choice{.target = PrintTarget::Printer, .printer = from_qt(name), .page = page};
    // Without the printer of this name, Qt takes the standard one, or writes a PDF file if there is none.
    const bool exists = printer->isValid() && printer->outputFormat() == QPrinter::NativeFormat &&
                        printer->printerName() == name;
    if (!exists) return choice;
    choice.has_failed = [made = printer.get()] {
        return made->printerState() == QPrinter::Error || made->printerState() == QPrinter::Aborted;
    };
    choice.abort = [made = printer.get()] { made->abort(); };
    choice.device = std::move(printer);
    return choice;
}

std::optional<PrintChoice> DesktopPrinters::choose(QWidget* window, const PrintOffer& offer) {
    PrintDialog dialog(printer_names(), offer, window);
    std::unique_ptr<QPrinter> printer;
    QObject::connect(&dialog, &PrintDialog::options_wanted, &dialog, [&] {
        printer = make_printer(dialog.printer(), offer.page);
        if (show_system_dialog(*printer, &dialog)) return dialog.accept();
        printer.reset();
    });
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    if (dialog.target() != PrintTarget::Printer) return PrintChoice{.target = dialog.target()};
    if (printer == nullptr)
        return printer_choice(make_printer(dialog.printer(), offer.page), dialog.printer(), offer.page);
    // The dialog of the system may have changed the printer and its page.
    PageSetup page = offer.page;
    keep_page(page, printer->pageLayout());
    const QString changed = printer->printerName();
    return printer_choice(std::move(printer), changed.isEmpty() ? dialog.printer() : changed, page);
}

}  // namespace nivora
