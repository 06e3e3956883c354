#include "plots/zoom_drag.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

constexpr PlotNumber k_days = PlotNumber::SnowCover;

void expect_rectangle(const std::optional<WorldRectangle>& rectangle, double x1, double x2, double y1,
                      double y2) {
    ASSERT_TRUE(rectangle);
    EXPECT_EQ(rectangle->x1, x1);
    EXPECT_EQ(rectangle->x2, x2);
    EXPECT_EQ(rectangle->y1, y1);
    EXPECT_EQ(rectangle->y2, y2);
}

ZoomDrag pressed(const WorldPoint& at = {10.0, 1.0}) {
    ZoomDrag drag;
    drag.arm();
    drag.press(k_days, at);
    return drag;
}

TEST(ZoomDrag, NeedsToBeArmed) {
    ZoomDrag drag;
    drag.press(k_days, {10.0, 1.0});
    EXPECT_FALSE(drag.dragging());
    EXPECT_FALSE(drag.move({20.0, 5.0}));
    EXPECT_FALSE(drag.release(k_days, {20.0, 5.0}));
}

TEST(ZoomDrag, GoesThroughItsStages) {
    ZoomDrag drag;
    drag.arm();
    EXPECT_TRUE(drag.armed());
    EXPECT_EQ(drag.stage(), 0);
    EXPECT_FALSE(drag.move({5.0, 5.0}));  // over the surface, before the button goes down
    EXPECT_EQ(drag.stage(), 0);
    drag.press(k_days, {10.4, 1.5});
    EXPECT_EQ(drag.stage(), 1);
    EXPECT_FALSE(drag.band());
    expect_rectangle(drag.move({20.3, 5.5}), 10.0, 20.3, 1.5, 5.5);
    EXPECT_EQ(drag.stage(), 2);
    expect_rectangle(drag.move({21.3, 6.5}), 10.0, 21.3, 1.5, 6.5);
    expect_rectangle(drag.release(k_days, {21.6, 7.0}), 10.0, 22.0, 1.5, 7.0);
    EXPECT_FALSE(drag.armed());
    EXPECT_EQ(drag.stage(), 0);
    EXPECT_FALSE(drag.band());
}

TEST(ZoomDrag, RoundsDaysToEvenAtAHalfButNotTheDepthsOfPlot14) {
    ZoomDrag drag = pressed({2.5, 0.0});
    expect_rectangle(drag.release(k_days, {7.5, 9.0}), 2.0, 8.0, 0.0, 9.0);
    drag.arm();
    drag.press(PlotNumber::DepletionOverMelt, {2.5, 0.0});
    expect_rectangle(drag.release(PlotNumber::DepletionOverMelt, {7.5, 9.0}), 2.5, 7.5, 0.0, 9.0);
    drag.arm();
    drag.press(PlotNumber::DepletionCutoff, {2.5, 0.0});
    expect_rectangle(drag.release(PlotNumber::DepletionCutoff, {7.5, 9.0}), 2.0, 8.0, 0.0, 9.0);
}

TEST(ZoomDrag, WithoutAreaEndsWithoutAZoom) {
    for (const WorldPoint& end : {WorldPoint{10.0, 5.0}, WorldPoint{20.0, 1.0}, WorldPoint{10.4, 5.0}}) {
        ZoomDrag drag = pressed();
        drag.move(end);
        EXPECT_FALSE(drag.release(k_days, end));
        EXPECT_FALSE(drag.armed());
    }
}

TEST(ZoomDrag, MayGoBackwardsAndLeaveTheSurface) {
    ZoomDrag drag = pressed();
    expect_rectangle(drag.release(k_days, {-500.0, -3.0}), 10.0, -500.0, 1.0, -3.0);
}

TEST(ZoomDrag, EscapeDisarmsAndEndsADrag) {
    ZoomDrag drag;
    EXPECT_FALSE(drag.escape());
    drag.arm();
    EXPECT_TRUE(drag.escape());
    EXPECT_FALSE(drag.armed());
    drag = pressed();
    drag.move({20.0, 5.0});
    EXPECT_TRUE(drag.escape());
    EXPECT_FALSE(drag.band());
    EXPECT_FALSE(drag.release(k_days, {20.0, 5.0}));
}

TEST(ZoomDrag, AnInterruptionEndsOnlyADrag) {
    ZoomDrag drag;
    drag.arm();
    EXPECT_FALSE(drag.interrupt());
    EXPECT_TRUE(drag.armed());
    drag = pressed();
    EXPECT_TRUE(drag.interrupt());
    EXPECT_FALSE(drag.armed());
    EXPECT_FALSE(drag.release(k_days, {20.0, 5.0}));
}

TEST(ZoomDrag, ArmedAgainBeginsAnew) {
    ZoomDrag drag = pressed();
    drag.arm();
    EXPECT_FALSE(drag.dragging());
    drag.press(k_days, {30.0, 2.0});
    expect_rectangle(drag.move({31.0, 3.0}), 30.0, 31.0, 2.0, 3.0);
}

}  // namespace
}  // namespace nivora
