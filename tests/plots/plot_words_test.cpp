#include "plots/plot_words.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

/// Day counts 37165 and 37169 are October 1 and 5, 2001.
Plot told_plot() {
    Plot plot;
    plot.number = PlotNumber::Runoff;
    plot.head.title = "Runoff";
    plot.y_label = "Runoff (m³/s)";
    plot.frame = {.x_min = 37165.0F, .x_max = 37169.0F, .y_min = 0.0F, .y_max = 12.5F};
    PlotCurve curve;
    curve.name = "Measured";
    curve.points = {
        {37165.0F, 3.5F}, {37166.0F, k_missing}, {37167.0F, 12.25F}, {37168.0F, 2.5F}, {37170.0F, 99.0F}};
    plot.curves = {curve};
    return plot;
}

TEST(PlotWords, TellAxesAndTheLowestAndHighestValueInTheFrame) {
    const Plot plot = told_plot();
    // The missing value and the one of the day after the frame are not told.
    EXPECT_EQ(plot_words(plot),
              "Runoff. Days from Oct 1, 2001 to Oct 5, 2001. Runoff (m³/s) from 0 to 12.5. "
              "Measured: lowest 2.5 at Oct 4, 2001, highest 12.25 at Oct 3, 2001.");
}

TEST(PlotWords, TellAPartThatIsShownAlone) {
    Plot plot = told_plot();
    plot.frame.x_min = 37167.0F;
    plot.frame.x_max = 37167.5F;
    plot.zoomed = true;
    const std::string words = plot_words(plot);
    EXPECT_NE(words.find("lowest 12.25 at Oct 3, 2001, highest 12.25"), std::string::npos) << words;
    EXPECT_NE(words.find("A part of the plot is shown."), std::string::npos) << words;
}

TEST(PlotWords, TellCurvesWithoutValuesAndPlotsWithoutData) {
    Plot plot = told_plot();
    plot.curves[0].points = {{37165.0F, k_missing}};
    EXPECT_NE(plot_words(plot).find("Measured: no values."), std::string::npos);
    plot.frame.y_max = 0.0F;
    EXPECT_EQ(plot_words(plot), "Runoff. There is nothing to show.");
}

TEST(PlotWords, TellTheHeightOfBarsAndTheZone) {
    Plot plot = told_plot();
    plot.head.zone_label = "Zone A";
    plot.curves.clear();
    PlotBar bar;
    bar.name = "New snow";
    bar.bottom = 2.0F;
    bar.top = 3.25F;
    plot.bars = {bar};
    const std::string words = plot_words(plot);
    EXPECT_NE(words.find("Runoff. Zone A. "), std::string::npos) << words;
    EXPECT_NE(words.find("New snow: 1.25."), std::string::npos) << words;
}

}  // namespace
}  // namespace nivora
