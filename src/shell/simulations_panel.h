// The lower part of the main window: the simulations of the basin.
#pragma once

#include "shell/interruptions.h"
#include "shell/main_menu.h"
#include "widgets/nivora_window.h"

#include <QGroupBox>
#include <array>
#include <optional>

class QGridLayout;
class QLabel;
class QMenu;
class QPushButton;

namespace nivora {

class GridView;
class SimulationModel;

/// The simulation grid, the name of the current simulation, and the buttons below. A row that is selected
/// becomes the current simulation.
class SimulationsPanel : public QGroupBox {
    Q_OBJECT

public:
    SimulationsPanel(const WindowContext& context, Interruptions& interruptions, QWidget* parent);

    /// Shows the rows with the current one selected, in columns that fit.
    void fill();
    /// Shows the rows with the current one selected. A selection that includes it is kept.
    void show_rows();
    /// Another basin will be shown: selection, active cell and scroll position of the grid are not kept.
    void leave_basin() { another_basin_ = true; }
    /// Shows the name of the current simulation and what can be done with it.
    void show_labels();
    /// Stores the cell that is being edited in the basin's state.
    void commit_edits();
    void go_to_cell(int row, int column);
    /// The row of the active cell.
    [[nodiscard]] std::optional<std::size_t> active_row() const;
    /// The active row, if the user agrees to delete it.
    [[nodiscard]] std::optional<std::size_t> row_to_delete();
    /// Makes the last row the active one without selecting it.
    void activate_last_row();
    /// Enables the grid, or disables it for QuickHelp.
    void open_for_entry(bool open);

    [[nodiscard]] GridView& grid() const { return *grid_; }

signals:
    /// A button was pressed.
    void chosen(nivora::Command command);
    /// Another simulation is the current one.
    void row_chosen();
    void edited();

private:
    void make_grid(QGridLayout* layout);
    void make_buttons(QGridLayout* layout);
    void add_entries(QMenu& menu);
    void select_current_row();
    void go_to_row(int row);
    void return_to_current_row();
    void row_selected();
    void cell_left(int row, int column);

    Session& session_;
    const QuickHelp& quick_help_;
    Interruptions& interruptions_;
    SimulationModel* simulations_;
    QLabel* name_;
    GridView* grid_;
    std::array<QPushButton*, 3> buttons_{};
    bool another_basin_ = true;  ///< the basin is another one than the grid shows
};

}  // namespace nivora
