#include "paint/line_shapes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace nivora {
namespace {

using testing::AllOf;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

auto at(double x, double y) {
    return AllOf(Field(&SurfacePoint::x, DoubleNear(x, 1e-9)), Field(&SurfacePoint::y, DoubleNear(y, 1e-9)));
}

auto from_to(SurfacePoint from, SurfacePoint to) {
    return AllOf(Field(&HatchLine::from, at(from.x, from.y)), Field(&HatchLine::to, at(to.x, to.y)));
}

std::vector<SurfacePoint> square(double left, double top, double side) {
    return {{left, top}, {left + side, top}, {left + side, top + side}, {left, top + side}};
}

TEST(Dashes, OnlyASolidLineHasNone) {
    EXPECT_THAT(dashes_of(0), IsEmpty());
    EXPECT_THAT(dashes_of(5), IsEmpty());
    EXPECT_THAT(dashes_of(-1), IsEmpty());
    for (int style = 1; style <= 4; ++style) {
        const auto dashes = dashes_of(style);
        ASSERT_FALSE(dashes.empty()) << style;
        EXPECT_EQ(dashes.size() % 2, 0U) << "strokes and gaps come in pairs, style " << style;
    }
    EXPECT_EQ(dashes_of(1).size(), 2U);
    EXPECT_EQ(dashes_of(2).size(), 2U);
    EXPECT_EQ(dashes_of(3).size(), 4U);
    EXPECT_EQ(dashes_of(4).size(), 6U);
}

TEST(ThinnedLine, UpToFourPointsOfAColumnAreKept) {
    const QPolygonF points{{{1.0, 5.0}, {1.2, 6.0}, {1.4, 4.0}, {1.9, 5.5}, {2.0, 7.0}}};
    EXPECT_EQ(thinned(points, 1.0), points);
    EXPECT_EQ(thinned({}, 1.0), QPolygonF{});
}

TEST(ThinnedLine, MorePointsOfAColumnBecomeAStrokeFromTheHighestToTheLowest) {
    const QPolygonF points{
        {{1.0, 5.0}, {1.1, 6.0}, {1.2, 9.0}, {1.3, 7.0}, {1.4, 2.0}, {1.5, 3.0}, {1.6, 4.0}}};
    // The first point, 5, is nearer to 2 than to 9.
    EXPECT_EQ(thinned(points, 1.0), (QPolygonF{QList<QPointF>{{1.5, 2.0}, {1.5, 9.0}}}));
    // With two columns a unit, those from 1.5 on are in another one, and the others in the one from 1 to 1.5.
    EXPECT_EQ(thinned(points, 2.0), (QPolygonF{{{1.25, 2.0}, {1.25, 9.0}, {1.5, 3.0}, {1.6, 4.0}}}));
}

TEST(ThinnedLine, AStrokeBeginsAtTheEndThatIsNearerToThePointBefore) {
    const QPolygonF points{
        {{0.5, 8.0}, {1.0, 2.0}, {1.2, 9.0}, {1.3, 5.0}, {1.4, 3.0}, {1.5, 4.0}, {2.5, 1.0}}};
    EXPECT_EQ(thinned(points, 1.0), (QPolygonF{{{0.5, 8.0}, {1.5, 9.0}, {1.5, 2.0}, {2.5, 1.0}}}));
}

TEST(ThinnedLine, FiftyYearsOfDaysHaveTwoPointsAColumnAndTheSameExtremes) {
    QPolygonF points;
    for (int day = 0; day < 18250; ++day)
        points.append(QPointF(day * 1300.0 / 18250.0, 400.0 - 300.0 * std::sin(day / 58.0) + day % 7));
    const QPolygonF kept = thinned(points, 1.0);
    EXPECT_EQ(kept.size(), 2 * 1300);
    EXPECT_EQ(kept.boundingRect().top(), points.boundingRect().top());
    EXPECT_EQ(kept.boundingRect().bottom(), points.boundingRect().bottom());
    EXPECT_TRUE(std::is_sorted(kept.begin(), kept.end(), [](QPointF a, QPointF b) { return a.x() < b.x(); }));
}

TEST(Hatching, LinesStandAtMultiplesOfTheirDistance) {
    ASSERT_DOUBLE_EQ(k_hatch_distance, 6.0);
    EXPECT_THAT(hatch_lines(square(1.0, 2.0, 12.0), 2),
                ElementsAre(from_to({1.0, 6.0}, {13.0, 6.0}), from_to({1.0, 12.0}, {13.0, 12.0})));
    // The direction of a line does not count; vertical ones run upward.
    EXPECT_THAT(hatch_lines(square(1.0, 2.0, 12.0), 3),
                ElementsAre(from_to({6.0, 14.0}, {6.0, 2.0}), from_to({12.0, 14.0}, {12.0, 2.0})));
}

TEST(Hatching, AnUpwardDiagonalRisesToTheRight) {
    const auto upward = hatch_lines(square(0.0, 0.0, 20.0), 4);
    ASSERT_FALSE(upward.empty());
    for (const HatchLine& line : upward) {
        // y grows downward: the sum of both is the same along the line, a multiple of 6 times the root of 2.
        EXPECT_NEAR(line.from.x + line.from.y, line.to.x + line.to.y, 1e-9);
        const double distance = (line.from.x + line.from.y) / std::sqrt(2.0) / 6.0;
        EXPECT_NEAR(distance, std::round(distance), 1e-9);
    }
    const auto downward = hatch_lines(square(0.0, 0.0, 20.0), 5);
    ASSERT_FALSE(downward.empty());
    for (const HatchLine& line : downward)
        EXPECT_NEAR(line.from.x - line.from.y, line.to.x - line.to.y, 1e-9);
}

TEST(Hatching, CrossesHaveBothDirections) {
    const auto outline = square(0.5, 0.5, 30.0);
    EXPECT_EQ(hatch_lines(outline, 6).size(),
              hatch_lines(outline, 2).size() + hatch_lines(outline, 3).size());
    EXPECT_EQ(hatch_lines(outline, 7).size(),
              hatch_lines(outline, 4).size() + hatch_lines(outline, 5).size());
}

TEST(Hatching, SolidAndTransparentFillsHaveNoLines) {
    for (const int style : {0, 1, 8, -1})
        EXPECT_THAT(hatch_lines(square(0.0, 0.0, 50.0), style), IsEmpty()) << style;
}

// A band that closes to nothing between x = 10 and x = 20 and opens again.
TEST(Hatching, AnOutlineThatTouchesItselfIsFilledOnBothSides) {
    const std::vector<SurfacePoint> outline{{0.0, 0.0},   {10.0, 6.0}, {20.0, 6.0}, {30.0, 0.0},
                                            {30.0, 12.0}, {20.0, 6.0}, {10.0, 6.0}, {0.0, 12.0}};
    double covered = 0.0;
    for (const HatchLine& line : hatch_lines(outline, 3)) {
        EXPECT_TRUE(line.from.x < 10.0 || line.from.x > 20.0) << line.from.x;
        covered += std::abs(line.to.y - line.from.y);
    }
    // At x = 0 and 6 the left part is 12 and 4.8 high; at x = 24 the right part is 4.8 high.
    EXPECT_NEAR(covered, 12.0 + 4.8 + 4.8, 1e-9);
}

TEST(Hatching, AnOutlineWithoutAreaOrWithoutNumbersHasNoLines) {
    EXPECT_THAT(hatch_lines({}, 6), IsEmpty());
    EXPECT_THAT(hatch_lines(std::vector<SurfacePoint>{{0.0, 6.0}, {30.0, 6.0}}, 6), IsEmpty());
    EXPECT_THAT(hatch_lines(std::vector<SurfacePoint>{{0.0, NAN}, {30.0, 6.0}, {30.0, 20.0}}, 6), IsEmpty());
}

}  // namespace
}  // namespace nivora
