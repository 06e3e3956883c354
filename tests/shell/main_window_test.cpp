#include "tests/shell/main_window_fixture.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::HasSubstr;

TEST_F(MainWindowTest, AFreshBasinShowsItsNameUnitsListAndNoZones) {
    EXPECT_EQ(window_->windowTitle(), QStringLiteral("NIVORA - Hollin Flow Model for Windows"));
    EXPECT_EQ(box(0)->text(), QStringLiteral("<basin name>"));
    EXPECT_TRUE(find<QComboBox>("Combo1")->isVisible());
    EXPECT_EQ(find<QComboBox>("Combo1")->currentIndex(), -1);
    EXPECT_FALSE(box(1)->isVisible());
    EXPECT_FALSE(find<QLabel>("lblZones")->isVisible());
    EXPECT_FALSE(find<QLabel>("Label1(2)")->isVisible());
    EXPECT_EQ(find<QLabel>("lblBasinArea")->text(), QStringLiteral("--"));
    EXPECT_THAT(find<QLabel>("panel1")->text().toStdString(), HasSubstr("null.mdb"));
    EXPECT_EQ(find<QLabel>("panel2")->text(), QStringLiteral("Temperature"));
}

TEST_F(MainWindowTest, AFreshBasinCanBeSavedAsAndNotBeRun) {
    EXPECT_FALSE(enabled("mnuFileItem(4)"));
    EXPECT_TRUE(enabled("mnuFileItem(5)"));
    for (const char* action : {"mnuRunSim", "mnuRunFor", "mnuRunClim", "mnuDataOpt(2)", "mnuDataOpt(5)",
                               "mnuDataOptVar(0)", "mnuDataOptVar(1)", "mnuWinGraphics", "mnuReports"}) {
        EXPECT_FALSE(enabled(action)) << action;
    }
    EXPECT_FALSE(find<QPushButton>("Command1(1)")->isEnabled());
    EXPECT_FALSE(find<QPushButton>("Command1(2)")->isEnabled());
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(MainWindowTest, UnitsThenZonesFixTheBasinInThatOrder) {
    auto* units = find<QComboBox>("Combo1");
    units->setFocus();
    units->setCurrentIndex(1);
    EXPECT_EQ(find<QLabel>("Label1(5)")->text(), QStringLiteral("Reference Elevation (ft):"));
    dialogs_.then(Answer::Yes);
    QTest::keyClick(units, Qt::Key_Return);
    QTest::qWait(1);
    EXPECT_EQ(last_message().title, "Are you sure you want to use these units?");
    EXPECT_EQ(last_message().text,
              "All further data used in this basin must be expressed using these units.  Continue?");
    EXPECT_FALSE(units->isVisible());
    EXPECT_EQ(find<QLabel>("lblUnits")->text(), QStringLiteral("English"));
    EXPECT_TRUE(box(1)->isVisible());

    type(1, "3");
    dialogs_.then(Answer::Yes);
    let_pass("frmPopulate");
    leave(box(1));
    EXPECT_EQ(last_message().title, "Zone definition");
    EXPECT_FALSE(box(1)->isVisible());
    EXPECT_EQ(find<QLabel>("lblZones")->text(), QStringLiteral("3"));
    EXPECT_EQ(find<QTableView>("vaSpread1")->model()->rowCount(), 3);
    EXPECT_TRUE(enabled("mnuTools"));
    EXPECT_TRUE(enabled("mnuDataOpt(4)"));
}

TEST_F(MainWindowTest, NoToTheUnitsClearsTheList) {
    auto* units = find<QComboBox>("Combo1");
    units->setCurrentIndex(0);
    dialogs_.then(Answer::No);
    QTest::keyClick(units, Qt::Key_Return);
    EXPECT_EQ(units->currentIndex(), -1);
    EXPECT_TRUE(units->isVisible());
}

TEST_F(MainWindowTest, EnterInAnEmptyUnitsListAsksForUnits) {
    QTest::keyClick(find<QComboBox>("Combo1"), Qt::Key_Return);
    EXPECT_EQ(last_message().title, "No 'Units of Measurement' selected");
    EXPECT_EQ(last_message().text, "Please select a 'Units of Measurement' before continuing");
}

TEST_F(MainWindowTest, AnElevationOutOfRangeIsRefusedAndEmptied) {
    type(2, "8850");
    leave(box(2));
    EXPECT_EQ(last_message().title, "Unreasonable basin elevation");
    EXPECT_EQ(box(2)->text(), QString{});
    type(2, "8849");
    leave(box(2));
    EXPECT_EQ(box(2)->text(), QStringLiteral("8849"));
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_EQ(session_.basin.reference_elevation_text, "8849");
}

TEST_F(MainWindowTest, KeysThatABoxDoesNotTakeNeverReachIt) {
    type(2, "12.5-x7");
    EXPECT_EQ(box(2)->text(), QStringLiteral("1257"));
    type(3, "-45.5.-5");
    EXPECT_EQ(box(3)->text(), QStringLiteral("-45.55"));
}

TEST_F(MainWindowTest, AMinusSignInTheMiddleOfALatitudeIsRemoved) {
    box(3)->setText(QStringLiteral("4-5"));
    EXPECT_EQ(last_message().title, "Invalid character");
    EXPECT_EQ(box(3)->text(), QStringLiteral("45"));
}

TEST_F(MainWindowTest, AnEmptiedNameGetsThePlaceholderBack) {
    box(0)->clear();
    leave(box(0));
    EXPECT_EQ(last_message().text, "A basin name is required!");
    EXPECT_EQ(box(0)->text(), QStringLiteral("<basin name>"));
}

TEST_F(MainWindowTest, EnterMovesThroughTheBoxesInTheirOrder) {
    box(2)->setFocus();
    QTest::keyClick(box(2), Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), box(3));
    QTest::keyClick(box(3), Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), box(5));
    QTest::keyClick(box(5), Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), box(4));
    QTest::keyClick(box(4), Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), find<QTableView>("vaSpread1"));
}

TEST_F(MainWindowTest, AddingASimulationNeedsTheBasinsDefinition) {
    find<QPushButton>("Command1(0)")->click();
    EXPECT_EQ(last_message().text,
              "Provide a name for the basin, the # of zones, and the units of measurement before creating a "
              "simulation");
}

TEST_F(MainWindowTest, TheSampleOpensWithItsZonesAndSimulations) {
    const auto file = open_sample();
    EXPECT_EQ(box(0)->text(), QStringLiteral("Ellervane at Corben Bridge"));
    EXPECT_EQ(find<QTableView>("vaSpread1")->model()->rowCount(), 5);
    auto* simulations = find<QTableView>("DBGrid1")->model();
    EXPECT_EQ(simulations->rowCount(), 2);
    EXPECT_EQ(simulations->index(0, 2).data().toString(), QStringLiteral("01/01/1996"));
    EXPECT_EQ(simulations->headerData(12, Qt::Horizontal).toString(), QStringLiteral("Initial Runoff (CMS)"));
    EXPECT_EQ(find<QLabel>("lblBasinArea")->text(), QStringLiteral("281.6"));
    EXPECT_EQ(find<QLabel>("lblSimVisible")->text(), QStringLiteral("ellervane-1996"));
    EXPECT_EQ(find<QLabel>("panel1")->text(), QString::fromStdString(file.string()));
    for (const char* action : {"mnuFileItem(4)", "mnuRunSim", "mnuRunFor", "mnuRunClim", "mnuDataOpt(5)",
                               "mnuDataOptVar(1)", "mnuWinGraphics", "mnuReports", "mnuTools"}) {
        EXPECT_TRUE(enabled(action)) << action;
    }
    EXPECT_TRUE(find<QAction>("mnuFileArray(1)")->isVisible());
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(MainWindowTest, ARunShowsTheStatisticsOfTheSample) {
    open_sample();
    look_at_modal("Results", [](QWidget* results) {
        EXPECT_EQ(results->windowTitle(), QStringLiteral("Statistics, Year round Simulation"));
        auto* table = results->findChild<QTableView*>(QStringLiteral("SpdStat"));
        EXPECT_EQ(table->model()->index(0, 0).data().toString(),
                  QStringLiteral("Measured Runoff Volume (10^6 m³)"));
        EXPECT_EQ(table->model()->index(5, 1).data().toString(), QStringLiteral("0.8930097"));
        EXPECT_EQ(results->findChild<QLabel*>(QStringLiteral("Lbl(8)"))->text(),
                  QStringLiteral("ellervane-1996"));
    });
    choose("mnuRunSimVar(1)");
    EXPECT_TRUE(seen_);
    EXPECT_TRUE(session_.basin.Output_Valid);
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_FALSE(session_.basin.Input_Changed);
    EXPECT_TRUE(enabled("mnuDataOpt(7)"));
    EXPECT_EQ(session_.run.LastRunSimulation, "ellervane-1996");
}

TEST_F(MainWindowTest, AForecastAsksForItsIntervalAndSaysSoInTheCaption) {
    open_sample();
    dialogs_.then_text("7");
    look_at_modal("Results", [](QWidget* results) {
        EXPECT_EQ(results->windowTitle(),
                  QStringLiteral("Statistics, Melt Season Forecast (updating every 7 days)"));
    });
    choose("mnuRunForVar(0)");
    EXPECT_TRUE(seen_);
    EXPECT_EQ(dialogs_.inputs().back().title, "Enter Forecast Frequency");
}

TEST_F(MainWindowTest, ARefusedForecastRunsNothing) {
    open_sample();
    dialogs_.then_text("12");
    choose("mnuRunForVar(1)");
    EXPECT_EQ(last_message().title, "Invalid forecast frequency!");
    EXPECT_FALSE(session_.basin.Output_Valid);
}

TEST_F(MainWindowTest, OpeningTheRunMenuReportsAMissingReferenceElevation) {
    open_sample();
    box(2)->clear();
    emit find<QMenu>("mnuRun")->aboutToShow();
    EXPECT_EQ(last_message().title, "Missing a required value");
    EXPECT_EQ(last_message().text, "Please provide a basin reference elevation before continuing");
}

TEST_F(MainWindowTest, OpeningTheRunMenuReportsZonesInTheWrongOrder) {
    open_sample();
    auto* zones = find<QTableView>("vaSpread1")->model();
    zones->setData(zones->index(2, 2), QStringLiteral("100"));
    emit find<QMenu>("mnuRun")->aboutToShow();
    EXPECT_EQ(last_message().text, "Hypsometric elevations must be in increasing order by zone");
    EXPECT_EQ(find<QTableView>("vaSpread1")->currentIndex().row(), 2);
    EXPECT_EQ(find<QTableView>("vaSpread1")->currentIndex().column(), 2);
}

TEST_F(MainWindowTest, AnEditedAreaShowsInTheTotal) {
    open_sample();
    auto* zones = find<QTableView>("vaSpread1")->model();
    zones->setData(zones->index(0, 1), QStringLiteral("40.1"));
    // 281.6 - 38.6 + 40.1 = 283.1
    EXPECT_EQ(find<QLabel>("lblBasinArea")->text(), QStringLiteral("283.1"));
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

TEST_F(MainWindowTest, NoSnowModeTurnsTheMeltSeasonRunsOff) {
    open_sample();
    choose("mnuOptItem(0)");
    EXPECT_EQ(last_message().title, "No Snow Description");
    EXPECT_TRUE(find<QAction>("mnuOptItem(0)")->isChecked());
    EXPECT_FALSE(enabled("mnuRunSimVar(0)"));
    EXPECT_FALSE(enabled("mnuRunForVar(0)"));
    EXPECT_FALSE(enabled("mnuRunClim"));
    EXPECT_TRUE(enabled("mnuRunSimVar(1)"));
    choose("mnuOptItem(0)");
    EXPECT_TRUE(enabled("mnuRunSimVar(0)"));
}

TEST_F(MainWindowTest, TheMeltingProcedureShowsInTheStatusBarAndChangesNoRun) {
    choose("mnuOptSubItem(1)");
    EXPECT_EQ(find<QLabel>("panel2")->text(), QStringLiteral("Temperature/Radiation"));
    EXPECT_FALSE(find<QAction>("mnuOptSubItem(0)")->isChecked());
}

TEST_F(MainWindowTest, TheConversionIsStillInDevelopment) {
    open_sample();
    choose("mnuToolsItm(2)");
    EXPECT_EQ(last_message().text, "Database conversion routine in development");
}

TEST_F(MainWindowTest, ClosingAsksAboutChangesAndStaysOnCancel) {
    open_sample();
    type(4, "snow and larch");
    dialogs_.then(Answer::Cancel);
    EXPECT_FALSE(window_->close());
    EXPECT_TRUE(window_->isVisible());
    dialogs_.then(Answer::No);
    EXPECT_TRUE(window_->close());
}

TEST_F(MainWindowTest, SavingUnderANewNameAndReopeningBringsEverythingBack) {
    open_sample();
    type(4, "snow and larch");
    const auto copy = user_ / "copy.mdb";
    dialogs_.then_file(copy);
    choose("mnuFileItem(5)");
    EXPECT_EQ(session_.basin.Basin_File, copy);
    choose("mnuFileItem(0)");
    EXPECT_EQ(box(4)->text(), QString{});
    dialogs_.then_file(copy);
    choose("mnuFileItem(1)");
    EXPECT_EQ(box(4)->text(), QStringLiteral("snow and larch"));
    EXPECT_EQ(box(3)->text(), QStringLiteral("46.5"));
}

TEST_F(MainWindowTest, EveryBoxAndGridHasItsHelpLine) {
    for (const char* name :
         {"Text(0)", "Text(2)", "vaSpread1", "DBGrid1", "Combo1", "lblBasinArea", "Command1(0)"}) {
        EXPECT_TRUE(find<QWidget>(name)->property(k_help_line).isValid()) << name;
    }
}

TEST_F(MainWindowTest, ADestroyedWindowIsNotCalled) {
    window_.reset();
    session_.desktop.refresh_main_window();
    session_.desktop.show_help_topic(0);
    EXPECT_FALSE(session_.desktop.refuses_typed_box());
}

}  // namespace
}  // namespace nivora
