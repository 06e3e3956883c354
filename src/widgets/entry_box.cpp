#include "widgets/entry_box.h"

#include "widgets/grid_model.h"
#include "widgets/quick_help.h"
#include "widgets/readable_palette.h"

#include <QApplication>
#include <QFocusEvent>
#include <QPalette>
#include <QVariant>
#include <QWidget>

namespace nivora {
namespace {

constexpr const char* k_leaves_unchecked = "leavesUnchecked";

bool interrupts(Qt::FocusReason reason) {
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
           reason == Qt::MenuBarFocusReason;
}

}  // namespace

bool leaves_box(const QEvent& event, const QuickHelp& quick_help) {
    if (quick_help.is_on() || event.type() != QEvent::FocusOut) return false;
    const QWidget* next = QApplication::focusWidget();
    if (next != nullptr && next->property(k_leaves_unchecked).toBool()) return false;
    return !interrupts(static_cast<const QFocusEvent&>(event).reason());
}

bool enters_box(const QEvent& event) {
    return event.type() == QEvent::FocusIn && !interrupts(static_cast<const QFocusEvent&>(event).reason());
}

void leave_unchecked(QWidget& button) { button.setProperty(k_leaves_unchecked, true); }

void refuse_entry(QWidget& element, const Message& message, Dialogs& user) {
    const QPalette before = element.palette();
    QPalette refused = before;
    refused.setColor(QPalette::Base, QColor::fromRgb(GridModel::k_refused_colour));
    refused.setColor(QPalette::Text,
                     text_on_mark(before.color(QPalette::Text), refused.color(QPalette::Base), before));
    element.setPalette(refused);
    user.message(message);
    element.setPalette(before);
}

}  // namespace nivora
