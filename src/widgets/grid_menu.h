// The context menu of a grid.
#pragma once

#include <QKeySequence>
#include <functional>

class QAction;
class QMenu;

namespace nivora {

class GridView;

/// A menu with the commands of the clipboard for the grid's block, which deletes itself once it is closed.
[[nodiscard]] QMenu* make_grid_menu(GridView& grid);

/// Adds an entry that shows the key that does the same; the key itself works without the menu.
///
/// @param name the object name of the entry. @param before another entry; null for the end
QAction* add_grid_entry(QMenu& menu, const char* name, const char* caption, const QKeySequence& keys,
                        bool enabled, const std::function<void()>& act, QAction* before = nullptr);

}  // namespace nivora
