#include "store/basin_marks.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

BasinState with_results() {
    BasinState basin;
    basin.Output_Valid = true;
    basin.results_time = 45000.5;
    return basin;
}

TEST(BasinMarks, AChangedInputIsUnsavedAndMakesTheResultsOld) {
    BasinState basin = with_results();
    mark_input_changed(basin);
    EXPECT_TRUE(basin.Basin_Changed);
    EXPECT_TRUE(inputs_changed_since_run(basin));
    EXPECT_TRUE(basin.Output_Valid);  // only what discards the results clears this mark
}

TEST(BasinMarks, AChangeThatNoResultDependsOnIsOnlyUnsaved) {
    BasinState basin = with_results();
    mark_basin_changed(basin);
    EXPECT_TRUE(basin.Basin_Changed);
    EXPECT_FALSE(inputs_changed_since_run(basin));
}

TEST(BasinMarks, AnEditThatWaitsForDoneIsNotUnsaved) {
    BasinState basin = with_results();
    mark_input_edited(basin);
    EXPECT_FALSE(basin.Basin_Changed);
    EXPECT_TRUE(inputs_changed_since_run(basin));
}

TEST(BasinMarks, ASaveDoesNotBringOldResultsUpToDate) {
    BasinState basin = with_results();
    mark_input_changed(basin);
    mark_saved(basin);
    EXPECT_FALSE(basin.Basin_Changed);
    EXPECT_FALSE(basin.Input_Changed);
    EXPECT_TRUE(inputs_changed_since_run(basin));
    mark_results_current(basin);
    EXPECT_FALSE(inputs_changed_since_run(basin));
}

TEST(BasinMarks, AnOpenedBasinHasNoResultsOfThisSession) {
    BasinState basin = with_results();
    basin.Basin_Changed = true;
    basin.results_outdated = true;
    mark_opened(basin);
    EXPECT_FALSE(basin.Basin_Changed);
    EXPECT_FALSE(basin.Output_Valid);
    EXPECT_FALSE(basin.results_outdated);
    EXPECT_EQ(basin.results_time, std::nullopt);
}

TEST(BasinMarks, DeclinedChangesComeBackAsTheyWere) {
    for (const bool changed : {false, true}) {
        for (const bool input : {false, true}) {
            BasinState basin;
            basin.Basin_Changed = changed;
            basin.Input_Changed = input;
            const UnsavedMarks declined = unsaved_marks(basin);
            mark_saved(basin);
            restore_marks(basin, declined);
            EXPECT_EQ(basin.Basin_Changed, changed);
            EXPECT_EQ(basin.Input_Changed, input);
        }
    }
}

TEST(BasinMarks, TheFirstStepOfAnEvaluationLeavesResultsAndUnsavedInput) {
    BasinState basin;
    mark_evaluation_started(basin);
    EXPECT_TRUE(basin.Output_Valid);
    EXPECT_TRUE(basin.Basin_Changed);
    EXPECT_TRUE(basin.Input_Changed);
}

TEST(BasinMarks, ResultsFoundInAFileCountAsAsked) {
    BasinState basin;
    mark_results_found(basin, true);
    EXPECT_TRUE(basin.Output_Valid);
    EXPECT_FALSE(basin.Input_Changed);
    mark_results_found(basin, true, true);
    EXPECT_TRUE(basin.Output_Valid);
    EXPECT_TRUE(basin.Input_Changed);
    mark_results_found(basin, false);
    EXPECT_FALSE(basin.Output_Valid);
    EXPECT_FALSE(basin.Input_Changed);
    EXPECT_FALSE(basin.Basin_Changed);
}

}  // namespace
}  // namespace nivora
