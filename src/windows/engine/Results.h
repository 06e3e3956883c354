// The statistics of a run.
#pragma once

#include "widgets/nivora_window.h"

class QLabel;
class QTextEdit;

namespace nivora {

class GridView;
class ValueGridModel;

/// Shows volumes, averages, volume difference and coefficient of determination of the last run.
class Results : public NivoraWindow {
    Q_OBJECT

public:
    explicit Results(const WindowContext& context, QWidget* parent = nullptr);

    /// Fills the window with the values of the run from the session.
    void fill();
    /// Shows the new name of a simulation if its statistics are shown.
    void simulation_was_renamed(const std::string& former, const std::string& name);
    /// Says in the status line whether the statistics shown are still those of the results and the inputs.
    void refresh_status();

private:
    QWidget* make_labels();
    QWidget* make_buttons();
    void print();

    QLabel* basin_name_;
    QLabel* simulation_name_;
    QLabel* run_date_;
    ValueGridModel* figures_;
    GridView* statistics_;
    QLabel* notes_;
    QTextEdit* comments_;
    double shown_ = 0.0;  ///< time of the shown run
    std::string period_;  ///< of that run, with short forms of its notes
};

}  // namespace nivora
