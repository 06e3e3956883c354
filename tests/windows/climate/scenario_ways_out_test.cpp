#include "tests/windows/climate/scenario_window_fixture.h"

#include <QMenuBar>
#include <QMouseEvent>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// How boxes, rows and the window are left, and what that marks as changed.
class ScenarioWaysOutTest : public ScenarioWindowTest {
protected:
    void SetUp() override {
        open_scenario();
        session_.basin.Input_Changed = false;
        session_.basin.Basin_Changed = false;
    }

    /// A press and, some moments later, a release, as a user does it.
    static void press_slowly(QWidget* button) {
        QTest::mousePress(button, Qt::LeftButton);
        QTest::qWait(1);
        QTest::mouseRelease(button, Qt::LeftButton);
    }
};

TEST_F(ScenarioWaysOutTest, AnInvalidDateDoesNotPreventCancel) {
    set_winter_end("04/05/2001");
    press_slowly(button(1));
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(messages(), 0U);
    EXPECT_THAT(stored("SELECT WinterEndDate FROM ClimateScenarioIndex"), ElementsAre("36981"));
}

TEST_F(ScenarioWaysOutTest, AValidDateIsTakenOnTheWayToHelpAndBeforeNew) {
    add_scenario("second", {});
    reopen();
    set_winter_end("04/01/2001");
    press_slowly(button(2));
    EXPECT_THAT(desktop_.topics, ElementsAre(4));
    choose("second");
    choose(k_scenario);
    EXPECT_EQ(from_qt(winter_end()->text()), "04/01/2001");
    set_winter_end("04/02/2001");
    dialogs_.then_text("third");
    key(Qt::Key_N, Qt::AltModifier);
    QTest::qWait(150);
    EXPECT_EQ(from_qt(chooser()->currentText()), "third");
    choose(k_scenario);
    EXPECT_EQ(from_qt(winter_end()->text()), "04/02/2001");
    EXPECT_EQ(messages(), 0U);
}

TEST_F(ScenarioWaysOutTest, AnInvalidDateKeepsNewFromAsking) {
    set_winter_end("04/05/2001");
    key(Qt::Key_N, Qt::AltModifier);
    QTest::qWait(150);
    EXPECT_EQ(messages(), 1U);
    EXPECT_THAT(dialogs_.inputs(), IsEmpty());
    EXPECT_EQ(from_qt(winter_end()->text()), "03/31/2001");
}

TEST_F(ScenarioWaysOutTest, TheCloseControlAsksWithADateThatIsBeingTyped) {
    for (const char* date : {"04/01/2001", "04/05/2001", "04/"}) {
        SCOPED_TRACE(date);
        reopen();
        set_winter_end(date);
        const std::size_t told = messages();
        dialogs_.then(Answer::No);
        EXPECT_FALSE(window_->close());
        EXPECT_EQ(messages(), told + 1);
        dialogs_.then(Answer::Yes);
        EXPECT_TRUE(window_->close());
        EXPECT_THAT(stored("SELECT WinterEndDate FROM ClimateScenarioIndex"), ElementsAre("36981"));
    }
}

TEST_F(ScenarioWaysOutTest, AnInvalidDateIsReportedOnceOnTheWayToDone) {
    set_winter_end("04/05/2001");
    press(0);
    EXPECT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text, "Invalid winter end date!");
    QTest::qWait(1);
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(QApplication::focusWidget(), winter_end());
    EXPECT_EQ(from_qt(winter_end()->text()), "03/31/2001");
    set_winter_end("04/05/2001");
    key(Qt::Key_D, Qt::AltModifier);
    QTest::qWait(150);  // a button that is pressed by its letter stays down for a moment
    EXPECT_EQ(messages(), 2U);
    EXPECT_TRUE(window_->isVisible());
    key(Qt::Key_D, Qt::AltModifier);
    QTest::qWait(150);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(messages(), 2U);
    EXPECT_THAT(stored("SELECT WinterEndDate FROM ClimateScenarioIndex"), ElementsAre("36981"));
}

TEST_F(ScenarioWaysOutTest, ARefusedDateIsLightRedWhileTheMessageShows) {
    const QColor before = winter_end()->palette().color(QPalette::Base);
    QColor shown;
    dialogs_.while_shown = [&] { shown = winter_end()->palette().color(QPalette::Base); };
    set_winter_end("04/05/2001");
    leave_winter_end();
    EXPECT_EQ(shown, QColor(255, 128, 128));
    EXPECT_EQ(winter_end()->palette().color(QPalette::Base), before);
}

TEST_F(ScenarioWaysOutTest, CancelDropsCommentsAndWinterEndToo) {
    comments()->setFocus();
    comments()->selectAll();
    type("dropped");
    set_winter_end("04/01/2001");
    leave_winter_end();
    press(1);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_THAT(stored("SELECT Comments FROM ClimateScenarioIndex"), ElementsAre("one degree more"));
    EXPECT_THAT(stored("SELECT WinterEndDate FROM ClimateScenarioIndex"), ElementsAre("36981"));
}

TEST_F(ScenarioWaysOutTest, DoneInANormalizeRowStoresAFactorOfZero) {
    pick(1, k_action, "Normalize");
    set(1, k_factor, "5");
    go_to(1, k_factor);
    press(0);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_THAT(stored("SELECT EditFactor FROM Warmer"), ElementsAre("0.0"));
    EXPECT_THAT(stored("SELECT EditAction FROM Warmer"), ElementsAre("4"));
}

TEST_F(ScenarioWaysOutTest, AnEditMarksTheInputAsChangedAndTheBasinOnlyByDone) {
    set(1, k_factor, "2");
    EXPECT_TRUE(session_.basin.Input_Changed);
    EXPECT_FALSE(session_.basin.Basin_Changed);
    press(0);
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

TEST_F(ScenarioWaysOutTest, CommentsMarkTheInputAsChanged) {
    comments()->setFocus();
    type("x");
    EXPECT_TRUE(session_.basin.Input_Changed);
}

TEST_F(ScenarioWaysOutTest, NewAndDeleteMarkBothAsChangedAtOnce) {
    dialogs_.then_text("second");
    press_action(0);
    EXPECT_TRUE(session_.basin.Input_Changed && session_.basin.Basin_Changed);
    session_.basin.Input_Changed = session_.basin.Basin_Changed = false;
    dialogs_.then(Answer::No);
    press_action(1);
    EXPECT_FALSE(session_.basin.Input_Changed || session_.basin.Basin_Changed);
    dialogs_.then(Answer::Yes);
    press_action(1);
    EXPECT_TRUE(session_.basin.Input_Changed && session_.basin.Basin_Changed);
}

TEST_F(ScenarioWaysOutTest, DoneWithNothingChangedCountsAsAChangeOfTheFile) {
    press(0);
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_FALSE(session_.basin.Input_Changed);
}

TEST_F(ScenarioWaysOutTest, ARemovedReferenceChangesTheFile) {
    change("INSERT INTO ClimateScenarioIndex (SimulationFile, ScenarioFile) VALUES ('Test', 'lost')");
    reopen();
    EXPECT_EQ(messages(), 1U);
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_THAT(references(), ElementsAre("Test/Warmer"));
}

TEST_F(ScenarioWaysOutTest, ABlankWinterEndIsRefusedWhenItIsLeft) {
    change("UPDATE ClimateScenarioIndex SET WinterEndDate = NULL");
    reopen();
    EXPECT_THAT(from_qt(winter_end()->text()), testing::Not(HasSubstr("2001")));
    winter_end()->setFocus();
    leave_winter_end();
    EXPECT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text, "Invalid date value!");
    set_winter_end("04/01/2001");
    leave_winter_end();
    press(0);
    EXPECT_THAT(stored("SELECT WinterEndDate FROM ClimateScenarioIndex"), ElementsAre("36982"));
}

TEST_F(ScenarioWaysOutTest, AScenarioThatCannotBeReadIsReportedAndCanBeDeleted) {
    add_scenario("second", {SixDays{}.plus_one});
    change("UPDATE second SET StartDate = 'spring'");
    reopen();
    EXPECT_EQ(messages(), 1U);
    EXPECT_THAT(last_message().text, HasSubstr("'second'"));
    ASSERT_EQ(chooser()->count(), 2);
    choose("second");
    EXPECT_EQ(grid()->model()->rowCount(), 0);
    EXPECT_FALSE(comments()->isEnabled());
    EXPECT_FALSE(winter_end()->isEnabled());
    EXPECT_TRUE(action(1)->isEnabled());
    EXPECT_FALSE(action(2)->isEnabled()) << "there is nothing to print";
    choose(k_scenario);
    EXPECT_EQ(cell(1, k_factor), "1");
    // Done does not change the rows that could not be read.
    press(0);
    EXPECT_THAT(stored("SELECT StartDate FROM second"), ElementsAre("spring"));
    reopen();
    EXPECT_EQ(messages(), 2U);
    dialogs_.then_text("third");
    press_action(0);
    EXPECT_EQ(messages(), 2U);  // the unreadable scenario is reported only when the window opens
    choose("second");
    dialogs_.then(Answer::Yes);
    press_action(1);
    EXPECT_THAT(references(), ElementsAre("Test/Warmer", "Test/third"));
    EXPECT_FALSE(has_table("second"));
}

TEST_F(ScenarioWaysOutTest, AnUnreadableSheetOpensNoWindow) {
    std::filesystem::resize_file(program_ / "climate_1.ss2", 100);
    reopen();
    EXPECT_FALSE(opened_);
    EXPECT_EQ(messages(), 1U);
    EXPECT_THAT(last_message().text,
                StartsWith("A required system file, 'climate_1.ss2', could not be read!"));
}

TEST_F(ScenarioWaysOutTest, TheTabKeyFollowsTheLayout) {
    chooser()->setFocus();
    std::vector<std::string> names;
    for (int step = 0; step < 11; ++step) {
        key(Qt::Key_Tab);
        if (QApplication::focusWidget() == grid()) {
            // Within the grid Tab goes from cell to cell; the next control is the row of buttons.
            names.emplace_back("vaSpread1");
            grid()->nextInFocusChain()->setFocus();
            QWidget* next = grid();
            do {
                next = next->nextInFocusChain();
            } while (!(next->focusPolicy() & Qt::TabFocus) || !next->isVisible() ||
                     grid()->isAncestorOf(next));
            next->setFocus();
        }
        names.push_back(from_qt(QApplication::focusWidget()->objectName()));
    }
    EXPECT_THAT(names, testing::Contains(std::string{"vaSpread1"}));
    std::vector<std::string> behind(std::find(names.begin(), names.end(), "vaSpread1"), names.end());
    ASSERT_GE(behind.size(), 4U);
    behind.resize(4);
    EXPECT_THAT(behind, ElementsAre("vaSpread1", "Command1(0)", "Command1(1)", "Command1(2)"));
}

TEST_F(ScenarioWaysOutTest, NoTwoLettersOfTheWindowAreTheSame) {
    std::vector<std::string> letters;
    const auto add = [&](const QString& text) {
        const int at = static_cast<int>(text.indexOf(QLatin1Char('&')));
        if (at >= 0) letters.push_back(from_qt(text.mid(at + 1, 1).toLower()));
    };
    for (const QPushButton* of_window : window_->findChildren<QPushButton*>()) add(of_window->text());
    for (const QAction* menu : static_cast<QMainWindow*>(window_.get())->menuBar()->actions())
        add(menu->text());
    std::vector<std::string> once = letters;
    std::sort(once.begin(), once.end());
    EXPECT_EQ(std::adjacent_find(once.begin(), once.end()), once.end()) << testing::PrintToString(letters);
    EXPECT_GE(letters.size(), 8U);
}

TEST_F(ScenarioWaysOutTest, AltAndELeadsToDelete) {
    dialogs_.then(Answer::No);
    key(Qt::Key_E, Qt::AltModifier);
    QTest::qWait(150);  // a button that is pressed by its letter stays down for a moment
    EXPECT_EQ(messages(), 1U);
    EXPECT_THAT(last_message().text, StartsWith("Delete 'Warmer'"));
}

TEST_F(ScenarioWaysOutTest, LabelsAndButtonsHaveTheirTexts) {
    std::vector<std::string> texts;
    for (const QLabel* label : window_->findChildren<QLabel*>()) texts.push_back(from_qt(label->text()));
    EXPECT_THAT(texts, testing::IsSupersetOf(
                           {"Existing Scenarios:", "Simulation Dates:", "Winter End Date:", "Comments:"}));
    EXPECT_EQ(from_qt(action(3)->text()), "&View Variables");
}

TEST_F(ScenarioWaysOutTest, QuickHelpExplainsBoxesButtonsAndColumns) {
    QTest::mouseClick(find<QToolButton>("btnHelp"), Qt::LeftButton);
    const auto explained = [&](QWidget* element, QPoint at) {
        QTest::mouseClick(element, Qt::LeftButton, {}, at);
        return from_qt(find<QTextEdit>("lblHelp")->toPlainText());
    };
    const auto column = [&](int number) {
        const QRect place = grid()->visualRect(grid()->model()->index(0, number - 1));
        return explained(grid()->viewport(), place.center());
    };
    EXPECT_THAT(column(k_variable), HasSubstr("ariable"));
    EXPECT_THAT(column(k_start), HasSubstr("irst day"));
    EXPECT_THAT(column(k_action), StartsWith("Edit Action"));
    EXPECT_THAT(column(k_zones), HasSubstr("one"));
    EXPECT_THAT(explained(action(0), {8, 8}), StartsWith("New"));
    EXPECT_THAT(explained(action(1), {8, 8}), StartsWith("Delete"));
    EXPECT_THAT(explained(action(3), {8, 8}), StartsWith("View Variables"));
    EXPECT_THAT(explained(button(0), {8, 8}), StartsWith("Done"));
    EXPECT_THAT(explained(button(1), {8, 8}), StartsWith("Cancel"));
    EXPECT_THAT(explained(button(2), {8, 8}), StartsWith("Help"));
    EXPECT_EQ(messages(), 0U);
}

TEST_F(ScenarioWaysOutTest, WithoutTheFileTheWindowStaysWithWhatWasTyped) {
    set(1, k_factor, "2");
    std::filesystem::remove(file_);
    press(0);
    EXPECT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(cell(1, k_factor), "2");
    EXPECT_FALSE(session_.basin.Basin_Changed);
    press_action(0);
    press_action(1);
    EXPECT_EQ(messages(), 3U);
    EXPECT_EQ(cell(1, k_factor), "2");
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(ScenarioWaysOutTest, WithoutTheFileNoWindowOpens) {
    std::filesystem::remove(file_);
    reopen();
    EXPECT_FALSE(opened_);
    EXPECT_EQ(messages(), 1U);
}

}  // namespace
}  // namespace nivora
