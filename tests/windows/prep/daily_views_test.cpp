#include "tests/windows/prep/daily_window_fixture.h"

#include <QScrollBar>
#include <QSignalSpy>
#include <QStatusBar>

namespace nivora {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// What the daily editor shows in each of its views.
class DailyViewsTest : public DailyWindowTest {};

TEST_F(DailyViewsTest, TheVariablesShowEightColumnsWithTheCurvesName) {
    open_variables();
    EXPECT_EQ(from_qt(window_->windowTitle()), "Edit basin variables");
    EXPECT_THAT(headers(),
                ElementsAre("Date", "Runoff", "Tmax", "Tmin", "Tavg", "CDC", "Precip", "NetRadiation"));
    EXPECT_EQ(grid()->model()->rowCount(), 4);
    EXPECT_EQ(shown(1, 1), "10/01/1980");
    EXPECT_EQ(shown(1, 2), "101.00");
    EXPECT_EQ(shown(4, 2), "104.00");
    EXPECT_EQ(shown(1, 3), "");
    EXPECT_THAT(from_qt(find<QLabel>("Label1(1)")->text()), HasSubstr("Basin variables for simulation s"));
    EXPECT_THAT(from_qt(find<QLabel>("Label1(0)")->text()), HasSubstr("Alp"));
    EXPECT_EQ(zone_title(), "Zone 1 of 2");
    EXPECT_EQ(zone()->maximum(), 2);
}

TEST_F(DailyViewsTest, ButtonsAndEditMenuHaveTheGivenCaptions) {
    open_variables();
    std::vector<std::string> captions;
    for (int index = 0; index < 4; ++index) captions.push_back(from_qt(button(index)->text()));
    EXPECT_THAT(captions, ElementsAre("&Done", "&Cancel", "&Print", "&Help"));
    EXPECT_TRUE(find<QPushButton>("Command1(2)")->isEnabled());
    EXPECT_TRUE(find<QAction>("mnuEditItm(5)")->isEnabled());
    const auto caption = [&](const char* name) { return from_qt(find<QAction>(name)->text()); };
    EXPECT_EQ(caption("mnuEditItm(0)"), "&Cut");
    EXPECT_EQ(caption("mnuEditItm(1)"), "C&opy");
    EXPECT_EQ(caption("mnuEditItm(3)"), "&Paste");
    EXPECT_EQ(caption("mnuEditItm(5)"), "Prin&t");
    EXPECT_EQ(caption("mnuEditItm(7)"), "&Edit multiple days");
    EXPECT_EQ(caption("mnuEditItmAct(0)"), "&Add to each day");
    EXPECT_EQ(caption("mnuEditItmAct(1)"), "Multiply each day");
    EXPECT_EQ(caption("mnuEditItm(9)"), "&Switch Scroll Style");
}

TEST_F(DailyViewsTest, ValuesAreBlueAndTheDateIsLocked) {
    open_variables();
    const auto* model = grid()->model();
    EXPECT_EQ(model->index(0, 1).data(Qt::ForegroundRole).value<QColor>(), QColor(0, 0, 255));
    EXPECT_FALSE((model->flags(model->index(0, 0)) & Qt::ItemIsEditable) != 0);
    for (int column = 1; column < 8; ++column)
        EXPECT_TRUE((model->flags(model->index(0, column)) & Qt::ItemIsEditable) != 0) << column;
}

TEST_F(DailyViewsTest, TwoDecimalsShowAndTheWholeValueIsKept) {
    open_variables();
    set(1, 2, "0.025");
    EXPECT_EQ(shown(1, 2), "0.03");  // halves away from zero
    EXPECT_EQ(whole(1, 2), "0.025");
}

TEST_F(DailyViewsTest, TheParametersShowTenColumns) {
    open_parameters();
    EXPECT_EQ(from_qt(window_->windowTitle()), "Edit simulation parameters");
    EXPECT_THAT(headers(), ElementsAre("Date", "LapseRate", "Tcrit", "AN", "LagTime", "CS", "Cr", "RCA",
                                       "Xcoeff", "Ycoeff"));
    EXPECT_THAT(from_qt(find<QLabel>("Label1(1)")->text()), HasSubstr("Parameter table for simulation s"));
    EXPECT_EQ(kind(8), CellFormat::Kind::Integer);
    EXPECT_EQ(kind(9), CellFormat::Kind::Number);
    EXPECT_EQ(shown(1, 5), "18.00");
    EXPECT_EQ(shown(1, 8), "0");
    EXPECT_EQ(shown(1, 9), "1.0500");
    EXPECT_EQ(shown(1, 10), "0.0250");
}

TEST_F(DailyViewsTest, UnitsOfTheBasinAreInTipsTheStatusBarAndQuickHelp) {
    session_.basin.basin_units = Units::English;
    open_variables();
    const auto tip = [&](int column) {
        return from_qt(grid()->model()->headerData(column - 1, Qt::Horizontal, Qt::ToolTipRole).toString());
    };
    EXPECT_EQ(tip(2), "Runoff: ft³/s");
    EXPECT_EQ(tip(6), "CDC: a fraction, 0 to 1");
    EXPECT_EQ(tip(7), "Precip: inches");
    EXPECT_EQ(from_qt(grid()->model()->index(0, 6).data(Qt::ToolTipRole).toString()), "Precip: inches");
    go_to(1, 7);
    EXPECT_EQ(from_qt(find<QLabel>("unitPanel")->text()), "Precip: inches");
    quick_help_.set_on(true);
    QTest::mouseClick(grid()->viewport(), Qt::LeftButton, Qt::NoModifier,
                      grid()->visualRect(grid()->model()->index(1, 6)).center());
    EXPECT_THAT(from_qt(window_->help_text()), testing::EndsWith("Unit: inches."));
}

TEST_F(DailyViewsTest, ASimulationInOtherUnitsLeavesTheUnitsOfTheBasinsVariables) {
    session_.basin.basin_units = Units::Metric;
    session_.basin.Units_Code = Units::English;
    open_variables();
    EXPECT_EQ(from_qt(grid()->model()->headerData(6, Qt::Horizontal, Qt::ToolTipRole).toString()),
              "Precip: cm");
}

TEST_F(DailyViewsTest, TheNineParametersNameTheirUnits) {
    open_parameters();
    std::vector<std::string> tips;
    for (int column = 1; column < 10; ++column)
        tips.push_back(
            from_qt(grid()->model()->headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString()));
    EXPECT_THAT(tips, ElementsAre("LapseRate: °C per 100 m", "Tcrit: °C above 0 °C", "AN: cm/(°C·day)",
                                  "LagTime: hours", "CS: a fraction, 0 to 1", "Cr: a fraction, 0 to 1",
                                  "RCA: 0 or 1", "Xcoeff: no unit", "Ycoeff: no unit"));
}

TEST_F(DailyViewsTest, TheLagGoesFromZeroToFortyTwoHours) {
    open_parameters();
    set(1, 5, "42");
    EXPECT_EQ(whole(1, 5), "42");
    set(1, 5, "42.01");
    EXPECT_EQ(whole(1, 5), "42");
    set(1, 5, "-0.01");
    EXPECT_EQ(whole(1, 5), "42");
    set(1, 5, "0");
    EXPECT_EQ(whole(1, 5), "0");
}

TEST_F(DailyViewsTest, RecessionCoefficientsGoFromMinusToPlusNineNinetyNine) {
    open_parameters();
    for (const int column : {9, 10}) {
        set(1, column, "9.99");
        EXPECT_EQ(whole(1, column), "9.99");
        set(1, column, "9.991");
        EXPECT_EQ(whole(1, column), "9.99");
        set(1, column, "-9.99");
        EXPECT_EQ(whole(1, column), "-9.99");
        set(1, column, "-10");
        EXPECT_EQ(whole(1, column), "-9.99");
        set(1, column, "0.025");
        EXPECT_EQ(whole(1, column), "0.025");
    }
}

TEST_F(DailyViewsTest, TheRainContributingAreaIsZeroOrOne) {
    open_parameters();
    set(1, 8, "1");
    EXPECT_EQ(shown(1, 8), "1");
    set(1, 8, "2");
    EXPECT_EQ(shown(1, 8), "1");
    set(1, 8, "-1");
    EXPECT_EQ(shown(1, 8), "1");
    set(1, 8, "0");
    EXPECT_EQ(shown(1, 8), "0");
}

TEST_F(DailyViewsTest, TheResultsShowTheDateAndAllFieldsButTheZone) {
    open_results();
    EXPECT_EQ(from_qt(window_->windowTitle()), "Simulation results");
    EXPECT_EQ(grid()->model()->columnCount(), 56);
    EXPECT_EQ(header(1), "Date");
    EXPECT_EQ(header(2), "ActualQ");
    EXPECT_EQ(header(41), "M·(1-S)");
    EXPECT_EQ(header(56), "AZMwork");
    EXPECT_THAT(headers(), Not(Contains(HasSubstr("SCA"))));
    EXPECT_THAT(headers(), testing::AllOf(Contains("CDC"), Contains("CDCCC"), Contains("CDCclim"),
                                          Contains("CDCclimWA"), Contains("CDCclimWAMA")));
    EXPECT_THAT(from_qt(find<QLabel>("Label1(1)")->text()),
                HasSubstr("Calculated value table for simulation s"));
    EXPECT_EQ(shown(1, 46), "5.00");  // DailyQ, the 47th field of the table
}

TEST_F(DailyViewsTest, ResultsCanBeEdited) {
    open_results();
    set(1, 46, "7.5");
    EXPECT_EQ(shown(1, 46), "7.50");
    set(1, 30, "1");  // RCA, a whole number
    EXPECT_EQ(kind(30), CellFormat::Kind::Integer);
    EXPECT_EQ(shown(1, 30), "1");
}

TEST_F(DailyViewsTest, ResultsThatAreEmptyAreRefusedAndTheWindowDoesNotOpen) {
    {
        BasinDatabase database = file_.open();
        database.create_table(sim_results_table());
    }
    session_.prep.query = {
        .table = k_sim_results, .fields = {"Date", "DailyQ"}, .period = Period{october(1), october(4)}};
    session_.prep.Data_View = DataView::Results;
    open();
    EXPECT_FALSE(opened_);
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text,
              "Simulation results table does not match the current simulation.  Please run the current "
              "simulation/climate change again.");
    EXPECT_EQ(last_message().icon, Icon::Stop);
}

TEST_F(DailyViewsTest, ATableThatIsMissingIsCorrupt) {
    session_.prep.query = {.table = "gone", .fields = {"Date", "An"}, .period = std::nullopt};
    session_.prep.Data_View = DataView::Parameters;
    open();
    EXPECT_FALSE(opened_);
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text, "Data table corrupt!");
    EXPECT_EQ(last_message().icon, Icon::Stop);
}

TEST_F(DailyViewsTest, TheScenarioViewIsReadOnlyAndShowsSeventeenColumns) {
    add_physical(1, 4);
    make_parameter_table("s");
    ParameterRow row;
    row.zone = 1;
    row.date = october(2);
    row.rca = std::int16_t{1};
    row.xcoeff = 1.125;
    add_parameters("s", {row});
    session_.prep.Data_View = DataView::Scenario;
    session_.prep.Edit_Locked = true;
    session_.prep.window_title = "Scenario";
    session_.prep.query = {
        .table = "s", .fields = daily_fields(DataView::Scenario), .period = Period{october(1), october(4)}};
    open();
    EXPECT_EQ(grid()->model()->columnCount(), 17);
    EXPECT_THAT(headers(),
                ElementsAre("Date", "Runoff", "TMax", "Tmin", "Tavg", "Precip", "SCA", "NetRadiation",
                            "LapseRate", "Tcrit", "AN", "LagTime", "CS", "cr", "RCA", "Xcoeff", "Ycoeff"));
    EXPECT_EQ(grid()->model()->rowCount(), 1);
    EXPECT_EQ(shown(1, 2), "102.00");
    EXPECT_EQ(kind(15), CellFormat::Kind::Integer);
    EXPECT_EQ(kind(16), CellFormat::Kind::Number);
    EXPECT_EQ(shown(1, 16), "1.1250");
    set(1, 2, "9");
    EXPECT_EQ(shown(1, 2), "102.00");
}

TEST_F(DailyViewsTest, EveryViewHasItsOwnTopicOfTheManual) {
    open_variables();
    press(3);
    press(1);
    open_parameters();
    press(3);
    press(1);
    open_results();
    press(3);
    ASSERT_EQ(desktop_.topics.size(), 3U);
    EXPECT_EQ(desktop_.topics[1], 71);
    EXPECT_EQ(desktop_.topics[2], 72);
    EXPECT_NE(desktop_.topics[0], 71);
    EXPECT_NE(desktop_.topics[0], 72);
}

TEST_F(DailyViewsTest, AClimateRunUnderWayMakesTheGridReadOnly) {
    for (const int step : {1, 5}) {
        session_.run.ClimateStep = step;
        if (step == 1) add_physical(1, 4);
        open_prepared_variables();
        EXPECT_EQ(from_qt(window_->windowTitle()),
                  "Edit basin variables (Read-only during climate change processing)");
        EXPECT_TRUE(session_.prep.Edit_Locked);
        set(1, 2, "9");
        EXPECT_EQ(shown(1, 2), "101.00");
        go_to(1, 3);
        key(Qt::Key_Delete);
        key(Qt::Key_Down);
        EXPECT_EQ(shown(1, 3), "");
        go_to(1, 2);
        key(Qt::Key_X, Qt::ControlModifier);
        EXPECT_EQ(shown(1, 2), "101.00");
        EXPECT_FALSE(find<QAction>("mnuEditItm(0)")->isEnabled());
        EXPECT_TRUE(find<QAction>("mnuEditItm(1)")->isEnabled());
        EXPECT_FALSE(find<QAction>("mnuEditItm(3)")->isEnabled());
        EXPECT_FALSE(find<QAction>("mnuEditItm(7)")->isEnabled());
        press(0);
        EXPECT_EQ(session_.run.ClimateStep, step);
    }
    EXPECT_EQ(messages(), 0U);
}

TEST_F(DailyViewsTest, BeforeAndAfterAClimateRunTheGridIsOpen) {
    for (const int step : {0, 6}) {
        session_.run.ClimateStep = step;
        if (step == 0) add_physical(1, 4);
        open_prepared_variables();
        EXPECT_EQ(from_qt(window_->windowTitle()), "Edit basin variables");
        EXPECT_FALSE(session_.prep.Edit_Locked);
        set(1, 2, "9");
        EXPECT_EQ(shown(1, 2), "9.00");
        press(1);
    }
}

TEST_F(DailyViewsTest, WidthsAreMeasuredOnceForAView) {
    open_variables();
    const auto kept = session_.prep.column_widths.at(0);
    ASSERT_EQ(kept.size(), 8U);
    press(1);
    file_.change("UPDATE PhysicalData SET Runoff = 123456789012");
    open_prepared_variables();
    EXPECT_EQ(session_.prep.column_widths.at(0), kept);
    EXPECT_EQ(grid()->columnWidth(1), kept[1]);
}

TEST_F(DailyViewsTest, ClosingIsRefusedWhileQuickHelpIsOn) {
    open_variables();
    quick_help_.set_on(true);
    EXPECT_FALSE(window_->close());
    EXPECT_TRUE(window_->isVisible());
    quick_help_.set_on(false);
    EXPECT_TRUE(window_->close());
}

TEST_F(DailyViewsTest, AnotherZoneKeepsTheBlockAndTheScrollPosition) {
    session_.basin.simulations.back().end = october(200);
    select_simulation(session_.basin, session_.basin.simulations.size() - 1);
    add_physical(1, 200);
    open_prepared_variables();
    select(61, 2, 63, 3);
    grid()->verticalScrollBar()->setValue(50);
    const QSignalSpy resets(grid()->model(), &QAbstractItemModel::modelReset);
    zone()->setValue(2);
    EXPECT_EQ(whole(61, 2), "261");  // 200 of the zone, 61 of the day
    EXPECT_TRUE(resets.isEmpty());
    const CellRange block = grid()->block();
    EXPECT_EQ(block.first_row, 60);
    EXPECT_EQ(block.last_row, 62);
    EXPECT_EQ(block.first_column, 1);
    EXPECT_EQ(block.last_column, 2);
    EXPECT_EQ(grid()->currentIndex(), grid()->model()->index(60, 1));
    EXPECT_EQ(grid()->verticalScrollBar()->value(), 50);
}

TEST_F(DailyViewsTest, AZoneWithFewerDaysLosesRowsAtTheEnd) {
    add_physical(1, 4);
    file_.open().execute("DELETE FROM PhysicalData WHERE Zone = 2 AND Date > " + std::to_string(october(2)));
    session_.prep.Data_View = DataView::PhysicalData;
    session_.prep.query = {.table = k_physical_data,
                           .fields = daily_fields(DataView::PhysicalData),
                           .period = Period{october(1), october(4)}};
    open();
    ASSERT_EQ(grid()->model()->rowCount(), 4);
    go_to(4, 2);
    const QSignalSpy removed(grid()->model(), &QAbstractItemModel::rowsRemoved);
    zone()->setValue(2);
    EXPECT_EQ(grid()->model()->rowCount(), 2);
    EXPECT_EQ(grid()->currentIndex(), grid()->model()->index(1, 1));
    zone()->setValue(1);
    EXPECT_EQ(grid()->model()->rowCount(), 4);
    EXPECT_EQ(grid()->verticalHeader()->count(), 4);
    ASSERT_EQ(removed.size(), 1);
    EXPECT_EQ(removed[0][1].toInt(), 2);
    EXPECT_EQ(removed[0][2].toInt(), 3);
}

}  // namespace
}  // namespace nivora
