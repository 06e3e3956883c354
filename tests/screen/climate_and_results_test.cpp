// The windows of an evaluation and of a run's statistics on a real display.

#include "tests/screen/climate_screen_fixture.h"

#include <QLabel>
#include <QLineEdit>
#include <QTextBrowser>

namespace nivora {
namespace {

/// A simulation that begins on 1 March with a full snow pack.
class LateBeginOnScreenTest : public ClimateOnScreenTest {
protected:
    void SetUp() override {
        ClimateOnScreenTest::SetUp();
        if (IsSkipped()) return;
        Simulation& simulation = *session_.basin.current_simulation();
        simulation.start = day_count({1998, 3, 1});
        simulation.initial_runoff = 2.0F;
        select_simulation(session_.basin, *session_.basin.current_row);
        add_scenario();
    }
};

TEST_F(LateBeginOnScreenTest, NotesAreReadInTheWindowAndTheirLinkOpensTheHelp) {
    dialogs_.then(Answer::Ok);  // the initial runoff differs from that of the day before
    QWidget* window = open_climate();
    ASSERT_NE(window, nullptr);
    tick_to(window, 5);
    auto* notes = in<QTextBrowser>(window, "txtNotes");
    ASSERT_TRUE(await([&] { return notes->isVisible(); }));
    settle();
    EXPECT_GT(drawn_points(picture(*notes)), 500);
    EXPECT_TRUE(window->rect().contains(QRect(notes->mapTo(window, QPoint{}), notes->size())));
    keep(*window, "climate-notes.png");
    click(*notes->viewport(), {40, notes->fontMetrics().height()});
    QWidget* help = await_window("frmNVRHelp");
    ASSERT_NE(help, nullptr);
    EXPECT_TRUE(in<QTextBrowser>(help, "txtHelp")
                    ->toPlainText()
                    .startsWith(QStringLiteral("NOTES ON AN EVALUATION")));
    keep(*help, "climate-notes-help.png");
    help->close();
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(window->close());
}

TEST_F(ClimateOnScreenTest, TheCloseKeyBetweenStepsAsksAndAfterYesDailyDataCanBeEdited) {
    add_scenario();
    QWidget* window = open_climate();
    ASSERT_NE(window, nullptr);
    tick_to(window, 2);
    close_by_key(Answer::No);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(session_.run.ClimateStep, 2);
    close_by_key(Answer::Yes);
    ASSERT_TRUE(await([&] { return !window->isVisible(); }));
    EXPECT_EQ(session_.run.ClimateStep, 0);
    in_modal("frmData",
             [](QWidget& data) { EXPECT_FALSE(data.windowTitle().contains(QStringLiteral("Read-only"))); });
    choose("mnuDataOptVar(1)");
    EXPECT_EQ(modal_windows_seen_, 1);
}

TEST_F(ClimateOnScreenTest, TheMainWindowStaysIfTheEvaluationIsNotToBeEnded) {
    add_scenario();
    QWidget* window = open_climate();
    ASSERT_NE(window, nullptr);
    tick_to(window, 1);
    dialogs_.then(Answer::No);
    EXPECT_FALSE(window_->close());
    EXPECT_TRUE(window_->isVisible());
    EXPECT_TRUE(window->isVisible());
    dialogs_.then(Answer::Yes);
    window->close();
}

TEST_F(ClimateOnScreenTest, ShownStatisticsSayThatTheyAreOutOfDateWhenAnInputChanges) {
    choose("mnuRunSimVar(1)");
    QWidget* results = await_window("Results");
    ASSERT_NE(results, nullptr);
    await_active(*results);
    const auto* status = in<QLabel>(results, "panel2");
    EXPECT_EQ(status->text(), QStringLiteral("10/01/1997 to 09/30/1998, 365 days"));
    const QImage before = picture(*status);
    EXPECT_GT(drawn_points(before), 50);
    window_->raise();
    window_->activateWindow();
    await_active(*window_);
    auto* name = find<QLineEdit>("Text(0)");
    click(*name);
    type("x");
    EXPECT_TRUE(
        status->text().startsWith(QStringLiteral("Out of date: inputs have changed since the run of ")));
    results->raise();
    settle();
    EXPECT_NE(picture(*status), before);
    keep(*results, "statistics-out-of-date.png");
    in_modal("frmData", [&](QWidget& data) {
        const auto* told = in<QLabel>(&data, "panel2");
        EXPECT_TRUE(told->isVisible());
        EXPECT_TRUE(told->text().startsWith(QStringLiteral("Results of 'ellervane-1997-98', run of ")));
        EXPECT_TRUE(told->text().endsWith(QStringLiteral("; inputs have changed since, run it again")));
        keep(data, "results-out-of-date.png");
    });
    choose("mnuDataOpt(7)");
    EXPECT_EQ(modal_windows_seen_, 1);
    // Saving does not bring them up to date.
    choose("mnuFileItem(4)");
    EXPECT_FALSE(session_.basin.Input_Changed);
    EXPECT_TRUE(status->text().startsWith(QStringLiteral("Out of date: ")));
    results->close();
}

TEST_F(ClimateOnScreenTest, ARunOverMissingDaysAndAMissingMeasurementShowsTheRemainingStatistics) {
    change("DELETE FROM PhysicalData WHERE Date BETWEEN 36000 AND 36009");  // 24 July to 2 August 1998
    change("UPDATE PhysicalData SET Runoff = NULL WHERE Date = 35900");
    choose("mnuRunSimVar(1)");
    QWidget* results = await_window("Results");
    ASSERT_NE(results, nullptr);
    await_active(*results);
    EXPECT_EQ(dialogs_.messages().back().message.title,
              "Run statistics failed, probably caused by missing/invalid data");
    const auto* grid = in<QTableView>(results, "SpdStat");
    EXPECT_FALSE(grid->model()->index(0, 1).data().toString().isEmpty());
    EXPECT_TRUE(grid->model()->index(5, 1).data().toString().isEmpty());
    EXPECT_EQ(
        in<QLabel>(results, "panel2")->text(),
        QStringLiteral("10/01/1997 to 09/30/1998, 365 days; 10 of 365 days without rows in zones 1 to 5"));
    const auto* notes = in<QLabel>(results, "lblNotes");
    EXPECT_TRUE(notes->isVisible());
    EXPECT_GT(drawn_points(picture(*notes)), 500);
    // The whole text fits.
    EXPECT_LE(notes->heightForWidth(notes->width()), notes->height());
    keep(*results, "statistics-missing-days.png");
    results->close();
}

}  // namespace
}  // namespace nivora
