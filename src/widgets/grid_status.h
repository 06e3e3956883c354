// What the status bar of a window says about its grids:
// the unit of the current column, the sums of the selected numbers, and why an entry was refused.
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

class QStatusBar;

namespace nivora {

class FittedLabel;
class GridView;

/// Watches grids of one window. The unit is shown beside the basin's file, and beside it the sums if more
/// than one number is selected in a grid that does not select whole rows; the reason for a refused entry
/// replaces all of them until the next entry, or for some time.
class GridStatus : public QObject {
    Q_OBJECT

public:
    explicit GridStatus(QStatusBar* bar);

    void watch(GridView* grid);

private:
    void show_unit(const GridView* grid);
    void ask_sums(GridView* grid);
    void show_sums();
    void show_refusal(const GridView* grid, int row, int column, const QString& text);

    QStatusBar* bar_;
    FittedLabel* unit_;
    FittedLabel* sums_;
    QPointer<GridView> summed_;  ///< the grid whose sums are shown
    QTimer sums_wanted_;         ///< several changes of one moment are summed once
};

}  // namespace nivora
