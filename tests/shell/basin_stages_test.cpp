#include "store/monthly_table.h"
#include "tests/shell/main_window_fixture.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

/// The three visible stages of a new basin, and the questions between them.
class BasinStagesTest : public MainWindowTest {
protected:
    struct Shown {
        bool units_list;
        bool zones_box;
        bool zones_fixed;
        bool zones_label;
    };
    void expect_shown(const Shown& shown) {
        EXPECT_EQ(find<QComboBox>("Combo1")->isVisible(), shown.units_list);
        EXPECT_EQ(find<QLabel>("lblUnits")->isVisible(), !shown.units_list);
        EXPECT_EQ(box(1)->isVisible(), shown.zones_box);
        EXPECT_EQ(find<QLabel>("lblZones")->isVisible(), shown.zones_fixed);
        EXPECT_EQ(find<QLabel>("Label1(2)")->isVisible(), shown.zones_label);
    }
    QString header(int column) {
        return find<QTableView>("vaSpread1")
            ->model()
            ->headerData(column - 1, Qt::Horizontal)
            .toString()
            .trimmed();
    }
    BasinDescription stored() {
        BasinDatabase database{program_ / "new.mdb", Access::ReadOnly};
        return read_basin_description(database);
    }
};

TEST_F(BasinStagesTest, FirstTheUnitsAreShownAndTheZonesAreNot) {
    expect_shown({.units_list = true, .zones_box = false, .zones_fixed = false, .zones_label = false});
    auto* units = find<QComboBox>("Combo1");
    ASSERT_EQ(units->count(), 2);
    EXPECT_EQ(units->itemText(0), QStringLiteral("Metric"));
    EXPECT_EQ(units->itemText(1), QStringLiteral("English"));
    EXPECT_EQ(units->currentText(), QString{});
    EXPECT_EQ(stored().units, Units::NotFixed);
}

TEST_F(BasinStagesTest, ChosenUnitsAreShownInTheLabelsBeforeTheyAreFixed) {
    auto* units = find<QComboBox>("Combo1");
    EXPECT_EQ(header(2), QStringLiteral("Zone Area (km²)"));
    units->setCurrentIndex(1);
    EXPECT_EQ(find<QLabel>("Label1(5)")->text(), QStringLiteral("Reference Elevation (ft):"));
    EXPECT_EQ(find<QLabel>("Label1(7)")->text(), QStringLiteral("Basin Area (mi²):"));
    EXPECT_EQ(header(2), QStringLiteral("Zone Area (mi²)"));
    EXPECT_EQ(header(3), QStringLiteral("Hypsometric Mean Elevation (ft)"));
    EXPECT_EQ(header(5), QStringLiteral("Avg Elevation, NE Aspect (ft)"));
    EXPECT_EQ(header(7), QStringLiteral("Avg Elevation, SE Aspect (ft)"));
    EXPECT_EQ(header(9), QStringLiteral("Avg Elevation, NW Aspect (ft)"));
    EXPECT_EQ(header(11), QStringLiteral("Avg Elevation, SW Aspect (ft)"));
    units->setCurrentIndex(0);
    EXPECT_EQ(find<QLabel>("Label1(5)")->text(), QStringLiteral("Reference Elevation (m):"));
    EXPECT_EQ(find<QLabel>("Label1(7)")->text(), QStringLiteral("Basin Area (km²):"));
    EXPECT_EQ(header(2), QStringLiteral("Zone Area (km²)"));
    EXPECT_EQ(header(3), QStringLiteral("Hypsometric Mean Elevation (m)"));
    EXPECT_EQ(stored().units, Units::NotFixed);
}

TEST_F(BasinStagesTest, ColumnsWithoutAUnitKeepTheirHeaders) {
    EXPECT_EQ(header(1), QStringLiteral("Zone ID"));
    EXPECT_EQ(header(4), QStringLiteral("% NE Aspect"));
    EXPECT_EQ(header(6), QStringLiteral("% SE Aspect"));
    EXPECT_EQ(header(8), QStringLiteral("% NW Aspect"));
    EXPECT_EQ(header(10), QStringLiteral("% SW Aspect"));
}

TEST_F(BasinStagesTest, LeavingTheUnitsAsksOnceAndYesFixesAndStoresThem) {
    choose_units(1, Answer::Yes);
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().text,
              "All further data used in this basin must be expressed using these units.  Continue?");
    EXPECT_EQ(last_message().title, "Are you sure you want to use these units?");
    EXPECT_EQ(last_message().buttons, Buttons::YesNo);
    expect_shown({.units_list = false, .zones_box = true, .zones_fixed = false, .zones_label = true});
    EXPECT_EQ(find<QLabel>("lblUnits")->text(), QStringLiteral("English"));
    EXPECT_EQ(QApplication::focusWidget(), box(1));
    EXPECT_EQ(stored().units, Units::English);
    EXPECT_EQ(session_.basin.Units_Code, Units::English);
}

TEST_F(BasinStagesTest, NoToTheUnitsLeavesEverythingOpen) {
    choose_units(0, Answer::No);
    EXPECT_EQ(find<QComboBox>("Combo1")->currentIndex(), -1);
    expect_shown({.units_list = true, .zones_box = false, .zones_fixed = false, .zones_label = false});
    EXPECT_EQ(stored().units, Units::NotFixed);
    EXPECT_EQ(session_.basin.Units_Code, Units::NotFixed);
}

TEST_F(BasinStagesTest, NoToTheUnitsRemovesTheirNamesFromTheLabels) {
    const QString elevation = find<QLabel>("Label1(5)")->text();
    const QString area = find<QLabel>("Label1(7)")->text();
    const QString zone_area = header(2);
    dialogs_.while_shown = [&] {
        EXPECT_EQ(find<QLabel>("Label1(5)")->text(), QStringLiteral("Reference Elevation (ft):"));
    };
    choose_units(1, Answer::No);
    dialogs_.while_shown = nullptr;
    EXPECT_EQ(find<QLabel>("Label1(5)")->text(), elevation);
    EXPECT_EQ(find<QLabel>("Label1(7)")->text(), area);
    EXPECT_EQ(header(2), zone_area);
}

TEST_F(BasinStagesTest, UnitsThatWereNotChosenAreLeftWithoutAQuestion) {
    leave(find<QComboBox>("Combo1"));
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(BasinStagesTest, AMenuOrAnotherWindowDoesNotAskAboutTheUnits) {
    auto* units = find<QComboBox>("Combo1");
    units->setCurrentIndex(0);
    for (const Qt::FocusReason reason : {Qt::PopupFocusReason, Qt::ActiveWindowFocusReason}) {
        QFocusEvent out(QEvent::FocusOut, reason);
        QApplication::sendEvent(units, &out);
    }
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(BasinStagesTest, EnterInTheUnitsWithoutAChoiceKeepsTheFocusThere) {
    auto* units = find<QComboBox>("Combo1");
    units->setFocus();
    QTest::keyClick(units, Qt::Key_Return);
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().text, "Please select a 'Units of Measurement' before continuing");
    EXPECT_EQ(last_message().title, "No 'Units of Measurement' selected");
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_EQ(last_message().buttons, Buttons::Ok);
    EXPECT_EQ(QApplication::focusWidget(), units);
}

TEST_F(BasinStagesTest, EnterInTheUnitsWithAChoiceAsksOnceAndLeadsToTheZones) {
    auto* units = find<QComboBox>("Combo1");
    units->setFocus();
    units->setCurrentIndex(0);
    dialogs_.then(Answer::Yes);
    QTest::keyClick(units, Qt::Key_Return);
    QTest::qWait(1);
    EXPECT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(QApplication::focusWidget(), box(1));
}

TEST_F(BasinStagesTest, FixedUnitsCanNeverBeChosenAgain) {
    choose_units(0, Answer::Yes);
    give_zones("2", Answer::Yes);
    EXPECT_FALSE(find<QComboBox>("Combo1")->isVisible());
    session_.desktop.refresh_main_window();
    expect_shown({.units_list = false, .zones_box = false, .zones_fixed = true, .zones_label = true});
}

TEST_F(BasinStagesTest, ANumberOfZonesBeforeTheUnitsIsRefusedAndLeadsToThem) {
    session_.shell.zones_box_shown = true;
    session_.desktop.refresh_main_window();
    type(1, "3");
    leave(box(1));
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().text,
              "Select the numeric units that will be used in this basin before continuing");
    EXPECT_EQ(last_message().title, "Numeric units are undefined");
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_EQ(box(1)->text(), QString{});
    EXPECT_EQ(QApplication::focusWidget(), find<QComboBox>("Combo1"));
    EXPECT_EQ(find<QTableView>("vaSpread1")->model()->rowCount(), 0);
}

TEST_F(BasinStagesTest, NoAndCancelToTheZonesEmptyTheBoxAndReturnToIt) {
    choose_units(0, Answer::Yes);
    for (const Answer answer : {Answer::No, Answer::Cancel}) {
        give_zones("4", answer);
        EXPECT_EQ(last_message().title, "Zone definition");
        EXPECT_EQ(last_message().text,
                  "Once the number of zones is defined for a basin it cannot be changed.  Are you sure about "
                  "your zone definition?");
        EXPECT_EQ(last_message().buttons, Buttons::YesNoCancel);
        EXPECT_EQ(box(1)->text(), QString{});
        EXPECT_EQ(QApplication::focusWidget(), box(1));
        expect_shown({.units_list = false, .zones_box = true, .zones_fixed = false, .zones_label = true});
        EXPECT_EQ(find<QTableView>("vaSpread1")->model()->rowCount(), 0);
        EXPECT_FALSE(enabled("mnuTools"));
    }
}

TEST_F(BasinStagesTest, YesToTheZonesMakesThemWithTheirMonths) {
    choose_units(0, Answer::Yes);
    session_.basin.Basin_Changed = false;
    session_.basin.Input_Changed = false;
    give_zones("16", Answer::Yes);
    expect_shown({.units_list = false, .zones_box = false, .zones_fixed = true, .zones_label = true});
    EXPECT_EQ(find<QLabel>("lblZones")->text(), QStringLiteral("16"));
    auto* grid = find<QTableView>("vaSpread1")->model();
    ASSERT_EQ(grid->rowCount(), 16);
    EXPECT_EQ(grid->index(0, 0).data().toString(), QStringLiteral("A"));
    EXPECT_EQ(grid->index(15, 0).data().toString(), QStringLiteral("P"));
    BasinDatabase database{program_ / "new.mdb", Access::ReadOnly};
    EXPECT_EQ(read_table<Zone>(database, template_table(k_zone_description)).size(), 16U);
    // 16 zones of 12 months
    EXPECT_EQ(read_table<MonthlyRow>(database, basin_averages_table()).size(), 192U);
    EXPECT_EQ(session_.basin.ZoneCount, 16);
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_TRUE(session_.basin.Input_Changed);
}

TEST_F(BasinStagesTest, APastedNumberOfZonesIsReadAsItsLeadingNumber) {
    choose_units(0, Answer::Yes);
    box(1)->setText(QStringLiteral("3abc"));
    dialogs_.then(Answer::Yes);
    let_pass("frmPopulate");
    leave(box(1));
    EXPECT_EQ(session_.basin.ZoneCount, 3);
    EXPECT_EQ(find<QTableView>("vaSpread1")->model()->rowCount(), 3);
}

TEST_F(BasinStagesTest, TheAreaShowsOnceAZoneHasOne) {
    choose_units(0, Answer::Yes);
    EXPECT_EQ(find<QLabel>("lblBasinArea")->text(), QStringLiteral("--"));
    give_zones("2", Answer::Yes);
    auto* grid = find<QTableView>("vaSpread1")->model();
    grid->setData(grid->index(0, 1), QStringLiteral("12.5"));
    grid->setData(grid->index(1, 1), QStringLiteral("0.25"));
    // 12.5 + 0.25
    EXPECT_EQ(find<QLabel>("lblBasinArea")->text(), QStringLiteral("12.75"));
}

TEST_F(BasinStagesTest, AnEmptiedCellHoldsZero) {
    open_sample();
    auto* grid = find<QTableView>("vaSpread1")->model();
    grid->setData(grid->index(0, 3), QString{});
    EXPECT_EQ(grid->index(0, 3).data().toString(), QStringLiteral("0"));
    EXPECT_EQ(session_.basin.zones[0].aspects[0].share, 0.0);
}

TEST_F(BasinStagesTest, AnEmptyCellStaysEmptyIfTheCursorPasses) {
    choose_units(0, Answer::Yes);
    give_zones("2", Answer::Yes);
    auto* grid = find<QTableView>("vaSpread1");
    grid->setFocus();
    grid->setCurrentIndex(grid->model()->index(0, 2));
    EXPECT_EQ(grid->model()->index(0, 2).data().toString(), QString{});
    grid->setCurrentIndex(grid->model()->index(0, 3));
    EXPECT_EQ(grid->model()->index(0, 2).data().toString(), QString{});
    EXPECT_FALSE(session_.basin.zones[0].elevation.has_value());
}

TEST_F(BasinStagesTest, DeleteInTheZoneGridZeroesTheSelection) {
    open_sample();
    auto* grid = find<QTableView>("vaSpread1");
    grid->setFocus();
    grid->setCurrentIndex(grid->model()->index(1, 1));
    QTest::keyClick(grid, Qt::Key_Delete);
    EXPECT_EQ(session_.basin.zones[1].area, 0.0);
    EXPECT_EQ(grid->model()->index(1, 1).data().toString(), QStringLiteral("0"));
}

TEST_F(BasinStagesTest, ASimulationIsRefusedAtEveryStageUntilTheBasinIsDefined) {
    const auto refused = [this] {
        const std::size_t before = dialogs_.messages().size();
        find<QPushButton>("Command1(0)")->click();
        return dialogs_.messages().size() == before + 1 &&
               last_message().text ==
                   "Provide a name for the basin, the # of zones, and the units of measurement before "
                   "creating a simulation" &&
               last_message().icon == Icon::Stop;
    };
    EXPECT_TRUE(refused());
    box(0)->setText(QStringLiteral("Alder Fork"));
    EXPECT_TRUE(refused());
    choose_units(0, Answer::Yes);
    EXPECT_TRUE(refused());
    give_zones("2", Answer::Yes);
    box(0)->setText(QStringLiteral("<basin name>"));
    EXPECT_TRUE(refused());
}

TEST_F(BasinStagesTest, TheFramesButtonsAndLabelsHaveTheirTexts) {
    EXPECT_EQ(window_->findChild<QWidget*>(QStringLiteral("Frame1(0)"))->property("title").toString(),
              QStringLiteral("Basin Definition "));
    EXPECT_EQ(window_->findChild<QWidget*>(QStringLiteral("Frame1(1)"))->property("title").toString(),
              QStringLiteral("Basin Simulations "));
    EXPECT_EQ(find<QPushButton>("Command1(0)")->text(), QStringLiteral("&Add Simulation"));
    EXPECT_EQ(find<QPushButton>("Command1(1)")->text(), QStringLiteral("&Delete Simulation"));
    EXPECT_EQ(find<QPushButton>("Command1(2)")->text(), QStringLiteral("&Edit Simulation"));
    struct Caption {
        const char* name;
        const char* text;
    };
    for (const Caption& caption :
         {Caption{"Label1(0)", "Name:"}, Caption{"Label1(1)", "Description:"},
          Caption{"Label1(2)", "Number of Zones:"}, Caption{"Label1(3)", "Latitude (dec):"},
          Caption{"Label1(4)", "Longitude (dec):"}, Caption{"Label1(5)", "Reference Elevation (m):"},
          Caption{"Label1(6)", "Current Simulation Name:"}, Caption{"Label1(7)", "Basin Area (km²):"},
          Caption{"Label1(8)", "Units of Measurement:"}}) {
        EXPECT_EQ(find<QLabel>(caption.name)->text(), QString::fromUtf8(caption.text)) << caption.name;
    }
    EXPECT_EQ(find<QLabel>("lblSimVisible")->text(), QStringLiteral("--"));
}

}  // namespace
}  // namespace nivora
