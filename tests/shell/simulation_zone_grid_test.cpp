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
        QApplication::processEvents();  // the grid takes the text only after Enter was processed
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

TEST_F(SimulationZoneGridTest, WalkingThroughEmptyCellsChangesNothing) {
    EXPECT_EQ(cell(1, 3), "");
    session_.basin.Basin_Changed = false;
    session_.basin.Input_Changed = false;
    session_.basin.Output_Valid = true;
    grid()->setFocus();
    grid()->setCurrentIndex(grid()->model()->index(0, 1));
    for (const Qt::Key step : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Left, Qt::Key_Tab})
        QTest::keyClick(grid(), step);
    box(4)->setFocus();
    EXPECT_EQ(cell(1, 2), "");
    EXPECT_EQ(cell(1, 3), "");
    EXPECT_EQ(cell(2, 3), "");
    EXPECT_FALSE(session_.basin.Basin_Changed);
    EXPECT_FALSE(session_.basin.Input_Changed);
    EXPECT_TRUE(session_.basin.Output_Valid);
}

TEST_F(SimulationZoneGridTest, ACellThatIsEmptiedByHandBecomesZero) {
    set(1, 3, "1200");
    grid()->setCurrentIndex(grid()->model()->index(0, 2));
    QTest::keyClick(grid(), Qt::Key_F2);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_EQ(cell(1, 3), "0");
    EXPECT_EQ(session_.basin.zones[0].elevation, 0.0);
}

TEST_F(SimulationZoneGridTest, AnAreaThatIsTypedIsShownWhole) {
    set(1, 2, "123456.123456");
    EXPECT_GE(grid()->columnWidth(1),
              grid()->fontMetrics().horizontalAdvance(QStringLiteral("123456.123456")) + 8);
}

TEST_F(SimulationZoneGridTest, SharesOfAspectsSayWhatTheirNumbersMean) {
    for (const int column : {4, 6, 8, 10}) {
        EXPECT_THAT(
            from_qt(grid()->model()->headerData(column - 1, Qt::Horizontal, Qt::ToolTipRole).toString()),
            testing::EndsWith(
                "Aspect: percent of the zone's area; 1 in an imported basin, whose file gives none"));
    }
}

TEST_F(SimulationZoneGridTest, APastedColumnCountsAndWhatDoesNotFitIsAskedAbout) {
    QApplication::clipboard()->setText(QStringLiteral("7,5\n3.5\n9\n"));
    grid()->setFocus();
    grid()->setCurrentIndex(grid()->model()->index(0, 1));
    dialogs_.then(Answer::Yes);
    QTest::keyClick(grid(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(area(), "3.5");
    ASSERT_FALSE(dialogs_.messages().empty());
    EXPECT_EQ(last_message().title, "Paste");
    EXPECT_THAT(last_message().text,
                testing::StartsWith("1 of the 2 pasted cells can't be accepted: '7,5' for Zone "
                                    "Area (km²), zone 1;"));
    EXPECT_THAT(last_message().text, testing::HasSubstr("The grid has no room for 1 row of the clipboard."));
}

TEST_F(SimulationZoneGridTest, TheZonesHaveLettersForNames) {
    EXPECT_EQ(cell(1, 1), "A");
    EXPECT_EQ(cell(2, 1), "B");
    EXPECT_EQ(grid()->model()->rowCount(), 2);
}

}  // namespace
}  // namespace nivora
