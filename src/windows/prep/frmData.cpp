#include "windows/prep/frmData.h"

#include "base/number_text.h"
#include "base/text.h"
#include "engine/results_summary.h"
#include "reports/print_texts.h"
#include "session/availability.h"
#include "store/basin_marks.h"
#include "widgets/controls.h"
#include "widgets/grid_sheet.h"
#include "widgets/grid_status.h"
#include "widgets/grid_view.h"
#include "widgets/printing.h"
#include "widgets/qt_text.h"
#include "widgets/undo_keys.h"
#include "widgets/window_keys.h"
#include "windows/prep/daily_columns.h"
#include "windows/prep/daily_model.h"
#include "windows/prep/daily_moves.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace nivora {
namespace {

constexpr int k_default_topic = 7;
constexpr int k_parameters_topic = 71;
constexpr int k_results_topic = 72;
/// The help line of the discharge among the results.
constexpr int k_computed_help = 86;

bool is_climate_run_active(int climate_step) { return climate_step >= 1 && climate_step <= 5; }

/// The number before the help line of a view's first column.
int help_columns(DataView view) {
    switch (view) {
        case DataView::PhysicalData: return 20;
        case DataView::Parameters: return 30;
        case DataView::Results: return 40;
        case DataView::Scenario: break;
    }
    return 96;
}

/// All columns of the view in its own order, whatever is hidden or moved on the screen; or the selected ones,
/// in that order, too.
PrintedSheet printed_table(const DailyModel& days, const std::optional<CellRange>& block) {
    std::vector<std::size_t> printed{0};
    if (block) {
        for (int column = std::max(1, block->first_column); column <= block->last_column; ++column)
            printed.push_back(days.offered_place(column));
        std::sort(printed.begin(), printed.end());
    } else {
        const auto offered = days.offered();
        for (std::size_t place = 1; place < offered.size(); ++place) {
            if (offered[place].shown_at_first) printed.push_back(place);
        }
    }
    return days.sheet(printed, block ? block->first_row : 0, block ? block->last_row : days.rowCount() - 1);
}

/// The computed discharge by day; empty if it can't be read, as if there were none.
std::map<DayCount, double> computed_flow(DailyEditor& editor) {
    try {
        return editor.computed_flow();
    } catch (const StoreError&) {
        return {};
    }
}

/// The name of a view in the settings.
const char* settings_name(DataView view) {
    switch (view) {
        case DataView::PhysicalData: return "Variables";
        case DataView::Parameters: return "Parameters";
        case DataView::Results: return "Results";
        case DataView::Scenario: break;
    }
    return "Scenario";
}

}  // namespace

std::string daily_caption(const PrepState& prep, const BasinState& basin) {
    const std::string units = basin.Units_Code == Units::English ? "  (English units)" : "  (Metric units)";
    return prep.caption_prefix + basin.Current_Sim_Name + units;
}

std::string daily_title(const PrepState& prep, int climate_step) {
    const char* locked =
        is_climate_run_active(climate_step) ? " (Read-only during climate change processing)" : "";
    return prep.window_title + locked;
}

frmData::frmData(const WindowContext& context, QWidget* parent)
    : NivoraWindow(context, "frmData", WindowNumber::frmData, parent),
      zone_grid_before_(context.session.basin.zones),
      days_(nullptr),
      grid_(nullptr) {
    PrepState& prep = session().prep;
    if (is_climate_run_active(session().run.ClimateStep)) prep.Edit_Locked = true;
    // Daily variables are the basin's; parameters and results are of a simulation.
    const BasinState& basin = session().basin;
    const Units units = prep.Data_View == DataView::PhysicalData ? basin.basin_units : basin.Units_Code;
    days_ = new DailyModel(prep.Edit_Locked, units, this);
    grid_ = new GridView(days_, session().dialogs, this);
    grid_->setObjectName(QStringLiteral("Spread"));
    grid_->setAccessibleName(QStringLiteral("Daily values"));
    set_help(grid_, 17);
    if (prep.Data_View != DataView::Scenario)
        grid_->setProperty(k_help_columns, help_columns(prep.Data_View));
    grid_->freeze_first_column();
    setWindowTitle(to_qt(daily_title(prep, session().run.ClimateStep)));
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(make_head());
    layout->addWidget(grid_, 1);
    const ButtonRow row = make_button_row({"&Done", "&Cancel", "&Print", "&Help"}, 5, content);
    layout->addWidget(row.frame);
    set_content(content);
    explain_status_bar(18);
    if (prep.Data_View == DataView::Scenario) show_status(to_qt(prep.status));
    if (prep.Data_View == DataView::Results)
        show_status(to_qt(results_status(session().basin, session().run)));
    make_menus();
    for (QPushButton* button : row.buttons) {
        button->setAutoDefault(false);
        // Intended: any button disables the Edit menu of the main window.
        connect(button, &QPushButton::clicked, this, [this] { daily_editor_button_was_pressed(session()); });
    }
    set_first_focus(grid_);
    setTabOrder(zone_, grid_);
    setTabOrder(grid_, row.buttons[0]);
    set_default_button(row.buttons[0]);
    close_on_escape();
    connect(row.buttons[0], &QPushButton::clicked, this, &frmData::done);
    connect(row.buttons[1], &QPushButton::clicked, this, &frmData::cancel);
    connect(row.buttons[2], &QPushButton::clicked, this, &frmData::print);
    connect(row.buttons[3], &QPushButton::clicked, this, &frmData::help);
    add_key(*this, QKeySequence(Qt::CTRL | Qt::Key_P), *row.buttons[2]);
    add_key(*this, Qt::Key_F1, *row.buttons[3]);
    connect(zone_, &QSpinBox::valueChanged, this, &frmData::show_zone);
    connect(days_, &GridModel::refused, this, [this] { show_store_error(); });
    connect(grid_, &GridView::pasted, this, [this] { show_store_error(); });
    (new GridStatus(statusBar()))->watch(grid_);
    add_undo();
    new DailyMoves(*this, *grid_, *days_, session().dialogs);
    columns_ = new DailyColumns(*this, *grid_, *days_, session().settings, settings_name(prep.Data_View),
                                prep.column_widths[static_cast<int>(prep.Data_View)]);
    resize(980, 680);
}

frmData::~frmData() {
    session().prep.note_typed = nullptr;
    days_->show(nullptr);
}

QWidget* frmData::make_head() {
    auto* frame = new QWidget(this);
    auto* layout = new QHBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    zone_frame_ = new QGroupBox(frame);
    zone_frame_->setObjectName(QStringLiteral("Frame1"));
    set_help(zone_frame_, 2);
    zone_ = make_zone_box(session().basin.ZoneCount, 1, zone_frame_);
    (new QHBoxLayout(zone_frame_))->addWidget(zone_);
    auto* names = new QVBoxLayout;
    auto* basin = make_label(QStringLiteral("Label1(0)"),
                             QStringLiteral("Basin Name:  ") + to_qt(session().basin.basin_name), 3, frame);
    auto* simulation = make_label(QStringLiteral("Label1(1)"),
                                  to_qt(daily_caption(session().prep, session().basin)), 4, frame);
    for (QLabel* label : {basin, simulation}) {
        label->setTextFormat(Qt::PlainText);
        names->addWidget(label);
    }
    layout->addWidget(zone_frame_);
    layout->addLayout(names, 1);
    return frame;
}

void frmData::make_menus() {
    QMenu* edit = menuBar()->addMenu(QStringLiteral("&Edit"));
    edit->setObjectName(QStringLiteral("mnuEdit"));
    const auto add = [this](QMenu* menu, const char* name, const char* caption, int help, auto act) {
        QAction* action = menu->addAction(QString::fromUtf8(caption), this, act);
        action->setObjectName(QString::fromUtf8(name));
        action->setProperty(k_help_line, help);
        return action;
    };
    const bool open = !session().prep.Edit_Locked;
    add(edit, "mnuEditItm(0)", "&Cut", 9, [this] { grid_->cut(); })->setEnabled(open);
    add(edit, "mnuEditItm(1)", "C&opy", 10, [this] { grid_->copy(); });
    edit->addSeparator();
    add(edit, "mnuEditItm(3)", "&Paste", 11, [this] { grid_->paste(); })->setEnabled(open);
    edit->addSeparator();
    add(edit, "mnuEditItm(5)", "Prin&t", 12, [this] { print(); });
    edit->addSeparator();
    QMenu* days = edit->addMenu(QStringLiteral("&Edit multiple days"));
    days->menuAction()->setObjectName(QStringLiteral("mnuEditItm(7)"));
    days->menuAction()->setProperty(k_help_line, 13);
    days->setEnabled(open);
    add(days, "mnuEditItmAct(0)", "&Add to each day", 14, [this] { mass_edit(MassEdit::Add); });
    add(days, "mnuEditItmAct(1)", "Multiply each day", 15, [this] { mass_edit(MassEdit::Multiply); });
    edit->addSeparator();
    add(edit, "mnuEditItm(9)", "&Switch Scroll Style", 16,
        [this] { grid_->set_track_scrolling(!grid_->track_scrolling()); });
}

bool frmData::open() {
    const PrepState& prep = session().prep;
    try {
        editor_ = std::make_unique<DailyEditor>(session().basin.Work_File, prep.Data_View, prep.query,
                                                &session().prep.daily_edits);
    } catch (const StoreError&) {
        session().dialogs.stop("Data table corrupt!");
        return false;
    }
    if (editor_->rows() == 0) {
        session().dialogs.stop(
            "Simulation results table does not match the current simulation.  Please run the current "
            "simulation/climate change again.");
        return false;
    }
    session().prep.note_typed = [this] { days_->note_typed(grid_->typed_cell()); };
    show_zone(1);
    offer_computed_flow();
    columns_->open();
    grid_->setCurrentIndex(days_->index(0, 0));
    return true;
}

void frmData::go_to(const DailyPlace& place) {
    zone_->setValue(place.zone);
    int column = 0;
    const auto& columns = editor_->columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!same_name(columns[i].field, place.field)) continue;
        columns_->reveal(i);
        column = days_->column_of_field(i).value_or(0);
    }
    const auto days = days_->days();
    if (!days) return;
    std::optional<int> row;
    for (DayCount day = std::max(place.day, days->start); day <= days->end && !row; ++day)
        row = days_->row_of(day);
    const int last = days_->rowCount() - 1;
    grid_->setCurrentIndex(days_->index(row.value_or(last), column));
    // Days before and after it stand around it; where they are is known once the window is shown.
    QTimer::singleShot(
        0, grid_, [this] { grid_->scrollTo(grid_->currentIndex(), QAbstractItemView::PositionAtCenter); });
}

/// Shows why the store refused a typed or pasted value, if it did.
void frmData::show_store_error() {
    const std::string fault = days_->take_fault();
    if (!fault.empty()) session().dialogs.stop(fault);
}

/// Lets the computed discharge stand beside the measured one while it is that of the last run. The daily
/// variables read it only when it is first seen.
void frmData::offer_computed_flow() {
    const DataView view = session().prep.Data_View;
    const BasinState& basin = session().basin;
    if (!basin.Output_Valid || session().run.ClimateStep != 0) return;
    const auto& columns = editor_->columns();
    if (view == DataView::Results) {
        for (std::size_t column = 1; column < columns.size(); ++column) {
            if (!same_name(columns[column].field, "DailyQ")) continue;
            days_->offer({.beside = "ActualQ",
                          .units = basin.Units_Code,
                          .told_column = static_cast<int>(column),
                          .value = [this, column](std::size_t row) { return editor_->value(row, column); }});
            return;
        }
    }
    if (view != DataView::PhysicalData) return;
    const auto read = std::make_shared<std::optional<std::map<DayCount, double>>>();
    days_->offer({.beside = "Runoff",
                  .units = basin.Units_Code,
                  .told_column = k_computed_help - help_columns(view) - 1,
                  .value = [this, read](std::size_t row) -> double {
                      // The discharge of the basin stands with its first zone, as the measured one does.
                      if (editor_->zone() != 1) return k_missing;
                      if (!*read) *read = computed_flow(*editor_);
                      const auto day = (*read)->find(editor_->date(row));
                      return day == (*read)->end() ? k_missing : day->second;
                  }});
}

void frmData::show_zone(int zone) {
    grid_->commit_editor();
    if (zone != editor_->zone() && !read_zone(zone)) return;
    days_->show(editor_.get());
    zone_frame_->setTitle(QStringLiteral("Zone %1 of %2").arg(zone).arg(session().basin.ZoneCount));
}

/// Reads another zone; if it can't be read, the current zone and all changes stay.
bool frmData::read_zone(int zone) {
    const int shown = editor_->zone();
    try {
        editor_->show_zone(zone);
        return true;
    } catch (const StoreError&) {
        session().dialogs.stop("Data table corrupt!");
    }
    const QSignalBlocker quiet(zone_);
    zone_->setValue(shown);
    return false;
}

void frmData::mass_edit(MassEdit edit) {
    grid_->commit_editor();
    const CellRange block = grid_->block();
    if (block.rows() <= 0) return;
    Dialogs& user = session().dialogs;
    if (block.first_column != block.last_column) {
        user.stop("The mass edit function may only be applied to one variable/parameter at a time",
                  "Invalid selection");
        return;
    }
    const auto field = days_->field_column(block.first_column);
    if (!field) {
        user.stop("Mass edit failed.  Make sure you have correctly 'selected' a group of cells.",
                  "ERROR - The computed discharge can't be changed.");
        return;
    }
    const std::size_t column = *field;
    const auto answer = user.input(mass_edit_question(edit, editor_->columns().at(column).field));
    if (!answer || trimmed(*answer).empty()) return;
    const auto factor = exact_number(*answer);
    if (!factor) {
        user.stop("Non-numeric edit factors are not allowed", "Invalid (non-numeric) edit value");
        return;
    }
    try {
        editor_->mass_edit(edit, column, static_cast<std::size_t>(block.first_row),
                           static_cast<std::size_t>(block.last_row), static_cast<float>(*factor));
    } catch (const StoreError& error) {
        user.stop("Mass edit failed.  Make sure you have correctly 'selected' a group of cells.",
                  std::string{"ERROR - "} + error.what());
    }
    days_->changed_block(block.first_row, block.first_column, block.last_row, block.last_column);
}

void frmData::add_undo() {
    auto* keys =
        new UndoKeys(*this, {.can_undo = [this] { return editor_ != nullptr && editor_->can_undo(); },
                             .can_redo = [this] { return editor_ != nullptr && editor_->can_redo(); },
                             .undo = [this] { reverse(&DailyEditor::undo); },
                             .redo = [this] { reverse(&DailyEditor::redo); }});
    keys->watch(*grid_);
}

/// Undoes or redoes a change, and shows its zone and its cells.
void frmData::reverse(std::optional<DailyBlock> (DailyEditor::*act)()) {
    if (editor_ == nullptr) return;
    grid_->commit_editor();
    std::optional<DailyBlock> block;
    try {
        block = (editor_.get()->*act)();
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
    }
    const QSignalBlocker quiet(zone_);
    zone_->setValue(editor_->zone());
    show_zone(editor_->zone());
    if (!block) return QApplication::beep();
    reveal(*block);
}

/// Selects cells; a single column is shown again if it is hidden.
void frmData::reveal(const DailyBlock& block) {
    if (block.first_column == block.last_column) columns_->reveal(block.first_column);
    int first = days_->columnCount();
    int last = -1;
    for (std::size_t field = block.first_column; field <= block.last_column; ++field) {
        const auto column = days_->column_of_field(field);
        if (!column) continue;
        first = std::min(first, *column);
        last = std::max(last, *column);
    }
    if (last >= 0)
        grid_->show_block({static_cast<int>(block.first_row), first, static_cast<int>(block.last_row), last});
}

/// Asks before the results of an earlier run are discarded.
bool frmData::results_may_go() {
    if (!editor_->changed() || !session().basin.Output_Valid) return true;
    return session().dialogs.message(
               {.text = "After these changes to your database are recorded, "
                        "plots and reports using computed values\n"
                        "will be disabled pending another successful model 'run'.  Save changes?",
                .title =
                    "Database changes disable all model output (plots, reports) that utilize computed values",
                .buttons = Buttons::YesNo}) == Answer::Yes;
}

void frmData::done() {
    grid_->commit_editor();
    if (!results_may_go()) return cancel();
    const bool changed = editor_->changed();
    try {
        editor_->commit();
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
        return;
    }
    if (changed) {
        mark_output_invalid(session().basin);
        session().run.ClimateStep = 0;
        mark_input_changed(session().basin);
    }
    finished_ = true;
    close();
}

void frmData::cancel() {
    editor_->roll_back();
    // Restores the zone grid from when the window was opened.
    session().basin.zones = zone_grid_before_;
    finished_ = true;
    close();
}

void frmData::print() {
    grid_->commit_editor();
    const BasinState& basin = session().basin;
    PrintedSheet sheet = printed_table(*days_, selected_block(*grid_));
    sheet.header =
        grid_print_header(daily_values_title(basin.Current_Sim_Name), basin.basin_name, local_now());
    sheet.heading = mark_up_text(daily_caption(session().prep, basin)) + "/n" +
                    mark_up_text(from_qt(zone_frame_->title())) + "/n";
    sheet.footer = k_grid_print_footer;
    context().printing.print_sheets(this, std::span{&sheet, 1},
                                    {.name_suffix = daily_print_suffix(session().prep.Data_View),
                                     .question = large_print_question(*grid_)});
}

void frmData::help() {
    int topic = k_default_topic;
    if (session().prep.Data_View == DataView::Parameters) topic = k_parameters_topic;
    if (session().prep.Data_View == DataView::Results) topic = k_results_topic;
    session().desktop.show_help_topic(topic);
}

/// The window's own close control discards like Cancel, but asks first if there is something to lose.
bool frmData::may_discard() {
    if (finished_ || editor_ == nullptr) return true;
    grid_->commit_editor();
    if (!editor_->changed()) return true;
    return session().dialogs.message(
               {.text = "The values that you changed are lost if the window is closed.  Close it?",
                .title = from_qt(windowTitle()),
                .icon = Icon::Question,
                .buttons = Buttons::YesNo,
                .default_answer = Answer::No}) == Answer::Yes;
}

void frmData::closeEvent(QCloseEvent* event) {
    const bool may_close = !context().quick_help.is_on();
    if (may_close && !may_discard()) {
        event->ignore();
        return;
    }
    if (may_close && !finished_ && editor_ != nullptr) {
        editor_->roll_back();
        session().basin.zones = zone_grid_before_;
    }
    NivoraWindow::closeEvent(event);
}

}  // namespace nivora
