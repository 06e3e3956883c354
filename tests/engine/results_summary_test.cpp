#include "engine/results_summary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using ::testing::ElementsAre;

TEST(StatisticsLabels, BearMetricUnits) {
    EXPECT_THAT(statistics_labels(k_metric),
                ElementsAre("Measured Runoff Volume (10^6 m³)", "Average Measured Runoff (m³/s): ",
                            "Computed Runoff Volume (10^6 m³)", "Average Computed Runoff  (m³/s): ",
                            "Volume Difference (%): ", "Coefficient of Determination (R²):"));
}

TEST(StatisticsLabels, BearEnglishUnits) {
    EXPECT_THAT(statistics_labels(k_english),
                ElementsAre("Measured Runoff Volume (10^6 f³)", "Average Measured Runoff (f³/s): ",
                            "Computed Runoff Volume (10^6 f³)", "Average Computed Runoff  (f³/s): ",
                            "Volume Difference (%): ", "Coefficient of Determination (R²):"));
}

TEST(StatisticsValues, StandInTheOrderOfTheirLabels) {
    RunState run;
    run.MeasuredVolume = 1.0F;
    run.AvgMeasuredQ = 2.0F;
    run.ComputedVolume = 3.0F;
    run.AvgComputedQ = 4.0F;
    run.VolumeDifference = 5.0F;
    run.CoefficientR2 = 6.0F;

    EXPECT_THAT(statistics_values(run), ElementsAre(1.0F, 2.0F, 3.0F, 4.0F, 5.0F, 6.0F));
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
