// The first column of a grid, which stays in view while the others scroll.
#pragma once

#include <QTableView>

namespace nivora {

class GridView;

/// A second view of the grid's cells that covers its left edge while the grid is scrolled to the right, and
/// is hidden while it is not. It has the grid's selection, cursor and widths. The keyboard stays with the
/// grid, and what the mouse does on a cell is done to the grid.
///
/// The rows must all have the same height, and the cells of the first column must be locked: an editor would
/// be covered.
class FrozenColumn : public QTableView {
    Q_OBJECT

public:
    explicit FrozenColumn(GridView* grid);

    /// The width that the column covers while the grid is scrolled; 0 in a grid that is so narrow that no
    /// room for its widest column would be left, which then scrolls as a whole.
    [[nodiscard]] int covered() const;
    /// Follows the place, the size and the scrolling of the grid.
    void follow();

    /// The grid scrolls; this view only follows.
    void scrollTo(const QModelIndex& /*index*/, ScrollHint /*hint*/) override {}

protected:
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void updateGeometries() override;

private:
    void scrolled(int value);
    void follow_rows();
    void pass_on(const QMouseEvent& event);

    GridView* grid_;
    bool dragging_ = false;  ///< a button was pressed here and is still down
    int scrolled_ = 0;       ///< how far the grid is scrolled to the right
};

}  // namespace nivora
