#include "tests/windows/climate/control_window_fixture.h"

namespace nivora {
namespace {

/// How the window is closed.
class ControlLeavingTest : public ControlWindowTest {
protected:
    void expect_main_window_free() {
        EXPECT_FALSE(window_->isVisible());
        EXPECT_EQ(left_, 1);
        EXPECT_FALSE(session_.shell.climate_window);
        EXPECT_EQ(session_.shell.run_caption, "&Run");
        EXPECT_TRUE(session_.shell.reports);
        EXPECT_TRUE(session_.shell.graphics);
    }
};

TEST_F(ControlLeavingTest, DoneAfterStepSixKeepsTheResults) {
    open_six_days();
    run_to(6);
    press(0);
    expect_main_window_free();
    EXPECT_TRUE(session_.basin.Output_Valid);
    EXPECT_EQ(session_.run.ClimateStep, 6);
    // There is no question for a name of the results.
    EXPECT_EQ(messages(), 0U);
    EXPECT_EQ(dialogs_.inputs().size(), 2U);  // those of step 5
}

TEST_F(ControlLeavingTest, OnlyACompleteEvaluationIsListedWithTheRuns) {
    open_six_days();
    run_to(5);
    EXPECT_TRUE(session_.runs.runs().empty());
    tick(6);
    ASSERT_EQ(session_.runs.runs().size(), 1U);
    const ListedRun& listed = session_.runs.runs().front();
    EXPECT_EQ(listed.kind, "Climate Change");
    EXPECT_EQ(listed.scenario, session_.climate.scenario);
    EXPECT_EQ(listed.simulation, session_.basin.Current_Sim_Name);
    ASSERT_TRUE(session_.climate.statistics[6].has_value());
    EXPECT_EQ(listed.statistics[2], session_.climate.statistics[6]->computed_volume);
}

TEST_F(ControlLeavingTest, DoneBeforeAnyStepReportsNothing) {
    open_six_days();
    session_.basin.Output_Valid = true;
    press(0);
    expect_main_window_free();
    EXPECT_FALSE(session_.basin.Output_Valid);
}

TEST_F(ControlLeavingTest, AbortEndsTheClimateRun) {
    for (const int last : {1, 3, 4, 5}) {
        std::filesystem::remove(file_);
        left_ = 0;
        open_six_days();
        run_to(last);
        press(1);
        expect_main_window_free();
        EXPECT_FALSE(session_.basin.Output_Valid) << last;
        EXPECT_EQ(session_.run.ClimateStep, 0) << last;
    }
}

TEST_F(ControlLeavingTest, BetweenStepsTheCloseControlAsksAndActsAsAbort) {
    for (int last = 1; last <= 5; ++last) {
        SCOPED_TRACE(last);
        std::filesystem::remove(file_);
        left_ = 0;
        open_six_days();
        run_to(last);
        dialogs_.then(Answer::Yes);
        EXPECT_TRUE(window_->close());
        EXPECT_EQ(
            last_message().text,
            "The evaluation is not complete. If the window is closed the evaluation is aborted, and its "
            "results do not count as valid.  Close it?");
        expect_main_window_free();
        EXPECT_FALSE(session_.basin.Output_Valid);
        EXPECT_EQ(session_.run.ClimateStep, 0);  // so that daily data can be edited again
    }
}

TEST_F(ControlLeavingTest, NoToTheQuestionOfTheCloseControlLetsTheEvaluationGoOn) {
    open_six_days();
    run_to(2);
    dialogs_.then(Answer::No);
    EXPECT_FALSE(window_->close());
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(session_.run.ClimateStep, 2);
    for (int step = 3; step <= 6; ++step) tick(step);
    EXPECT_TRUE(session_.basin.Output_Valid);
    EXPECT_TRUE(window_->close());  // after the last step the window closes without a question
    EXPECT_EQ(session_.run.ClimateStep, 6);
    EXPECT_EQ(messages(), 1U);
}

TEST_F(ControlLeavingTest, TheCloseControlBeforeStepOneAsksNothing) {
    open_six_days();
    choose(k_scenario);
    EXPECT_TRUE(window_->close());
    EXPECT_EQ(messages(), 0U);
}

}  // namespace
}  // namespace nivora
