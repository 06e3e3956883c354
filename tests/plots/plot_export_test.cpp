// The two text exports of a plot.

#include "plots/plot_export.h"

#include "plots/plot_view.h"
#include "tests/plots/plot_values.h"
#include "tests/support/plot_basin.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::Contains;
using testing::ElementsAre;

constexpr double k_now = 46086.5625;  // 2026-03-05, half past one

/// Everything after the head of the file.
std::vector<std::string> body(const Plot& plot) {
    auto lines = export_plot_text(plot, k_now);
    lines.erase(lines.begin(), lines.begin() + 9);
    return lines;
}

Plot covers() {
    Plot plot = plot_of(PlotNumber::SnowCover, frame_of(k_october_2001, k_october_2001 + 3.0F, 0.0F, 1.0F));
    plot.curves = {curve_of(
        "Zone A", {{k_october_2001, 1.0F}, {k_october_2001 + 1.0F, 0.25F}, {k_october_2001 + 2.0F, -0.5F}})};
    plot.curves[0].heading = "Zone A";
    plot.head.title = "Snow-covered Area (S)";
    plot.head.subtitle = "/basins/alder.mdb (wy2002)";
    plot.head.basin_name = "Alder";
    plot.head.export_zone_label = "All Zones";
    return plot;
}

TEST(PlotTextExport, BeginsWithNineLines) {
    auto lines = export_plot_text(covers(), k_now);
    lines.resize(9);
    EXPECT_THAT(lines, ElementsAre("Program    : Hollin Flow Model for Windows (Nivora)", "Version    : 1.10",
                                   "VersionDate: 3/30/2005", "Data Source: /basins/alder.mdb (wy2002)",
                                   "Run Date   : 3/5/2026 1:30:00 PM", "", "Basin      : Alder",
                                   "Zone       : All Zones", "Plot Name  : Snow-covered Area (S)"));
}

TEST(PlotTextExport, ARowHasTheDateAndANumberWithABlankForItsSign) {
    EXPECT_THAT(body(covers()),
                ElementsAre("", "Line#1: Zone A", "10/1/2001   1", "10/2/2001   0.25", "10/3/2001  -0.5"));
}

TEST(PlotTextExport, NumbersHaveSevenDigits) {
    Plot plot = covers();
    plot.curves[0].points = {{k_october_2001, 0.123456789F}, {k_october_2001 + 1.0F, 1234567.8F}};
    EXPECT_THAT(body(plot),
                ElementsAre("", "Line#1: Zone A", "10/1/2001   0.1234568", "10/2/2001   1234568"));
}

TEST(PlotTextExport, AMissingValueHasNoRow) {
    Plot plot = covers();
    plot.curves[0].points[1].y = k_missing;
    EXPECT_THAT(body(plot), ElementsAre("", "Line#1: Zone A", "10/1/2001   1", "10/3/2001  -0.5"));
}

TEST(PlotTextExport, AZoomCutsByXAlone) {
    // The second and third value are below the rectangle.
    const auto zoomed = zoom(covers(), {.x1 = 37166.0, .x2 = 37167.0, .y1 = 0.2, .y2 = 0.9});
    EXPECT_THAT(body(std::get<Plot>(zoomed)),
                ElementsAre("", "Line#1: Zone A", "10/2/2001   0.25", "10/3/2001  -0.5"));
}

TEST(PlotTextExport, APlotWithoutARangeIsExported) {
    Plot plot = covers();
    plot.frame.y_max = plot.frame.y_min;
    EXPECT_EQ(body(plot).size(), 5U);
}

TEST(PlotTextExport, EachCurveHasItsNumberAndHeading) {
    Plot plot = covers();
    plot.curves.push_back(plot.curves[0]);
    plot.curves[1].heading = "Zone B, Minimum Daily T (°C)";
    plot.legend = {{.text = "Zone A"}, {.text = "Total (3. cm) ", .sample = false}};
    EXPECT_THAT(body(plot), Contains("Line#2: Zone B, Minimum Daily T (°C)"));
    EXPECT_EQ(body(plot).size(), 10U);  // "Total" has no rows
}

TEST(PlotTextExport, DepthsStandBeforeColumnFifteen) {
    for (const PlotNumber number :
         {PlotNumber::DepletionOverMelt, PlotNumber::DepletionCutoff, PlotNumber::DepletionComparison}) {
        Plot plot = plot_of(number, frame_of(0.0F, 50.0F, 0.0F, 1.0F));
        plot.curves = {curve_of("MDC_incl", {{0.0F, 1.0F}, {12.5F, 0.5F}})};
        plot.curves[0].heading = "MDC_incl (none) ";
        EXPECT_THAT(body(plot),
                    ElementsAre("", "Line#1: MDC_incl (none) ", " 0             1", " 12.5          0.5"));
    }
}

TEST(PlotTextExport, TheComparisonOfCoversHasBothInARow) {
    Plot plot =
        plot_of(PlotNumber::CoverComparison, frame_of(k_october_2001, k_october_2001 + 2.0F, 0.0F, 1.0F));
    const auto zone = [](int number, int pass, float first, float second) {
        PlotCurve curve =
            curve_of("Zone", {{k_october_2001, first}, {k_october_2001 + 1.0F, second}}, number, pass);
        curve.zone = number;
        return curve;
    };
    plot.curves = {zone(1, 1, 1.0F, 0.5F), zone(2, 1, 0.75F, k_missing), zone(1, 2, 0.875F, 0.0F),
                   zone(2, 2, 1.0F, 1.0F)};
    EXPECT_THAT(body(plot),
                ElementsAre("", "Zone#1    SCApresent    SCAchanged", "10/1/2001      1            0.875",
                            "10/2/2001      0.5          0", "", "Zone#2    SCApresent    SCAchanged",
                            "10/1/2001      0.75         1"));
}

TEST(FlowFile, HasTheComputedDischargeOfZoneOne) {
    PlotBasin small{2, 3};
    small.write_results([](SimResults& results, std::size_t row, int zone, int day) {
        results.DailyQ[row] =
            zone == 1 ? std::array{58.25, 0.5, 12.0}.at(static_cast<std::size_t>(day - 1)) : 99.0;
    });
    BasinDatabase database = small.file.open(Access::ReadOnly);
    EXPECT_THAT(export_slurp_file(database, small.basin, small.run),
                ElementsAre("2001 10 01 58.25", "2001 10 02 0.5", "2001 10 03 12"));
}

TEST(FlowFile, ADayWithoutADischargeHasNoLine) {
    PlotBasin small{1, 3};
    small.write_results([](SimResults& results, std::size_t row, int, int day) {
        if (day != 2) results.DailyQ[row] = 1.0;
    });
    BasinDatabase database = small.file.open(Access::ReadOnly);
    EXPECT_THAT(export_slurp_file(database, small.basin, small.run),
                ElementsAre("2001 10 01 1", "2001 10 03 1"));
}

TEST(FlowFile, RoundsATieToEven) {
    PlotBasin small{1, 3};
    small.write_results([](SimResults& results, std::size_t row, int, int day) {
        results.DailyQ[row] = std::array{0.125, 0.375, -0.001}.at(static_cast<std::size_t>(day - 1));
    });
    BasinDatabase database = small.file.open(Access::ReadOnly);
    EXPECT_THAT(export_slurp_file(database, small.basin, small.run),
                ElementsAre("2001 10 01 0.12", "2001 10 02 0.38", "2001 10 03 0"));
}

TEST(FlowFile, HoldsCubicMetresInEnglishUnits) {
    PlotBasin small{1, 1};
    small.basin.Units_Code = Units::English;
    small.write_results([](SimResults& results, std::size_t row, int, int) { results.DailyQ[row] = 1000.0; });
    BasinDatabase database = small.file.open(Access::ReadOnly);
    EXPECT_THAT(export_slurp_file(database, small.basin, small.run), ElementsAre("2001 10 01 28.32"));
}

TEST(FlowFile, CoversThePeriodOfAClimateStep) {
    PlotBasin small{1, 4};
    small.write_results(
        [](SimResults& results, std::size_t row, int, int day) { results.DailyQ[row] = day; });
    small.take_step(6, 2);
    BasinDatabase database = small.file.open(Access::ReadOnly);
    EXPECT_THAT(export_slurp_file(database, small.basin, small.run),
                ElementsAre("2001 10 03 3", "2001 10 04 4"));
}

}  // namespace
}  // namespace nivora
