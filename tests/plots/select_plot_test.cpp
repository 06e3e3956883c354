#include "plots/select_plot.h"

#include "tests/support/plot_basin.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

void fill_cover(PlotBasin& basin) {
    basin.write_variables([](PhysicalRow& row, int zone, int day) {
        row.sca = 1.0F - 0.125F * static_cast<float>(day - 1) - 0.0625F * static_cast<float>(zone - 1);
    });
}

void fill_runoff(PlotBasin& basin) {
    basin.write_results([](SimResults& t, std::size_t row, int, int day) {
        t.ActualQ[row] = 10.0F * static_cast<float>(day);
        t.DailyQ[row] = 5.0 * day;
        t.DailyQPresent[row] = 4.0 * day;
        t.SCA[row] = 0.5F;
        t.SCAclimWAMA[row] = 0.25F;
    });
}

TEST(PlotHead, NamesFileSimulationAndZone) {
    PlotBasin basin{2};
    fill_cover(basin);
    const PlotHead head = basin.plot(PlotNumber::SnowCover, 2).head;
    EXPECT_EQ(head.title, "Snow-covered Area (S)");
    EXPECT_EQ(head.subtitle, "/basins/alder.mdb (wy2002)");
    EXPECT_EQ(head.period, PeriodLine::ToDayBefore);
    EXPECT_EQ(head.zone_label, "Zone B");
    EXPECT_EQ(head.export_zone_label, "Zone B");
    EXPECT_EQ(head.basin_name, "Alder");
    EXPECT_EQ(head.scenario_line, "wy2002");
    EXPECT_EQ(head.step, 0);
    EXPECT_EQ(head.run_kind, "");
    EXPECT_EQ(head.update_interval, 0);
    EXPECT_FALSE(head.no_snow);
}

TEST(PlotHead, NamesStepAndScenarioInAnEvaluation) {
    PlotBasin basin;
    fill_cover(basin);
    basin.take_step(3, 1);
    const PlotHead head = basin.plot(PlotNumber::SnowCover).head;
    EXPECT_EQ(head.step, 3);
    EXPECT_EQ(head.scenario_line, "wy2002, warm Scenario");
    basin.run.LastRunSimulation = "wy2001";  // an evaluation of another simulation
    EXPECT_EQ(basin.plot(PlotNumber::SnowCover).head.scenario_line, "wy2002");
}

TEST(PlotHead, OfTheRunoffNamesTheRunAndNoZone) {
    PlotBasin basin;
    fill_runoff(basin);
    PlotHead head = basin.plot(PlotNumber::Runoff).head;
    EXPECT_EQ(head.zone_label, "");
    EXPECT_EQ(head.export_zone_label, "Basinwide");
    EXPECT_EQ(head.run_kind, "Year round Simulation");
    EXPECT_EQ(head.update_interval, 0);
    basin.run.RunKind = k_melt_season_forecast;
    basin.run.RunTitle = "Melt Season Forecast";
    basin.run.UpdateInterval = 7;
    head = basin.plot(PlotNumber::Runoff).head;
    EXPECT_EQ(head.run_kind, "Melt Season Forecast");
    EXPECT_EQ(head.update_interval, 7);
}

TEST(PlotHead, AnEvaluationIsAYearRoundSimulationWithoutUpdating) {
    PlotBasin basin;
    fill_runoff(basin);
    basin.run.RunKind = k_melt_season_forecast;
    basin.run.RunTitle = "Melt Season Forecast";
    basin.run.UpdateInterval = 7;
    basin.take_step(6, 1);
    const PlotHead head = basin.plot(PlotNumber::RunoffComparison).head;
    EXPECT_EQ(head.run_kind, "Year round Simulation");
    EXPECT_EQ(head.update_interval, 0);
}

TEST(PlotHead, MarksNoSnowModeOnTheRunoff) {
    PlotBasin basin;
    fill_runoff(basin);
    basin.write_variables([](PhysicalRow& row, int, int day) { row.precip = static_cast<float>(day); });
    basin.run.NoSnow = true;
    EXPECT_TRUE(basin.plot(PlotNumber::Runoff).head.no_snow);
    EXPECT_FALSE(basin.plot(PlotNumber::Precipitation).head.no_snow);
}

TEST(PlotZone, IsThatOfTheRequest) {
    PlotBasin basin{2};
    fill_cover(basin);
    const Plot one = basin.plot(PlotNumber::SnowCover, 2);
    EXPECT_EQ(one.zone, 2);
    ASSERT_EQ(one.curves.size(), 1U);
    EXPECT_EQ(one.curves[0].name, "Zone B");
    EXPECT_EQ(one.curves[0].line, 2);
    const Plot all = basin.plot(PlotNumber::SnowCover, 3);
    EXPECT_EQ(all.zone, 3);
    EXPECT_EQ(all.head.zone_label, "All Zones");
    EXPECT_EQ(all.curves.size(), 2U);
}

TEST(PlotZone, IsAllZonesWithoutAChoice) {
    PlotBasin basin{2};
    fill_cover(basin);
    EXPECT_EQ(basin.plot(PlotNumber::SnowCover).zone, 3);
}

TEST(PlotZone, IsNoneForAVariableOfTheBasin) {
    PlotBasin basin{2};
    basin.simulation().precipitation = Distribution::Basinwide;
    basin.write_variables(
        [](PhysicalRow& row, int zone, int day) { row.precip = static_cast<float>(10 * zone + day); });
    const Plot plot = basin.plot(PlotNumber::Precipitation, 2);
    EXPECT_FALSE(plot.zone);
    EXPECT_EQ(plot.head.zone_label, "Basinwide");
    ASSERT_EQ(plot.curves.size(), 1U);
    EXPECT_EQ(plot.curves[0].name, "Zone A");
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(11.0F, 12.0F, 13.0F, 14.0F));
}

TEST(PlotZone, BeyondTheBasinIsNotOffered) {
    PlotBasin basin{2};
    fill_cover(basin);
    for (const int zone : {0, 4}) {
        const PlotRefusal refusal = basin.refusal(PlotNumber::SnowCover, zone);
        EXPECT_EQ(refusal.kind, PlotRefusal::Kind::NotOffered);
        EXPECT_THAT(refusal.text, HasSubstr("the basin has the zones A to B"));
    }
    const PlotRefusal all = basin.refusal(PlotNumber::AccumulatedMelt, 3);
    EXPECT_EQ(all.kind, PlotRefusal::Kind::NotOffered);
    EXPECT_THAT(all.text, HasSubstr("shows one zone at a time"));
    PlotBasin one_zone;
    EXPECT_THAT(one_zone.refusal(PlotNumber::SnowCover, 3).text, HasSubstr("the basin has only zone A"));
}

TEST(PlotPeriod, IsThatOfTheSimulationOrOfTheStep) {
    PlotBasin basin{1, 6};
    fill_cover(basin);
    EXPECT_EQ(basin.plot(PlotNumber::SnowCover).curves[0].points.size(), 6U);
    basin.take_step(1, 4);  // winter
    const Plot winter = basin.plot(PlotNumber::SnowCover);
    EXPECT_EQ(winter.frame.x_min, basin.x(1));
    EXPECT_EQ(winter.frame.x_max, basin.x(5));  // the day after the fourth
    basin.take_step(6, 4);                      // summer
    const Plot summer = basin.plot(PlotNumber::SnowCover);
    EXPECT_EQ(summer.frame.x_min, basin.x(5));
    EXPECT_EQ(summer.frame.x_max, basin.x(7));
    EXPECT_THAT(xs_of(summer.curves[0]), ElementsAre(basin.x(5), basin.x(6)));
}

TEST(PlotRefusalOfABuild, NamesTheZone) {
    PlotBasin basin{2};
    EXPECT_EQ(basin.refusal(PlotNumber::SnowCover).text, unable_text("All Zones"));
    EXPECT_EQ(basin.refusal(PlotNumber::SnowCover, 2).text, unable_text("Zone B"));
    basin.store_results(SimResults{});
    const PlotRefusal runoff = basin.refusal(PlotNumber::Runoff);
    EXPECT_EQ(runoff.kind, PlotRefusal::Kind::Unable);
    EXPECT_EQ(runoff.text, unable_text("Basinwide"));
    EXPECT_EQ(basin.refusal(PlotNumber::AccumulatedMelt, 2).text, unable_text("Zone B"));
    basin.simulation().precipitation = Distribution::Basinwide;
    EXPECT_EQ(basin.refusal(PlotNumber::Precipitation).text, unable_text("Basinwide"));
}

TEST(PlotRefusalOfABuild, StandsForAMissingTable) {
    PlotBasin basin;  // no SimResults
    EXPECT_EQ(basin.refusal(PlotNumber::Runoff).kind, PlotRefusal::Kind::Unable);
    EXPECT_EQ(basin.refusal(PlotNumber::DegreeDays).text, unable_text("All Zones"));
}

TEST(PlotRefusalOfABuild, StandsForATableOfOtherColumns) {
    PlotBasin basin;
    basin.file.change("CREATE TABLE SimResults (Zone SMALLINT, Date DATE, Flow FLOAT)");
    basin.file.change("INSERT INTO SimResults VALUES (1, " + std::to_string(basin.day(1)) + ", 1)");
    EXPECT_EQ(basin.refusal(PlotNumber::Runoff).text, unable_text("Basinwide"));
}

TEST(PlotRefusalOfABuild, StandsForATextInTheFile) {
    PlotBasin basin;
    fill_cover(basin);
    basin.file.change("UPDATE PhysicalData SET SCA = 'much' WHERE Date = " + std::to_string(basin.day(2)));
    EXPECT_EQ(basin.refusal(PlotNumber::SnowCover).text, unable_text("All Zones"));
}

TEST(PlotRefusalOfABuild, StandsForASimulationWithoutDates) {
    PlotBasin basin;
    fill_cover(basin);
    basin.simulation().end.reset();
    EXPECT_EQ(basin.refusal(PlotNumber::SnowCover).kind, PlotRefusal::Kind::Unable);
    basin.simulation().end = basin.day(0);  // before its start
    EXPECT_EQ(basin.refusal(PlotNumber::SnowCover).text, unable_text("All Zones"));
}

TEST(PlotRefusalOfABuild, StandsForResultsOfAnotherPeriod) {
    PlotBasin basin;
    fill_runoff(basin);
    basin.simulation().start = basin.day(400);
    basin.simulation().end = basin.day(500);
    EXPECT_EQ(basin.refusal(PlotNumber::Runoff).text, unable_text("Basinwide"));
}

TEST(PlotRefusalOfABuild, StandsForAFileThatAnotherProgramHolds) {
    PlotBasin basin;
    fill_cover(basin);
    BasinDatabase database{basin.file.path(), Access::ReadOnly, std::chrono::milliseconds{10}};
    SQLite::Database other{basin.file.path().string(), SQLite::OPEN_READWRITE};
    other.exec("BEGIN EXCLUSIVE");
    const PlotRequest request{.plot = PlotNumber::SnowCover, .zone = {}};
    const PlotOutcome held = select_plot(database, request, basin.sources());
    ASSERT_TRUE(std::holds_alternative<PlotRefusal>(held));
    EXPECT_EQ(std::get<PlotRefusal>(held).text, unable_text("All Zones"));
    other.exec("ROLLBACK");
    EXPECT_TRUE(std::holds_alternative<Plot>(select_plot(database, request, basin.sources())));
}

TEST(PlotSelection, LeavesTheFileAsItWas) {
    PlotBasin basin{2};
    fill_cover(basin);
    fill_runoff(basin);
    const std::string before = file_bytes(basin.file.path());
    (void)basin.plot(PlotNumber::SnowCover);
    (void)basin.plot(PlotNumber::Runoff);
    (void)basin.refusal(PlotNumber::LapseRate);  // no rows
    EXPECT_EQ(file_bytes(basin.file.path()), before);
}

TEST(PlotSelection, ReadsTheFileAnewEachTime) {
    PlotBasin basin;
    fill_cover(basin);
    BasinDatabase database = basin.file.open(Access::ReadOnly);
    const PlotRequest request{.plot = PlotNumber::SnowCover, .zone = {}};
    EXPECT_TRUE(std::holds_alternative<Plot>(select_plot(database, request, basin.sources())));
    basin.file.change("DROP TABLE PhysicalData");
    EXPECT_TRUE(std::holds_alternative<PlotRefusal>(select_plot(database, request, basin.sources())));
}

TEST(PlotRefusalOfThePick, ReadsNothing) {
    PlotBasin basin;
    basin.take_step(5, 1);
    EXPECT_EQ(basin.refusal(PlotNumber::SnowCover).kind, PlotRefusal::Kind::ClimateStep);
}

}  // namespace
}  // namespace nivora
