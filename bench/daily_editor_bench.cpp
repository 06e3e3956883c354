// How long the daily editor takes with the longest records: opening, change of zone, large paste, mass edit,
// scrolling beside the days that stay in view, the sums of a selection.

#include "bench/bench_basin.h"
#include "prep/data_menu.h"
#include "widgets/desktop_printers.h"
#include "widgets/grid_sums.h"
#include "widgets/grid_view.h"
#include "windows/prep/frmData.h"

#include <benchmark/benchmark.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QScrollBar>
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

    /// Shows a table of results with the days and zones of the basin and all 56 columns.
    void show_results() {
        BasinDatabase database{session.basin.Work_File, Access::ReadWrite};
        if (!database.has_table("SimResults")) {
            database.create_table(sim_results_table());
            database.execute(
                "INSERT INTO SimResults (Zone, Date, DailyQ, Precip) "
                "SELECT Zone, Date, Runoff, Precip FROM PhysicalData");
        }
        session.prep.Data_View = DataView::Results;
        session.prep.query = {.table = "SimResults", .fields = daily_fields(DataView::Results), .period = {}};
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

/// Takes a paste back and makes it again, by turns.
void undo_paste(benchmark::State& state) {
    Prepared prepared{static_cast<int>(state.range(0))};
    const auto window = shown_editor(prepared);
    GridView& grid = grid_of(*window);
    QApplication::clipboard()->setText(block_of_numbers(1));
    grid.setCurrentIndex(grid.model()->index(0, 1));
    const QString before = grid.cells().whole_text(k_pasted_rows - 1, k_pasted_columns);
    grid.paste();
    const QString after = grid.cells().whole_text(k_pasted_rows - 1, k_pasted_columns);
    const auto key_of = [&](const QKeySequence& keys) {
        for (QAction* action : window->actions()) {
            if (action->shortcut() == keys) return action;
        }
        std::abort();
    };
    QAction* undo = key_of(Qt::CTRL | Qt::Key_Z);
    QAction* redo = key_of(Qt::CTRL | Qt::Key_Y);
    bool pasted = true;
    for (auto _ : state) {
        (pasted ? undo : redo)->trigger();
        pasted = !pasted;
        QApplication::processEvents();
    }
    const QString left = grid.cells().whole_text(k_pasted_rows - 1, k_pasted_columns);
    if (left != (pasted ? after : before) || before == after) state.SkipWithError("nothing was undone");
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

/// Every other column hidden or, at the right, in the reverse order, with the computed discharge among them.
std::string arranged_results() {
    const auto fields = daily_fields(DataView::Results);
    std::string kept = "Date Computed";
    for (std::size_t field = fields.size() - 1; field > 0; --field)
        kept += (field < fields.size() / 2 && field % 2 == 0 ? " -" : " ") + fields[field];
    return kept;
}

/// A step of a scroll bar and its painting, from one end of the table to the other and back.
void scroll(benchmark::State& state, Qt::Orientation direction, bool arranged) {
    Prepared prepared{static_cast<int>(state.range(0))};
    prepared.show_results();
    if (arranged) {
        prepared.session.basin.Output_Valid = true;
        prepared.session.settings.columns["Results"] = arranged_results();
    }
    const auto window = shown_editor(prepared);
    GridView& grid = grid_of(*window);
    grid.horizontalScrollBar()->setValue(300);
    QScrollBar* bar = direction == Qt::Horizontal ? grid.horizontalScrollBar() : grid.verticalScrollBar();
    int step = direction == Qt::Horizontal ? 20 : 3;
    for (auto _ : state) {
        const int next = bar->value() + step;
        if (next > bar->maximum() || next < std::max(1, bar->minimum())) step = -step;
        bar->setValue(bar->value() + step);
        QApplication::processEvents();
    }
    state.counters["columns"] = grid.model()->columnCount();
}
void scroll_columns(benchmark::State& state) { scroll(state, Qt::Horizontal, false); }
void scroll_rows(benchmark::State& state) { scroll(state, Qt::Vertical, false); }
void scroll_arranged_columns(benchmark::State& state) { scroll(state, Qt::Horizontal, true); }
void scroll_arranged_rows(benchmark::State& state) { scroll(state, Qt::Vertical, true); }

/// Hides a column among 57 and shows it again, by turns, with the painting.
void hide_column(benchmark::State& state) {
    Prepared prepared{static_cast<int>(state.range(0))};
    prepared.show_results();
    const auto window = shown_editor(prepared);
    GridView& grid = grid_of(*window);
    grid.setCurrentIndex(grid.model()->index(9000, 3));
    QAction* hide = nullptr;
    for (QAction* action : window->actions()) {
        if (action->shortcut() == QKeySequence(Qt::CTRL | Qt::Key_0)) hide = action;
    }
    if (hide == nullptr) std::abort();
    const int columns = grid.model()->columnCount();
    for (auto _ : state) {
        hide->trigger();
        QApplication::processEvents();
        if (grid.model()->columnCount() != columns - 1) state.SkipWithError("nothing was hidden");
        state.PauseTiming();
        for (QAction* action : window->actions()) {
            if (action->shortcut() == QKeySequence(Qt::CTRL | Qt::Key_L)) action->trigger();
        }
        QApplication::processEvents();
        auto* menu = grid.findChild<QMenu*>(QStringLiteral("mnuColumns"));
        menu->findChild<QAction*>(QStringLiteral("columnsOriginal"))->trigger();
        menu->close();
        QApplication::processEvents();
        grid.setCurrentIndex(grid.model()->index(9000, 3));
        state.ResumeTiming();
    }
}

/// The sums of 20,000 days of seven variables.
void sums_of_block(benchmark::State& state) {
    Prepared prepared{static_cast<int>(state.range(0))};
    const auto window = shown_editor(prepared);
    GridView& grid = grid_of(*window);
    const auto* model = grid.model();
    grid.selectionModel()->select(
        QItemSelection(model->index(0, 1), model->index(k_pasted_rows - 1, k_pasted_columns)),
        QItemSelectionModel::ClearAndSelect);
    for (auto _ : state) benchmark::DoNotOptimize(sums_of_selection(grid));
    state.counters["numbers"] = static_cast<double>(sums_of_selection(grid).count);
}

/// A column with as many rows as 50 years of 16 zones have.
class ManyNumbers : public GridModel {
public:
    /// @param keeps_numbers false: each is read from its text, as in a model that says nothing of its numbers
    explicit ManyNumbers(bool keeps_numbers) : keeps_numbers_(keeps_numbers) {}

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : 292'000;
    }
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : 1;
    }
    [[nodiscard]] CellFormat format(int, int) const override { return {.kind = CellFormat::Kind::Number}; }
    [[nodiscard]] QString text(int row, int) const override { return QString::number(row * 0.25); }
    [[nodiscard]] QString header(int) const override { return QStringLiteral("Runoff"); }
    [[nodiscard]] std::optional<double> number(int row, int column) const override {
        return keeps_numbers_ ? row * 0.25 : GridModel::number(row, column);
    }

protected:
    [[nodiscard]] bool put(int, int, const QString&) override { return false; }

private:
    bool keeps_numbers_;
};

void sums_of_column(benchmark::State& state) {
    ManyNumbers model(state.range(0) != 0);
    ScriptedDialogs dialogs;
    GridView grid(&model, dialogs);
    grid.selectColumn(0);
    for (auto _ : state) benchmark::DoNotOptimize(sums_of_selection(grid));
    state.counters["numbers"] = static_cast<double>(sums_of_selection(grid).count);
}

void on_years(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("years")->Unit(benchmark::kMillisecond);
}

BENCHMARK(open_editor)->Apply(on_years)->Arg(50);
BENCHMARK(change_zone)->Apply(on_years)->Arg(50);
// 55 years have 20,000 days.
BENCHMARK(paste)->Apply(on_years)->Arg(55);
BENCHMARK(undo_paste)->Apply(on_years)->Arg(55);
BENCHMARK(mass_edit)->Apply(on_years)->Arg(50);
BENCHMARK(scroll_columns)->Apply(on_years)->Arg(50);
BENCHMARK(scroll_rows)->Apply(on_years)->Arg(50);
BENCHMARK(scroll_arranged_columns)->Apply(on_years)->Arg(50);
BENCHMARK(scroll_arranged_rows)->Apply(on_years)->Arg(50);
BENCHMARK(hide_column)->Apply(on_years)->Arg(50);
BENCHMARK(sums_of_block)->Apply(on_years)->Arg(55);
BENCHMARK(sums_of_column)->ArgName("keeps_numbers")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

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
