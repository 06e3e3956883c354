#include "plots/curve_walk.h"

#include "tests/plots/plot_values.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Points = std::vector<PlotPoint>;

const PlotFrame k_square = frame_of(0.0F, 10.0F, 0.0F, 10.0F);

CurveStrokes walk(Points points, const PlotFrame& frame = k_square) {
    return walk_curve(curve_of("Zone A", std::move(points)), frame);
}

TEST(CurveWalk, JoinsItsPoints) {
    const CurveStrokes strokes = walk(points_of({1, 2, 3}));
    EXPECT_THAT(strokes.lines, ElementsAre(points_of({1, 2, 3})));
    EXPECT_THAT(strokes.dots, IsEmpty());
    EXPECT_EQ(strokes.circles, points_of({1, 2, 3}));
}

TEST(CurveWalk, DrawsNoLineBetweenTwoZeros) {
    const CurveStrokes strokes = walk(points_of({3, 0, 0, 0, 2}));
    EXPECT_THAT(strokes.lines, ElementsAre(Points{{1, 3}, {2, 0}}, Points{{4, 0}, {5, 2}}));
    EXPECT_THAT(strokes.dots, ElementsAre(PlotPoint{3, 0}));
}

TEST(CurveWalk, ASeriesOfZerosLeavesNoLine) {
    const CurveStrokes strokes = walk(points_of({0, 0, 0}));
    EXPECT_THAT(strokes.lines, IsEmpty());
    EXPECT_EQ(strokes.dots, points_of({0, 0, 0}));
}

TEST(CurveWalk, StopsBeforeTheEdgeAndGoesOnWithADot) {
    // Nothing joins (2, 9), (4, 8) and the edge at 10.
    const CurveStrokes strokes = walk(points_of({1, 9, 11, 8, 12, 7, 6}));
    EXPECT_THAT(strokes.lines, ElementsAre(Points{{1, 1}, {2, 9}}, Points{{6, 7}, {7, 6}}));
    EXPECT_THAT(strokes.dots, ElementsAre(PlotPoint{4, 8}));
    EXPECT_EQ(strokes.circles.size(), 5U);
}

TEST(CurveWalk, LeavesAGapAtAMissingValue) {
    const CurveStrokes strokes = walk(points_of({1, 2, k_missing, 3, 4}));
    EXPECT_THAT(strokes.lines, ElementsAre(Points{{1, 1}, {2, 2}}, Points{{4, 3}, {5, 4}}));
    EXPECT_EQ(strokes.circles.size(), 4U);
}

TEST(CurveWalk, AZeroAfterAGapHasNoZeroBeforeIt) {
    const CurveStrokes strokes = walk(points_of({0, k_missing, 0, 1}));
    EXPECT_THAT(strokes.lines, ElementsAre(Points{{3, 0}, {4, 1}}));
    EXPECT_THAT(strokes.dots, ElementsAre(PlotPoint{1, 0}));
}

TEST(CurveWalk, HasNoDotAtAFirstPointThatLiesOutside) {
    const CurveStrokes strokes = walk(points_of({11, 2, 3}));
    EXPECT_THAT(strokes.dots, IsEmpty());
    EXPECT_THAT(strokes.lines, ElementsAre(Points{{2, 2}, {3, 3}}));
}

TEST(CurveWalk, BeginsAtTheFrame) {
    const CurveStrokes strokes = walk(points_of({1, 2, 3, 4, 5}), frame_of(3.0F, 4.0F, 0.0F, 10.0F));
    EXPECT_THAT(strokes.lines, ElementsAre(Points{{3, 3}, {4, 4}}));
    EXPECT_EQ(strokes.circles.size(), 2U);
}

TEST(CurveWalk, TakesPointsOnTheEdges) {
    const CurveStrokes strokes = walk({{0, 0}, {10, 10}});
    EXPECT_THAT(strokes.lines, ElementsAre(Points{{0, 0}, {10, 10}}));
}

TEST(CurveWalk, EndsWhereTheDatesBeginAnew) {
    const CurveStrokes strokes = walk({{1, 1}, {2, 2}, {1.9998F, 3}, {5, 5}});
    EXPECT_THAT(strokes.lines, ElementsAre(Points{{1, 1}, {2, 2}}));
}

TEST(CurveWalk, GoesOnAfterAStepBackOfLessThanATenThousandth) {
    const CurveStrokes strokes = walk({{1, 1}, {2, 2}, {1.99995F, 3}});
    EXPECT_EQ(strokes.lines.at(0).size(), 3U);
}

TEST(CurveWalk, AZeroXEndsNothing) {
    const CurveStrokes strokes = walk({{0, 1}, {0, 2}, {1, 3}});
    EXPECT_EQ(strokes.lines.at(0).size(), 3U);
}

TEST(CurveWalk, ASecondPointAtTheSamePlaceMakesALine) {
    const CurveStrokes strokes = walk({{1, 5}, {1, 5}});
    EXPECT_THAT(strokes.lines, ElementsAre(Points{{1, 5}, {1, 5}}));
    EXPECT_THAT(strokes.dots, IsEmpty());
}

TEST(CurveWalk, OfACurveBeforeOrBehindTheFrameIsEmpty) {
    const PlotFrame frame = frame_of(20.0F, 30.0F, 0.0F, 10.0F);
    EXPECT_THAT(walk(points_of({1, 2}), frame).circles, IsEmpty());
    EXPECT_THAT(walk({{31, 5}, {32, 5}}, frame).circles, IsEmpty());
    EXPECT_THAT(walk({}, frame).circles, IsEmpty());
}

Pen pen_of(PlotNumber number, CurveMode mode, const LineTable& lines, int line = 2) {
    PlotCurve curve = curve_of("Zone A", {}, line);
    curve.mode = mode;
    return curve_pen(plot_of(number, k_square), curve, lines);
}

TEST(CurvePen, IsThatOfTheLine) {
    LineTable lines = default_lines();
    lines[1].width = 3;
    const Pen pen = pen_of(PlotNumber::SnowCover, CurveMode::Own, lines);
    EXPECT_EQ(pen.colour, 128 * 256);  // line 2: 0, 128, 0
    EXPECT_EQ(pen.style, 1);
    EXPECT_EQ(pen.width, 3);
}

TEST(CurvePen, OfASecondPassIsOnePointWideInTheColourOfTheLine) {
    LineTable lines = default_lines();
    lines[1].width = 3;
    const Pen solid = pen_of(PlotNumber::CoverComparison, CurveMode::Solid, lines);
    EXPECT_EQ(solid.style, 0);
    EXPECT_EQ(solid.width, 1);
    EXPECT_EQ(solid.colour, 128 * 256);
    EXPECT_EQ(pen_of(PlotNumber::CoverComparison, CurveMode::Dotted, lines).style, 2);
}

TEST(CurvePen, OfTheWaterEquivalentIsThatOfTheFifthLineDrawnSolid) {
    LineTable lines = default_lines();
    lines[4].width = 2;
    const Pen pen = pen_of(PlotNumber::WaterEquivalent, CurveMode::Fifth, lines, 1);
    EXPECT_EQ(pen.colour, lines[4].colour);
    EXPECT_EQ(pen.style, 0);
    EXPECT_EQ(pen.width, 2);
}

TEST(CurvePen, OutlinesAFilledBandWithDashes) {
    LineTable lines = default_lines();
    EXPECT_EQ(pen_of(PlotNumber::RunoffComponents, CurveMode::Own, lines, 3).style, 1);
    lines[2].fill = k_no_fill;
    EXPECT_EQ(pen_of(PlotNumber::RunoffComponents, CurveMode::Own, lines, 3).style, 2);
}

TEST(DataPointRadius, IsAFourHundredthOfTheSurface) {
    EXPECT_EQ(data_point_radius({0.0F, 1.0F, 438.0F, -1.0F}), 1.095F);  // 438 / 200 x 0.5
}

}  // namespace
}  // namespace nivora
