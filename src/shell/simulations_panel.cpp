#include "shell/simulations_panel.h"

#include "prep/simulation_grid.h"
#include "session/main_window_rules.h"
#include "session/simulation_list.h"
#include "shell/basin_grids.h"
#include "widgets/controls.h"
#include "widgets/grid_view.h"
#include "widgets/qt_text.h"

#include <QGridLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTimer>
#include <algorithm>
#include <utility>

namespace nivora {
namespace {

/// The colour of the area beyond the rows and columns of the grid.
constexpr QRgb k_empty_grid_colour = 0xFFC0C0C0;

}  // namespace

SimulationsPanel::SimulationsPanel(const WindowContext& context, Interruptions& interruptions,
                                   QWidget* parent)
    : QGroupBox(QStringLiteral("Basin Simulations "), parent),
      session_(context.session),
      quick_help_(context.quick_help),
      interruptions_(interruptions),
      simulations_(new SimulationModel(context.session, this)),
      name_(make_label(QStringLiteral("lblSimVisible"), {}, 21, this)),
      grid_(make_basin_grid("DBGrid1", simulations_, context.session.dialogs, this)) {
    setObjectName(QStringLiteral("Frame1(1)"));
    NivoraWindow::set_help(this, 2);
    auto* layout = new QGridLayout(this);
    layout->addWidget(
        make_label(QStringLiteral("Label1(6)"), QStringLiteral("Current Simulation Name:"), 21, this), 0, 0);
    // A doubled "&" shows as one only in a label with a buddy.
    name_->setBuddy(grid_);
    layout->addWidget(name_, 0, 1, 1, 3);
    make_grid(layout);
    make_buttons(layout);
    layout->setColumnStretch(4, 1);
    layout->setRowStretch(1, 1);
    QWidget* before = grid_;
    for (QWidget* button : buttons_) setTabOrder(std::exchange(before, button), button);
}

void SimulationsPanel::make_grid(QGridLayout* layout) {
    NivoraWindow::set_help(grid_, 48);
    grid_->setProperty(k_help_columns, 21);
    grid_->setAccessibleName(QStringLiteral("Simulations"));
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->set_clears_cells(false);
    // The row below is another simulation; Enter must not leave the current one.
    grid_->set_enter_goes_down(false);
    grid_->set_empty_area_colour(QColor::fromRgb(k_empty_grid_colour));
    layout->addWidget(grid_, 1, 0, 1, 5);
    connect(grid_, &GridView::left_cell, this, &SimulationsPanel::cell_left);
    connect(grid_, &GridView::menu_asked, this, [this](QMenu* menu) { add_entries(*menu); });
    connect(simulations_, &GridModel::edited, this, [this](int, int first_column, int, int last_column) {
        edited_simulation(session_);
        emit edited();
        // The header of the initial runoff names the unit of the simulation.
        emit simulations_->headerDataChanged(Qt::Horizontal, 0, simulations_->columnCount() - 1);
        grid_->widen_columns(first_column, last_column);
    });
    connect(grid_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this] { row_selected(); });
    // A click on the active row selects it, too: it may be the only one, or one that is not selected yet.
    connect(grid_, &QAbstractItemView::pressed, this, [this] { row_selected(); });
}

void SimulationsPanel::make_buttons(QGridLayout* layout) {
    struct Button {
        const char* caption;
        Command command;
    };
    constexpr std::array<Button, 3> k_buttons{{{"&Add Simulation", Command::InsertRow},
                                               {"&Delete Simulation", Command::DeleteRow},
                                               {"&Edit Simulation", Command::SimulationDefinition}}};
    for (int i = 0; i < 3; ++i) {
        const auto index = static_cast<std::size_t>(i);
        const Button& button = k_buttons.at(index);
        auto* made = new QPushButton(QString::fromUtf8(button.caption), this);
        made->setObjectName(QStringLiteral("Command1(%1)").arg(i));
        NivoraWindow::set_help(made, 39 + i);
        layout->addWidget(made, 2, i);
        connect(made, &QPushButton::clicked, this,
                [this, command = button.command] { emit chosen(command); });
        buttons_.at(index) = made;
    }
}

/// Entries of the context menu beside those of the clipboard.
void SimulationsPanel::add_entries(QMenu& menu) {
    struct Entry {
        const char* name;
        const char* caption;
        Command command;
    };
    constexpr std::array<Entry, 3> k_entries{
        {{"gridDuplicate", "&Duplicate simulation...", Command::DuplicateSimulation},
         {"gridRename", "&Rename simulation...", Command::RenameSimulation},
         {"gridChangeParameter", "Change a para&meter...", Command::ChangeParameter}}};
    const bool open = active_row() && !session_.shell.climate_window;
    menu.addSeparator();
    for (const Entry& entry : k_entries) {
        // A command opens a window or a box. The menu has to end before: it deletes itself once it is closed.
        QAction* added =
            menu.addAction(QString::fromUtf8(entry.caption), this, [this, command = entry.command] {
                QTimer::singleShot(0, this, [this, command] { emit chosen(command); });
            });
        added->setObjectName(QString::fromUtf8(entry.name));
        added->setEnabled(open);
    }
}

void SimulationsPanel::fill() {
    show_rows();
    grid_->fit_columns();
}

void SimulationsPanel::show_rows() {
    const QScopedValueRollback filling(interruptions_.filling, true);
    if (std::exchange(another_basin_, false)) {
        simulations_->show_other_basin();
    } else {
        simulations_->refresh();
    }
    select_current_row();
}

void SimulationsPanel::select_current_row() {
    const auto current = session_.basin.current_row;
    if (!current) return grid_->selectionModel()->clear();
    const int row = static_cast<int>(*current);
    const bool shown = grid_->currentIndex().row() == row && grid_->selectionModel()->isRowSelected(row);
    if (!shown) go_to_row(row);
}

void SimulationsPanel::return_to_current_row() {
    const QScopedValueRollback filling(interruptions_.filling, true);
    if (const auto current = session_.basin.current_row) go_to_row(static_cast<int>(*current));
}

void SimulationsPanel::go_to_row(int row) {
    grid_->go_to(simulations_->index(row, std::max(0, grid_->currentIndex().column())));
}

void SimulationsPanel::show_labels() {
    const ShellState& shell = session_.shell;
    name_->setText(to_qt(doubled_ampersands(session_.basin.Current_Sim_Name)));
    const bool open = !shell.climate_window;
    buttons_[0]->setEnabled(open);
    buttons_[1]->setEnabled(shell.delete_simulation && open);
    buttons_[2]->setEnabled(shell.edit_simulation && open);
}

void SimulationsPanel::commit_edits() { grid_->commit_editor(); }

void SimulationsPanel::go_to_cell(int row, int column) {
    grid_->setFocus();
    grid_->go_to(simulations_->index(row, column));
}

std::optional<std::size_t> SimulationsPanel::active_row() const {
    const QModelIndex active = grid_->currentIndex();
    if (!active.isValid()) return std::nullopt;
    return static_cast<std::size_t>(active.row());
}

std::optional<std::size_t> SimulationsPanel::row_to_delete() {
    const QModelIndex active = grid_->currentIndex();
    if (!active.isValid()) return std::nullopt;
    simulations_->mark(QRect(0, active.row(), simulations_->columnCount(), 1));
    const auto row = static_cast<std::size_t>(active.row());
    const bool confirmed =
        session_.dialogs.message(delete_simulation_question(session_.basin, row)) == Answer::Yes;
    simulations_->mark({});
    return confirmed ? std::optional{row} : std::nullopt;
}

void SimulationsPanel::activate_last_row() {
    const QScopedValueRollback filling(interruptions_.filling, true);
    grid_->selectionModel()->setCurrentIndex(simulations_->index(simulations_->rowCount() - 1, 0),
                                             QItemSelectionModel::NoUpdate);
}

void SimulationsPanel::open_for_entry(bool open) { grid_->setEnabled(open); }

void SimulationsPanel::row_selected() {
    const QModelIndex current = grid_->currentIndex();
    if (interruptions_.filling || !current.isValid()) return;
    if (session_.shell.climate_window) return return_to_current_row();  // that of the evaluation
    choose_simulation_row(session_, static_cast<std::size_t>(current.row()));
    emit row_chosen();
}

void SimulationsPanel::cell_left(int row, int column) {
    const Interruptions& now = interruptions_;
    if (now.telling || now.filling || now.leaving || quick_help_.is_on()) return;
    const auto grid_row = static_cast<std::size_t>(row);
    const auto problem = left_simulation_cell_problem(session_.basin, grid_row, column + 1);
    if (!problem) return;
    interruptions_.telling = true;
    simulations_->mark(QRect(column, row, 1, 1));
    session_.dialogs.message(*problem);
    session_.history.begin(session_);
    repair_simulation_cell(session_.basin, grid_row, column + 1);
    session_.history.end(session_, JoinedEdit::LastEdit);
    simulations_->mark({});
    simulations_->changed_block(row, column, row, column);
    interruptions_.telling = false;
    QTimer::singleShot(0, grid_, [this, row, column] {
        grid_->setCurrentIndex(simulations_->index(row, column));
        grid_->setFocus();
    });
}

}  // namespace nivora
