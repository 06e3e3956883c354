#include "widgets/fitted_label.h"

#include <QPaintEvent>
#include <QPainter>
#include <QStyle>

namespace nivora {

void FittedLabel::set_forms(const QStringList& forms) {
    forms_ = forms;
    setText(forms.isEmpty() ? QString{} : forms.first());
    setToolTip(text());
    update();
}

QString FittedLabel::shown() const {
    if (forms_.isEmpty()) return {};
    const int room = contentsRect().width();
    for (const QString& form : forms_) {
        if (fontMetrics().horizontalAdvance(form) <= room) return form;
    }
    return fontMetrics().elidedText(forms_.last(), Qt::ElideRight, room);
}

QSize FittedLabel::minimumSizeHint() const { return {0, QLabel::minimumSizeHint().height()}; }

void FittedLabel::paintEvent(QPaintEvent* event) {
    QFrame::paintEvent(event);
    QPainter painter(this);
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter),
                          palette(), isEnabled(), shown(), foregroundRole());
}

}  // namespace nivora
