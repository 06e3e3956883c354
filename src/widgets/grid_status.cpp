#include "widgets/grid_status.h"

#include "widgets/fitted_label.h"
#include "widgets/grid_sums.h"
#include "widgets/grid_view.h"

#include <QApplication>
#include <QStatusBar>

namespace nivora {
namespace {

constexpr int k_shown_milliseconds = 30'000;

}  // namespace

GridStatus::GridStatus(QStatusBar* bar)
    : QObject(bar), bar_(bar), unit_(new FittedLabel(bar)), sums_(new FittedLabel(bar)) {
    unit_->setObjectName(QStringLiteral("unitPanel"));
    sums_->setObjectName(QStringLiteral("sumsPanel"));
    sums_->setAccessibleName(QStringLiteral("Sums of the selected numbers"));
    for (FittedLabel* panel : {unit_, sums_}) {
        panel->setTextFormat(Qt::PlainText);
        // A long text is shortened rather than widening the window.
        panel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    }
    // It gets more room than the file at its left, whose name can be shortened in the middle.
    bar_->addWidget(unit_, 3);
    bar_->addWidget(sums_, 7);
    sums_->hide();
    sums_wanted_.setSingleShot(true);
    connect(&sums_wanted_, &QTimer::timeout, this, &GridStatus::show_sums);
    connect(bar_, &QStatusBar::messageChanged, this, [this] { sums_wanted_.start(0); });
}

void GridStatus::watch(GridView* grid) {
    const GridModel* cells = &grid->cells();
    connect(cells, &GridModel::refused, this, [this, grid](int row, int column, const QString& text) {
        show_refusal(grid, row, column, text);
    });
    connect(cells, &GridModel::edited, bar_, &QStatusBar::clearMessage);
    connect(grid->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this, grid] { show_unit(grid); });
    connect(grid->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this, grid] { ask_sums(grid); });
    const auto changed = [this, grid] {
        if (summed_ == nullptr || summed_ == grid) ask_sums(grid);
    };
    connect(cells, &GridModel::dataChanged, this, changed);
    connect(cells, &GridModel::modelReset, this, changed);
    connect(cells, &GridModel::rowsRemoved, this, changed);
    connect(qApp, &QApplication::focusChanged, this, [this, grid](const QWidget*, const QWidget* now) {
        if (now != nullptr && (now == grid || grid->isAncestorOf(now))) {
            show_unit(grid);
            ask_sums(grid);
        }
    });
}

void GridStatus::show_unit(const GridView* grid) {
    const int column = grid->currentIndex().column();
    const bool told = column >= 0 && !grid->cells().unit(column).isEmpty();
    unit_->set_forms(told ? QStringList{grid->cells().tip(column)} : QStringList{});
}

void GridStatus::ask_sums(GridView* grid) {
    summed_ = grid;
    sums_wanted_.start(0);
}

/// In a grid that selects whole rows every click would sum what does not belong together.
void GridStatus::show_sums() {
    // The bar hides its parts while it shows a message.
    if (!bar_->currentMessage().isEmpty()) return;
    const bool wanted = summed_ != nullptr && summed_->selectionBehavior() != QAbstractItemView::SelectRows;
    sums_->set_forms(wanted ? sums_texts(sums_of_selection(*summed_)) : QStringList{});
    sums_->setVisible(!sums_->text().isEmpty());
}

void GridStatus::show_refusal(const GridView* grid, int row, int column, const QString& text) {
    const QString reason = grid->cells().refusal(row, column, text);
    if (reason.isEmpty()) return;  // the store refused it, which a message has shown
    bar_->showMessage(QStringLiteral("'%1' is not accepted for %2: %3.")
                          .arg(text, grid->cells().place(row, column), reason),
                      k_shown_milliseconds);
}

}  // namespace nivora
