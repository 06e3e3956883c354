#include "widgets/colours.h"

#include <QColorDialog>

namespace nivora {

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
