// What the elements of windows tell a screen reader where Qt tells too little: names, roles and order.
#pragma once

#include <QAccessible>

class QWidget;

namespace nivora {

/// Lets windows, frames, lists and painted elements describe themselves:
/// - the parts of a window and of a frame come in the order of Tab, each text before what it stands beside;
/// - a list is named by its label, and its entry is its text;
/// - an element that paints itself has the role that it was given.
/// To be called before the first window; further calls change nothing.
void install_accessible_elements();

/// Says what an element is that paints itself, such as a picture.
void set_accessible_role(QWidget& element, QAccessible::Role role);

}  // namespace nivora
