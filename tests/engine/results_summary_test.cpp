#include "engine/results_summary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

TEST(StatisticsLabels, HaveMetricUnits) {
    EXPECT_THAT(statistics_labels(Units::Metric),
                ElementsAre("Measured Runoff Volume (10^6 m³)", "Average Measured Runoff (m³/s): ",
                            "Computed Runoff Volume (10^6 m³)", "Average Computed Runoff  (m³/s): ",
                            "Volume Difference (%): ", "Coefficient of Determination (R²):"));
}

TEST(StatisticsLabels, HaveEnglishUnits) {
    EXPECT_THAT(statistics_labels(Units::English),
                ElementsAre("Measured Runoff Volume (10^6 f³)", "Average Measured Runoff (f³/s): ",
                            "Computed Runoff Volume (10^6 f³)", "Average Computed Runoff  (f³/s): ",
                            "Volume Difference (%): ", "Coefficient of Determination (R²):"));
}

TEST(StatisticsNames, HaveUnitsAndNoColons) {
    EXPECT_THAT(statistics_names(Units::English),
                ElementsAre("Measured Runoff Volume (10^6 f³)", "Average Measured Runoff (f³/s)",
                            "Computed Runoff Volume (10^6 f³)", "Average Computed Runoff (f³/s)",
                            "Volume Difference (%)", "Coefficient of Determination (R²)"));
}

TEST(StatisticsValues, AreInTheOrderOfTheirLabels) {
    RunState run;
    run.MeasuredVolume = 1.0F;
    run.AvgMeasuredQ = 2.0F;
    run.ComputedVolume = 3.0F;
    run.AvgComputedQ = 4.0F;
    run.VolumeDifference = 5.0F;
    run.CoefficientR2 = 6.0F;
    run.statistics = StatisticsReach::All;

    EXPECT_THAT(statistics_values(run), ElementsAre(1.0F, 2.0F, 3.0F, 4.0F, 5.0F, 6.0F));
}

TEST(StatisticsValues, AfterAFaultAreOmitted) {
    RunState run;
    run.AvgMeasuredQ = 2.0F;
    run.CoefficientR2 = 6.0F;  // from an earlier run
    run.statistics = StatisticsReach::Volumes;
    EXPECT_THAT(statistics_values(run), ElementsAre(0.0F, 2.0F, 0.0F, 0.0F, std::nullopt, std::nullopt));
    run.statistics = StatisticsReach::Nothing;
    EXPECT_THAT(statistics_values(run), Each(std::optional<float>{}));
}

/// 5 November 2001, 13:02:03
const double k_run_time = static_cast<double>(*day_count({2001, 11, 5})) + (13 * 3600 + 2 * 60 + 3) / 86400.0;

class ResultsStatus : public ::testing::Test {
protected:
    ResultsStatus() {
        basin.results_time = k_run_time;
        basin.Output_Valid = true;
        run.LastRunSimulation = "wet";
        run.RunStart = *day_count({2001, 6, 1});
        run.RunEnd = run.RunStart + 29;
    }

    BasinState basin;
    RunState run;
};

TEST_F(ResultsStatus, NamesSimulationAndTime) {
    EXPECT_EQ(results_status(basin, run), "Results of 'wet', run of 11/5/2001 1:02:03 PM");
}

TEST_F(ResultsStatus, ReportsChangedInputsEvenAfterASave) {
    constexpr const char* k_text =
        "Results of 'wet', run of 11/5/2001 1:02:03 PM; inputs have changed since, run it again";
    basin.Input_Changed = true;
    EXPECT_EQ(results_status(basin, run), k_text);
    basin.Input_Changed = false;
    basin.results_outdated = true;
    EXPECT_EQ(results_status(basin, run), k_text);
}

TEST_F(ResultsStatus, ReportsARunThatDidNotFinish) {
    run.LastRunSimulation.clear();
    EXPECT_EQ(results_status(basin, run), "The run of 11/5/2001 1:02:03 PM did not reach its end");
}

TEST_F(ResultsStatus, ReportsAnEvaluationThatWasNotCompleted) {
    basin.Output_Valid = false;
    EXPECT_EQ(results_status(basin, run),
              "Results of 'wet', run of 11/5/2001 1:02:03 PM; its climate evaluation was not completed");
}

TEST_F(ResultsStatus, OfAnEarlierSessionHasNoTime) {
    basin.results_time.reset();
    EXPECT_EQ(results_status(basin, run),
              "Results of an earlier session; run the simulation to be sure that they are up to date");
}

TEST_F(ResultsStatus, OfCurrentStatisticsIsTheirPeriod) {
    EXPECT_EQ(statistics_status(basin, k_run_time, "the period"), "the period");
}

TEST_F(ResultsStatus, OfStatisticsIsOutOfDateAfterAChangeAndAfterAnotherRun) {
    basin.Input_Changed = true;
    EXPECT_EQ(statistics_status(basin, k_run_time, "the period"),
              "Out of date: inputs have changed since the run of 11/5/2001 1:02:03 PM");
    basin.results_time = k_run_time + 1.0;
    EXPECT_EQ(statistics_status(basin, k_run_time, "the period"),
              "Out of date: statistics of the run of 11/5/2001 1:02:03 PM; the results are of another run");
}

TEST_F(ResultsStatus, OfAPeriodCountsItsDaysAndThoseThatWereMissing) {
    EXPECT_EQ(period_summary(run), "06/01/2001 to 06/30/2001, 30 days");
    RunNote note;
    note.zones = {1, 2, 3};
    note.start = run.RunStart;
    note.end = run.RunEnd;
    note.days = 4;
    run.notes = {note};
    EXPECT_EQ(period_summary(run),
              "06/01/2001 to 06/30/2001, 30 days; 4 of 30 days without rows in zones 1 to 3");
    run.notes.clear();
    run.RunEnd = run.RunStart;
    EXPECT_EQ(period_summary(run), "06/01/2001 to 06/01/2001, 1 day");
}

TEST(StatisticsCaption, OfASimulationIsItsTitle) {
    RunState run;
    run.RunTitle = "Year round Simulation";
    run.RunKind = k_year_round_simulation;
    EXPECT_EQ(statistics_caption(run), "Statistics, Year round Simulation");

    run.RunTitle = "Melt Season Simulation";
    run.RunKind = k_melt_season_simulation;
    EXPECT_EQ(statistics_caption(run), "Statistics, Melt Season Simulation");
}

TEST(StatisticsCaption, OfAForecastNamesItsInterval) {
    RunState run;
    run.RunTitle = "Melt Season Forecast";
    run.RunKind = k_melt_season_forecast;
    run.UpdateInterval = 5;
    EXPECT_EQ(statistics_caption(run), "Statistics, Melt Season Forecast (updating every 5 days)");

    run.RunKind = k_year_round_forecast;
    run.RunTitle = "Year round Forecast";
    run.UpdateInterval = 1;
    EXPECT_EQ(statistics_caption(run), "Statistics, Year round Forecast (updating every 1 days)");
}

TEST(StatisticsCaption, MarksNoSnowLast) {
    RunState run;
    run.NoSnow = true;
    run.RunTitle = "Year round Simulation";
    run.RunKind = k_year_round_simulation;
    EXPECT_EQ(statistics_caption(run), "Statistics, Year round Simulation  {no snow}");

    run.RunTitle = "Year round Forecast";
    run.RunKind = k_year_round_forecast;
    run.UpdateInterval = 9;
    EXPECT_EQ(statistics_caption(run), "Statistics, Year round Forecast (updating every 9 days)  {no snow}");
}

}  // namespace
}  // namespace nivora
