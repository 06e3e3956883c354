#include "tests/support/plot_basin.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsNan;

/// A cover of 1 minus an eighth a day and a sixteenth a further zone, and half of it in the changed climate.
void fill_covers(PlotBasin& basin) {
    basin.write_results([](SimResults& t, std::size_t row, int zone, int day) {
        t.SCA[row] = 1.0F - 0.125F * static_cast<float>(day) - 0.0625F * static_cast<float>(zone - 1);
        t.SCAclimWAMA[row] = 0.5F * t.SCA[row];
    });
    basin.take_step(6, 1);
}

TEST(CoverComparison, ShowsTheCoverBeforeAndAfterTheChange) {
    PlotBasin basin{2, 3};
    fill_covers(basin);
    const Plot plot = basin.plot(PlotNumber::CoverComparison);
    EXPECT_EQ(plot.y_label, "S");
    ASSERT_EQ(plot.curves.size(), 4U);
    EXPECT_EQ(plot.curves[0].name, "Zone A");
    EXPECT_EQ(plot.curves[0].pass, 1);
    EXPECT_EQ(plot.curves[0].mode, CurveMode::Solid);
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(0.75F, 0.625F));
    EXPECT_EQ(plot.curves[3].name, "Zone B");
    EXPECT_EQ(plot.curves[3].pass, 2);
    EXPECT_EQ(plot.curves[3].line, 2);
    EXPECT_EQ(plot.curves[3].mode, CurveMode::Dotted);
    EXPECT_THAT(ys_of(plot.curves[3]), ElementsAre(0.34375F, 0.28125F));  // halves of 0.6875 and 0.5625
}

TEST(CoverComparison, HasTheFrameOfThePresentCover) {
    PlotBasin basin{2, 3};
    fill_covers(basin);
    basin.file.change("UPDATE SimResults SET SCAclimWAMA = 2");
    const PlotFrame frame = basin.plot(PlotNumber::CoverComparison).frame;
    EXPECT_EQ(frame.y_min, 0.5625F);
    EXPECT_EQ(frame.y_max, 0.75F);
    EXPECT_EQ(frame.x_min, basin.x(2));
    EXPECT_EQ(frame.x_max, basin.x(4));
}

TEST(CoverComparison, HasOneLegendRowForOneZone) {
    PlotBasin basin{2, 3};
    fill_covers(basin);
    EXPECT_EQ(basin.plot(PlotNumber::CoverComparison).frame.legend_rows, 2.0F);
    EXPECT_EQ(basin.plot(PlotNumber::CoverComparison, 2).frame.legend_rows, 1.0F);
    PlotBasin one_zone{1, 3};
    fill_covers(one_zone);
    EXPECT_EQ(one_zone.plot(PlotNumber::CoverComparison, 2).frame.legend_rows, 1.0F);
}

TEST(CoverComparison, AMissingCoverIsAGap) {
    PlotBasin basin{1, 3};
    fill_covers(basin);
    basin.file.change("UPDATE SimResults SET SCAclimWAMA = NULL WHERE Date = " +
                      std::to_string(basin.day(2)));
    EXPECT_THAT(ys_of(basin.plot(PlotNumber::CoverComparison).curves[1]), ElementsAre(IsNan(), 0.3125F));
}

/// The points of a plot whose step has a number of days; nothing if it is refused.
std::optional<std::size_t> points_of_days(int zones, int days, int zone) {
    PlotBasin basin{zones, days + 1};
    basin.write_results([](SimResults& t, std::size_t row, int, int) {
        t.SCA[row] = 0.5F;
        t.SCAclimWAMA[row] = 0.25F;
    });
    basin.take_step(6, 1);
    const PlotOutcome outcome = basin.select(PlotNumber::CoverComparison, zone);
    const auto* plot = std::get_if<Plot>(&outcome);
    if (plot == nullptr) return std::nullopt;
    return plot->curves.at(0).points.size();
}

TEST(CoverComparison, HoldsAYearOfPointsAZone) {
    EXPECT_EQ(points_of_days(1, 366, 1), 366U);
    EXPECT_EQ(points_of_days(1, 367, 1), std::nullopt);
    EXPECT_EQ(points_of_days(2, 367, 1), std::nullopt);
    EXPECT_EQ(points_of_days(2, 732, 3), 732U);  // 366 for each of the two zones, in one curve
    EXPECT_EQ(points_of_days(2, 733, 3), std::nullopt);
}

}  // namespace
}  // namespace nivora
