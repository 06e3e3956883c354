#include "widgets/grid_view.h"

#include "widgets/frozen_column.h"
#include "widgets/grid_delegate.h"
#include "widgets/grid_menu.h"
#include "widgets/qt_text.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <utility>

namespace nivora {
namespace {

constexpr int k_cell_margin = 14;
constexpr int k_narrowest = 48;
constexpr int k_widest = 360;
constexpr int k_most_header_lines = 3;
constexpr const char* k_closed_editor = "closedEditor";
/// A short column is measured text by text, a long one by the longest text that its model names.
constexpr int k_rows_to_measure = 100;

/// The narrowest width at which a header needs no more than its lines.
int header_width(const QString& text, const QFontMetrics& metrics) {
    int width = 0;
    for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts))
        width = std::max(width, metrics.horizontalAdvance(word));
    const int tallest = metrics.lineSpacing() * k_most_header_lines;
    for (; width < k_widest; width += 4) {
        const QRect needed =
            metrics.boundingRect(QRect(0, 0, width, 10000), Qt::AlignCenter | Qt::TextWordWrap, text);
        if (needed.height() <= tallest && needed.width() <= width) break;
    }
    return width;
}

}  // namespace

GridView::GridView(GridModel* model, Dialogs& user, QWidget* parent)
    : QTableView(parent), cells_(model), user_(user) {
    setModel(model);
    setItemDelegate(new GridDelegate(this));
    setSelectionMode(QAbstractItemView::ContiguousSelection);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                    QAbstractItemView::AnyKeyPressed);
    setTabKeyNavigation(true);
    setWordWrap(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignCenter | Qt::Alignment(Qt::TextWordWrap));
    horizontalHeader()->setMinimumSectionSize(k_narrowest);
    horizontalHeader()->setHighlightSections(false);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().lineSpacing() + 8);
    connect(qApp, &QApplication::focusChanged, this, &GridView::focus_moved);
}

// A grid that is destroyed with the focus in it must not emit left_cell.
GridView::~GridView() { disconnect(qApp, nullptr, this, nullptr); }

CellRange GridView::block() const {
    const QItemSelection selection = selectionModel()->selection();
    if (!selection.isEmpty()) {
        const QItemSelectionRange& range = selection.first();
        return {range.top(), range.left(), range.bottom(), range.right()};
    }
    const QModelIndex active = currentIndex();
    if (!active.isValid()) return {};
    return {active.row(), active.column(), active.row(), active.column()};
}

CellBlock GridView::copied_block() const {
    const CellRange range = block();
    CellBlock copied;
    copied.reserve(static_cast<std::size_t>(std::max(0, range.rows())));
    for (int row = range.first_row; row <= range.last_row; ++row) {
        auto& texts = copied.emplace_back();
        for (int column = range.first_column; column <= range.last_column; ++column)
            texts.push_back(from_qt(cells_->whole_text(row, column)));
    }
    return copied;
}

void GridView::copy() const {
    const CellBlock copied = copied_block();
    if (!copied.empty()) QApplication::clipboard()->setText(to_qt(clipboard_text(copied)));
}

void GridView::copy_with_headers() const {
    CellBlock copied = copied_block();
    if (copied.empty()) return;
    std::vector<std::string> headers;
    const CellRange range = block();
    for (int column = range.first_column; column <= range.last_column; ++column)
        headers.push_back(from_qt(cells_->header(column).simplified()));
    copied.insert(copied.begin(), std::move(headers));
    QApplication::clipboard()->setText(to_qt(clipboard_text(copied)));
}

void GridView::go_to(const QModelIndex& cell) {
    const bool rows = selectionBehavior() == QAbstractItemView::SelectRows;
    selectionModel()->setCurrentIndex(cell,
                                      rows ? QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows
                                           : QItemSelectionModel::ClearAndSelect);
    scrollTo(cell);
}

void GridView::show_block(const CellRange& range) {
    const QModelIndex first = cells_->index(range.first_row, range.first_column);
    const QModelIndex last = cells_->index(range.last_row, range.last_column);
    if (!first.isValid() || !last.isValid()) return;
    go_to(first);
    if (selectionBehavior() == QAbstractItemView::SelectItems)
        selectionModel()->select(QItemSelection(first, last), QItemSelectionModel::ClearAndSelect);
}

bool GridView::can_cut() const { return !all_locked(block()); }

/// A block with dates may be pasted at a locked cell: it goes where its dates are.
bool GridView::can_paste() const {
    const CellRange range = block();
    if (range.rows() <= 0 || QApplication::clipboard()->text().isEmpty()) return false;
    return !all_locked({range.first_row, 0, range.first_row, cells_->columnCount() - 1});
}

void GridView::cut() {
    const CellRange range = block();
    if (range.rows() <= 0 || all_locked(range)) return;
    copy();
    cells_->begin_change();
    for (int row = range.first_row; row <= range.last_row; ++row) {
        for (int column = range.first_column; column <= range.last_column; ++column)
            static_cast<void>(cells_->take(row, column, cells_->cleared_text(row, column)));
    }
    cells_->changed_block(range.first_row, range.first_column, range.last_row, range.last_column);
}

bool GridView::all_locked(const CellRange& range) const {
    for (int row = range.first_row; row <= range.last_row; ++row) {
        for (int column = range.first_column; column <= range.last_column; ++column) {
            if (!cells_->locked(row, column)) return false;
        }
    }
    return true;
}

/// If whole rows are selected, a narrower copy goes to the active cell:
/// the row's first cell is rarely its target.
CellRange GridView::paste_target(const CellBlock& copied) const {
    const QModelIndex active = currentIndex();
    std::size_t widest = 0;
    for (const auto& row : copied) widest = std::max(widest, row.size());
    const bool whole_rows = widest >= static_cast<std::size_t>(cells_->columnCount());
    if (selectionBehavior() != QAbstractItemView::SelectRows || whole_rows || !active.isValid())
        return block();
    return {active.row(), active.column(), active.row(), active.column()};
}

/// The cells to paste in the way that the user chooses; nothing if the user cancels.
std::optional<PastePlan> GridView::chosen_paste(const CellBlock& copied, const CellRange& target) {
    const auto offer = cells_->offered_paste(copied, target.first_column);
    if (offer) {
        const Answer answer = user_.message(offer->question);
        if (answer == Answer::Cancel) return std::nullopt;
        if (answer == Answer::Yes) return checked_paste(*cells_, offer->cells);
    }
    return plan_paste(*cells_, copied, target);
}

bool GridView::agrees_to(const PastePlan& plan) {
    const auto question = paste_question(*cells_, plan);
    return !question || user_.message(*question) == Answer::Yes;
}

void GridView::put(const PastePlan& plan) {
    QRect changed;
    cells_->begin_change();
    for (const CellText& cell : plan.cells) {
        if (cells_->take(cell.row, cell.column, cell.text)) changed |= QRect(cell.column, cell.row, 1, 1);
    }
    if (!changed.isEmpty())
        cells_->changed_block(changed.top(), changed.left(), changed.bottom(), changed.right());
}

void GridView::paste() {
    const CellBlock copied = read_clipboard_text(from_qt(QApplication::clipboard()->text()));
    if (copied.empty()) return;
    const CellRange target = paste_target(copied);
    if (target.rows() <= 0) return;
    const auto plan = chosen_paste(copied, target);
    if (!plan || !agrees_to(*plan)) return;
    put(*plan);
    emit pasted();
}

void GridView::commit_editor() {
    for (QWidget* child : viewport()->findChildren<QWidget*>(QString{}, Qt::FindDirectChildrenOnly)) {
        // An editor that is already closed is hidden until it is deleted.
        if (!child->property(k_grid_editor).toBool() || child->isHidden()) continue;
        commitData(child);
        closeEditor(child, QAbstractItemDelegate::NoHint);
    }
}

std::optional<CellText> GridView::typed_cell() const {
    const QModelIndex at = currentIndex();
    for (QWidget* child : viewport()->findChildren<QWidget*>(QString{}, Qt::FindDirectChildrenOnly)) {
        if (!at.isValid() || !child->property(k_grid_editor).toBool() || child->isHidden()) continue;
        QString text = GridDelegate::text_of(*child);
        const QString before = cells_->whole_text(at.row(), at.column());
        if (text == before) return std::nullopt;
        if (text.isEmpty()) text = cells_->cleared_text(at.row(), at.column());
        const bool same = text == before;
        if (same || !cells_->refusal(at.row(), at.column(), text).isEmpty()) return std::nullopt;
        return CellText{at.row(), at.column(), text};
    }
    return std::nullopt;
}

bool GridView::edit_key(const QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        copy();
    } else if (event->keyCombination() == k_copy_with_headers) {
        copy_with_headers();
    } else if (event->matches(QKeySequence::Cut)) {
        cut();
    } else if (event->matches(QKeySequence::Paste)) {
        paste();
    } else if (event->key() == Qt::Key_Delete && event->modifiers() == Qt::NoModifier && clears_) {
        cut();
        QApplication::beep();
    } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        go_down();
    } else {
        return false;
    }
    return true;
}

/// Moves the cursor after Enter.
void GridView::go_down() {
    const QModelIndex below = currentIndex().siblingAtRow(currentIndex().row() + 1);
    if (enter_goes_down_ && below.isValid()) setCurrentIndex(below);
}

void GridView::keyPressEvent(QKeyEvent* event) {
    if (state() != QAbstractItemView::EditingState && edit_key(event)) {
        event->accept();
        return;
    }
    QTableView::keyPressEvent(event);
}

void GridView::contextMenuEvent(QContextMenuEvent* event) {
    commit_editor();
    QPoint at = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        if (currentIndex().isValid()) scrollTo(currentIndex());
        // A cell of the frozen column lies left of the visible part.
        const QPoint below = visualRect(currentIndex()).bottomLeft();
        at = viewport()->mapToGlobal(QPoint(std::max(0, below.x()), std::max(0, below.y())));
    }
    QMenu* menu = make_grid_menu(*this);
    emit menu_asked(menu);
    menu->popup(at);
    event->accept();
}

/// Whether Tab, or Shift+Tab, has no next cell: the view's own order would wrap around.
bool GridView::is_at_edge(bool forward) {
    const QModelIndex at = currentIndex();
    const QModelIndex next = moveCursor(forward ? MoveNext : MovePrevious, Qt::NoModifier);
    if (!at.isValid() || !next.isValid() || next == at) return !next.isValid() || next == at;
    const bool after = std::pair{next.row(), next.column()} > std::pair{at.row(), at.column()};
    return after != forward;
}

bool GridView::focusNextPrevChild(bool next) {
    return is_at_edge(next) ? QWidget::focusNextPrevChild(next) : QTableView::focusNextPrevChild(next);
}

/// Enter ends an editor only after the keys that were pressed right after it. If one of them was a command,
/// it has already committed the text and closed the editor; its effect must not be undone by leaving the cell
/// again. The editor may even be deleted by then: it is looked for before it is asked.
bool GridView::is_open(QWidget* editor) const {
    return viewport()->children().contains(editor) && !editor->property(k_closed_editor).toBool();
}

void GridView::commitData(QWidget* editor) {
    if (is_open(editor)) QTableView::commitData(editor);
}

void GridView::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    if (!is_open(editor)) return;
    editor->setProperty(k_closed_editor, true);
    const bool forward = hint == QAbstractItemDelegate::EditNextItem;
    if ((forward || hint == QAbstractItemDelegate::EditPreviousItem) && is_at_edge(forward)) {
        QTableView::closeEditor(editor, QAbstractItemDelegate::NoHint);
        QWidget::focusNextPrevChild(forward);
        return;
    }
    QTableView::closeEditor(editor, hint);
    if (hint == QAbstractItemDelegate::SubmitModelCache) go_down();
}

void GridView::paintEvent(QPaintEvent* event) {
    if (empty_area_.isValid()) paint_empty_area();
    QTableView::paintEvent(event);
}

/// Paints the area below the last row and beside the last column.
void GridView::paint_empty_area() {
    const QSize room = viewport()->size();
    const int right = horizontalHeader()->length() - horizontalHeader()->offset();
    const int bottom = verticalHeader()->length() - verticalHeader()->offset();
    QPainter painter(viewport());
    if (bottom < room.height())
        painter.fillRect(0, bottom, room.width(), room.height() - bottom, empty_area_);
    if (right < room.width()) painter.fillRect(right, 0, room.width() - right, room.height(), empty_area_);
}

void GridView::leave(const QModelIndex& cell) {
    if (cell.isValid() && cell.row() < cells_->rowCount()) emit left_cell(cell.row(), cell.column());
}

void GridView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    if (previous.isValid() && current != previous) leave(previous);
}

void GridView::focus_moved(const QWidget* from, const QWidget* to) {
    // No cell is left if the whole window loses the focus, to a message for example, or if a menu opens.
    if (from == nullptr || to == nullptr || to->window() != window()) return;
    if (qobject_cast<const QMenuBar*>(to) != nullptr) return;
    const bool was_here = from == this || isAncestorOf(from);
    const bool is_here = to == this || isAncestorOf(to);
    if (was_here && !is_here) leave(currentIndex());
}

int GridView::content_width(int column) const {
    if (cells_->rowCount() > k_rows_to_measure)
        return fontMetrics().horizontalAdvance(cells_->widest_text(column));
    int content = 0;
    for (int row = 0; row < cells_->rowCount(); ++row)
        content = std::max(content, fontMetrics().horizontalAdvance(cells_->text(row, column)));
    return content;
}

int GridView::measured_width(int column) const {
    const int head = header_width(cells_->header(column), horizontalHeader()->fontMetrics());
    return std::clamp(std::max(content_width(column), head) + k_cell_margin, k_narrowest, k_widest);
}

void GridView::widen_columns(int first_column, int last_column) {
    for (int column = first_column; column <= last_column; ++column) {
        const int needed = std::min(content_width(column) + k_cell_margin, k_widest);
        if (columnWidth(column) < needed) setColumnWidth(column, needed);
    }
}

void GridView::fit_header() {
    const QFontMetrics metrics = horizontalHeader()->fontMetrics();
    int tallest = metrics.lineSpacing();
    for (int column = 0; column < cells_->columnCount(); ++column) {
        const QRect room(0, 0, columnWidth(column) - k_cell_margin / 2, 10000);
        const QRect needed =
            metrics.boundingRect(room, Qt::AlignCenter | Qt::TextWordWrap, cells_->header(column).trimmed());
        tallest = std::max(tallest, needed.height());
    }
    horizontalHeader()->setFixedHeight(tallest + 10);
}

void GridView::fit_columns(std::vector<int>& kept) {
    const int columns = cells_->columnCount();
    if (static_cast<int>(kept.size()) != columns) {
        kept.clear();
        for (int column = 0; column < columns; ++column) kept.push_back(measured_width(column));
    }
    for (int column = 0; column < columns; ++column)
        setColumnWidth(column, kept[static_cast<std::size_t>(column)]);
    fit_header();
}

void GridView::fit_columns() {
    std::vector<int> widths;
    fit_columns(widths);
}

void GridView::freeze_first_column() {
    if (frozen_ != nullptr) return;
    frozen_ = new FrozenColumn(this);
    frozen_->follow();
}

void GridView::updateGeometries() {
    QTableView::updateGeometries();
    if (frozen_ != nullptr) frozen_->follow();
}

/// A cell of the frozen column is in view anyway; no other may stay behind that column.
void GridView::scrollTo(const QModelIndex& index, ScrollHint hint) {
    const int covered = frozen_ == nullptr ? 0 : frozen_->covered();
    const int before = horizontalScrollBar()->value();
    QTableView::scrollTo(index, hint);
    if (covered == 0 || !index.isValid()) return;
    const int left = columnViewportPosition(index.column());
    if (index.column() == 0) {
        horizontalScrollBar()->setValue(before);
    } else if (left < covered) {
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() + left - covered);
    }
}

void GridView::set_track_scrolling(bool track) { verticalScrollBar()->setTracking(track); }

bool GridView::track_scrolling() const { return verticalScrollBar()->hasTracking(); }

}  // namespace nivora
