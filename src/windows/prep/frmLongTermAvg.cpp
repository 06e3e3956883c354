#include "windows/prep/frmLongTermAvg.h"

#include "base/calendar.h"
#include "reports/print_texts.h"
#include "store/basin_marks.h"
#include "widgets/controls.h"
#include "widgets/grid_sheet.h"
#include "widgets/grid_status.h"
#include "widgets/grid_view.h"
#include "widgets/printing.h"
#include "widgets/qt_text.h"
#include "widgets/undo_keys.h"
#include "widgets/window_keys.h"
#include "windows/prep/month_model.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSpinBox>
#include <QStatusBar>
#include <QVBoxLayout>

namespace nivora {
namespace {

constexpr int k_help_topic = 6;

}  // namespace

frmLongTermAvg::frmLongTermAvg(const WindowContext& context, QWidget* parent)
    : NivoraWindow(context, "frmLongTermAvg", WindowNumber::frmLongTermAvg, parent),
      months_(new MonthModel(session().basin.basin_units, this)),
      grid_(new GridView(months_, session().dialogs, this)),
      zone_frame_(new QGroupBox(this)) {
    setWindowTitle(QStringLiteral("Long-term Monthly Averages"));
    grid_->setObjectName(QStringLiteral("vaSpread1"));
    grid_->setAccessibleName(QStringLiteral("Monthly averages"));
    grid_->setProperty(k_help_columns, 2);
    grid_->verticalHeader()->hide();
    zone_frame_->setObjectName(QStringLiteral("Frame2"));
    set_help(zone_frame_, 2);
    zone_ = make_zone_box(session().basin.ZoneCount, 1, zone_frame_);
    auto* zone_layout = new QHBoxLayout(zone_frame_);
    zone_layout->addWidget(zone_);
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(zone_frame_, 0, Qt::AlignLeft);
    layout->addWidget(grid_, 1);
    const ButtonRow row =
        make_button_row({"&Accept", "&Cancel", "&Help", "Recalculate", "&Print"}, 8, content);
    layout->addWidget(row.frame);
    set_content(content);
    explain_status_bar(15);
    make_menus();
    set_first_focus(grid_);
    setTabOrder(zone_, grid_);
    setTabOrder(grid_, row.buttons[0]);
    set_default_button(row.buttons[0]);
    close_on_escape();
    connect(zone_, &QSpinBox::valueChanged, this, &frmLongTermAvg::Show_Zone_Months);
    connect(months_, &GridModel::refused, this, [this] { show_store_error(); });
    connect(grid_, &GridView::pasted, this, [this] { show_store_error(); });
    (new GridStatus(statusBar()))->watch(grid_);
    connect(row.buttons[0], &QPushButton::clicked, this, &frmLongTermAvg::accept);
    connect(row.buttons[1], &QPushButton::clicked, this, [this] {
        done_ = true;
        close();
    });
    connect(row.buttons[2], &QPushButton::clicked, this,
            [this] { session().desktop.show_help_topic(k_help_topic); });
    add_key(*this, Qt::Key_F1, *row.buttons[2]);
    add_key(*this, QKeySequence(Qt::CTRL | Qt::Key_P), *row.buttons[4]);
    connect(row.buttons[3], &QPushButton::clicked, this, &frmLongTermAvg::recalculate);
    connect(row.buttons[4], &QPushButton::clicked, this, &frmLongTermAvg::print);
    add_undo();
    resize(640, 560);
}

frmLongTermAvg::~frmLongTermAvg() { session().prep.note_typed = nullptr; }

void frmLongTermAvg::make_menus() {
    QMenu* edit = menuBar()->addMenu(QStringLiteral("&Edit"));
    int index = 0;
    for (const char* caption : {"&Copy", "&Print"}) {
        QAction* action = edit->addAction(QString::fromUtf8(caption));
        action->setObjectName(QStringLiteral("mnuEditItm(%1)").arg(index));
        action->setProperty(k_help_line, 13 + index);
        if (index == 0) connect(action, &QAction::triggered, this, [this] { grid_->copy(); });
        if (index == 1) connect(action, &QAction::triggered, this, &frmLongTermAvg::print);
        ++index;
    }
}

bool frmLongTermAvg::open() {
    try {
        averages_ = std::make_unique<MonthlyAverages>(session().basin.Work_File, session().basin.ZoneCount,
                                                      &session().prep.daily_edits);
        if (!averages_->has_physical_data()) show_status(QStringLiteral("Click 'Recalculate' button"));
    } catch (const StoreError&) {
        session().dialogs.stop("Missing invalid BasinAverages table");
        return false;
    }
    session().prep.note_typed = [this] { months_->note_typed(grid_->typed_cell()); };
    Show_Zone_Months(1);
    grid_->fit_columns();
    return true;
}

void frmLongTermAvg::Show_Zone_Months(int zone) {
    grid_->commit_editor();
    zone_frame_->setTitle(QStringLiteral("Zone %1 of %2").arg(zone).arg(averages_->zones()));
    months_->show_zone(averages_.get(), zone);
}

/// Shows why the store refused a typed or pasted value, if it did.
void frmLongTermAvg::show_store_error() {
    const std::string fault = months_->take_fault();
    if (!fault.empty()) session().dialogs.stop(fault);
}

void frmLongTermAvg::recalculate() {
    try {
        if (!averages_->recalculate()) {
            session().dialogs.stop(
                "There are no physical data (temperature and precipitation) present in the current database!",
                "No physical data");
            return;
        }
    } catch (const StoreError&) {
        session().dialogs.message({.text = "Error accessing the BasinAverages table for this basin"});
        return;
    }
    Show_Zone_Months(zone_->value());
    grid_->fit_columns();
    mark_input_changed(session().basin);
}

void frmLongTermAvg::add_undo() {
    auto* keys =
        new UndoKeys(*this, {.can_undo = [this] { return averages_ != nullptr && averages_->can_undo(); },
                             .can_redo = [this] { return averages_ != nullptr && averages_->can_redo(); },
                             .undo = [this] { reverse(&MonthlyAverages::undo); },
                             .redo = [this] { reverse(&MonthlyAverages::redo); }});
    keys->watch(*grid_);
}

/// Undoes or redoes a change, and shows its zone.
void frmLongTermAvg::reverse(std::optional<int> (MonthlyAverages::*act)()) {
    if (averages_ == nullptr) return;
    grid_->commit_editor();
    try {
        const auto zone = (averages_.get()->*act)();
        if (!zone) return QApplication::beep();
        zone_->setValue(*zone);
        Show_Zone_Months(*zone);
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
    }
}

void frmLongTermAvg::accept() {
    grid_->commit_editor();
    try {
        averages_->commit();
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
        return;
    }
    if (averages_->has_set_values()) mark_input_changed(session().basin);
    mark_output_invalid(session().basin);
    done_ = true;
    close();
}

void frmLongTermAvg::print() {
    grid_->commit_editor();
    PrintedSheet sheet = sheet_of(*grid_, selected_block(*grid_));
    sheet.header = grid_print_header(k_monthly_averages_title, session().basin.basin_name, local_now());
    sheet.heading = mark_up_text(from_qt(zone_frame_->title())) + "/n";
    sheet.footer = k_grid_print_footer;
    context().printing.print_sheets(this, std::span{&sheet, 1}, {.question = large_print_question(*grid_)});
}

/// The window's own close control discards like Cancel, but asks first if there is something to lose.
bool frmLongTermAvg::may_discard() {
    if (done_ || averages_ == nullptr || !averages_->has_set_values()) return true;
    return session().dialogs.message(
               {.text = "The values that you typed are lost if the window is closed.  Close it?",
                .title = "Long-term Monthly Averages",
                .icon = Icon::Question,
                .buttons = Buttons::YesNo,
                .default_answer = Answer::No}) == Answer::Yes;
}

void frmLongTermAvg::closeEvent(QCloseEvent* event) {
    if (!context().quick_help.is_on() && !may_discard()) {
        event->ignore();
        return;
    }
    NivoraWindow::closeEvent(event);
}

}  // namespace nivora
