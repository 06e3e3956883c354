#include "widgets/caller.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>

namespace nivora {

QWidget* calling_window() {
    if (QWidget* active = QApplication::activeWindow()) return active;
    if (QWidget* modal = QApplication::activeModalWidget()) return modal;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        const bool stays = window->windowType() == Qt::Window || window->windowType() == Qt::Dialog;
        if (stays && window->isVisible()) return window;
    }
    return nullptr;
}

void set_caller(QWidget& window, const QWidget* caller) {
    window.winId();  // creates the platform window, which is needed to set the caller
    const bool shows = caller != nullptr && caller->window() != &window;
    window.windowHandle()->setTransientParent(shows ? caller->window()->windowHandle() : nullptr);
}

}  // namespace nivora
