#include "paint/page_layout.h"

#include "base/single.h"

#include <QPageSize>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>

namespace nivora {
namespace {

constexpr const char* k_millimetres = "mm";
constexpr const char* k_inches = "in";
constexpr double k_millimetres_an_inch = 25.4;
constexpr double k_same_margin = 0.001;  ///< of any unit: dialogs show hundredths

/// Whether Letter is the usual paper of a country. The unit does not tell: most of these countries are
/// metric.
bool prints_on_letter(QLocale::Territory territory) {
    constexpr std::array k_letter{QLocale::UnitedStates, QLocale::Canada,     QLocale::Mexico,
                                  QLocale::Belize,       QLocale::Chile,      QLocale::Colombia,
                                  QLocale::CostaRica,    QLocale::ElSalvador, QLocale::Guatemala,
                                  QLocale::Nicaragua,    QLocale::Panama,     QLocale::Philippines,
                                  QLocale::PuertoRico,   QLocale::Venezuela};
    return std::find(k_letter.begin(), k_letter.end(), territory) != k_letter.end();
}

/// The paper from its text in the settings; nothing if the text is missing or invalid.
std::optional<QPageSize> paper_of(const std::string& text) {
    const QString name = QString::fromStdString(text);
    for (int id = 0; id <= QPageSize::LastPageSize; ++id) {
        const auto known = static_cast<QPageSize::PageSizeId>(id);
        if (known != QPageSize::Custom && QPageSize::key(known) == name) return QPageSize(known);
    }
    const QStringList sides = name.split(QLatin1Char('x'));
    if (sides.size() != 2) return std::nullopt;
    const QSizeF size(sides[0].toDouble(), sides[1].toDouble());
    const double shorter = std::min(size.width(), size.height());
    if (!(shorter >= 10.0) || std::max(size.width(), size.height()) > 5000.0) return std::nullopt;
    return QPageSize(size, QPageSize::Millimeter);
}

std::string paper_text(const QPageSize& paper) {
    if (paper.id() != QPageSize::Custom) return paper.key().toStdString();
    const QSizeF size = paper.size(QPageSize::Millimeter);
    return QStringLiteral("%1x%2").arg(size.width()).arg(size.height()).toStdString();
}

QPageLayout::Unit unit_of(const std::string& text, const QLocale& locale) {
    if (text == k_millimetres) return QPageLayout::Millimeter;
    if (text == k_inches) return QPageLayout::Inch;
    return locale.measurementSystem() == QLocale::ImperialUSSystem ? QPageLayout::Inch
                                                                   : QPageLayout::Millimeter;
}

double margin_of(float kept) { return kept == 0.0F ? k_default_margin : as_double(kept); }

std::array<double, 4> sides_of(const QMarginsF& margins) {
    return {margins.left(), margins.top(), margins.right(), margins.bottom()};
}

/// The margins in inches. Qt rounds what it converts to hundredths, so that 10 mm would come back as 9.91.
std::array<double, 4> margins_in_inches(const QPageLayout& page) {
    if (page.units() != QPageLayout::Millimeter) return sides_of(page.margins(QPageLayout::Inch));
    return sides_of(page.margins() / k_millimetres_an_inch);
}

}  // namespace

QPageLayout page_of(const PageSetup& setup, const QLocale& locale) {
    QPageLayout page;
    page.setMode(QPageLayout::FullPageMode);
    const QPageSize usual(prints_on_letter(locale.territory()) ? QPageSize::Letter : QPageSize::A4);
    page.setPageSize(paper_of(setup.paper).value_or(usual));
    page.setUnits(QPageLayout::Inch);
    page.setOrientation(setup.orientation == k_landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
    page.setMargins({margin_of(setup.margins[0]), margin_of(setup.margins[1]), margin_of(setup.margins[2]),
                     margin_of(setup.margins[3])});
    page.setUnits(unit_of(setup.unit, locale));
    return page;
}

void keep_page(PageSetup& setup, const QPageLayout& page) {
    QPageLayout before = page_of(setup);
    before.setUnits(page.units());
    const auto shown_before = sides_of(before.margins());
    const auto shown = sides_of(page.margins());
    const auto inches = margins_in_inches(page);
    for (std::size_t side = 0; side < setup.margins.size(); ++side) {
        const bool same = std::abs(shown[side] - shown_before[side]) < k_same_margin;
        setup.margins[side] = static_cast<float>(same ? margin_of(setup.margins[side]) : inches[side]);
    }
    setup.paper = paper_text(page.pageSize());
    setup.unit = page.units() == QPageLayout::Inch ? k_inches : k_millimetres;
    setup.orientation = page.orientation() == QPageLayout::Landscape ? k_landscape : k_portrait;
}

}  // namespace nivora
