#include "tests/support/plot_basin.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsNan;

/// Measured 57, 60, 70, 58; computed 50, 80, 65, 51; computed of the present climate 40, 90, 60, 45, all plus
/// 100 in the second zone, whose rows do not count.
void fill_discharge(PlotBasin& basin) {
    constexpr std::array k_measured{57.0F, 60.0F, 70.0F, 58.0F};
    constexpr std::array k_computed{50.0, 80.0, 65.0, 51.0};
    constexpr std::array k_present{40.0, 90.0, 60.0, 45.0};
    basin.write_results([&](SimResults& t, std::size_t row, int zone, int day) {
        const auto index = static_cast<std::size_t>(day - 1);
        const double other_zone = zone > 1 ? 100.0 : 0.0;
        t.ActualQ[row] = k_measured.at(index) + static_cast<float>(other_zone);
        t.DailyQ[row] = k_computed.at(index) + other_zone;
        t.DailyQPresent[row] = k_present.at(index) + other_zone;
    });
}

TEST(RunoffPlot, ShowsMeasuredAndComputedDischarge) {
    PlotBasin basin{2};
    fill_discharge(basin);
    const Plot plot = basin.plot(PlotNumber::Runoff);
    EXPECT_FALSE(plot.zone);
    EXPECT_EQ(plot.y_label, " (m³/s)");
    EXPECT_EQ(plot.x_label, "");
    ASSERT_EQ(plot.curves.size(), 2U);
    EXPECT_EQ(plot.curves[0].name, "Measured Runoff");
    EXPECT_EQ(plot.curves[0].line, 1);
    EXPECT_EQ(plot.curves[0].zone, 0);
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(57.0F, 60.0F, 70.0F, 58.0F));
    EXPECT_EQ(plot.curves[1].name, "Computed Runoff");
    EXPECT_EQ(plot.curves[1].line, 2);
    EXPECT_THAT(ys_of(plot.curves[1]), ElementsAre(50.0F, 80.0F, 65.0F, 51.0F));
    EXPECT_THAT(xs_of(plot.curves[1]), ElementsAre(basin.x(1), basin.x(2), basin.x(3), basin.x(4)));
    EXPECT_EQ(plot.summary.size(), 6U);
}

TEST(RunoffPlot, BeginsAtZeroWhateverTheLowestFlow) {
    PlotBasin basin;
    fill_discharge(basin);
    const PlotFrame frame = basin.plot(PlotNumber::Runoff).frame;
    EXPECT_EQ(frame.y_min, 0.0F);  // lowest flows 57 and 50
    EXPECT_EQ(frame.y_max, 80.0F);
    EXPECT_EQ(frame.x_min, basin.x(1));
    EXPECT_EQ(frame.x_max, basin.x(5));
    EXPECT_EQ(frame.legend_rows, 1.0F);
    ASSERT_TRUE(frame.queried);
    EXPECT_THAT(*frame.queried, ElementsAre(basin.x(1), basin.x(5), 70.0F));  // of the measured discharge
}

TEST(RunoffPlot, StartsAtZeroAlsoWithNegativeFlows) {
    PlotBasin basin;
    fill_discharge(basin);
    basin.file.change("UPDATE SimResults SET ActualQ = -3 WHERE Date = " + std::to_string(basin.day(1)));
    EXPECT_EQ(basin.plot(PlotNumber::Runoff).frame.y_min, 0.0F);
}

TEST(RunoffPlot, KeepsAHigherMeasuredMaximum) {
    PlotBasin basin;
    fill_discharge(basin);
    basin.file.change("UPDATE SimResults SET ActualQ = 99 WHERE Date = " + std::to_string(basin.day(1)));
    EXPECT_EQ(basin.plot(PlotNumber::Runoff).frame.y_max, 99.0F);
}

TEST(RunoffPlot, NamesTheComputedDischargeOfStep2) {
    PlotBasin basin;
    fill_discharge(basin);
    basin.take_step(2, 3);
    const Plot plot = basin.plot(PlotNumber::Runoff);
    EXPECT_EQ(plot.head.title, "Runoff (Measured vs CompClim)");
    EXPECT_EQ(plot.curves[1].name, "CompClim Runoff");
    EXPECT_THAT(ys_of(plot.curves[1]), ElementsAre(50.0F, 80.0F, 65.0F));
    EXPECT_EQ(plot.summary[2].caption, "CompClim Runoff Volume (10  m³)");
}

TEST(RunoffPlot, CutsAHigherDischargeOfThePresentClimateAtStep3) {
    PlotBasin basin;
    fill_discharge(basin);
    basin.take_step(3, 1);
    const Plot plot = basin.plot(PlotNumber::Runoff);
    EXPECT_EQ(plot.curves[1].name, "Computed Runoff");
    EXPECT_THAT(ys_of(plot.curves[1]), ElementsAre(90.0F, 60.0F, 45.0F));
    // The largest of measured (60, 70, 58) and computed (80, 65, 51) discharge.
    EXPECT_EQ(plot.frame.y_max, 80.0F);
}

TEST(RunoffPlot, AtStep3NeedsNoComputedDischargeOfTheChangedClimate) {
    PlotBasin basin;
    fill_discharge(basin);
    basin.file.change("UPDATE SimResults SET DailyQ = NULL");
    basin.take_step(3, 1);
    const Plot plot = basin.plot(PlotNumber::Runoff);
    EXPECT_EQ(plot.frame.y_max, 70.0F);
    EXPECT_THAT(ys_of(plot.curves[1]), ElementsAre(90.0F, 60.0F, 45.0F));
}

TEST(RunoffPlot, AMissingValueIsAGapInTheFirstCurveAndZeroInTheSecond) {
    PlotBasin basin;
    fill_discharge(basin);
    basin.file.change("UPDATE SimResults SET ActualQ = NULL, DailyQ = NULL WHERE Date = " +
                      std::to_string(basin.day(2)));
    const Plot plot = basin.plot(PlotNumber::Runoff);
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(57.0F, IsNan(), 70.0F, 58.0F));
    EXPECT_THAT(ys_of(plot.curves[1]), ElementsAre(50.0F, 0.0F, 65.0F, 51.0F));
}

TEST(RunoffPlot, ADayWithoutRowHasNoPoint) {
    PlotBasin basin;
    fill_discharge(basin);
    basin.file.change("DELETE FROM SimResults WHERE Date = " + std::to_string(basin.day(2)));
    EXPECT_THAT(xs_of(basin.plot(PlotNumber::Runoff).curves[0]),
                ElementsAre(basin.x(1), basin.x(3), basin.x(4)));
}

TEST(RunoffPlot, WithoutAnyMeasuredDischargeFails) {
    PlotBasin basin;
    fill_discharge(basin);
    basin.file.change("UPDATE SimResults SET ActualQ = NULL");
    EXPECT_EQ(basin.refusal(PlotNumber::Runoff).text, unable_text("Basinwide"));
}

TEST(RunoffPlot, FailsWhereADischargeIsBeyondTheLargestSingle) {
    PlotBasin basin;
    fill_discharge(basin);
    basin.file.change("UPDATE SimResults SET DailyQ = 1e39 WHERE Date = " + std::to_string(basin.day(2)));
    EXPECT_EQ(basin.refusal(PlotNumber::Runoff).text, unable_text("Basinwide"));
}

TEST(RunoffPlot, OfOneDayHasOnePoint) {
    PlotBasin basin{1, 1};
    basin.write_results([](SimResults& t, std::size_t row, int, int) {
        t.ActualQ[row] = 3.0F;
        t.DailyQ[row] = 2.0;
    });
    const Plot plot = basin.plot(PlotNumber::Runoff);
    EXPECT_EQ(plot.frame.x_max, plot.frame.x_min + 1.0F);
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(3.0F));
    EXPECT_FALSE(has_no_data(plot));
}

TEST(RunoffPlot, OfAYearOfZerosHasNoRange) {
    PlotBasin basin{1, 365};
    basin.write_results([](SimResults& t, std::size_t row, int, int) {
        t.ActualQ[row] = 0.0F;
        t.DailyQ[row] = 0.0;
    });
    EXPECT_TRUE(has_no_data(basin.plot(PlotNumber::Runoff)));
}

TEST(RunoffComparison, ShowsThePresentAndTheChangedClimate) {
    PlotBasin basin;
    fill_discharge(basin);
    basin.take_step(6, 1);
    const Plot plot = basin.plot(PlotNumber::RunoffComparison);
    EXPECT_EQ(plot.curves[0].name, "Simulated Runoff, Present Climate");
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(90.0F, 60.0F, 45.0F));
    EXPECT_EQ(plot.curves[1].name, "Simulated Runoff, Changed Climate");
    EXPECT_THAT(ys_of(plot.curves[1]), ElementsAre(80.0F, 65.0F, 51.0F));
    EXPECT_EQ(plot.frame.y_min, 0.0F);
    EXPECT_EQ(plot.frame.y_max, 90.0F);
    EXPECT_EQ(plot.frame.legend_rows, 1.0F);
    EXPECT_EQ(plot.summary[0].caption, "PresentC Runoff Volume (10  m³)");
}

TEST(RunoffComparison, GrowsToTheChangedClimate) {
    PlotBasin basin;
    fill_discharge(basin);
    basin.file.change("UPDATE SimResults SET DailyQ = 120 WHERE Date = " + std::to_string(basin.day(3)));
    basin.take_step(6, 1);
    const PlotFrame frame = basin.plot(PlotNumber::RunoffComparison).frame;
    EXPECT_EQ(frame.y_max, 120.0F);
    EXPECT_EQ(frame.queried.value()[2], 90.0F);
}

TEST(RunoffComparison, IsInTheUnitsOfTheSimulation) {
    PlotBasin basin;
    fill_discharge(basin);
    basin.basin.Units_Code = Units::English;
    basin.take_step(6, 1);
    const Plot plot = basin.plot(PlotNumber::RunoffComparison);
    EXPECT_EQ(plot.y_label, " (f³/s) ");
    EXPECT_EQ(plot.summary[0].caption, "PresentC Runoff Volume (10  f³)");
}

}  // namespace
}  // namespace nivora
