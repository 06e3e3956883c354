#include "plots/draw_plot.h"

#include "plots/draw_data.h"
#include "plots/legend.h"
#include "tests/plots/plot_values.h"
#include "tests/support/recording_surface.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

// On this surface a frame of 100 by 40 has 10 points a unit and lies from 100, 50 to 1100, 450.
constexpr SurfaceSize k_size{1200.0, 480.0};
const PlotFrame k_frame = frame_of(37165.0F, 37265.0F, 0.0F, 40.0F);

Plot melt_plot(PlotNumber number = PlotNumber::PotentialMelt) {
    Plot plot = plot_of(number, k_frame);
    plot.head.title = "Potential Melt Depth (An*T)";
    plot.head.subtitle = "/basins/sample.mdb (Wet)";
    plot.head.scenario_line = "Wet";
    plot.head.zone_label = "Zone A";
    plot.head.period = PeriodLine::ToDayBefore;
    plot.y_label = " (cm)";
    plot.curves = {curve_of("Zone A", {{37165, 0}, {37175, 10}, {37185, 30}})};
    name_curves(plot);
    return plot;
}

std::vector<std::string> drawn(const Plot& plot, std::string_view word, const DrawOptions& options = {}) {
    RecordingSurface surface{k_size};
    draw(surface, plot, options);
    return surface.calls(word);
}

TEST(PlotDrawing, BeginsWithAWhiteSurface) {
    RecordingSurface surface{k_size};
    draw(surface, melt_plot(), {});
    EXPECT_EQ(surface.calls().front(), "rectangle 0.0,0.0 1200.0x480.0 fill #FFFFFF style 0");
}

TEST(PlotDrawing, HasAFrameWithoutTopAndRightEdge) {
    const std::vector<std::string> lines = drawn(melt_plot(), "line", {.grid = GridMode::None});
    EXPECT_THAT(lines, Contains("line pen #000000 style 0 width 1: 100.0,50.0 100.0,450.0"));
    EXPECT_THAT(lines, Contains("line pen #000000 style 0 width 1: 100.0,450.0 1100.0,450.0"));
    EXPECT_THAT(lines, Not(Contains(HasSubstr("1100.0,50.0"))));
}

TEST(PlotDrawing, DrawsACurveInTheColourOfItsLine) {
    EXPECT_THAT(drawn(melt_plot(), "line"),
                Contains("line pen #800000 style 0 width 1: 100.0,450.0 200.0,350.0 300.0,150.0"));
}

TEST(PlotDrawing, DrawsALonePointAsADot) {
    Plot plot = melt_plot();
    plot.curves[0].points = {{37175, 10}};
    EXPECT_THAT(drawn(plot, "dot"), ElementsAre("dot 200.0,350.0 #800000"));
}

TEST(PlotDrawing, MarksDataPointsWithCirclesOfAFourHundredthOfTheWidth) {
    EXPECT_THAT(drawn(melt_plot(), "circle"), IsEmpty());
    // 1200 / 400 = 3
    EXPECT_THAT(drawn(melt_plot(), "circle", {.data_points = true}),
                ElementsAre("circle 100.0,450.0 radius 3.0 pen #800000 style 0 width 1",
                            "circle 200.0,350.0 radius 3.0 pen #800000 style 0 width 1",
                            "circle 300.0,150.0 radius 3.0 pen #800000 style 0 width 1"));
}

TEST(PlotDrawing, HasDottedGridLinesOfTheChosenMode) {
    // Days 0, 16 ... 96 and y 0, 5 ... 40
    const auto dotted = [](GridMode grid) {
        std::size_t count = 0;
        for (const std::string& line : drawn(melt_plot(), "line", {.grid = grid}))
            count += line.find("pen #000000 style 2 width 1") != std::string::npos ? 1 : 0;
        return count;
    };
    EXPECT_EQ(dotted(GridMode::Vertical), 7U);
    EXPECT_EQ(dotted(GridMode::Horizontal), 9U);
    EXPECT_EQ(dotted(GridMode::Both), 16U);
    EXPECT_EQ(dotted(GridMode::None), 0U);
    EXPECT_THAT(drawn(melt_plot(), "line"),
                Contains("line pen #000000 style 2 width 1: 260.0,450.0 260.0,50.0"));
}

TEST(PlotDrawing, HasTicksBelowTheXAxisAndDarkYellowOnesLeftOfTheYAxis) {
    const std::vector<std::string> lines = drawn(melt_plot(), "line");
    // A line of the font of 7.5 points is 10 high; a quarter of it is 2.5. 1000 / 150 = 6.7
    EXPECT_THAT(lines, Contains("line pen #000000 style 0 width 1: 260.0,450.0 260.0,452.5"));
    EXPECT_THAT(lines, Contains("line pen #808000 style 0 width 1: 100.0,400.0 93.3,400.0"));
}

TEST(PlotDrawing, CentresTheLabelsOfDaysUnderTheirTicks) {
    // "10/17/01" has 8 letters of 6: 260 - 24 = 236
    EXPECT_THAT(drawn(melt_plot(), "text"), Contains("text 236.0,452.5 7.5 bold #000000 \"10/17/01\""));
}

TEST(PlotDrawing, PutsTheLabelsOfTheYAxisBeforeItsTicks) {
    // "10  " has 4 letters and ends at the axis: 100 - 24 = 76. Its digits end at 88, before the tick, which
    // reaches to 93.3. 350 - 10 / 2 = 345
    EXPECT_THAT(drawn(melt_plot(), "text"), Contains("text 76.0,345.0 7.5 bold #000000 \"10  \""));
    Plot plot = melt_plot();
    plot.head = {};
    RecordingSurface wide{{3000.0, 480.0}};
    draw(wide, plot, {});
    // The frame begins at 250, its ticks are 2500 / 150 = 16.7 long: 250 - 16.7 - 2 - 12 = 219.3
    EXPECT_THAT(wide.calls("text"), Contains("text 219.3,345.0 7.5 bold #000000 \"10  \""));
}

TEST(PlotDrawing, PutsTheNameOfTheYAxisAboveIt) {
    // 5 letters of 6: 100 - 15 = 85; 50 - 1.4 x 10 = 36
    EXPECT_THAT(drawn(melt_plot(), "text"), Contains("text 85.0,36.0 7.5 bold #000000 \" (cm)\""));
}

TEST(PlotDrawing, KeepsTheNameOfTheXAxisInsideTheSurface) {
    Plot plot = plot_of(PlotNumber::DepletionOverMelt, frame_of(0.0F, 100.0F, 0.0F, 1.0F));
    plot.x_label = " (cm)";
    // It belongs right of 1200; 1200 - 3 - 5 x 6 = 1167. 450 - 10 / 2 = 445
    EXPECT_THAT(drawn(plot, "text"), Contains("text 1167.0,445.0 7.5 bold #000000 \" (cm)\""));
}

TEST(PlotDrawing, PlacesTheHeadByTheSizesOfItsFonts) {
    const std::vector<std::string> texts = drawn(melt_plot(), "text", {.now = 46348.0});
    // 10.5 points: 14 high, letters of 8.4; 27 letters: 600 - 113.4 = 486.6
    EXPECT_THAT(texts, Contains("text 486.6,3.0 10.5 bold #000000 \"Potential Melt Depth (An*T)\""));
    // 8.5 points: 11.33 high, letters of 6.8; 24 letters: 600 - 81.6 = 518.4; below the title: 3 + 14
    EXPECT_THAT(texts, Contains("text 518.4,17.0 8.5 bold #000000 \"/basins/sample.mdb (Wet)\""));
    // 3 letters: 600 - 10.2; 17 + 11.33
    EXPECT_THAT(texts, Contains("text 589.8,28.3 8.5 #000000 \"Wet\""));
    EXPECT_THAT(texts, Contains("text 3.0,3.0 8.5 bold #000000 \"10/01/2001 to 01/08/2002\""));
    // 6 letters around the left edge of the frame: 100 - 20.4
    EXPECT_THAT(texts, Contains("text 79.6,14.3 8.5 bold #000000 \"Zone A\""));
    // Ends a twelfth of the range right of the frame: 1100 + 1000 / 12 = 1183.3; 10 letters
    EXPECT_THAT(texts, Contains("text 1115.3,3.0 8.5 bold #000000 \"11/22/2026\""));
}

TEST(PlotDrawing, SetsTheLinesOfTheRunInASmallerFont) {
    Plot plot = melt_plot(PlotNumber::Runoff);
    plot.head.run_kind = "Year round Simulation";
    plot.head.step = 2;
    const std::vector<std::string> texts = drawn(plot, "text", {.now = 46348.0});
    EXPECT_THAT(texts, Contains(AllOf(HasSubstr(" 8.5 bold "), EndsWith("\"Step 2\""))));
    EXPECT_THAT(texts, Contains(AllOf(HasSubstr(" 8.5 bold "), EndsWith("\"11/22/2026\""))));
    EXPECT_THAT(texts, Contains(AllOf(HasSubstr(" 7.5 bold "), EndsWith("\"Year round Simulation\""))));
}

TEST(PlotDrawing, ShrinksATitleThatIsWiderThanHalfTheSurface) {
    Plot plot = melt_plot();
    plot.head.title = std::string(80, 'M');
    // 80 letters of 0.8 points a point of the font: 10 points are 640, 9.5 are 608, 9 are 576 and below 600.
    EXPECT_THAT(drawn(plot, "text"), Contains(HasSubstr(" 9.0 bold #000000 \"MMM")));
}

TEST(PlotDrawing, ShowsTheEndOfASubtitleThatIsTooLong) {
    Plot plot = melt_plot();
    plot.head.subtitle = "/" + std::string(400, 'd') + "/sample.mdb (Wet)";
    // At 6 points letters are 4.8 wide: 248 of them fit into 1200 - 6.
    EXPECT_THAT(drawn(plot, "text"),
                Contains(AllOf(HasSubstr(" 6.0 bold #000000 \"...ddd"), EndsWith("d/sample.mdb (Wet)\""))));
}

TEST(PlotDrawing, MovesAZoneBelowALongSubtitle) {
    Plot plot = melt_plot();
    plot.head.subtitle = std::string(174, 's');  // 174 letters of 6.8 are 1183.2
    const std::vector<std::string> texts = drawn(plot, "text");
    EXPECT_THAT(texts, Contains(StartsWith("text 8.4,17.0 8.5 bold")));
    EXPECT_THAT(texts, Contains("text 79.6,28.3 8.5 bold #000000 \"Zone A\""));
}

TEST(PlotDrawing, WithoutARangeHasTheHeadAlone) {
    Plot plot = melt_plot();
    plot.frame.y_max = plot.frame.y_min;
    plot.head.step = 6;
    RecordingSurface surface{k_size};
    draw(surface, plot, {.data_points = true, .legend = true, .summary = true});
    EXPECT_EQ(surface.calls().size(), 1 + surface.calls("text").size());
    EXPECT_THAT(surface.calls("text"), Contains(EndsWith("\"Step 6\"")));
    EXPECT_EQ(surface.calls("text").size(), 6U);  // title, subtitle, period, zone, scenario, step
}

TEST(PlotDrawing, LabelsEveryMonthOfAYearAndFewerOfManyYears) {
    const auto month_labels = [](float days) {
        Plot plot = plot_of(PlotNumber::SnowCover, frame_of(37165.0F, 37165.0F + days, 0.0F, 1.0F));
        std::size_t count = 0;
        for (const std::string& text : drawn(plot, "text"))
            count += text.find("\"Oct\"") != std::string::npos ? 1 : 0;
        return count;
    };
    EXPECT_EQ(month_labels(365.0F), 1U);
    EXPECT_GE(month_labels(7305.0F), 10U);
    // February has 28 days in all years of the frame, so that 50 years have 601 ticks, 1.7 points apart; a
    // label of 18 points stands at every 24th.
    EXPECT_EQ(month_labels(18262.0F), 26U);
}

TEST(PlotDrawing, LeavesOutGridLinesThatWouldMakeAGreyArea) {
    const auto grid_lines = [](float days, float y_max, GridMode grid) {
        std::size_t count = 0;
        const Plot plot = plot_of(PlotNumber::SnowCover, frame_of(37165.0F, 37165.0F + days, 0.0F, y_max));
        for (const std::string& line : drawn(plot, "line", {.grid = grid}))
            count += line.find("pen #000000 style 2") != std::string::npos ? 1 : 0;
        return count;
    };
    EXPECT_EQ(grid_lines(365.0F, 1.0F, GridMode::Vertical), 12U);
    // 600 months are 1.7 points apart; as with the labels, every 24th stands.
    EXPECT_EQ(grid_lines(18262.0F, 1.0F, GridMode::Vertical), 25U);
    EXPECT_EQ(grid_lines(365.0F, 1.0F, GridMode::Horizontal), 11U);
    // 2,000 lines on 400 points, none nearer than 6 points to another one
    EXPECT_GT(grid_lines(365.0F, 1.0e8F, GridMode::Horizontal), 50U);
    EXPECT_LE(grid_lines(365.0F, 1.0e8F, GridMode::Horizontal), 67U);
}

TEST(PlotDrawing, HasSmallerTextsOnASmallSurface) {
    const auto first_text = [](SurfaceSize size) {
        RecordingSurface surface{size};
        draw(surface, melt_plot(), {});
        return surface.calls("text").front();
    };
    EXPECT_THAT(first_text({700.0, 420.0}), HasSubstr(" 10.5 bold "));
    // 0.8 times 10.5 is 8.4.
    EXPECT_THAT(first_text({700.0, 336.0}), HasSubstr(" 8.0 bold "));
    // No less than 0.6 times, 6.3
    EXPECT_THAT(first_text({400.0, 100.0}), HasSubstr(" 6.0 bold "));
}

TEST(PlotDrawing, LeavesOutLabelsOfTheYAxisThatWouldOverlap) {
    Plot plot = plot_of(PlotNumber::Runoff, frame_of(0.0F, 9.0F, 0.0F, 1.0e8F));
    std::size_t labels = 0;
    for (const std::string& text : drawn(plot, "text"))
        labels += text.find("00000  \"") != std::string::npos ? 1 : 0;
    EXPECT_GT(labels, 10U);
    EXPECT_LE(labels, 40U);  // 400 points, 10 a line
}

Plot components() {
    Plot plot = plot_of(PlotNumber::RunoffComponents, k_frame);
    plot.y_label = " (cm)";
    plot.curves = {curve_of("Initial Snow", {{37165, 0}, {37265, 10}}),
                   curve_of("New Snow", {{37165, 0}, {37265, 10}}, 2),
                   curve_of("P(rain)", {{37165, 0}, {37265, 30}}, 3)};
    plot.bands = {{.band = 1, .line = 1, .filled = true, .seed_y = 5.0F},
                  {.band = 2, .line = 2, .filled = false, .seed_y = -1.0F},
                  {.band = 3, .line = 3, .filled = true, .seed_y = 20.0F}};
    name_curves(plot);
    return plot;
}

TEST(PlotBands, AreFilledBetweenTheirCurves) {
    EXPECT_THAT(drawn(components(), "band"),
                ElementsAre("band fill #800000 style 0: 100.0,450.0 1100.0,350.0 1100.0,450.0 100.0,450.0",
                            "band fill #000080 style 0: 100.0,450.0 1100.0,150.0 1100.0,350.0 100.0,450.0"));
}

TEST(PlotBands, EndAtTheFrame) {
    Plot plot = components();
    plot.frame.y_max = 20.0F;  // 20 points a unit; the third curve leaves the frame at two thirds
    EXPECT_THAT(drawn(plot, "band"), Contains("band fill #000080 style 0: 100.0,450.0 766.7,50.0 1100.0,50.0 "
                                              "1100.0,250.0 100.0,450.0"));
}

TEST(PlotBands, OfATransparentLineAreNotFilled) {
    DrawOptions options;
    options.lines[0].fill = k_no_fill;
    EXPECT_EQ(drawn(components(), "band", options).size(), 1U);
}

TEST(PlotBands, LieUnderGridAndCurves) {
    RecordingSurface surface{k_size};
    draw(surface, components(), {});
    const std::vector<std::string>& calls = surface.calls();
    const auto last_band = std::find_if(calls.rbegin(), calls.rend(),
                                        [](const std::string& call) { return call.substr(0, 4) == "band"; });
    const auto first_line = std::find_if(calls.begin(), calls.end(),
                                         [](const std::string& call) { return call.substr(0, 4) == "line"; });
    EXPECT_LT(calls.rend() - last_band, first_line - calls.begin() + 1);
}

TEST(Clipping, KeepsAPolygonInside) {
    const std::vector<SurfacePoint> kept = clipped({{1, 1}, {2, 1}, {2, 2}}, {0, 0, 10, 10});
    EXPECT_EQ(kept.size(), 3U);
}

TEST(Clipping, LeavesNothingOfAPolygonOutside) {
    EXPECT_THAT(clipped({{11, 1}, {12, 1}, {12, 2}}, {0, 0, 10, 10}), IsEmpty());
    EXPECT_THAT(clipped({}, {0, 0, 10, 10}), IsEmpty());
}

Plot water_equivalent() {
    Plot plot = plot_of(PlotNumber::WaterEquivalent, k_frame);
    plot.y_label = " (cm)";
    plot.bars_total = 30.0F;
    plot.melt_total = 20.0F;
    plot.bars = {{.name = "Rain", .line = 1, .x1 = 37165, .x2 = 37185, .bottom = 28, .top = 30},
                 {.name = "New snow, M*(1-S}", .line = 2, .x1 = 37165, .x2 = 37185, .bottom = 28, .top = 28},
                 {.name = "Zonal melt, M*S", .line = 3, .x1 = 37165, .x2 = 37185, .bottom = 20, .top = 28},
                 {.name = "Snow Cover", .line = 4, .x1 = 37165, .x2 = 37185, .bottom = -5, .top = 20}};
    PlotCurve curve = curve_of("AZMexcl (", {{37185, 20}, {37195, 5}}, 5);
    curve.mode = CurveMode::Fifth;
    plot.curves = {curve};
    name_curves(plot);
    return plot;
}

TEST(PlotBars, AreClippedAtTheFrame) {
    const std::vector<std::string> boxes = drawn(water_equivalent(), "rectangle");
    // The surface, then the bars; the one without a height is left out.
    EXPECT_THAT(
        boxes,
        ElementsAre(StartsWith("rectangle 0.0,0.0"),
                    "rectangle 100.0,150.0 200.0x20.0 pen #800000 style 0 width 1 fill #800000 style 0",
                    "rectangle 100.0,170.0 200.0x80.0 pen #000080 style 0 width 1 fill #000080 style 0",
                    "rectangle 100.0,250.0 200.0x200.0 pen #808000 style 0 width 1 fill #808000 style 0"));
}

TEST(PlotBars, HaveTheCurveOfTheFifthLineBesideThem) {
    EXPECT_THAT(drawn(water_equivalent(), "line"),
                Contains("line pen #800080 style 0 width 1: 300.0,250.0 400.0,400.0"));
}

TEST(PaintedLegend, HasABoxARowAndASampleForEachName) {
    const SurfaceRectangle box = [] {
        const RecordingSurface surface{k_size};
        return legend_rectangle(surface, melt_plot(), {});
    }();
    // 8 points: 10.67 high, letters of 6.4; "Zone A (30. cm) " has 16: 102.4 wide, its sample 51.2, and 3
    // x 6.4
    EXPECT_NEAR(box.width, 102.4 + 51.2 + 19.2, 1e-9);
    EXPECT_NEAR(box.height, (1.2 + 2.0 / 3.0) * 32.0 / 3.0, 1e-9);
    // Near the upper right corner of the frame: 1100 - 8, 50 + 8
    EXPECT_NEAR(box.left + box.width, 1092.0, 1e-9);
    EXPECT_NEAR(box.top, 58.0, 1e-9);
    // The row is centred at 58 + 19.91 / 2 = 67.96; its text begins 5.33 higher.
    const std::vector<std::string> lines = drawn(melt_plot(), "line", {.legend = true});
    EXPECT_EQ(lines.back(), "line pen #800000 style 0 width 1: 925.6,68.0 976.8,68.0");
    EXPECT_EQ(drawn(melt_plot(), "text", {.legend = true}).back(),
              "text 983.2,62.6 8.0 #800000 \"Zone A (30. cm) \"");
}

TEST(PaintedLegend, ShowsFilledBoxesForBandsAndNoneForTheTotal) {
    const DrawOptions options{.legend = true};
    const std::vector<std::string> boxes = drawn(components(), "rectangle", options);
    EXPECT_EQ(boxes.size(), 5U);  // surface, panel, three samples
    EXPECT_THAT(boxes.back(), HasSubstr("fill #000080 style 0"));
    EXPECT_THAT(drawn(components(), "text", options).back(), HasSubstr("#808000 \"Total (30. cm) \""));
}

TEST(PaintedLegend, OfAZoomOfTheComponentsShowsLines) {
    Plot plot = components();
    plot.bands.clear();
    EXPECT_EQ(drawn(plot, "rectangle", {.legend = true}).size(), 2U);
    EXPECT_EQ(drawn(plot, "line", {.legend = true}).size(), drawn(plot, "line").size() + 3);
}

TEST(PaintedLegend, OfTheWaterEquivalentHasSixRowsFourBoxesAndALine) {
    const DrawOptions options{.legend = true};
    const Plot plot = water_equivalent();
    EXPECT_EQ(drawn(plot, "text", options).size(), drawn(plot, "text").size() + 6);
    EXPECT_EQ(drawn(plot, "rectangle", options).size(), drawn(plot, "rectangle").size() + 5);
    EXPECT_EQ(drawn(plot, "line", options).size(), drawn(plot, "line").size() + 1);
    EXPECT_THAT(drawn(plot, "text", options), Contains(EndsWith("#000000 \"Total (30. cm) \"")));
}

TEST(PaintedLegend, AvoidsTheCurve) {
    Plot plot = melt_plot();
    plot.curves[0].points = {{37255, 38}, {37256, 39}, {37257, 38}};
    const RecordingSurface surface{k_size};
    const SurfaceRectangle box = legend_rectangle(surface, plot, {});
    EXPECT_NEAR(box.left + box.width / 2.0, 600.0, 1e-9);
    EXPECT_NEAR(box.top, 58.0, 1e-9);
}

TEST(PaintedLegend, AvoidsALineBetweenPoints) {
    Plot plot = melt_plot();
    // The spike passes behind the corner, where the legend would be; its three points lie above and below.
    plot.curves[0].points = {{37255, 0}, {37256, 40}, {37257, 0}};
    const RecordingSurface surface{k_size};
    const SurfaceRectangle box = legend_rectangle(surface, plot, {});
    EXPECT_NEAR(box.left + box.width / 2.0, 600.0, 1e-9);
    EXPECT_NEAR(box.top, 58.0, 1e-9);
}

TEST(PaintedLegend, AvoidsTheFillOfABand) {
    Plot plot = components();
    // A thick band from the middle on; its curve runs above the corner of the legend, at the top of the
    // frame.
    for (PlotCurve& curve : plot.curves) curve.points = {{37165, 1}, {37215, 1}, {37216, 2}, {37265, 2}};
    plot.curves[2].points = {{37165, 2}, {37215, 2}, {37216, 40}, {37255, 40}, {37265, 40}};
    const RecordingSurface surface{k_size};
    const SurfaceRectangle box = legend_rectangle(surface, plot, {});
    EXPECT_NEAR(box.left, 108.0, 1e-9);
    EXPECT_NEAR(box.top, 58.0, 1e-9);
}

TEST(PaintedLegend, StandsWhereTheUserPutIt) {
    const RecordingSurface surface{k_size};
    const SurfaceRectangle box =
        legend_rectangle(surface, melt_plot(), {.legend_place = SurfacePoint{20.0, 30.0}});
    EXPECT_EQ(box.left, 20.0);
    EXPECT_EQ(box.top, 30.0);
    const SurfaceRectangle inside =
        legend_rectangle(surface, melt_plot(), {.legend_place = SurfacePoint{5000.0, -30.0}});
    EXPECT_NEAR(inside.left + inside.width, 1200.0, 1e-9);
    EXPECT_EQ(inside.top, 0.0);
}

Plot runoff() {
    Plot plot = melt_plot(PlotNumber::Runoff);
    plot.summary = {
        {.caption = "Measured Runoff Volume (10  m³)", .value = "12.345", .line = 1, .millions = true},
        {.caption = "Volume Difference (%)", .value = "-3.2", .line = 0},
        {.caption = "Coefficient of Determination (R²)", .value = "", .line = 0}};
    return plot;
}

TEST(PaintedSummary, HasCaptionsValuesAndARaisedExponent) {
    const std::vector<std::string> texts = drawn(runoff(), "text", {.summary = true});
    const std::vector<std::string> panel{texts.end() - 6, texts.end()};
    // At the upper left corner of the frame: 100 + 8 and a margin of 6.4; rows of 12.8 from 58 + 3.56
    EXPECT_EQ(panel[0], "text 114.4,62.6 8.0 #800000 \"Measured Runoff Volume (10  m³)\"");
    // Behind 26 letters of 6.4, a tenth of a line higher
    EXPECT_EQ(panel[1], "text 280.8,61.6 5.6 #800000 \"6\"");
    // Right of the widest caption, which has 33 letters: 114.4 + 211.2 + 6.4
    EXPECT_EQ(panel[2], "text 332.0,62.6 8.0 #800000 \"12.345\"");
    EXPECT_EQ(panel[3], "text 114.4,75.4 8.0 #000000 \"Volume Difference (%)\"");
    EXPECT_EQ(panel[4], "text 332.0,75.4 8.0 #000000 \"-3.2\"");
    EXPECT_EQ(panel[5], "text 114.4,88.2 8.0 #000000 \"Coefficient of Determination (R²)\"");
}

TEST(PaintedSummary, LeavesTheLegendFree) {
    Plot plot = runoff();
    plot.curves[0].points = {{37255, 38}};
    const RecordingSurface surface{k_size};
    const SurfaceRectangle legend =
        legend_rectangle(surface, plot, {.legend_place = SurfacePoint{108.0, 58.0}});
    const SurfaceRectangle summary =
        summary_rectangle(surface, plot, {.legend_place = SurfacePoint{108.0, 58.0}});
    EXPECT_FALSE(legend.left < summary.left + summary.width && summary.left < legend.left + legend.width &&
                 legend.top < summary.top + summary.height && summary.top < legend.top + legend.height);
}

TEST(PaintedSummary, OfAPlotWithoutOneIsNothing) {
    EXPECT_EQ(drawn(melt_plot(), "rectangle", {.summary = true}).size(), 1U);
    const RecordingSurface surface{k_size};
    EXPECT_EQ(summary_rectangle(surface, melt_plot(), {}).width, 0.0);
}

TEST(RefusedPlot, SaysSoOnTheSurface) {
    RecordingSurface surface{k_size};
    draw_refusal(surface, {PlotRefusal::Kind::Unable,
                           "Unable to plot Zone A.  Plotting error, missing or invalid data"});
    // 63 letters of 8.4: 600 - 264.6
    EXPECT_THAT(surface.calls(),
                ElementsAre(StartsWith("rectangle"),
                            "text 335.4,3.0 10.5 bold #000000 \"Unable to plot Zone A.  Plotting "
                            "error, missing or invalid data\""));
}

TEST(RefusedPlot, BreaksALongText) {
    RecordingSurface surface{{400.0, 300.0}};
    draw_refusal(surface, {PlotRefusal::Kind::Unable,
                           "Unable to plot Zone A.  Plotting error, missing or invalid data"});
    // 46 letters fit into 394.
    EXPECT_THAT(surface.calls("text"), ElementsAre(EndsWith("\"Unable to plot Zone A.  Plotting error,\""),
                                                   EndsWith("\"missing or invalid data\"")));
}

TEST(PlotDrawing, DrawsNothingOnASurfaceWithoutASize) {
    RecordingSurface surface{{0.0, 0.0}};
    draw(surface, melt_plot(), {.legend = true});
    draw_refusal(surface, {});
    EXPECT_THAT(surface.calls(), IsEmpty());
}

}  // namespace
}  // namespace nivora
