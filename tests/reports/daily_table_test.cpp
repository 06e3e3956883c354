#include "reports/daily_table.h"

#include "base/single.h"
#include "tests/reports/report_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr double k_none = static_cast<double>(k_missing);

/// A table of one zone over a period, with as many columns as slots.
class DailyTableTest : public testing::Test {
protected:
    DailyTableTest() {
        table_.head = {.basin_name = "Alder",
                       .zone_letter = {},
                       .start = {},
                       .end = {},
                       .run_number = "4",
                       .climate_step = {},
                       .no_snow = false,
                       .file = "alder.mdb",
                       .simulation = "wy2001",
                       .scenario = "warmer",
                       .today = day_count({2026, 3, 5}).value()};
        table_.title = "Measured vs Computed Snowmelt Runoff";
        table_.column_head = "Measured  Computed";
        table_.slots = {{.offset = 0}, {.offset = 10}};
        period({2001, 1, 30}, {2001, 2, 2});
    }

    void period(const CivilDate& start, const CivilDate& end) {
        table_.period = {day_count(start).value(), day_count(end).value()};
        table_.head.start = table_.period.start;
        table_.head.end = table_.period.end;
    }
    /// The same value on each day and in each column.
    void fill(double value) {
        const auto days = static_cast<std::size_t>(table_.period.days());
        values_.assign(table_.slots.size(), std::vector<double>(days, value));
    }
    std::vector<std::string> lines(const std::string& zone_letter = {}) {
        table_.series = {{.zone_letter = zone_letter, .columns = {}}};
        for (const auto& column : values_) table_.series[0].columns.emplace_back(column);
        ReportLines written;
        write_daily_table(written, pages_, table_, static_cast<double>(table_.head.today) + 0.5);
        return report_text_lines(written.written());
    }

    DailyTable table_;
    std::vector<std::vector<double>> values_;
    int pages_ = 0;
};

TEST_F(DailyTableTest, HasMonthsAcrossDaysDownTotalsAndAPageEnd) {
    // 30 January to 2 February; the second value of the first day and the first of the last are missing.
    values_ = {{1.0, 2.0, 3.0, k_none}, {k_none, 0.5, 0.25, 4.0}};
    const auto text = lines();
    const std::string blank(20, ' ');
    ASSERT_EQ(text.size(), 9U + 3 + 31 + 2 + 1 + 2 + 2);
    EXPECT_EQ(text[0],
              "Hollin Flow Model" + std::string(43, ' ') + "Version 1.10");         // begins at 73 - 12 = 61
    EXPECT_EQ(text[1], "Basin:      Alder" + std::string(45, ' ') + "03/05/2026");  // at 63
    EXPECT_EQ(text[2], "Period:     01/30/2001 to 02/02/2001" + std::string(30, ' ') + "Run: 4");  // at 67
    EXPECT_EQ(text[3], "File:       alder.mdb");
    EXPECT_EQ(text[4], "Simulation: wy2001");
    EXPECT_EQ(text[5], "");
    EXPECT_EQ(text[6], "");
    EXPECT_EQ(text[7], "Measured vs Computed Snowmelt Runoff");
    EXPECT_EQ(text[8], "");
    EXPECT_EQ(text[9], "            Jan                 Feb         ");
    EXPECT_EQ(text[10], "      Measured  Computed  Measured  Computed");
    EXPECT_EQ(text[11], "");
    EXPECT_EQ(text[12], "   1" + blank + "  3.00000   0.25000 ");
    EXPECT_EQ(text[13], "   2" + blank + "            4.00000 ");
    EXPECT_EQ(text[14], "   3" + blank + blank);
    EXPECT_EQ(text[41], "  30  1.00000           " + blank);
    EXPECT_EQ(text[42], "  31  2.00000   0.50000 " + blank);
    // January 1 + 2 and 0.5; February 3 and 0.25 + 4.
    EXPECT_EQ(text[43], "Total 3.00000   0.50000   3.00000   4.25000 ");
    EXPECT_EQ(text[44], "T.    3.00000   0.50000   6.00000   4.75000 ");
    EXPECT_EQ(text[45], "\x01");
    EXPECT_EQ(text[46], "");
    EXPECT_EQ(text[47], "");
    EXPECT_EQ(text[48], "3/5/2026 12:00:00 PM   NVR, Version 1.10                        Page         1");
    EXPECT_EQ(text[49], "\f");
    EXPECT_EQ(pages_, 1);
}

TEST_F(DailyTableTest, AMonthWithoutAnyValueHasNoTotal) {
    values_ = {{1.0, 2.0, k_none, k_none}, {k_none, k_none, k_none, k_none}};
    const auto text = lines();
    EXPECT_EQ(text[43], "Total 3.00000" + std::string(31, ' '));
    EXPECT_EQ(text[44], "T.    3.00000             3.00000" + std::string(11, ' '));
}

TEST_F(DailyTableTest, SixMonthsStandInABlockAndTheNextBlockIsContinued) {
    period({2000, 10, 15}, {2001, 10, 14});  // thirteen months: 6, 6 and 1
    fill(1.0);
    const auto text = lines("B");
    EXPECT_EQ(pages_, 3);
    const auto titles = lines_that_begin(text, "Measured vs");
    EXPECT_THAT(titles, ElementsAre("Measured vs Computed Snowmelt Runoff",
                                    "Measured vs Computed Snowmelt Runoff (continued)",
                                    "Measured vs Computed Snowmelt Runoff (continued)"));
    // W is 20 x 6 + 5 = 125 for six months and 73 for one: the version begins at 113 and at 61.
    const auto versions = lines_that_begin(text, "Hollin");
    EXPECT_EQ(versions[0].find("Version"), 112U);
    EXPECT_EQ(versions[2].find("Version"), 60U);
    EXPECT_THAT(text[1], HasSubstr("Alder  --  Zone B"));
    EXPECT_THAT(lines_that_begin(text, "            Oct"), ElementsAre(HasSubstr("Mar"), HasSubstr("Oct")));
    // The total from the start runs on over the blocks: 365 days.
    EXPECT_EQ(lines_that_begin(text, "T.").back(), "T.    365.0000  365.0000");
    EXPECT_EQ(lines_that_begin(text, "Total ").back(), "Total 14.00000  14.00000");
}

TEST_F(DailyTableTest, FiveMonthsMakeTheHeadWiderThanFour) {
    period({2001, 1, 1}, {2001, 4, 30});
    fill(1.0);
    EXPECT_EQ(lines()[0].find("Version"), 60U);
    period({2001, 1, 1}, {2001, 5, 31});
    fill(1.0);
    EXPECT_EQ(lines()[0].find("Version"), 92U);  // 20 x 5 + 5 - 12 = 93, counted from 1
}

TEST_F(DailyTableTest, ALeapDayHasItsRow) {
    period({2000, 2, 28}, {2000, 3, 1});
    values_ = {{1.0, 2.0, 3.0}, {4.0, 5.0, 6.0}};
    EXPECT_EQ(lines()[12 + 28], "  29  2.00000   5.00000 " + std::string(20, ' '));
}

TEST_F(DailyTableTest, TheHeadTellsModeStepAndScenario) {
    fill(1.0);
    table_.head.no_snow = true;
    table_.head.climate_step = 6;
    const auto text = lines();
    EXPECT_EQ(text[2], "Period:     01/30/2001 to 02/02/2001" + std::string(23, ' ') + "Run/Step: 4/6");
    EXPECT_EQ(text[3], std::string(57, ' ') + "Mode: 'No Snow'");
    EXPECT_EQ(text[6], "Scenario  : warmer");
}

TEST_F(DailyTableTest, StarsStandForStaleValuesInDaysAndTotalsButNotForMissingOnes) {
    table_.slots = {
        {.offset = 0, .width = 5, .stars = true}, {.offset = 6, .width = 5}, {.offset = 12, .width = 5}};
    table_.note = "** - stale";
    values_ = {{7.0, 7.0, 7.0, k_none}, {1.0, 1.0, 1.0, 1.0}, {0.5, 0.5, 0.5, 0.5}};
    const auto text = lines();
    EXPECT_EQ(text[12], "   1" + std::string(20, ' ') + "    **  1.000 0.500 ");
    EXPECT_EQ(text[13], "   2" + std::string(20, ' ') + "        1.000 0.500 ");
    EXPECT_EQ(text[43], "Total   **  2.000 1.000     **  2.000 1.000 ");
    EXPECT_EQ(text[45], "** - stale");
    EXPECT_EQ(text[46], "\x01");
}

TEST_F(DailyTableTest, AWholeNumberStandsAtTheRightOfThreeColumns) {
    table_.slots = {{.offset = 0, .width = 4},
                    {.offset = 5, .width = 4},
                    {.offset = 10, .width = 3, .whole = true},
                    {.offset = 14, .width = 4}};
    values_ = {{0.65, 0.65, 0.65, 0.65}, {0.75, 0.75, 0.75, 0.75}, {1, 1, 1, 1}, {18, 18, 18, 18}};
    EXPECT_EQ(lines()[12], "   1" + std::string(20, ' ') + "  0.65 0.75   1 18.0");
}

TEST_F(DailyTableTest, SingleExtremesStayInTheCellsOfFourAndThreeColumns) {
    table_.slots = {{.offset = 0, .width = 4},
                    {.offset = 5, .width = 4},
                    {.offset = 10, .width = 3, .whole = true},
                    {.offset = 14, .width = 4}};
    constexpr auto largest = static_cast<double>(std::numeric_limits<float>::max());
    values_ = {{largest, 1, 1, 1}, {-largest, 1, 1, 1}, {largest, 1, 1, 1}, {1e-38, 1, 1, 1}};
    EXPECT_EQ(lines()[41], "  30  3E38 -E38 E38 0.00" + std::string(20, ' '));
}

TEST_F(DailyTableTest, ASumBeyondTheLargestNumberIsBlank) {
    values_ = {{1.7e308, 1.7e308, 1.0, 2.0}, {1.0, 1.0, 1.0, 1.0}};
    const auto text = lines();
    EXPECT_EQ(text[41], "  30  1.70E308  1.00000 " + std::string(20, ' '));
    EXPECT_EQ(text[43], "Total           2.00000   3.00000   2.00000 ");
    EXPECT_EQ(text[44], "T.              2.00000             4.00000 ");
}

TEST_F(DailyTableTest, TheSumOfAZoneStandsBelowItsLastBlock) {
    table_.zone_sum = true;
    values_ = {{1.0, 2.0, 3.0, k_none}, {k_none, 0.5, 0.25, 4.0}};
    EXPECT_EQ(lines()[45], "Total zone runoff input for above period = 10.75000");
    period({2000, 10, 1}, {2001, 9, 30});
    fill(1.0);
    const auto sums = lines_that_begin(lines(), "Total zone");
    EXPECT_THAT(sums, ElementsAre("Total zone runoff input for above period = 730.0000"));
}

TEST_F(DailyTableTest, TheSumOfAZoneWithoutValuesIsBlankAndNotZero) {
    table_.zone_sum = true;
    fill(k_none);
    EXPECT_EQ(lines()[45], "Total zone runoff input for above period = " + std::string(8, ' '));
    values_[1][2] = 0.0;
    EXPECT_EQ(lines()[45], "Total zone runoff input for above period = 0.00000 ");
}

TEST_F(DailyTableTest, TheNoteStandsUnderEveryBlockOfAZone) {
    table_.note = "** - stale";
    period({2000, 10, 1}, {2001, 9, 30});
    fill(1.0);
    const auto text = lines();
    const auto notes = lines_that_begin(text, "** - stale");
    EXPECT_EQ(notes.size(), 2U);
    // Below the totals from the start, which are the last line of a block's numbers.
    for (std::size_t line = 1; line < text.size(); ++line) {
        if (text[line] != "** - stale") continue;
        EXPECT_THAT(text[line - 1], testing::StartsWith("T.    "));
    }
}

TEST_F(DailyTableTest, TheBlocksOfAZoneStandBeforeThoseOfTheNext) {
    period({2000, 10, 1}, {2001, 9, 30});
    fill(1.0);
    const std::vector<std::vector<double>> of_b(table_.slots.size(), std::vector<double>(365, 2.0));
    table_.series = {{.zone_letter = "A", .columns = {}}, {.zone_letter = "B", .columns = {}}};
    for (std::size_t column = 0; column < table_.slots.size(); ++column) {
        table_.series[0].columns.emplace_back(values_[column]);
        table_.series[1].columns.emplace_back(of_b[column]);
    }
    ReportLines written;
    write_daily_table(written, pages_, table_, static_cast<double>(table_.head.today) + 0.5);
    std::vector<std::string> order;
    for (const std::string& line : report_text_lines(written.written())) {
        if (line.starts_with("Basin: ")) order.push_back(line.substr(0, line.find("  03/")));
        if (line.starts_with(table_.title)) order.push_back(line);
    }
    for (std::string& line : order) line.erase(line.find_last_not_of(' ') + 1);
    const std::string title = "Measured vs Computed Snowmelt Runoff";
    EXPECT_THAT(order, ElementsAre("Basin:      Alder  --  Zone A", title, "Basin:      Alder  --  Zone A",
                                   title + " (continued)", "Basin:      Alder  --  Zone B", title,
                                   "Basin:      Alder  --  Zone B", title + " (continued)"));
}

TEST_F(DailyTableTest, ANameThatReachesTheDateSendsItToTheNextLine) {
    fill(1.0);
    table_.head.basin_name = std::string(60, 'x');
    const auto text = lines();
    EXPECT_EQ(text[1], "Basin:      " + std::string(60, 'x'));
    EXPECT_EQ(text[2], std::string(62, ' ') + "03/05/2026");
}

TEST_F(DailyTableTest, ColumnsOfTheHeadCountCharacters) {
    fill(1.0);
    table_.head.basin_name = "Ötztal";
    EXPECT_EQ(lines()[1], "Basin:      Ötztal" + std::string(44, ' ') + "03/05/2026");
}

}  // namespace
}  // namespace nivora
