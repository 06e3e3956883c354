#include "plot_pictures.h"

#include <fmt/format.h>

#include <QApplication>
#include <QComboBox>
#include <QMouseEvent>
#include <QStandardItemModel>
#include <QThread>
#include <QToolButton>

namespace nivora {
namespace {

constexpr int k_runoff = 0;

template <typename Element>
Element* in(QWidget& window, const char* name) {
    return window.findChild<Element*>(QString::fromUtf8(name));
}

void choose(QComboBox& list, int index) {
    list.setCurrentIndex(index);
    emit list.activated(index);
}

bool is_offered(const QComboBox& list, int index) {
    return qobject_cast<QStandardItemModel*>(list.model())->item(index)->isEnabled();
}

void send(QWidget& widget, QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons buttons) {
    QMouseEvent event(type, at, widget.mapToGlobal(at), button, buttons, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

QPointF part_of(const QWidget& widget, double across, double down) {
    return {widget.width() * across, widget.height() * down};
}

void drag(QWidget& widget, QPointF from, QPointF to) {
    send(widget, QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
    send(widget, QEvent::MouseMove, (from + to) / 2.0, Qt::NoButton, Qt::LeftButton);
    send(widget, QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
}

void drop(QWidget& widget, QPointF at) {
    send(widget, QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
}

}  // namespace

void draw_offered_plots(QWidget& window, const std::string& prefix, const Draw& draw) {
    auto* plots = in<QComboBox>(window, "PlotList");
    for (int plot = 0; plot < plots->count(); ++plot) {
        if (!is_offered(*plots, plot)) continue;
        choose(*plots, plot);
        draw(window, fmt::format("plot-{}{:02}.png", prefix, plot + 1));
    }
}

void draw_plot_work(QWidget& window, const Draw& draw) {
    auto* canvas = in<QWidget>(window, "Plotframe");
    choose(*in<QComboBox>(window, "PlotList"), k_runoff);
    in<QToolButton>(window, "ZoomIn")->click();
    drag(*canvas, part_of(*canvas, 0.45, 0.2), part_of(*canvas, 0.75, 0.8));
    draw(window, "plot-zoom-drag.png");
    drop(*canvas, part_of(*canvas, 0.75, 0.8));
    in<QToolButton>(window, "Showdata")->click();
    in<QToolButton>(window, "GridLn")->click();
    in<QToolButton>(window, "GridLn")->click();
    draw(window, "plot-zoomed.png");
    in<QToolButton>(window, "ZoomOut")->click();
    in<QToolButton>(window, "Showdata")->click();
    auto* legend = in<QWidget>(window, "Frame2");
    const QPointF grip(5.0, 5.0);
    const QPointF place = legend->mapFrom(canvas, part_of(*canvas, 0.15, 0.6));
    drag(*legend, grip, place);
    drop(*legend, legend->mapFrom(canvas, part_of(*canvas, 0.15, 0.6)));
    draw(window, "plot-legend-moved.png");
}

}  // namespace nivora
