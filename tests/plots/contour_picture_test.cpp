// Lines of equal value: where they run, how they are named, what is left out.
#include "plots/contour_picture.h"

#include "base/calendar.h"
#include "base/single.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace nivora {
namespace {

using testing::DoubleEq;
using testing::ElementsAre;
using testing::HasSubstr;

/// Keeps what is drawn; a character is 6 points wide.
class RecordedSurface : public Surface {
public:
    struct Line {
        std::vector<SurfacePoint> points;
        Pen pen;
    };

    [[nodiscard]] SurfaceSize size() const override { return {1000.0, 750.0}; }
    [[nodiscard]] SurfaceSize text_size(std::string_view text, const PlotFont&) const override {
        return {6.0 * static_cast<double>(text.size()), 14.0};
    }
    void line(std::span<const SurfacePoint> points, const Pen& pen) override {
        lines.push_back({{points.begin(), points.end()}, pen});
    }
    void text(SurfacePoint, std::string_view text, const PlotFont&, Colour) override {
        texts.emplace_back(text);
    }
    void rectangle(const SurfaceRectangle&, const std::optional<Pen>&, const std::optional<Fill>&) override {}
    void circle(SurfacePoint centre, double, const Pen&) override { circles.push_back(centre); }
    void dot(SurfacePoint, Colour) override {}
    void fill_band(std::span<const SurfacePoint>, const Fill&) override {}

    std::vector<Line> lines;
    std::vector<std::string> texts;
    std::vector<SurfacePoint> circles;
};

ContourPicture contours_of(std::vector<double> x, std::vector<double> y, std::vector<double> values) {
    return {.title = "Runoff",
            .subtitle = "a basin",
            .x = {.name = "x axis", .places = std::move(x)},
            .y = {.name = "y axis", .places = std::move(y)},
            .values = std::move(values),
            .kind = ContourValues::Numbers,
            .marked_value = {},
            .marked_name = "present climate",
            .marked_point = {}};
}

TEST(ContourLines, APlaneHasAStraightLine) {
    // The value is x + y.
    const ContourPicture plane = contours_of({0, 1, 2}, {0, 1}, {0, 1, 2, 1, 2, 3});
    const auto lines = contour_lines(plane, 1.5);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].value, 1.5);
    ASSERT_EQ(lines[0].points.size(), 3U);
    for (const SurfacePoint& point : lines[0].points) EXPECT_DOUBLE_EQ(point.x + point.y, 1.5);
    EXPECT_TRUE(contour_lines(plane, 3.5).empty());
    EXPECT_TRUE(contour_lines(plane, -0.5).empty());
}

TEST(ContourLines, AHillHasAClosedLine) {
    const auto lines = contour_lines(contours_of({0, 1, 2}, {0, 1, 2}, {0, 0, 0, 0, 4, 0, 0, 0, 0}), 1.0);
    ASSERT_EQ(lines.size(), 1U);
    ASSERT_EQ(lines[0].points.size(), 5U);
    EXPECT_EQ(lines[0].points.front().x, lines[0].points.back().x);
    EXPECT_EQ(lines[0].points.front().y, lines[0].points.back().y);
    for (const SurfacePoint& point : lines[0].points)
        EXPECT_DOUBLE_EQ(std::abs(point.x - 1.0) + std::abs(point.y - 1.0), 0.75)
            << "a quarter of the way up";
}

TEST(ContourLines, InASaddleTheMiddleDecides) {
    // High at two opposite corners; the middle is 3, above the level 2 and below the level 4.
    const ContourPicture saddle = contours_of({0, 1}, {0, 1}, {6, 0, 0, 6});
    const auto low = contour_lines(saddle, 2.0);
    ASSERT_EQ(low.size(), 2U);
    for (const ContourLine& line : low) {
        ASSERT_EQ(line.points.size(), 2U);
        const double side = line.points[0].x - line.points[0].y;
        EXPECT_GT(side * (line.points[1].x - line.points[1].y), 0.0) << "it cuts off one of the low corners";
    }
    const auto high = contour_lines(saddle, 4.0);
    ASSERT_EQ(high.size(), 2U);
    for (const ContourLine& line : high) {
        const double side = line.points[0].x + line.points[0].y - 1.0;
        EXPECT_GT(side * (line.points[1].x + line.points[1].y - 1.0), 0.0) << "and here one of the high ones";
    }
}

TEST(ContourLines, ACellWithAMissingValueHasNone) {
    ContourPicture picture = contours_of({0, 1, 2}, {0, 1}, {0, 1, 2, 0, 1, as_double(k_missing)});
    EXPECT_EQ(contour_lines(picture, 0.5).size(), 1U);
    EXPECT_TRUE(contour_lines(picture, 1.5).empty());
}

TEST(ContourLevels, AreRound) {
    EXPECT_THAT(contour_levels(0.7, 4.2, ContourValues::Numbers),
                ElementsAre(DoubleEq(1.0), DoubleEq(1.5), DoubleEq(2.0), DoubleEq(2.5), DoubleEq(3.0),
                            DoubleEq(3.5), DoubleEq(4.0)));
    EXPECT_THAT(contour_levels(100.0, 112.0, ContourValues::Days),
                ElementsAre(100, 102, 104, 106, 108, 110, 112));
    EXPECT_TRUE(contour_levels(3.0, 3.0, ContourValues::Numbers).empty());
}

TEST(DrawContours, NamesLinesAndTicks) {
    ContourPicture plane = contours_of({0, 1, 2}, {0.5, 1.0}, {0, 10, 20, 10, 20, 30});
    plane.marked_value = 14.0;
    plane.marked_point = SurfacePoint{0.0, 1.0};
    RecordedSurface surface;
    draw_contours(surface, plane);
    for (const char* text : {"Runoff", "a basin", "x axis", "y axis", "10", "15", "20", "0.5", "1.5"})
        EXPECT_THAT(surface.texts, testing::Contains(text));
    EXPECT_THAT(surface.texts.back(), testing::StrEq("thick line: present climate, 14; circle: no change"));
    EXPECT_EQ(std::ranges::count_if(surface.lines, [](const auto& line) { return line.pen.width == 3; }), 1);
    ASSERT_EQ(surface.circles.size(), 1U);
    EXPECT_DOUBLE_EQ(surface.circles[0].x, 90.0);
    EXPECT_DOUBLE_EQ(surface.circles[0].y, 70.0);
}

TEST(DrawContours, AMarkedValueThatNoPlaceHasIsNamedWithoutALine) {
    ContourPicture plane = contours_of({0, 1, 2}, {0.5, 1.0}, {0, 10, 20, 10, 20, 30});
    plane.marked_value = 31.0;
    RecordedSurface surface;
    draw_contours(surface, plane);
    EXPECT_THAT(surface.texts.back(), testing::StrEq("present climate: 31, which no line has"));
    EXPECT_EQ(std::ranges::count_if(surface.lines, [](const auto& line) { return line.pen.width == 3; }), 0);
}

TEST(DrawContours, AnAxisThatEndsWithASingleHasATickAtItsEnd) {
    const ContourPicture plane = contours_of({0, 1}, {as_double(0.7F), as_double(1.3F)}, {0, 10, 20, 30});
    RecordedSurface surface;
    draw_contours(surface, plane);
    for (const char* text : {"0.7", "1", "1.3"}) EXPECT_THAT(surface.texts, testing::Contains(text));
}

TEST(DrawContours, DaysAreNamedByTheirDate) {
    const double day = static_cast<double>(*day_count({1998, 4, 1}));
    ContourPicture days = contours_of({0, 5}, {0, 1}, {day, day + 40, day, day + 40});
    days.kind = ContourValues::Days;
    days.marked_value = day + 9;
    RecordedSurface surface;
    draw_contours(surface, days);
    EXPECT_THAT(surface.texts, testing::Contains(HasSubstr("May ")));
    EXPECT_THAT(surface.texts.back(), HasSubstr("present climate, Apr 10"));
}

TEST(DrawContours, WithOneRowItIsACurve) {
    ContourPicture row = contours_of({0, 1, 2, 3}, {1}, {5, 6, as_double(k_missing), 9});
    row.marked_value = 5.0;
    ASSERT_TRUE(can_be_drawn(row));
    RecordedSurface surface;
    draw_contours(surface, row);
    const auto curves =
        std::ranges::count_if(surface.lines, [](const auto& line) { return line.pen.width == 2; });
    EXPECT_EQ(curves, 1) << "a gap for the missing value, and no curve through one point";
    EXPECT_THAT(surface.texts.back(), HasSubstr("dashed line: present climate, 5"));
    EXPECT_FALSE(can_be_drawn(contours_of({0}, {1}, {5})));
    EXPECT_FALSE(can_be_drawn(contours_of({0, 1}, {1}, {as_double(k_missing), as_double(k_missing)})));
}

}  // namespace
}  // namespace nivora
