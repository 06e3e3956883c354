// What single reports show at the steps of a climate change evaluation.
#include "base/text.h"
#include "tests/reports/report_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;

class ReportStepClausesTest : public ReportTest {
protected:
    ReportStepClausesTest() { write_tables(); }

    void at_step(int step) {
        run_.ClimateStep = static_cast<std::int16_t>(step);
        run_.ScenarioName = "warmer";
    }
    std::vector<std::string> parameter_rows() {
        const auto text = lines(Report::InputSummary);
        std::vector<std::string> rows;
        for (const std::string& line : text) {
            if (line.size() > 7 && line[0] != ' ' && line[2] == '/' && line[6] == '|') rows.push_back(line);
        }
        return rows;
    }
};

TEST_F(ReportStepClausesTest, MeltSeasonKindAndStartLeaveThePeriodAsItIs) {
    run_.RunKind = k_melt_season_simulation;
    run_.MeltSeasonStart = first_day() + 2;
    EXPECT_EQ(report_period(basin_, run_).start, first_day());
    EXPECT_EQ(report_period(basin_, run_).end, last_day());
}

TEST_F(ReportStepClausesTest, TheSummaryHasDateAndYearsOfTheStepsPeriod) {
    at_step(3);
    run_.RunStart = first_day() + 2;
    EXPECT_EQ(lines(Report::InputSummary)[7].substr(lines(Report::InputSummary)[7].find("Date")),
              "Date: 02/01/2001");
    run_.RunStart = *day_count({2000, 12, 31});
    const auto text = lines(Report::InputSummary);
    EXPECT_EQ(text[4], "Basin Year     : 2000-2001     Name: Alder");
    EXPECT_EQ(text[7].substr(text[7].find("Date")), "Date: 12/31/2000");
}

TEST_F(ReportStepClausesTest, WithChangedInputTheSummaryEndsWithTheToldLineAtStepsThreeAndSix) {
    basin_.Input_Changed = true;
    figures_.ending_stores = {0.3F, 0.6F};
    figures_.present_stores = {1.25F, 0.0F};
    figures_.changed_stores = {0.5F, 0.75F};
    for (const int step : {3, 6}) {
        at_step(step);
        const auto text = lines(Report::InputSummary);
        ASSERT_GE(text.size(), 7U);
        // The last four lines end the page.
        EXPECT_EQ(text[text.size() - 6], "Mode    : Normal") << step;
        EXPECT_EQ(text[text.size() - 5], "   No compute since data modification,  results not available   ")
            << step;
        EXPECT_TRUE(lines_that_begin(text, "Ending Snow").empty()) << step;
        EXPECT_TRUE(lines_that_begin(text, " Zone   Present").empty()) << step;
    }
}

TEST_F(ReportStepClausesTest, TheSummaryShowsTheParametersOfTheInputAtEveryStep) {
    for (const int step : {2, 3, 6}) {
        at_step(step);
        const auto rows = parameter_rows();
        ASSERT_EQ(rows.size(), 4U) << step;
        EXPECT_EQ(rows[0], "01/30 |  0.11000   2.11000   4.11000   0.11000   2.11000   1.0000    18.00000")
            << step;
        EXPECT_EQ(rows[3], "02/01 |  0.23000   2.23000   4.23000   0.23000   2.23000   1.0000    18.00000")
            << step;
    }
}

TEST_F(ReportStepClausesTest, TheSummaryListsNoStoresAtStepTwo) {
    figures_.present_stores = {1.25F, 0.0F};
    figures_.changed_stores = {0.5F, 0.75F};
    at_step(2);
    EXPECT_TRUE(lines_that_begin(lines(Report::InputSummary), " Zone   Present").empty());
}

TEST_F(ReportStepClausesTest, TheSummarysPageEndsWithTwoEmptyLinesVersionAndFormFeed) {
    const auto text = lines(Report::InputSummary);
    EXPECT_THAT(
        std::vector<std::string>(text.end() - 4, text.end()),
        ElementsAre("", "", "3/5/2026 12:00:00 PM   NVR, Version 1.10                        Page         1",
                    "\f"));
}

TEST_F(ReportStepClausesTest, RunoffComparesMeasuredAndComputedAtStepsOneFourAndFive) {
    for (const int step : {1, 4, 5}) {
        at_step(step);
        EXPECT_EQ(lines_that_begin(lines(Report::Runoff), "      Measured"),
                  std::vector<std::string>{"      Measured  Computed  Measured  Computed"})
            << step;
        EXPECT_EQ(values(day_lines(Report::Runoff, 1).at(0)), "1.11000   21.01000") << step;
    }
}

TEST_F(ReportStepClausesTest, ADayOrZoneWithoutParametersIsBlankAndNotFilledFromZoneA) {
    file_.open().execute("DELETE FROM wy2001 WHERE Zone = 2 AND Date = " + std::to_string(first_day()));
    for (const Report report : {Report::DegreeDayFactors, Report::LapseRates}) {
        const auto first = day_lines(report, 1);
        ASSERT_EQ(first.size(), 2U);
        EXPECT_NE(values(first[0]), "");
        EXPECT_EQ(values(first[1]), "");
        EXPECT_NE(values(day_lines(report, 2)[1]), "");
    }
    file_.open().execute("DELETE FROM wy2001 WHERE Zone = 2");
    EXPECT_EQ(values(day_lines(Report::DegreeDayFactors, 2).at(1)), "");
    EXPECT_EQ(values(day_lines(Report::LapseRates, 2).at(1)), "");
}

TEST_F(ReportStepClausesTest, ABasinOfOneZoneHasItsLetterInTablesByZoneAlone) {
    basin_.ZoneCount = 1;
    basin_.zones.resize(1);
    // Today's date begins at 73 - 10 = 63.
    const auto basin_line = [this](Report report) {
        return std::string{right_trimmed(lines(report).at(1).substr(0, 62))};
    };
    for (const int step : {0, 6}) {
        at_step(step);
        for (const Report report : {Report::Temperatures, Report::DegreeDayFactors, Report::LapseRates,
                                    Report::DegreeDays, Report::Melt}) {
            EXPECT_EQ(basin_line(report), "Basin:      Alder  --  Zone A") << report_title(report, step);
            EXPECT_EQ(lines_that_begin(lines(report), "Basin: ").size(), 1U) << report_title(report, step);
        }
        EXPECT_EQ(basin_line(Report::Runoff), "Basin:      Alder") << step;
    }
}

TEST_F(ReportStepClausesTest, AnEnglishBasinAtAStepHasItsUnitsBesideTheWarning) {
    basin_.basin_units = Units::English;
    basin_.Units_Code = Units::English;
    simulation().comments.reset();
    figures_.computed_volume = 4.5F;
    at_step(3);
    const auto text = lines(Report::InputSummary);
    EXPECT_EQ(text[13], "Units: a - in/(°F-32)·d       Lr - °F/1000ft       Tc - °F-32    Lag Time - hours");
    EXPECT_EQ(text[17], "WARNING!  The parameter values displayed in the following table(s) are taken ");
    EXPECT_EQ(text[20], "");
    EXPECT_EQ(text[21], " Zone A");
    // Its labels are those of a plain run: only step 6 compares two climates.
    EXPECT_THAT(text, testing::Contains("Computed Runoff Volume (10^6 f³) : 4.5"));
    EXPECT_THAT(text, testing::Contains("Average Measured Runoff   (f³/s) : "));
    EXPECT_TRUE(lines_that_begin(text, "Simulated").empty());
}

TEST_F(ReportStepClausesTest, ASingleValueStandsUnderAverageInDaysAndTotals) {
    const auto text = lines(Report::Temperatures);
    EXPECT_EQ(text[10],
              "    "
              "       Average      "
              "       Average      ");
    // Five columns into the eighteen of the cell: 3.11 on 30 January, 3.12 on the 31st, 6.23 together.
    EXPECT_EQ(text[41], "  30       3.11000      " + std::string(20, ' '));
    EXPECT_EQ(text[43].substr(0, 24), "Total      6.23000      ");
    EXPECT_EQ(text[44].substr(0, 24), "T.         6.23000      ");
}

}  // namespace
}  // namespace nivora
