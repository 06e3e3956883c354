// Keys of a window beside its menus and buttons. Their captions stay as they are; a key shows in a tip.
#pragma once

#include <QKeySequence>

class QAbstractButton;
class QAction;

namespace nivora {

class NivoraWindow;

/// Whether an entry is enabled, and so are the menus that it is in.
[[nodiscard]] bool can_be_chosen(const QAction& entry);

/// A key that acts in a window, once when it is held down. While QuickHelp is on it does not act: there every
/// key explains the element that it is pressed on.
[[nodiscard]] QAction* new_window_key(NivoraWindow& window, const QKeySequence& keys);

/// Lets a key do what an entry of a menu does while that can be chosen.
void add_key(NivoraWindow& window, const QKeySequence& keys, QAction& entry);

/// The same for a button: the key presses it while it can be pressed. A tip that the button has stays.
void add_key(NivoraWindow& window, const QKeySequence& keys, QAbstractButton& button);

}  // namespace nivora
