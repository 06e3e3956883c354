// The plots of results that the plot window treats in a way of their own: bars, filled bands, stored columns.
#include "plots/plot_screen.h"
#include "tests/plots/melt_rows.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

ScreenAnswer pick(PlotScreen& screen, PlotNumber plot, PlotBasin& basin) {
    BasinDatabase database = basin.file.open(Access::ReadOnly);
    ScreenAnswer answer = screen.pick(plot, database, basin.sources());
    EXPECT_NE(screen.plot(), nullptr) << (screen.fallback() != nullptr ? screen.fallback()->text : "");
    return answer;
}

/// A year with 30 cm of precipitation on its first day, and a melt of 5 cm in summer.
void write_bars(PlotBasin& basin) {
    const std::vector<float> none = constant(basin, 0.0F);
    write_columns(basin, {{&SimResults::Precip, with(none, 1, 30.0F)},
                          {&SimResults::Cpr, none},
                          {&SimResults::M1S, none},
                          {&SimResults::ZonalMelt, with(none, 200, 5.0F)},
                          {&SimResults::NewMelt, none},
                          {&SimResults::SCA, constant(basin, 0.5F)}});
}

TEST(PlotScreenBars, HaveNoZoom) {
    PlotBasin basin{1, 365};
    write_bars(basin);
    PlotScreen screen;
    pick(screen, PlotNumber::WaterEquivalent, basin);
    ASSERT_NE(screen.plot(), nullptr);
    EXPECT_FALSE(screen.zoom_in());
    EXPECT_FALSE(screen.wheel({37300.0, 10.0}, 1.0).draw);
    EXPECT_FALSE(screen.pan(1.0).draw);
    EXPECT_FALSE(screen.zoom({.x1 = 37200.0, .x2 = 37300.0, .y1 = 0.0, .y2 = 10.0}).draw);
}

TEST(PlotScreenBars, AreNotCutByATypedMaximumAndTheBoxSaysSo) {
    PlotBasin basin{1, 365};
    write_bars(basin);
    PlotScreen screen;
    pick(screen, PlotNumber::WaterEquivalent, basin);
    ASSERT_NE(screen.plot(), nullptr);
    EXPECT_EQ(screen.boxes().y, "30");
    EXPECT_TRUE(screen.redraw({screen.boxes().x, "12"}).fill_boxes);
    EXPECT_EQ(screen.boxes().y, "30");
    screen.redraw({screen.boxes().x, "45"});
    EXPECT_EQ(screen.boxes().y, "45");
    EXPECT_EQ(screen.plot()->frame.y_max, 45.0F);
    screen.after_resize();
    EXPECT_EQ(screen.plot()->frame.y_max, 45.0F);
}

TEST(PlotScreenBands, AreGoneInAZoomAndBackAfterIt) {
    PlotBasin basin{1, 3};
    const std::vector<float> ones = constant(basin, 1.0F);
    write_columns(basin, {{&SimResults::ZonalMelt, ones},
                          {&SimResults::NewMelt, ones},
                          {&SimResults::SCA, ones},
                          {&SimResults::M1S, ones},
                          {&SimResults::Cpr, ones},
                          {&SimResults::Precip, ones}});
    PlotScreen screen;
    pick(screen, PlotNumber::RunoffComponents, basin);
    ASSERT_NE(screen.plot(), nullptr);
    ASSERT_EQ(screen.plot()->bands.size(), 3U);
    // The melt of the first two days is 1 and 2.
    EXPECT_TRUE(screen.zoom({.x1 = 37165.0, .x2 = 37166.0, .y1 = 0.0, .y2 = 3.0}).draw);
    EXPECT_TRUE(screen.plot()->bands.empty());
    screen.after_resize();
    EXPECT_EQ(screen.plot()->bands.size(), 3U);
    EXPECT_TRUE(screen.wheel({37166.0, 2.0}, 1.0).draw);
    EXPECT_TRUE(screen.plot()->bands.empty());
    EXPECT_TRUE(screen.wheel({37166.0, 2.0}, -1.0).draw);
    EXPECT_EQ(screen.plot()->bands.size(), 3U);
    EXPECT_FALSE(screen.plot()->zoomed);
}

TEST(PlotScreenChangedMelt, AsksToStoreItsColumnsWhenItIsBuilt) {
    PlotBasin basin{1, 5};
    basin.take_step(6, 2);
    basin.write_variables(
        [](PhysicalRow& row, int, int day) { row.sca = 1.0F - 0.125F * static_cast<float>(day); });
    write_columns(basin, {{&SimResults::SCA, {9, 9, 1, 0.5F, 0.25F}},
                          {&SimResults::MDCexcl, {9, 9, 1, 3, 7}},
                          {&SimResults::SCAclim, {9, 9, 1, 1, 1}},
                          {&SimResults::MDCexclWA, {9, 9, 1, 3, 7}},
                          {&SimResults::MDCexclWAnew, {9, 9, 2, 4, 8}}});
    PlotScreen screen;
    EXPECT_TRUE(pick(screen, PlotNumber::ChangedAccumulatedMelt, basin).store_melt);
    EXPECT_FALSE(screen.after_resize().store_melt);
    BasinDatabase database = basin.file.open(Access::ReadOnly);
    EXPECT_TRUE(screen.zoom_out(&database, basin.sources()).store_melt);
    EXPECT_FALSE(screen.zoom_out(nullptr, basin.sources()).store_melt);
    EXPECT_FALSE(pick(screen, PlotNumber::SnowCover, basin).store_melt);
}

}  // namespace
}  // namespace nivora
