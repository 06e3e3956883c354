#include "widgets/edit_target.h"

#include "widgets/grid_view.h"

#include <QApplication>
#include <QFocusEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>

namespace nivora {
namespace {

template <typename Widget>
Widget* around(QWidget* widget) {
    for (QWidget* at = widget; at != nullptr; at = at->parentWidget()) {
        if (auto* found = qobject_cast<Widget*>(at)) return found;
    }
    return nullptr;
}

}  // namespace

EditTarget::EditTarget(QWidget* window) : QObject(window), window_(window) {
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { focus_moved(now); });
}

// Focus changes while the window is destroyed must not reach this object.
EditTarget::~EditTarget() { disconnect(qApp, nullptr, this, nullptr); }

void EditTarget::focus_moved(QWidget* now) {
    if (now == nullptr || now->window() != window_) return;
    if (qobject_cast<QMenuBar*>(now) != nullptr || qobject_cast<QMenu*>(now) != nullptr) return;
    if (box_ != nullptr) box_->removeEventFilter(this);
    grid_ = around<GridView>(now);
    box_ = now;
    box_->installEventFilter(this);
}

/// A line that loses the focus to the menu bar drops its selection, which the menu works on: the selection is
/// restored with the focus.
bool EditTarget::eventFilter(QObject* watched, QEvent* event) {
    auto* line = qobject_cast<QLineEdit*>(watched);
    if (line == nullptr || watched != box_) return false;
    if (event->type() == QEvent::FocusOut) {
        const bool to_menu = static_cast<QFocusEvent*>(event)->reason() == Qt::MenuBarFocusReason;
        selected_from_ = to_menu ? line->selectionStart() : -1;
        selected_length_ = line->selectionLength();
    } else if (event->type() == QEvent::FocusIn && selected_from_ >= 0) {
        line->setSelection(selected_from_, selected_length_);
        selected_from_ = -1;
    }
    return false;
}

void EditTarget::act(Act what) {
    // The editor of a cell is gone once the menu bar has the focus; the target is then its grid.
    const bool in_box = box_ != nullptr && box_->isVisible() && box_->isEnabled();
    if (auto* line = in_box ? qobject_cast<QLineEdit*>(box_) : nullptr) {
        if (what == Act::Cut) return line->cut();
        return what == Act::Copy ? line->copy() : line->paste();
    }
    if (auto* text = in_box ? qobject_cast<QPlainTextEdit*>(box_) : nullptr) {
        if (what == Act::Cut) return text->cut();
        return what == Act::Copy ? text->copy() : text->paste();
    }
    if (grid_ == nullptr || !grid_->isEnabled()) return QApplication::beep();
    if (what == Act::Cut) return grid_->cut();
    return what == Act::Copy ? grid_->copy() : grid_->paste();
}

void EditTarget::cut() { act(Act::Cut); }
void EditTarget::copy() { act(Act::Copy); }
void EditTarget::paste() { act(Act::Paste); }

}  // namespace nivora
