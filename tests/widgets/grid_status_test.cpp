// What the status bar says about a grid.

#include "widgets/grid_status.h"

#include "tests/widgets/grid_fixture.h"

#include <QLabel>
#include <QStatusBar>

namespace nivora {
namespace {

class GridStatusTest : public GridTest {
protected:
    GridStatusTest() { (new GridStatus(window_->statusBar()))->watch(grid_); }

    std::string told() { return from_qt(window_->statusBar()->currentMessage()); }
    void enter(int row, int column, const char* text) {
        go_to(row, column);
        type(text);
        key(Qt::Key_Return);
    }
};

TEST_F(GridStatusTest, ARefusedEntryIsReportedWithItsPlaceAndTheReason) {
    enter(2, Column::k_number, "450,5");
    EXPECT_EQ(
        told(),
        "'450,5' is not accepted for Amount, row 3: a number has a point as its decimal sign and no other "
        "separators.");
    enter(2, Column::k_date, "02312006");
    EXPECT_EQ(told(), "'02/31/2006' is not accepted for Day, row 3: the calendar has no such day.");
    enter(2, Column::k_date, "0231");
    EXPECT_EQ(told(), "'02/31/' is not accepted for Day, row 3: a date has the form mm/dd/yyyy.");
}

TEST_F(GridStatusTest, AnEntryThatIsTakenEndsTheMessage) {
    enter(2, Column::k_number, "450,5");
    EXPECT_FALSE(told().empty());
    enter(2, Column::k_number, "450.5");
    EXPECT_EQ(told(), "");
}

}  // namespace
}  // namespace nivora
