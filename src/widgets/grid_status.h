// What the status bar of a window says about its grids:
// the unit of the current column, and why an entry was refused.
#pragma once

#include <QObject>

class QLabel;
class QStatusBar;

namespace nivora {

class GridView;

/// Watches grids of one window. The unit is shown beside the basin's file; the reason for a refused entry
/// replaces both until the next entry, or for some time.
class GridStatus : public QObject {
    Q_OBJECT

public:
    explicit GridStatus(QStatusBar* bar);

    void watch(GridView* grid);

private:
    void show_unit(const GridView* grid);
    void show_refusal(const GridView* grid, int row, int column, const QString& text);

    QStatusBar* bar_;
    QLabel* unit_;
};

}  // namespace nivora
