// The columns that the daily reports show at each step.

#include "tests/reports/report_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class DailyReportsTest : public ReportTest {
protected:
    DailyReportsTest() { write_tables(); }

    void at_step(int step) {
        run_.ClimateStep = step;
        run_.ScenarioName = "warmer";
    }
    /// The values of the first day, which is the 30th, in each block.
    std::vector<std::string> first_day_values(Report report) {
        std::vector<std::string> found;
        for (const std::string& line : day_lines(report, 1)) found.push_back(values(line));
        return found;
    }
    std::string column_head(Report report) {
        const auto text = lines(report);
        return text.at(lines_that_begin(text, "Scenario").empty() ? 10 : 11);
    }
};

TEST_F(DailyReportsTest, AverageTemperaturesGivenByZoneHaveABlockAZone) {
    EXPECT_THAT(first_day_values(Report::Temperatures), ElementsAre("3.11000", "3.21000"));
    EXPECT_EQ(column_head(Report::Temperatures), "           Average             Average      ");
    EXPECT_THAT(lines(Report::Temperatures)[1], HasSubstr("  --  Zone A"));
}

TEST_F(DailyReportsTest, AverageTemperaturesOfTheBasinHaveOneBlockWithoutZone) {
    simulation().temperature = Distribution::Basinwide;
    EXPECT_THAT(first_day_values(Report::Temperatures), ElementsAre("3.11000"));
    EXPECT_THAT(lines(Report::Temperatures)[1], testing::Not(HasSubstr("Zone")));
}

TEST_F(DailyReportsTest, MaximumAndMinimumAreAlwaysOfTheBasin) {
    simulation().temperature_values = std::int16_t{1};
    EXPECT_THAT(first_day_values(Report::Temperatures), ElementsAre("9.11000   -4.89000"));
    EXPECT_EQ(column_head(Report::Temperatures), "      Maximum   Minimum   Maximum   Minimum ");
}

TEST_F(DailyReportsTest, ParametersComeFromTheParameterTableByZone) {
    EXPECT_THAT(first_day_values(Report::DegreeDayFactors),
                ElementsAre("0.110 1.110 2.110", "0.210 1.210 2.210"));
    EXPECT_EQ(column_head(Report::DegreeDayFactors), "         a    Cs    Cr       a    Cs    Cr  ");
    EXPECT_THAT(first_day_values(Report::LapseRates),
                ElementsAre("3.11 4.11   1 18.0", "3.21 4.21   1 18.0"));
    EXPECT_EQ(column_head(Report::LapseRates), "       Lr    Tc  RCA  LT   Lr    Tc  RCA  LT");
}

TEST_F(DailyReportsTest, AtEveryClimateStepInputsAreThoseOfTheChangedClimate) {
    for (const int step : {1, 2, 3, 4, 5, 6}) {
        at_step(step);
        EXPECT_THAT(first_day_values(Report::Temperatures), ElementsAre("5.11000", "5.21000")) << step;
        EXPECT_THAT(first_day_values(Report::DegreeDayFactors),
                    ElementsAre("1.110 3.110 5.110", "1.210 3.210 5.210"))
            << step;
        EXPECT_THAT(first_day_values(Report::LapseRates),
                    ElementsAre("1.11 3.11   0 12.0", "1.21 3.21   0 12.0"))
            << step;
    }
    simulation().temperature_values = std::int16_t{1};
    EXPECT_THAT(first_day_values(Report::Temperatures), ElementsAre("11.11000  -6.89000"));
}

TEST_F(DailyReportsTest, DegreeDaysPrecipitationAndCoverFollowTheStep) {
    const auto zone_a = [this](int step) {
        at_step(step);
        return first_day_values(Report::DegreeDays).at(0);
    };
    EXPECT_EQ(zone_a(0), "6.110 2.110 0.110");
    EXPECT_EQ(zone_a(1), "6.110 2.110 0.110");
    EXPECT_EQ(zone_a(2), "7.110 4.110 0.610");
    EXPECT_EQ(zone_a(3), "6.110 2.110 0.110");
    EXPECT_EQ(zone_a(4), "7.110 4.110 0.110");
    EXPECT_EQ(zone_a(5), "7.110 4.110 0.110");
    EXPECT_EQ(zone_a(6), "7.110 4.110 0.410");
}

TEST_F(DailyReportsTest, DegreeDaysAreStarsWithANoteOnceAnInputHasChanged) {
    basin_.Input_Changed = true;
    EXPECT_THAT(first_day_values(Report::DegreeDays), ElementsAre("**  2.110 0.110", "**  2.210 0.210"));
    EXPECT_THAT(
        lines_that_begin(lines(Report::DegreeDays), "**"),
        ElementsAre("** - Variables and/or parameters have changed.  To insure accuracy of DDs, please rerun "
                    "this simulation.",
                    testing::_));
}

TEST_F(DailyReportsTest, MeltHasASumAZone) {
    EXPECT_THAT(first_day_values(Report::Melt), ElementsAre("1.110 2.110 3.110", "1.210 2.210 3.210"));
    // Zone A: 4 x (1 + 2 + 3) + 12 x 0.1 + 3 x (0.01 + 0.02 + 0.03 + 0.04) = 25.5, zone B 1.2 more.
    EXPECT_THAT(lines_that_begin(lines(Report::Melt), "Total zone"),
                ElementsAre("Total zone runoff input for above period = 25.50000",
                            "Total zone runoff input for above period = 26.70000"));
}

TEST_F(DailyReportsTest, RunoffIsOneBlockOfTheFirstZone) {
    const auto basin = [this](int step) {
        at_step(step);
        EXPECT_EQ(first_day_values(Report::Runoff).size(), 1U);
        return first_day_values(Report::Runoff).at(0);
    };
    EXPECT_EQ(basin(0), "1.11000   21.01000");
    EXPECT_EQ(basin(1), "1.11000   21.01000");
    EXPECT_EQ(basin(2), "1.11000   21.01000");
    EXPECT_EQ(basin(3), "1.11000   31.01000");
    EXPECT_EQ(basin(6), "31.01000  21.01000");
}

TEST_F(DailyReportsTest, TheHeadsOfRunoffFollowTheStep) {
    const auto head = [this](int step) {
        at_step(step);
        return column_head(Report::Runoff).substr(6, 18);
    };
    EXPECT_EQ(head(0), "Measured  Computed");
    EXPECT_EQ(head(2), "Measured  CompClim");
    EXPECT_EQ(head(3), "Measured  Computed");
    EXPECT_EQ(head(6), " Present   Changed");
    EXPECT_FALSE(
        lines_that_begin(lines(Report::Runoff), "Simulated Runoff - Present vs. Changed Climate").empty());
}

TEST_F(DailyReportsTest, AClimateStepIsReportedOverItsOwnPeriod) {
    at_step(3);
    run_.RunStart = first_day() + 2;
    const auto text = lines(Report::Melt);
    EXPECT_THAT(text[2], HasSubstr("02/01/2001 to 02/02/2001"));
    EXPECT_THAT(text[2], HasSubstr("Run/Step: 4/3"));
    EXPECT_EQ(text[5], "Scenario  : warmer");
}

TEST_F(DailyReportsTest, AStepOfAnotherSimulationDoesNotCount) {
    at_step(6);
    run_.RunStart = first_day() + 2;
    run_.LastRunSimulation = "another";
    EXPECT_THAT(first_day_values(Report::Temperatures), ElementsAre("3.11000", "3.21000"));
    EXPECT_THAT(lines(Report::Temperatures)[2], HasSubstr("01/30/2001 to 02/02/2001"));
}

TEST_F(DailyReportsTest, ADayWithoutARowIsBlankAndNotZero) {
    file_.open().execute("DELETE FROM SimResults WHERE Zone = 1 AND Date = " + std::to_string(first_day()));
    EXPECT_THAT(first_day_values(Report::Melt), ElementsAre("", "1.210 2.210 3.210"));
}

}  // namespace
}  // namespace nivora
