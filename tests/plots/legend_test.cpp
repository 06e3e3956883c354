#include "plots/legend.h"

#include "tests/plots/plot_values.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::ElementsAre;

const PlotFrame k_legend_frame = frame_of(0.0F, 10.0F, 0.0F, 10.0F);

Plot named(Plot plot) {
    name_curves(plot);
    return plot;
}

Plot depth_plot(PlotNumber number, std::vector<PlotCurve> curves) {
    Plot plot = plot_of(number, k_legend_frame);
    plot.y_label = has_number_axis(number) ? "S" : " (cm)";
    plot.x_label = has_number_axis(number) ? " (cm)" : "";
    plot.curves = std::move(curves);
    return plot;
}

std::vector<std::string> rows(const Plot& plot) {
    std::vector<std::string> texts;
    for (const LegendRow& row : plot.legend) texts.push_back(row.text);
    return texts;
}

std::vector<std::string> headings(const Plot& plot) {
    std::vector<std::string> texts;
    for (const PlotCurve& curve : plot.curves) texts.push_back(curve.heading);
    return texts;
}

TEST(PlotLegend, ANameWithoutAValueStaysWhole) {
    const Plot plot =
        named(depth_plot(PlotNumber::DegreeDays, {curve_of("Zone Degree Days (°C)", points_of({1}))}));
    EXPECT_THAT(rows(plot), ElementsAre("Zone Degree Days (°C)"));
    EXPECT_THAT(headings(plot), ElementsAre("Zone Degree Days (°C)"));
}

TEST(PlotLegend, TellsTheLastPotentialMelt) {
    const Plot plot =
        named(depth_plot(PlotNumber::PotentialMelt, {curve_of("Zone A", points_of({1, 12.345F})),
                                                     curve_of("Zone B", points_of({0, 0}), 2)}));
    // 12.345 as a Single is 12.3450003
    EXPECT_THAT(rows(plot), ElementsAre("Zone A (12.35 cm) ", "Zone B (none) "));
    EXPECT_EQ(plot.legend[1].line, 2);
    EXPECT_EQ(plot.legend[1].curve, 1U);
}

TEST(PlotLegend, PassesOverAMissingLastValue) {
    const Plot plot =
        named(depth_plot(PlotNumber::PotentialMelt, {curve_of("Zone A", points_of({1, 2.5F, k_missing})),
                                                     curve_of("Zone B", points_of({k_missing}), 2)}));
    EXPECT_THAT(rows(plot), ElementsAre("Zone A (2.5 cm) ", "Zone B (none) "));
}

TEST(PlotLegend, AWholeNumberKeepsItsPoint) {
    const Plot plot = named(depth_plot(PlotNumber::AccumulatedMelt, {curve_of("AZM_incl", points_of({35}))}));
    EXPECT_THAT(rows(plot), ElementsAre("AZM_incl (35. cm) "));
}

TEST(PlotLegend, TellsTheMeltWithoutCover) {
    const Plot plot = named(
        depth_plot(PlotNumber::DepletionOverMelt, {curve_of("MDC_incl", {{0, 1}, {20, 0.5F}, {43.5F, 0}}),
                                                   curve_of("MDC_excl", {{0, 1}, {9, 0.2F}}, 2)}));
    EXPECT_THAT(rows(plot), ElementsAre("MDC_incl (43.5 cm) at S=0)", "MDC_excl (none) "));
}

TEST(PlotLegend, OfTheCutOffTakesTheLastPointWithoutCover) {
    const Plot plot = named(
        depth_plot(PlotNumber::DepletionCutoff, {curve_of("MDC_excl", {{0, 1}, {4, 0}, {5, 0.1F}, {6, 0}})}));
    EXPECT_THAT(rows(plot), ElementsAre("MDC_excl (6. cm) at S=0)"));
}

TEST(PlotLegend, OfTheChangedMeltHasNoUnit) {
    const Plot plot =
        named(depth_plot(PlotNumber::ChangedAccumulatedMelt, {curve_of("AZMincl", points_of({3, 7.25F})),
                                                              curve_of("AZMexcl", points_of({0}), 2)}));
    EXPECT_THAT(rows(plot), ElementsAre("AZMincl (7.25)", "AZMexcl (none) "));
}

TEST(PlotLegend, OfTheComponentsTellsTheHeightOfEachBandAndTheTotal) {
    const Plot plot =
        named(depth_plot(PlotNumber::RunoffComponents, {curve_of("Initial Snow", points_of({0, 20})),
                                                        curve_of("New Snow", points_of({0, 26.5F}), 2),
                                                        curve_of("P(rain)", points_of({0, 26.5F}), 3)}));
    EXPECT_THAT(rows(plot), ElementsAre("Initial Snow (20. cm) ", "New Snow (6.5 cm) ", "P(rain) (none) ",
                                        "Total (26.5 cm) "));
    EXPECT_FALSE(plot.legend[3].sample);
    EXPECT_EQ(plot.legend[3].line, 4);
    EXPECT_EQ(plot.legend[3].curve, std::nullopt);
    EXPECT_THAT(headings(plot),
                ElementsAre("Initial Snow (20. cm) ", "New Snow (6.5 cm) ", "P(rain) (none) "));
}

TEST(PlotLegend, OfTheCoverComparisonHasOneRowAZone) {
    const Plot plot = named(
        depth_plot(PlotNumber::CoverComparison,
                   {curve_of("Zone A", points_of({1})), curve_of("Zone B", points_of({1}), 2),
                    curve_of("Zone A", points_of({1}), 1, 2), curve_of("Zone B", points_of({1}), 2, 2)}));
    EXPECT_THAT(rows(plot), ElementsAre("Zone A (before/after---)", "Zone B (before/after---)"));
    EXPECT_EQ(plot.legend[1].curve, 1U);
}

Plot temperatures(std::vector<PlotCurve> curves) {
    Plot plot = plot_of(PlotNumber::Temperatures, k_legend_frame);
    plot.y_label = " (°C)";
    plot.curves = std::move(curves);
    return plot;
}

TEST(PlotLegend, OfTheTemperaturesOfAllZonesHasOneRowAZoneAndTwoHeadings) {
    const Plot plot = named(
        temperatures({curve_of("Zone A", points_of({9})), curve_of("Zone B", points_of({8}), 2),
                      curve_of("Zone A", points_of({1}), 1, 2), curve_of("Zone B", points_of({0}), 2, 2)}));
    EXPECT_THAT(rows(plot), ElementsAre("Zone A", "Zone B"));
    EXPECT_THAT(headings(plot), ElementsAre("Zone A, Maximum Daily T (°C)", "Zone B, Maximum Daily T (°C)",
                                            "Zone A, Minimum Daily T (°C)", "Zone B, Minimum Daily T (°C)"));
}

TEST(PlotLegend, OfTheTemperaturesOfOneZoneHasARowForTheMinima) {
    const Plot plot = named(temperatures({curve_of("Maximum Daily T (°C)", points_of({9})),
                                          curve_of("Minimum Daily T (°C)", points_of({1}), 2, 2)}));
    EXPECT_THAT(rows(plot), ElementsAre("Maximum Daily T (°C)", "Minimum Daily T (°C)"));
    EXPECT_EQ(plot.legend[1].curve, 1U);
    EXPECT_THAT(headings(plot), ElementsAre("Maximum Daily T (°C)", "Minimum Daily T (°C)"));
}

TEST(PlotLegend, OfAverageTemperaturesKeepsTheZones) {
    EXPECT_THAT(headings(named(temperatures({curve_of("Zone A", points_of({9}))}))), ElementsAre("Zone A"));
}

TEST(PlotLegend, OfTheWaterEquivalentHasTheTotalTheBandsAndTheCurve) {
    Plot plot = depth_plot(PlotNumber::WaterEquivalent, {curve_of("AZMexcl (", points_of({28, 3}), 5)});
    plot.bars_total = 40.0F;
    plot.melt_total = 30.25F;
    plot.bars = {{.name = "Rain", .line = 1, .bottom = 35.5F, .top = 40.0F},
                 {.name = "New snow, M*(1-S}", .line = 2, .bottom = 35.5F, .top = 35.5F},
                 {.name = "Zonal melt, M*S", .line = 3, .bottom = 30.0F, .top = 35.5F},
                 {.name = "Snow Cover", .line = 4, .bottom = 0.0F, .top = 30.0F}};
    name_curves(plot);
    EXPECT_THAT(rows(plot),
                ElementsAre("Total (40. cm) ", "Rain (4.5 cm) ", "New snow, M*(1-S} (none) ",
                            "Zonal melt, M*S (5.5 cm) ", "Snow Cover (30. cm) ", "AZMexcl (30.25 cm) "));
    EXPECT_FALSE(plot.legend[0].sample);
    EXPECT_EQ(plot.legend[5].line, 5);
    EXPECT_THAT(headings(plot), ElementsAre("AZMexcl (30.25 cm) "));
}

TEST(PlotLegend, IsTheSameWhenNamedTwice) {
    const Plot once = named(depth_plot(PlotNumber::PotentialMelt, {curve_of("Zone A", points_of({4}))}));
    EXPECT_THAT(rows(named(once)), ElementsAre("Zone A (4. cm) "));
}

}  // namespace
}  // namespace nivora
