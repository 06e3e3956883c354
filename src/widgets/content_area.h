// What a window holds, which scrolls where the screen is too small for it.
#pragma once

#include <QScrollArea>
#include <functional>

namespace nivora {

/// Shows a widget whole wherever there is room for it, and lets it scroll elsewhere. It shrinks no further
/// than the content does unless the screen asks for it; what gets the focus is scrolled to.
class ContentArea : public QScrollArea {
    Q_OBJECT

public:
    /// @param room the largest size that the screen has for the content
    ContentArea(QWidget* content, std::function<QSize()> room, QWidget* parent);
    ~ContentArea() override;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<QSize()> room_;
};

}  // namespace nivora
