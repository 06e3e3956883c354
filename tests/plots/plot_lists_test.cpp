#include "plots/plot_lists.h"

#include "tests/support/plot_basin.h"

#include <gmock/gmock.h>

#include <set>

namespace nivora {
namespace {

using testing::ElementsAre;

std::set<int> enabled_plots(const PlotBasin& basin) {
    std::set<int> numbers;
    const auto entries = plot_list(basin.sources());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (entries[i].enabled) numbers.insert(static_cast<int>(i) + 1);
    }
    return numbers;
}

std::vector<std::string> texts(const ZoneListState& list) {
    std::vector<std::string> all;
    for (const ZoneListEntry& entry : list.entries) all.push_back(entry.text);
    return all;
}

std::vector<bool> enabled(const ZoneListState& list) {
    std::vector<bool> all;
    for (const ZoneListEntry& entry : list.entries) all.push_back(entry.enabled);
    return all;
}

std::vector<bool> visible(const ZoneListState& list) {
    std::vector<bool> all;
    for (const ZoneListEntry& entry : list.entries) all.push_back(entry.visible);
    return all;
}

TEST(PlotList, Has23EntriesWithOneRowOfDashes) {
    const auto entries = plot_list(PlotBasin{}.sources());
    ASSERT_EQ(entries.size(), 23U);
    for (std::size_t i = 0; i < entries.size(); ++i) EXPECT_EQ(entries[i].dashes, i == 16) << i;
    EXPECT_EQ(entries[0].text, "Runoff (Measured vs Computed)");
    EXPECT_EQ(entries[2].text, "Max/Min Temperature (Tmax/TMin)");
    EXPECT_FALSE(entries[16].enabled);
    EXPECT_EQ(entries[22].text, "Comparison of Areal Water Equivalent");
}

TEST(PlotList, NamesAverageTemperaturesAndTheRunoffOfStep2) {
    PlotBasin basin;
    basin.simulation().temperature_values = std::int16_t{0};
    basin.take_step(2, 2);
    const auto entries = plot_list(basin.sources());
    EXPECT_EQ(entries[0].text, "Runoff (Measured vs CompClim)");
    EXPECT_EQ(entries[2].text, "Average Temperature (Tavg)");
}

TEST(PlotList, FollowsTheResults) {
    PlotBasin basin{1, 365};
    EXPECT_EQ(enabled_plots(basin),
              (std::set<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 23}));
    basin.results_current = false;
    EXPECT_EQ(enabled_plots(basin), (std::set<int>{2, 3, 5, 6, 7, 8, 9, 10, 11, 12}));
}

TEST(PlotList, WithoutSnowHasNoPlotsOfSnow) {
    PlotBasin basin;
    basin.run.NoSnow = true;
    EXPECT_EQ(enabled_plots(basin), (std::set<int>{1, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 16}));
}

TEST(PlotList, CanBePickedFromDuringSteps4And5ButWithoutThePresentRunoff) {
    for (const int step : {4, 5}) {
        PlotBasin basin{1, 365};
        basin.take_step(step, 180);
        EXPECT_EQ(enabled_plots(basin), (std::set<int>{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}))
            << "step " << step;
        basin.results_current = false;
        EXPECT_EQ(enabled_plots(basin), (std::set<int>{2, 3, 5, 6, 7, 8, 9, 10, 11, 12})) << "step " << step;
    }
}

TEST(PlotList, OfTheLastStepComparesTheClimates) {
    PlotBasin basin{1, 365};
    basin.take_step(6, 180);
    EXPECT_EQ(enabled_plots(basin),
              (std::set<int>{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 18, 19, 20, 21, 22, 23}));
}

TEST(ZoneListState, BeforeAPickNamesTheZonesAndIsDisabled) {
    const ZoneListState list = zone_list_state({}, PlotBasin{2}.basin);
    EXPECT_FALSE(list.enabled);
    EXPECT_THAT(texts(list), ElementsAre("Zone A", "Zone B", "All Zones"));
}

TEST(ZoneListState, OfASeriesHasAllZones) {
    const ZoneListState list = zone_list_state(PlotNumber::SnowCover, PlotBasin{2}.basin);
    EXPECT_TRUE(list.enabled);
    EXPECT_THAT(texts(list), ElementsAre("Zone A", "Zone B", "All Zones"));
    EXPECT_THAT(enabled(list), ElementsAre(true, true, true));
    EXPECT_THAT(visible(list), ElementsAre(true, true, true));
}

TEST(ZoneListState, OfAPlotOfOneZoneHidesAllZones) {
    for (const int number : {14, 15, 16, 20, 21, 22, 23}) {
        const ZoneListState list = zone_list_state(static_cast<PlotNumber>(number), PlotBasin{2}.basin);
        EXPECT_TRUE(list.enabled) << number;
        EXPECT_THAT(texts(list), ElementsAre("Zone A", "Zone B", "All Zones")) << number;
        EXPECT_THAT(enabled(list), ElementsAre(true, true, true)) << number;
        EXPECT_THAT(visible(list), ElementsAre(true, true, false)) << number;
    }
}

TEST(ZoneListState, OfAPlotOfOneZoneInABasinOfOneSaysSo) {
    const ZoneListState list = zone_list_state(PlotNumber::DepletionOverMelt, PlotBasin{1}.basin);
    EXPECT_THAT(texts(list), ElementsAre("Zone A (Basinwide)", "All Zones"));
    EXPECT_THAT(enabled(list), ElementsAre(true, false));
}

TEST(ZoneListState, IsDisabledForTheRunoffAndForBasinwideVariables) {
    PlotBasin basin{2};
    EXPECT_FALSE(zone_list_state(PlotNumber::Runoff, basin.basin).enabled);
    EXPECT_FALSE(zone_list_state(PlotNumber::RunoffComparison, basin.basin).enabled);
    EXPECT_TRUE(zone_list_state(PlotNumber::Precipitation, basin.basin).enabled);
    basin.simulation().precipitation = Distribution::Basinwide;
    const ZoneListState list = zone_list_state(PlotNumber::Precipitation, basin.basin);
    EXPECT_FALSE(list.enabled);
    EXPECT_THAT(texts(list), ElementsAre("Zone A", "Zone B", "All Zones"));
    EXPECT_THAT(visible(list), ElementsAre(true, true, true));
}

TEST(ZoneListState, HasLettersUpToP) {
    const ZoneListState list = zone_list_state(PlotNumber::SnowCover, PlotBasin{16}.basin);
    ASSERT_EQ(list.entries.size(), 17U);
    EXPECT_EQ(list.entries[15].text, "Zone P");
    EXPECT_EQ(list.entries[16].text, "All Zones");
}

TEST(PlotTools, NeedAPlotAndTheBarsHaveNoZoom) {
    const PlotTools none = plot_tools({});
    EXPECT_FALSE(none.zoom || none.x_maximum || none.y_maximum || none.output);
    const PlotTools runoff = plot_tools(PlotNumber::Runoff);
    EXPECT_TRUE(runoff.zoom && runoff.x_maximum && runoff.y_maximum && runoff.output);
    const PlotTools bars = plot_tools(PlotNumber::WaterEquivalent);
    EXPECT_FALSE(bars.zoom || bars.x_maximum);
    EXPECT_TRUE(bars.y_maximum && bars.output);
}

}  // namespace
}  // namespace nivora
