// Reading the daily table: the frozen column of days.

#include "tests/windows/prep/daily_window_fixture.h"
#include "widgets/frozen_column.h"

#include <QScrollBar>

namespace nivora {
namespace {

class DailyTableTest : public DailyWindowTest {
protected:
    FrozenColumn& days() { return *grid()->findChild<FrozenColumn*>(); }
    void scroll_to_end() {
        grid()->horizontalScrollBar()->setValue(grid()->horizontalScrollBar()->maximum());
        QApplication::processEvents();
    }
};

TEST_F(DailyTableTest, TheDaysStayInViewBesideTheLastResults) {
    open_results();
    scroll_to_end();
    ASSERT_TRUE(days().isVisible());
    EXPECT_EQ(days().model()->headerData(days().columnAt(3), Qt::Horizontal).toString(),
              QStringLiteral("Date"));
    EXPECT_EQ(from_qt(days().accessibleName()), "Daily values, first column");
    go_to(2, 30);
    key(Qt::Key_Home);
    EXPECT_EQ(grid()->currentIndex().column(), 0);
    EXPECT_TRUE(days().isVisible());
}

TEST_F(DailyTableTest, AChangeOfTheZoneKeepsTheDaysInView) {
    open_results();
    scroll_to_end();
    const int scrolled = grid()->horizontalScrollBar()->value();
    zone()->setValue(2);
    QApplication::processEvents();
    EXPECT_EQ(grid()->horizontalScrollBar()->value(), scrolled);
    EXPECT_TRUE(days().isVisible());
}

TEST_F(DailyTableTest, QuickHelpExplainsTheDaysInView) {
    open_results();
    scroll_to_end();
    ASSERT_TRUE(days().isVisible());
    quick_help_.set_on(true);
    QTest::mouseClick(days().viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    EXPECT_THAT(from_qt(window_->help_text()), testing::StartsWith("Date: the day of this row."));
}

TEST_F(DailyTableTest, AVeryNarrowWindowScrollsAsAWhole) {
    open_results();
    grid()->setColumnWidth(20, 300);
    window_->setMinimumWidth(0);
    grid()->setFixedWidth(360);
    QApplication::processEvents();
    scroll_to_end();
    EXPECT_FALSE(days().isVisible());
    go_to(2, 1);
    EXPECT_EQ(grid()->horizontalScrollBar()->value(), 0);
}

TEST_F(DailyTableTest, AReadOnlyTableHasItToo) {
    session_.run.ClimateStep = 2;
    open_results();
    scroll_to_end();
    EXPECT_TRUE(days().isVisible());
    QTest::mouseDClick(days().viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    EXPECT_EQ(QApplication::focusWidget(), grid());
}

}  // namespace
}  // namespace nivora
