#include "plots/run_summary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::ElementsAre;

RunState run_with_statistics(int step = 0) {
    RunState run;
    run.ClimateStep = step;
    run.MeasuredVolume = 123.4565F;
    run.AvgMeasuredQ = 57.0F;
    run.ComputedVolume = 0.25F;
    run.AvgComputedQ = 56.5F;
    run.VolumeDifference = -0.876F;
    run.CoefficientR2 = 0.9125F;
    run.statistics = StatisticsReach::All;
    return run;
}

std::vector<std::string> captions(PlotNumber plot, Units units, int step) {
    std::vector<std::string> texts;
    for (const RunSummaryRow& row : run_summary(plot, units, run_with_statistics(step)))
        texts.push_back(row.caption);
    return texts;
}

std::vector<std::string> values(const RunState& run) {
    std::vector<std::string> texts;
    for (const RunSummaryRow& row : run_summary(PlotNumber::Runoff, Units::Metric, run))
        texts.push_back(row.value);
    return texts;
}

constexpr const char* k_difference = "Volume Difference (%)";
constexpr const char* k_r2 = "Coefficient of Determination (R²)";

TEST(RunSummary, LeavesRoomForTheExponentOfItsVolumes) {
    EXPECT_THAT(
        captions(PlotNumber::Runoff, Units::Metric, 0),
        ElementsAre("Measured Runoff Volume (10  m³)", "Average Measured Runoff  (m³/s)",
                    "Computed Runoff Volume (10  m³)", "Avg Computed Q   (m³/s)", k_difference, k_r2));
}

TEST(RunSummary, HasCubicFsInEnglishUnits) {
    EXPECT_THAT(
        captions(PlotNumber::Runoff, Units::English, 0),
        ElementsAre("Measured Runoff Volume (10  f³)", "Average Measured Runoff  (f³/s)",
                    "Computed Runoff Volume (10  f³)", "Avg Computed Q   (f³/s)", k_difference, k_r2));
}

TEST(RunSummary, HasTwoWordsForTheComputedDischargeOfStep2) {
    EXPECT_THAT(
        captions(PlotNumber::Runoff, Units::English, 2),
        ElementsAre("Measured Runoff Volume (10  f³)", "Average Measured Runoff  (f³/s)",
                    "CompClim Runoff Volume (10  f³)", "Avg CompCalc Q   (f³/s)", k_difference, k_r2));
}

TEST(RunSummary, NamesThePresentAndTheChangedClimateAtStep6) {
    EXPECT_THAT(
        captions(PlotNumber::RunoffComparison, Units::Metric, 6),
        ElementsAre("PresentC Runoff Volume (10  m³)", "Average PresentC Runoff  (m³/s)",
                    "ChangedC Runoff Volume (10  m³)", "Avg ChangedC Q   (m³/s)", k_difference, k_r2));
}

TEST(RunSummary, NamesMeasuredDischargeOfTheComparisonSimulated) {
    EXPECT_EQ(captions(PlotNumber::RunoffComparison, Units::Metric, 3)[0],
              "Simulated Runoff Volume (10  m³)");
    EXPECT_EQ(captions(PlotNumber::RunoffComparison, Units::Metric, 3)[1],
              "Average Simulated Runoff  (m³/s)");
}

TEST(RunSummary, BeginsEachTimeWithTheOriginalCaptions) {
    const auto before = captions(PlotNumber::Runoff, Units::English, 0);
    (void)captions(PlotNumber::RunoffComparison, Units::English, 6);
    (void)captions(PlotNumber::Runoff, Units::English, 2);
    EXPECT_EQ(captions(PlotNumber::Runoff, Units::English, 0), before);
}

TEST(RunSummary, HasThreeDecimalsForDischargeAndFourForTheMeasures) {
    // 123.4565 is 123.45649719... as a Single. No digit stands before the point of a value below 1.
    EXPECT_THAT(values(run_with_statistics()),
                ElementsAre("123.456", "57.", ".25", "56.5", "-.876", ".9125"));
}

TEST(RunSummary, LeavesOutWhatTheRunDidNotCompute) {
    RunState run = run_with_statistics();
    run.statistics = StatisticsReach::Volumes;
    EXPECT_THAT(values(run), ElementsAre("123.456", "57.", ".25", "56.5", "", ""));
    run.statistics = StatisticsReach::Nothing;
    EXPECT_THAT(values(run), ElementsAre("", "", "", "", "", ""));
}

TEST(RunSummary, LeavesOutFormerMeasures) {
    RunState run = run_with_statistics();
    run.former_r2 = true;
    EXPECT_THAT(values(run), ElementsAre("123.456", "57.", ".25", "56.5", "-.876", ""));
    run.MeasuredVolume = 0.0F;
    EXPECT_THAT(values(run), ElementsAre(".", "57.", ".25", "56.5", "", ""));
}

TEST(RunSummary, HasTheColoursOfTheTwoHydrographs) {
    std::vector<int> lines;
    std::vector<bool> millions;
    for (const RunSummaryRow& row : run_summary(PlotNumber::Runoff, Units::Metric, run_with_statistics())) {
        lines.push_back(row.line);
        millions.push_back(row.millions);
    }
    EXPECT_THAT(lines, ElementsAre(1, 1, 2, 2, 0, 0));
    EXPECT_THAT(millions, ElementsAre(true, false, true, false, false, false));
}

}  // namespace
}  // namespace nivora
