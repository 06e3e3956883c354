#include "widgets/undo_keys.h"

#include "widgets/grid_menu.h"
#include "widgets/grid_view.h"
#include "widgets/nivora_window.h"
#include "widgets/window_keys.h"

#include <QAction>
#include <QKeyEvent>
#include <QMenu>
#include <utility>

namespace nivora {
namespace {

constexpr QKeyCombination k_undo = Qt::CTRL | Qt::Key_Z;
constexpr QKeyCombination k_redo = Qt::CTRL | Qt::SHIFT | Qt::Key_Z;
constexpr QKeyCombination k_other_redo = Qt::CTRL | Qt::Key_Y;

}  // namespace

UndoKeys::UndoKeys(NivoraWindow& window, Undoing what) : QObject(&window), what_(std::move(what)) {
    const auto add = [&](QKeyCombination keys, const std::function<void()>& act) {
        QAction* key = new_window_key(window, keys);
        key->setAutoRepeat(true);
        connect(key, &QAction::triggered, this, act);
    };
    add(k_undo, what_.undo);
    add(k_redo, what_.redo);
    add(k_other_redo, what_.redo);
}

void UndoKeys::watch(const GridView& grid) {
    connect(&grid, &GridView::menu_asked, this, [this](QMenu* menu) { add_entries(*menu); });
}

bool UndoKeys::is_key(const QKeyEvent& event) {
    const QKeyCombination keys = event.keyCombination();
    return keys == k_undo || keys == k_redo || keys == k_other_redo;
}

void UndoKeys::add_entries(QMenu& menu) {
    QAction* first = menu.actions().isEmpty() ? nullptr : menu.actions().first();
    add_grid_entry(menu, "gridUndo", "&Undo", k_undo, what_.can_undo(), what_.undo, first);
    add_grid_entry(menu, "gridRedo", "R&edo", k_redo, what_.can_redo(), what_.redo, first);
    menu.insertSeparator(first);
}

}  // namespace nivora
