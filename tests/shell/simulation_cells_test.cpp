#include "tests/shell/simulation_fixture.h"

#include <QStatusBar>

namespace nivora {
namespace {

using testing::ElementsAre;

/// Editing the cells of the simulation grid. Its rows are 01/01/1996 to 12/31/1996 and 10/01/1997 to
/// 09/30/1998.
class SimulationCellsTest : public SimulationWindowTest {
protected:
    SimulationCellsTest() {
        session_.basin.Basin_Changed = false;
        session_.basin.Input_Changed = false;
    }

    /// Types over a cell and ends the edit with the given key.
    void set(int number, int column, const char* text, Qt::Key with = Qt::Key_Tab) {
        go_to(number, column);
        keys(text);
        key(with);
        QTest::qWait(1);
    }
    bool editable(int column) {
        const auto* model = grid()->model();
        return (model->flags(model->index(1, column - 1)) & Qt::ItemIsEditable) != 0;
    }
    void expect_active(int number, int column) {
        EXPECT_EQ(grid()->currentIndex().row(), number - 1);
        EXPECT_EQ(grid()->currentIndex().column(), column - 1);
    }
};

TEST_F(SimulationCellsTest, AllColumnsButTheNameCanBeEdited) {
    EXPECT_FALSE(editable(1));
    for (int column = 2; column <= 17; ++column) EXPECT_TRUE(editable(column)) << column;
}

TEST_F(SimulationCellsTest, CellsAreOfTheirKind) {
    std::vector<CellFormat::Kind> kinds;
    for (int column = 0; column < 17; ++column) kinds.push_back(grid()->cells().format(0, column).kind);
    using Kind = CellFormat::Kind;
    EXPECT_THAT(
        kinds, ElementsAre(Kind::Text, testing::AnyOf(Kind::Number, Kind::Integer), Kind::Date, Kind::Date,
                           Kind::List, Kind::List, Kind::List, Kind::List, Kind::List, Kind::List, Kind::List,
                           Kind::List, Kind::Number, Kind::Number, Kind::Number, Kind::Number, Kind::Text));
    const auto items = [&](int column) { return grid()->cells().format(0, column - 1).items; };
    EXPECT_EQ(items(5), QStringList({QStringLiteral("Metric"), QStringLiteral("English")}));
    EXPECT_EQ(items(6), QStringList({QStringLiteral("Average"), QStringLiteral("Max/Min")}));
    for (int column = 7; column <= 12; ++column)
        EXPECT_EQ(items(column), QStringList({QStringLiteral("Basinwide"), QStringLiteral("By Zone")}))
            << column;
}

TEST_F(SimulationCellsTest, HeadersAreTheGivenOnes) {
    std::vector<std::string> headers;
    for (int column = 1; column <= 17; ++column) headers.push_back(header(column));
    EXPECT_THAT(headers,
                ElementsAre("Simulation Title", "Run#", "Starting Date", "Ending Date", "Units",
                            "Temperature  Values", "Temperature Distribution", "Precipitation Distribution",
                            "Lapse Rate Distribution", "Runoff Coefficient Distribution",
                            "Critical Temp Distribution", "X/Y Recession Coefficient Distribution",
                            "Initial Runoff (CMS)", "Precipitation Threshold", "X Recesion Coefficient",
                            "Y Recession Coefficient", "Comments"));
}

TEST_F(SimulationCellsTest, AnEditSetsTheFlagsAndTurnsTheReportsOff) {
    go_to(2, 2);
    ASSERT_TRUE(enabled("mnuReports"));
    set(2, 2, "12");
    EXPECT_EQ(row(2).run_number, 12);
    EXPECT_EQ(cell(2, 2), "12");
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_TRUE(session_.basin.Input_Changed);
    EXPECT_TRUE(enabled("mnuFileItem(4)"));
    EXPECT_TRUE(enabled("mnuFileItem(5)"));
    EXPECT_FALSE(enabled("mnuReports"));
}

TEST_F(SimulationCellsTest, ANewBasinsEditsLeaveSaveOff) {
    session_.basin.New_Basin = true;
    session_.shell.save = false;
    set(1, 2, "12");
    EXPECT_FALSE(enabled("mnuFileItem(4)"));
    EXPECT_TRUE(enabled("mnuFileItem(5)"));
}

TEST_F(SimulationCellsTest, NumbersDatesListsAndTextsAreTyped) {
    set(1, 13, "1.75");
    set(1, 14, "5.5");
    set(1, 8, "B");
    set(1, 17, "dry year");
    set(1, 3, "02011996");
    EXPECT_EQ(row(1).initial_runoff, 1.75F);
    EXPECT_EQ(row(1).precipitation_threshold, 5.5F);
    EXPECT_EQ(row(1).comments, "dry year");
    EXPECT_EQ(cell(1, 3), "02/01/1996");
    EXPECT_EQ(session_.basin.Current_Start, *day_count({1996, 2, 1}));
    EXPECT_EQ(dialogs_.messages().size(), 0U);
}

TEST_F(SimulationCellsTest, F2AddsToTheExistingNumber) {
    row(1).initial_runoff = 12.5F;
    go_to(1, 13);
    key(Qt::Key_F2);
    key(Qt::Key_End);
    keys("5");
    key(Qt::Key_Return);
    EXPECT_EQ(row(1).initial_runoff, 12.55F);
}

TEST_F(SimulationCellsTest, AnEmptiedDateBecomesTheFirstOrLastDayOf1980) {
    go_to(1, 3);
    key(Qt::Key_F2);
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_Delete);
    key(Qt::Key_Tab);
    EXPECT_EQ(cell(1, 3), "01/01/1980");
    EXPECT_EQ(session_.basin.Current_Start, *day_count({1980, 1, 1}));
    go_to(1, 4);
    key(Qt::Key_F2);
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_Delete);
    key(Qt::Key_Tab);
    EXPECT_EQ(cell(1, 4), "12/31/1980");
    EXPECT_EQ(session_.basin.Current_End, *day_count({1980, 12, 31}));
}

TEST_F(SimulationCellsTest, EnterEndsTheEditAndKeepsTheSimulation) {
    go_to(1, 13);
    keys("2.5");
    key(Qt::Key_Return);
    EXPECT_EQ(row(1).initial_runoff, 2.5F);
    expect_active(1, 13);
    EXPECT_EQ(label(), "ellervane-1996");
    key(Qt::Key_Enter);
    expect_active(1, 13);
    EXPECT_EQ(session_.basin.Current_Sim_Name, "ellervane-1996");
}

TEST_F(SimulationCellsTest, ARefusedEntryIsReportedInTheStatusBar) {
    const auto told = [&] { return from_qt(window_->statusBar()->currentMessage()); };
    set(1, 13, "450,5");
    EXPECT_EQ(
        told(),
        "'450,5' is not accepted for Initial Runoff (CMS) of 'ellervane-1996': a number has a point as its "
        "decimal sign and no other separators.");
    set(1, 3, "02312006");
    EXPECT_EQ(
        told(),
        "'02/31/2006' is not accepted for Starting Date of 'ellervane-1996': the calendar has no such day.");
    set(1, 13, "2.5");
    EXPECT_EQ(told(), "");
    EXPECT_EQ(dialogs_.messages().size(), 0U);
}

TEST_F(SimulationCellsTest, DatesOutsideTheMasksRangeAreRefusedWithoutABox) {
    set(1, 3, "12311899");
    EXPECT_EQ(cell(1, 3), "01/01/1996");
    EXPECT_EQ(
        from_qt(window_->statusBar()->currentMessage()),
        "'12/31/1899' is not accepted for Starting Date of 'ellervane-1996': the year must lie between 1900 "
        "and 2300.");
    set(1, 4, "01012301");
    EXPECT_EQ(cell(1, 4), "12/31/1996");
    set(1, 3, "02301996");
    EXPECT_EQ(cell(1, 3), "01/01/1996");
    EXPECT_EQ(dialogs_.messages().size(), 0U);
}

TEST_F(SimulationCellsTest, UnitsRewriteTheHeaderOfTheInitialRunoffAndNothingOfTheBasin) {
    const auto zone_header_of = [&](int column) {
        return find<QTableView>("vaSpread1")->model()->headerData(column - 1, Qt::Horizontal).toString();
    };
    const QString zone_area = zone_header_of(2);
    set(2, 5, "E");
    EXPECT_EQ(row(2).units, Units::English);
    EXPECT_EQ(session_.basin.Units_Code, Units::English);
    EXPECT_EQ(session_.basin.basin_units, Units::Metric);
    EXPECT_EQ(header(13), "Initial Runoff (CFS)");
    find<QTableView>("DBGrid1")->selectRow(1);
    EXPECT_EQ(find<QLabel>("lblUnits")->text(), QStringLiteral("Metric"));
    EXPECT_EQ(find<QLabel>("Label1(5)")->text(), QStringLiteral("Reference Elevation (m):"));
    EXPECT_EQ(find<QLabel>("Label1(7)")->text(), QStringLiteral("Basin Area (km²):"));
    EXPECT_EQ(zone_header_of(2), zone_area);
    set(2, 5, "M");
    EXPECT_EQ(session_.basin.Units_Code, Units::Metric);
    EXPECT_EQ(header(13), "Initial Runoff (CMS)");
}

TEST_F(SimulationCellsTest, AStartThatMakesThePeriodTooLongIsRefusedInItsColour) {
    go_to(2, 3);
    QColor colour;
    QColor neighbour;
    std::string shown;
    dialogs_.while_shown = [&] {
        colour = cell_colour(2, 3);
        neighbour = cell_colour(2, 4);
        shown = cell(2, 3);
    };
    // 29 September 1997 to 30 September 1998 are 367 days.
    set(2, 3, "09291997");
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().text, "Date range error!  ");
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_EQ(shown, "09/29/1997");
    EXPECT_EQ(colour, QColor(0xFF, 0x80, 0x80));
    EXPECT_FALSE(neighbour.isValid());
    EXPECT_FALSE(cell_colour(2, 3).isValid());
    EXPECT_EQ(cell(2, 3), "10/01/1997");
    EXPECT_EQ(session_.basin.Current_Start, *day_count({1997, 10, 1}));
    expect_active(2, 3);
    EXPECT_EQ(QApplication::focusWidget(), grid());
}

TEST_F(SimulationCellsTest, APeriodOf366DaysIsAccepted) {
    set(2, 3, "09301997");
    EXPECT_EQ(dialogs_.messages().size(), 0U);
    EXPECT_EQ(cell(2, 3), "09/30/1997");
    EXPECT_EQ(session_.basin.Current_Start, *day_count({1997, 9, 30}));
}

TEST_F(SimulationCellsTest, AnEndThatIsNotLaterThanTheStartIsRefused) {
    for (const char* end : {"10011997", "09301997"}) {
        set(2, 4, end);
        ASSERT_FALSE(dialogs_.messages().empty());
        EXPECT_EQ(last_message().text, "Date range error!  ");
        EXPECT_EQ(cell(2, 4), "09/30/1998");
        expect_active(2, 4);
    }
    EXPECT_EQ(dialogs_.messages().size(), 2U);
}

TEST_F(SimulationCellsTest, ARowThatIsLeftUpwardsIsKeptAndStaysTheCurrentOne) {
    go_to(2, 4);
    keys("10011997");
    key(Qt::Key_Return);  // in the last row: the text is taken, but the cell is not left
    EXPECT_EQ(dialogs_.messages().size(), 0U);
    key(Qt::Key_Up);
    QTest::qWait(1);
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(cell(2, 4), "09/30/1998");
    EXPECT_EQ(cell(1, 4), "12/31/1996");
    expect_active(2, 4);
    EXPECT_EQ(session_.basin.Current_Sim_Name, "ellervane-1997-98");
    EXPECT_EQ(session_.basin.Current_End, *day_count({1998, 9, 30}));
}

TEST_F(SimulationCellsTest, AnotherWidgetThatTakesTheFocusChecksTheCellToo) {
    go_to(2, 4);
    keys("10011997");
    box(4)->setFocus();
    QTest::qWait(1);
    EXPECT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(cell(2, 4), "09/30/1998");
    EXPECT_EQ(QApplication::focusWidget(), grid());
}

TEST_F(SimulationCellsTest, TheFirstRowIsLeftUnchecked) {
    set(1, 3, "01011990");
    set(1, 4, "01011980");
    EXPECT_EQ(dialogs_.messages().size(), 0U);
    EXPECT_EQ(cell(1, 3), "01/01/1990");
    EXPECT_EQ(cell(1, 4), "01/01/1980");
    EXPECT_EQ(session_.basin.Current_End, *day_count({1980, 1, 1}));
}

TEST_F(SimulationCellsTest, MaxMinTemperaturesByZoneAreUndoneInColumnSeven) {
    set(2, 6, "Max");
    EXPECT_EQ(dialogs_.messages().size(), 0U);
    go_to(2, 7);
    QColor colour;
    dialogs_.while_shown = [&] { colour = cell_colour(2, 7); };
    set(2, 7, "By");
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().title, "Max/min temperature problem");
    EXPECT_EQ(last_message().text, "Max/min temperatures cannot currently be entered for each zone");
    EXPECT_EQ(colour, QColor(0xFF, 0x80, 0x80));
    EXPECT_EQ(cell(2, 7), "Basinwide");
    EXPECT_FALSE(cell_colour(2, 7).isValid());
}

TEST_F(SimulationCellsTest, MaxMinChosenAfterByZoneIsSeenOnlyWhenColumnSevenIsLeft) {
    set(2, 7, "By");
    set(2, 6, "Max", Qt::Key_Return);
    go_to(2, 8);
    EXPECT_EQ(dialogs_.messages().size(), 0U);
    EXPECT_EQ(cell(2, 6), "Max/Min");
    EXPECT_EQ(cell(2, 7), "By Zone");
    go_to(2, 7);
    go_to(2, 8);
    EXPECT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(cell(2, 7), "Basinwide");
    QTest::qWait(1);
    expect_active(2, 7);
}

TEST_F(SimulationCellsTest, NothingIsCheckedWhileQuickHelpIsOn) {
    go_to(2, 4);
    keys("10011997");
    key(Qt::Key_Return);
    quick_help_.set_on(true);
    grid()->setCurrentIndex(grid()->model()->index(0, 0));
    EXPECT_EQ(dialogs_.messages().size(), 0U);
}

TEST_F(SimulationCellsTest, TheNameCannotBeTyped) {
    go_to(2, 1);
    keys("x");
    key(Qt::Key_Return);
    EXPECT_EQ(cell(2, 1), "ellervane-1997-98");
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(SimulationCellsTest, CopyOfTheEditMenuTakesTheSelectedRow) {
    go_to(1, 5);
    choose("mnuEditItem(1)");
    const auto cells = QApplication::clipboard()->text().split(QLatin1Char('\t'));
    ASSERT_EQ(cells.size(), 17);
    EXPECT_EQ(cells[0], QStringLiteral("ellervane-1996"));
    EXPECT_EQ(cells[2], QStringLiteral("01/01/1996"));
    EXPECT_EQ(cells[4], QStringLiteral("Metric"));
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(SimulationCellsTest, TheEditMenuWorksOnTheBoxOrGridWithTheFocus) {
    box(4)->setFocus();
    box(4)->setText(QStringLiteral("Alder Creek"));
    box(4)->setSelection(0, 5);
    choose("mnuEditItem(0)");
    EXPECT_EQ(from_qt(box(4)->text()), " Creek");
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("Alder"));
    EXPECT_EQ(row(1).name, "ellervane-1996");
    EXPECT_EQ(cell(1, 3), "01/01/1996");
    auto* zones = find<GridView>("vaSpread1");
    zones->setFocus();
    zones->setCurrentIndex(zones->model()->index(1, 0));
    choose("mnuEditItem(2)");
    EXPECT_EQ(session_.basin.zones[1].id, "Alder");
    EXPECT_EQ(dialogs_.messages().size(), 0U);
}

TEST_F(SimulationCellsTest, ASinglePastedValueGoesToTheActiveCell) {
    QApplication::clipboard()->setText(QStringLiteral("7.25\n"));
    go_to(2, 13);
    choose("mnuEditItem(2)");
    EXPECT_EQ(row(2).initial_runoff, 7.25F);
    EXPECT_EQ(cell(2, 1), "ellervane-1997-98");
    EXPECT_EQ(dialogs_.messages().size(), 0U);
}

TEST_F(SimulationCellsTest, PasteOfTheEditMenuDoesNotChangeTheNameAndSaysSo) {
    go_to(1, 5);
    choose("mnuEditItem(1)");
    go_to(2, 5);
    dialogs_.then(Answer::Yes);
    choose("mnuEditItem(2)");
    EXPECT_EQ(cell(2, 1), "ellervane-1997-98");
    EXPECT_EQ(cell(2, 3), "01/01/1996");
    EXPECT_EQ(cell(2, 4), "12/31/1996");
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_THAT(last_message().text,
                testing::StartsWith(
                    "1 of the 17 pasted cells can't be accepted: 'ellervane-1996' for Simulation Title "
                    "of 'ellervane-1997-98'; a simulation keeps its name"));
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_FALSE(enabled("mnuReports"));
}

TEST_F(SimulationCellsTest, CutOfTheEditMenuEmptiesAllButTheName) {
    row(2).comments = "remark";
    go_to(2, 5);
    choose("mnuEditItem(0)");
    EXPECT_EQ(cell(2, 1), "ellervane-1997-98");
    EXPECT_EQ(cell(2, 3), "01/01/1980");
    EXPECT_EQ(cell(2, 4), "12/31/1980");
    EXPECT_EQ(cell(2, 17), "");
    EXPECT_FALSE(row(2).precipitation_threshold.has_value());  // missing, not zero
    EXPECT_THAT(from_qt(QApplication::clipboard()->text()), testing::StartsWith("ellervane-1997-98\t"));
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

TEST_F(SimulationCellsTest, ArrowsSelectRowsAndUpStopsAtTheFirst) {
    go_to(1, 3);
    key(Qt::Key_Down);
    EXPECT_EQ(label(), "ellervane-1997-98");
    EXPECT_EQ(session_.basin.Current_Start, *day_count({1997, 10, 1}));
    EXPECT_EQ(session_.basin.Current_End, *day_count({1998, 9, 30}));
    key(Qt::Key_Up);
    key(Qt::Key_Up);
    EXPECT_EQ(label(), "ellervane-1996");
    expect_active(1, 3);
}

TEST_F(SimulationCellsTest, ACellThatIsBeingTypedInIsPutIntoACopyOfTheBasin) {
    go_to(1, 17);
    keys("some comments");
    BasinState copy = session_.basin;
    session_.desktop.put_typed_cell(copy);
    EXPECT_EQ(copy.simulations[0].comments, "some comments");
    EXPECT_TRUE(copy.Input_Changed);
    EXPECT_NE(session_.basin.simulations[0].comments, "some comments");
    EXPECT_FALSE(session_.basin.Basin_Changed);
    key(Qt::Key_Escape);
    BasinState after = session_.basin;
    session_.desktop.put_typed_cell(after);
    EXPECT_FALSE(after.Basin_Changed);
}

}  // namespace
}  // namespace nivora
