#include "widgets/page_dialogs.h"

#include "widgets/desktop_printers.h"

#include <QFontDialog>
#include <QPageSetupDialog>
#include <QPrinter>
#include <cmath>

namespace nivora {

QString page_printer(const QStringList& printers, const PageSetup& setup) {
    const int kept = kept_printer(printers, setup.printer);
    return kept < 0 ? QString{} : printers.at(kept);
}

void Page_Setup(PageSetup& setup, QWidget* parent) {
    const auto printer = make_printer(page_printer(printer_names(), setup), setup);
    QPageSetupDialog dialog(printer.get(), parent);
    if (dialog.exec() == QDialog::Accepted) keep_page(setup, printer->pageLayout());
}

FontChooser::Choice FontChooser::choice_of(const QFont& font) {
    const int size = static_cast<int>(std::lround(font.pointSizeF()));
    return {.text = QStringLiteral("%1 %2 %3 %4")
                        .arg(font.family())
                        .arg(size)
                        .arg(static_cast<int>(font.weight()))
                        .arg(font.italic() ? QStringLiteral("italic") : QStringLiteral("upright")),
            .size = size,
            .bold = font.weight() != QFont::Normal,
            .italic = font.italic()};
}

FontChooser::Choice FontChooser::Choose_Font(const QFont& first, QWidget* parent) {
    if (!used_) {
        record_ = first;
        record_.setWeight(QFont::Normal);
        used_ = true;
    }
    bool chosen = false;
    const QFont font = QFontDialog::getFont(&chosen, record_, parent);
    if (!chosen) return {};
    record_ = font;
    return choice_of(record_);
}

}  // namespace nivora
