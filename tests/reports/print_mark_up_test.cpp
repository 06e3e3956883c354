#include "reports/print_mark_up.h"

#include "reports/print_texts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr PrintAlign k_left = PrintAlign::Left;
constexpr PrintAlign k_centre = PrintAlign::Centre;
constexpr PrintAlign k_right = PrintAlign::Right;

TEST(MarkUp, AlignsWhatFollowsAndGoesBackToTheLeftOnANewLine) {
    EXPECT_THAT(read_mark_up("/cmiddle/rend/nbegin", 1),
                ElementsAre(ElementsAre(MarkedRun{"middle", k_centre}, MarkedRun{"end", k_right}),
                            ElementsAre(MarkedRun{"begin", k_left})));
}

TEST(MarkUp, TheLastOfTwoAlignmentsHolds) {
    EXPECT_THAT(read_mark_up("/c/lSimulation: wet", 1),
                ElementsAre(ElementsAre(MarkedRun{"Simulation: wet"})));
}

TEST(MarkUp, BoldAndUnderlineLastOverLineEnds) {
    EXPECT_THAT(
        read_mark_up("/fb1a/fu1b/nc/fb0d/fu0e", 1),
        ElementsAre(ElementsAre(MarkedRun{"a", k_left, true, false}, MarkedRun{"b", k_left, true, true}),
                    ElementsAre(MarkedRun{"c", k_left, true, true}, MarkedRun{"d", k_left, false, true},
                                MarkedRun{"e", k_left, false, false})));
}

TEST(MarkUp, ThePageNumberStandsInItsPlace) {
    EXPECT_THAT(read_mark_up(k_grid_print_footer, 12),
                ElementsAre(ElementsAre(MarkedRun{"Page 12", k_centre})));
}

TEST(MarkUp, ASlashOfNoCodeStandsForItself) {
    EXPECT_THAT(read_mark_up("11/21/2026 5/", 1), ElementsAre(ElementsAre(MarkedRun{"11/21/2026 5/"})));
    EXPECT_THAT(read_mark_up("/x/f/fb2", 1), ElementsAre(ElementsAre(MarkedRun{"/x/f/fb2"})));
}

TEST(MarkUp, LineEndsInTheTextAreNewLines) {
    EXPECT_THAT(
        read_mark_up("a\r\nb\nc", 1),
        ElementsAre(ElementsAre(MarkedRun{"a"}), ElementsAre(MarkedRun{"b"}), ElementsAre(MarkedRun{"c"})));
    EXPECT_THAT(read_mark_up("/na/n", 1), ElementsAre(IsEmpty(), ElementsAre(MarkedRun{"a"}), IsEmpty()));
    EXPECT_THAT(read_mark_up("", 1), IsEmpty());
}

TEST(MarkUp, ANameIsShownAsItStands) {
    for (const char* name : {"a/n b/c/p", "//", "/", "dry/", "C:\\new", "Ötztal/l"}) {
        EXPECT_THAT(read_mark_up(mark_up_text(name) + "/n", 1),
                    ElementsAre(ElementsAre(MarkedRun{name}), IsEmpty()));
    }
}

TEST(MarkUp, ATextOfSeveralLinesIsShownOnAsMany) {
    EXPECT_THAT(read_mark_up(mark_up_text("a/n\r\nb\rc\f\x01"), 1),
                ElementsAre(ElementsAre(MarkedRun{"a/n"}), ElementsAre(MarkedRun{"b"}),
                            ElementsAre(MarkedRun{"c  "})));
}

TEST(MarkUp, TheHeaderOfAGridReadsAsSevenLines) {
    const auto lines = read_mark_up(grid_print_header(k_monthly_averages_title, "Alder", 0.0), 1);
    ASSERT_EQ(lines.size(), 7U);
    EXPECT_EQ(lines[0][0], (MarkedRun{"Hollin Flow Model (Nivora)", k_centre}));
    EXPECT_EQ(lines[0][1].align, k_right);
    EXPECT_EQ(lines[1][0], (MarkedRun{"Version 1.10", k_centre}));
    EXPECT_EQ(lines[2][0], (MarkedRun{"Long Term Monthly Averages", k_left}));
    EXPECT_TRUE(lines[3].empty());
    EXPECT_TRUE(lines[4].empty());
    EXPECT_EQ(lines[5][0], (MarkedRun{"Basin name:   Alder", k_left}));
    EXPECT_TRUE(lines[6].empty());
}

}  // namespace
}  // namespace nivora
