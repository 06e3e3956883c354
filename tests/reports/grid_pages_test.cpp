#include "reports/grid_pages.h"

#include "reports/print_texts.h"
#include "tests/reports/recorded_device.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// At 8.25 points a letter is 99 twips wide and a line 165 high; there are 160 between columns.
class GridPages : public testing::Test {
protected:
    GridPages() { device_.usable(6000, 40 * 165); }

    PrintedJob lay_out(const PrintedSheet& sheet) {
        const PrintedJob job = lay_out_sheets(device_, std::span{&sheet, 1}, k_print_job_name);
        expect_within_margins(job, device_);
        return job;
    }
    std::vector<std::string> texts(const PrintedJob& job, std::size_t page) {
        std::vector<std::string> found;
        for (const PrintedText& text : job.pages[page].texts) found.push_back(text.text);
        return found;
    }
    static const PrintedText& text_of(const PrintedJob& job, std::size_t page, const std::string& text) {
        for (const PrintedText& printed : job.pages[page].texts) {
            if (printed.text == text) return printed;
        }
        ADD_FAILURE() << "not on the page: " << text;
        static const PrintedText none;
        return none;
    }
    static std::vector<std::vector<std::string>> rows(int count, std::size_t columns) {
        std::vector<std::vector<std::string>> result;
        for (int row = 1; row <= count; ++row) {
            result.emplace_back();
            for (std::size_t column = 0; column < columns; ++column) {
                result.back().push_back(std::to_string(row) + static_cast<char>('a' + column));
            }
        }
        return result;
    }

    RecordedDevice device_;
};

TEST_F(GridPages, TheJobBearsNameAndFont) {
    const PrintedJob job = lay_out({.columns = {{"Day"}}, .rows = {{"1"}}});
    EXPECT_EQ(job.name, "Hollin Flow Model");
    EXPECT_EQ(job.font, (PrintFont{.family = "MS Sans Serif", .points = 8.25}));
}

TEST_F(GridPages, HeadsStandOnARuleAboveTheRowsAtTheirColumns) {
    const PrintedJob job =
        lay_out({.columns = {{"Month"}, {"Mean", PrintAlign::Right}, {"Mid", PrintAlign::Centre}},
                 .rows = {{"January", "1.5", "x"}, {"May", "12.25", "y"}}});
    ASSERT_EQ(job.pages.size(), 1U);
    // Columns of 7, 5 and 3 letters: 693, 495 and 297 wide, from 1440, 2293 and 2948 on.
    EXPECT_EQ(text_of(job, 0, "Month").x, 1440.0);
    EXPECT_EQ(text_of(job, 0, "Month").y, 1440.0);
    EXPECT_TRUE(text_of(job, 0, "Month").bold);
    EXPECT_EQ(text_of(job, 0, "Mean").x, 2293.0 + 99.0);
    EXPECT_EQ(text_of(job, 0, "12.25").x, 2293.0);
    EXPECT_EQ(text_of(job, 0, "1.5").x, 2293.0 + 2 * 99.0);
    EXPECT_EQ(text_of(job, 0, "x").x, 2948.0 + 99.0);
    EXPECT_FALSE(text_of(job, 0, "x").bold);
    ASSERT_EQ(job.pages[0].rules.size(), 1U);
    EXPECT_EQ(job.pages[0].rules[0], (PrintedRule{1440.0, 1605.0, 3245.0, 1605.0}));
    EXPECT_EQ(text_of(job, 0, "January").y, 1605.0 + 30.0);
    EXPECT_EQ(text_of(job, 0, "May").y, 1605.0 + 30.0 + 165.0);
}

TEST_F(GridPages, HeaderAndFooterStandOnEveryPageWithItsNumber) {
    // 40 lines: 7 of the header and one of the column heads above; half a line and one below.
    device_.usable(8000, 40 * 165);
    const PrintedJob job = lay_out({.header = grid_print_header(daily_values_title("wet"), "Alder", 0.0),
                                    .columns = {{"Day"}},
                                    .rows = rows(70, 1),
                                    .footer = k_grid_print_footer});
    ASSERT_EQ(job.pages.size(), 3U);
    for (std::size_t page = 0; page < 3; ++page) {
        EXPECT_EQ(text_of(job, page, "Simulation: wet").x, 1440.0);
        // 26 letters in the middle of 8000 twips.
        EXPECT_EQ(text_of(job, page, "Hollin Flow Model (Nivora)").x, 1440.0 + (8000.0 - 26 * 99.0) / 2);
        const PrintedText& foot = text_of(job, page, "Page " + std::to_string(page + 1));
        EXPECT_EQ(foot.y, 1440.0 + 39 * 165.0);
        EXPECT_EQ(foot.x, 1440.0 + (8000.0 - 6 * 99.0) / 2);
        EXPECT_EQ(text_of(job, page, "Day").y, 1440.0 + 7 * 165.0);
    }
    // From line 8 and 30 twips to line 38.5 are 30 rows.
    EXPECT_EQ(text_of(job, 0, "30a").y, 1440.0 + 8 * 165.0 + 30.0 + 29 * 165.0);
    EXPECT_EQ(text_of(job, 1, "31a").y, 1440.0 + 8 * 165.0 + 30.0);
    EXPECT_EQ(text_of(job, 2, "70a").y, 1440.0 + 8 * 165.0 + 30.0 + 9 * 165.0);
}

TEST_F(GridPages, PartsOfALineThatWouldOverlapStandBelowEachOther) {
    // 31 + 26 letters: 31 x 99 / 2 + 26 x 99 is more than the half of 6000.
    const std::string middle(31, 'm');
    const std::string end(26, 'e');
    const PrintedJob job = lay_out({.header = "/c" + middle + "/r" + end, .columns = {{"Day"}}});
    EXPECT_EQ(text_of(job, 0, middle).y, 1440.0);
    EXPECT_EQ(text_of(job, 0, end).y, 1440.0 + 165.0);
    EXPECT_EQ(text_of(job, 0, end).x, 1440.0 + 6000.0 - 26 * 99.0);
}

TEST_F(GridPages, AWideSheetGoesOnToTheRightBehindItsRowsWithItsHeadsAndKeyColumns) {
    // Columns of 10 letters are 990 wide, 1150 with their gap: 6000 hold five. The first is repeated, so that
    // further pages show four others: 1 to 5, 1 and 6 to 9, 1 and 10.
    std::vector<SheetColumn> columns;
    for (int column = 1; column <= 10; ++column)
        columns.push_back({"Column_" + std::to_string(100 + column)});
    const PrintedJob job =
        lay_out({.columns = columns, .rows = rows(50, 10), .key_columns = 1, .footer = "/cPage /p"});
    // Rows take lines 1 to 38.5, less 30 twips: 37 of them, so that each part needs two pages.
    ASSERT_EQ(job.pages.size(), 6U);
    EXPECT_THAT(texts(job, 0), testing::IsSupersetOf({"Column_101", "Column_105", "1a", "37e", "Page 1"}));
    EXPECT_THAT(texts(job, 0), testing::Not(testing::Contains("Column_106")));
    EXPECT_THAT(texts(job, 1), testing::IsSupersetOf({"Column_101", "Column_105", "38a", "50e", "Page 2"}));
    EXPECT_THAT(texts(job, 2), testing::IsSupersetOf(
                                   {"Column_101", "Column_106", "Column_109", "1a", "1f", "37i", "Page 3"}));
    EXPECT_THAT(texts(job, 2), testing::Not(testing::Contains("Column_105")));
    EXPECT_THAT(texts(job, 5), testing::IsSupersetOf({"Column_101", "Column_110", "50a", "50j", "Page 6"}));
}

TEST_F(GridPages, ColumnsThatJustFitStandOnOnePage) {
    // 990 x 5 + 160 x 4 = 5590; a gap and two letters more are 5948, three are 6047.
    std::vector<SheetColumn> columns(5, SheetColumn{std::string(10, 'x')});
    columns.push_back({"xx"});
    EXPECT_EQ(lay_out({.columns = columns}).pages.size(), 1U);
    columns.back().head = "xxx";
    EXPECT_EQ(lay_out({.columns = columns}).pages.size(), 2U);
}

TEST_F(GridPages, HeadsOfSeveralWordsAreBrokenBeforeColumnsGoToAnotherPage) {
    PrintedSheet sheet{.columns = {{"Day"}}, .rows = {{"1", "1.5", "2.5", "3.5", "4.5"}}};
    for (int column = 0; column < 4; ++column) sheet.columns.push_back({"Maximum Temperature"});
    // In one line the heads take 3 and 4 x 19 letters of 99 and 4 gaps of 160: 8,461. Their longest word has
    // 11 letters: 297 + 4 x 1,089 + 640 = 5,293 of 6,000.
    const PrintedJob job = lay_out(sheet);
    ASSERT_EQ(job.pages.size(), 1U);
    EXPECT_EQ(text_of(job, 0, "Maximum").y, 1440.0);
    EXPECT_EQ(text_of(job, 0, "Temperature").y, 1440.0 + 165.0);
    EXPECT_EQ(text_of(job, 0, "Day").y, 1440.0 + 165.0);
    EXPECT_EQ(text_of(job, 0, "4.5").x, 1440.0 + 297.0 + 160.0 + 3 * (1089.0 + 160.0));
}

TEST_F(GridPages, HeadingAndLegendStandAroundTheRowsOnce) {
    const PrintedJob job = lay_out({.heading = "/n/fu1Comments/fu0/nTwo degrees",
                                    .columns = {{"Day"}},
                                    .rows = rows(60, 1),
                                    .legend = "/fb0/lZone - the zones"});
    ASSERT_EQ(job.pages.size(), 2U);
    EXPECT_TRUE(text_of(job, 0, "Comments").underline);
    EXPECT_EQ(text_of(job, 0, "Comments").y, 1440.0 + 165.0);
    EXPECT_EQ(text_of(job, 0, "Two degrees").y, 1440.0 + 2 * 165.0);
    EXPECT_EQ(text_of(job, 0, "Day").y, 1440.0 + 4 * 165.0);
    EXPECT_THAT(texts(job, 1), testing::Not(testing::Contains("Comments")));
    EXPECT_EQ(texts(job, 1).back(), "Zone - the zones");
}

TEST_F(GridPages, LongCommentsFlowOverPages) {
    std::string comments;
    for (int word = 0; word < 1000; ++word) comments += "word" + std::to_string(1000 + word) + " ";
    const PrintedJob job =
        lay_out({.heading = comments, .columns = {{"Day"}}, .rows = {{"1"}}, .footer = "Page /p"});
    // 60 letters on a line, six words of nine: 167 lines.
    EXPECT_GT(job.pages.size(), 4U);
    std::string together;
    for (const PrintedPage& page : job.pages) {
        for (const PrintedText& text : page.texts) {
            if (text.text.starts_with("word")) together += text.text + " ";
        }
    }
    EXPECT_EQ(together, comments);
    EXPECT_EQ(text_of(job, job.pages.size() - 1, "1").text, "1");
}

TEST_F(GridPages, AHugeCellIsBrokenOverLinesAndPages) {
    std::string huge;
    for (int word = 0; word < 2500; ++word) huge += std::to_string(10'000 + word) + " ";
    const PrintedJob job =
        lay_out({.columns = {{"Id"}, {"Text"}}, .rows = {{"1", huge}, {"2", "end"}}, .key_columns = 1});
    std::string together;
    for (const PrintedPage& page : job.pages) {
        for (const PrintedText& text : page.texts) {
            if (text.text.starts_with("1") && text.text != "1") together += text.text + " ";
        }
    }
    EXPECT_EQ(together, huge);
    EXPECT_EQ(text_of(job, job.pages.size() - 1, "end").text, "end");
}

TEST_F(GridPages, AWordWiderThanThePageIsBrokenWithin) {
    const PrintedJob job = lay_out({.columns = {{"Text"}}, .rows = {{std::string(50'000, 'x')}}});
    std::size_t letters = 0;
    for (const PrintedPage& page : job.pages) {
        for (const PrintedText& text : page.texts) {
            if (text.text != "Text") letters += text.text.size();
        }
    }
    EXPECT_EQ(letters, 50'000U);
}

TEST_F(GridPages, ARowStaysOnOnePageWhereOneCanHoldIt) {
    auto lines = rows(38, 1);
    lines.push_back({"two\nlines"});
    // 40 lines less 30 twips: the heads and 38 rows; the next would be split.
    const PrintedJob job = lay_out({.columns = {{"Day"}}, .rows = lines});
    ASSERT_EQ(job.pages.size(), 2U);
    EXPECT_THAT(texts(job, 1), ElementsAre("Day", "two", "lines"));
}

TEST_F(GridPages, ShortRowsEndWithBlanks) {
    const PrintedJob job = lay_out({.columns = {{"a"}, {"b"}}, .rows = {{"1"}, {}, {"2", "3"}}});
    EXPECT_THAT(texts(job, 0), ElementsAre("a", "b", "1", "2", "3"));
}

TEST_F(GridPages, ASheetWithoutRowsShowsItsHeads) {
    EXPECT_THAT(texts(lay_out({.columns = {{"a"}}}), 0), ElementsAre("a"));
}

TEST_F(GridPages, SheetsFollowEachOtherFromPagesOfTheirOwnWithPagesCountedThrough) {
    const std::array sheets{PrintedSheet{.columns = {{"a"}}, .footer = "Page /p"},
                            PrintedSheet{.columns = {{"b"}}, .footer = "Page /p"}};
    const PrintedJob job = lay_out_sheets(device_, sheets, "two");
    ASSERT_EQ(job.pages.size(), 2U);
    EXPECT_THAT(texts(job, 0), ElementsAre("Page 1", "a"));
    EXPECT_THAT(texts(job, 1), ElementsAre("Page 2", "b"));
}

TEST_F(GridPages, AHeaderThatLeavesNoRoomForRowsIsLeftOut) {
    device_.usable(6000, 9 * 165);
    const PrintedJob job =
        lay_out({.header = grid_print_header("t", "Alder", 0.0), .columns = {{"Day"}}, .rows = rows(20, 1)});
    EXPECT_EQ(job.pages.size(), 3U);
    EXPECT_EQ(texts(job, 0).front(), "Day");
}

TEST(LargePrint, MoreThanTwoPagesOfFiftyRowsAreAskedFor) {
    EXPECT_FALSE(large_print_question(100, std::nullopt));
    const auto question = large_print_question(365, std::nullopt);
    ASSERT_TRUE(question);
    EXPECT_EQ(question->text, "Your print job may produce 7.3 or more pages.  Continue?");
    EXPECT_EQ(question->title, "Warning!  Potential large print job.");
    EXPECT_EQ(question->buttons, Buttons::YesNo);
    EXPECT_THAT(large_print_question(101, std::nullopt)->text, HasSubstr("2.02"));
}

TEST(LargePrint, ASelectedBlockCountsItsFullPagesAlone) {
    EXPECT_FALSE(large_print_question(365, 149));
    ASSERT_TRUE(large_print_question(365, 150));
    EXPECT_EQ(large_print_question(365, 150)->text, "Your print job may produce 3 or more pages.  Continue?");
}

}  // namespace
}  // namespace nivora
