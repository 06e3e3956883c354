#include "tests/shell/main_window_fixture.h"
#include "widgets/grid_view.h"
#include "widgets/qt_text.h"

#include <gmock/gmock.h>

#include <QClipboard>

namespace nivora {
namespace {

/// The zone grid of a basin of two zones.
class SimulationZoneGridTest : public MainWindowTest {
protected:
    SimulationZoneGridTest() {
        choose_units(0, Answer::Yes);
        give_zones("2", Answer::Yes);
        window_->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window_.get()));
    }

    GridView* grid() { return find<GridView>("vaSpread1"); }
    void set(int row, int column, const char* text) {
        grid()->setFocus();
        grid()->setCurrentIndex(grid()->model()->index(row - 1, column - 1));
        for (const char* at = text; *at != '\0'; ++at) QTest::keyClick(QApplication::focusWidget(), *at);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QApplication::processEvents();  // the editor takes its text only once Enter was passed on
    }
    std::string cell(int row, int column) {
        return from_qt(grid()->model()->index(row - 1, column - 1).data().toString());
    }
    std::string area() { return from_qt(find<QLabel>("lblBasinArea")->text()); }
};

TEST_F(SimulationZoneGridTest, TheBasinAreaFollowsTheSecondColumn) {
    set(1, 2, "10.5");
    EXPECT_EQ(area(), "10.5");
    set(2, 2, "4.25");
    EXPECT_EQ(area(), "14.75");
    EXPECT_EQ(session_.basin.zones[1].area, 4.25);
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

TEST_F(SimulationZoneGridTest, AnotherColumnLeavesTheAreaAlone) {
    set(1, 2, "10.5");
    set(1, 3, "1200");
    EXPECT_EQ(area(), "10.5");
    EXPECT_EQ(session_.basin.zones[0].elevation, 1200.0);
}

TEST_F(SimulationZoneGridTest, DeleteMakesTheAreaZero) {
    set(1, 2, "10.5");
    set(2, 2, "4.25");
    grid()->setCurrentIndex(grid()->model()->index(0, 1));
    QTest::keyClick(grid(), Qt::Key_Delete);
    EXPECT_EQ(cell(1, 2), "0");
    EXPECT_EQ(area(), "4.25");
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("10.5\n"));
}

TEST_F(SimulationZoneGridTest, AnEmptyCellThatIsLeftBecomesZero) {
    EXPECT_EQ(cell(1, 3), "");
    grid()->setFocus();
    grid()->setCurrentIndex(grid()->model()->index(0, 2));
    QTest::keyClick(grid(), Qt::Key_Down);
    EXPECT_EQ(cell(1, 3), "0");
    box(2)->setFocus();
    EXPECT_EQ(cell(2, 3), "0");
}

TEST_F(SimulationZoneGridTest, APastedColumnCountsAndWhatDoesNotFitIsTold) {
    QApplication::clipboard()->setText(QStringLiteral("7,5\n3.5\n9\n"));
    grid()->setFocus();
    grid()->setCurrentIndex(grid()->model()->index(0, 1));
    QTest::keyClick(grid(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(area(), "3.5");
    ASSERT_FALSE(dialogs_.messages().empty());
    EXPECT_EQ(last_message().title, "Paste");
    EXPECT_THAT(last_message().text, testing::StartsWith("1 of the pasted cells could not be taken"));
    EXPECT_THAT(last_message().text, testing::EndsWith("left out: 1."));
}

TEST_F(SimulationZoneGridTest, TheZonesHaveNumbersForNamesAtFirst) {
    EXPECT_EQ(cell(1, 1), "1");
    EXPECT_EQ(cell(2, 1), "2");
    EXPECT_EQ(grid()->model()->rowCount(), 2);
}

}  // namespace
}  // namespace nivora
