#include "plots/axes.h"

#include "tests/plots/plot_values.h"
#include "tests/support/comma_locale.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

PlotAxes cover_axes(float x_min, float x_max, float y_min = 0.0F, float y_max = 1.0F,
                    GridMode grid = GridMode::Vertical) {
    return lay_out_axes(plot_of(PlotNumber::SnowCover, frame_of(x_min, x_max, y_min, y_max)), grid);
}

PlotAxes depth_axes(float x_min, float x_max, GridMode grid = GridMode::Vertical) {
    return lay_out_axes(plot_of(PlotNumber::DepletionOverMelt, frame_of(x_min, x_max, 0.0F, 1.0F)), grid);
}

std::vector<std::string> labels(const std::vector<XTick>& ticks) {
    std::vector<std::string> texts;
    for (const XTick& tick : ticks) texts.push_back(tick.label);
    return texts;
}

std::vector<std::string> labels(const std::vector<YTick>& ticks) {
    std::vector<std::string> texts;
    for (const YTick& tick : ticks) texts.push_back(tick.label);
    return texts;
}

std::vector<float> places(const std::vector<XTick>& ticks) {
    std::vector<float> xs;
    for (const XTick& tick : ticks) xs.push_back(tick.x);
    return xs;
}

std::vector<float> places(const std::vector<YTick>& ticks) {
    std::vector<float> ys;
    for (const YTick& tick : ticks) ys.push_back(tick.y);
    return ys;
}

TEST(PlotTransform, LeavesATenthOnEitherSideAnEighthAboveAndTheRestOfAFifthBelow) {
    const Transform transform = cover_axes(100.0F, 200.0F, 0.0F, 40.0F).transform;
    EXPECT_EQ(transform.ScaleLeft, 90.0F);     // 100 - 100/10
    EXPECT_EQ(transform.ScaleTop, 45.0F);      // 40 + 40/8
    EXPECT_EQ(transform.ScaleWidth, 120.0F);   // 100 + 2 x 10
    EXPECT_EQ(transform.ScaleHeight, -48.0F);  // -(40 + 40/5)
}

TEST(PlotTransform, TakesARangeOfOneWhereTheValuesHaveNone) {
    const PlotAxes axes = cover_axes(100.0F, 200.0F, 0.65F, 0.65F);
    EXPECT_TRUE(axes.no_data);
    EXPECT_EQ(axes.transform.ScaleTop, static_cast<float>(static_cast<double>(0.65F) + 0.125));
    EXPECT_EQ(axes.transform.ScaleHeight, -1.2F);
    EXPECT_THAT(axes.x_ticks, IsEmpty());
    EXPECT_THAT(axes.y_ticks, IsEmpty());
    EXPECT_THAT(axes.grid_x, IsEmpty());
}

TEST(PlotTransform, StaysFiniteForTheLargestSingles) {
    const PlotAxes axes = cover_axes(0.0F, 10.0F, -3.0e38F, 3.0e38F);
    EXPECT_TRUE(std::isfinite(axes.transform.ScaleTop));
    EXPECT_TRUE(std::isfinite(axes.transform.ScaleHeight));
}

TEST(PlotWorld, MapsTheEdgesOfTheTransformToThoseOfTheSurface) {
    const World world{{90.0F, 45.0F, 120.0F, -48.0F}, {1200.0, 480.0}};
    // 10 points a unit in both directions
    EXPECT_EQ(world.to_surface(100.0, 40.0).x, 100.0);
    EXPECT_EQ(world.to_surface(100.0, 40.0).y, 50.0);
    EXPECT_EQ(world.to_world({1100.0, 450.0}), (std::pair{200.0, 0.0}));
    EXPECT_EQ(world.across(), 0.1);
    EXPECT_EQ(world.down(), 0.1);
}

TEST(PlotWorld, HasAPlaceForEveryPointOnASurfaceWithoutASize) {
    const World world{{90.0F, 45.0F, 0.0F, -48.0F}, {0.0, 0.0}};
    EXPECT_EQ(world.to_surface(100.0, 40.0).x, 0.0);
    EXPECT_EQ(world.to_world({5.0, 5.0}).first, 90.0);
}

TEST(DateAxis, AHundredDaysHaveATickEverySixteen) {
    // Int(100 / 6) = 16; 6 x 16 = 96 is the last one below 100.
    const PlotAxes axes = cover_axes(k_october_2001, k_october_2001 + 100.0F);
    EXPECT_EQ(axes.x_kind, XAxisKind::Days);
    EXPECT_EQ(axes.x_step, 16.0F);
    EXPECT_THAT(labels(axes.x_ticks),
                ElementsAre("10/1/01", "10/17/01", "11/2/01", "11/18/01", "12/4/01", "12/20/01", "1/5/02"));
    EXPECT_EQ(axes.x_ticks.back().x, k_october_2001 + 96.0F);
    EXPECT_EQ(axes.x_ticks.back().at, k_october_2001 + 96.0F);
    EXPECT_TRUE(axes.x_ticks.back().line);
}

TEST(DateAxis, AHundredAndOneDaysHaveMonths) {
    // 2001-10-01 + 101 = 2002-01-10
    const PlotAxes axes = cover_axes(k_october_2001, k_october_2001 + 101.0F);
    EXPECT_EQ(axes.x_kind, XAxisKind::Months);
    EXPECT_EQ(axes.x_step, 1.0F);
    EXPECT_THAT(places(axes.x_ticks), ElementsAre(37196.0F, 37226.0F, 37257.0F, 37288.0F));
    EXPECT_THAT(labels(axes.x_ticks), ElementsAre("Oct", "Nov", "Dec", "Jan"));
    EXPECT_EQ(axes.x_ticks[0].at, 37180.5F);  // (37165 + 37196) / 2
}

TEST(DateAxis, TheLastMonthHasALabelAlsoWithoutATick) {
    const PlotAxes axes = cover_axes(k_october_2001, k_october_2001 + 101.0F);
    EXPECT_TRUE(axes.x_ticks[2].line);
    EXPECT_FALSE(axes.x_ticks[3].line);       // 2002-02-01 lies behind 2002-01-10 + 1/2
    EXPECT_EQ(axes.x_ticks[3].at, 37272.5F);  // (37257 + 37288) / 2
    EXPECT_THAT(axes.grid_x, ElementsAre(37196.0F, 37226.0F, 37257.0F));
}

TEST(DateAxis, AYearHasATickAtTheEndOfEachMonthButNoneAtItsFirstDay) {
    const PlotAxes axes = cover_axes(k_october_2001, k_october_2002);
    EXPECT_THAT(labels(axes.x_ticks), ElementsAre("Oct", "Nov", "Dec", "Jan", "Feb", "Mar", "Apr", "May",
                                                  "Jun", "Jul", "Aug", "Sep"));
    EXPECT_EQ(axes.x_ticks.front().x, 37196.0F);
    EXPECT_EQ(axes.x_ticks.back().x, k_october_2002);
    EXPECT_TRUE(axes.x_ticks.back().line);
}

TEST(DateAxis, AFrameThatBeginsWithinAMonthHasItsFirstTickAtTheNext) {
    // 2001-10-20 is day 37184; (37184 + 37196) / 2 = 37190
    const PlotAxes axes = cover_axes(37184.0F, k_october_2002);
    EXPECT_EQ(axes.x_ticks.front().x, 37196.0F);
    EXPECT_EQ(axes.x_ticks.front().at, 37190.0F);
}

TEST(DateAxis, FiveDaysHaveATickEachButTheLast) {
    const PlotAxes axes = cover_axes(k_october_2001, k_october_2001 + 5.0F);
    EXPECT_EQ(axes.x_step, 1.0F);
    EXPECT_EQ(axes.x_ticks.size(), 5U);
    EXPECT_EQ(axes.x_ticks.back().label, "10/5/01");
}

TEST(DateAxis, ADayHasOneTick) {
    const PlotAxes axes = cover_axes(k_october_2001, k_october_2001 + 1.0F);
    EXPECT_THAT(labels(axes.x_ticks), ElementsAre("10/1/01"));
}

TEST(DateAxis, FebruaryOf1900Has29Days) {
    // 1900-01-01 is day 2; 2 + 31 = 33 and 33 + 29 = 62, 2 March, which is in the month of the next label.
    const PlotAxes axes = cover_axes(2.0F, 103.0F);
    EXPECT_THAT(places(axes.x_ticks), ElementsAre(33.0F, 62.0F, 93.0F, 123.0F));
    EXPECT_THAT(labels(axes.x_ticks), ElementsAre("Jan", "Mar", "Apr", "May"));
}

TEST(DateAxis, FebruaryIsThatOfTheNextYearForAFrameThatBeginsAfterIt) {
    // 2003-10-01 is day 37895; 1 February 2004 is day 38018 and 29 days later it is 1 March.
    const std::vector<float> ticks = places(cover_axes(37895.0F, 38261.0F).x_ticks);
    EXPECT_EQ(ticks.at(3), 38018.0F);
    EXPECT_EQ(ticks.at(4), 38047.0F);
}

TEST(DateAxis, FebruaryHasTheSameLengthInAllYearsOfAFrame) {
    // From 2002-10-01 (day 37530): February has 28 days, so that the month from 1 February 2004 (day 38018)
    // ends at 29 February, and that one at 28 March.
    const std::vector<float> ticks = places(cover_axes(37530.0F, 38261.0F).x_ticks);
    const auto february = std::find(ticks.begin(), ticks.end(), 38018.0F);
    ASSERT_NE(february, ticks.end());
    EXPECT_EQ(*(february + 1), 38046.0F);
    EXPECT_EQ(*(february + 2), 38074.0F);
}

TEST(DateAxis, EndsWhereDatesEnd) {
    // 2,700 years with 12 months, and a few more
    EXPECT_LT(cover_axes(k_october_2001, 1.0e30F).x_ticks.size(), 33'000U);
    EXPECT_THAT(cover_axes(2.0e6F, 3.0e6F).x_ticks, IsEmpty());
    EXPECT_THAT(cover_axes(-1.0e30F, 3.0e6F).x_ticks, IsEmpty());
}

TEST(NumberStep, TwelveStepsAreEnough) {
    EXPECT_EQ(cover_axes(0.0F, 9.0F, 0.0F, 12.0F).y_step, 1.0F);
    EXPECT_EQ(cover_axes(0.0F, 9.0F, 0.0F, 13.0F).y_step, 5.0F);
    EXPECT_EQ(cover_axes(0.0F, 9.0F, 0.0F, 0.5F).y_step, 0.1F);
    EXPECT_EQ(cover_axes(0.0F, 9.0F, 0.0F, 120'000.0F).y_step, 10'000.0F);
}

TEST(NumberStep, IsNeverBelowAHundredth) { EXPECT_EQ(cover_axes(0.0F, 9.0F, 0.0F, 0.004F).y_step, 0.01F); }

TEST(NumberStep, StaysAtFiftyThousandAboveSixHundredThousand) {
    const PlotAxes axes = cover_axes(0.0F, 9.0F, 0.0F, 700'000.0F);
    EXPECT_EQ(axes.y_step, 50'000.0F);
    EXPECT_EQ(axes.y_ticks.size(), 15U);  // 700,000 / 50,000 + 1
}

TEST(NumberTicks, HaveTwoDecimalsBelowAStepOfOneAndTwoBlanks) {
    const PlotAxes axes = cover_axes(0.0F, 9.0F, 0.0F, 0.5F);
    EXPECT_THAT(labels(axes.y_ticks), ElementsAre(".0  ", ".1  ", ".2  ", ".3  ", ".4  ", ".5  "));
    EXPECT_EQ(axes.y_ticks[3].y, static_cast<float>(3.0 * static_cast<double>(0.1F)));
}

TEST(NumberTicks, CountFromTheMinimumAndNotFromARoundNumber) {
    const PlotAxes axes = cover_axes(0.0F, 9.0F, 3.5F, 9.0F);
    // Range 5.5: step 0.5
    EXPECT_EQ(places(axes.y_ticks).front(), 3.5F);
    const PlotAxes wide = cover_axes(0.0F, 9.0F, -3.25F, 8.0F);
    EXPECT_THAT(places(wide.y_ticks), ElementsAre(-3.25F, -2.25F, -1.25F, -0.25F, 0.75F, 1.75F, 2.75F, 3.75F,
                                                  4.75F, 5.75F, 6.75F, 7.75F));
    EXPECT_EQ(labels(wide.y_ticks).front(), "-3  ");
}

TEST(NumberTicks, AreNeverMoreThanTwoThousand) {
    EXPECT_EQ(cover_axes(0.0F, 9.0F, 0.0F, 1.0e9F).y_ticks.size(), 2000U);
    EXPECT_EQ(cover_axes(0.0F, 9.0F, 1.0e30F, 3.0e38F).y_ticks.size(), 2000U);
}

TEST(DepthAxis, CountsFromZero) {
    // Range 43.7: 43.7 / 5 = 8.74 is the first quotient not above 12.
    const PlotAxes axes = depth_axes(0.0F, 43.7F);
    EXPECT_EQ(axes.x_kind, XAxisKind::Number);
    EXPECT_EQ(axes.x_step, 5.0F);
    EXPECT_THAT(labels(axes.x_ticks), ElementsAre("0", "5", "10", "15", "20", "25", "30", "35", "40"));
    EXPECT_EQ(axes.x_ticks[1].at, 5.0F);
    EXPECT_EQ(axes.grid_x.size(), 9U);
}

TEST(DepthAxis, ShowsTheTicksOfAZoomAlone) {
    EXPECT_THAT(places(depth_axes(12.3F, 16.5F).x_ticks),
                ElementsAre(12.5F, 13.0F, 13.5F, 14.0F, 14.5F, 15.0F, 15.5F, 16.0F, 16.5F));
}

TEST(DepthAxis, FindsTheTicksOfAFineStepFarFromZero) {
    const PlotAxes axes = depth_axes(100.0F, 100.1F);
    EXPECT_EQ(axes.x_step, 0.01F);
    EXPECT_GE(axes.x_ticks.size(), 10U);
    EXPECT_LE(axes.x_ticks.size(), 11U);
    EXPECT_GE(axes.x_ticks.front().x, 100.0F);
}

TEST(PlotGrid, HasTheLinesOfItsMode) {
    const auto lines = [](GridMode grid) {
        const PlotAxes axes = cover_axes(0.0F, 9.0F, 0.0F, 3.0F, grid);
        return std::pair{axes.grid_x.size(), axes.grid_y.size()};
    };
    // Days 0 to 8; 3 / 0.5 + 1 = 7 ticks with the one at the minimum
    EXPECT_EQ(lines(GridMode::Vertical), (std::pair<std::size_t, std::size_t>{9, 0}));
    EXPECT_EQ(lines(GridMode::Horizontal), (std::pair<std::size_t, std::size_t>{0, 7}));
    EXPECT_EQ(lines(GridMode::Both), (std::pair<std::size_t, std::size_t>{9, 7}));
    EXPECT_EQ(lines(GridMode::None), (std::pair<std::size_t, std::size_t>{0, 0}));
}

TEST(PeriodText, EndsADayBeforeTheFrame) {
    Plot plot = plot_of(PlotNumber::SnowCover, frame_of(k_october_2001, k_october_2002, 0.0F, 1.0F));
    plot.head.period = PeriodLine::ToDayBefore;
    EXPECT_EQ(period_text(plot), "10/01/2001 to 09/30/2002");
    plot.head.period = PeriodLine::ToEnd;
    EXPECT_EQ(period_text(plot), "10/01/2001 to 10/01/2002");
    plot.head.period = PeriodLine::None;
    EXPECT_EQ(period_text(plot), "");
}

Plot forecast() {
    Plot plot = plot_of(PlotNumber::Runoff, frame_of(k_october_2001, k_october_2002, 0.0F, 60.0F));
    plot.head.run_kind = "Melt Season Forecast";
    plot.head.update_interval = 7;
    plot.head.no_snow = true;
    return plot;
}

constexpr double k_evening = 46348.9;  // 2026-11-22

TEST(RightColumn, TellsDateRunAndUpdating) {
    EXPECT_THAT(right_column(forecast(), k_evening),
                ElementsAre("11/22/2026", "Melt Season Forecast", "(Updating every 7 days)", "(no snow)"));
}

TEST(RightColumn, BeginsWithTheClimateStep) {
    Plot plot = plot_of(PlotNumber::SnowCover, frame_of(0.0F, 9.0F, 0.0F, 1.0F));
    plot.head.step = 6;
    EXPECT_THAT(right_column(plot, k_evening), ElementsAre("Step 6", "11/22/2026"));
}

TEST(RightColumn, HasTheStepAloneWithoutData) {
    Plot plot = forecast();
    plot.frame.y_max = 0.0F;
    EXPECT_THAT(right_column(plot, k_evening), IsEmpty());
    plot.head.step = 2;
    EXPECT_THAT(right_column(plot, k_evening), ElementsAre("Step 2"));
}

TEST(PlotLabels, AreTheSameInEveryLocale) {
    const CommaLocale commas;
    EXPECT_EQ(cover_axes(0.0F, 9.0F, 0.0F, 0.5F).y_ticks[1].label, ".1  ");
    EXPECT_EQ(cover_axes(0.0F, 9.0F, 0.0F, 9000.0F).y_ticks[1].label, "1000  ");
    EXPECT_EQ(month_text(37180.0), "Oct");
}

}  // namespace
}  // namespace nivora
