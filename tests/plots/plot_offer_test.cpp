#include "plots/plot_offer.h"

#include "store/basin_marks.h"
#include "tests/support/plot_basin.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace nivora {
namespace {

using testing::HasSubstr;

/// The numbers of the plots that can be picked.
std::set<int> offered(const PlotBasin& basin) {
    std::set<int> numbers;
    for (int number = 1; number <= k_last_plot; ++number) {
        if (!plot_refusal(static_cast<PlotNumber>(number), basin.sources())) numbers.insert(number);
    }
    return numbers;
}

std::string refusal_of(PlotNumber plot, const PlotBasin& basin) {
    const auto refusal = plot_refusal(plot, basin.sources());
    if (!refusal) return {};
    EXPECT_EQ(refusal->kind, PlotRefusal::Kind::NotOffered);
    return refusal->text;
}

const std::set<int> k_inputs{2, 3, 5, 6, 7, 8, 9, 10, 11, 12};

std::set<int> inputs_and(std::set<int> others) {
    others.insert(k_inputs.begin(), k_inputs.end());
    return others;
}

std::set<int> without(std::set<int> numbers, const std::set<int>& others) {
    for (const int number : others) numbers.erase(number);
    return numbers;
}

TEST(PlotOffer, ARunWithResultsHasItsSixPlots) {
    EXPECT_EQ(offered(PlotBasin{}), inputs_and({1, 4, 13, 14, 15, 16}));
}

TEST(PlotOffer, WithoutCurrentResultsThereAreThePlotsOfTheInputs) {
    PlotBasin basin{1, 365};
    basin.results_current = false;
    EXPECT_EQ(offered(basin), k_inputs);
}

TEST(PlotOffer, PlotsOfSnowAreNotOfferedInNoSnowMode) {
    PlotBasin basin;
    basin.run.NoSnow = true;
    EXPECT_EQ(offered(basin), without(inputs_and({1, 4, 16}), {2}));
    EXPECT_EQ(
        refusal_of(PlotNumber::SnowCover, basin),
        "The plot 'Snow-covered Area (S)' shows snow, and runs are made in 'No Snow' mode. Turn the mode "
        "off and run the simulation.");
}

TEST(PlotOffer, TheWaterEquivalentNeedsASimulationThatEndsA364DaysAfterItsStart) {
    EXPECT_EQ(offered(PlotBasin{1, 365}).count(23), 1U);  // days 1 to 365: a difference of 364
    EXPECT_EQ(offered(PlotBasin{1, 364}).count(23), 0U);
    EXPECT_EQ(refusal_of(PlotNumber::WaterEquivalent, PlotBasin{1, 364}),
              "The plot 'Comparison of Areal Water Equivalent' needs a year, and the simulation 'wy2002' is "
              "shorter. Select a simulation that ends at least 364 days after it starts.");
}

TEST(PlotOffer, TheWinterAndTheSummersOfAnEvaluationHaveThePlotsOfARun) {
    for (const int step : {1, 2, 3}) {
        PlotBasin basin{1, 365};
        basin.take_step(step, 180);
        EXPECT_EQ(offered(basin), inputs_and({1, 4, 13, 14, 15, 16})) << "step " << step;
    }
}

TEST(PlotOffer, Steps4And5RefuseAllPlots) {
    for (const int step : {4, 5}) {
        PlotBasin basin;
        basin.take_step(step, 2);
        for (int number = 1; number <= k_last_plot; ++number) {
            const auto refusal = plot_refusal(static_cast<PlotNumber>(number), basin.sources());
            ASSERT_TRUE(refusal) << "plot " << number;
            EXPECT_EQ(refusal->kind, PlotRefusal::Kind::ClimateStep);
            EXPECT_EQ(refusal->text, "Plots are not available during this climate change step!");
        }
    }
}

TEST(PlotOffer, TheLastStepHasTheComparisonsAndNoMeasuredRunoff) {
    PlotBasin basin;
    basin.take_step(6, 2);
    EXPECT_EQ(offered(basin), inputs_and({4, 13, 14, 15, 16, 18, 19, 20, 21, 22, 23}));
    EXPECT_THAT(refusal_of(PlotNumber::Runoff, basin),
                HasSubstr("Choose 'Simulated Runoff - Present vs. Changed Climate'"));
    basin.results_current = false;
    EXPECT_EQ(offered(basin), k_inputs);
}

TEST(PlotOffer, AStepOfAnotherSimulationDoesNotCount) {
    PlotBasin basin;
    basin.take_step(4, 2);
    basin.run.LastRunSimulation = "wy2001";
    basin.results_current = false;
    EXPECT_EQ(offered(basin), k_inputs);
}

TEST(PlotOffer, MissingAndOutdatedResultsAreToldApart) {
    PlotBasin basin;
    basin.results_current = false;
    mark_input_changed(basin.basin);
    EXPECT_EQ(refusal_of(PlotNumber::DegreeDays, basin),
              "The plot 'Zonal Degree Days' needs up-to-date results, and inputs of the simulation 'wy2002' "
              "have changed since its last run. Run it again.");
    basin.run.LastRunSimulation.clear();
    EXPECT_EQ(
        refusal_of(PlotNumber::DegreeDays, basin),
        "The plot 'Zonal Degree Days' needs results of the simulation 'wy2002', and there are none. Run "
        "the simulation.");
    EXPECT_THAT(refusal_of(PlotNumber::RunoffComparison, basin), HasSubstr("up to step 6"));
}

TEST(PlotOffer, TheRowOfDashesIsNoPlot) {
    EXPECT_THAT(refusal_of(PlotNumber::Dashes, PlotBasin{}), HasSubstr("Position 17"));
}

TEST(PlotOffer, WithoutASimulationThereIsNoPlot) {
    PlotBasin basin;
    basin.basin.current_row.reset();
    EXPECT_TRUE(offered(basin).empty());
    EXPECT_THAT(refusal_of(PlotNumber::SnowCover, basin), HasSubstr("Select one"));
}

TEST(PlotTitle, IsTheTextOfTheList) {
    const PlotBasin basin;
    const auto title = [&](int number) {
        return plot_title(static_cast<PlotNumber>(number), basin.sources());
    };
    EXPECT_EQ(title(1), "Runoff (Measured vs Computed)");
    EXPECT_EQ(title(2), "Snow-covered Area (S)");
    EXPECT_EQ(title(3), "Max/Min Temperature (Tmax/TMin)");
    EXPECT_EQ(title(4), "Zonal Degree Days");
    EXPECT_EQ(title(5), "Precipitation (P)");
    EXPECT_EQ(title(6), "Critical Temperature (Tcrit)");
    EXPECT_EQ(title(7), "Lag Time (L)");
    EXPECT_EQ(title(8), "Lapse Rate (LR)");
    EXPECT_EQ(title(9), "Degree Day Factors (An)");
    EXPECT_EQ(title(10), "Snow Runoff Coefficients (CS)");
    EXPECT_EQ(title(11), "Rain Runoff Coefficients (CR)");
    EXPECT_EQ(title(12), "Rainfall Contributing Area (RCA)");
    EXPECT_EQ(title(13), "Potential Melt Depth (An*T)");
    EXPECT_EQ(title(14), "Snow Depletion vs Total Snowmelt Depth");
    EXPECT_EQ(title(15), "Accumulated Zonal Melt Depth vs Time");
    EXPECT_EQ(title(16), "Cumulative Runoff Components");
    EXPECT_EQ(title(18), "Simulated Runoff - Present vs. Changed Climate");
    EXPECT_EQ(title(19), "Snow Covered Area (Before/After Climate Change)");
    EXPECT_EQ(title(20), "MDCexcl vs. MDCexclWA [cutoff]");
    EXPECT_EQ(title(21), "Accumulated Zonal Melt (Changed cllimate)");
    EXPECT_EQ(title(22), "MDCexclWA vs MDCexclWA_CLIM");
    EXPECT_EQ(title(23), "Comparison of Areal Water Equivalent");
}

TEST(PlotTitle, SaysCompClimAtStep2Alone) {
    PlotBasin basin;
    basin.take_step(2, 2);
    EXPECT_EQ(plot_title(PlotNumber::Runoff, basin.sources()), "Runoff (Measured vs CompClim)");
    basin.take_step(3, 2);
    EXPECT_EQ(plot_title(PlotNumber::Runoff, basin.sources()), "Runoff (Measured vs Computed)");
}

TEST(PlotTitle, OfTheTemperaturesGoesByTheirKind) {
    PlotBasin basin;
    basin.simulation().temperature_values = std::int16_t{0};
    EXPECT_EQ(plot_title(PlotNumber::Temperatures, basin.sources()), "Average Temperature (Tavg)");
    basin.simulation().temperature_values.reset();
    EXPECT_EQ(plot_title(PlotNumber::Temperatures, basin.sources()), "Average Temperature (Tavg)");
}

TEST(ZoneListOfAPlot, HasAllZonesButForThePlotsOfOneZone) {
    const PlotBasin basin{3};
    for (int number = 1; number <= k_last_plot; ++number) {
        if (number == 17) continue;
        const std::set<int> one_zone{14, 15, 16, 20, 21, 22, 23};
        const bool runoff = number == 1 || number == 18;
        const ZoneList expected = runoff                       ? ZoneList::None
                                  : one_zone.count(number) > 0 ? ZoneList::OneZone
                                                               : ZoneList::WithAllZones;
        EXPECT_EQ(zone_list(static_cast<PlotNumber>(number), basin.basin), expected) << "plot " << number;
    }
}

TEST(ZoneListOfAPlot, IsMissingWhereTheVariableIsGivenForTheBasin) {
    PlotBasin basin{3};
    Simulation& simulation = basin.simulation();
    const std::vector<std::pair<std::optional<Distribution>*, std::vector<int>>> variables{
        {&simulation.temperature, {3}},
        {&simulation.precipitation, {5}},
        {&simulation.critical_temperature, {6}},
        {&simulation.lapse_rate, {8}},
        {&simulation.runoff_coefficients, {10, 11}}};
    for (const auto& [distribution, plots] : variables) {
        *distribution = Distribution::Basinwide;
        for (const int plot : plots)
            EXPECT_EQ(zone_list(static_cast<PlotNumber>(plot), basin.basin), ZoneList::None) << plot;
        distribution->reset();  // a blank one counts as by zone
        for (const int plot : plots)
            EXPECT_EQ(zone_list(static_cast<PlotNumber>(plot), basin.basin), ZoneList::WithAllZones) << plot;
    }
}

TEST(ZoneListOfAPlot, BeginsWithAllZonesWhereItOffersThem) {
    const PlotBasin basin{3};
    EXPECT_EQ(picked_zone(PlotNumber::SnowCover, basin.basin), 4);
    EXPECT_EQ(picked_zone(PlotNumber::AccumulatedMelt, basin.basin), 1);
    EXPECT_EQ(picked_zone(PlotNumber::Runoff, basin.basin), 1);
}

TEST(ZoneLabel, NamesZonesByLetters) {
    PlotBasin basin{16};
    EXPECT_EQ(zone_label(PlotNumber::SnowCover, 1, basin.basin), "Zone A");
    EXPECT_EQ(zone_label(PlotNumber::SnowCover, 16, basin.basin), "Zone P");
    EXPECT_EQ(zone_label(PlotNumber::SnowCover, 17, basin.basin), "All Zones");
    EXPECT_EQ(zone_label(PlotNumber::Runoff, 1, basin.basin), "Basinwide");
    basin.simulation().precipitation = Distribution::Basinwide;
    EXPECT_EQ(zone_label(PlotNumber::Precipitation, 1, basin.basin), "Basinwide");
}

TEST(ZoneLabel, SaysBasinwideForTheOnlyZoneOfAPlotOfOneZone) {
    const PlotBasin basin{1};
    EXPECT_EQ(zone_label(PlotNumber::AccumulatedMelt, 1, basin.basin), "Zone A (Basinwide)");
    EXPECT_EQ(zone_label(PlotNumber::SnowCover, 1, basin.basin), "Zone A");
    EXPECT_EQ(zone_label(PlotNumber::SnowCover, 2, basin.basin), "All Zones");
    EXPECT_EQ(zone_label(PlotNumber::AccumulatedMelt, 1, PlotBasin{2}.basin), "Zone A");
}

}  // namespace
}  // namespace nivora
