// The content of a window, which scrolls if the screen is too small for it.
#pragma once

#include <QScrollArea>
#include <functional>

namespace nivora {

/// Shows a widget in full if there is room for it, otherwise scrolls it. It does not shrink below the
/// content's minimum unless the screen requires it, and scrolls to the widget that gets the focus.
class ContentArea : public QScrollArea {
    Q_OBJECT

public:
    /// @param room the largest size for the content on this screen
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
