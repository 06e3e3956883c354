#include "reports/sheet_text.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

std::string text_of(const PrintedSheet& sheet) { return sheet_text_file(std::span{&sheet, 1}); }

TEST(SheetText, ColumnsAreAsWideAsTheirWidestTextAndEndedByARule) {
    const PrintedSheet sheet{.columns = {{"Date", PrintAlign::Left}, {"Runoff\nm³/s", PrintAlign::Right}},
                             .rows = {{"10/01/1980", "1.00"}, {"10/02/1980", "-123.25"}}};
    EXPECT_EQ(text_of(sheet),
              "\r\n"
              "             Runoff\r\n"
              "Date           m³/s\r\n"
              "----------  -------\r\n"
              "10/01/1980     1.00\r\n"
              "10/02/1980  -123.25\r\n");
}

TEST(SheetText, LettersOutsideLatinCountAsOneCharacterEach) {
    const PrintedSheet sheet{.columns = {{"°C", PrintAlign::Left}, {"x", PrintAlign::Left}},
                             .rows = {{"ä", "1"}, {"abc", "2"}}};
    EXPECT_EQ(text_of(sheet), "\r\n°C   x\r\n---  -\r\nä    1\r\nabc  2\r\n");
}

TEST(SheetText, HeaderAndHeadingStandAboveOnce) {
    PrintedSheet sheet{.header = "/cTop/r1//2/n/lLeft", .heading = "/nZone 1"};
    // 80 columns: three characters in the middle begin at column 39, "1/2" ends at column 80.
    EXPECT_EQ(text_of(sheet),
              std::string(38, ' ') + "Top" + std::string(36, ' ') + "1/2\r\nLeft\r\n\r\nZone 1\r\n");
}

TEST(SheetText, AFooterOfPageNumbersIsLeftOutAndAnotherStays) {
    EXPECT_EQ(text_of({.footer = "/fb0/cPage /p"}), "");
    EXPECT_EQ(text_of({.footer = "File:  a//p.mdb"}), "File:  a/p.mdb\r\n");
}

TEST(SheetText, AShortRowEndsWithBlanksThatAreNotWritten) {
    const PrintedSheet sheet{.columns = {{"a", PrintAlign::Left}, {"b", PrintAlign::Left}},
                             .rows = {{"1"}, {}, {"2", "3"}}};
    EXPECT_EQ(text_of(sheet), "\r\na  b\r\n-  -\r\n1\r\n\r\n2  3\r\n");
}

TEST(SheetText, TheLegendStandsBelowTheRows) {
    const PrintedSheet sheet{
        .columns = {{"a", PrintAlign::Left}}, .rows = {{"1"}}, .legend = "/fu1Note/fu0/nx"};
    EXPECT_EQ(text_of(sheet), "\r\na\r\n-\r\n1\r\n\r\nNote\r\nx\r\n");
}

TEST(SheetText, SheetsFollowEachOtherAfterTwoEmptyLines) {
    const std::vector<PrintedSheet> sheets{{.header = "One"}, {.header = "Two"}};
    EXPECT_EQ(sheet_text_file(sheets), "One\r\n\r\n\r\nTwo\r\n");
}

TEST(SheetText, PartsOfALineThatWouldOverlapFollowEachOther) {
    const std::string left(50, 'l');
    EXPECT_EQ(text_of({.header = left + "/cmiddle/rright"}),
              left + " middle" + std::string(18, ' ') + "right\r\n");
}

}  // namespace
}  // namespace nivora
