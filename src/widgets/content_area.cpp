#include "widgets/content_area.h"

#include <QApplication>
#include <QEvent>
#include <QScrollBar>

namespace nivora {

ContentArea::ContentArea(QWidget* content, std::function<QSize()> room, QWidget* parent)
    : QScrollArea(parent), room_(std::move(room)) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setWidget(content);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now != nullptr && widget() != nullptr && widget()->isAncestorOf(now)) ensureWidgetVisible(now);
    });
}

// Content that is destroyed with the focus in it must not be scrolled to.
ContentArea::~ContentArea() { disconnect(qApp, nullptr, this, nullptr); }

QSize ContentArea::sizeHint() const { return widget()->sizeHint(); }

QSize ContentArea::minimumSizeHint() const {
    const QSize whole = widget()->minimumSizeHint().expandedTo(widget()->minimumSize());
    const QSize room = room_();
    QSize needed = whole;
    if (whole.height() > room.height()) needed.rwidth() += verticalScrollBar()->sizeHint().width();
    if (whole.width() > room.width()) needed.rheight() += horizontalScrollBar()->sizeHint().height();
    return needed.boundedTo(room);
}

bool ContentArea::eventFilter(QObject* watched, QEvent* event) {
    // Content that grows makes its window grow.
    if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
    return QScrollArea::eventFilter(watched, event);
}

}  // namespace nivora
