#include "widgets/grid_view.h"

#include "base/clipboard_text.h"
#include "widgets/grid_delegate.h"
#include "widgets/qt_text.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenuBar>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>

namespace nivora {
namespace {

constexpr int k_cell_margin = 14;
constexpr int k_narrowest = 48;
constexpr int k_widest = 360;
constexpr int k_most_header_lines = 3;
/// A short column is measured text by text, a long one by the text that its model holds for the longest.
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

GridView::GridView(GridModel* model, QWidget* parent) : QTableView(parent), cells_(model) {
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

// A grid that goes with the focus in it leaves no cell any more.
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

void GridView::copy() const {
    const CellRange range = block();
    CellBlock copied;
    for (int row = range.first_row; row <= range.last_row; ++row) {
        auto& texts = copied.emplace_back();
        for (int column = range.first_column; column <= range.last_column; ++column)
            texts.push_back(from_qt(cells_->whole_text(row, column)));
    }
    if (!copied.empty()) QApplication::clipboard()->setText(to_qt(clipboard_text(copied)));
}

void GridView::cut() {
    const CellRange range = block();
    if (range.rows() <= 0 || all_locked(range)) return;
    copy();
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

PasteOutcome GridView::put_block(const CellBlock& copied, const CellRange& target) {
    PasteOutcome outcome;
    const int rows = cells_->rowCount();
    const int room = cells_->columnCount() - target.first_column;
    std::size_t widest = 0;
    for (const auto& row : copied) widest = std::max(widest, row.size());
    const int beyond = static_cast<int>(copied.size()) - (rows - target.first_row);
    outcome.cut_off = std::max(0, beyond) + std::max(0, static_cast<int>(widest) - room);
    const auto first = static_cast<std::size_t>(target.first_row);
    for (const PastePiece& piece : paste_pieces(first, static_cast<std::size_t>(target.rows()), copied.size(),
                                                static_cast<std::size_t>(rows))) {
        for (std::size_t i = 0; i < piece.rows; ++i) {
            const auto& texts = copied[i];
            const int last = std::min(static_cast<int>(texts.size()), room);
            for (int column = 0; column < last; ++column) {
                const QString text = to_qt(texts[static_cast<std::size_t>(column)]);
                if (cells_->take(static_cast<int>(piece.to_row + i), target.first_column + column, text)) {
                    ++outcome.taken;
                } else if (outcome.refused++ == 0) {
                    outcome.first_refused = text;
                }
            }
        }
    }
    return outcome;
}

void GridView::paste() {
    const CellRange target = block();
    const CellBlock copied = read_clipboard_text(from_qt(QApplication::clipboard()->text()));
    if (target.rows() <= 0 || copied.empty()) return;
    const PasteOutcome outcome = put_block(copied, target);
    if (outcome.taken > 0) {
        cells_->changed_block(
            target.first_row, target.first_column,
            std::min(cells_->rowCount() - 1,
                     target.first_row + std::max(target.rows(), static_cast<int>(copied.size())) - 1),
            cells_->columnCount() - 1);
    }
    emit pasted(outcome);
}

void GridView::commit_editor() {
    for (QWidget* child : viewport()->findChildren<QWidget*>(QString{}, Qt::FindDirectChildrenOnly)) {
        // One that was closed already is hidden until it is deleted.
        if (!child->property(k_grid_editor).toBool() || child->isHidden()) continue;
        commitData(child);
        closeEditor(child, QAbstractItemDelegate::NoHint);
    }
}

bool GridView::edit_key(const QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        copy();
    } else if (event->matches(QKeySequence::Cut)) {
        cut();
    } else if (event->matches(QKeySequence::Paste)) {
        paste();
    } else if (event->key() == Qt::Key_Delete && event->modifiers() == Qt::NoModifier && clears_) {
        cut();
        QApplication::beep();
    } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        const QModelIndex below = currentIndex().siblingAtRow(currentIndex().row() + 1);
        if (below.isValid()) setCurrentIndex(below);
    } else {
        return false;
    }
    return true;
}

void GridView::keyPressEvent(QKeyEvent* event) {
    if (state() != QAbstractItemView::EditingState && edit_key(event)) {
        event->accept();
        return;
    }
    QTableView::keyPressEvent(event);
}

void GridView::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    QTableView::closeEditor(editor, hint);
    if (hint != QAbstractItemDelegate::SubmitModelCache) return;
    const QModelIndex below = currentIndex().siblingAtRow(currentIndex().row() + 1);
    if (below.isValid()) setCurrentIndex(below);
}

void GridView::leave(const QModelIndex& cell) {
    if (!cell.isValid() || cell.row() >= cells_->rowCount()) return;
    const int row = cell.row();
    const int column = cell.column();
    if (clears_ && !cells_->locked(row, column) && cells_->whole_text(row, column).isEmpty()) {
        const QString cleared = cells_->cleared_text(row, column);
        if (!cleared.isEmpty() && cells_->take(row, column, cleared))
            cells_->changed_block(row, column, row, column);
    }
    emit left_cell(row, column);
}

void GridView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    if (previous.isValid() && current != previous) leave(previous);
}

void GridView::focus_moved(const QWidget* from, const QWidget* to) {
    // A window that loses the focus as a whole, or a box before it, leaves no cell; nor does an open menu.
    if (from == nullptr || to == nullptr || to->window() != window()) return;
    if (qobject_cast<const QMenuBar*>(to) != nullptr) return;
    const bool was_here = from == this || isAncestorOf(from);
    const bool is_here = to == this || isAncestorOf(to);
    if (was_here && !is_here) leave(currentIndex());
}

int GridView::measured_width(int column) const {
    int content = 0;
    if (cells_->rowCount() <= k_rows_to_measure) {
        for (int row = 0; row < cells_->rowCount(); ++row)
            content = std::max(content, fontMetrics().horizontalAdvance(cells_->text(row, column)));
    } else {
        content = fontMetrics().horizontalAdvance(cells_->widest_text(column));
    }
    const int head = header_width(cells_->header(column), horizontalHeader()->fontMetrics());
    return std::clamp(std::max(content, head) + k_cell_margin, k_narrowest, k_widest);
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

void GridView::set_track_scrolling(bool track) { verticalScrollBar()->setTracking(track); }

bool GridView::track_scrolling() const { return verticalScrollBar()->hasTracking(); }

}  // namespace nivora
