// A plot on its canvas, in a bare window, and a mouse that works it.
#pragma once

#include "tests/support/plot_basin.h"
#include "windows/plots/plot_canvas.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>
#include <memory>
#include <vector>

namespace nivora {

/// Adds to a test a basin with two zones and eight days from October 1, 2001, and a canvas for its plots,
/// whose commands are followed as by the plot window. The snow cover falls from 1 by 1/16 a day, and is 1/16
/// lower in zone B.
template <typename Base>
class WithShownPlot : public Base {
protected:
    static constexpr PlotNumber k_cover = PlotNumber::SnowCover;

    explicit WithShownPlot(QSize size = {800, 500}) {
        basin_.write_variables([](PhysicalRow& row, int zone, int day) {
            row.sca = 1.0F - 0.0625F * static_cast<float>(day + zone - 2);
            row.precip = static_cast<float>(day);
        });
        basin_.write_results([](SimResults& t, std::size_t row, int, int day) {
            t.ActualQ[row] = 10.0F * static_cast<float>(day);
            t.DailyQ[row] = 5.0 * day;
            t.SCA[row] = 1.0F - 0.0625F * static_cast<float>(day);
            t.SumAT[row] = static_cast<float>(day);
            t.NewMelt[row] = 0.0F;
        });
        window_ = std::make_unique<QWidget>();
        window_->setObjectName(QStringLiteral("PlotHost"));
        window_->resize(size + QSize(20, 20));
        make_canvas<PlotCanvas>();
        canvas_->setGeometry(10, 10, size.width(), size.height());
    }

    /// Puts a canvas of a class into the window.
    template <typename Canvas>
    Canvas* make_canvas() {
        delete canvas_;
        auto* canvas = new Canvas(screen_, settings_, window_.get());
        canvas_ = canvas;
        QObject::connect(canvas_, &PlotCanvas::answered, canvas_, [this](const ScreenAnswer& answer) {
            answers_.push_back(answer);
            if (answer.draw) canvas_->redraw();
        });
        QObject::connect(canvas_, &PlotCanvas::pointed, canvas_,
                         [this](const BoxTexts& texts) { places_.push_back(texts); });
        QObject::connect(canvas_, &PlotCanvas::line_chosen, canvas_, [this](int line, QPoint at) {
            lines_.push_back(line);
            line_places_.push_back(at);
        });
        return canvas;
    }

    void pick(PlotNumber plot) {
        BasinDatabase database = basin_.file.open(Access::ReadOnly);
        screen_.pick(plot, database, basin_.sources());
        canvas_->redraw();
    }

    /// Where a day, from 1, and a value stand on the canvas.
    [[nodiscard]] QPoint at(double day, double value) const {
        const World world{lay_out_axes(*screen_.plot(), GridMode::None).transform,
                          {static_cast<double>(canvas_->width()), static_cast<double>(canvas_->height())}};
        const SurfacePoint place = world.to_surface(static_cast<double>(basin_.x(1)) + day - 1.0, value);
        return {qRound(place.x), qRound(place.y)};
    }
    [[nodiscard]] QWidget* panel(const char* name) const {
        return canvas_->findChild<QWidget*>(QString::fromUtf8(name));
    }
    /// The middle of an element on the canvas.
    [[nodiscard]] QPoint middle_of(const QWidget& element) const {
        return element.mapTo(canvas_, element.rect().center());
    }
    [[nodiscard]] bool is_zoomed() const { return screen_.plot()->zoomed; }

    PlotBasin basin_{2, 8};
    PlotScreen screen_;
    Settings settings_;
    std::unique_ptr<QWidget> window_;
    PlotCanvas* canvas_ = nullptr;
    std::vector<ScreenAnswer> answers_;
    std::vector<BoxTexts> places_;
    std::vector<int> lines_;
    std::vector<QPoint> line_places_;
};

/// A mouse on a canvas without a display. As on a display, the element under a press gets everything until
/// the release.
class CanvasMouse {
public:
    explicit CanvasMouse(QWidget& canvas) : canvas_(canvas) {}

    void press(QPoint place, Qt::MouseButton button = Qt::LeftButton) {
        if (!buttons_) holder_ = under(place);
        buttons_ |= button;
        send(QEvent::MouseButtonPress, place, button);
    }
    void move(QPoint place) { send(QEvent::MouseMove, place, Qt::NoButton); }
    void release(QPoint place, Qt::MouseButton button = Qt::LeftButton) {
        buttons_ &= ~Qt::MouseButtons(button);
        send(QEvent::MouseButtonRelease, place, button);
        if (!buttons_) holder_ = nullptr;
    }
    /// From one place to another by way of the middle.
    void drag(QPoint from, QPoint to) {
        press(from);
        move((from + to) / 2);
        move(to);
        release(to);
    }
    void click(QPoint place) {
        press(place);
        release(place);
    }
    /// The buttons go up without a word to the canvas.
    void lose_buttons() {
        buttons_ = {};
        holder_ = nullptr;
    }
    /// @return whether the wheel was taken
    bool turn_wheel(QPoint place, QPoint angle, Qt::KeyboardModifiers keys = {}) {
        QWheelEvent event(place, canvas_.mapToGlobal(place), {}, angle, buttons_, keys, Qt::NoScrollPhase,
                          false);
        event.ignore();
        QApplication::sendEvent(&canvas_, &event);
        return event.isAccepted();
    }

private:
    [[nodiscard]] QWidget* under(QPoint place) const {
        QWidget* child = canvas_.childAt(place);
        return child != nullptr ? child : &canvas_;
    }
    void send(QEvent::Type type, QPoint place, Qt::MouseButton button) {
        QWidget* to = holder_ != nullptr ? holder_ : under(place);
        const QPointF global = canvas_.mapToGlobal(place);
        QMouseEvent event(type, to->mapFromGlobal(global), global, button, buttons_, Qt::NoModifier);
        QApplication::sendEvent(to, &event);
    }

    QWidget& canvas_;
    QWidget* holder_ = nullptr;
    Qt::MouseButtons buttons_;
};

}  // namespace nivora
