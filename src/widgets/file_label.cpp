#include "widgets/file_label.h"

#include <QPainter>
#include <QStyle>

namespace nivora {
namespace {

constexpr int k_fewest_letters = 12;

}  // namespace

QSize FileLabel::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * k_fewest_letters, QLabel::minimumSizeHint().height()};
}

void FileLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QRect room = contentsRect();
    style()->drawItemText(&painter, room, Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                          fontMetrics().elidedText(text(), Qt::ElideMiddle, room.width()), foregroundRole());
}

}  // namespace nivora
