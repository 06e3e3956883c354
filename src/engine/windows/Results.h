// The statistics of a run.
#pragma once

#include "widgets/nivora_window.h"

class QLabel;
class QTableWidget;
class QTextEdit;

namespace nivora {

/// Shows volumes, averages, volume difference and coefficient of determination of the last run.
class Results : public NivoraWindow {
    Q_OBJECT

public:
    explicit Results(const WindowContext& context, QWidget* parent = nullptr);

    /// Takes the values of the run from the session.
    void fill();

private:
    QWidget* make_labels();
    QWidget* make_buttons();

    QLabel* basin_name_;
    QLabel* simulation_name_;
    QLabel* run_date_;
    QTableWidget* statistics_;
    QTextEdit* comments_;
};

}  // namespace nivora
