#include "plots/line_edit.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

constexpr std::int32_t k_dash_dot = 3;
constexpr Colour k_orange = 255 + 128 * 256;

TEST(LineEditTest, OpensOnTheEditedLine) { EXPECT_EQ(LineEdit(default_lines(), 3, 5).line(), 3); }

TEST(LineEditTest, OpensOnLine1AfterACancelOrOnALineThatThePlotDoesNotHave) {
    EXPECT_EQ(LineEdit(default_lines(), k_no_edited_line, 5).line(), 1);
    EXPECT_EQ(LineEdit(default_lines(), 0, 5).line(), 1);
    EXPECT_EQ(LineEdit(default_lines(), 5, 5).line(), 5);
    EXPECT_EQ(LineEdit(default_lines(), 6, 5).line(), 1);
}

TEST(LineEditTest, HasAsManyLinesAsThePlotHasCurvesBetween1And16) {
    EXPECT_EQ(LineEdit(default_lines(), 1, 2).curves(), 2);
    EXPECT_EQ(LineEdit(default_lines(), 1, 0).curves(), 1);
    EXPECT_EQ(LineEdit(default_lines(), 1, 17).curves(), 16);
}

TEST(LineEditTest, ANumberWithoutACurveChangesNothing) {
    LineEdit edit(default_lines(), 2, 3);
    edit.go_to(4);
    EXPECT_EQ(edit.line(), 2);
    edit.go_to(0);
    EXPECT_EQ(edit.line(), 2);
    edit.go_to(3);
    EXPECT_EQ(edit.line(), 3);
}

TEST(LineEditTest, ALineKeepsItsValuesWhileAnotherIsShown) {
    LineEdit edit(default_lines(), 1, 4);
    edit.set_style(k_dash_dot);
    edit.set_colour(k_orange);
    edit.set_fill(6);
    edit.go_to(2);
    EXPECT_EQ(edit.shown(), default_lines()[1]);
    edit.set_width(4);
    edit.go_to(1);
    EXPECT_EQ(edit.shown(), (LineAttribute{k_dash_dot, k_orange, 1, 6}));
    EXPECT_EQ(edit.lines()[1].width, 4);
}

TEST(LineEditTest, TheLinesOfThePlotsStayAsTheyAreUntilTheCopyIsTaken) {
    LineTable lines = default_lines();
    LineEdit edit(lines, 1, 1);
    edit.set_colour(k_orange);
    EXPECT_EQ(lines, default_lines());
    lines = edit.lines();
    EXPECT_EQ(lines[0].colour, k_orange);
    lines[0] = default_lines()[0];
    EXPECT_EQ(lines, default_lines()) << "lines beyond the curves are copied unchanged";
}

TEST(LineEditTest, ALineWiderThan1IsDrawnSolidAndKeepsItsStyle) {
    LineEdit edit(default_lines(), 4, 4);
    ASSERT_EQ(edit.shown().style, k_dash_dot);
    EXPECT_TRUE(edit.has_style());
    EXPECT_EQ(edit.pen().style, k_dash_dot);
    edit.set_width(2);
    EXPECT_FALSE(edit.has_style());
    EXPECT_EQ(edit.pen().style, 0);
    EXPECT_EQ(edit.pen().width, 2);
    EXPECT_EQ(edit.shown().style, k_dash_dot);
    edit.set_width(1);
    EXPECT_TRUE(edit.has_style());
    EXPECT_EQ(edit.pen().style, k_dash_dot);
}

TEST(LineEditTest, ThePenHasTheColourOfTheLine) {
    EXPECT_EQ(LineEdit(default_lines(), 2, 2).pen().colour, 128 * 256);
}

TEST(LineEditTest, AWidthIsFrom1To10) {
    LineEdit edit(default_lines(), 1, 1);
    edit.set_width(0);
    EXPECT_EQ(edit.shown().width, 1);
    edit.set_width(10);
    EXPECT_EQ(edit.shown().width, 10);
    edit.set_width(11);
    EXPECT_EQ(edit.shown().width, 10);
}

TEST(LineEditTest, ValuesThatCannotBeChosenAreReplacedWhenTheirLineIsShown) {
    LineTable lines = default_lines();
    lines[0] = {5, -1, 0, 8};
    lines[1] = {-1, 7, 99, -1};
    lines[2] = {9, 9, 0, 9};
    LineEdit edit(lines, 1, 3);
    EXPECT_EQ(edit.shown(), (LineAttribute{0, 0xFFFFFF, 1, 0}));
    edit.go_to(2);
    EXPECT_EQ(edit.shown(), (LineAttribute{0, 7, 10, 0}));
    EXPECT_EQ(edit.lines()[2], lines[2]);
}

TEST(LineEditTest, OnlyPlots16And23HaveFilledBands) {
    std::vector<int> plots;
    for (int plot = 1; plot <= k_last_plot; ++plot) {
        if (has_filled_bands(static_cast<PlotNumber>(plot))) plots.push_back(plot);
    }
    EXPECT_THAT(plots, testing::ElementsAre(16, 23));
}

}  // namespace
}  // namespace nivora
