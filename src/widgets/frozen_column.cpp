#include "widgets/frozen_column.h"

#include "widgets/grid_delegate.h"
#include "widgets/grid_view.h"
#include "widgets/quick_help.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QCursor>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

namespace nivora {
namespace {

/// Draws the cursor as the grid does, which has the keyboard.
class FrozenDelegate : public GridDelegate {
public:
    FrozenDelegate(const GridView* grid, QObject* parent) : GridDelegate(parent), grid_(grid) {}

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        GridDelegate::initStyleOption(option, index);
        const bool marked = option->backgroundBrush.style() != Qt::NoBrush;
        const bool focused = grid_->hasFocus() || grid_->viewport()->hasFocus();
        if (!marked && focused && index == grid_->currentIndex()) option->state |= QStyle::State_HasFocus;
    }

private:
    const GridView* grid_;
};

void copy_header(const QHeaderView& from, QHeaderView& to) {
    to.setDefaultAlignment(from.defaultAlignment());
    to.setMinimumSectionSize(from.minimumSectionSize());
    to.setHighlightSections(from.highlightSections());
}

}  // namespace

FrozenColumn::FrozenColumn(GridView* grid) : QTableView(grid), grid_(grid) {
    setObjectName(QStringLiteral("frozenColumn"));
    setAccessibleName(grid->accessibleName() + QStringLiteral(", first column"));
    setProperty(k_help_columns, grid->property(k_help_columns));
    setModel(grid->model());
    QItemSelectionModel* own = selectionModel();
    setSelectionModel(grid->selectionModel());
    delete own;
    setItemDelegate(new FrozenDelegate(grid, this));
    setSelectionMode(grid->selectionMode());
    setSelectionBehavior(grid->selectionBehavior());
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setFocusPolicy(Qt::NoFocus);
    setFrameShape(QFrame::NoFrame);
    setWordWrap(grid->wordWrap());
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(grid->verticalScrollMode());
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    copy_header(*grid->horizontalHeader(), *horizontalHeader());
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(grid->verticalHeader()->minimumSectionSize());
    verticalHeader()->setDefaultSectionSize(grid->verticalHeader()->defaultSectionSize());
    hide();
    connect(grid->horizontalScrollBar(), &QScrollBar::valueChanged, this, &FrozenColumn::scrolled);
    connect(grid->verticalScrollBar(), &QScrollBar::valueChanged, this, &FrozenColumn::follow_rows);
    connect(grid->horizontalHeader(), &QHeaderView::sectionResized, this, &FrozenColumn::follow);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        if (column == 0 && width != grid_->columnWidth(0)) grid_->setColumnWidth(0, width);
    });
    connect(qApp, &QApplication::focusChanged, viewport(), qOverload<>(&QWidget::update));
}

int FrozenColumn::covered() const {
    const QHeaderView& header = *grid_->horizontalHeader();
    if (header.count() == 0) return 0;
    int widest = 0;
    for (int column = 1; column < header.count(); ++column)
        widest = std::max(widest, header.sectionSize(column));
    const int width = header.sectionSize(0);
    return grid_->viewport()->width() - width >= widest ? width : 0;
}

void FrozenColumn::follow() {
    const int width = grid_->horizontalScrollBar()->value() > 0 ? covered() : 0;
    if (width > 0) {
        const QRect cells = grid_->viewport()->geometry();
        const int head = grid_->horizontalHeader()->height();
        horizontalHeader()->setFixedHeight(head);
        setColumnWidth(0, width);
        setGeometry(cells.left(), cells.top() - head, width, head + cells.height());
        follow_rows();
        raise();
    }
    setVisible(width > 0);
}

/// A drag that stays in this column would scroll the grid to its first columns: it is at the grid's left
/// edge.
void FrozenColumn::scrolled(int value) {
    if (dragging_ && viewport()->mapFromGlobal(QCursor::pos()).x() < width())
        return grid_->horizontalScrollBar()->setValue(scrolled_);
    scrolled_ = value;
    follow();
}

void FrozenColumn::follow_rows() {
    const QScrollBar& rows = *grid_->verticalScrollBar();
    verticalScrollBar()->setRange(rows.minimum(), rows.maximum());
    verticalScrollBar()->setValue(rows.value());
}

void FrozenColumn::updateGeometries() {
    QTableView::updateGeometries();
    follow_rows();
}

/// The grid knows the column where it would be without this view: left of its visible part.
void FrozenColumn::pass_on(const QMouseEvent& event) {
    QPointF at = event.position();
    dragging_ = event.buttons() != Qt::NoButton;
    if (at.x() < width()) at.rx() -= grid_->horizontalScrollBar()->value();
    QMouseEvent passed(event.type(), at, event.globalPosition(), event.button(), event.buttons(),
                       event.modifiers());
    QCoreApplication::sendEvent(grid_->viewport(), &passed);
}

bool FrozenColumn::viewportEvent(QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove: pass_on(*static_cast<QMouseEvent*>(event)); return true;
        case QEvent::Wheel:
        case QEvent::ContextMenu: return QCoreApplication::sendEvent(grid_->viewport(), event);
        default: return QTableView::viewportEvent(event);
    }
}

/// A line at the right says that the columns behind it are scrolled.
void FrozenColumn::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    QRect line = viewport()->rect();
    line.setLeft(line.right());
    QPainter(viewport()).fillRect(line, palette().color(QPalette::PlaceholderText));
}

}  // namespace nivora
