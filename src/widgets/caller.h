// The window that the next one opens before.
#pragma once

class QWidget;

namespace nivora {

/// The window that has the keyboard, otherwise the one that is modal, otherwise any that shows; null where
/// none does. A question keeps a window before it even while another program has the keyboard.
[[nodiscard]] QWidget* calling_window();

/// Keeps a window before its caller, also where the window manager would let the caller come to the front.
void set_caller(QWidget& window, const QWidget* caller);

}  // namespace nivora
