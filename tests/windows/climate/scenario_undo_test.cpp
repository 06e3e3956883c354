// Undo and redo of a scenario's rows.
#include "store/basin_marks.h"
#include "tests/windows/climate/scenario_window_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;

class ScenarioUndoTest : public ScenarioWindowTest {
protected:
    void SetUp() override {
        open_scenario();
        mark_saved(session_.basin);
    }
    void undo() {
        grid()->setFocus();
        key(Qt::Key_Z, Qt::ControlModifier);
    }
    void redo() {
        grid()->setFocus();
        key(Qt::Key_Y, Qt::ControlModifier);
    }
};

TEST_F(ScenarioUndoTest, ATypedFactorIsTakenBackAndMadeAgain) {
    const std::string before = cell(1, k_factor);
    set(1, k_factor, "2.5");
    EXPECT_TRUE(session_.basin.Input_Changed);
    undo();
    EXPECT_EQ(cell(1, k_factor), before);
    EXPECT_FALSE(session_.basin.Input_Changed);
    EXPECT_EQ(grid()->currentIndex().row(), 0);
    redo();
    EXPECT_EQ(cell(1, k_factor), "2.5");
    EXPECT_TRUE(session_.basin.Input_Changed);
}

TEST_F(ScenarioUndoTest, ARowThatWasAddedGoesAgain) {
    const std::vector<std::string> blank = cells_of(2);
    set(2, k_factor, "1.1");
    undo();
    EXPECT_EQ(cells_of(2), blank);
    press(0);
    EXPECT_THAT(stored("SELECT count(*) FROM Warmer"), ElementsAre("1"));
}

TEST_F(ScenarioUndoTest, AClosedWindowAsksNothingOnceAllIsTakenBack) {
    set(1, k_factor, "2.5");
    undo();
    window_->close();
    EXPECT_FALSE(window_->isVisible());
}

TEST_F(ScenarioUndoTest, WhatTheRulesBlankBelongsToTheEdit) {
    pick(1, k_action, "Normalize");
    const std::vector<std::string> before = cells_of(1);
    pick(1, k_variable, "M/M Temperature");
    go_to(1, k_action);
    go_to(1, k_factor);  // leaving the cell blanks what does not fit
    EXPECT_NE(cells_of(1), before);
    undo();
    EXPECT_EQ(cells_of(1), before);
}

}  // namespace
}  // namespace nivora
