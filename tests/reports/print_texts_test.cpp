#include "reports/print_texts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

DayCount day(int year, int month, int day_of_month) { return day_count({year, month, day_of_month}).value(); }

TEST(PrintTexts, TheHeaderOfAGridNamesProgramMomentVersionTitleAndBasin) {
    const double now = static_cast<double>(day(2026, 11, 21)) + 0.5;
    EXPECT_EQ(
        grid_print_header(daily_values_title("wet & cold"), "Alder Fork", now),
        "/fb0/cHollin Flow Model (Nivora)/r11/21/2026 12:00:00 PM/n/cVersion 1.10/n/c/lSimulation: wet & cold"
        "/n/n/nBasin name:   Alder Fork/n");
    EXPECT_EQ(std::string{k_grid_print_footer}, "/fb0/cPage /p");
}

TEST(PrintTexts, TheTitlesOfTheOtherGrids) {
    EXPECT_EQ(std::string{k_monthly_averages_title}, "/lLong Term Monthly Averages");
    EXPECT_EQ(std::string{k_climate_statistics_title}, "Climate Change Statistics");
    EXPECT_EQ(std::string{k_scenario_title}, "Climate Change Scenario");
}

TEST(PrintTexts, AScenarioIsHeadedByItsDatesAndComments) {
    EXPECT_EQ(scenario_heading({.basin_name = "Alder Fork",
                                .simulation = "wet",
                                .scenario = "warm",
                                .start = day(1997, 10, 1),
                                .end = day(1998, 9, 30),
                                .winter_end = day(1998, 3, 31),
                                .comments = "Two degrees"}),
              "/nBasin name:   Alder Fork/nSimulation:   wet/nClimate Scenario:  warm/n"
              "/nStarting Date:   10/01/1997/nEnding Date:   09/30/1998/nWinter End Date:  03/31/1998/n"
              "/n/fu1Comments/fu0/nTwo degrees");
}

TEST(PrintTexts, NamesStayOnTheirLinesAndCommentsKeepTheirs) {
    EXPECT_EQ(daily_values_title("wet\r\n/ncold\f"), "/lSimulation: wet  //ncold ");
    EXPECT_EQ(scenario_footer("al\nder.mdb"), "/fb0/cBasin Filename:  al der.mdb");
    EXPECT_EQ(scenario_heading({.basin_name = "Alder\nFork",
                                .simulation = "we\x01t",
                                .scenario = "wa\trm",
                                .comments = "Two degrees,\r\n\fa tenth more rain"}),
              "/nBasin name:   Alder Fork/nSimulation:   we t/nClimate Scenario:  wa rm/n"
              "/nStarting Date:   /nEnding Date:   /nWinter End Date:  /n"
              "/n/fu1Comments/fu0/nTwo degrees,/n a tenth more rain");
}

TEST(PrintTexts, TheLegendOfAScenarioKeepsItsWords) {
    EXPECT_EQ(
        scenario_legend(),
        "/fb0/lVariable or Parameter - the variable or parameter affected by corresponding edit action/n"
        "Starting Date - the starting date of the edit action/n"
        "Ending Date - the ending date of the edit action/n"
        "Edit action - the climate change modifying action to employ/n"
        "Edit Factor - the quantative value employed by the edit action/n"
        "  Signed constant ADDed to each day in the time period (T+4, T-2)/n"
        "  % constant to multiply each daily P value by (P*1.2)/n"
        "  # of days to SHIFT forward or backward in time/n"
        "  Normalize temperature//precipitation using long-term monthly averages)/n"
        "Zone - the zone or zones affected by the edit/n/n/n/n/n");
    EXPECT_EQ(scenario_footer("/data/alder.mdb"), "/fb0/cBasin Filename:  //data//alder.mdb");
}

}  // namespace
}  // namespace nivora
