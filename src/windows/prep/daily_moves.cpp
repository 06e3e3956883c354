#include "windows/prep/daily_moves.h"

#include "base/calendar.h"
#include "base/entry_refusal.h"
#include "base/text.h"
#include "widgets/grid_find.h"
#include "widgets/grid_menu.h"
#include "widgets/grid_view.h"
#include "widgets/nivora_window.h"
#include "widgets/qt_text.h"
#include "widgets/window_keys.h"
#include "windows/prep/daily_model.h"

#include <QAction>
#include <QMenu>
#include <QStatusBar>
#include <algorithm>

namespace nivora {
namespace {

constexpr int k_shown_milliseconds = 10'000;
constexpr const char* k_date_title = "Go to date";

QKeySequence date_key() { return Qt::CTRL | Qt::Key_G; }
QKeySequence next_key() { return Qt::Key_F3; }
QKeySequence previous_key() { return Qt::SHIFT | Qt::Key_F3; }
QKeySequence next_changed_key() { return Qt::CTRL | Qt::Key_F3; }
QKeySequence previous_changed_key() { return Qt::CTRL | Qt::SHIFT | Qt::Key_F3; }

/// Why the table has no such day.
std::string outside_text(DayCount date, int zone, const Period& days) {
    const bool in_a_gap = date > days.start && date < days.end;
    return "Zone " + std::to_string(zone) + " has no row of " + long_date_text(date) +
           " in this table. Its days are " + long_date_text(days.start) + " to " + long_date_text(days.end) +
           (in_a_gap ? ", with gaps." : ".");
}

}  // namespace

DailyMoves::DailyMoves(NivoraWindow& window, GridView& grid, const DailyModel& days, Dialogs& user)
    : QObject(&window), window_(window), grid_(grid), days_(days), user_(user) {
    connect(new_window_key(window, date_key()), &QAction::triggered, this, &DailyMoves::go_to_date);
    connect(new_window_key(window, next_key()), &QAction::triggered, this, [this] { go_to_missing(true); });
    connect(new_window_key(window, previous_key()), &QAction::triggered, this,
            [this] { go_to_missing(false); });
    connect(new_window_key(window, next_changed_key()), &QAction::triggered, this,
            [this] { go_to_changed(true); });
    connect(new_window_key(window, previous_changed_key()), &QAction::triggered, this,
            [this] { go_to_changed(false); });
    connect(&grid, &GridView::menu_asked, this, &DailyMoves::add_entries);
}

void DailyMoves::add_entries(QMenu* menu) {
    const bool numbers = grid_.currentIndex().column() > 0;
    menu->addSeparator();
    add_grid_entry(*menu, "gridGoToDate", "&Go to date...", date_key(), days_.days().has_value(),
                   [this] { go_to_date(); });
    add_grid_entry(*menu, "gridNextMissing", "&Next missing value", next_key(), numbers,
                   [this] { go_to_missing(true); });
    add_grid_entry(*menu, "gridPreviousMissing", "P&revious missing value", previous_key(), numbers,
                   [this] { go_to_missing(false); });
    add_grid_entry(*menu, "gridNextChanged", "Ne&xt changed value", next_changed_key(),
                   days_.days().has_value(), [this] { go_to_changed(true); });
    add_grid_entry(*menu, "gridPreviousChanged", "Pre&vious changed value", previous_changed_key(),
                   days_.days().has_value(), [this] { go_to_changed(false); });
}

void DailyMoves::go_to_row(int row) {
    grid_.setCurrentIndex(days_.index(row, std::max(0, grid_.currentIndex().column())));
    grid_.setFocus();
}

void DailyMoves::go_to_date() {
    grid_.commit_editor();
    const auto days = days_.days();
    if (!days) return;
    const int active = std::max(0, grid_.currentIndex().row());
    const auto answer = user_.input({.prompt = "The day to go to, as mm/dd/yyyy or yyyy-mm-dd",
                                     .title = k_date_title,
                                     .proposed = from_qt(days_.text(active, 0))});
    if (!answer || trimmed(*answer).empty()) return;
    const auto date = read_date(*answer);
    if (!date) {
        user_.message({.text = "'" + *answer + "' is not accepted: " + date_refusal(*answer) + ".",
                       .title = k_date_title,
                       .icon = Icon::Warning});
        return;
    }
    if (const auto row = days_.row_of(*date)) return go_to_row(*row);
    user_.message(
        {.text = outside_text(*date, days_.zone(), *days), .title = k_date_title, .icon = Icon::Warning});
}

void DailyMoves::show(const QString& text) {
    if (text.isEmpty()) return window_.statusBar()->clearMessage();
    window_.statusBar()->showMessage(text, k_shown_milliseconds);
}

void DailyMoves::go_to_missing(bool forward) {
    grid_.commit_editor();
    const QModelIndex at = grid_.currentIndex();
    if (!at.isValid()) return;
    const QString column = QStringLiteral("%1, zone %2").arg(days_.header(at.column())).arg(days_.zone());
    const auto found = next_missing(days_, at.column(), at.row(), forward);
    if (!found) return show(column + QStringLiteral(": no value is missing."));
    go_to_row(found->row);
    if (found->row == at.row()) return show(column + QStringLiteral(": no other value is missing."));
    if (!found->wrapped) return show({});
    show(column + (forward ? QStringLiteral(": went on at the first day.")
                           : QStringLiteral(": went on at the last day.")));
}

void DailyMoves::go_to_changed(bool forward) {
    grid_.commit_editor();
    const QModelIndex at = grid_.currentIndex();
    if (!at.isValid()) return;
    const auto found = next_cell(days_, at.row(), at.column(), forward,
                                 [this](int row, int column) { return days_.changed(row, column); });
    const QString zone = QStringLiteral("Zone %1").arg(days_.zone());
    if (!found) return show(zone + QStringLiteral(": no value in sight has changed") + changed_elsewhere());
    grid_.go_to(days_.index(found->row, found->column));
    grid_.setFocus();
    if (found->row == at.row() && found->column == at.column())
        return show(zone + QStringLiteral(": no other value in sight has changed") + changed_elsewhere());
    if (!found->wrapped) return show({});
    show(zone + (forward ? QStringLiteral(": went on at the first day.")
                         : QStringLiteral(": went on at the last day.")));
}

/// Where else values have changed since the window was opened, as the end of a sentence.
QString DailyMoves::changed_elsewhere() const {
    QStringList places;
    if (const QStringList hidden = days_.changed_out_of_sight(); !hidden.isEmpty())
        places << QStringLiteral("in the hidden %1 %2")
                      .arg(hidden.size() == 1 ? QStringLiteral("column") : QStringLiteral("columns"),
                           hidden.join(QStringLiteral(", ")));
    QStringList zones;
    for (const int zone : days_.changed_zones()) {
        if (zone != days_.zone()) zones << QString::number(zone);
    }
    if (!zones.isEmpty()) places << QStringLiteral("in zone %1").arg(zones.join(QStringLiteral(", ")));
    if (places.isEmpty()) return QStringLiteral(" since the window was opened.");
    return QStringLiteral("; there are changes ") + places.join(QStringLiteral(" and ")) + QLatin1Char('.');
}

}  // namespace nivora
