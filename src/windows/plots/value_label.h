// The label that shows a value of a plot beside the pointer.
#pragma once

#include "plots/plot_pointer.h"

#include <QLabel>

namespace nivora {

/// A label in the colours of tool tips. It lies over the plot, inside of it, and leaves the pointer and what
/// is under it free.
class ValueLabel : public QLabel {
    Q_OBJECT

public:
    explicit ValueLabel(QWidget* parent);

    /// Shows texts beside a place of the parent, or nothing if there is no room for them.
    void show_texts(const PointTexts& texts, QPointF about);
};

}  // namespace nivora
