#include "windows/plots/value_label.h"

#include "plots/label_place.h"
#include "widgets/qt_text.h"

#include <QToolTip>
#include <cmath>

namespace nivora {
namespace {

constexpr int k_margin = 3;

SurfaceSize size_of(const QWidget& widget) {
    return {static_cast<double>(widget.width()), static_cast<double>(widget.height())};
}

}  // namespace

ValueLabel::ValueLabel(QWidget* parent) : QLabel(parent) {
    setObjectName(QStringLiteral("ValueLabel"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setTextFormat(Qt::PlainText);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setMargin(k_margin);
    hide();
}

void ValueLabel::show_texts(const PointTexts& texts, QPointF about) {
    setPalette(QToolTip::palette());
    setFont(QToolTip::font());
    setText(to_qt(texts.series + "\n" + texts.x + "\n" + texts.y));
    adjustSize();
    const auto place = label_place(size_of(*parentWidget()), size_of(*this), {about.x(), about.y()});
    setVisible(place.has_value());
    if (!place) return;
    move(static_cast<int>(std::lround(place->x)), static_cast<int>(std::lround(place->y)));
    raise();
}

}  // namespace nivora
