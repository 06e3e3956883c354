#include "reports/report_pages.h"

#include "tests/reports/recorded_device.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace nivora {
namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;

std::string numbered(const std::string& name, int first, int last) {
    std::string text;
    for (int line = first; line <= last; ++line) text += name + std::to_string(line) + "\r\n";
    return text;
}

/// The line that begins a further page: the version's number at column 37, "Page" at 65, its number at 78.
std::string page_line(int page) {
    return std::string(23, ' ') + "NVR, Version 1.10" + std::string(24, ' ') + "Page" + std::string(9, ' ') +
           std::to_string(page);
}

/// Pages of 60 lines that are wide enough for the usual font.
class ReportPages : public testing::Test {
protected:
    ReportPages() { device_.usable(12000, 60 * 145); }

    PrintedJob lay_out(const std::string& text, bool No_Table_Head = false) {
        const PrintedJob job =
            lay_out_report(device_, {.text = text, .name = "r", .No_Table_Head = No_Table_Head});
        expect_within_margins(job, device_);
        return job;
    }
    std::vector<std::vector<std::string>> pages(const std::string& text, bool No_Table_Head = false) {
        const PrintedJob job = lay_out(text, No_Table_Head);
        std::vector<std::vector<std::string>> result;
        for (const PrintedPage& page : job.pages) result.push_back(printed_lines(page, device_, job.font));
        return result;
    }

    RecordedDevice device_;
};

TEST_F(ReportPages, AReportOfOneLineBeginsAtTheMarginsInBold) {
    const PrintedJob job = lay_out("Hollin Flow Model\r\n");
    EXPECT_EQ(job.name, "r");
    EXPECT_EQ(job.font, (PrintFont{.family = "Courier New", .points = 7.25, .fixed_pitch = true}));
    ASSERT_EQ(job.pages.size(), 1U);
    ASSERT_EQ(job.pages[0].texts.size(), 1U);
    // 17 letters of 87 twips.
    EXPECT_EQ(job.pages[0].texts[0],
              (PrintedText{.x = 1440, .y = 1440, .text = "Hollin Flow Model", .bold = true, .width = 1479}));
}

TEST_F(ReportPages, AnEmptyReportHasNoPage) {
    EXPECT_TRUE(lay_out("").pages.empty());
    EXPECT_TRUE(lay_out("\r\n\x01\r\n\f\r\n").pages.empty());
}

TEST_F(ReportPages, AFormFeedIsAnEmptyLineAndAMarkIsNone) {
    EXPECT_THAT(pages("a\r\n\x01\r\nb\r\n\f\r\nc\r\n"), ElementsAre(ElementsAre("a", "b", "", "c")));
}

TEST_F(ReportPages, ALineThatOnlyContainsAFormFeedCharacterIsText) {
    EXPECT_THAT(pages("a\fb\r\n"), ElementsAre(ElementsAre("a b")));
}

TEST_F(ReportPages, AFullPageIsTheLastOneWithoutAFurtherHead) {
    const auto printed = pages(numbered("line ", 1, 60));
    ASSERT_EQ(printed.size(), 1U);
    EXPECT_EQ(printed[0].size(), 60U);
}

TEST_F(ReportPages, EmptyLinesFormFeedsAndMarksBeginNoPage) {
    EXPECT_EQ(pages(numbered("line ", 1, 60) + "\x01\r\n\r\n\r\n\f\r\n").size(), 1U);
}

TEST_F(ReportPages, AFurtherPageBeginsWithVersionPageNumberRuleAndTheElevenHeadLines) {
    const auto printed = pages(numbered("line ", 1, 61));
    ASSERT_EQ(printed.size(), 2U);
    EXPECT_EQ(printed[1][0], page_line(2));
    EXPECT_EQ(printed[1][1], "");
    EXPECT_EQ(printed[1][2], "");
    EXPECT_EQ(printed[1][3], std::string(82, '='));
    for (std::size_t line = 1; line <= 11; ++line)
        EXPECT_EQ(printed[1][3 + line], "line " + std::to_string(line));
    EXPECT_EQ(printed[1][15], "line 61");
    EXPECT_EQ(printed[1].size(), 16U);
}

TEST_F(ReportPages, WithoutTableHeadsTheElevenLinesAreLeftOut) {
    const auto printed = pages(numbered("line ", 1, 61), true);
    ASSERT_EQ(printed.size(), 2U);
    EXPECT_EQ(printed[1][0], page_line(2));
    EXPECT_EQ(printed[1][3], std::string(82, '='));
    EXPECT_EQ(printed[1][4], "line 61");
}

TEST_F(ReportPages, APageThatContinuesATableSaysSo) {
    const auto printed = pages(numbered("line ", 1, 70) + "\x01\r\n");
    ASSERT_EQ(printed.size(), 2U);
    EXPECT_EQ(printed[1][14], "line 11");
    EXPECT_EQ(printed[1][15], "(continued)");
    EXPECT_EQ(printed[1][16], "line 61");
}

TEST_F(ReportPages, TheHeadIsTakenAnewBehindEachFormFeed) {
    const auto printed = pages(numbered("first ", 1, 20) + "\f\r\n" + numbered("second ", 1, 60));
    // The second part would be split and fits on no page, so it begins on line 22 of the first one.
    ASSERT_EQ(printed.size(), 2U);
    EXPECT_EQ(printed[0][20], "");
    EXPECT_EQ(printed[0][21], "second 1");
    EXPECT_EQ(printed[1][4], "second 1");
    EXPECT_EQ(printed[1][14], "second 11");
    EXPECT_EQ(printed[1][15], "second 40");
}

TEST_F(ReportPages, AHeadOfFewerThanElevenLinesIsRepeatedAsFarAsItWent) {
    const auto printed = pages(numbered("first ", 1, 50) + "\f\r\n" + numbered("second ", 1, 60));
    // 50 lines, the form feed and 9 lines; then 4 lines, a head of 9 and 47 lines; then a head of all 11.
    ASSERT_EQ(printed.size(), 3U);
    EXPECT_EQ(printed[0].back(), "second 9");
    EXPECT_EQ(printed[1][4], "second 1");
    EXPECT_EQ(printed[1][12], "second 9");
    EXPECT_EQ(printed[1][13], "second 10");
    EXPECT_EQ(printed[1].back(), "second 56");
    EXPECT_EQ(printed[2][14], "second 11");
    EXPECT_EQ(printed[2][15], "second 57");
}

TEST_F(ReportPages, ATableThatEndsBeyondSixTenthsLowersTheLimitByOneAndAHalfTimesItsHeight) {
    // Tables of 20 lines. The second ends at line 40, beyond 36: the limit is 60 - 30 = 30, so that the third
    // begins a page although its 20 lines would just fit.
    const std::string text = numbered("a", 1, 20) + "\x01\r\n" + numbered("b", 1, 20) + "\x01\r\n" +
                             numbered("c", 1, 20) + "\x01\r\n";
    const auto printed = pages(text);
    ASSERT_EQ(printed.size(), 2U);
    EXPECT_EQ(printed[0].back(), "b20");
    EXPECT_EQ(printed[1][4], "a1");
    EXPECT_EQ(printed[1][14], "a11");
    EXPECT_EQ(printed[1][15], "c1");
}

TEST_F(ReportPages, ATableThatEndsAtSixTenthsIsNotMeasured) {
    // The first ends at line 36: no limit. The second fits the 24 lines that are left.
    const auto printed = pages(numbered("a", 1, 36) + "\x01\r\n" + numbered("b", 1, 24) + "\x01\r\n");
    EXPECT_EQ(printed.size(), 1U);
}

TEST_F(ReportPages, SmallTablesGoOnUntilOneAndAHalfOfThemNoLongerFit) {
    // Tables of 5 lines: from the eighth on (line 40) the limit is 52.5. The tenth ends at 50, the eleventh
    // at 55: the twelfth begins a page.
    std::string text;
    for (int table = 1; table <= 12; ++table)
        text += numbered("t" + std::to_string(table) + ".", 1, 5) + "\x01\r\n";
    const auto printed = pages(text);
    ASSERT_EQ(printed.size(), 2U);
    EXPECT_EQ(printed[0].back(), "t11.5");
    EXPECT_EQ(printed[1][15], "t12.1");
}

TEST_F(ReportPages, TheHeightOfATableBeginsBehindItsFormFeed) {
    // 32 lines and a form feed; then tables of 6 lines. The first ends at line 39: the limit is 60 - 9 = 51.
    // The third ends there, so that the fourth still stands on the page, to line 57.
    std::string text = numbered("r", 1, 32) + "\f\r\n";
    for (int table = 1; table <= 5; ++table)
        text += numbered("t" + std::to_string(table) + ".", 1, 6) + "\x01\r\n";
    const auto printed = pages(text);
    ASSERT_EQ(printed.size(), 2U);
    EXPECT_EQ(printed[0].size(), 57U);
    EXPECT_EQ(printed[0].back(), "t4.6");
    EXPECT_EQ(printed[1][4], "t1.1") << "the head";
    EXPECT_EQ(printed[1][15], "t5.1");
}

TEST_F(ReportPages, TheLinesThatEndAReportPageAreNotPartOfTheNextTable) {
    // Tables of 8 lines and 4 behind them. The mark of the fourth is at line 44: the limit is 60 - 12 = 48,
    // where the fifth begins; its text ends at line 59.
    std::string text;
    for (int table = 1; table <= 6; ++table) {
        text += numbered("t" + std::to_string(table) + ".", 1, 8) + "\x01\r\n\r\n\r\nversion " +
                std::to_string(table) + "\r\n\f\r\n";
    }
    const auto printed = pages(text);
    ASSERT_EQ(printed.size(), 2U);
    EXPECT_EQ(printed[0].size(), 59U);
    EXPECT_EQ(printed[0].back(), "version 5");
    EXPECT_EQ(printed[1][4], "t6.1");
}

/// A report page of several tables of 10 lines below a head of 28.
std::string tables_below_a_head(int count) {
    std::string text = numbered("head ", 1, 13) + "\r\n" + numbered("note ", 1, 12) + "\r\n\r\n";
    for (int table = 1; table <= count; ++table)
        text += numbered("t" + std::to_string(table) + ".", 1, 9) + "\r\n\x01\r\n";
    return text;
}

TEST_F(ReportPages, TheHeadOfAReportPageIsNotPartOfTheFirstOfItsTables) {
    // The first table ends at line 38: the limit is 60 - 15 = 45. The second begins at 38 and ends at 48,
    // beyond the limit: the third begins a page, although its nine lines of text would end at 57.
    const auto printed = pages(tables_below_a_head(3));
    ASSERT_EQ(printed.size(), 2U);
    EXPECT_EQ(printed[0].back(), "t2.9");
    EXPECT_EQ(printed[1][14], "head 11");
    EXPECT_EQ(printed[1][15], "t3.1");
}

TEST_F(ReportPages, TheHeadOfAReportPageBehindAFormFeedIsNotPartOfItsTableEither) {
    // As above, 5 lines further down: the first table ends at line 43, the second one at 53.
    const auto printed = pages(numbered("r", 1, 4) + "\f\r\n" + tables_below_a_head(3));
    ASSERT_EQ(printed.size(), 2U);
    EXPECT_EQ(printed[0].back(), "t2.9");
    EXPECT_EQ(printed[1][15], "t3.1");
}

TEST_F(ReportPages, TheHeadOfADailyTableIsPartOfItBecauseTheNextOneRepeatsIt) {
    // 28 lines and a form feed, then a table of 3 lines, an empty one and 7 more: its mark is at line 40 and
    // the limit 60 - 16.5 = 43.5. The lines behind it end at 44: the next table begins a page, although its
    // text would end at line 58. Without its head the limit would be 60 - 10.5 = 49.5.
    const auto table = [](const std::string& name) {
        return numbered(name, 1, 3) + "\r\n" + numbered(name, 4, 10) + "\x01\r\n\r\n\r\nversion\r\n\f\r\n";
    };
    const auto printed = pages(numbered("r", 1, 28) + "\f\r\n" + table("a") + table("b"));
    ASSERT_EQ(printed.size(), 2U);
    EXPECT_EQ(printed[0].back(), "version");
    EXPECT_EQ(printed[1][4], "b1");
}

TEST_F(ReportPages, ATableThatWouldBeSplitBeginsAPage) {
    // 30 lines, and 32 that do not fit after them. 15 lines of head and 32 fit a page of their own.
    const std::string text = numbered("a", 1, 30) + "\x01\r\n" + numbered("b", 1, 32) + "\x01\r\n";
    const auto printed = pages(text);
    ASSERT_EQ(printed.size(), 2U);
    EXPECT_EQ(printed[0].back(), "a30");
    EXPECT_EQ(printed[1][15], "b1");
    EXPECT_THAT(printed[1], Each(testing::Not(HasSubstr("continued"))));
}

TEST_F(ReportPages, WithoutPageBreaksTablesFollowEachOther) {
    const std::string text = numbered("a", 1, 30) + "\x01\r\n" + numbered("b", 1, 32) + "\x01\r\n";
    const auto printed = pages(text, true);
    ASSERT_EQ(printed.size(), 2U);
    EXPECT_EQ(printed[0].back(), "b30");
    EXPECT_EQ(printed[1][4], "(continued)");
    EXPECT_EQ(printed[1][5], "b31");
}

TEST_F(ReportPages, WithoutPageBreaksAPageEndsOnlyWhereItIsFull) {
    // The first table ends at line 40, beyond 36. With page breaks the limit would be 60 - 60 = 0.
    const std::string text = numbered("a", 1, 40) + "\x01\r\n" + numbered("b", 1, 10) + "\x01\r\n" +
                             numbered("c", 1, 15) + "\x01\r\n";
    EXPECT_EQ(pages(text)[0].back(), "a40");
    const auto printed = pages(text, true);
    ASSERT_EQ(printed.size(), 2U);
    EXPECT_EQ(printed[0].size(), 60U);
    EXPECT_EQ(printed[0].back(), "c10");
    EXPECT_EQ(printed[1][4], "(continued)");
    EXPECT_EQ(printed[1][5], "c11");
    EXPECT_EQ(printed[1].size(), 10U);
}

TEST_F(ReportPages, TheLinesThatEndAReportPageStayBelowItsTable) {
    const std::string end = "\x01\r\n\r\n\r\nversion 1\r\n\f\r\n";
    const auto printed = pages(numbered("a", 1, 46) + end + numbered("b", 1, 46) + end);
    ASSERT_EQ(printed.size(), 2U);
    EXPECT_EQ(printed[0].size(), 49U);
    EXPECT_EQ(printed[0][48], "version 1");
    // No head was read after the form feed yet: the table has its own.
    EXPECT_EQ(printed[1][0], page_line(2));
    EXPECT_EQ(printed[1][3], std::string(82, '='));
    EXPECT_EQ(printed[1][4], "b1");
    EXPECT_EQ(printed[1].back(), "version 1");
}

TEST_F(ReportPages, TwoTablesShareAPageWhereBothFit) {
    const std::string end = "\x01\r\n\r\n\r\nversion 1\r\n\f\r\n";
    // 25 + 4 + 25 + 3 = 57 lines.
    EXPECT_EQ(pages(numbered("a", 1, 25) + end + numbered("b", 1, 25) + end).size(), 1U);
}

TEST_F(ReportPages, TheFontShrinksUntilTheWidestLineFits) {
    // 125 columns at 7.25 points are 10875 twips wide; the page has 9000: 7.25 x 9000 / 10875 = 6.
    device_.usable(9000, 60 * 145);
    const PrintedJob job = lay_out("short\r\n" + std::string(125, 'x') + "\r\n");
    EXPECT_LE(job.font.points, 6.0);
    EXPECT_GT(job.font.points, 5.985);
    EXPECT_EQ(job.pages[0].texts[1].text, std::string(125, 'x'));
    EXPECT_LE(job.pages[0].texts[1].width, 9000.0);
    // Lines are closer: 60 x 7.25 / 6 = 72.5 on a page.
    EXPECT_EQ(lay_out(numbered(std::string(123, 'x'), 1, 72)).pages.size(), 1U);
}

TEST_F(ReportPages, TheFontShrinksForTheRuleOf82OnAPageThatHolds80Characters) {
    // 80 columns at 7.25 points are 6960 twips wide, 82 are 7134: 7.25 x 7000 / 7134 = 7.11.
    device_.usable(7000, 60 * 145);
    ASSERT_FALSE(margin_refusal(device_, "frmPrint"));
    const PrintedJob job = lay_out(numbered("line ", 1, 70));
    EXPECT_LE(job.font.points, 7.12);
    EXPECT_GT(job.font.points, 7.09);
    ASSERT_EQ(job.pages.size(), 2U);
    const auto& texts = job.pages[1].texts;
    const auto rule = std::ranges::find(texts, std::string(82, '='), &PrintedText::text);
    ASSERT_NE(rule, texts.end());
    EXPECT_LE(rule->width, 7000.0);
}

TEST_F(ReportPages, AWidestLineThatJustFitsKeepsTheFont) {
    device_.usable(125 * 87, 60 * 145);
    EXPECT_EQ(lay_out(std::string(125, 'x')).font.points, 7.25);
    EXPECT_LT(lay_out(std::string(126, 'x')).font.points, 7.25);
}

TEST_F(ReportPages, ALineTooLongForTheSmallestFontIsBrokenAndNeverCut) {
    // At 4.5 points a letter is 54 twips wide: 6960 hold 128 of them.
    device_.usable(6960, 60 * 145);
    std::string words;
    for (int word = 0; word < 100; ++word) words += "word" + std::to_string(1000 + word) + " ";
    const PrintedJob job = lay_out(words + "\r\n" + std::string(300, 'x') + "\r\n");
    EXPECT_EQ(job.font.points, 4.5);
    std::string together;
    std::size_t longest = 0;
    for (const PrintedText& text : job.pages[0].texts) {
        longest = std::max(longest, text.text.size());
        together += text.text + (text.text.front() == 'w' ? " " : "");
    }
    EXPECT_EQ(together, words + std::string(300, 'x'));
    EXPECT_EQ(longest, 128U);
}

TEST_F(ReportPages, LettersOutsideLatinCountAsCharacters) {
    const PrintedJob job = lay_out("Долина 谷 Ötztal\r\n");
    EXPECT_EQ(job.pages[0].texts[0].width, 15 * 87.0);
}

TEST_F(ReportPages, TheDifferenceSignOfTheClimateReportIsPrintedAsDelta) {
    EXPECT_THAT(pages("Winter Change (\x1eHW)\tx\r\n"), ElementsAre(ElementsAre("Winter Change (ΔHW) x")));
}

TEST_F(ReportPages, LinesMayEndWithLineFeedsAlone) {
    EXPECT_THAT(pages("a\nb"), ElementsAre(ElementsAre("a", "b")));
}

TEST_F(ReportPages, FiftyThousandLinesTakeTheirPages) {
    // 60 lines on the first page, 60 - 15 on each further one: 1 + 49940 / 45 = 1 + 1109.8.
    const PrintedJob job = lay_out_report(device_, {.text = numbered("line ", 1, 50'000), .name = "long"});
    EXPECT_EQ(job.pages.size(), 1111U);
    EXPECT_EQ(job.pages.back().texts[0].text, page_line(1111));
    EXPECT_EQ(job.pages.back().texts.back().text, "line 50000");
}

TEST_F(ReportPages, MarginsThatEatThePageLeaveALineOnEach) {
    device_.usable(12000, -100);
    const PrintedJob job = lay_out_report(device_, {.text = "a\r\nb\r\nc\r\n", .name = "eaten"});
    EXPECT_EQ(job.pages.size(), 3U);
}

TEST(ReportTextFile, FormFeedsAndMarksAreEmptyLinesAndEveryThirdMarkIsRuled) {
    const std::string rule = std::string(92, '=') + "\r\n\r\n\r\n";
    EXPECT_EQ(report_text_file("a\r\n\x01\r\nb\r\n\f\r\n\x01\r\n"), "a\r\n\r\nb\r\n\r\n\r\n");
    std::string text;
    std::string expected;
    for (int mark = 1; mark <= 7; ++mark) {
        text += "table\r\n\x01\r\n";
        expected += "table\r\n\r\n" + (mark == 3 || mark == 6 ? rule : "");
    }
    EXPECT_EQ(report_text_file(text), expected);
}

TEST(ReportTextFile, EveryLineEndsWithCarriageReturnAndLineFeed) {
    EXPECT_EQ(report_text_file("a\nb"), "a\r\nb\r\n");
    EXPECT_EQ(report_text_file(""), "");
    EXPECT_EQ(report_text_file("  Ötztal\x1e \r\n"), "  Ötztal\x1e \r\n");
}

}  // namespace
}  // namespace nivora
