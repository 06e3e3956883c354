// Steps that can be undone: their order, and the memory that bounds them.
#include "base/undo_steps.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

struct UndoneStep {
    int number = 0;
    std::size_t size = 10;
    [[nodiscard]] std::size_t bytes() const { return size; }
};

TEST(UndoStepsTest, TheNewestIsUndoneFirstAndRedoneLast) {
    UndoSteps<UndoneStep> steps;
    EXPECT_EQ(steps.to_undo(), nullptr);
    steps.add({1});
    steps.add({2});
    EXPECT_EQ(steps.to_redo(), nullptr);
    EXPECT_EQ(steps.to_undo()->number, 2);
    steps.undone();
    EXPECT_EQ(steps.to_undo()->number, 1);
    EXPECT_EQ(steps.to_redo()->number, 2);
    steps.undone();
    EXPECT_EQ(steps.to_undo(), nullptr);
    EXPECT_EQ(steps.to_redo()->number, 1);
    steps.redone();
    EXPECT_EQ(steps.to_undo()->number, 1);
    EXPECT_EQ(steps.to_redo()->number, 2);
}

TEST(UndoStepsTest, ANewStepForgetsWhatWasUndone) {
    UndoSteps<UndoneStep> steps;
    steps.add({1});
    steps.add({2});
    steps.undone();
    steps.add({3});
    EXPECT_EQ(steps.to_redo(), nullptr);
    EXPECT_EQ(steps.to_undo()->number, 3);
    steps.undone();
    EXPECT_EQ(steps.to_undo()->number, 1);
}

TEST(UndoStepsTest, OnlyWithEverythingUndoneItIsAtItsBeginning) {
    UndoSteps<UndoneStep> steps;
    EXPECT_TRUE(steps.at_beginning());
    steps.add({1});
    EXPECT_FALSE(steps.at_beginning());
    steps.undone();
    EXPECT_TRUE(steps.at_beginning());
    steps.redone();
    EXPECT_FALSE(steps.at_beginning());
}

TEST(UndoStepsTest, MemoryBoundsTheStepsNotTheirNumber) {
    UndoSteps<UndoneStep> steps{100};
    for (int number = 1; number <= 10; ++number) steps.add({number});
    int undone = 0;
    while (steps.to_undo() != nullptr) {
        steps.undone();
        ++undone;
    }
    EXPECT_EQ(undone, 10);
    EXPECT_TRUE(steps.at_beginning());
    for (int number = 0; number < 10; ++number) steps.redone();
    steps.add({11, 35});  // the four oldest have to go: 60 and 35 are within 100
    undone = 0;
    while (steps.to_undo() != nullptr) {
        steps.undone();
        ++undone;
    }
    EXPECT_EQ(undone, 7);
    EXPECT_EQ(steps.to_redo()->number, 5);
    EXPECT_FALSE(steps.at_beginning()) << "the forgotten steps stay made";
}

TEST(UndoStepsTest, TheNewestStaysHoweverLargeItIs) {
    UndoSteps<UndoneStep> steps{100};
    steps.add({1});
    steps.add({2, 5000});
    EXPECT_EQ(steps.to_undo()->number, 2);
    steps.undone();
    EXPECT_EQ(steps.to_undo(), nullptr);
    steps.add({3});
    EXPECT_EQ(steps.to_undo()->number, 3);
    steps.add({4});
    steps.undone();
    EXPECT_EQ(steps.to_undo()->number, 3) << "what was undone takes no memory any more";
}

TEST(UndoStepsTest, TheNewestCanBeForgotten) {
    UndoSteps<UndoneStep> steps;
    steps.add({1});
    steps.add({2});
    steps.drop_newest();
    EXPECT_EQ(steps.to_undo()->number, 1);
    EXPECT_EQ(steps.to_redo(), nullptr);
    steps.clear();
    EXPECT_EQ(steps.to_undo(), nullptr);
    EXPECT_TRUE(steps.at_beginning());
}

}  // namespace
}  // namespace nivora
