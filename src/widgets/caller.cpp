#include "widgets/caller.h"

#include <QApplication>
#include <QVariant>
#include <QWidget>
#include <QWindow>
#include <algorithm>

namespace nivora {
namespace {

constexpr const char* k_activation = "nivora_activation";

/// The number of a window's last activation; a later one is greater, 0 is none.
qlonglong activation(const QWidget& window) { return window.property(k_activation).toLongLong(); }

}  // namespace

QWidget* calling_window() {
    if (QWidget* active = QApplication::activeWindow()) return active;
    if (QWidget* modal = QApplication::activeModalWidget()) return modal;
    QWidget* last = nullptr;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        const bool stays = window->windowType() == Qt::Window || window->windowType() == Qt::Dialog;
        if (!stays || !window->isVisible()) continue;
        if (last == nullptr || activation(*window) > activation(*last)) last = window;
    }
    return last;
}

void note_activation(QWidget& window) {
    qlonglong last = 0;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* other : windows) last = std::max(last, activation(*other));
    window.setProperty(k_activation, last + 1);
}

void set_caller(QWidget& window, const QWidget* caller) {
    window.winId();  // creates the platform window, which is needed to set the caller
    const bool shows = caller != nullptr && caller->window() != &window;
    window.windowHandle()->setTransientParent(shows ? caller->window()->windowHandle() : nullptr);
}

}  // namespace nivora
