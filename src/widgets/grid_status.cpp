#include "widgets/grid_status.h"

#include "widgets/grid_view.h"

#include <QApplication>
#include <QLabel>
#include <QStatusBar>

namespace nivora {
namespace {

constexpr int k_shown_milliseconds = 30'000;

}  // namespace

GridStatus::GridStatus(QStatusBar* bar) : QObject(bar), bar_(bar), unit_(new QLabel(bar)) {
    unit_->setObjectName(QStringLiteral("unitPanel"));
    unit_->setTextFormat(Qt::PlainText);
    // A long text is cut rather than widening the window.
    unit_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    // It gets more room than the file at its left, whose name can be shortened in the middle.
    bar_->addWidget(unit_, 3);
}

void GridStatus::watch(GridView* grid) {
    const GridModel* cells = &grid->cells();
    connect(cells, &GridModel::refused, this, [this, grid](int row, int column, const QString& text) {
        show_refusal(grid, row, column, text);
    });
    connect(cells, &GridModel::edited, bar_, &QStatusBar::clearMessage);
    connect(grid->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this, grid] { show_unit(grid); });
    connect(qApp, &QApplication::focusChanged, this, [this, grid](const QWidget*, const QWidget* now) {
        if (now != nullptr && (now == grid || grid->isAncestorOf(now))) show_unit(grid);
    });
}

void GridStatus::show_unit(const GridView* grid) {
    const int column = grid->currentIndex().column();
    const bool told = column >= 0 && !grid->cells().unit(column).isEmpty();
    unit_->setText(told ? grid->cells().tip(column) : QString{});
    unit_->setToolTip(unit_->text());
}

void GridStatus::show_refusal(const GridView* grid, int row, int column, const QString& text) {
    const QString reason = grid->cells().refusal(row, column, text);
    if (reason.isEmpty()) return;  // the store refused it, which a message has shown
    bar_->showMessage(QStringLiteral("'%1' is not accepted for %2: %3.")
                          .arg(text, grid->cells().place(row, column), reason),
                      k_shown_milliseconds);
}

}  // namespace nivora
