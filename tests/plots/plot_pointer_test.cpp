#include "plots/plot_pointer.h"

#include "tests/plots/plot_values.h"
#include "tests/support/random_trials.h"

#include <gtest/gtest.h>

#include <cmath>

namespace nivora {
namespace {

const PlotFrame k_whole = frame_of(100.0F, 200.0F, 0.0F, 10.0F);

void expect_frame(const PlotFrame& frame, float x_min, float x_max, float y_min, float y_max) {
    EXPECT_FLOAT_EQ(frame.x_min, x_min);
    EXPECT_FLOAT_EQ(frame.x_max, x_max);
    EXPECT_FLOAT_EQ(frame.y_min, y_min);
    EXPECT_FLOAT_EQ(frame.y_max, y_max);
}

TEST(Wheel, ZoomsPlotsOfDaysWithoutBars) {
    EXPECT_TRUE(has_wheel(PlotNumber::Runoff));
    EXPECT_TRUE(has_wheel(PlotNumber::RunoffComponents));
    for (const int number : {14, 17, 20, 22, 23})
        EXPECT_FALSE(has_wheel(static_cast<PlotNumber>(number))) << number;
}

TEST(Wheel, KeepsThePlaceUnderThePointer) {
    // 4/5 of each range; a place in the middle has half of it on either side.
    expect_frame(wheel_zoomed(k_whole, k_whole, {150.0, 5.0}, 1.0), 110.0F, 190.0F, 1.0F, 9.0F);
    expect_frame(wheel_zoomed(k_whole, k_whole, {100.0, 10.0}, 1.0), 100.0F, 180.0F, 2.0F, 10.0F);
    expect_frame(wheel_zoomed(k_whole, k_whole, {150.0, 5.0}, 2.0), 118.0F, 182.0F, 1.8F, 8.2F);
}

TEST(Wheel, OutsideTheFrameZoomsAboutItsEdge) {
    expect_frame(wheel_zoomed(k_whole, k_whole, {90.0, -1.0}, 1.0), 100.0F, 180.0F, 0.0F, 8.0F);
    expect_frame(wheel_zoomed(k_whole, k_whole, {290.0, 99.0}, 1.0), 120.0F, 200.0F, 2.0F, 10.0F);
}

TEST(Wheel, OutStopsAtTheWholePlot) {
    expect_frame(wheel_zoomed(k_whole, k_whole, {150.0, 5.0}, -1.0), 100.0F, 200.0F, 0.0F, 10.0F);
    expect_frame(wheel_zoomed(frame_of(110.0F, 190.0F, 1.0F, 9.0F), k_whole, {150.0, 5.0}, -3.0), 100.0F,
                 200.0F, 0.0F, 10.0F);
    // 90 to 140 and -1 to 4 move into the plot.
    expect_frame(wheel_zoomed(frame_of(100.0F, 140.0F, 0.0F, 4.0F), k_whole, {140.0, 4.0}, -1.0), 100.0F,
                 150.0F, 0.0F, 5.0F);
    // A frame of all days and a part of the height grows in height alone.
    expect_frame(wheel_zoomed(frame_of(100.0F, 200.0F, 4.0F, 8.0F), k_whole, {150.0, 6.0}, -1.0), 100.0F,
                 200.0F, 3.5F, 8.5F);
}

TEST(Wheel, InStopsAtADayAndAtAThousandthOfTheHeight) {
    const PlotFrame day = frame_of(150.0F, 151.0F, 2.0F, 8.0F);
    expect_frame(wheel_zoomed(day, k_whole, {150.5, 5.0}, 1.0), 150.0F, 151.0F, 2.0F, 8.0F);
    const PlotFrame low = frame_of(110.0F, 190.0F, 2.0F, 2.0101F);
    expect_frame(wheel_zoomed(low, k_whole, {150.0, 2.0}, 1.0), 110.0F, 190.0F, 2.0F, 2.0101F);
}

TEST(Wheel, PansATenthOfTheFrameWithinThePlot) {
    const PlotFrame frame = frame_of(110.0F, 190.0F, 1.0F, 9.0F);
    expect_frame(panned(frame, k_whole, 1.0), 118.0F, 198.0F, 1.0F, 9.0F);
    expect_frame(panned(frame, k_whole, 2.0), 120.0F, 200.0F, 1.0F, 9.0F);
    expect_frame(panned(frame, k_whole, -0.5), 106.0F, 186.0F, 1.0F, 9.0F);
    expect_frame(panned(frame, k_whole, -9.0), 100.0F, 180.0F, 1.0F, 9.0F);
    expect_frame(panned(k_whole, k_whole, 1.0), 100.0F, 200.0F, 0.0F, 10.0F);
}

class WheelProperties : public RandomTrials<testing::Test> {};

TEST_F(WheelProperties, InAndOutAboutTheSamePlaceGivesTheFrameBack) {
    try_often(1000, [&] {
        const float x_min = static_cast<float>(whole_between(30'000, 40'000));
        const float days = static_cast<float>(whole_between(20, 900));
        const float height = static_cast<float>(std::pow(10.0, between(-2.0, 5.0)));
        const PlotFrame whole = frame_of(x_min, x_min + days, 0.0F, height);
        PlotFrame frame = whole;
        if (by_chance(0.7)) {
            frame.x_min += static_cast<float>(whole_between(0, static_cast<int>(days) / 2 - 2));
            frame.x_max -= static_cast<float>(whole_between(0, static_cast<int>(days) / 2 - 2));
            frame.y_min += height * static_cast<float>(between(0.0, 0.4));
            frame.y_max -= height * static_cast<float>(between(0.0, 0.4));
        }
        const WorldPoint about{between(as_double(frame.x_min), as_double(frame.x_max)),
                               between(as_double(frame.y_min), as_double(frame.y_max))};
        const PlotFrame in = wheel_zoomed(frame, whole, about, 1.0);
        const PlotFrame back = wheel_zoomed(in, whole, about, -1.0);
        // A Single near 40,000 counts in 1/256 day; the step out makes an error a quarter larger.
        EXPECT_LT(in.x_max - in.x_min, frame.x_max - frame.x_min);
        EXPECT_NEAR(back.x_min, frame.x_min, 0.02);
        EXPECT_NEAR(back.x_max, frame.x_max, 0.02);
        EXPECT_NEAR(back.y_min, frame.y_min, 2e-4F * height);
        EXPECT_NEAR(back.y_max, frame.y_max, 2e-4F * height);
    });
}

/// On a surface of 120 x 120 the point (x, y) stands at (x + 10, 112.5 - 10 y).
constexpr SurfaceSize k_surface{120.0, 120.0};

Plot two_curves() {
    Plot plot = plot_of(PlotNumber::SnowCover, frame_of(0.0F, 100.0F, 0.0F, 10.0F));
    plot.curves = {curve_of("Zone A", {{50.0F, 5.0F}, {60.0F, 6.0F}, {70.0F, k_missing}}),
                   curve_of("Zone B", {{50.0F, 8.0F}, {90.0F, 12.0F}, {60.0F, 6.0F}}, 2)};
    return plot;
}

TEST(NearestPoint, IsTheNearestOfAllCurvesWithinTheDistance) {
    const auto near = nearest_point(two_curves(), k_surface, {63.0, 66.5}, 5.01);
    ASSERT_TRUE(near);
    EXPECT_EQ(near->curve, 0U);
    EXPECT_EQ(near->point, (PlotPoint{50.0F, 5.0F}));
    EXPECT_NEAR(near->at.x, 60.0, 1e-9);
    EXPECT_NEAR(near->at.y, 62.5, 1e-9);
    EXPECT_FALSE(nearest_point(two_curves(), k_surface, {63.0, 66.5}, 4.99));
    const auto above = nearest_point(two_curves(), k_surface, {60.0, 40.0}, 30.0);
    ASSERT_TRUE(above);
    EXPECT_EQ(above->curve, 1U);
    EXPECT_EQ(above->point, (PlotPoint{50.0F, 8.0F}));
}

TEST(NearestPoint, OfTwoAtOnePlaceIsTheOneThatWasDrawnLast) {
    const auto near = nearest_point(two_curves(), k_surface, {70.0, 52.5}, 5.0);
    ASSERT_TRUE(near);
    EXPECT_EQ(near->curve, 1U);
}

TEST(NearestPoint, IsNeitherMissingNorOutsideTheFrame) {
    EXPECT_FALSE(nearest_point(two_curves(), k_surface, {80.0, 52.5}, 5.0));
    EXPECT_FALSE(nearest_point(two_curves(), k_surface, {100.0, -7.5}, 5.0));
}

TEST(NearestPoint, NeedsAFrameAndASurface) {
    Plot plot = two_curves();
    EXPECT_FALSE(nearest_point(plot, {0.0, 0.0}, {63.0, 66.5}, 5.0));
    plot.frame.y_max = 0.0F;
    EXPECT_FALSE(nearest_point(plot, k_surface, {63.0, 66.5}, 500.0));
}

TEST(PointTexts, NameSeriesPlaceAndValue) {
    Plot plot = two_curves();
    plot.curves[1].points = {{k_october_2001, 0.0625F}};
    PointTexts texts = point_texts(plot, {.curve = 1, .point = plot.curves[1].points[0]});
    EXPECT_EQ(texts.series, "Zone B");
    EXPECT_EQ(texts.x, "Oct 1, 2001");
    EXPECT_EQ(texts.y, "0.0625");
    plot.curves[1].heading = "AZMexcl (30.25 cm) ";
    EXPECT_EQ(point_texts(plot, {.curve = 1, .point = {}}).series, "AZMexcl (30.25 cm)");
    plot.number = PlotNumber::DepletionOverMelt;
    EXPECT_EQ(point_texts(plot, {.curve = 0, .point = {12.346F, 1.0F}}).x, "12.35");
}

}  // namespace
}  // namespace nivora
