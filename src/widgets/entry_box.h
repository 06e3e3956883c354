// What happens to a box for typing: it is entered, left, or its text is refused.
#pragma once

#include "base/dialogs.h"

class QEvent;
class QWidget;

namespace nivora {

class QuickHelp;

/// Whether an event means that a box is left: an open menu, a question or another window only interrupts the
/// work in it. QuickHelp lets no box be left.
[[nodiscard]] bool leaves_box(const QEvent& event, const QuickHelp& quick_help);
/// Whether an event means that a box is entered, and not that an interruption of the work in it has ended.
[[nodiscard]] bool enters_box(const QEvent& event);

/// Lets the user leave a box for a button, such as Cancel, without a check of its text: the message would
/// swallow the press of the button.
void leave_unchecked(QWidget& button);

/// Shows a message while an element has the colour of refused input.
void refuse_entry(QWidget& element, const Message& message, Dialogs& user);

}  // namespace nivora
