// Fields that show how a plot line looks.
#pragma once

#include "plots/surface.h"

#include <QAbstractButton>
#include <QWidget>

namespace nivora {

/// A button that is filled with its colour, or with a pattern in that colour on white.
class ColourField : public QAbstractButton {
    Q_OBJECT

public:
    ColourField(const QString& name, QWidget* parent);

    void show_fill(const Fill& fill);
    [[nodiscard]] const Fill& fill() const { return fill_; }
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Fill fill_;
};

/// A line across a white field, drawn as in the plots.
class LineSample : public QWidget {
    Q_OBJECT

public:
    LineSample(const QString& name, QWidget* parent);

    void show_pen(const Pen& pen);
    [[nodiscard]] const Pen& pen() const { return pen_; }
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Pen pen_;
};

}  // namespace nivora
