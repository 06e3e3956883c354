// Colours of texts that have to be read on the ground of the user's palette.
#pragma once

#include <QColor>
#include <QPalette>

class QWidget;

namespace nivora {

/// A text on a mark: on a palette with a dark ground, texts are light, and a mark is not.
[[nodiscard]] QColor text_on_mark(const QColor& text, const QColor& mark, const QPalette& palette);

/// Gives selected texts in a window a readable contrast, and those of disabled boxes and labels: they show
/// values, such as the shares of a lag or the steps that are done.
void make_texts_readable(QWidget& window);

/// The same for a list that shows its entry while another can't be chosen.
void make_list_readable(QWidget& list);

/// Gives links within an element a readable colour on the ground of its texts.
void make_links_readable(QWidget& element, QPalette::ColorRole ground);

}  // namespace nivora
