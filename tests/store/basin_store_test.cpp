#include "store/basin_store.h"

#include "store/table_io.h"
#include "tests/support/basin_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::IsEmpty;

std::vector<Zone> zones_of(const std::vector<std::optional<double>>& areas) {
    std::vector<Zone> zones;
    for (const auto& area : areas) zones.emplace_back().area = area;
    return zones;
}

Simulation named(const char* name) {
    Simulation simulation;
    simulation.name = name;
    return simulation;
}

/// Three simulations: the second without dates and units, the third without an end.
BasinState basin_of_three() {
    BasinState basin;
    basin.simulations = {named("Spring"), named("Bare"), named("\u00D6tztal")};
    basin.simulations[0].start = 35156;
    basin.simulations[0].end = 35338;
    basin.simulations[0].units = Units::English;
    basin.simulations[2].start = 36526;
    basin.simulations[2].units = Units::Metric;
    return basin;
}

TEST(BasinArea, IsTwoDashesWithoutZones) { EXPECT_EQ(basin_area_text({}), "--"); }

TEST(BasinArea, IsTheSumOfTheZonesWithAsManyDecimalsAsItNeeds) {
    EXPECT_EQ(basin_area_text(zones_of({12.0, 8.0})), "20");
    EXPECT_EQ(basin_area_text(zones_of({12.25, 8.5})), "20.75");
    EXPECT_EQ(basin_area_text(zones_of({0.1, 0.1, 0.1})), "0.3");
}

TEST(BasinArea, ShowsSevenDigitsAtMost) {
    EXPECT_EQ(basin_area_text(zones_of({1234.5678, 0.0})), "1234.568");
    EXPECT_EQ(basin_area_text(zones_of({100.0 / 3.0})), "33.33333");
}

TEST(BasinArea, LeavesZonesWithoutAnAreaOut) {
    EXPECT_EQ(basin_area_text(zones_of({12.0, std::nullopt, 8.0})), "20");
    EXPECT_EQ(basin_area_text(zones_of({std::nullopt})), "0");
}

TEST(ReadBasin, OfTheTemplateFillsOnlyTheNameBox) {
    const BasinFile file;
    BasinDatabase database = file.open(Access::ReadOnly);
    BasinState basin = basin_of_three();
    basin.zones = zones_of({1.0});
    basin.zones_text = "1";
    basin.reference_elevation_text = "1000";
    read_basin(database, basin);
    EXPECT_EQ(basin.basin_name, "<basin name>");
    EXPECT_EQ(basin.basin_description, "");
    EXPECT_EQ(basin.zones_text, "");
    EXPECT_EQ(basin.reference_elevation_text, "");
    EXPECT_EQ(basin.latitude_text, "");
    EXPECT_EQ(basin.longitude_text, "");
    EXPECT_EQ(basin.basin_area_text, "--");
    EXPECT_EQ(basin.Units_Code, Units::NotFixed);
    EXPECT_EQ(basin.ZoneCount, 1);
    EXPECT_THAT(basin.zones, IsEmpty());
    EXPECT_THAT(basin.simulations, IsEmpty());
}

TEST(ReadBasin, FillsTheBoxesAndBothGrids) {
    const BasinFile file;
    BasinDatabase database = file.open();
    write_basin_description(database, {.name = "Ellervane",
                                       .description = "North side",
                                       .zones = 2,
                                       .units = Units::English,
                                       .reference_elevation = 1250.5,
                                       .latitude = -46.25,
                                       .longitude = 0.1});
    std::vector<Zone> zones = zones_of({12.25, 8.5});
    zones[1].id = "B";
    add_rows<Zone>(database, template_table(k_zone_description), zones);
    const std::vector<Simulation> simulations{named("Spring"), named("Autumn")};
    add_rows<Simulation>(database, template_table(k_simulation_index), simulations);

    BasinState basin;
    read_basin(database, basin);
    EXPECT_EQ(basin.basin_name, "Ellervane");
    EXPECT_EQ(basin.basin_description, "North side");
    EXPECT_EQ(basin.zones_text, "2");
    EXPECT_EQ(basin.reference_elevation_text, "1250.5");
    EXPECT_EQ(basin.latitude_text, "-46.25");
    EXPECT_EQ(basin.longitude_text, "0.1");
    EXPECT_EQ(basin.basin_area_text, "20.75");
    EXPECT_EQ(basin.Units_Code, Units::English);
    EXPECT_EQ(basin.ZoneCount, 2);
    ASSERT_EQ(basin.zones.size(), 2U);
    EXPECT_EQ(basin.zones[1].id, "B");
    ASSERT_EQ(basin.simulations.size(), 2U);
    EXPECT_EQ(basin.simulations[0].name, "Spring");
    EXPECT_EQ(basin.simulations[1].name, "Autumn");
}

TEST(ReadBasin, SelectsNoSimulationAndLeavesPathsAndFlagsAlone) {
    const BasinFile file;
    BasinDatabase database = file.open(Access::ReadOnly);
    BasinState basin = basin_of_three();
    basin.Work_File = "new.mdb";
    basin.Basin_File = "user.mdb";
    basin.New_Basin = false;
    basin.Basin_Changed = true;
    basin.Input_Changed = true;
    basin.Output_Valid = true;
    select_simulation(basin, 0);
    read_basin(database, basin);
    EXPECT_EQ(basin.current_row, std::nullopt);
    EXPECT_EQ(basin.current_simulation(), nullptr);
    EXPECT_EQ(basin.Current_Sim_Name, "--");
    EXPECT_EQ(basin.Work_File, "new.mdb");
    EXPECT_EQ(basin.Basin_File, "user.mdb");
    EXPECT_FALSE(basin.New_Basin);
    EXPECT_TRUE(basin.Basin_Changed);
    EXPECT_TRUE(basin.Input_Changed);
    EXPECT_TRUE(basin.Output_Valid);
}

TEST(ReadBasin, RefusesANumberOfZonesThatNoBasinHas) {
    for (const int zones : {0, -1, 17, 32767}) {
        const BasinFile file;
        file.change("UPDATE BasinDescription SET BasinName = 'Other', Zones = " + std::to_string(zones));
        BasinDatabase database = file.open(Access::ReadOnly);
        BasinState basin;
        basin.basin_name = "Ellervane";
        EXPECT_EQ(refused([&] { read_basin(database, basin); }), StoreFault::Value) << zones;
        EXPECT_EQ(basin.basin_name, "Ellervane");
    }
}

TEST(ReadBasin, RefusesUnitsThatNoBasinHas) {
    for (const int units : {2, 7, -2}) {
        const BasinFile file;
        file.change("UPDATE BasinDescription SET Units = " + std::to_string(units));
        BasinDatabase database = file.open(Access::ReadOnly);
        BasinState basin;
        EXPECT_EQ(refused([&] { read_basin(database, basin); }), StoreFault::Value) << units;
    }
}

TEST(ReadBasin, OfAFileThatIsRefusedHalfWayLeavesTheOpenBasinAsItWas) {
    const BasinFile file;
    file.change("UPDATE BasinDescription SET BasinName = 'Other'");
    file.change("INSERT INTO SimulationIndex (SimName, SimRunNumber) VALUES ('wet', 'no number')");
    BasinDatabase database = file.open(Access::ReadOnly);
    BasinState basin;
    basin.basin_name = "Ellervane";
    EXPECT_EQ(refused([&] { read_basin(database, basin); }), StoreFault::Value);
    EXPECT_EQ(basin.basin_name, "Ellervane");
}

TEST(ReadBasin, TakesOneToSixteenZones) {
    for (const int zones : {1, 16}) {
        const BasinFile file;
        file.change("UPDATE BasinDescription SET Zones = " + std::to_string(zones));
        BasinDatabase database = file.open(Access::ReadOnly);
        BasinState basin;
        read_basin(database, basin);
        EXPECT_EQ(basin.ZoneCount, zones);
    }
}

TEST(SelectSimulation, TakesNamePeriodAndUnitsOfTheRow) {
    BasinState basin = basin_of_three();
    select_simulation(basin, 0);
    EXPECT_EQ(basin.current_row, 0U);
    EXPECT_EQ(basin.Current_Sim_Name, "Spring");
    EXPECT_EQ(basin.Current_Start, 35156);
    EXPECT_EQ(basin.Current_End, 35338);
    EXPECT_EQ(basin.Units_Code, Units::English);
    ASSERT_NE(basin.current_simulation(), nullptr);
    EXPECT_EQ(basin.current_simulation()->name, "Spring");
    EXPECT_EQ(std::as_const(basin).current_simulation(), &basin.simulations[0]);
}

TEST(SelectSimulation, KeepsTheFormerPeriodAndUnitsWhereTheCellsAreEmpty) {
    BasinState basin = basin_of_three();
    select_simulation(basin, 0);
    select_simulation(basin, 1);
    EXPECT_EQ(basin.Current_Sim_Name, "Bare");
    EXPECT_EQ(basin.Current_Start, 35156);
    EXPECT_EQ(basin.Current_End, 35338);
    EXPECT_EQ(basin.Units_Code, Units::English);
    select_simulation(basin, 2);
    EXPECT_EQ(basin.Current_Start, 36526);
    EXPECT_EQ(basin.Current_End, 35338);
    EXPECT_EQ(basin.Units_Code, Units::Metric);
}

TEST(CurrentSimulation, IsNoneBeforeTheFirstSelectionAndAfterTheLastRow) {
    BasinState basin = basin_of_three();
    EXPECT_EQ(basin.current_simulation(), nullptr);
    EXPECT_EQ(basin.Current_Sim_Name, "--");
    select_simulation(basin, 2);
    basin.simulations.pop_back();
    EXPECT_EQ(basin.current_simulation(), nullptr);
    EXPECT_EQ(std::as_const(basin).current_simulation(), nullptr);
}

TEST(FindSimulation, IgnoresCase) {
    const BasinState basin = basin_of_three();
    EXPECT_EQ(find_simulation(basin, "spring"), 0U);
    EXPECT_EQ(find_simulation(basin, "BARE"), 1U);
    EXPECT_EQ(find_simulation(basin, "\u00F6TZTAL"), 2U);
    EXPECT_EQ(find_simulation(basin, "Summer"), std::nullopt);
    EXPECT_EQ(find_simulation(basin, ""), std::nullopt);
    EXPECT_EQ(find_simulation(BasinState{}, "Spring"), std::nullopt);
}

TEST(FindSimulation, GivesTheFirstOfTwoRowsWithOneName) {
    BasinState basin = basin_of_three();
    basin.simulations.push_back(named("SPRING"));
    EXPECT_EQ(find_simulation(basin, "Spring"), 0U);
}

}  // namespace
}  // namespace nivora
