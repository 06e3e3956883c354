// How long the report window takes to show and to scroll the longest texts.

#include "base/scripted_dialogs.h"
#include "widgets/desktop_printers.h"
#include "widgets/printing.h"
#include "windows/reports/frmFileDisp.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <memory>

namespace nivora {
namespace {

constexpr std::size_t k_columns = 125;

/// A text of so many lines as wide as six months; every fiftieth line is a form feed.
std::string report_text(int lines) {
    std::string text;
    for (int line = 1; line <= lines; ++line) {
        std::string content = line % 50 == 0 ? "\f" : std::to_string(line);
        if (line % 50 != 0) content.resize(k_columns, '5');
        text += content + "\r\n";
    }
    return text;
}

struct Desk {
    ScriptedDialogs dialogs;
    Desktop desktop;
    Session session{dialogs, desktop};
    QuickHelp quick_help;
    DesktopPrinters printers;
    Printing printing{session, printers};
    [[nodiscard]] WindowContext context() { return {session, quick_help, ".", printing}; }
};

/// Counts how often a widget was painted.
class PaintCount : public QObject {
public:
    [[nodiscard]] int paints() const { return paints_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++paints_;
        return QObject::eventFilter(watched, event);
    }

private:
    int paints_ = 0;
};

/// From the file to the text on the screen: what a user waits for. Closing the window is not part of it.
void open_display(benchmark::State& state) {
    const ReportFile file{.path = "NVRrpts.out", .text = report_text(static_cast<int>(state.range(0)))};
    Desk desk;
    for (auto _ : state) {
        PaintCount count;
        auto display = std::make_unique<frmFileDisp>(desk.context());
        auto* text = display->findChild<QPlainTextEdit*>(QStringLiteral("RichTextBox1"));
        text->viewport()->installEventFilter(&count);
        display->show_report_file(file, "Multiple NVR Reports");
        display->show();
        QApplication::processEvents();
        state.PauseTiming();
        if (count.paints() == 0 || text->blockCount() <= state.range(0))
            state.SkipWithError("the text was not painted");
        display.reset();
        state.ResumeTiming();
    }
}

void scroll_page(benchmark::State& state) {
    const ReportFile file{.path = "NVRrpts.out", .text = report_text(static_cast<int>(state.range(0)))};
    Desk desk;
    frmFileDisp display(desk.context());
    display.show_report_file(file, "Multiple NVR Reports");
    display.show();
    auto* text = display.findChild<QPlainTextEdit*>(QStringLiteral("RichTextBox1"));
    QScrollBar* bar = text->verticalScrollBar();
    for (auto _ : state) {
        bar->setValue((bar->value() + bar->pageStep() * 7) % bar->maximum());
        QApplication::processEvents();
        benchmark::DoNotOptimize(text->viewport()->grab());
    }
}

void on_lines(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("lines")->Unit(benchmark::kMillisecond);
}

BENCHMARK(open_display)->Apply(on_lines)->Arg(15'000)->Arg(50'000);
BENCHMARK(scroll_page)->Apply(on_lines)->Arg(50'000);

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
