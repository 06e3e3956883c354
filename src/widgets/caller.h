// The caller: the window in front of which the next one opens.
#pragma once

class QWidget;

namespace nivora {

/// The active window, otherwise the modal one, otherwise any visible one; null if there is none. A question
/// keeps its caller even while another program is active.
[[nodiscard]] QWidget* calling_window();

/// Keeps a window in front of its caller, even if the window manager would raise the caller.
void set_caller(QWidget& window, const QWidget* caller);

}  // namespace nivora
