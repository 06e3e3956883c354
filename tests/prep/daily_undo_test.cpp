// Undo and redo in the daily editor, within its transaction.
#include "prep/daily_editor.h"
#include "tests/prep/prep_fixture.h"

#include <limits>

namespace nivora {
namespace {

using testing::ElementsAre;

constexpr std::size_t k_undo_an = 3;
constexpr std::size_t k_undo_lag = 4;

class DailyUndoTest : public PrepTest {
protected:
    DailyUndoTest() {
        make_parameter_table("wet");
        add_parameters("wet", {parameter_day(1, october(1), 0.5F), parameter_day(1, october(2)),
                               parameter_day(1, october(3), 0.75F), parameter_day(2, october(1), 0.25F)});
    }

    [[nodiscard]] DailyEditor open(DailyEdits* unsaved = nullptr) const {
        return {file_.path(),
                DataView::Parameters,
                {.table = "wet", .fields = daily_fields(DataView::Parameters), .period = {}},
                unsaved};
    }
    std::vector<std::string> stored() { return rows("SELECT An FROM wet ORDER BY Zone, Date"); }
};

TEST_F(DailyUndoTest, AValueIsTakenBackAndMadeAgain) {
    DailyEditor editor = open();
    EXPECT_FALSE(editor.can_undo());
    EXPECT_FALSE(editor.undo().has_value());
    EXPECT_TRUE(editor.set_value(1, k_undo_an, 0.3));
    EXPECT_TRUE(editor.set_value(1, k_undo_an, 0.375));
    const auto block = editor.undo();
    ASSERT_TRUE(block.has_value());
    EXPECT_EQ(block->zone, 1);
    EXPECT_EQ(block->first_row, 1U);
    EXPECT_EQ(block->last_column, k_undo_an);
    EXPECT_FLOAT_EQ(static_cast<float>(editor.value(1, k_undo_an)), 0.3F);
    EXPECT_TRUE(editor.changed());
    EXPECT_TRUE(editor.undo().has_value());
    EXPECT_TRUE(is_missing(editor.value(1, k_undo_an)));
    EXPECT_FALSE(editor.changed()) << "nothing is left of the changes";
    EXPECT_TRUE(editor.redo().has_value());
    EXPECT_TRUE(editor.redo().has_value());
    EXPECT_FALSE(editor.redo().has_value());
    editor.commit();
    EXPECT_THAT(stored(), ElementsAre("0.5", "0.375", "0.75", "0.25"));
}

TEST_F(DailyUndoTest, TheChangesOfAStepGoTogether) {
    DailyEditor editor = open();
    editor.begin_step();
    EXPECT_TRUE(editor.set_value(0, k_undo_an, 1.0));
    EXPECT_TRUE(editor.set_value(2, k_undo_lag, 18.0));
    EXPECT_TRUE(editor.set_value(0, k_undo_an, 2.0)) << "one cell twice";
    editor.end_step();
    const auto block = editor.undo();
    ASSERT_TRUE(block.has_value());
    EXPECT_EQ(block->first_row, 0U);
    EXPECT_EQ(block->last_row, 2U);
    EXPECT_EQ(block->first_column, k_undo_an);
    EXPECT_EQ(block->last_column, k_undo_lag);
    EXPECT_EQ(editor.value(0, k_undo_an), 0.5);
    EXPECT_TRUE(is_missing(editor.value(2, k_undo_lag)));
    EXPECT_FALSE(editor.can_undo());
    EXPECT_TRUE(editor.redo().has_value());
    EXPECT_EQ(editor.value(0, k_undo_an), 2.0);
}

TEST_F(DailyUndoTest, AStepWithoutAChangeIsNone) {
    DailyEditor editor = open();
    editor.begin_step();
    EXPECT_TRUE(editor.set_value(0, k_undo_an, 0.5));
    EXPECT_FALSE(editor.set_value(0, k_undo_lag, 100.0)) << "beyond the limits";
    editor.end_step();
    EXPECT_FALSE(editor.can_undo());
    EXPECT_FALSE(editor.changed());
}

TEST_F(DailyUndoTest, AMassEditIsOneStepAndItsValuesMayBeOutsideTheLimits) {
    DailyEditor editor = open();
    EXPECT_TRUE(editor.set_value(0, k_undo_lag, 18.0));
    editor.mass_edit(MassEdit::Multiply, k_undo_lag, 0, 2, 10.0F);
    EXPECT_EQ(editor.value(0, k_undo_lag), 180.0);
    EXPECT_TRUE(editor.undo().has_value());
    EXPECT_EQ(editor.value(0, k_undo_lag), 18.0);
    EXPECT_TRUE(editor.redo().has_value());
    EXPECT_EQ(editor.value(0, k_undo_lag), 180.0) << "42 is the most that can be typed";
}

TEST_F(DailyUndoTest, AChangeOfAnotherZoneShowsThatZone) {
    DailyEditor editor = open();
    EXPECT_TRUE(editor.set_value(0, k_undo_an, 1.5));
    editor.show_zone(2);
    const auto block = editor.undo();
    ASSERT_TRUE(block.has_value());
    EXPECT_EQ(block->zone, 1);
    EXPECT_EQ(editor.zone(), 1);
    EXPECT_EQ(editor.value(0, k_undo_an), 0.5);
    editor.commit();
    EXPECT_THAT(stored(), ElementsAre("0.5", "-", "0.75", "0.25"));
}

TEST_F(DailyUndoTest, WhatIsKeptForACrashFollows) {
    DailyEdits unsaved;
    {
        DailyEditor editor = open(&unsaved);
        EXPECT_TRUE(editor.set_value(0, k_undo_an, 1.5));
        editor.mass_edit(MassEdit::Add, k_undo_an, 0, 2, 1.0F);
        EXPECT_TRUE(editor.undo().has_value());
        EXPECT_TRUE(editor.undo().has_value());
        EXPECT_TRUE(editor.redo().has_value());
        const std::string table = unsaved.table();
        const std::string lines = unsaved.lines();
        editor.roll_back();
        apply_daily_edits(database_, table, lines);
    }
    EXPECT_THAT(stored(), ElementsAre("1.5", "-", "0.75", "0.25"));
}

TEST_F(DailyUndoTest, AfterTheEndNothingIsUndone) {
    DailyEditor editor = open();
    EXPECT_TRUE(editor.set_value(0, k_undo_an, 1.5));
    editor.roll_back();
    EXPECT_FALSE(editor.undo().has_value());
    EXPECT_THAT(stored(), ElementsAre("0.5", "-", "0.75", "0.25"));
}

}  // namespace
}  // namespace nivora
