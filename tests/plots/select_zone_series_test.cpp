#include "tests/support/plot_basin.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsNan;

/// Each variable is its own base plus 0.25 times the day, and plus 1 in each further zone.
float of(float base, int zone, int day) {
    return base + static_cast<float>(zone - 1) + 0.25F * static_cast<float>(day);
}

void fill_variables(PlotBasin& basin) {
    basin.write_variables([](PhysicalRow& row, int zone, int day) {
        row.tmax = of(20.0F, zone, day);
        row.tmin = of(-10.0F, zone, day);
        row.tavg = of(5.0F, zone, day);
        row.precip = of(0.0F, zone, day);
        row.sca = of(0.0F, zone, day);
    });
}

void fill_parameters(PlotBasin& basin) {
    basin.write_parameters([](ParameterRow& row, int zone, int day) {
        row.tcrit = of(2.0F, zone, day);
        row.lag_hours = of(10.0F, zone, day);
        row.lapse_rate = of(0.5F, zone, day);
        row.an = of(0.125F, zone, day);
        row.cs = of(0.25F, zone, day);
        row.cr = of(0.375F, zone, day);
        row.rca = static_cast<std::int16_t>(zone % 2);
    });
}

void fill_results(PlotBasin& basin) {
    basin.write_results([](SimResults& t, std::size_t row, int zone, int day) {
        t.ZoneDD[row] = of(3.0F, zone, day);
        t.SumAT[row] = of(4.0F, zone, day);
    });
}

struct Bounds {
    float y_min;
    float y_max;
};

void expect_bounds(const Plot& plot, const Bounds& bounds, float queried_maximum) {
    EXPECT_EQ(plot.frame.y_min, bounds.y_min);
    EXPECT_EQ(plot.frame.y_max, bounds.y_max);
    ASSERT_TRUE(plot.frame.queried);
    EXPECT_EQ((*plot.frame.queried)[2], queried_maximum);
    EXPECT_EQ(plot.frame.legend_rows, 2.0F);
}

TEST(ZoneSeries, HaveACurveAZone) {
    PlotBasin basin{2, 3};
    fill_variables(basin);
    const Plot plot = basin.plot(PlotNumber::SnowCover);
    EXPECT_EQ(plot.y_label, "S");
    ASSERT_EQ(plot.curves.size(), 2U);
    EXPECT_EQ(plot.curves[0].name, "Zone A");
    EXPECT_EQ(plot.curves[1].name, "Zone B");
    EXPECT_EQ(plot.curves[1].line, 2);
    EXPECT_EQ(plot.curves[1].mode, CurveMode::Own);
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(0.25F, 0.5F, 0.75F));
    EXPECT_THAT(ys_of(plot.curves[1]), ElementsAre(1.25F, 1.5F, 1.75F));
    EXPECT_THAT(xs_of(plot.curves[1]), ElementsAre(basin.x(1), basin.x(2), basin.x(3)));
    EXPECT_EQ(plot.frame.x_max, basin.x(4));
    expect_bounds(plot, {0.25F, 1.75F}, 1.75F);
}

TEST(ZoneSeries, OfOneZoneHaveItsBounds) {
    PlotBasin basin{2, 3};
    fill_variables(basin);
    const Plot plot = basin.plot(PlotNumber::SnowCover, 2);
    ASSERT_EQ(plot.curves.size(), 1U);
    EXPECT_EQ(plot.curves[0].name, "Zone B");
    expect_bounds(plot, {1.25F, 1.75F}, 1.75F);
}

TEST(ZoneSeries, OfVariablesAndResultsKeepTheBoundsOfTheirData) {
    PlotBasin basin{1, 4};
    fill_variables(basin);
    fill_results(basin);
    const Plot precipitation = basin.plot(PlotNumber::Precipitation);
    EXPECT_EQ(precipitation.y_label, " (cm)");
    expect_bounds(precipitation, {0.25F, 1.0F}, 1.0F);
    const Plot degree_days = basin.plot(PlotNumber::DegreeDays);
    EXPECT_EQ(degree_days.y_label, " (°C)");
    expect_bounds(degree_days, {3.25F, 4.0F}, 4.0F);
}

TEST(ZoneSeries, OfPotentialMeltBeginAtZero) {
    PlotBasin basin{1, 4};
    fill_results(basin);
    const Plot plot = basin.plot(PlotNumber::PotentialMelt);
    EXPECT_EQ(plot.y_label, " (cm)");
    expect_bounds(plot, {0.0F, 5.0F}, 5.0F);
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(4.25F, 4.5F, 4.75F, 5.0F));
}

TEST(ZoneSeries, OfParametersHaveFixedBoundsOrThoseOfTheirData) {
    PlotBasin basin{1, 2};
    fill_parameters(basin);
    expect_bounds(basin.plot(PlotNumber::CriticalTemperature), {2.25F, 2.5F}, 2.5F);
    expect_bounds(basin.plot(PlotNumber::LagTime), {0.0F, 50.0F}, 10.5F);
    expect_bounds(basin.plot(PlotNumber::LapseRate), {0.75F, 1.0F}, 1.0F);
    expect_bounds(basin.plot(PlotNumber::DegreeDayFactors), {0.0F, 1.0F}, 0.625F);
    expect_bounds(basin.plot(PlotNumber::SnowCoefficients), {0.0F, 1.0F}, 0.75F);
    expect_bounds(basin.plot(PlotNumber::RainCoefficients), {0.0F, 1.0F}, 0.875F);
    expect_bounds(basin.plot(PlotNumber::RainArea), {0.0F, 1.0F}, 1.0F);
    EXPECT_THAT(ys_of(basin.plot(PlotNumber::LagTime).curves[0]), ElementsAre(10.25F, 10.5F));
    EXPECT_THAT(ys_of(basin.plot(PlotNumber::RainArea).curves[0]), ElementsAre(1.0F, 1.0F));
}

TEST(ZoneSeries, OfParametersHaveTheirLabels) {
    PlotBasin basin{1, 2};
    fill_parameters(basin);
    EXPECT_EQ(basin.plot(PlotNumber::CriticalTemperature).y_label, " (°C)");
    EXPECT_EQ(basin.plot(PlotNumber::LagTime).y_label, " (Hours) ");
    EXPECT_EQ(basin.plot(PlotNumber::LapseRate).y_label, " (°C/100m)");
    EXPECT_EQ(basin.plot(PlotNumber::DegreeDayFactors).y_label, "(cm/°C·d)");
    EXPECT_EQ(basin.plot(PlotNumber::SnowCoefficients).y_label, "Cs");
    EXPECT_EQ(basin.plot(PlotNumber::RainCoefficients).y_label, "Cr");
    EXPECT_EQ(basin.plot(PlotNumber::RainArea).y_label, "RCA");
    basin.basin.Units_Code = Units::English;
    EXPECT_EQ(basin.plot(PlotNumber::CriticalTemperature).y_label, " (°F)");
    EXPECT_EQ(basin.plot(PlotNumber::LapseRate).y_label, " (°F/1000ft)");
    EXPECT_EQ(basin.plot(PlotNumber::DegreeDayFactors).y_label, "(in/(°F-32)·d)");
}

TEST(ZoneSeries, OfAConstantParameterHaveNoRange) {
    PlotBasin basin;
    basin.write_parameters([](ParameterRow& row, int, int) { row.lapse_rate = 0.65F; });
    EXPECT_TRUE(has_no_data(basin.plot(PlotNumber::LapseRate)));
}

TEST(ZoneSeries, ShowDegreeDaysOfOneZoneUnderTheirOwnName) {
    PlotBasin basin{2};
    fill_results(basin);
    EXPECT_EQ(basin.plot(PlotNumber::DegreeDays, 2).curves[0].name, "Zone Degree Days (°C)");
    EXPECT_EQ(basin.plot(PlotNumber::DegreeDays, 3).curves[1].name, "Zone B");
}

TEST(ZoneSeries, AMissingValueIsAGap) {
    PlotBasin basin{1, 3};
    fill_variables(basin);
    basin.file.change("UPDATE PhysicalData SET Precip = NULL WHERE Date = " + std::to_string(basin.day(2)));
    EXPECT_THAT(ys_of(basin.plot(PlotNumber::Precipitation).curves[0]), ElementsAre(0.25F, IsNan(), 0.75F));
}

TEST(ZoneSeries, WithoutAnyValueFails) {
    PlotBasin basin;
    fill_variables(basin);
    basin.file.change("UPDATE PhysicalData SET Precip = NULL");
    EXPECT_EQ(basin.refusal(PlotNumber::Precipitation, 1).text, unable_text("Zone A"));
}

TEST(ZoneSeries, RowsBeyondTheZonesOfTheBasinAreNotRead) {
    PlotBasin basin{2, 2};
    fill_variables(basin);
    basin.file.change("INSERT INTO PhysicalData (Zone, Date, SCA) VALUES (3, " +
                      std::to_string(basin.day(1)) + ", 99), (0, " + std::to_string(basin.day(1)) + ", -99)");
    const Plot plot = basin.plot(PlotNumber::SnowCover);
    EXPECT_EQ(plot.curves.size(), 2U);
    expect_bounds(plot, {0.25F, 1.5F}, 1.5F);
}

TEST(ZoneSeries, AZoneWithoutRowsHasNoCurve) {
    PlotBasin basin{3, 2};
    fill_variables(basin);
    basin.file.change("DELETE FROM PhysicalData WHERE Zone = 2");
    const Plot plot = basin.plot(PlotNumber::SnowCover);
    ASSERT_EQ(plot.curves.size(), 2U);
    EXPECT_EQ(plot.curves[1].name, "Zone C");
    EXPECT_EQ(plot.curves[1].line, 3);
    EXPECT_EQ(basin.refusal(PlotNumber::SnowCover, 2).text, unable_text("Zone B"));
}

TEST(ZoneSeries, OfFiftyYearsHaveNoLimit) {
    PlotBasin basin{1, 18'263};
    basin.write_variables([](PhysicalRow& row, int, int day) { row.precip = static_cast<float>(day % 7); });
    const Plot plot = basin.plot(PlotNumber::Precipitation);
    ASSERT_EQ(plot.curves.size(), 1U);
    EXPECT_EQ(plot.curves[0].points.size(), 18'263U);
}

TEST(TemperaturePlot, ShowsMaximaAndMinimaOfOneZone) {
    PlotBasin basin{2, 2};
    fill_variables(basin);
    const Plot plot = basin.plot(PlotNumber::Temperatures, 2);
    ASSERT_EQ(plot.curves.size(), 2U);
    EXPECT_EQ(plot.curves[0].name, "Maximum Daily T (°C)");
    EXPECT_EQ(plot.curves[0].pass, 1);
    EXPECT_EQ(plot.curves[0].line, 1);
    EXPECT_EQ(plot.curves[0].mode, CurveMode::Own);
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(21.25F, 21.5F));
    EXPECT_EQ(plot.curves[1].name, "Minimum Daily T (°C)");
    EXPECT_EQ(plot.curves[1].pass, 2);
    EXPECT_EQ(plot.curves[1].line, 2);
    EXPECT_EQ(plot.curves[1].mode, CurveMode::Solid);
    EXPECT_THAT(ys_of(plot.curves[1]), ElementsAre(-8.75F, -8.5F));
    expect_bounds(plot, {-8.75F, 21.5F}, 21.5F);
}

TEST(TemperaturePlot, ShowsTheMinimaOfAllZonesInTheirColours) {
    PlotBasin basin{2, 2};
    fill_variables(basin);
    const Plot plot = basin.plot(PlotNumber::Temperatures);
    ASSERT_EQ(plot.curves.size(), 4U);
    std::vector<std::string> names;
    std::vector<int> passes;
    std::vector<int> lines;
    for (const PlotCurve& curve : plot.curves) {
        names.push_back(curve.name);
        passes.push_back(curve.pass);
        lines.push_back(curve.line);
    }
    EXPECT_THAT(names, ElementsAre("Zone A", "Zone B", "Zone A", "Zone B"));
    EXPECT_THAT(passes, ElementsAre(1, 1, 2, 2));
    EXPECT_THAT(lines, ElementsAre(1, 2, 1, 2));
    expect_bounds(plot, {-9.75F, 21.5F}, 21.5F);
}

TEST(TemperaturePlot, ShowsAveragesWhereTheSimulationHasThem) {
    PlotBasin basin{2, 2};
    basin.simulation().temperature_values = std::int16_t{0};
    fill_variables(basin);
    const Plot one = basin.plot(PlotNumber::Temperatures, 2);
    EXPECT_EQ(one.head.title, "Average Temperature (Tavg)");
    ASSERT_EQ(one.curves.size(), 1U);
    EXPECT_EQ(one.curves[0].name, "Average Daily T (°C)");
    EXPECT_THAT(ys_of(one.curves[0]), ElementsAre(6.25F, 6.5F));
    const Plot all = basin.plot(PlotNumber::Temperatures);
    ASSERT_EQ(all.curves.size(), 2U);
    EXPECT_EQ(all.curves[1].name, "Zone B");
    expect_bounds(all, {5.25F, 6.5F}, 6.5F);
}

TEST(TemperaturePlot, OfTheBasinHasTheNamesOfItsQuantities) {
    PlotBasin basin{2, 2};
    basin.simulation().temperature = Distribution::Basinwide;
    fill_variables(basin);
    const Plot plot = basin.plot(PlotNumber::Temperatures);
    EXPECT_EQ(plot.head.zone_label, "Basinwide");
    ASSERT_EQ(plot.curves.size(), 2U);
    EXPECT_EQ(plot.curves[0].name, "Maximum Daily T (°C)");
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(20.25F, 20.5F));
}

TEST(TemperaturePlot, WithoutMinimaFails) {
    PlotBasin basin;
    fill_variables(basin);
    basin.file.change("UPDATE PhysicalData SET Tmin = NULL");
    EXPECT_EQ(basin.refusal(PlotNumber::Temperatures).text, unable_text("All Zones"));
}

}  // namespace
}  // namespace nivora
