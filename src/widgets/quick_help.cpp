#include "widgets/quick_help.h"

#include "widgets/nivora_window.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QTableView>
#include <QVariant>
#include <optional>

namespace nivora {
namespace {

bool is_input(QEvent::Type type) {
    switch (type) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ContextMenu:
        case QEvent::InputMethod:
        case QEvent::Wheel:
        case QEvent::Drop: return true;
        default: return false;
    }
}

/// The window that an element belongs to; an open menu belongs to the window of its bar. A dialog belongs to
/// none: it has no strip, and acts while QuickHelp is on.
NivoraWindow* window_of(QWidget* widget) {
    for (QWidget* at = widget; at != nullptr; at = at->parentWidget()) {
        if (qobject_cast<QDialog*>(at) != nullptr) return nullptr;
        if (auto* window = qobject_cast<NivoraWindow*>(at)) return window;
    }
    return nullptr;
}

/// Whether a key only moves the focus, also to the menu bar, which QuickHelp allows.
bool only_moves_focus(const QEvent* event) {
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease) return false;
    switch (static_cast<const QKeyEvent*>(event)->key()) {
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
        case Qt::Key_Alt:
        case Qt::Key_F10:
        case Qt::Key_Shift:
        case Qt::Key_Control: return true;
        default: return false;
    }
}

/// A help line, and the unit of the column that it explains; an empty one if there is none.
struct CellHelp {
    int line = 0;
    QString unit = {};
};

/// The help of the grid's column, or row, that was clicked or that the cursor is in;
/// nothing outside such a grid.
std::optional<CellHelp> help_of_cell(QWidget* widget, const QEvent* event) {
    auto* grid = qobject_cast<QTableView*>(widget);
    if (grid == nullptr) grid = qobject_cast<QTableView*>(widget->parentWidget());
    if (grid == nullptr) return std::nullopt;
    const bool clicked = event->type() == QEvent::MouseButtonPress;
    if (clicked && widget != grid->viewport()) return std::nullopt;
    const QPoint at = clicked ? static_cast<const QMouseEvent*>(event)->position().toPoint() : QPoint{};
    const QVariant columns = grid->property(k_help_columns);
    if (columns.isValid()) {
        const int column = clicked ? grid->columnAt(at.x()) : grid->currentIndex().column();
        if (column >= 0) {
            const QVariant told = grid->model()->headerData(column, Qt::Horizontal, k_column_role);
            return CellHelp{columns.toInt() + (told.isValid() ? told.toInt() : column) + 1,
                            grid->model()->headerData(column, Qt::Horizontal, k_unit_role).toString()};
        }
    }
    const QVariant rows = grid->property(k_help_rows);
    if (rows.isValid()) {
        const int row = clicked ? grid->rowAt(at.y()) : grid->currentIndex().row();
        const QVariantList lines = rows.toList();
        if (row >= 0 && row < lines.size()) return CellHelp{lines.at(row).toInt()};
        if (row >= 0 && lines.isEmpty()) return CellHelp{rows.toInt() + row + 1};
    }
    return std::nullopt;
}

/// The action of a menu or bar with this letter as its mnemonic.
QAction* action_of_letter(const QWidget* menu, int key) {
    if (key < Qt::Key_Exclam || key > Qt::Key_AsciiTilde) return nullptr;
    const QKeySequence wanted(QStringLiteral("Alt+") + QChar(key));
    for (QAction* action : menu->actions()) {
        if (action->isVisible() && QKeySequence::mnemonic(action->text()) == wanted) return action;
    }
    return nullptr;
}

/// Whether an entry opens a submenu, is a separator or is missing, so that QuickHelp can ignore it.
bool can_be_ignored(const QAction* action) {
    return action == nullptr || action->menu() != nullptr || action->isSeparator();
}

/// An entry in the main window has a menu text, one in another window has a help line of its own.
void explain_action(NivoraWindow* window, const QAction* action) {
    const QVariant line = action->property(k_help_line);
    if (line.isValid()) return window->explain_line(line.toInt());
    const QVariant number = action->property(k_help_menu);
    window->explain_menu(number.isValid() ? number.toInt() : -1);
}

/// A right click explains nothing.
bool is_right_click(const QEvent* event) {
    return event->type() == QEvent::MouseButtonPress &&
           static_cast<const QMouseEvent*>(event)->button() != Qt::LeftButton;
}

/// Whether an event on the strip is the end of a right click on it, or its menu key.
bool asks_for_colours(const QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease)
        return static_cast<const QMouseEvent*>(event)->button() == Qt::RightButton;
    return event->type() == QEvent::ContextMenu &&
           static_cast<const QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Keyboard;
}

}  // namespace

QuickHelp::QuickHelp(QObject* parent) : QObject(parent) { qApp->installEventFilter(this); }

void QuickHelp::set_on(bool on) {
    if (on == on_) return;
    on_ = on;
    if (on) {
        QApplication::setOverrideCursor(Qt::WhatsThisCursor);
    } else {
        QApplication::restoreOverrideCursor();
    }
    emit changed(on);
}

bool QuickHelp::eventFilter(QObject* watched, QEvent* event) {
    if (!on_) return false;
    if (event->type() == QEvent::Shortcut) {
        if (auto* action = qobject_cast<QAction*>(watched)) {
            if (action->menu() != nullptr) return false;
            for (QObject* owner : action->associatedObjects()) {
                auto* widget = qobject_cast<QWidget*>(owner);
                if (NivoraWindow* window = window_of(widget)) explain_action(window, action);
            }
            return true;
        }
        if (auto* widget = qobject_cast<QWidget*>(watched)) return filter_widget(widget, event);
        return false;
    }
    auto* widget = qobject_cast<QWidget*>(watched);
    if (widget == nullptr || !is_input(event->type())) return false;
    return filter_widget(widget, event);
}

bool QuickHelp::filter_widget(QWidget* widget, QEvent* event) {
    NivoraWindow* window = window_of(widget);
    if (window == nullptr || window->is_help_button(widget) || only_moves_focus(event)) return false;
    if (qobject_cast<QMenuBar*>(widget) != nullptr) return filter_bar(widget, event);
    if (qobject_cast<QMenu*>(widget) != nullptr) return filter_menu(widget, event);
    if (window->is_help_strip(widget)) {
        if (event->type() == QEvent::Wheel) return false;
        if (asks_for_colours(event)) {
            // Once the event is done: the colours are chosen in a modal window.
            QMetaObject::invokeMethod(
                window, [this, window] { emit colours_wanted(window); }, Qt::QueuedConnection);
        }
    }
    const bool counts =
        !is_right_click(event) && (event->type() == QEvent::MouseButtonPress ||
                                   event->type() == QEvent::KeyPress || event->type() == QEvent::Shortcut);
    if (counts) {
        const auto help = help_of_cell(widget, event);
        if (help) {
            window->explain_line(help->line, help->unit);
        } else {
            window->explain_widget(widget);
        }
    }
    event->accept();
    return true;
}

bool QuickHelp::filter_menu(QWidget* widget, QEvent* event) {
    auto* menu = static_cast<QMenu*>(widget);
    QAction* action = nullptr;
    if (event->type() == QEvent::MouseButtonRelease) {
        action = menu->actionAt(static_cast<QMouseEvent*>(event)->position().toPoint());
    } else if (event->type() == QEvent::KeyPress) {
        const auto* typed = static_cast<QKeyEvent*>(event);
        const int key = typed->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space) {
            action = menu->activeAction();
        } else if (key >= Qt::Key_Exclam && key <= Qt::Key_AsciiTilde) {
            action = action_of_letter(menu, key);
            if (action == nullptr) return true;
        }
    } else {
        return false;
    }
    if (can_be_ignored(action)) return false;
    explain_action(window_of(widget), action);
    return true;
}

/// Menus open, so that their entries can be explained; an entry on the bar itself is disabled like theirs.
bool QuickHelp::filter_bar(QWidget* widget, QEvent* event) {
    auto* bar = static_cast<QMenuBar*>(widget);
    QAction* action = nullptr;
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
            action = bar->actionAt(static_cast<QMouseEvent*>(event)->position().toPoint());
            break;
        case QEvent::Shortcut: {
            const QKeySequence keys = static_cast<QShortcutEvent*>(event)->key();
            for (QAction* entry : bar->actions()) {
                if (QKeySequence::mnemonic(entry->text()) == keys) action = entry;
            }
            break;
        }
        case QEvent::KeyPress: {
            const int key = static_cast<QKeyEvent*>(event)->key();
            const bool chooses = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
            action = chooses ? bar->activeAction() : action_of_letter(bar, key);
            break;
        }
        default: return false;
    }
    if (can_be_ignored(action)) return false;
    if (event->type() != QEvent::MouseButtonRelease) explain_action(window_of(widget), action);
    return true;
}

}  // namespace nivora
