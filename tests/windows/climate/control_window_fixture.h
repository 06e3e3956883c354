// The window of the six steps.
#pragma once

#include "tests/windows/climate/climate_window_fixture.h"
#include "windows/climate/frmCtrlClim.h"

namespace nivora {

class ControlWindowTest : public ClimateWindowTest {
protected:
    void open_six_days(const SixDays& small = SixDays{}) {
        write(small);
        add_scenario(k_scenario, {small.plus_one});
        open();
    }
    void open() {
        auto window = std::make_unique<frmCtrlClim>(context());
        opened_ = window->open();
        QObject::connect(window.get(), &frmCtrlClim::left, [this] { ++left_; });
        window_ = std::move(window);
        if (opened_) show_window();
    }

    QComboBox* scenario() { return find<QComboBox>("CmboScenario"); }
    QCheckBox* reuse() { return find<QCheckBox>("Check2"); }
    QCheckBox* box(int step) { return find<QCheckBox>("Check1(" + std::to_string(step - 1) + ")"); }
    GridView* summary() { return find<GridView>("vaSpread1"); }
    GridView* statistics() { return find<GridView>("SpdStat"); }

    void choose(const char* name) { scenario()->setCurrentText(QString::fromUtf8(name)); }
    /// Clicks the box of a step, which runs it; step 5 asks for each of two zones.
    void tick(int step) {
        if (step == 5) dialogs_.then_text("0").then_text("0");
        ASSERT_TRUE(box(step)->isEnabled()) << step;
        const QRect indicator{0, 0, 16, box(step)->height()};
        QTest::mouseClick(box(step), Qt::LeftButton, {}, indicator.center());
    }
    void run_to(int last) {
        choose(k_scenario);
        for (int step = 1; step <= last; ++step) tick(step);
    }

    /// The numbers of the steps whose boxes are ticked, or enabled.
    std::vector<int> ticked() {
        return steps([](const QCheckBox& of_step) { return of_step.isChecked(); });
    }
    std::vector<int> enabled() {
        return steps([](const QCheckBox& of_step) { return of_step.isEnabled(); });
    }

    /// Rows and columns of a grid count from 1, as a user counts them;
    /// column 1 of the statistics has the labels.
    static std::string cell(const GridView* grid, int row, int column) {
        return from_qt(grid->model()->index(row - 1, column - 1).data().toString());
    }
    static std::vector<std::string> row_of(const GridView* grid, int row) {
        std::vector<std::string> texts;
        for (int column = 1; column <= grid->model()->columnCount(); ++column)
            texts.push_back(cell(grid, row, column));
        return texts;
    }
    /// The visible columns of the statistics, including the labels.
    std::vector<int> shown_columns() {
        std::vector<int> columns;
        for (int column = 1; column <= statistics()->model()->columnCount(); ++column) {
            if (!statistics()->isColumnHidden(column - 1)) columns.push_back(column);
        }
        return columns;
    }

    bool opened_ = false;
    int left_ = 0;

private:
    template <typename Has>
    std::vector<int> steps(Has has) {
        std::vector<int> found;
        for (int step = 1; step <= k_climate_steps; ++step) {
            if (has(*box(step))) found.push_back(step);
        }
        return found;
    }
};

}  // namespace nivora
