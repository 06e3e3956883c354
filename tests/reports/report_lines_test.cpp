#include "reports/report_lines.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

TEST(ReportLines, ItemsFollowEachOtherWithNothingBetween) {
    ReportLines lines;
    lines.text("Zone").text("A").end_line();
    EXPECT_EQ(lines.written(), "ZoneA\r\n");
}

TEST(ReportLines, ALineEndsWithCarriageReturnAndLineFeed) {
    ReportLines lines;
    lines.line("one");
    lines.end_line();
    lines.line("three");
    EXPECT_EQ(lines.written(), "one\r\n\r\nthree\r\n");
}

TEST(ReportLines, APositiveNumberHasABlankOnEitherSide) {
    ReportLines lines;
    lines.text("=").number(12.5).text("=");
    EXPECT_EQ(lines.written(), "= 12.5 =");
}

TEST(ReportLines, AZeroHasABlankOnEitherSide) {
    ReportLines lines;
    lines.number(0.0).text("|");
    EXPECT_EQ(lines.written(), " 0 |");
}

TEST(ReportLines, ANegativeNumberHasABlankBehindItOnly) {
    ReportLines lines;
    lines.text("=").number(-3.0).text("=");
    EXPECT_EQ(lines.written(), "=-3 =");
}

TEST(ReportLines, ANumberBelowOneCarriesAZeroBeforeThePoint) {
    ReportLines lines;
    lines.number(0.25).number(-0.25);
    EXPECT_EQ(lines.written(), " 0.25 -0.25 ");
}

TEST(ReportLines, ANumberHasSevenSignificantDigitsAtMost) {
    ReportLines lines;
    lines.number(2.0 / 3.0).number(1234567.4).number(20.0 / 3.0);
    EXPECT_EQ(lines.written(), " 0.6666667  1234567  6.666667 ");
}

TEST(ReportLines, ADateIsMonthDayAndYearWithoutLeadingZeros) {
    ReportLines lines;
    lines.date(day_count({2001, 5, 3}).value());
    EXPECT_EQ(lines.written(), "5/3/2001");
}

TEST(ReportLines, ATabStopIsAColumnCountedFromOne) {
    ReportLines lines;
    lines.text("Basin: ").tab(13).text("Hollin").end_line();
    // 7 characters, then the columns 8 to 12.
    EXPECT_EQ(lines.written(), "Basin:      Hollin\r\n");
}

TEST(ReportLines, AColumnThatIsJustReachedNeedsNoBlanks) {
    ReportLines lines;
    lines.text("1234").tab(5).text("x");
    EXPECT_EQ(lines.written(), "1234x");
}

TEST(ReportLines, TheFirstColumnIsTheStartOfALine) {
    ReportLines lines;
    lines.tab(1).text("x");
    EXPECT_EQ(lines.written(), "x");
}

TEST(ReportLines, AnItemWhoseColumnIsPassedGoesToTheNextLine) {
    ReportLines lines;
    lines.text("12345").tab(5).text("x");
    EXPECT_EQ(lines.written(), "12345\r\n    x");
}

TEST(ReportLines, ColumnsCountCharactersAndNotBytes) {
    ReportLines lines;
    lines.text("m³/s").tab(6).text("x");
    EXPECT_EQ(lines.written(), "m³/s x");
}

TEST(ReportLines, ATextOfTheUserStaysOnItsLine) {
    ReportLines lines;
    lines.user_text("Al\r\nder\f\x01").tab(12).text("x");
    // 9 characters, each control character a blank.
    EXPECT_EQ(lines.written(), "Al  der    x");
}

TEST(ReportLines, ColumnsStartAnewOnEachLine) {
    ReportLines lines;
    lines.line("a long line before it");
    lines.tab(3).text("x");
    EXPECT_EQ(lines.written(), "a long line before it\r\n  x");
}

}  // namespace
}  // namespace nivora
