// What happens in the two grids of the main window.

#include "prep/simulation_grid.h"
#include "session/basin_rows.h"
#include "session/simulation_list.h"
#include "shell/basin_grids.h"
#include "shell/frmNVR.h"
#include "widgets/grid_status.h"
#include "widgets/grid_view.h"

#include <QLineEdit>
#include <QStatusBar>
#include <QTimer>

namespace nivora {
namespace {

constexpr int k_area_column = 1;

}  // namespace

void frmNVR::connect_grids() {
    connect(zones_, &GridModel::edited, this, [this](int, int first_column, int, int last_column) {
        mark_edited();
        if (first_column <= k_area_column && k_area_column <= last_column) show_area();
        zone_grid_->widen_columns(first_column, last_column);
    });
    connect(zone_grid_, &GridView::left_cell, this, [this](int, int column) {
        if (column == k_area_column) show_area();
    });
    connect(simulation_grid_, &GridView::left_cell, this, &frmNVR::cell_left);
    connect(simulations_, &GridModel::edited, this, [this](int, int first_column, int, int last_column) {
        simulation_edited();
        simulation_grid_->widen_columns(first_column, last_column);
    });
    auto* grid_status = new GridStatus(statusBar());
    for (GridView* grid : {zone_grid_, simulation_grid_}) grid_status->watch(grid);
    connect(simulation_grid_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this] { row_selected(); });
    // A click on the active row selects it, too: it may be the only one, or one that is not selected yet.
    connect(simulation_grid_, &QAbstractItemView::pressed, this, [this] { row_selected(); });
}

void frmNVR::go_to_field(const UnstorableField& field) {
    if (field.part == UnstorableField::Part::Box) {
        boxes_.at(static_cast<std::size_t>(field.column))->setFocus();
        return;
    }
    const bool zone = field.part == UnstorableField::Part::Zones;
    GridView* grid = zone ? zone_grid_ : simulation_grid_;
    grid->setFocus();
    grid->setCurrentIndex(grid->cells().index(static_cast<int>(field.row), field.column - 1));
}

void frmNVR::simulation_edited() {
    edited_simulation(session());
    windows_.refresh_results();
    fill_labels();
    emit simulations_->headerDataChanged(Qt::Horizontal, 0, simulations_->columnCount() - 1);
    menu_->refresh();
}

void frmNVR::cell_left(int row, int column) {
    if (telling_ || filling_ || leaving_ || context().quick_help.is_on()) return;
    const auto grid_row = static_cast<std::size_t>(row);
    const auto problem = left_simulation_cell_problem(session().basin, grid_row, column + 1);
    if (!problem) return;
    telling_ = true;
    simulations_->mark(QRect(column, row, 1, 1));
    session().dialogs.message(*problem);
    repair_simulation_cell(session().basin, grid_row, column + 1);
    simulations_->mark({});
    simulations_->changed_block(row, column, row, column);
    telling_ = false;
    QTimer::singleShot(0, simulation_grid_, [this, row, column] {
        simulation_grid_->setCurrentIndex(simulations_->index(row, column));
        simulation_grid_->setFocus();
    });
}

}  // namespace nivora
