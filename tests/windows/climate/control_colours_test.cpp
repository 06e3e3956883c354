// The colour of a clicked value of the seasonal summary and of its sources, as it is painted.

#include "tests/windows/climate/control_window_fixture.h"

#include <QImage>

namespace nivora {
namespace {

class ControlColoursTest : public ControlWindowTest {
protected:
    /// The colour at a corner of a cell, where there is no text. Rows and columns count from 1.
    static QColor painted(GridView* grid, int row, int column) {
        const QRect cell = grid->visualRect(grid->model()->index(row - 1, column - 1));
        return grid->viewport()->grab().toImage().pixelColor(cell.topLeft() + QPoint(3, 3));
    }
    void click(GridView* grid, int row, int column) {
        grid->setFocus();
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                          grid->visualRect(grid->model()->index(row - 1, column - 1)).center());
        QApplication::processEvents();
    }
};

TEST_F(ControlColoursTest, TheClickedCellAndItsSourcesAreLightCyanThoughTheyAreSelected) {
    const QColor cyan(0, 255, 255);
    open_six_days();
    run_to(6);
    click(statistics(), 1, 2);  // a source that is selected itself
    click(summary(), 1, 3);     // measured runoff of the year
    ASSERT_EQ(summary()->currentIndex(), summary()->model()->index(0, 2));
    EXPECT_EQ(painted(summary(), 1, 3), cyan);
    EXPECT_EQ(painted(statistics(), 1, 2), cyan);
    EXPECT_EQ(painted(statistics(), 1, 4), cyan);
    EXPECT_NE(painted(statistics(), 1, 3), cyan);
    click(summary(), 2, 1);
    EXPECT_NE(painted(summary(), 1, 3), cyan);
    EXPECT_EQ(painted(summary(), 2, 1), cyan);
    EXPECT_NE(painted(statistics(), 1, 2), cyan);
    EXPECT_EQ(painted(statistics(), 4, 2), cyan);
}

}  // namespace
}  // namespace nivora
