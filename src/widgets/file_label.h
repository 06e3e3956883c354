// The name of a file in a window.
#pragma once

#include <QLabel>

namespace nivora {

/// Shows the beginning and the end of a path that is longer than the label, so that a long path can't make a
/// window wider than its screen.
class FileLabel : public QLabel {
    Q_OBJECT

public:
    using QLabel::QLabel;

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace nivora
