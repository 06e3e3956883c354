#include "tests/windows/prep/daily_window_fixture.h"
#include "widgets/colours.h"

#include <QStatusBar>

namespace nivora {
namespace {

using testing::ElementsAre;

/// Changes of daily values, and whether they are kept at the end.
class DailyChangesTest : public DailyWindowTest {
protected:
    static constexpr const char* k_lost_title =
        "Database changes disable all model output (plots, reports) that utilize computed values";

    std::vector<std::string> shown_column(int column) {
        std::vector<std::string> texts;
        for (int row = 1; row <= 4; ++row) texts.push_back(whole(row, column));
        return texts;
    }
    void expect_flags(bool changed) {
        EXPECT_EQ(session_.basin.Basin_Changed, changed);
        EXPECT_EQ(session_.basin.Input_Changed, changed);
    }
};

TEST_F(DailyChangesTest, DoneKeepsTheChangesOfAllZones) {
    open_variables();
    set(1, 2, "11.5");
    zone()->setValue(2);
    set(2, 2, "22.5");
    EXPECT_EQ(runoff(1, 1), "101.0");  // still in the transaction
    press(0);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(runoff(1, 1), "11.5");
    EXPECT_EQ(runoff(2, 2), "22.5");
    EXPECT_EQ(runoff(2, 1), "201.0");
    expect_flags(true);
    EXPECT_EQ(messages(), 0U);
}

TEST_F(DailyChangesTest, TheChangesAreKnownForACrashUntilDoneOrCancel) {
    for (const int button : {0, 1}) {
        session_.basin.Output_Valid = false;
        if (button == 0) {
            open_variables();
        } else {
            open_prepared_variables();
        }
        EXPECT_EQ(session_.prep.daily_edits.table(), "PhysicalData");
        EXPECT_TRUE(session_.prep.daily_edits.empty());
        set(1, 2, button == 0 ? "11.5" : "12.5");
        EXPECT_THAT(session_.prep.daily_edits.lines(),
                    testing::MatchesRegex(button == 0 ? "v Runoff [0-9]+ 11.5\n" : "v Runoff [0-9]+ 12.5\n"));
        press(button);
        EXPECT_TRUE(session_.prep.daily_edits.empty());
    }
}

TEST_F(DailyChangesTest, DoneWithoutAChangeAsksNothingAndClearsNothing) {
    session_.basin.Output_Valid = true;
    session_.run.ClimateStep = 6;
    open_variables();
    press(0);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(messages(), 0U);
    EXPECT_TRUE(session_.basin.Output_Valid);
    EXPECT_EQ(session_.run.ClimateStep, 6);
    expect_flags(false);
}

TEST_F(DailyChangesTest, DoneTakesWhatIsStillBeingTyped) {
    open_variables();
    go_to(1, 2);
    type("77");
    press(0);
    EXPECT_EQ(runoff(1, 1), "77.0");
    expect_flags(true);
}

TEST_F(DailyChangesTest, YesDiscardsTheResultsAndKeepsTheChanges) {
    session_.basin.Output_Valid = true;
    session_.run.ClimateStep = 6;
    open_variables();
    set(1, 2, "11.5");
    dialogs_.then(Answer::Yes);
    press(0);
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().title, k_lost_title);
    EXPECT_EQ(
        last_message().text,
        "After these changes to your database are recorded, plots and reports using computed values\nwill be "
        "disabled pending another successful model 'run'.  Save changes?");
    EXPECT_EQ(last_message().buttons, Buttons::YesNo);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_FALSE(session_.basin.Output_Valid);
    EXPECT_EQ(session_.run.ClimateStep, 0);
    EXPECT_EQ(runoff(1, 1), "11.5");
    expect_flags(true);
}

TEST_F(DailyChangesTest, NoActsAsCancel) {
    session_.basin.Output_Valid = true;
    session_.run.ClimateStep = 6;
    open_variables();
    set(1, 2, "11.5");
    dialogs_.then(Answer::No);
    press(0);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_TRUE(session_.basin.Output_Valid);
    EXPECT_EQ(session_.run.ClimateStep, 6);
    EXPECT_EQ(runoff(1, 1), "101.0");
    expect_flags(false);
}

TEST_F(DailyChangesTest, CancelUndoesAllChangesWithoutAQuestion) {
    session_.basin.Output_Valid = true;
    open_variables();
    set(1, 2, "11.5");
    zone()->setValue(2);
    set(1, 2, "22.5");
    press(1);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(messages(), 0U);
    EXPECT_EQ(runoff(1, 1), "101.0");
    EXPECT_EQ(runoff(2, 1), "201.0");
    EXPECT_TRUE(session_.basin.Output_Valid);
    expect_flags(false);
}

TEST_F(DailyChangesTest, CancelRestoresTheZoneGrid) {
    session_.basin.zones[0].area = 12.5;
    open_variables();
    session_.basin.zones.clear();
    press(1);
    ASSERT_EQ(session_.basin.zones.size(), 2U);
    EXPECT_EQ(session_.basin.zones[0].area, 12.5);
}

TEST_F(DailyChangesTest, AnyButtonEndsTheEditMenuOfTheMainWindow) {
    for (const int index : {0, 1, 2, 3}) {
        session_.shell.edit_menu = true;
        if (index == 0) add_physical(1, 4);
        open_prepared_variables();
        EXPECT_TRUE(session_.shell.edit_menu);
        press(index);
        EXPECT_FALSE(session_.shell.edit_menu) << index;
        window_->close();
        window_.reset();
    }
}

TEST_F(DailyChangesTest, TheCloseControlAsksOnlyIfSomethingIsLost) {
    open_variables();
    EXPECT_TRUE(window_->close());
    EXPECT_EQ(messages(), 0U);
    expect_flags(false);
}

TEST_F(DailyChangesTest, TheCloseControlDiscardsAfterAYes) {
    open_variables();
    set(1, 2, "11.5");
    dialogs_.then(Answer::No);
    EXPECT_FALSE(window_->close());
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(last_message().title, "Edit basin variables");
    EXPECT_EQ(whole(1, 2), "11.5");
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(window_->close());
    EXPECT_EQ(runoff(1, 1), "101.0");
    expect_flags(false);
}

TEST_F(DailyChangesTest, ADiscardedWindowLeavesTheFileFree) {
    open_variables();
    set(1, 2, "11.5");
    press(1);
    file_.change("UPDATE PhysicalData SET Runoff = 1");
    EXPECT_EQ(runoff(1, 1), "1.0");
}

TEST_F(DailyChangesTest, AnotherZoneKeepsTheCellAndTheChanges) {
    open_variables();
    go_to(3, 4);
    zone()->setValue(2);
    EXPECT_EQ(zone_title(), "Zone 2 of 2");
    EXPECT_EQ(grid()->currentIndex().row(), 2);
    EXPECT_EQ(grid()->currentIndex().column(), 3);
    EXPECT_EQ(shown(3, 2), "203.00");
    zone()->setValue(1);
    set(3, 2, "5");
    zone()->setValue(2);
    zone()->setValue(1);
    EXPECT_EQ(whole(3, 2), "5");
}

TEST_F(DailyChangesTest, AnotherZoneTakesWhatIsBeingTypedIntoTheOldOne) {
    open_variables();
    go_to(1, 2);
    type("55");
    zone()->setValue(2);
    EXPECT_EQ(whole(1, 2), "201");
    zone()->setValue(1);
    EXPECT_EQ(whole(1, 2), "55");
}

TEST_F(DailyChangesTest, AZoneIsTypedByItsNumberAndOthersAreIgnored) {
    open_variables();
    auto* number = find<QLineEdit>("Text1");
    for (const auto& [typed, title] : {std::pair{"2", "Zone 2 of 2"}, std::pair{"3", "Zone 2 of 2"},
                                       std::pair{"0", "Zone 2 of 2"}, std::pair{"1", "Zone 1 of 2"}}) {
        number->setFocus();
        number->selectAll();
        QTest::keyClicks(number, QString::fromUtf8(typed));
        QTest::keyClick(number, Qt::Key_Return);
        EXPECT_EQ(zone_title(), title) << typed;
    }
}

TEST_F(DailyChangesTest, AZoneWithoutDaysShowsNoRowsAndDoesNotAffectTheOthers) {
    add_physical(1, 4);
    file_.change("DELETE FROM PhysicalData WHERE Zone = 2");
    dialogs_.then(Answer::Yes);  // days are missing
    {
        BasinDatabase database = file_.open();
        ASSERT_EQ(mnuDataOptVar_Click(prep(), database, 1), DataOutcome::ShowEditor);
    }
    file_.change("DELETE FROM PhysicalData WHERE Zone = 2");
    open();
    go_to(2, 2);
    zone()->setValue(2);
    EXPECT_EQ(grid()->model()->rowCount(), 0);
    zone()->setValue(1);
    EXPECT_EQ(grid()->model()->rowCount(), 4);
}

TEST_F(DailyChangesTest, WalkingThroughMissingValuesStoresNothingInAnyView) {
    session_.basin.Output_Valid = true;
    const auto walk = [&](int column) {
        go_to(1, column);
        grid()->setFocus();
        ASSERT_EQ(whole(1, column), "");
        for (const Qt::Key step : {Qt::Key_Down, Qt::Key_Return, Qt::Key_Right, Qt::Key_Tab, Qt::Key_Up})
            key(step);
        EXPECT_EQ(whole(1, column), "");
        EXPECT_EQ(whole(2, column), "");
        press(0);
        EXPECT_FALSE(window_->isVisible());
        EXPECT_EQ(messages(), 0U);
        EXPECT_TRUE(session_.basin.Output_Valid);
        expect_flags(false);
    };
    open_variables();
    walk(3);
    EXPECT_EQ(stored("SELECT count(*) FROM PhysicalData WHERE Tmax IS NOT NULL OR Tmin IS NOT NULL"), "0");
    open_parameters();
    walk(2);
    open_results();
    walk(3);
}

TEST_F(DailyChangesTest, ACellThatIsEmptiedByHandBecomesZero) {
    open_variables();
    go_to(1, 2);
    key(Qt::Key_F2);
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_Delete);
    key(Qt::Key_Return);
    EXPECT_EQ(whole(1, 2), "0");
    EXPECT_EQ(whole(2, 2), "102");
    press(0);
    EXPECT_EQ(runoff(1, 1), "0.0");
    expect_flags(true);
}

TEST_F(DailyChangesTest, DeleteCutsTheBlockToZero) {
    open_variables();
    select(1, 2, 2, 2);
    key(Qt::Key_Delete);
    EXPECT_THAT(shown_column(2), ElementsAre("0", "0", "103", "104"));
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("101\n102\n"));
}

TEST_F(DailyChangesTest, CutCopyAndPasteOfTheEditMenu) {
    open_variables();
    select(1, 2, 2, 2);
    choose("mnuEditItm(1)");
    select(3, 2, 3, 2);
    choose("mnuEditItm(3)");
    EXPECT_THAT(shown_column(2), ElementsAre("101", "102", "101", "102"));
    select(1, 2, 1, 2);
    choose("mnuEditItm(0)");
    EXPECT_THAT(shown_column(2), ElementsAre("0", "102", "101", "102"));
}

TEST_F(DailyChangesTest, AWholeColumnIsFilledFromTwoRows) {
    open_variables();
    select(1, 2, 2, 2);
    grid()->copy();
    grid()->selectColumn(2);
    grid()->paste();
    EXPECT_THAT(shown_column(3), ElementsAre("101", "102", "101", "102"));
}

TEST_F(DailyChangesTest, APasteWithDecimalCommasIsAskedAboutAndNoLeavesAllAsItWas) {
    open_variables();
    QApplication::clipboard()->setText(QStringLiteral("1,5\n2,5\n7\n"));
    go_to(1, 2);
    dialogs_.then(Answer::No);
    grid()->paste();
    EXPECT_THAT(shown_column(2), ElementsAre("101", "102", "103", "104"));
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().title, "Paste");
    EXPECT_EQ(
        last_message().text,
        "2 of the 3 pasted cells can't be accepted. The first is '1,5' for Runoff, 10/01/1980, zone 1; a "
        "number has a point as its decimal sign and no other separators.\n"
        "Paste the rest? No leaves all cells as they are.");
    EXPECT_EQ(last_message().default_answer, Answer::No);
    press(0);
    expect_flags(false);
}

TEST_F(DailyChangesTest, YesTakesTheCellsThatCanBeTaken) {
    open_variables();
    QApplication::clipboard()->setText(QStringLiteral("1,5\nabc\n7\n"));
    go_to(1, 2);
    dialogs_.then(Answer::Yes);
    grid()->paste();
    EXPECT_THAT(shown_column(2), ElementsAre("101", "102", "7", "104"));
    EXPECT_EQ(messages(), 1U);
}

TEST_F(DailyChangesTest, ALimitIsNamedWhereItRefusesAPaste) {
    open_parameters();
    QApplication::clipboard()->setText(QStringLiteral("43\n"));
    go_to(2, 5);
    grid()->paste();
    EXPECT_EQ(last_message().text,
              "The pasted cell can't be accepted: '43' for LagTime, 10/02/1980, zone 1; "
              "the number must lie between 0 and 42.");
    EXPECT_EQ(whole(2, 5), "18");
}

TEST_F(DailyChangesTest, ABlockOfDatesWithAHeadingIsOfferedByDate) {
    open_variables();
    QApplication::clipboard()->setText(QStringLiteral(
        "Day\tRunoff (m3/s)\tWind\n10/03/1980\t33\t1\n10/01/1980\t11\t2\n10/09/1980\t99\t3\n"));
    go_to(2, 6);
    dialogs_.then(Answer::Yes);
    grid()->paste();
    EXPECT_THAT(shown_column(2), ElementsAre("11", "102", "33", "104"));
    EXPECT_THAT(shown_column(6), ElementsAre("", "", "", ""));
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().title, "Paste by date");
    EXPECT_THAT(last_message().text, testing::HasSubstr("1 date of the clipboard is not in this table."));
    EXPECT_THAT(last_message().text,
                testing::HasSubstr("These headings name no column of this table: Wind."));
}

TEST_F(DailyChangesTest, AnOfferOfDatesThatIsCancelledPastesNothing) {
    open_variables();
    QApplication::clipboard()->setText(QStringLiteral("Date\tRunoff\n10/03/1980\t33\n"));
    go_to(1, 2);
    dialogs_.then(Answer::Cancel);
    grid()->paste();
    EXPECT_THAT(shown_column(2), ElementsAre("101", "102", "103", "104"));
    EXPECT_EQ(messages(), 1U);
}

TEST_F(DailyChangesTest, ARefusedOfferOfDatesGoesCellByCell) {
    open_variables();
    QApplication::clipboard()->setText(QStringLiteral("Date\tRunoff\n10/03/1980\t33\n"));
    go_to(1, 2);
    dialogs_.then(Answer::No).then(Answer::No);
    grid()->paste();
    ASSERT_EQ(messages(), 2U);
    EXPECT_THAT(last_message().text, testing::StartsWith("3 of the 4 pasted cells can't be accepted."));
    EXPECT_THAT(shown_column(2), ElementsAre("101", "102", "103", "104"));
}

TEST_F(DailyChangesTest, WholeRowsOfOneZoneArePastedIntoAnotherWithoutAMessage) {
    open_variables();
    select(1, 1, 2, 3);
    grid()->copy();
    zone()->setValue(2);
    select(1, 1, 1, 1);
    grid()->paste();
    EXPECT_THAT(shown_column(2), ElementsAre("101", "102", "203", "204"));
    EXPECT_EQ(messages(), 0U);
}

TEST_F(DailyChangesTest, DatesAreNotPastedOver) {
    open_variables();
    QApplication::clipboard()->setText(QStringLiteral("01/01/1990\t5\n"));
    go_to(1, 1);
    dialogs_.then(Answer::Yes);
    grid()->paste();
    EXPECT_EQ(shown(1, 1), "10/01/1980");
    EXPECT_EQ(whole(1, 2), "5");
    ASSERT_EQ(messages(), 1U);
    EXPECT_THAT(last_message().text, testing::HasSubstr("the days of a table can't be changed"));
}

TEST_F(DailyChangesTest, AValueBeyondASingleIsRefused) {
    open_variables();
    set(1, 2, "1e39");
    EXPECT_EQ(whole(1, 2), "101");
    EXPECT_EQ(from_qt(static_cast<QMainWindow&>(*window_).statusBar()->currentMessage()),
              "'1e39' is not accepted for Runoff, 10/01/1980, zone 1: the number is too large.");
    set(1, 2, "1e400");
    EXPECT_EQ(whole(1, 2), "101");
    set(1, 2, "-1e30");
    EXPECT_EQ(shown(1, 2).front(), '-');
}

TEST_F(DailyChangesTest, SwitchScrollStyleFlipsTheTrackingAndBack) {
    open_variables();
    const bool before = grid()->track_scrolling();
    choose("mnuEditItm(9)");
    EXPECT_EQ(grid()->track_scrolling(), !before);
    choose("mnuEditItm(9)");
    EXPECT_EQ(grid()->track_scrolling(), before);
}

TEST_F(DailyChangesTest, AValueThatIsBeingTypedIsKnownForACrash) {
    open_variables();
    go_to(1, 2);
    grid()->setFocus();
    type("11.5");
    ASSERT_TRUE(session_.prep.note_typed);
    session_.prep.note_typed();
    EXPECT_THAT(session_.prep.daily_edits.typed(), testing::MatchesRegex("v Runoff [0-9]+ 11.5\n"));
    EXPECT_EQ(session_.prep.daily_edits.lines(), "");
    key(Qt::Key_Return);
    session_.prep.note_typed();
    EXPECT_EQ(session_.prep.daily_edits.typed(), "");
    EXPECT_THAT(session_.prep.daily_edits.lines(), testing::MatchesRegex("v Runoff [0-9]+ 11.5\n"));
    press(1);
    window_.reset();
    EXPECT_FALSE(session_.prep.note_typed);
    EXPECT_TRUE(session_.prep.daily_edits.empty());
}

TEST_F(DailyChangesTest, ValuesAreReadableOnADarkGroundAndBlueOnALightOne) {
    open_variables();
    go_to(1, 1);
    for (const QColor& ground : {QColor(0x1E, 0x1E, 0x1E), QColor(Qt::white)}) {
        QPalette colours = grid()->palette();
        colours.setColor(QPalette::Base, ground);
        grid()->setPalette(colours);
        grid()->viewport()->setPalette(colours);
        const QRect cell = grid()->visualRect(grid()->model()->index(1, 1)).adjusted(2, 2, -2, -2);
        const QImage picture = grid()->viewport()->grab(cell).toImage();
        double best = 1.0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QColor seen = picture.pixelColor(x, y);
                best = std::max(best, contrast(seen, ground));
                EXPECT_GE(seen.blue(), std::max(seen.red(), seen.green()));
            }
        }
        EXPECT_GE(best, 4.5) << ground.name().toStdString();
    }
}

}  // namespace
}  // namespace nivora
