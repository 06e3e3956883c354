// The windows that a test expects to open, in their order.
#pragma once

#include <QApplication>
#include <QEvent>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <deque>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace nivora {

/// Acts on each expected window once it is shown. A modal window that the script does not expect next, or
/// that is still open after its turn, becomes a complaint and is closed, so that no test waits forever.
/// Windows that are not modal may open without being expected.
class ExpectedWindows : public QObject {
public:
    ExpectedWindows() { qApp->installEventFilter(this); }

    ExpectedWindows& then(const char* window, std::function<void(QWidget&)> act) {
        steps_.push_back({QString::fromUtf8(window), std::move(act)});
        return *this;
    }

    /// The windows that are still to come.
    [[nodiscard]] std::size_t left() const { return steps_.size() + coming_; }
    [[nodiscard]] const std::vector<std::string>& complaints() const { return complaints_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Show && !event->spontaneous()) {
            auto* window = qobject_cast<QWidget*>(watched);
            if (window != nullptr && is_window(*window)) shown(*window);
        }
        return false;
    }

private:
    struct Step {
        QString window;
        std::function<void(QWidget&)> act;
    };

    /// Not a menu, a list that opens, or a tip.
    static bool is_window(const QWidget& widget) {
        return widget.isWindow() && (widget.windowType() == Qt::Window || widget.windowType() == Qt::Dialog);
    }

    /// The window is shown in the middle of the work that opens it,
    /// so the action waits until the event loop runs.
    void shown(QWidget& window) {
        if (!steps_.empty() && steps_.front().window == window.objectName()) {
            Step step = std::move(steps_.front());
            steps_.pop_front();
            ++coming_;
            QTimer::singleShot(0, &window, [this, &window, step = std::move(step)] {
                --coming_;
                act_in(window, step);
            });
        } else if (window.isModal()) {
            complaints_.push_back("not expected: " + window.objectName().toStdString());
            QTimer::singleShot(0, &window, &QWidget::close);
        }
    }

    void act_in(QWidget& window, const Step& step) {
        if (window.isModal()) static_cast<void>(QTest::qWaitForWindowActive(&window, k_activation_ms));
        try {
            step.act(window);
        } catch (const std::logic_error& error) {
            complaints_.emplace_back(error.what());
        }
        if (!window.isModal() || !window.isVisible()) return;
        complaints_.push_back("still open: " + window.objectName().toStdString());
        window.close();
    }

    static constexpr int k_activation_ms = 2000;

    std::deque<Step> steps_;
    std::size_t coming_ = 0;  ///< shown, but not acted on yet
    std::vector<std::string> complaints_;
};

}  // namespace nivora
