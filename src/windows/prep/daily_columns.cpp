#include "windows/prep/daily_columns.h"

#include "session/settings.h"
#include "widgets/frozen_column.h"
#include "widgets/grid_menu.h"
#include "widgets/grid_view.h"
#include "widgets/nivora_window.h"
#include "widgets/qt_text.h"
#include "widgets/window_keys.h"
#include "windows/prep/daily_model.h"

#include <QAction>
#include <QHeaderView>
#include <QMenu>
#include <QPoint>
#include <QScrollBar>
#include <algorithm>
#include <utility>

namespace nivora {
namespace {

QKeySequence list_key() { return Qt::CTRL | Qt::Key_L; }
QKeySequence hide_key() { return Qt::CTRL | Qt::Key_0; }
QKeySequence left_key() { return Qt::ALT | Qt::Key_Left; }
QKeySequence right_key() { return Qt::ALT | Qt::Key_Right; }

}  // namespace

DailyColumns::DailyColumns(NivoraWindow& window, GridView& grid, DailyModel& days, Settings& settings,
                           std::string view, std::vector<int>& widths)
    : QObject(&window),
      grid_(grid),
      days_(days),
      settings_(settings),
      view_(std::move(view)),
      widths_(widths) {
    connect(new_window_key(window, list_key()), &QAction::triggered, this,
            &DailyColumns::show_menu_of_cursor);
    connect(new_window_key(window, hide_key()), &QAction::triggered, this,
            [this] { change(&DailyColumns::hide); });
    connect(new_window_key(window, left_key()), &QAction::triggered, this,
            [this] { change(&DailyColumns::move_left); });
    connect(new_window_key(window, right_key()), &QAction::triggered, this,
            [this] { change(&DailyColumns::move_right); });
    connect(&grid, &GridView::menu_asked, this, [this](QMenu* menu) {
        QMenu* columns = menu->addMenu(QStringLiteral("C&olumns"));
        columns->menuAction()->setObjectName(QStringLiteral("gridColumns"));
        fill_menu(*columns, grid_.currentIndex().column());
    });
    std::vector<QHeaderView*> headers{grid.horizontalHeader()};
    if (const auto* frozen = grid.findChild<FrozenColumn*>()) headers.push_back(frozen->horizontalHeader());
    for (QHeaderView* header : headers) {
        header->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(header, &QWidget::customContextMenuRequested, this, [this, header](const QPoint& at) {
            show_menu(header->logicalIndexAt(at), header->viewport()->mapToGlobal(at));
        });
    }
}

void DailyColumns::open() {
    const auto kept = settings_.columns.find(view_);
    layout_ = ColumnLayout(days_.offered(), kept == settings_.columns.end() ? std::string{} : kept->second);
    if (widths_.size() != days_.offered().size()) widths_.assign(days_.offered().size(), 0);
    days_.arrange(layout_.shown());
    fit();
}

void DailyColumns::reveal(std::size_t field_column) {
    const std::size_t column = days_.offered_field(field_column);
    if (layout_.is_shown(column)) return;
    layout_.show(column, true);
    apply(column);
}

/// The columns that are seen for the first time are measured with all others, whose widths stay.
void DailyColumns::fit() {
    const auto seen = layout_.shown();
    const auto is_measured = [this](std::size_t column) { return widths_[column] > 0; };
    if (!std::all_of(seen.begin(), seen.end(), is_measured)) {
        std::vector<int> measured;
        grid_.fit_columns(measured);
        for (std::size_t at = 0; at < seen.size(); ++at) {
            if (!is_measured(seen[at])) widths_[seen[at]] = measured[at];
        }
    }
    std::vector<int> widths;
    widths.reserve(seen.size());
    for (const std::size_t column : seen) widths.push_back(widths_[column]);
    grid_.fit_columns(widths);
}

void DailyColumns::keep_widths() {
    for (int column = 0; column < days_.columnCount(); ++column)
        widths_.at(days_.offered_place(column)) = grid_.columnWidth(column);
}

/// Shows the layout, with the cursor in its row and in a column that is given or near its own.
void DailyColumns::apply(std::size_t active) {
    grid_.commit_editor();
    keep_widths();
    const QModelIndex cursor = grid_.currentIndex();
    const int row = std::max(0, cursor.row());
    const int former = std::max(0, cursor.column());
    const int across = grid_.horizontalScrollBar()->value();
    const int down = grid_.verticalScrollBar()->value();
    days_.arrange(layout_.shown());
    fit();
    const auto seen = layout_.shown();
    const auto found = std::find(seen.begin(), seen.end(), active);
    const int column = found == seen.end() ? std::min(former, days_.columnCount() - 1)
                                           : static_cast<int>(found - seen.begin());
    grid_.horizontalScrollBar()->setValue(across);
    grid_.verticalScrollBar()->setValue(down);
    grid_.go_to(days_.index(row, column));
    settings_.columns[view_] = layout_.text();
}

void DailyColumns::change(void (DailyColumns::*act)(std::size_t)) {
    const QModelIndex cursor = grid_.currentIndex();
    if (!cursor.isValid()) return;
    const std::size_t column = days_.offered_place(cursor.column());
    (this->*act)(column);
    apply(column);
}

void DailyColumns::hide(std::size_t column) { layout_.show(column, false); }

void DailyColumns::show_menu_of_cursor() {
    const QModelIndex cursor = grid_.currentIndex();
    if (!cursor.isValid()) return;
    grid_.scrollTo(cursor);
    const QPoint below = grid_.visualRect(cursor).bottomLeft();
    show_menu(cursor.column(),
              grid_.viewport()->mapToGlobal(QPoint(std::max(0, below.x()), std::max(0, below.y()))));
}

void DailyColumns::show_menu(int column, const QPoint& at) {
    grid_.commit_editor();
    auto* menu = new QMenu(&grid_);
    menu->setObjectName(QStringLiteral("mnuColumns"));
    menu->setAccessibleName(QStringLiteral("Columns of the table"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    fill_menu(*menu, column);
    menu->popup(at);
}

/// @param column of the model; -1 if none is meant
void DailyColumns::fill_menu(QMenu& menu, int column) {
    const bool meant = column >= 0 && column < days_.columnCount();
    const std::size_t place = meant ? days_.offered_place(column) : 0;
    const QString name = meant ? days_.header(column) : QStringLiteral("column");
    const auto add = [&](const char* object, const QString& caption, const QKeySequence& keys, bool enabled,
                         auto act) {
        QAction* entry = add_grid_entry(menu, object, caption.toUtf8().constData(), keys, enabled, [=, this] {
            act();
            apply(place);
        });
        return entry;
    };
    add("columnHide", QStringLiteral("&Hide %1").arg(name), hide_key(), meant && layout_.can_hide(place),
        [this, place] { hide(place); });
    add("columnLeft", QStringLiteral("Move %1 to the &left").arg(name), left_key(),
        meant && layout_.can_move(place, false), [this, place] { move_left(place); });
    add("columnRight", QStringLiteral("Move %1 to the &right").arg(name), right_key(),
        meant && layout_.can_move(place, true), [this, place] { move_right(place); });
    const auto all = layout_.all();
    const bool any_hidden = std::any_of(all.begin(), all.end(),
                                        [this](std::size_t offered) { return !layout_.is_shown(offered); });
    add("columnsAll", QStringLiteral("Show &all columns"), {}, any_hidden, [this] { layout_.show_all(); });
    add("columnsOriginal", QStringLiteral("&Original columns"), {}, !layout_.is_original(),
        [this] { layout_.restore(); });
    menu.addSeparator();
    for (const std::size_t offered : all) {
        auto* entry = menu.addAction(days_.offered_header(offered));
        entry->setObjectName(QStringLiteral("column(%1)").arg(offered));
        entry->setCheckable(true);
        entry->setChecked(layout_.is_shown(offered));
        entry->setEnabled(!layout_.is_shown(offered) || layout_.can_hide(offered));
        connect(entry, &QAction::triggered, this, [this, offered](bool shown) {
            layout_.show(offered, shown);
            apply(offered);
        });
    }
}

}  // namespace nivora
