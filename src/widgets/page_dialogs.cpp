#include "widgets/page_dialogs.h"

#include <QFontDialog>
#include <QPageSetupDialog>
#include <QPrinter>
#include <cmath>

namespace nivora {
namespace {

constexpr std::int32_t k_landscape = 2;
constexpr std::int32_t k_portrait = 1;
constexpr double k_default_margin = 1.0;

double margin_of(float kept) { return kept == 0.0F ? k_default_margin : static_cast<double>(kept); }

}  // namespace

QPageLayout page_of(const Settings& settings) {
    QPageLayout page;
    page.setMode(QPageLayout::FullPageMode);
    page.setPageSize(QPageSize(QPageSize::Letter));
    page.setUnits(QPageLayout::Inch);
    page.setOrientation(settings.orientation == k_landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
    page.setMargins({margin_of(settings.margins[0]), margin_of(settings.margins[1]),
                     margin_of(settings.margins[2]), margin_of(settings.margins[3])});
    return page;
}

void keep_page(Settings& settings, const QPageLayout& page) {
    const QMarginsF margins = page.margins(QPageLayout::Inch);
    settings.margins = {static_cast<float>(margins.left()), static_cast<float>(margins.top()),
                        static_cast<float>(margins.right()), static_cast<float>(margins.bottom())};
    settings.orientation = page.orientation() == QPageLayout::Landscape ? k_landscape : k_portrait;
}

void Page_Setup(Settings& settings, QWidget* parent) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageLayout(page_of(settings));
    QPageSetupDialog dialog(&printer, parent);
    if (dialog.exec() == QDialog::Accepted) keep_page(settings, printer.pageLayout());
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
