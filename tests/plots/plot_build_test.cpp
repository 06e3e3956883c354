#include "plots/plot_build.h"

#include "tests/support/plot_basin.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace nivora {
namespace {

using testing::ElementsAre;

constexpr double k_no_value = std::numeric_limits<double>::quiet_NaN();

TEST(PlotBounds, LeaveMissingValuesOut) {
    const std::vector<double> values{k_no_value, 3.0, -2.0, k_no_value, 5.0};
    EXPECT_EQ(least(values), -2.0F);
    EXPECT_EQ(largest(values), 5.0F);
    EXPECT_EQ(total(values), 6.0F);
}

TEST(PlotBounds, AreRoundedToSingles) {
    EXPECT_EQ(largest({0.1}), 0.1F);
    // In Singles 16777216 + 1 would stay 16777216, twice.
    EXPECT_EQ(total({16777216.0, 1.0, 1.0}), 16777218.0F);
}

TEST(PlotBounds, OfMissingValuesFailTheBuild) {
    EXPECT_THROW((void)least({k_no_value, k_no_value}), BuildFault);
    EXPECT_THROW((void)largest({}), BuildFault);
    EXPECT_THROW((void)total({k_no_value}), BuildFault);
    EXPECT_THROW((void)first_day(DailyRows{}), BuildFault);
}

TEST(PlotBounds, BeyondTheLargestSingleFailTheBuild) {
    EXPECT_EQ(total({3.0e38}), 3.0e38F);
    EXPECT_THROW((void)total({3.0e38, 3.0e38}), BuildFault);
    EXPECT_THROW((void)least({-1.0e39}), BuildFault);
}

TEST(PlotBounds, OfDaysAreTheFirstAndTheLast) {
    DailyRows rows;
    rows.zone = {1, 1, 2};
    rows.date = {101, 103, 100};
    EXPECT_EQ(first_day(rows), 100.0F);
    EXPECT_EQ(last_day(rows), 103.0F);
}

TEST(PlotFrameOfBounds, EndsADayAfterTheLastAndKeepsACopy) {
    Plot plot;
    set_frame(plot, 100.0F, 103.0F, -1.0F, 7.5F);
    EXPECT_EQ(plot.frame.x_min, 100.0F);
    EXPECT_EQ(plot.frame.x_max, 104.0F);
    EXPECT_EQ(plot.frame.y_min, -1.0F);
    EXPECT_EQ(plot.frame.y_max, 7.5F);
    EXPECT_EQ(plot.frame.legend_rows, 2.0F);
    ASSERT_TRUE(plot.frame.queried);
    EXPECT_THAT(*plot.frame.queried, ElementsAre(100.0F, 104.0F, 7.5F));
}

class ZoneCurvesTest : public testing::Test {
protected:
    ZoneCurvesTest() {
        rows_.zone = {1, 1, 3, 3, 3};
        rows_.date = {100, 102, 100, 101, 102};
        rows_.fields = {{1.0, 2.0, 3.0, k_no_value, 5.0}};
    }

    PlotBasin basin_{3};
    BasinDatabase database_ = basin_.file.open(Access::ReadOnly);
    PlotSources sources_ = basin_.sources();
    PlotBuild build_{.database = database_, .sources = sources_, .last_zone = 3, .period = {}, .plot = {}};
    DailyRows rows_;
};

TEST_F(ZoneCurvesTest, AZoneWithoutRowsLeavesNameAndLineOfTheNextAsTheyAre) {
    add_zone_curves(build_, rows_, 0, 2, CurveMode::Dotted);
    ASSERT_EQ(build_.plot.curves.size(), 2U);
    const PlotCurve& first = build_.plot.curves[0];
    EXPECT_EQ(first.name, "Zone A");
    EXPECT_EQ(first.zone, 1);
    EXPECT_EQ(first.line, 1);
    EXPECT_THAT(xs_of(first), ElementsAre(100.0F, 102.0F));
    EXPECT_THAT(ys_of(first), ElementsAre(1.0F, 2.0F));
    const PlotCurve& second = build_.plot.curves[1];
    EXPECT_EQ(second.name, "Zone C");
    EXPECT_EQ(second.zone, 3);
    EXPECT_EQ(second.line, 3);
    EXPECT_EQ(second.pass, 2);
    EXPECT_EQ(second.mode, CurveMode::Dotted);
}

TEST_F(ZoneCurvesTest, AMissingValueIsAPointWithoutY) {
    add_zone_curves(build_, rows_, 0, 1, CurveMode::Own);
    EXPECT_THAT(ys_of(build_.plot.curves[1]), ElementsAre(3.0F, testing::IsNan(), 5.0F));
}

TEST_F(ZoneCurvesTest, MorePointsThanTheLimitFailTheBuild) {
    EXPECT_NO_THROW(add_zone_curves(build_, rows_, 0, 1, CurveMode::Own, 3));
    EXPECT_THROW(add_zone_curves(build_, rows_, 0, 1, CurveMode::Own, 2), BuildFault);
}

TEST_F(ZoneCurvesTest, AValueBeyondTheLargestSingleIsAFault) {
    rows_.fields[0][1] = 1.0e39;
    EXPECT_THROW(add_zone_curves(build_, rows_, 0, 1, CurveMode::Own), Fault);
}

TEST(PlotLabels, AreCutFromTheTableOfUnits) {
    EXPECT_EQ(temperature_label(Units::Metric), " (°C)");
    EXPECT_EQ(temperature_label(Units::English), " (°F)");
    EXPECT_EQ(depth_label(Units::Metric), " (cm)");
    EXPECT_EQ(depth_label(Units::English), " (in)");
    EXPECT_EQ(runoff_label(Units::Metric), " (m³/s)");
    EXPECT_EQ(runoff_label(Units::English), " (f³/s) ");
    EXPECT_EQ(lapse_rate_label(Units::Metric), " (°C/100m)");
    EXPECT_EQ(lapse_rate_label(Units::English), " (°F/1000ft)");
    EXPECT_EQ(degree_day_label(Units::Metric), "(cm/°C·d)");
    EXPECT_EQ(degree_day_label(Units::English), "(in/(°F-32)·d)");
    EXPECT_EQ(depth_label(Units::NotFixed), " (cm)");
}

}  // namespace
}  // namespace nivora
