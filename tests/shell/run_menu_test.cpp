#include "tests/shell/main_window_fixture.h"

#include <gmock/gmock.h>

#include <limits>

namespace nivora {
namespace {

class RunMenuTest : public MainWindowTest {
protected:
    void SetUp() override { open_sample(); }

    void open_run_menu() { emit find<QMenu>("mnuRun")->aboutToShow(); }
    QAbstractItemModel* zones() { return find<QTableView>("vaSpread1")->model(); }
    void set_zone(int zone, int column, const char* text) {
        zones()->setData(zones()->index(zone - 1, column - 1), QString::fromUtf8(text));
    }
    QColor elevation_colour(int zone) {
        return zones()->index(zone - 1, 2).data(Qt::BackgroundRole).value<QColor>();
    }

    /// Opens the menu and expects its message about a zone,
    /// whose elevation is red while the message is shown.
    void expect_zone_refused(int zone, const char* text) {
        QColor shown;
        dialogs_.while_shown = [&] { shown = elevation_colour(zone); };
        open_run_menu();
        dialogs_.while_shown = nullptr;
        ASSERT_EQ(dialogs_.messages().size(), 1U);
        EXPECT_EQ(last_message().text, text);
        EXPECT_EQ(last_message().title, "Invalid zone description");
        EXPECT_EQ(last_message().buttons, Buttons::Ok);
        EXPECT_EQ(shown, QColor(0xFF, 0x80, 0x80));
        EXPECT_NE(elevation_colour(zone), QColor(0xFF, 0x80, 0x80));
        EXPECT_EQ(QApplication::focusWidget(), find<QTableView>("vaSpread1"));
        EXPECT_EQ(find<QTableView>("vaSpread1")->currentIndex(), zones()->index(zone - 1, 2));
        EXPECT_TRUE(enabled("mnuRunSim"));
        EXPECT_TRUE(enabled("mnuRunFor"));
    }
};

TEST_F(RunMenuTest, OpensWithoutAMessageForAValidBasin) {
    open_run_menu();
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(RunMenuTest, WithoutACurrentRowItAsksForASimulation) {
    session_.basin.current_row.reset();
    box(2)->clear();
    open_run_menu();
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().text, "Identify a simulation before attempting a calculation!");
    EXPECT_EQ(last_message().title, "Simulation Error!");
    EXPECT_TRUE(enabled("mnuRunSim"));
}

TEST_F(RunMenuTest, ABlankReferenceElevationIsRedWhileItsMessageShows) {
    QColor shown;
    box(2)->setText(QStringLiteral("  "));
    set_zone(1, 2, "0");
    dialogs_.while_shown = [&] { shown = colour_of(box(2)); };
    open_run_menu();
    dialogs_.while_shown = nullptr;
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().text, "Please provide a basin reference elevation before continuing");
    EXPECT_EQ(last_message().title, "Missing a required value");
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_EQ(shown, QColor(0xFF, 0x80, 0x80));
    EXPECT_EQ(colour_of(box(2)), QColor(Qt::white));
    EXPECT_EQ(QApplication::focusWidget(), box(2));
}

TEST_F(RunMenuTest, AZoneWithoutAnAreaIsReported) {
    set_zone(2, 2, "0");
    expect_zone_refused(2, "Zone area must be greater than zero!");
}

TEST_F(RunMenuTest, AnAreaBelowZeroIsRefusedAsZeroIs) {
    set_zone(2, 2, "-20");
    expect_zone_refused(2, "Zone area must be greater than zero!");
}

TEST_F(RunMenuTest, AnAreaThatIsNotANumberIsRefused) {
    session_.basin.zones[1].area = std::numeric_limits<double>::quiet_NaN();
    expect_zone_refused(2, "Zone area must be greater than zero!");
}

TEST_F(RunMenuTest, NoRunStartsWithAnAreaBelowZero) {
    set_zone(2, 2, "-20");
    for (const char* command : {"mnuRunSimVar(0)", "mnuRunSimVar(1)", "mnuRunClim"}) {
        choose(command);
        EXPECT_EQ(last_message().text, "Zone area must be greater than zero!") << command;
    }
    EXPECT_FALSE(session_.basin.Output_Valid);
    EXPECT_FALSE(session_.shell.climate_window);
}

TEST_F(RunMenuTest, AnAreaInAnOpenEditorIsTheOneThatIsChecked) {
    auto* grid = find<QTableView>("vaSpread1");
    const auto type_area = [&](const char* area) {
        grid->setFocus();
        grid->setCurrentIndex(zones()->index(1, 1));
        QTest::keyClick(grid, Qt::Key_F2);
        auto* editor = grid->viewport()->findChildren<QLineEdit*>().last();
        editor->selectAll();
        QTest::keyClicks(editor, QString::fromUtf8(area));
    };
    type_area("0");
    expect_zone_refused(2, "Zone area must be greater than zero!");
    type_area("30");
    open_run_menu();
    EXPECT_EQ(dialogs_.messages().size(), 1U) << "the area is sound now";
    EXPECT_EQ(session_.basin.zones[1].area, 30.0);
}

TEST_F(RunMenuTest, AReferenceElevationThatIsBeingTypedIsCheckedAsIfItWereLeft) {
    type(2, "99999");
    open_run_menu();
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().text, "Basin elevation out of range!");
    EXPECT_EQ(box(2)->text(), QString{});
}

TEST_F(RunMenuTest, AnUnlikelyElevationIsAskedAboutOnceUntilItChanges) {
    const int last = session_.basin.ZoneCount;
    set_zone(last, 3, "9000");
    dialogs_.then(Answer::No);
    open_run_menu();
    EXPECT_EQ(last_message().title, "Unusual zone values");
    EXPECT_EQ(QApplication::focusWidget(), find<QTableView>("vaSpread1"));
    EXPECT_EQ(find<QTableView>("vaSpread1")->currentIndex(), zones()->index(last - 1, 2));
    dialogs_.then(Answer::Yes);
    open_run_menu();
    EXPECT_EQ(dialogs_.messages().size(), 2U) << "No asks again";
    open_run_menu();
    EXPECT_EQ(dialogs_.messages().size(), 2U) << "Yes is kept";
    set_zone(last, 3, "9001");
    dialogs_.then(Answer::Yes);
    open_run_menu();
    EXPECT_EQ(dialogs_.messages().size(), 3U) << "for these values";
}

TEST_F(RunMenuTest, ZonesMustRise) {
    // The second zone is as high as the first one.
    set_zone(2, 3, zones()->index(0, 2).data().toString().toUtf8().constData());
    expect_zone_refused(2, "Hypsometric elevations must be in increasing order by zone");
}

TEST_F(RunMenuTest, TheFirstZoneMayLieAtSeaLevel) {
    set_zone(1, 3, "0");
    open_run_menu();
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(RunMenuTest, TheFirstZoneMayNotLieBelowSeaLevel) {
    set_zone(1, 3, "-1");
    expect_zone_refused(1, "Hypsometric elevations must be in increasing order by zone");
}

TEST_F(RunMenuTest, TheFirstFailureInZoneOrderIsReported) {
    set_zone(2, 3, "0");
    set_zone(3, 2, "0");
    expect_zone_refused(2, "Hypsometric elevations must be in increasing order by zone");
}

TEST_F(RunMenuTest, ChecksNothingWhileThereIsNoSimulationToRun) {
    choose("mnuFileItem(0)");
    open_run_menu();
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(RunMenuTest, AForecastAsksForItsFrequency) {
    dialogs_.then_text(std::nullopt);
    choose("mnuRunForVar(0)");
    ASSERT_EQ(dialogs_.inputs().size(), 1U);
    EXPECT_EQ(dialogs_.inputs()[0].title, "Enter Forecast Frequency");
    EXPECT_EQ(dialogs_.inputs()[0].prompt,
              "Enter the frequency (1-9 days) for updating simulated runoff with observed values");
    EXPECT_EQ(dialogs_.inputs()[0].proposed, "");
}

TEST_F(RunMenuTest, AnyFrequencyBut1To9IsRefusedAndNothingRuns) {
    for (const char* answer : {"", " ", "0", "10", "12", "x", "-1", "1.", "½"}) {
        const std::size_t before = dialogs_.messages().size();
        dialogs_.then_text(answer);
        choose("mnuRunForVar(1)");
        ASSERT_EQ(dialogs_.messages().size(), before + 1) << answer;
        EXPECT_EQ(last_message().text,
                  "Updating interval for forecasting must be 1-9 (days).  Forecast run aborted.");
        EXPECT_EQ(last_message().title, "Invalid forecast frequency!");
        EXPECT_EQ(session_.run.UpdateInterval, 0);
    }
    EXPECT_FALSE(session_.basin.Output_Valid);
    EXPECT_FALSE(session_.basin.Basin_Changed);
    EXPECT_TRUE(session_.run.LastRunSimulation.empty());
}

TEST_F(RunMenuTest, FrequenciesFrom1To9RunWithBlanksAroundThem) {
    struct Case {
        const char* action;
        const char* answer;
        const char* caption;
        int kind;
    };
    for (const Case& run :
         {Case{"mnuRunForVar(0)", "1", "Statistics, Melt Season Forecast (updating every 1 days)", 0},
          Case{"mnuRunForVar(1)", " 9 ", "Statistics, Year round Forecast (updating every 9 days)", 1}}) {
        seen_ = false;
        dialogs_.then_text(run.answer);
        look_at_modal("Results", [&](QWidget* results) {
            EXPECT_EQ(results->windowTitle(), QString::fromUtf8(run.caption));
        });
        choose(run.action);
        EXPECT_TRUE(seen_);
        EXPECT_EQ(session_.run.RunKind, run.kind);
    }
}

TEST_F(RunMenuTest, SimulationsHaveTheirKindAndNoInterval) {
    session_.run.UpdateInterval = 5;
    look_at_modal("Results", [](QWidget* results) {
        EXPECT_EQ(results->windowTitle(), QStringLiteral("Statistics, Melt Season Simulation"));
    });
    choose("mnuRunSimVar(0)");
    EXPECT_TRUE(seen_);
    EXPECT_EQ(session_.run.RunKind, 2);
    EXPECT_EQ(session_.run.UpdateInterval, 0);
    seen_ = false;
    look_at_modal("Results", [](QWidget*) {});
    choose("mnuRunSimVar(1)");
    EXPECT_TRUE(seen_);
    EXPECT_EQ(session_.run.RunKind, 3);
}

TEST_F(RunMenuTest, NoToAMissingLatitudeEndsTheRun) {
    box(3)->clear();
    dialogs_.then(Answer::No);
    choose("mnuRunSimVar(1)");
    EXPECT_EQ(last_message().title, "Missing latitude");
    EXPECT_EQ(last_message().text,
              "A positive or blank latitude indicates a basin located in the northern hemisphere, a negative "
              "latitude indicates a basin located in the southern hemisphere.  Continue processing?");
    EXPECT_EQ(last_message().buttons, Buttons::YesNo);
    EXPECT_FALSE(session_.basin.Output_Valid);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(RunMenuTest, YesToAMissingLatitudeRuns) {
    box(3)->clear();
    dialogs_.then(Answer::Yes);
    look_at_modal("Results", [](QWidget*) {});
    choose("mnuRunSimVar(1)");
    EXPECT_TRUE(seen_);
    EXPECT_TRUE(session_.basin.Output_Valid);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(RunMenuTest, ARunDoesNotMoveTheFocus) {
    box(4)->setFocus();
    look_at_modal("Results", [](QWidget*) {});
    choose("mnuRunSimVar(1)");
    EXPECT_TRUE(seen_);
    EXPECT_EQ(window_->focusWidget(), box(4));
    EXPECT_TRUE(dialogs_.messages().empty());
}

}  // namespace
}  // namespace nivora
