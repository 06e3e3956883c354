#include "windows/climate/frmCC.h"

#include "climate/scenario_print.h"
#include "prep/daily_editor.h"
#include "session/main_window_rules.h"
#include "store/basin_marks.h"
#include "store/table_io.h"
#include "store/transactions.h"
#include "widgets/controls.h"
#include "widgets/edit_target.h"
#include "widgets/grid_status.h"
#include "widgets/grid_view.h"
#include "widgets/printing.h"
#include "widgets/qt_text.h"
#include "widgets/undo_keys.h"
#include "widgets/window_keys.h"
#include "windows/climate/scenario_model.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

namespace nivora {
namespace {

constexpr int k_help_topic = 4;
constexpr int k_new = 0;
constexpr int k_delete = 1;
constexpr int k_print = 2;
constexpr int k_view = 3;

}  // namespace

frmCC::frmCC(const WindowContext& context, QWidget* parent)
    : NivoraWindow(context, "frmCC", WindowNumber::frmCC, parent) {
    setWindowTitle(QStringLiteral("Climate Change Scenario Definition for Simulation: ") +
                   to_qt(session().basin.Current_Sim_Name));
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(make_head());
    grid_place_ = new QWidget(content);
    new QVBoxLayout(grid_place_);
    grid_place_->layout()->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(grid_place_, 1);
    const ButtonRow row = make_button_row({"&Done", "&Cancel", "&Help"}, 16, content);
    layout->addWidget(row.frame);
    set_content(content);
    explain_status_bar(24);
    make_menus();
    for (QPushButton* button : row.buttons) button->setAutoDefault(false);
    set_default_button(row.buttons[0]);
    close_on_escape();
    leave_unchecked(row.buttons[1]);
    foot_ = row.buttons;
    connect(row.buttons[0], &QPushButton::clicked, this, &frmCC::done);
    connect(row.buttons[1], &QPushButton::clicked, this, [this] {
        finished_ = true;
        close();
    });
    connect(row.buttons[2], &QPushButton::clicked, this,
            [this] { session().desktop.show_help_topic(k_help_topic); });
    add_key(*this, Qt::Key_F1, *row.buttons[2]);
    resize(860, 640);
}

/// Hides the window while the sheet and the scenarios, which the grid reads, still exist.
frmCC::~frmCC() {
    finished_ = true;
    hide();
}

QWidget* frmCC::make_head() {
    auto* frame = new QGroupBox(QStringLiteral("Existing Scenarios for ") +
                                    to_qt(doubled_ampersands(session().basin.Current_Sim_Name)),
                                this);
    frame->setObjectName(QStringLiteral("Frame1"));
    set_help(frame, 8);
    auto* layout = new QHBoxLayout(frame);
    auto* form = new QFormLayout;
    chooser_ = new QComboBox(frame);
    chooser_->setObjectName(QStringLiteral("DBCombo1"));
    set_help(chooser_, 7);
    form->addRow(QStringLiteral("Existing Scenarios:"), chooser_);
    auto* dates = make_label(QStringLiteral("txtSimDate"), {}, 10, frame);
    const BasinState& basin = session().basin;
    if (basin.Current_Start && basin.Current_End) {
        dates->setText(
            to_qt(long_date_text(*basin.Current_Start) + " - " + long_date_text(*basin.Current_End)));
    }
    form->addRow(QStringLiteral("Simulation Dates:"), dates);
    winter_end_ = make_date_box(QStringLiteral("MaskEdBox2"), 9, frame);
    winter_end_->installEventFilter(this);
    form->addRow(QStringLiteral("Winter End Date:"), winter_end_);
    comments_ = new QPlainTextEdit(frame);
    comments_->setObjectName(QStringLiteral("txtComments"));
    comments_->setAccessibleName(QStringLiteral("Comments"));
    comments_->setToolTip(QStringLiteral("Type comments about the climate scenario here."));
    comments_->setTabChangesFocus(true);
    comments_->setMaximumHeight(comments_->fontMetrics().lineSpacing() * 3 + 12);
    set_help(comments_, 11);
    form->addRow(QStringLiteral("Comments:"), comments_);
    for (auto [field, line] :
         {std::pair<QWidget*, int>{chooser_, 7}, {dates, 10}, {winter_end_, 9}, {comments_, 11}})
        set_help(form->labelForField(field), line);
    layout->addLayout(form, 1);
    layout->addWidget(make_side());
    connect(chooser_, &QComboBox::currentIndexChanged, this, [this](int at) {
        if (!filling_) show_scenario(at);
    });
    connect(comments_, &QPlainTextEdit::textChanged, this, &frmCC::store_comments);
    return frame;
}

QWidget* frmCC::make_side() {
    auto* frame = new QWidget(this);
    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    int index = 0;
    for (const char* caption : {"&New", "D&elete", "&Print", "&View Variables"}) {
        auto* button = new QPushButton(QString::fromUtf8(caption), frame);
        button->setObjectName(QStringLiteral("Command2(%1)").arg(index));
        button->setAutoDefault(false);
        set_help(button, 12 + index);
        layout->addWidget(button);
        actions_.push_back(button);
        ++index;
    }
    layout->addStretch(1);
    connect(actions_[k_new], &QPushButton::clicked, this, &frmCC::add_scenario);
    connect(actions_[k_delete], &QPushButton::clicked, this, &frmCC::remove_scenario);
    connect(actions_[k_print], &QPushButton::clicked, this, &frmCC::print);
    add_key(*this, QKeySequence(Qt::CTRL | Qt::Key_P), *actions_[k_print]);
    connect(actions_[k_view], &QPushButton::clicked, this, &frmCC::view_variables);
    return frame;
}

void frmCC::make_menus() {
    QMenu* edit = menuBar()->addMenu(QStringLiteral("Ed&it"));
    auto* target = new EditTarget(this);
    const auto add = [&](int index, const char* caption, auto act) {
        QAction* action = edit->addAction(QString::fromUtf8(caption), target, act);
        action->setObjectName(QStringLiteral("mnuEdItm(%1)").arg(index));
        action->setProperty(k_help_line, 19 + index);
    };
    add(0, "Cu&t", &EditTarget::cut);
    add(1, "&Copy", &EditTarget::copy);
    add(2, "&Paste", &EditTarget::paste);
}

void frmCC::make_grid() {
    rows_ = new ScenarioModel(sheet_, session().basin.ZoneCount, this);
    grid_ = new GridView(rows_, session().dialogs, this);
    grid_->setObjectName(QStringLiteral("vaSpread1"));
    grid_->setAccessibleName(QStringLiteral("Rows of the scenario"));
    grid_->setProperty(k_help_columns, 0);
    grid_->set_clears_cells(false);
    set_help(grid_, 25);
    grid_place_->layout()->addWidget(grid_);
    setTabOrder(actions_.back(), grid_);
    setTabOrder(grid_, foot_.front());
    for (std::size_t i = 1; i < foot_.size(); ++i) setTabOrder(foot_[i - 1], foot_[i]);
    connect(rows_, &GridModel::edited, this, [this] { mark_input_edited(session().basin); });
    connect(rows_, &ScenarioModel::change_begins, this, [this](bool joined) {
        if (const Scenario* scenario = current()) history_.begin(*scenario, session().basin, joined);
    });
    connect(rows_, &ScenarioModel::change_ends, this, [this] {
        if (const Scenario* scenario = current()) history_.end(*scenario, session().basin);
    });
    add_undo();
    connect(grid_, &GridView::left_cell, this,
            [this](int row, int column) { rows_->leave(row, column, grid_->currentIndex().row() != row); });
    (new GridStatus(statusBar()))->watch(grid_);
}

void frmCC::add_undo() {
    auto* keys = new UndoKeys(*this, {.can_undo = [this] { return history_.can_undo(); },
                                      .can_redo = [this] { return history_.can_redo(); },
                                      .undo = [this] { reverse(false); },
                                      .redo = [this] { reverse(true); }});
    keys->watch(*grid_);
}

/// Undoes or redoes an edit of rows, and shows its scenario.
void frmCC::reverse(bool redo) {
    grid_->commit_editor();
    if (!commit_winter_end()) return;
    const bool edited = edited_ || history_.changed();
    rows_->show(nullptr);  // the rows may be stored elsewhere afterwards
    const auto reversed =
        redo ? history_.redo(scenarios_, session().basin) : history_.undo(scenarios_, session().basin);
    if (!reversed) {
        edited_ = edited;  // what was forgotten stays edited
        show_scenario(chooser_->currentIndex());
        return QApplication::beep();
    }
    chooser_->setCurrentIndex(static_cast<int>(reversed->scenario));
    show_scenario(chooser_->currentIndex());
    grid_->go_to(rows_->index(reversed->row, 0));
}

bool frmCC::open() {
    const auto sheet = load_scenario_sheet(context().program_folder, session().dialogs);
    if (!sheet) return false;
    sheet_ = *sheet;
    make_grid();
    try {
        read_scenarios({});
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
        return false;
    }
    if (scenarios_.empty()) add_scenario();
    std::vector<int> widths{190, 100, 100, 180, 110, 70};
    grid_->fit_columns(widths);
    return true;
}

void frmCC::read_scenarios(const std::string& shown) {
    std::vector<Scenario> found;
    {
        BasinDatabase database{session().basin.Work_File, Access::ReadWrite};
        const auto rows = [&] {
            return read_table<ScenarioIndexRow>(database, template_table(k_scenario_index)).size();
        };
        const std::size_t before = rows();
        found = open_scenarios(database, session().basin.Current_Sim_Name, session().dialogs);
        // References to missing tables were removed from the file.
        if (rows() != before) mark_basin_changed(session().basin);
    }
    // Unsaved input in the remaining scenarios still waits for Done.
    for (Scenario& scenario : found) {
        const auto typed = std::find_if(scenarios_.begin(), scenarios_.end(), [&](const Scenario& before) {
            return before.index.scenario == scenario.index.scenario;
        });
        const bool known = typed != scenarios_.end();
        const bool had_fault = known && !typed->fault.empty();
        if (!scenario.fault.empty()) {
            if (!had_fault) session().dialogs.message(unreadable_scenario_message(scenario));
        } else if (known && !had_fault) {
            scenario = *typed;
        }
    }
    rows_->show(nullptr);
    scenarios_ = std::move(found);
    filling_ = true;
    chooser_->clear();
    int at = 0;
    for (std::size_t i = 0; i < scenarios_.size(); ++i) {
        chooser_->addItem(to_qt(scenarios_[i].index.scenario));
        if (scenarios_[i].index.scenario == shown) at = static_cast<int>(i);
    }
    filling_ = false;
    chooser_->setCurrentIndex(scenarios_.empty() ? -1 : at);
    show_scenario(chooser_->currentIndex());
}

Scenario* frmCC::current() {
    const int at = chooser_->currentIndex();
    return at < 0 || static_cast<std::size_t>(at) >= scenarios_.size()
               ? nullptr
               : &scenarios_[static_cast<std::size_t>(at)];
}

void frmCC::show_scenario(int at) {
    if (grid_ != nullptr) grid_->commit_editor();
    filling_ = true;
    Scenario* scenario = at < 0 ? nullptr : current();
    const bool any = scenario != nullptr;
    rows_->show(any && scenario->fault.empty() ? &scenario->rows : nullptr);
    show_winter_end();
    comments_->setPlainText(any ? to_qt(scenario->index.comments.value_or("")) : QString{});
    const bool readable = any && scenario->fault.empty();
    for (QWidget* part : std::initializer_list<QWidget*>{winter_end_, comments_}) part->setEnabled(readable);
    for (const int action : {k_delete, k_view})
        actions_.at(static_cast<std::size_t>(action))->setEnabled(any);
    actions_[k_print]->setEnabled(readable);
    filling_ = false;
}

void frmCC::store_comments() {
    Scenario* scenario = current();
    if (filling_ || scenario == nullptr) return;
    scenario->index.comments = from_qt(comments_->toPlainText());
    mark_changed();
}

/// Stores a winter end date that is one of the simulation's days. @return otherwise what is wrong with it
std::optional<Message> frmCC::store_winter_end() {
    Scenario* scenario = current();
    if (filling_ || finished_ || scenario == nullptr) return std::nullopt;
    const std::string text = from_qt(winter_end_->text());
    if (auto problem = winter_end_problem(session().basin, text)) return problem;
    const auto date = read_date(text);
    // A default with half a day is kept if its day is unchanged.
    const auto& kept = scenario->index.winter_end_date;
    if (kept && whole_day(*kept) == *date) return std::nullopt;
    scenario->index.winter_end_date = static_cast<double>(*date);
    mark_changed();
    return std::nullopt;
}

/// Shows the stored winter end date of the current scenario.
void frmCC::show_winter_end() {
    const Scenario* scenario = current();
    const auto kept = scenario != nullptr ? scenario->index.winter_end_date : std::nullopt;
    winter_end_->setText(kept ? to_qt(long_date_text(whole_day(*kept))) : QString{});
}

/// Stores the date, or shows what is wrong with it and restores the old one. @return whether it was stored
bool frmCC::winter_end_left() {
    if (showing_problem_) return true;
    const auto problem = store_winter_end();
    if (!problem) return true;
    showing_problem_ = true;
    refuse(winter_end_, *problem);
    show_winter_end();
    QTimer::singleShot(0, winter_end_, [this] {
        showing_problem_ = false;
        winter_end_->setFocus();
    });
    return false;
}

/// Stores the date that is being typed, or shows what is wrong with it unless that was already shown. An
/// unchanged date is not checked. @return whether the work may continue
bool frmCC::commit_winter_end() {
    if (showing_problem_) return false;
    return !winter_end_->isModified() || current() == nullptr || winter_end_left();
}

bool frmCC::eventFilter(QObject* watched, QEvent* event) {
    if (watched == winter_end_ && leaves_box(event)) {
        winter_end_left();
    } else if (watched == winter_end_ && event->type() == QEvent::FocusOut && !context().quick_help.is_on()) {
        static_cast<void>(
            store_winter_end());  // before Cancel a valid date is stored, but no message is shown
    }
    return NivoraWindow::eventFilter(watched, event);
}

void frmCC::mark_changed() {
    edited_ = true;
    mark_input_edited(session().basin);
}

bool frmCC::store_all() {
    try {
        BasinDatabase database{session().basin.Work_File, Access::ReadWrite};
        HeldTransaction transaction{database};
        for (Scenario& scenario : scenarios_) {
            if (!scenario.fault.empty()) continue;
            std::erase_if(scenario.rows, is_blank);
            for (ScenarioRow& row : scenario.rows) leave_scenario_row(row);
            store_scenario(database, scenario);
        }
        transaction.commit();
        return true;
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
        return false;
    }
}

void frmCC::add_scenario() {
    if (!commit_winter_end()) return;
    try {
        std::optional<std::string> name;
        {
            BasinDatabase database{session().basin.Work_File, Access::ReadWrite};
            name = new_scenario(database, session().basin, session().dialogs);
        }
        if (!name) return;
        read_scenarios(*name);
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
        return;
    }
    mark_input_changed(session().basin);
}

void frmCC::remove_scenario() {
    const Scenario* scenario = current();
    if (scenario == nullptr) return;
    try {
        bool gone = false;
        {
            BasinDatabase database{session().basin.Work_File, Access::ReadWrite};
            gone = delete_scenario(database, session().basin.Current_Sim_Name, scenario->index.scenario,
                                   session().dialogs);
        }
        if (!gone) return;
        read_scenarios({});
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
        return;
    }
    mark_input_changed(session().basin);
}

void frmCC::view_variables() {
    const BasinState& basin = session().basin;
    if (!basin.Current_Start || !basin.Current_End) return;
    PrepState& prep = session().prep;
    prep.Data_View = DataView::Scenario;
    prep.query = {.table = basin.Current_Sim_Name,
                  .fields = daily_fields(DataView::Scenario),
                  .period = Period{*basin.Current_Start, *basin.Current_End}};
    prep.window_title = "Climate Change Scenario " + from_qt(chooser_->currentText()) + " " +
                        long_date_text(*basin.Current_Start) + " to " + long_date_text(*basin.Current_End);
    prep.caption_prefix = "Variables and parameters of simulation ";
    prep.status = "Variable/parameter values adjusted for climate change";
    prep.Edit_Locked = true;
    session().desktop.open_daily_editor();
    prep.Edit_Locked = false;
}

/// Prints the scenario as it is typed, stored or not.
void frmCC::print() {
    grid_->commit_editor();
    if (!commit_winter_end() || current() == nullptr) return;
    Scenario scenario = *current();
    std::erase_if(scenario.rows, is_blank);
    const PrintedSheet sheet = printed_scenario(scenario, session().basin, local_now());
    context().printing.print_sheets(this, std::span{&sheet, 1});
}

void frmCC::done() {
    grid_->commit_editor();
    if (!commit_winter_end() || !store_all()) return;
    mark_basin_changed(session().basin);
    finished_ = true;
    close();
}

/// The window's own close control discards like Cancel, but asks first if there is something to lose.
bool frmCC::may_discard() {
    if (finished_) return true;
    const bool half_typed = store_winter_end() && winter_end_->isModified();
    if (!edited_ && !history_.changed() && !half_typed) return true;
    return session().dialogs.message(
               {.text = "What you changed in the scenarios is lost if the window is closed.  Close it?",
                .title = "Climate Change Scenario Definition",
                .icon = Icon::Question,
                .buttons = Buttons::YesNo,
                .default_answer = Answer::No}) == Answer::Yes;
}

void frmCC::closeEvent(QCloseEvent* event) {
    if (!context().quick_help.is_on() && !may_discard()) {
        event->ignore();
        return;
    }
    finished_ = !context().quick_help.is_on();
    NivoraWindow::closeEvent(event);
}

}  // namespace nivora
