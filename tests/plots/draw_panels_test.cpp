#include "plots/draw_panels.h"

#include "plots/legend.h"
#include "tests/plots/plot_values.h"
#include "tests/support/recording_surface.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

// Fonts of 8 points are 10.67 high on this surface, with letters of 6.4; a row is 12.8 high.
constexpr SurfaceSize k_panels_size{1200.0, 480.0};
constexpr double k_letter = 6.4;
constexpr double k_line = 32.0 / 3.0;
constexpr double k_row = 12.8;

Plot two_curves() {
    Plot plot = plot_of(PlotNumber::SnowCover, frame_of(37165.0F, 37265.0F, 0.0F, 40.0F));
    plot.curves = {curve_of("Zone A", {{37165, 0}, {37175, 10}}), curve_of("Zone BB", {{37165, 5}}, 2)};
    name_curves(plot);
    return plot;
}

Plot with_summary() {
    Plot plot = two_curves();
    plot.summary = {{.caption = "Average", .value = "12.345", .line = 1},
                    {.caption = "Volume", .value = "", .line = 0}};
    return plot;
}

void expect_box(const SurfaceRectangle& box, double left, double top, double width) {
    EXPECT_NEAR(box.left, left, 1e-9);
    EXPECT_NEAR(box.top, top, 1e-9);
    EXPECT_NEAR(box.width, width, 1e-9);
    EXPECT_NEAR(box.height, k_line, 1e-9);
}

TEST(LegendTextBoxes, StandBesideTheSamplesRowByRow) {
    const RecordingSurface surface{k_panels_size};
    const Plot plot = two_curves();
    const auto boxes = legend_text_boxes(surface, plot, {.legend_place = SurfacePoint{20.0, 30.0}});
    ASSERT_EQ(boxes.size(), 2U);
    const double letters_a = static_cast<double>(plot.legend[0].text.size());
    const double letters_b = static_cast<double>(plot.legend[1].text.size());
    // Behind a margin of a letter, the shortest sample and another margin; a third of a line above the first
    // row, whose text is centred in it.
    const double left = 20.0 + k_letter + 40.0 + k_letter;
    const double top = 30.0 + k_line / 3.0 + (k_row - k_line) / 2.0;
    expect_box(boxes[0], left, top, letters_a * k_letter);
    expect_box(boxes[1], left, top + k_row, letters_b * k_letter);
}

TEST(LegendTextBoxes, AreWhereTheTextsArePainted) {
    RecordingSurface surface{k_panels_size};
    const DrawOptions options{.legend_place = SurfacePoint{20.0, 30.0}};
    paint_legend(surface, two_curves(), options);
    // The places of the test above, rounded: 20 + 52.8 and 30 + 3.56 + 1.07.
    ASSERT_EQ(surface.calls("text").size(), 2U);
    EXPECT_EQ(surface.calls("text")[0].substr(0, 14), "text 72.8,34.6");
    EXPECT_EQ(surface.calls("text")[1].substr(0, 14), "text 72.8,47.4");
}

TEST(LegendTextBoxes, OfAPlotWithoutALegendAreNone) {
    const RecordingSurface surface{k_panels_size};
    Plot plot = two_curves();
    plot.legend.clear();
    EXPECT_TRUE(legend_text_boxes(surface, plot, {}).empty());
    Plot flat = two_curves();
    flat.frame.y_max = flat.frame.y_min;
    EXPECT_TRUE(legend_text_boxes(surface, flat, {}).empty());
}

TEST(SummaryRowBoxes, HaveCaptionsAndValuesInTwoColumns) {
    const RecordingSurface surface{k_panels_size};
    const auto rows =
        summary_row_boxes(surface, with_summary(), {.summary_place = SurfacePoint{100.0, 200.0}});
    ASSERT_EQ(rows.size(), 2U);
    const double top = 200.0 + k_line / 3.0 + (k_row - k_line) / 2.0;
    const double caption = 100.0 + k_letter;
    // Right of the widest caption, of 7 letters, and a margin
    const double value = caption + 7.0 * k_letter + k_letter;
    expect_box(rows[0].caption, caption, top, 7.0 * k_letter);
    expect_box(rows[0].value, value, top, 6.0 * k_letter);
    expect_box(rows[1].caption, caption, top + k_row, 6.0 * k_letter);
    expect_box(rows[1].value, value, top + k_row, 0.0);
}

TEST(SummaryRowBoxes, OfAPlotWithoutASummaryAreNone) {
    const RecordingSurface surface{k_panels_size};
    EXPECT_TRUE(summary_row_boxes(surface, two_curves(), {}).empty());
}

}  // namespace
}  // namespace nivora
