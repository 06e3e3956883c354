// How long plots take: drawing again from memory, beside the bare lines of the same points; reading and
// drawing; the batch program as a process. The counter "limit_ms" is what each may take.

#include "base/durable_file.h"
#include "bench/bench_program.h"
#include "bench/plotted_basin.h"
#include "paint/image_surface.h"
#include "paint/plot_picture.h"
#include "plots/legend.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <cmath>
#include <filesystem>
#include <string>

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr double k_now = 46086.5;
constexpr PictureSize k_window{1600, 900, 96.0};

/// A picture that is drawn again and again, as in a window.
class Picture {
public:
    Picture() : image_(k_window.width, k_window.height, QImage::Format_RGB32) { painter_.begin(&image_); }

    void draw_again(const Plot& plot, const DrawOptions& options) {
        PaintedSurface surface{painter_, surface_size(k_window)};
        draw(surface, plot, options);
    }
    /// The bare curves of a plot, without what stands around them.
    void draw_lines(const Plot& plot) {
        const World world{lay_out_axes(plot, GridMode::Vertical).transform, surface_size(k_window)};
        image_.fill(Qt::white);
        painter_.setRenderHint(QPainter::Antialiasing);
        for (const PlotCurve& curve : plot.curves) {
            QPolygonF points;
            points.reserve(static_cast<qsizetype>(curve.points.size()));
            for (const PlotPoint& point : curve.points) {
                const SurfacePoint at = world.to_surface(as_double(point.x), as_double(point.y));
                points.append(QPointF(at.x, at.y));
            }
            painter_.setPen(QPen(Qt::darkRed, 1.0));
            painter_.drawPolyline(points);
        }
    }

private:
    QImage image_;
    QPainter painter_;
};

DrawOptions options_with(std::int32_t fill) {
    DrawOptions options{.now = k_now, .legend = true, .summary = true};
    for (LineAttribute& line : options.lines) line.fill = fill;
    return options;
}

const Plot* plot_of(benchmark::State& state, const PlotOutcome& outcome) {
    if (const auto* refusal = std::get_if<PlotRefusal>(&outcome)) state.SkipWithError(refusal->text.c_str());
    return std::get_if<Plot>(&outcome);
}

void redraw(benchmark::State& state, const Plot& plot, std::int32_t fill, double limit) {
    Picture picture;
    const DrawOptions options = options_with(fill);
    for (auto _ : state) picture.draw_again(plot, options);
    state.counters["limit_ms"] = limit;
}

void redraw_of(benchmark::State& state, PlotNumber number, std::int32_t fill, double limit) {
    const PlottedBasin basin;
    const PlotOutcome outcome = basin.plot(number);
    if (const Plot* plot = plot_of(state, outcome)) redraw(state, *plot, fill, limit);
}
BENCHMARK_CAPTURE(redraw_of, 16_curves, PlotNumber::SnowCover, 0, 5.0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(redraw_of, hydrographs, PlotNumber::Runoff, 0, 5.0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(redraw_of, filled_components, PlotNumber::RunoffComponents, 0, 5.0)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(redraw_of, hatched_components, PlotNumber::RunoffComponents, 7, 5.0)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(redraw_of, filled_bars, PlotNumber::WaterEquivalent, 0, 5.0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(redraw_of, hatched_bars, PlotNumber::WaterEquivalent, 7, 5.0)
    ->Unit(benchmark::kMillisecond);

/// What `16_curves` may take three times.
void bare_lines_of_16_curves(benchmark::State& state) {
    const PlottedBasin basin;
    const PlotOutcome outcome = basin.plot(PlotNumber::SnowCover);
    const Plot* plot = plot_of(state, outcome);
    Picture picture;
    for (auto _ : state) {
        if (plot != nullptr) picture.draw_lines(*plot);
    }
}
BENCHMARK(bare_lines_of_16_curves)->Unit(benchmark::kMillisecond);

/// Two hydrographs of 50 years.
Plot fifty_years() {
    constexpr int k_days = 18'262;
    constexpr float k_first = 18'264.0F;
    Plot plot;
    plot.head.title = "Runoff (Measured vs Computed)";
    plot.frame = {k_first, k_first + k_days, 0.0F, 100.0F, 2.0F, std::nullopt};
    for (int line = 1; line <= 2; ++line) {
        PlotCurve curve;
        curve.name = "Runoff";
        curve.line = line;
        for (int day = 0; day < k_days; ++day) {
            const double flow =
                30.0 - 25.0 * std::cos(day / 58.0) + 7.0 * std::sin(day * 1.7 + line) + day % 11;
            curve.points.push_back({k_first + static_cast<float>(day), static_cast<float>(flow)});
        }
        plot.curves.push_back(std::move(curve));
    }
    name_curves(plot);
    return plot;
}

void redraw_of_fifty_years(benchmark::State& state) { redraw(state, fifty_years(), 0, 15.0); }
BENCHMARK(redraw_of_fifty_years)->Unit(benchmark::kMillisecond);

void bare_lines_of_fifty_years(benchmark::State& state) {
    const Plot plot = fifty_years();
    Picture picture;
    for (auto _ : state) picture.draw_lines(plot);
}
BENCHMARK(bare_lines_of_fifty_years)->Unit(benchmark::kMillisecond);

/// From the closed file to the picture in memory.
void build_and_draw(benchmark::State& state, PlotNumber number) {
    const PlottedBasin basin;
    Picture picture;
    const DrawOptions options = options_with(0);
    for (auto _ : state) {
        const PlotOutcome outcome = basin.plot(number);
        const Plot* plot = plot_of(state, outcome);
        if (plot == nullptr) return;
        picture.draw_again(*plot, options);
    }
    state.counters["limit_ms"] = 30.0;
}
BENCHMARK_CAPTURE(build_and_draw, 16_curves, PlotNumber::SnowCover)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(build_and_draw, hydrographs, PlotNumber::Runoff)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(build_and_draw, components, PlotNumber::RunoffComponents)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

/// `nivora-batch plot`, from its start to its end.
void plot_process(benchmark::State& state, const char* number, const char* picture) {
    const PlottedBasin basin;
    const fs::path printed = basin.in_folder("printed.txt");
    for (auto _ : state) {
        const int status =
            run_program(NIVORA_BATCH_PROGRAM,
                        {"plot", path_text(basin.file()), "--simulation", basin.simulation(), "--plot",
                         number, "--kind", "year-round", "--out", path_text(basin.in_folder(picture))},
                        printed);
        if (status == 0) continue;
        state.SkipWithError(("the program ended with " + std::to_string(status)).c_str());
        return;
    }
    state.counters["limit_ms"] = 250.0;
}
BENCHMARK_CAPTURE(plot_process, hydrographs_png, "1", "plot.png")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(plot_process, 16_curves_png, "2", "plot.png")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(plot_process, 16_curves_svg, "2", "plot.svg")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(plot_process, 16_curves_pdf, "2", "plot.pdf")->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace nivora

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
