// The caller: the window in front of which the next one opens.
#pragma once

class QWidget;

namespace nivora {

/// The active window, otherwise the modal one, otherwise the visible one that was active last; null if there
/// is none. A question keeps its caller even while another program is active, and also the second of two
/// questions, which comes before the window manager has given the keyboard back.
[[nodiscard]] QWidget* calling_window();

/// Marks a window as the one that was active last.
void note_activation(QWidget& window);

/// Keeps a window in front of its caller, even if the window manager would raise the caller.
void set_caller(QWidget& window, const QWidget* caller);

}  // namespace nivora
