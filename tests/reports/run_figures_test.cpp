#include "reports/run_figures.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Distinct values, as after a run that computed all its statistics.
RunState finished_run() {
    RunState run;
    run.InitialRunoff = 2.5F;
    run.MeasuredVolume = 1.0F;
    run.AvgMeasuredQ = 2.0F;
    run.ComputedVolume = 3.0F;
    run.AvgComputedQ = 4.0F;
    run.VolumeDifference = 5.0F;
    run.CoefficientR2 = 0.75F;
    run.statistics = StatisticsReach::All;
    for (std::size_t step = 0; step < run.EndingStores.size(); ++step)
        run.EndingStores.at(step) = {static_cast<float>(step), 0.5F};
    return run;
}

TEST(RunFiguresTest, AFinishedRunHasAllFigures) {
    const RunFigures figures = run_figures(finished_run());
    EXPECT_EQ(figures.initial_runoff, 2.5F);
    EXPECT_EQ(figures.measured_volume, 1.0F);
    EXPECT_EQ(figures.average_measured, 2.0F);
    EXPECT_EQ(figures.computed_volume, 3.0F);
    EXPECT_EQ(figures.average_computed, 4.0F);
    EXPECT_EQ(figures.volume_difference, 5.0F);
    EXPECT_EQ(figures.r2, 0.75F);
    EXPECT_THAT(figures.ending_stores, ElementsAre(0.0F, 0.5F));
}

TEST(RunFiguresTest, AStepHasItsOwnStoresAndThoseOfBothSummers) {
    RunState run = finished_run();
    run.ClimateStep = 6;
    const RunFigures figures = run_figures(run);
    EXPECT_THAT(figures.ending_stores, ElementsAre(6.0F, 0.5F));
    EXPECT_THAT(figures.present_stores, ElementsAre(3.0F, 0.5F));
    EXPECT_THAT(figures.changed_stores, ElementsAre(6.0F, 0.5F));
}

TEST(RunFiguresTest, StatisticsThatWereNotWorkedOutAreMissing) {
    RunState run = finished_run();
    run.statistics = StatisticsReach::Volumes;
    EXPECT_EQ(run_figures(run).average_computed, 4.0F);
    EXPECT_EQ(run_figures(run).volume_difference, std::nullopt);
    EXPECT_EQ(run_figures(run).r2, std::nullopt);
    run.statistics = StatisticsReach::Nothing;
    EXPECT_EQ(run_figures(run).measured_volume, std::nullopt);
    EXPECT_EQ(run_figures(run).initial_runoff, 2.5F);
}

TEST(RunFiguresTest, FiguresThatAnEarlierRunLeftAreMissing) {
    RunState run = finished_run();
    run.former_r2 = true;
    EXPECT_EQ(run_figures(run).r2, std::nullopt);
    EXPECT_EQ(run_figures(run).volume_difference, 5.0F);
    run = finished_run();
    run.MeasuredVolume = 0.0F;
    EXPECT_EQ(run_figures(run).r2, 0.75F);
    EXPECT_EQ(run_figures(run).volume_difference, std::nullopt);
    EXPECT_EQ(run_figures(run).measured_volume, 0.0F);
}

TEST(RunFiguresTest, StepsWithoutDischargeHaveNoStatistics) {
    for (const int step : {4, 5}) {
        RunState run = finished_run();
        run.ClimateStep = step;
        EXPECT_EQ(run_figures(run).measured_volume, std::nullopt) << step;
        EXPECT_EQ(run_figures(run).r2, std::nullopt) << step;
    }
}

TEST(RunFiguresTest, AProgramWithoutARunHasNoStores) {
    EXPECT_THAT(run_figures({}).ending_stores, IsEmpty());
}

}  // namespace
}  // namespace nivora
