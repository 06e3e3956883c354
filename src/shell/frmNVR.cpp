#include "shell/frmNVR.h"

#include "prep/simulation_grid.h"
#include "session/basin_rows.h"
#include "shell/basin_grids.h"
#include "shell/basin_panel.h"
#include "shell/simulations_panel.h"
#include "store/basin_marks.h"
#include "widgets/controls.h"
#include "widgets/edit_target.h"
#include "widgets/grid_status.h"
#include "widgets/grid_view.h"
#include "widgets/qt_text.h"
#include "widgets/window_keys.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QScopedValueRollback>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

namespace nivora {
namespace {

/// With the time that a write takes, a change is kept within five seconds.
constexpr std::chrono::milliseconds k_recovery_interval{2000};

}  // namespace

frmNVR::frmNVR(const WindowContext& context)
    : NivoraWindow(context, "frmNVR", WindowNumber::frmNVR),
      life_(context.session, context.writable_folder()),
      windows_(context),
      menu_(new MainMenu(menuBar(), context.session, this)),
      procedure_(make_label(QStringLiteral("panel2"), {}, 43, this)),
      not_kept_(new QLabel(QStringLiteral("Unsaved changes are not kept for a crash"), this)),
      recovery_(new QTimer(this)),
      edit_target_(new EditTarget(this)),
      basin_(new BasinPanel(context, interruptions_, this)),
      simulations_(new SimulationsPanel(context, interruptions_, this)) {
    setWindowTitle(QStringLiteral("NIVORA - Hollin Flow Model for Windows"));
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(basin_, 3);
    layout->addWidget(simulations_, 2);
    set_content(content);
    not_kept_->setObjectName(QStringLiteral("notKept"));
    not_kept_->hide();
    statusBar()->addPermanentWidget(not_kept_);
    statusBar()->addPermanentWidget(procedure_);
    explain_status_bar(42);
    connect_menu();
    connect_panels();
    connect(recovery_, &QTimer::timeout, this, &frmNVR::keep_recovery);
    resize(1000, 720);
    if (context.quick_help.is_on()) quick_help_changed(true);
}

frmNVR::~frmNVR() {
    if (answered_ != nullptr) *answered_ = Desktop{};
    // Focus changes while the window is destroyed must not reach it.
    disconnect(qApp, nullptr, this, nullptr);
    // Nor must they count as leaving a box or cell of the panels, which share this flag.
    interruptions_.leaving = true;
    hide();
}

void frmNVR::answer(Desktop& desktop) {
    desktop.commit_edits = [this] { commit_edits(); };
    desktop.put_typed_cell = [this](BasinState& copy) { put_typed_cell(copy); };
    desktop.refuses_typed_box = [this] { return basin_->refuses_typed_box(); };
    desktop.go_to_field = [this](const UnstorableField& field) { go_to_field(field); };
    desktop.refresh_main_window = [this] { refresh_main_window(); };
    desktop.keep_unsaved = [this] {
        keep_recovery();
        life_.finish_recovery();
    };
    desktop.show_help_topic = [this](int topic) { windows_.show_help_topic(topic); };
    desktop.open_daily_editor = [this] { open_daily_editor(std::nullopt); };
    desktop.leave_basin = [this] {
        windows_.close_results();
        windows_.close_plots();
        session().history.forget();
        basin_->leave_basin();
        simulations_->leave_basin();
    };
    desktop.close_plots = [this] { windows_.close_plots(); };
    answered_ = &desktop;
}

void frmNVR::add_keys() {
    menu_->add_keys(*this);
    connect(new_window_key(*this, Qt::Key_F5), &QAction::triggered, this, &frmNVR::run_again);
}

void frmNVR::connect_menu() {
    add_keys();
    // A command that takes long keeps the timer waiting: what was typed before is kept first.
    connect(menu_, &MainMenu::chosen, this, [this] { life_.keep_recovery(); });
    connect(menu_, &MainMenu::recent_chosen, this, [this] { life_.keep_recovery(); });
    connect(menu_, &MainMenu::chosen, this, &frmNVR::do_command);
    connect(menu_, &MainMenu::recent_chosen, this, &frmNVR::open_recent);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now == nullptr || now == menuBar()) return;
        const GridView& grid = simulations_->grid();
        menu_->name_row_items(grid.isAncestorOf(now) || now == &grid);
    });
    menu_->name_row_items(false);
    connect(&context().quick_help, &QuickHelp::colours_wanted, this,
            [this](QWidget* window) { windows_.choose_quick_help_colours(*window); });
}

void frmNVR::connect_panels() {
    connect(basin_, &BasinPanel::edited, this, [this] { windows_.refresh(); });
    connect(basin_, &BasinPanel::units_chosen, this, &frmNVR::show_labels);
    connect(basin_, &BasinPanel::units_fixed, this, &frmNVR::refresh_main_window);
    connect(basin_, &BasinPanel::zones_fixed, this, [this] {
        refresh_main_window();
        windows_.ask_for_period();
    });
    connect(basin_, &BasinPanel::areas_taken, this, [this] { menu_->refresh(); });
    connect(simulations_, &SimulationsPanel::chosen, this, [this] { life_.keep_recovery(); });
    connect(simulations_, &SimulationsPanel::chosen, this, &frmNVR::do_command);
    connect(simulations_, &SimulationsPanel::row_chosen, this, [this] {
        show_labels();
        menu_->refresh();
        windows_.refresh();
    });
    connect(simulations_, &SimulationsPanel::edited, this, [this] {
        windows_.refresh();
        show_labels();
        menu_->refresh();
    });
    auto* grid_status = new GridStatus(statusBar());
    auto* undo_keys = new UndoKeys(*this, undoing());
    for (GridView* grid : {&basin_->zone_grid(), &simulations_->grid()}) {
        grid_status->watch(grid);
        undo_keys->watch(*grid);
    }
    setTabOrder(&basin_->zone_grid(), &simulations_->grid());
}

bool frmNVR::start() {
    if (!life_.start()) return false;  // a start also fills the window
    set_first_focus(&basin_->name_box());
    show();
    recovery_->start(k_recovery_interval);
    return true;
}

bool frmNVR::can_open_file() const {
    return isVisible() && can_be_chosen(*menu_->action(QStringLiteral("mnuFileItem(1)"))) &&
           !context().quick_help.is_on() && QApplication::activeModalWidget() == nullptr &&
           QApplication::activePopupWidget() == nullptr;
}

void frmNVR::open_file(const std::filesystem::path& file) {
    if (!can_open_file()) return;
    life_.keep_recovery();
    zone_question_.forget();
    life_.open_named(file);
}

void frmNVR::come_to_front() {
    if (isMinimized()) showNormal();
    QWidget* front = QApplication::activeModalWidget();
    if (front == nullptr) front = this;
    front->raise();
    front->activateWindow();
}

void frmNVR::commit_edits() {
    basin_->commit_edits();
    simulations_->commit_edits();
}

/// Keeps the unsaved changes, and shows whether the last write of them failed.
void frmNVR::keep_recovery() {
    life_.keep_recovery();
    const QString fault = to_qt(life_.recovery_fault());
    not_kept_->setToolTip(fault);
    not_kept_->setVisible(!fault.isEmpty());
}

void frmNVR::put_typed_cell(BasinState& copy) {
    if (const auto zone = basin_->zone_grid().typed_cell()) {
        const auto row = static_cast<std::size_t>(zone->row);
        if (row < copy.zones.size() && put_zone_cell(copy.zones[row], zone->column, from_qt(zone->text))) {
            mark_output_invalid(copy);
            mark_input_changed(copy);
        }
    }
    if (const auto cell = simulations_->grid().typed_cell()) {
        const auto row = static_cast<std::size_t>(cell->row);
        const PrepContext edited{copy, session().prep, session().dialogs};
        if (row < copy.simulations.size())
            static_cast<void>(edit_simulation_cell(edited, row, cell->column + 1, from_qt(cell->text)));
    }
}

void frmNVR::go_to_field(const DefinitionField& field) {
    const int row = static_cast<int>(field.row);
    switch (field.part) {
        case DefinitionField::Part::Box: return basin_->go_to(static_cast<BasinBox>(field.column));
        case DefinitionField::Part::Zones: return basin_->go_to_cell(row, field.column - 1);
        case DefinitionField::Part::Simulations: return simulations_->go_to_cell(row, field.column - 1);
    }
}

Undoing frmNVR::undoing() {
    return {.can_undo = [this] { return session().history.can_undo(); },
            .can_redo = [this] { return session().history.can_redo(); },
            .undo = [this] { undo(); },
            .redo = [this] { redo(); }};
}

void frmNVR::undo() {
    if (basin_->undo_typing()) return;
    commit_edits();
    show_reversed(session().history.undo(session()));
}

void frmNVR::redo() {
    commit_edits();
    if (!session().history.can_redo() && basin_->redo_typing()) return;
    show_reversed(session().history.redo(session()));
}

/// Shows the basin after an edit was undone or redone, with the cursor where it changed something.
void frmNVR::show_reversed(const std::optional<DefinitionField>& field) {
    if (!field) return QApplication::beep();
    basin_->show_values();
    simulations_->show_rows();
    show_labels();
    menu_->refresh();
    windows_.refresh();
    go_to_field(*field);
}

void frmNVR::refresh_main_window() {
    {
        const QScopedValueRollback filling(interruptions_.filling, true);
        basin_->fill();
        simulations_->fill();
        show_labels();
    }
    menu_->refresh();
    show_basin_file();
    windows_.refresh();
    life_.keep_recovery();
}

void frmNVR::show_labels() {
    basin_->show_labels();
    simulations_->show_labels();
    for (QToolBar* toolbar : findChildren<QToolBar*>()) toolbar->setEnabled(!session().shell.climate_window);
    procedure_->setText(menu_->melting_procedure());
}

void frmNVR::quick_help_changed(bool on) {
    basin_->open_for_entry(!on);
    simulations_->open_for_entry(!on);
    if (!on) basin_->name_box().setFocus();
}

void frmNVR::closeEvent(QCloseEvent* event) {
    if (!context().quick_help.is_on()) {
        // An evaluation that is not complete has its own question.
        if (!windows_.may_leave_climate_run()) {
            event->ignore();
            return;
        }
        interruptions_.leaving = true;
        const bool ends = life_.may_exit();
        interruptions_.leaving = false;
        if (!ends) {
            event->ignore();
            return;
        }
    }
    NivoraWindow::closeEvent(event);
    if (!event->isAccepted()) return;
    windows_.close_all();
    recovery_->stop();
    life_.end();
    qApp->quit();
}

}  // namespace nivora
