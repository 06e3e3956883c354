#include "plots/plot_view.h"

#include "tests/plots/plot_values.h"

#include <gmock/gmock.h>

#include <limits>

namespace nivora {
namespace {

using testing::IsEmpty;

Plot cover_plot(PlotNumber number = PlotNumber::SnowCover) {
    Plot plot = plot_of(number, frame_of(1.0F, 11.0F, 0.0F, 10.0F));
    plot.frame.queried = std::array{1.0F, 11.0F, 10.0F};
    plot.curves = {curve_of("Zone A", points_of({1, 2, 3, 4, 5, 6, 7, 8, 9, 10}))};
    return plot;
}

Plot zoomed(const Plot& plot, const WorldRectangle& rectangle) {
    const auto outcome = zoom(plot, rectangle);
    EXPECT_TRUE(std::holds_alternative<Plot>(outcome));
    return std::holds_alternative<Plot>(outcome) ? std::get<Plot>(outcome) : Plot{};
}

void expect_frame(const Plot& plot, float x_min, float x_max, float y_min, float y_max) {
    EXPECT_EQ(plot.frame.x_min, x_min);
    EXPECT_EQ(plot.frame.x_max, x_max);
    EXPECT_EQ(plot.frame.y_min, y_min);
    EXPECT_EQ(plot.frame.y_max, y_max);
}

TEST(PlotZoom, TakesTheRectangleAsFrame) {
    const Plot plot = zoomed(cover_plot(), {.x1 = 3.0, .x2 = 7.0, .y1 = 2.5, .y2 = 6.25});
    expect_frame(plot, 3.0F, 7.0F, 2.5F, 6.25F);
    EXPECT_TRUE(plot.zoomed);
    EXPECT_EQ(plot.frame.queried, (std::array{1.0F, 11.0F, 10.0F}));
}

TEST(PlotZoom, TakesTheCornersInAnyOrder) {
    expect_frame(zoomed(cover_plot(), {.x1 = 7.0, .x2 = 3.0, .y1 = 6.25, .y2 = 2.5}), 3.0F, 7.0F, 2.5F,
                 6.25F);
}

TEST(PlotZoom, RoundsDaysToEvenAtAHalf) {
    expect_frame(zoomed(cover_plot(), {.x1 = 2.5, .x2 = 7.5, .y1 = 0.0, .y2 = 9.0}), 2.0F, 8.0F, 0.0F, 9.0F);
}

TEST(PlotZoom, KeepsTheDepthsOfTheDepletionPlot) {
    expect_frame(
        zoomed(cover_plot(PlotNumber::DepletionOverMelt), {.x1 = 2.5, .x2 = 7.25, .y1 = 0.0, .y2 = 9.0}),
        2.5F, 7.25F, 0.0F, 9.0F);
    expect_frame(
        zoomed(cover_plot(PlotNumber::DepletionCutoff), {.x1 = 2.5, .x2 = 7.25, .y1 = 0.0, .y2 = 9.0}), 2.0F,
        7.0F, 0.0F, 9.0F);
}

TEST(PlotZoom, BeginsAtZeroUnlessItShowsTemperatures) {
    const WorldRectangle rectangle{.x1 = 3.0, .x2 = 7.0, .y1 = -4.0, .y2 = 6.0};
    expect_frame(zoomed(cover_plot(), rectangle), 3.0F, 7.0F, 0.0F, 6.0F);
    expect_frame(zoomed(cover_plot(PlotNumber::Temperatures), rectangle), 3.0F, 7.0F, -4.0F, 6.0F);
}

TEST(PlotZoom, OfARectangleWithoutAreaChangesNothing) {
    for (const WorldRectangle& rectangle : {WorldRectangle{.x1 = 3.0, .x2 = 3.0, .y1 = 0.0, .y2 = 6.0},
                                            WorldRectangle{.x1 = 3.0, .x2 = 7.0, .y1 = 6.0, .y2 = 6.0},
                                            WorldRectangle{.x1 = 3.1, .x2 = 3.4, .y1 = 0.0, .y2 = 6.0},
                                            WorldRectangle{.x1 = 3.0, .x2 = 7.0, .y1 = -6.0, .y2 = -1.0}}) {
        const Plot plot = zoomed(cover_plot(), rectangle);
        expect_frame(plot, 1.0F, 11.0F, 0.0F, 10.0F);
        EXPECT_FALSE(plot.zoomed);
    }
}

TEST(PlotZoom, IsRefusedWithoutAPoint) {
    // Points are at (x, x); none lies in x 3 to 7, y 8 to 9.
    const auto outcome = zoom(cover_plot(), {.x1 = 3.0, .x2 = 7.0, .y1 = 8.0, .y2 = 9.0});
    ASSERT_TRUE(std::holds_alternative<PlotRefusal>(outcome));
    EXPECT_EQ(std::get<PlotRefusal>(outcome).kind, PlotRefusal::Kind::Zoom);
    EXPECT_EQ(std::get<PlotRefusal>(outcome).text, "No points in the zoom area");
}

TEST(PlotZoom, TakesAPointOnACorner) {
    expect_frame(zoomed(cover_plot(), {.x1 = 3.0, .x2 = 7.0, .y1 = 7.0, .y2 = 9.0}), 3.0F, 7.0F, 7.0F, 9.0F);
}

TEST(PlotZoom, AMissingPointIsNoPoint) {
    Plot plot = cover_plot();
    plot.curves[0].points = {{5, k_missing}};
    EXPECT_TRUE(
        std::holds_alternative<PlotRefusal>(zoom(plot, {.x1 = 3.0, .x2 = 7.0, .y1 = 0.0, .y2 = 9.0})));
}

TEST(PlotZoom, SearchesEveryCurve) {
    Plot plot = cover_plot();
    plot.curves.push_back(curve_of("Zone B", {{5, 8.5F}}, 2));
    EXPECT_TRUE(std::holds_alternative<Plot>(zoom(plot, {.x1 = 3.0, .x2 = 7.0, .y1 = 8.0, .y2 = 9.0})));
}

TEST(PlotZoom, OfAZoomMayBeWiderAgain) {
    const Plot plot = zoomed(cover_plot(), {.x1 = 3.0, .x2 = 7.0, .y1 = 0.0, .y2 = 9.0});
    expect_frame(zoomed(plot, {.x1 = 2.0, .x2 = 7.0, .y1 = 0.0, .y2 = 9.0}), 2.0F, 7.0F, 0.0F, 9.0F);
}

TEST(PlotZoom, OfTheComponentsShowsLinesWithoutFills) {
    Plot plot = cover_plot(PlotNumber::RunoffComponents);
    plot.bands = {{.band = 1, .line = 1, .filled = true, .seed_y = 5.0F}};
    EXPECT_THAT(zoomed(plot, {.x1 = 3.0, .x2 = 7.0, .y1 = 0.0, .y2 = 9.0}).bands, IsEmpty());
    EXPECT_EQ(zoomed(plot, {.x1 = 3.0, .x2 = 3.0, .y1 = 0.0, .y2 = 9.0}).bands.size(), 1U);
}

TEST(PlotZoom, TheWaterEquivalentHasNone) {
    expect_frame(
        zoomed(cover_plot(PlotNumber::WaterEquivalent), {.x1 = 3.0, .x2 = 7.0, .y1 = 0.0, .y2 = 9.0}), 1.0F,
        11.0F, 0.0F, 10.0F);
}

TEST(PlotZoom, EndsAtTheLargestSingle) {
    const Plot plot = zoomed(cover_plot(), {.x1 = -1e300, .x2 = 1e300, .y1 = 0.0, .y2 = 1e300});
    EXPECT_EQ(plot.frame.x_max, std::numeric_limits<float>::max());
    EXPECT_EQ(plot.frame.y_max, std::numeric_limits<float>::max());
}

TEST(TypedMaxima, ReachTheFrameButNotTheQueriedBounds) {
    const Plot plot = with_maxima(cover_plot(), {.x = 8.0F, .y = 5.5F});
    expect_frame(plot, 1.0F, 8.0F, 0.0F, 5.5F);
    EXPECT_EQ(plot.frame.queried, (std::array{1.0F, 11.0F, 10.0F}));
}

TEST(TypedMaxima, OfABoxThatWasNotEditedChangeNothing) {
    expect_frame(with_maxima(cover_plot(), {.x = {}, .y = 20.0F}), 1.0F, 11.0F, 0.0F, 20.0F);
    expect_frame(with_maxima(cover_plot(), {.x = 20.0F, .y = {}}), 1.0F, 20.0F, 0.0F, 10.0F);
}

TEST(TypedMaxima, NotAboveTheMinimumAreNotTaken) {
    expect_frame(with_maxima(cover_plot(), {.x = 1.0F, .y = 0.0F}), 1.0F, 11.0F, 0.0F, 10.0F);
    const float infinite = std::numeric_limits<float>::infinity();
    expect_frame(with_maxima(cover_plot(), {.x = infinite, .y = k_missing}), 1.0F, 11.0F, 0.0F, 10.0F);
}

TEST(TypedMaxima, LeaveAZoomAlone) {
    const Plot plot = zoomed(cover_plot(), {.x1 = 3.0, .x2 = 7.0, .y1 = 0.0, .y2 = 9.0});
    expect_frame(with_maxima(plot, {.x = 9.0F, .y = 20.0F}), 3.0F, 7.0F, 0.0F, 9.0F);
}

TEST(TypedMaxima, GiveAFrameToAConstantSeries) {
    Plot plot = cover_plot(PlotNumber::LapseRate);
    plot.frame.y_min = plot.frame.y_max = 0.65F;
    EXPECT_TRUE(has_no_data(plot));
    EXPECT_FALSE(has_no_data(with_maxima(plot, {.x = {}, .y = 1.0F})));
}

TEST(TypedMaxima, DontCutTheWaterEquivalent) {
    Plot plot = cover_plot(PlotNumber::WaterEquivalent);
    plot.bars_total = 10.0F;
    expect_frame(with_maxima(plot, {.x = 8.0F, .y = 4.0F}), 1.0F, 11.0F, 0.0F, 10.0F);
    expect_frame(with_maxima(plot, {.x = 8.0F, .y = 14.0F}), 1.0F, 11.0F, 0.0F, 14.0F);
}

}  // namespace
}  // namespace nivora
