// How long the plot window takes: its first opening with the hydrograph, and a plot from its pick to the
// paint, of a year of 16 zones. The counter "limit_ms" is what each may take.

#include "bench/plotted_basin.h"
#include "widgets/colours.h"
#include "widgets/desktop_printers.h"
#include "widgets/printing.h"
#include "windows/plots/frmNVRPlot.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QComboBox>

namespace nivora {
namespace {

constexpr double k_opening_limit = 120.0;
constexpr double k_pick_limit = 50.0;

/// A session with the basin open and its simulation run.
struct Desk {
    Desk() {
        session.basin = basin.sources().basin;
        session.run = basin.sources().run;
    }
    [[nodiscard]] WindowContext context() {
        return {session, quick_help, std::filesystem::path{NIVORA_SOURCE_DIR} / "data", printing};
    }

    PlottedBasin basin;
    ScriptedDialogs dialogs;
    Desktop desktop;
    Session session{dialogs, desktop};
    QuickHelp quick_help;
    DesktopPrinters printers;
    Printing printing{session, printers};
    ColourDialog colours;
    PlotScreen screen;
};

void open_window(benchmark::State& state) {
    Desk desk;
    for (auto _ : state) {
        desk.screen = PlotScreen{};
        frmNVRPlot window(desk.context(), desk.colours, desk.screen);
        window.open();
        QApplication::processEvents();
        if (desk.screen.plot() == nullptr) state.SkipWithError("no plot");
        state.PauseTiming();
        window.close();
        state.ResumeTiming();
    }
    state.counters["limit_ms"] = k_opening_limit;
}
BENCHMARK(open_window)->UseRealTime()->Unit(benchmark::kMillisecond);

void pick_plot(benchmark::State& state, PlotNumber number) {
    Desk desk;
    frmNVRPlot window(desk.context(), desk.colours, desk.screen);
    window.resize(1600, 1000);
    window.open();
    QApplication::processEvents();
    auto* list = window.findChild<QComboBox*>(QStringLiteral("PlotList"));
    for (auto _ : state) {
        list->setCurrentIndex(number_of(number) - 1);
        emit list->activated(number_of(number) - 1);
        QApplication::processEvents();
        if (desk.screen.plot() == nullptr) state.SkipWithError("no plot");
    }
    state.counters["limit_ms"] = k_pick_limit;
}
BENCHMARK_CAPTURE(pick_plot, hydrographs, PlotNumber::Runoff)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(pick_plot, 16_curves, PlotNumber::SnowCover)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(pick_plot, components, PlotNumber::RunoffComponents)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(pick_plot, bars, PlotNumber::WaterEquivalent)->UseRealTime()->Unit(benchmark::kMillisecond);

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
