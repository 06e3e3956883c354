// Undo and redo of a window: its keys, and the entries of its grids' context menus.
#pragma once

#include <QObject>
#include <functional>

class QKeyEvent;
class QMenu;

namespace nivora {

class GridView;
class NivoraWindow;

/// What a window takes back, and whether there is anything; the calls beep if there is nothing.
struct Undoing {
    std::function<bool()> can_undo;
    std::function<bool()> can_redo;
    std::function<void()> undo;
    std::function<void()> redo;
};

/// Ctrl+Z takes the newest change back; Ctrl+Shift+Z and Ctrl+Y make it again. In a cell that is being edited
/// the first ones are those of its text.
class UndoKeys : public QObject {
    Q_OBJECT

public:
    UndoKeys(NivoraWindow& window, Undoing what);

    /// Adds both to the context menu of a grid of the window.
    void watch(const GridView& grid);

    /// Whether a key is one of them.
    [[nodiscard]] static bool is_key(const QKeyEvent& event);

private:
    void add_entries(QMenu& menu);

    Undoing what_;
};

}  // namespace nivora
