// Which columns are seen, in which order.

#include "session/column_layout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<OfferedColumn> five() {
    return {{.name = "Date"},
            {.name = "Runoff"},
            {.name = "Computed", .shown_at_first = false},
            {.name = "Tmax"},
            {.name = "Tmin"}};
}

TEST(ColumnLayout, WithoutAKeptTextTheColumnsAreAsOffered) {
    const ColumnLayout layout(five(), "");
    EXPECT_THAT(layout.shown(), ElementsAre(0, 1, 3, 4));
    EXPECT_THAT(layout.all(), ElementsAre(0, 1, 2, 3, 4));
    EXPECT_TRUE(layout.is_original());
    EXPECT_EQ(layout.text(), "");
}

TEST(ColumnLayout, AHiddenColumnKeepsItsPlaceUntilItIsShownAgain) {
    ColumnLayout layout(five(), "");
    layout.show(3, false);
    EXPECT_THAT(layout.shown(), ElementsAre(0, 1, 4));
    EXPECT_FALSE(layout.is_original());
    layout.show(3, true);
    EXPECT_THAT(layout.shown(), ElementsAre(0, 1, 3, 4));
    EXPECT_TRUE(layout.is_original());
}

TEST(ColumnLayout, TheFirstColumnIsNeitherHiddenNorMovedNorPassed) {
    ColumnLayout layout(five(), "");
    EXPECT_FALSE(layout.can_hide(0));
    layout.show(0, false);
    EXPECT_FALSE(layout.can_move(0, true));
    layout.move(0, true);
    EXPECT_FALSE(layout.can_move(1, false));
    layout.move(1, false);
    EXPECT_THAT(layout.shown(), ElementsAre(0, 1, 3, 4));
}

TEST(ColumnLayout, TheLastColumnBesideTheFirstIsNotHidden) {
    ColumnLayout layout(five(), "");
    layout.show(1, false);
    layout.show(3, false);
    EXPECT_FALSE(layout.can_hide(4));
    layout.show(4, false);
    EXPECT_THAT(layout.shown(), ElementsAre(0, 4));
}

TEST(ColumnLayout, AMoveGoesPastHiddenColumns) {
    ColumnLayout layout(five(), "");
    layout.move(1, true);
    EXPECT_THAT(layout.shown(), ElementsAre(0, 3, 1, 4));
    layout.move(4, false);
    layout.move(4, false);
    EXPECT_THAT(layout.shown(), ElementsAre(0, 4, 3, 1));
    EXPECT_FALSE(layout.can_move(4, false));
    EXPECT_FALSE(layout.can_move(1, true));
    EXPECT_FALSE(layout.can_move(2, true)) << "it is not seen";
}

TEST(ColumnLayout, ATextGivesTheSameLayoutAgain) {
    ColumnLayout layout(five(), "");
    layout.show(2, true);
    layout.show(3, false);
    layout.move(4, false);
    const std::string kept = layout.text();
    EXPECT_EQ(kept, "Date Runoff Tmin Computed -Tmax");
    const ColumnLayout again(five(), kept);
    EXPECT_EQ(again.shown(), layout.shown());
    EXPECT_EQ(again.text(), kept);
}

TEST(ColumnLayout, AColumnThatIsNotOfferedNowIsKeptForTheNextTime) {
    const std::vector<OfferedColumn> without{
        {.name = "Date"}, {.name = "Runoff"}, {.name = "Tmax"}, {.name = "Tmin"}};
    ColumnLayout layout(without, "Date Tmax Computed Runoff Tmin");
    EXPECT_THAT(layout.shown(), ElementsAre(0, 2, 1, 3));
    layout.move(1, false);
    EXPECT_THAT(layout.shown(), ElementsAre(0, 1, 2, 3));
    const ColumnLayout with(five(), layout.text());
    EXPECT_TRUE(with.is_shown(2));
}

TEST(ColumnLayout, AColumnThatTheTextDoesNotNameGoesBesideTheOneBeforeIt) {
    const ColumnLayout layout(five(), "Date Tmin Runoff");
    EXPECT_THAT(layout.shown(), ElementsAre(0, 4, 1, 3));
    EXPECT_THAT(layout.all(), ElementsAre(0, 4, 1, 2, 3));
}

TEST(ColumnLayout, AnyTextGivesALayoutThatCanBeUsed) {
    for (const char* text : {"-Date -Runoff -Computed -Tmax -Tmin", "- -- Tmin Tmin -tmin", "    ",
                             "Tmin Date", "-Date", "x y z", "Date -Runoff -Tmax -Tmin"}) {
        const ColumnLayout layout(five(), text);
        const auto shown = layout.shown();
        ASSERT_GE(shown.size(), 2U) << text;
        EXPECT_EQ(shown.front(), 0U) << text;
        EXPECT_THAT(layout.all(), testing::UnorderedElementsAre(0, 1, 2, 3, 4)) << text;
    }
}

TEST(ColumnLayout, NamesAreReadWithoutRegardToCase) {
    const ColumnLayout layout(five(), "DATE -runoff TMAX");
    EXPECT_FALSE(layout.is_shown(1));
}

TEST(ColumnLayout, ShowAllKeepsTheOrderAndRestoreGivesBackEverything) {
    ColumnLayout layout(five(), "Date Tmin -Tmax -Runoff Gone");
    layout.show_all();
    EXPECT_THAT(layout.shown(), ElementsAre(0, 4, 3, 1, 2));
    layout.restore();
    EXPECT_THAT(layout.shown(), ElementsAre(0, 1, 3, 4));
    EXPECT_EQ(layout.text(), "");
}

TEST(ColumnLayout, WithoutColumnsThereIsNothing) {
    EXPECT_THAT(ColumnLayout({}, "a b").shown(), IsEmpty());
    EXPECT_THAT(ColumnLayout().shown(), IsEmpty());
}

}  // namespace
}  // namespace nivora
