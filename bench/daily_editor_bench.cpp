// How long the daily editor takes with the longest records: opening, change of zone, large paste, mass edit.

#include "bench/bench_basin.h"
#include "prep/data_menu.h"
#include "widgets/desktop_printers.h"
#include "widgets/grid_view.h"
#include "windows/prep/frmData.h"

#include <benchmark/benchmark.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QSpinBox>
#include <map>

namespace nivora {
namespace {

constexpr int k_zones = 16;
constexpr int k_pasted_rows = 20'000;
constexpr int k_pasted_columns = 7;

/// Basin files by number of years, each created once and kept until the program ends.
class BasinFiles {
public:
    ~BasinFiles() {
        for (const auto& [years, path] : files_) std::filesystem::remove(path);
    }

    const std::filesystem::path& of_years(int years) {
        auto& path = files_[years];
        if (path.empty()) {
            path = std::filesystem::temp_directory_path() /
                   ("nivora-bench-editor-" + std::to_string(years) + ".mdb");
            write_bench_basin(path, k_zones, years);
        }
        return path;
    }

private:
    std::map<int, std::filesystem::path> files_;
};

BasinFiles& basin_files() {
    static BasinFiles files;
    return files;
}

/// A session on that basin, with its whole record prepared for the daily editor.
struct Prepared {
    explicit Prepared(int years) {
        {
            BasinDatabase database{basin_files().of_years(years), Access::ReadOnly};
            read_basin(database, session.basin);
        }
        session.basin.Work_File = basin_files().of_years(years);
        select_simulation(session.basin, 0);
        session.prep.query = {
            .table = k_physical_data, .fields = daily_fields(DataView::PhysicalData), .period = {}};
        session.prep.window_title = "Edit basin variables";
    }

    ScriptedDialogs dialogs;
    Desktop desktop;
    Session session{dialogs, desktop};
    QuickHelp quick_help;
    DesktopPrinters printers;
    Printing printing{session, printers};
    WindowContext context{session, quick_help, std::filesystem::path{NIVORA_SOURCE_DIR} / "data", printing};
};

/// A daily editor after it was shown and painted.
std::unique_ptr<frmData> shown_editor(Prepared& prepared) {
    auto window = std::make_unique<frmData>(prepared.context);
    if (!window->open()) std::abort();
    window->show();
    QApplication::processEvents();
    return window;
}

GridView& grid_of(const frmData& window) { return *window.findChild<GridView*>(QStringLiteral("Spread")); }

void close_dropping_changes(Prepared& prepared, frmData& window) {
    prepared.dialogs.then(Answer::Yes);
    window.close();
}

void open_editor(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        Prepared prepared{static_cast<int>(state.range(0))};
        state.ResumeTiming();
        auto window = shown_editor(prepared);
        state.PauseTiming();
        state.counters["rows"] = grid_of(*window).model()->rowCount();
        window.reset();
        state.ResumeTiming();
    }
}

void change_zone(benchmark::State& state) {
    Prepared prepared{static_cast<int>(state.range(0))};
    const auto window = shown_editor(prepared);
    auto* zone = window->findChild<QSpinBox*>(QStringLiteral("UpDown1"));
    for (auto _ : state) {
        zone->setValue(zone->value() % k_zones + 1);
        QApplication::processEvents();
    }
}

/// Rows of seven numbers that differ from row to row, in the form in which spreadsheets copy them.
QString block_of_numbers(int salt) {
    QString text;
    for (int row = 0; row < k_pasted_rows; ++row) {
        for (int column = 0; column < k_pasted_columns; ++column) {
            if (column > 0) text += QLatin1Char('\t');
            text += QString::number((row * 7 + column + salt) % 4001 * 0.013, 'g', 6);
        }
        text += QStringLiteral("\r\n");
    }
    return text;
}

void paste(benchmark::State& state) {
    Prepared prepared{static_cast<int>(state.range(0))};
    const auto window = shown_editor(prepared);
    GridView& grid = grid_of(*window);
    int salt = 0;
    for (auto _ : state) {
        state.PauseTiming();
        QApplication::clipboard()->setText(block_of_numbers(++salt));
        grid.setCurrentIndex(grid.model()->index(0, 1));
        state.ResumeTiming();
        grid.paste();
        QApplication::processEvents();
    }
    if (!prepared.dialogs.messages().empty()) state.SkipWithError("not all cells were taken");
    close_dropping_changes(prepared, *window);
}

void mass_edit(benchmark::State& state) {
    Prepared prepared{static_cast<int>(state.range(0))};
    const auto window = shown_editor(prepared);
    GridView& grid = grid_of(*window);
    auto* add = window->findChild<QAction*>(QStringLiteral("mnuEditItmAct(0)"));
    const auto* model = grid.model();
    grid.selectionModel()->select(QItemSelection(model->index(5000, 4), model->index(5365, 4)),
                                  QItemSelectionModel::ClearAndSelect);
    for (auto _ : state) {
        prepared.dialogs.then_text("0.5");
        add->trigger();
        QApplication::processEvents();
    }
    if (!prepared.dialogs.messages().empty()) state.SkipWithError("the mass edit failed");
    close_dropping_changes(prepared, *window);
}

void on_years(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("years")->Unit(benchmark::kMillisecond);
}

BENCHMARK(open_editor)->Apply(on_years)->Arg(50);
BENCHMARK(change_zone)->Apply(on_years)->Arg(50);
// 55 years have 20,000 days.
BENCHMARK(paste)->Apply(on_years)->Arg(55);
BENCHMARK(mass_edit)->Apply(on_years)->Arg(50);

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
