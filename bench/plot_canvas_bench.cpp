// How long a frame of the plot window takes at 1600 by 900: a move of the mouse, the rubber band, the label
// with a value, a notch of the wheel, a resize. The counter "limit_ms" is what each may take.

#include "windows/plots/plot_canvas.h"

#include "bench/plotted_basin.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QWheelEvent>

namespace nivora {
namespace {

constexpr QSize k_size(1600, 900);
constexpr double k_mouse_limit = 8.0;
constexpr double k_resize_limit = 16.0;

/// A canvas with a plot of a year of 16 zones, in a window.
class ShownPlot {
public:
    ShownPlot(PlotNumber number, std::int32_t fill) {
        for (LineAttribute& line : settings_.lines) line.fill = fill;
        QObject::connect(&canvas_, &PlotCanvas::answered, &canvas_, [this](const ScreenAnswer& answer) {
            if (answer.draw) canvas_.redraw();
        });
        canvas_.resize(k_size);
        BasinDatabase database{basin_.file(), Access::ReadOnly};
        screen_.pick(number, database, basin_.sources());
        canvas_.redraw();
        canvas_.show();
        QApplication::processEvents();
    }

    [[nodiscard]] bool stands() const { return screen_.plot() != nullptr; }
    [[nodiscard]] PlotScreen& screen() { return screen_; }

    void mouse(QEvent::Type type, QPointF place, Qt::MouseButtons buttons = {}) {
        const bool moves = type == QEvent::MouseMove;
        QMouseEvent event(type, place, canvas_.mapToGlobal(place), moves ? Qt::NoButton : Qt::LeftButton,
                          buttons, Qt::NoModifier);
        QApplication::sendEvent(&canvas_, &event);
        QApplication::processEvents();
    }
    void wheel(QPointF place, int angle) {
        QWheelEvent event(place, canvas_.mapToGlobal(place), {}, {0, angle}, {}, {}, Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(&canvas_, &event);
        QApplication::processEvents();
    }
    void resize(QSize size) {
        canvas_.resize(size);
        QApplication::processEvents();
    }
    /// The first place in the middle column at which a value can be read.
    [[nodiscard]] std::optional<QPointF> place_of_value() const {
        const SurfaceSize size{static_cast<double>(k_size.width()), static_cast<double>(k_size.height())};
        for (double y = 0.0; y < size.height; y += 1.0) {
            const SurfacePoint place{size.width / 2.0, y};
            if (nearest_point(*screen_.plot(), size, place, 4.0)) return QPointF(place.x, place.y);
        }
        return std::nullopt;
    }

private:
    PlottedBasin basin_;
    PlotScreen screen_;
    Settings settings_;
    PlotCanvas canvas_{screen_, settings_};
};

/// Runs a frame again and again; every second one goes back.
template <typename Frame>
void frames(benchmark::State& state, ShownPlot& shown, double limit, Frame&& frame) {
    if (!shown.stands()) {
        state.SkipWithError("no plot");
        return;
    }
    bool there = false;
    for (auto _ : state) frame(there = !there);
    state.counters["limit_ms"] = limit;
}

void mouse_move(benchmark::State& state, PlotNumber number, std::int32_t fill) {
    ShownPlot shown(number, fill);
    frames(state, shown, k_mouse_limit, [&](bool there) {
        shown.mouse(QEvent::MouseMove, there ? QPointF(300, 30) : QPointF(1300, 870));
    });
}

void rubber_band(benchmark::State& state, PlotNumber number, std::int32_t fill) {
    ShownPlot shown(number, fill);
    shown.screen().zoom_in();
    shown.mouse(QEvent::MouseButtonPress, QPointF(200, 150), Qt::LeftButton);
    frames(state, shown, k_mouse_limit, [&](bool there) {
        shown.mouse(QEvent::MouseMove, there ? QPointF(900, 500) : QPointF(1400, 800), Qt::LeftButton);
    });
    if (shown.stands() && !shown.screen().drag().band()) state.SkipWithError("no band");
}

void value_label(benchmark::State& state, PlotNumber number, std::int32_t fill) {
    ShownPlot shown(number, fill);
    const auto place = shown.stands() ? shown.place_of_value() : std::nullopt;
    if (!place) {
        state.SkipWithError("no value");
        return;
    }
    shown.mouse(QEvent::MouseMove, *place);
    QElapsedTimer waited;  // until the label shows
    for (waited.start(); waited.elapsed() < 300;) QApplication::processEvents(QEventLoop::AllEvents, 20);
    frames(state, shown, k_mouse_limit, [&](bool there) {
        shown.mouse(QEvent::MouseMove, *place + (there ? QPointF(2, 1) : QPointF(0, 0)));
    });
}

void wheel_notch(benchmark::State& state, PlotNumber number, std::int32_t fill) {
    ShownPlot shown(number, fill);
    frames(state, shown, k_resize_limit,
           [&](bool there) { shown.wheel(QPointF(800, 400), there ? 120 : -120); });
}

void resize_frame(benchmark::State& state, PlotNumber number, std::int32_t fill) {
    ShownPlot shown(number, fill);
    frames(state, shown, k_resize_limit,
           [&](bool there) { shown.resize(there ? k_size - QSize(4, 4) : k_size); });
}

void on_plots(benchmark::internal::Benchmark* benchmark) {
    benchmark->UseRealTime()->Unit(benchmark::kMillisecond);
}

#define NIVORA_ON_PLOTS(frame)                                                                     \
    BENCHMARK_CAPTURE(frame, 16_curves, PlotNumber::SnowCover, 0)->Apply(on_plots);                \
    BENCHMARK_CAPTURE(frame, hydrographs, PlotNumber::Runoff, 0)->Apply(on_plots);                 \
    BENCHMARK_CAPTURE(frame, filled_components, PlotNumber::RunoffComponents, 0)->Apply(on_plots); \
    BENCHMARK_CAPTURE(frame, hatched_components, PlotNumber::RunoffComponents, 7)->Apply(on_plots)

NIVORA_ON_PLOTS(mouse_move);
NIVORA_ON_PLOTS(rubber_band);
NIVORA_ON_PLOTS(value_label);
NIVORA_ON_PLOTS(wheel_notch);
NIVORA_ON_PLOTS(resize_frame);

}  // namespace
}  // namespace nivora

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
