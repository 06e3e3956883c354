// The six steps of a climate evaluation, one by one.
#pragma once

#include "climate/climate_run.h"
#include "reports/grid_pages.h"
#include "widgets/nivora_window.h"

#include <array>
#include <optional>
#include <vector>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QPushButton;
class QTextBrowser;

namespace nivora {

class GridView;
class ValueGridModel;

/// Runs the steps of one scenario in their order and shows the results of each. While it is open most
/// commands of the main window are disabled.
class frmCtrlClim : public NivoraWindow {
    Q_OBJECT

public:
    explicit frmCtrlClim(const WindowContext& context, QWidget* parent = nullptr);

    /// Lists the scenarios of the current simulation.
    /// @return false if the basin can't be read, which was shown
    [[nodiscard]] bool open();

    /// Whether an evaluation has begun and is not complete.
    [[nodiscard]] bool goes_on() const;

signals:
    /// The window was closed, by Done, Abort or its close control.
    void left();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* make_scenario();
    QWidget* make_steps();
    QWidget* make_summary();
    QWidget* make_statistics();
    QWidget* make_notes();
    void make_buttons(QWidget* content);
    void fix_statistics_height(QGridLayout& layout, int row);

    void scenario_chosen();
    void step_clicked(int index);
    void run_step(int step);
    void set_boxes(int step, StepOutcome outcome);
    void start_first_step();
    void note_start(StepOutcome outcome);
    void allow_another_start();
    void finished();
    void done();
    void print();
    void name_results();
    void show_figures(int step);
    void show_summary();
    void show_notes();
    [[nodiscard]] bool may_end();
    void show_statistics(int step);
    void grow_statistics(int step);
    void fit_statistics_width();
    void highlight_sources(int row, int column);
    void allow_choice(bool allowed);
    void set_caption(int step);
    [[nodiscard]] ClimateContext climate_context();

    QComboBox* scenario_ = nullptr;
    QCheckBox* reuse_ = nullptr;
    std::array<QCheckBox*, k_climate_steps> steps_{};
    ValueGridModel* summary_ = nullptr;
    GridView* summary_grid_ = nullptr;
    ValueGridModel* statistics_ = nullptr;
    GridView* statistics_grid_ = nullptr;
    QTextBrowser* notes_ = nullptr;
    std::vector<QPushButton*> buttons_;
    int row_height_ = 0;                     ///< by how much the statistics grow
    bool begun_ = false;                     ///< a step 1 has changed the results
    bool rebuilt_ = false;                   ///< that step rebuilt them
    std::optional<PrintedSheet> evaluated_;  ///< the scenario as step 1 applied it
    bool updating_ = false;
    bool aborted_ = false;
};

}  // namespace nivora
