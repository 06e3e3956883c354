#include "widgets/colours.h"

#include <QColorDialog>
#include <algorithm>
#include <cmath>

namespace nivora {
namespace {

/// The part of the luminance that one of the three lights has.
double linear(double share) {
    return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
    const auto light = [](int value) { return linear(value / 255.0); };
    return 0.2126 * light(colour.red()) + 0.7152 * light(colour.green()) + 0.0722 * light(colour.blue());
}

}  // namespace

double contrast(const QColor& one, const QColor& other) {
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

QColor readable_on(const QColor& text, const QColor& ground) {
    constexpr double k_middle = 0.18;  // has the same contrast to black and to white
    constexpr int k_white = 255;
    if (luminance(ground) >= k_middle) return text;
    QColor shown = text.toHsl();
    for (int light = shown.lightness(); light <= k_white && contrast(shown, ground) < k_readable_contrast;
         ++light)
        shown.setHsl(shown.hslHue(), shown.hslSaturation(), light);
    return shown.toRgb();
}

QColor colour_of(std::int32_t number) { return {number & 0xFF, number >> 8 & 0xFF, number >> 16 & 0xFF}; }

std::int32_t number_of(const QColor& colour) {
    return colour.red() + colour.green() * 0x100 + colour.blue() * 0x10000;
}

ColourDialog::ColourDialog() { custom_.fill(Qt::white); }

std::int32_t ColourDialog::Choose_Color(QWidget* owner, std::int32_t first) {
    for (int i = 0; i < k_custom_colours; ++i)
        QColorDialog::setCustomColor(i, custom_.at(static_cast<std::size_t>(i)));
    QColorDialog dialog(colour_of(first), owner);
    // The dialogs of some desktops have no colours of the user.
    dialog.setOption(QColorDialog::DontUseNativeDialog);
    if (dialog.exec() != QDialog::Accepted) return k_cancelled;
    for (int i = 0; i < k_custom_colours; ++i)
        custom_.at(static_cast<std::size_t>(i)) = QColorDialog::customColor(i);
    return number_of(dialog.selectedColor());
}

}  // namespace nivora
