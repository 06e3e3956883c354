// A text in as many words as there is room for.
#pragma once

#include <QLabel>
#include <QStringList>

namespace nivora {

/// Shows the longest of several forms of a text that its width has room for; the shortest one with a mark at
/// its end if there is room for none. Its text, which screen readers and the tool tip have, is the longest.
class FittedLabel : public QLabel {
    Q_OBJECT

public:
    using QLabel::QLabel;

    /// @param forms the longest first; none: no text
    void set_forms(const QStringList& forms);
    /// What the label shows at its present width.
    [[nodiscard]] QString shown() const;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QStringList forms_;
};

}  // namespace nivora
