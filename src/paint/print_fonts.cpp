#include "paint/print_fonts.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QStringList>

namespace nivora {
namespace {

bool has_fixed_outlines(const QString& family) {
    return QFontDatabase::isFixedPitch(family) && QFontDatabase::isSmoothlyScalable(family);
}

/// The family that the system substitutes for a fixed-pitch font of this name.
QString systems_choice(const QString& wanted) {
    QFont font(wanted);
    font.setStyleHint(QFont::TypeWriter);
    font.setFixedPitch(true);
    return QFontInfo(font).family();
}

/// Prevents ligatures such as "ff", with which a search in the PDF would not find "Runoff". Qt makes none if
/// a letter spacing is set; a spacing of 100 % moves no letter.
void keep_letters_apart(QFont& font) { font.setLetterSpacing(QFont::PercentageSpacing, 100.0); }

}  // namespace

QString fixed_pitch_family(const QString& wanted) {
    if (has_fixed_outlines(wanted)) return wanted;
    const QString chosen = systems_choice(wanted);
    if (has_fixed_outlines(chosen)) return chosen;
    const QString usual = QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
    if (has_fixed_outlines(usual)) return usual;
    for (const QString& family : QFontDatabase::families(QFontDatabase::Latin)) {
        if (has_fixed_outlines(family)) return family;
    }
    return {};
}

QFont print_font(const PrintFont& font, bool bold) {
    const QString wanted = QString::fromStdString(font.family);
    QFont result;
    if (font.fixed_pitch) {
        const QString family = fixed_pitch_family(wanted);
        result.setFamily(family.isEmpty() ? wanted : family);
        result.setStyleHint(QFont::TypeWriter);
        result.setFixedPitch(true);
    } else {
        result.setFamily(wanted);
        result.setStyleHint(QFont::SansSerif);
    }
    result.setHintingPreference(QFont::PreferNoHinting);
    result.setKerning(false);
    keep_letters_apart(result);
    result.setBold(bold);
    result.setPointSizeF(font.points);
    return result;
}

}  // namespace nivora
